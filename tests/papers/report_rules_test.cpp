// What the code of single reports makes of their records.
#include "papers/papers.h"
#include "papers/report_table.h"
#include "support/test_database.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QTemporaryDir>

namespace tradewick
{

using namespace test;

namespace
{

// The texts of these objects, one behind the other as they stand on the page.
QString textsOf(const Page &page, const QStringList &objects)
{
    QStringList texts;
    for (const PageItem &item : page.items)
        if (objects.contains(item.object->name))
            texts.append(page.text(item).toString());
    return texts.join(' ');
}

} // namespace

TEST(ReportRules, CertificatesAndTheirApplicationFollowTheFlags)
{
    TestDatabase database;
    const struct {
        int quantity, own, foreign; // flags
        const char *formA, *certificate, *criterion;
    } cases[] = {{1, 1, 0, "P 2400 PCS", "2400 PCS", "1"},
                 {1, 0, 1, "W 2400 PCS", "2400 PCS", "2"},
                 {0, 1, 1, "P 128.5 KgS", "128.5 Kgs", "2"},
                 {0, 0, 0, "W 128.5 KgS", "128.5 Kgs", "3"},
                 {1, 1, 1, "P 2400 PCS", "2400 PCS", "2"}};
    int number = 0;
    for (const auto &of : cases) {
        const QString invoice = QString("F%1").arg(++number);
        database.connection().Execute("insert into yy_mxb_h(fpbh,lysl,qbgc,hjkcf) values('{f}','{q}','{o}','{h}')",
                                      {{"f", invoice}, {"q", of.quantity}, {"o", of.own}, {"h", of.foreign}});
        database.connection().Execute("insert into yy_mxb_b(fpbh,sl,dw,zmz) values('{f}','2400','PCS','128.5')",
                                      {{"f", invoice}});
        const auto printed = [&](const char *name, const QStringList &objects) {
            return textsOf(*fill(document(name), database.connection(), invoice).report->layout()->next(), objects);
        };
        EXPECT_EQ(printed("FormA", {"L_gC", "L_sL", "L_DW"}), of.formA) << number;
        EXPECT_EQ(printed("产地证", {"Field15", "Field16"}), of.certificate) << number;
        EXPECT_EQ(printed("FormA申请书", {"L_PW"}), of.criterion) << number;
    }
}

TEST(ReportRules, TheAdviceTakesItsOwnLogoAndNumberAndTheOverlayItsDate)
{
    TestDatabase database;
    const QTemporaryDir folder;
    QImage logo(40, 20, QImage::Format_RGB32);
    logo.fill(Qt::red);
    ASSERT_TRUE(logo.save(folder.filePath("logo.png")));
    const struct {
        const char *number, *picture, *date;
        qsizetype pictures;
        const char *printed;
    } cases[] = {{"F1", "logo.png", "2026-03-07", 1, "2026 3 7"}, {"F2", "none.png", nullptr, 0, ""}};
    for (const auto &of : cases) {
        database.connection().Execute(
            "insert into yy_mxb_h(fpbh,htbh,logo,djrq,madol) values('{f}','X','{l}','{d}','{m}')",
            {{"f", of.number},
             {"l", ' ' + folder.filePath(of.picture) + ' '},
             {"d", of.date ? QVariant(of.date) : QVariant()},
             {"m", QString("MARK\n").repeated(70)}});
        database.connection().Execute("insert into yy_mxb_b(fpbh,je) values('{f}','1')", {{"f", of.number}});
        const auto pages = fill(document("装船通知"), database.connection(), of.number).report->layout()->all();
        ASSERT_EQ(pages.size(), 2); // so many marks
        for (int page = 1; page <= 2; ++page) {
            EXPECT_EQ(textsOf(*pages[page - 1], {"L_ps"}), QString::number(page));
            EXPECT_EQ(pages[page - 1]->images.size(), of.pictures);
        }
        const auto overlay =
            fill(document("出口专用发票套打"), database.connection(), of.number).report->layout()->all();
        EXPECT_EQ(textsOf(*overlay.first(), {"L_Year", "L_month", "L_day"}), of.printed);
    }
}

TEST(ReportRules, TheGeneralBillNumbersItsPagesInTheHead)
{
    TestDatabase database;
    database.connection().Execute("insert into cy_hytd_djb_h(tdhm) values('TD1')");
    for (int line = 0; line < 40; ++line)
        database.connection().Execute("insert into cy_hytd_djb_b(tdhm,madol) values('TD1','MARK')");
    const auto pages = fill(document("通用提单"), database.connection(), "TD1").report->layout()->all();
    ASSERT_GT(pages.size(), 1);
    for (int page = 1; page <= pages.size(); ++page)
        EXPECT_EQ(textsOf(*pages[page - 1], {"L_Pages"}), QString::number(page));
}

} // namespace tradewick
