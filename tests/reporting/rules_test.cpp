// The code of reports: what it reads of the record, and what it and callers write.
#include "data/data_error.h"
#include "report_helpers.h"

#include <QImage>

namespace tradewick::test
{

namespace
{

void certificate(FormattedBand &band)
{
    if (band.section.kind == SectionKind::PageHeader)
        band.setPicture("Image1", band.value("LOGO").toString());
    if (band.section.kind == SectionKind::Detail)
        band.setText("L_gC", band.value("qbgc").toBool() ? "P" : "W");
    if (band.section.kind == SectionKind::PageFooter)
        band.setText("L_last", band.value("no").toString());
}

TEST(Rule, SeesTheColumnsItDeclaresAndSetsTextsAndPictures)
{
    QTemporaryDir folder;
    const QString logo = folder.filePath("logo.png");
    QImage picture(20, 10, QImage::Format_RGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(logo));
    const auto model = templateOf(
        "<pageHeader height='500'><image name='Image1' left='0' top='0' width='400' height='400'/></pageHeader>"
        "<detail height='5000'><label name='L_gC' left='0' top='0' width='900' height='300'/>"
        "<field name='F' left='0' top='300' width='900' height='300'>initial</field></detail>"
        "<pageFooter height='300'><label name='L_last' left='0' top='0' width='900' height='300'/></pageFooter>");
    const auto laidOut = [&](const QStringList &columns, const QStringList &labels) {
        return Layout(model,
                      std::make_unique<TestRows>(
                          QStringList{"no", "qbgc", "logo"},
                          QVector<QVariantList>{
                              {1, 1, logo}, {2, 0, logo}, {3, 1, logo}, {4, 1, folder.filePath("none.png")}}),
                      {}, {}, paperFor(*model), {&certificate, columns, labels})
            .all();
    };
    const auto pages = laidOut({"logo", "qbgc", "no"}, {"L_gC", "L_last"});
    ASSERT_EQ(pages.size(), 2);
    EXPECT_EQ(textsOf(*pages[0]), (QStringList{"P", "W", "P", "3"}));
    EXPECT_EQ(textsOf(*pages[1]), (QStringList{"P", "4"}));
    EXPECT_EQ(pages[0]->images["Image1"].pixel(3, 3), qRgb(255, 0, 0));
    EXPECT_TRUE(pages[1]->images.isEmpty());
    EXPECT_THROW(laidOut({"logo", "no"}, {"L_gC", "L_last"}), DataError);
    EXPECT_THROW(laidOut({"logo", "qbgc", "no"}, {"L_gC"}), DataError);
}

TEST(Rule, LabelsWithATextOfTheirOwnGetItBack)
{
    Report declaration(
        {true, {nullptr, {}, {"L_ps"}}},
        templateOf("<detail height='900'><label name='L_Zjs' left='0' top='0' width='900' height='300'>own</label>"
                   "<label name='LzM_GsMc' left='0' top='300' width='900' height='300'/>"
                   "<label name='p_number' left='0' top='600' width='900' height='300'/>"
                   "<label name='L_ps' left='0' top='600' width='900' height='300'/></detail>"));
    const auto texts = [&] { return textsOf(*declaration.layout(nullptr, {})->next()); };
    EXPECT_EQ(declaration.unsetLabels(), (QStringList{"L_Zjs", "LzM_GsMc"}));
    declaration.setLabel("L_Zjs", "title of " + declaration.label("L_Zjs"));
    declaration.setLabel("LzM_GsMc", "company");
    EXPECT_TRUE(declaration.unsetLabels().isEmpty());
    EXPECT_EQ(texts(), (QStringList{"title of own", "company"}));
    declaration.startOver();
    EXPECT_EQ(texts(), (QStringList{"own", "company"}));
    declaration.setLabel("L_Zjs", ""); // written empty is not left alone
    EXPECT_EQ(texts(), QStringList{"company"});
}

} // namespace

} // namespace tradewick::test
