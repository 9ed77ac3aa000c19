#include "report_helpers.h"
#include "reporting/template_writer.h"

#include <QRegularExpression>

namespace tradewick::test
{

namespace
{

std::shared_ptr<const ReportTemplate> loadText(const QByteArray &text, QString *error)
{
    QTemporaryDir folder;
    QFile file(folder.filePath("t.xml"));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
    file.close();
    return loadTemplate(file.fileName(), error);
}

QString described(const ReportTemplate &of, const ReportObject &object)
{
    QString text =
        QStringLiteral("%1 %2,%3 %4,%5").arg(object.name).arg(object.x1).arg(object.y1).arg(object.x2).arg(object.y2);
    if (object.kind == ObjectKind::Line)
        return text + QStringLiteral(" w%1").arg(object.weight);
    if (object.kind == ObjectKind::Label || object.kind == ObjectKind::Field)
        text += QStringLiteral(" %1 %2").arg(of.fonts[object.font].face).arg(of.fonts[object.font].points) +
                (of.fonts[object.font].bold ? " bold" : "");
    return text + u' ' + (object.kind == ObjectKind::Field ? object.dataField : object.text);
}

// Three rows, of which the second is cut otherwise; a cell over two rows; open, heavy and light sides.
TEST(RuledForm, CellsBecomeTextsAndEachBorderOneLine)
{
    const auto report = templateOf(R"(<detail height="3000">
        <ruled name="F" left="100" top="200" columns="1000 2000" light="bottom" captionFont="Arial" captionSize="8">
          <row height="600"><cell rows="2" caption="Shipper" field="shr" size="10"/><cell label="L_No"/></row>
          <row height="400" columns="1000 500 1500"><cell open="right"/><cell heavy="bottom"/></row>
          <row height="300" bold="true"><cell fill="#eeeeee" caption="TOTAL"/><cell><label name="In" left="50" top="20">in</label>
            <line name="Rule" x1="0" y1="250" x2="900" y2="250"/></cell></row>
        </ruled></detail>)");
    ASSERT_TRUE(report);
    QStringList found;
    for (const ReportObject &object : report->section(SectionKind::Detail)->objects)
        found.append(described(*report, object));
    const QStringList expected{
        "F_R3C1S 100,1200 1100,1500 ",
        // caption of 8 points: 184 twips a line, the rest of the cell's inner box below it
        "F_R1C1 160,215 1040,399 Arial 8 Shipper",
        "F_R1C1V 160,399 1040,1185 宋体 10 shr",
        // room for two lines of 9.75 points: the whole inner box
        "L_No 1160,215 3040,785 宋体 9.75 ",
        // one line in the middle of 270
        "F_R3C1 160,1258 1040,1442 Arial 8 bold TOTAL",
        "In 1150,1220 3040,1485 宋体 9.75 in",
        "Rule 1100,1450 2000,1450 w1",
        "F_H0 100,200 3100,200 w3",
        "F_H1_1 1100,800 3100,800 w1",
        "F_H2 100,1200 1600,1200 w1",
        "F_H2_2 1600,1200 3100,1200 w3",
        "F_H3 100,1500 3100,1500 w1",
        "F_V0 100,200 100,1500 w3",
        "F_V1 1100,200 1100,1500 w1",
        "F_V3 3100,200 3100,1500 w3",
    };
    EXPECT_EQ(found.join('\n').toStdString(), expected.join('\n').toStdString());
}

TEST(RuledForm, WhatDoesNotFillItsGridIsRefused)
{
    const struct {
        const char *form, *error;
    } cases[] = {
        {R"(columns="100 100"><row height="10"><cell/></row>)", "row 1 does not fill its 2 columns"},
        {R"(columns="100"><row height="10"><cell/><cell/></row>)", "a cell of row 1 has no room"},
        {R"(columns="100 100"><row height="10"><cell span="3"/></row>)", "a cell of row 1 has no room"},
        {R"(columns="100 100"><row height="10"><cell rows="2"/><cell/></row><row height="10"><cell span="2"/></row>)",
         "a cell of row 2 has no room"},
        {R"(columns="100"><row height="10"><cell rows="2"/></row>)", "reaches below the last row"},
        {R"(columns="100"><row height="10" columns="60 60"><cell/><cell/></row>)", "row 1 is 120 wide, the form 100"},
        {R"(columns="wide"><row height="10"><cell/></row>)", "columns=\"wide\""},
        {R"(columns="100"><row><cell/></row>)", "a row without height"},
        {R"(columns="100"><cell/>)", "<row> expected"},
        {R"(columns="100"><row height="10"><label/></row>)", "<cell> expected"},
        {R"(columns="100"><row height="10"><cell colour="red"/></row>)", "<cell> has no attribute colour"},
        {R"(columns="100" open="up"><row height="10"><cell/></row>)", "\"up\" is no side"},
        {R"(columns="100"><row height="10"><cell caption="A" valign="up"/></row>)", "valign=\"up\" is not known"},
        {R"(columns="100"><row height="10"><cell caption="A" size="big"/></row>)", "size=\"big\""},
        {R"(columns="100"><row height="10"><cell><table name="x"/></cell></row>)", "no object is called <table>"},
    };
    for (const auto &of : cases) {
        QString error;
        const QByteArray text = QByteArray("<report name='t' printWidth='9' leftMargin='0' rightMargin='0' "
                                           "topMargin='0' bottomMargin='0'><detail height='9'>"
                                           "<ruled name='F' left='0' top='0' ") +
                                of.form + "</ruled></detail></report>";
        EXPECT_FALSE(loadText(text, &error)) << of.form;
        EXPECT_TRUE(error.contains(of.error)) << error.toStdString() << " for " << of.error;
    }
}

TEST(RuledForm, AnExpandedTemplateReadsBackAsTheSame)
{
    for (const QString &name : reportNames()) {
        const ReportTemplate &model = report(name).model();
        QString error;
        const QByteArray xml = templateXml(model);
        EXPECT_FALSE(xml.contains("<ruled")) << name.toStdString();
        const auto back = loadText(xml, &error);
        ASSERT_TRUE(back) << error.toStdString();
        EXPECT_TRUE(back->extent() == model.extent() && back->overlay == model.overlay);
        EXPECT_EQ(back->fonts, model.fonts);
        ASSERT_EQ(back->sections.size(), model.sections.size());
        for (qsizetype at = 0; at < model.sections.size(); ++at) {
            const Section &was = model.sections[at], &is = back->sections[at];
            EXPECT_TRUE(is.height == was.height && is.level == was.level && is.canGrow == was.canGrow);
            EXPECT_EQ(is.groupField, was.groupField);
            ASSERT_EQ(is.objects.size(), was.objects.size());
            for (qsizetype object = 0; object < was.objects.size(); ++object) {
                ReportObject wanted = was.objects[object];
                wanted.except.clear();
                EXPECT_TRUE(is.objects[object] == wanted) << name.toStdString() << ' ' << wanted.name.toStdString();
            }
        }
    }
}

} // namespace

} // namespace tradewick::test
