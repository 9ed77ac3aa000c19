#include "report_helpers.h"

#include <QRandomGenerator>
#include <QRegularExpression>

namespace tradewick::test
{

namespace
{

TEST(Template, ReadsEveryProperty)
{
    const auto report = templateOf(R"(
        <pageHeader height="500">
          <label name="L_A" left="1" top="2" width="30" height="40"/>
          <label name="B" left="0" top="0" width="9" height="9" font="Arial" size="18" bold="true" align="center"
                 foreColor="#ff0000" backColor="#00ff00" charset="0" visible="false">A &amp; B</label>
          <line name="C" x1="5" y1="6" x2="1" y2="2" style="3" weight="2"/>
          <shape name="D" left="0" top="0" width="1" height="1" kind="2" backColor="#0000ff"/>
          <image name="E" left="0" top="0" width="1" height="1"/>
        </pageHeader>
        <groupHeader level="1" height="0" groupField=" fpbh "/>
        <detail height="300"><field name="F" left="0" top="0" width="9" height="9" font="Arial" size="18" bold="true"
            dataField="je" format="#,##0.00">0</field></detail>
        <groupFooter level="1" height="300"><field name="G" left="0" top="0" width="9" height="9" dataField="sl"
            summary="count" running="report" summaryGroup="GroupHeader1"/></groupFooter>
        <pageFooter height="100"><field name="H" left="0" top="0" width="9" height="9" pageTotal="true"/></pageFooter>)");
    ASSERT_TRUE(report);
    const QVector<ReportObject> &head = report->section(SectionKind::PageHeader)->objects;
    ASSERT_EQ(head.size(), 5);
    EXPECT_TRUE(head[0].isFree() && head[0].x2 == 31 && head[0].y2 == 42 && head[0].charset == 134);
    EXPECT_EQ(report->fonts[head[0].font], FontSpec());
    EXPECT_EQ(report->fonts[head[1].font], (FontSpec{"Arial", 18, true}));
    EXPECT_TRUE(!head[1].visible && head[1].text == "A & B" && head[1].align == TextAlign::Centre);
    EXPECT_TRUE(head[1].foreColor == 0xffff0000 && head[1].backColor == 0xff00ff00 && head[1].charset == 0);
    EXPECT_TRUE(head[2].x1 == 5 && head[2].y2 == 2 && head[2].style == 3 && head[2].weight == 2);
    EXPECT_TRUE(head[3].shape == 2 && head[3].backColor == 0xff0000ff);
    EXPECT_EQ(head[4].kind, ObjectKind::Image);
    EXPECT_EQ(report->section(SectionKind::GroupHeader, 1)->groupField, "fpbh");
    const ReportObject &field = *report->object("F");
    EXPECT_TRUE(field.dataField == "je" && field.format == "#,##0.00" && field.text == "0");
    EXPECT_EQ(field.font, head[1].font); // one font, once
    const ReportObject &sum = *report->object("G");
    EXPECT_TRUE(sum.summary == Summary::Count && sum.overReport && sum.summaryLevel == 1);
    EXPECT_TRUE(report->object("H")->pageTotal);
    EXPECT_EQ(report->extent(), std::pair(100, 131));
}

TEST(Template, DamagedFilesAreRefusedWithLineAndReason)
{
    const QString head = "<report name='t' printWidth='100' leftMargin='0' rightMargin='0' topMargin='0' "
                         "bottomMargin='0'>\n";
    const QString detail = "<detail height='10'>\n", end = "</detail></report>";
    const QString label = "<label name='A' left='0' top='0' width='1' height='1'>x</label>\n";
    const struct {
        QString text, error;
    } cases[] = {
        {"", ":1: "},
        {"plain text", ":1: "},
        {"<form/>", ":1: <report> expected, found <form>"},
        {"<!DOCTYPE r [<!ENTITY a 'aaaa'>]>\n<report/>", ":1: a document type is not allowed"},
        {"<report name='t' printWidth='1e9'/>", ":1: printWidth=\"1e9\""},
        {head + "</report>", ":2: the report has no <detail>"},
        {head + detail, ":3: "}, // breaks off
        {head + "<detail height='-1'/></report>", ":2: height=\"-1\": a whole number from 0 to 31680 expected"},
        {head + "<detail height='99999999999999999999'/></report>", ":2: height="},
        {head + "<body height='1'/></report>", ":2: no band is called <body>"},
        {head + "<detail height='1'/>\n<pageHeader height='1'/></report>", ":3: <pageHeader> does not stand in the"},
        {head + "<detail height='1'/>\n<detail height='1'/></report>", ":3: <detail> does not stand in the order"},
        {head + "<groupHeader level='1' height='1'/><detail height='1'/></report>", ":2: group level 1 has no header"},
        {head + "<groupHeader level='2' height='1'/><detail height='1'/><groupFooter level='2' height='1'/></report>",
         ":2: group level 2 has no header"},
        {head + detail + label + label + end, ":4: name=\"A\" is empty or stands twice"},
        {head + detail + "<label left='0' top='0' width='1' height='1'/>" + end, ":3: name=\"\" is empty"},
        {head + detail + "<label name='A' left='0' top='0' width='1'/>" + end, ":3: height=\"\": a whole number"},
        {head + detail + "<label name='A' left='0' top='0' width='1' height='1' colour='red'/>" + end,
         ":3: <label> has no attribute colour"},
        {head + detail + "<label name='A' left='0' top='0' width='1' height='1' size='big'/>" + end,
         ":3: size=\"big\""},
        {head + detail + "<label name='A' left='0' top='0' width='1' height='1' size='nan'/>" + end,
         ":3: size=\"nan\""},
        {head + detail + "<label name='A' left='0' top='0' width='1' height='1' foreColor='red'/>" + end,
         ":3: foreColor=\"red\": a colour"},
        {head + detail + "<field name='A' left='0' top='0' width='1' height='1' summary='mean'/>" + end,
         ":3: summary=\"mean\" is not known"},
        {head + detail + "<field name='A' left='0' top='0' width='1' height='1' summary='sum' dataField='je'/>" + end,
         ":3: A: a summary takes a dataField and a summaryGroup"},
        {head + detail +
             "<field name='A' left='0' top='0' width='1' height='1' summary='sum' dataField='je' "
             "summaryGroup='GroupHeader1'/>" +
             end,
         ":3: A: there is no such summaryGroup"},
        {head + detail + "<field name='A' left='0' top='0' width='1' height='1' format='0.000'/>" + end,
         ":3: format=\"0.000\" is not known"},
        {head + detail + "<label name='A' left='0' top='0' width='1' height='1'><b/></label>" + end, ":3: "},
        {head + detail + QString("<a>").repeated(100000), ":3: no object is called <a>"},
        {head + detail + "<label name='A' left='0' top='0' width='1' height='1'>" + QString(5000, 'x') + "</label>" +
             end,
         ":3: a text of more than 4000 characters"},
        {QString(2 << 20, ' '), "larger than any template"},
    };
    QTemporaryDir folder;
    for (const auto &damaged : cases) {
        QFile file(folder.filePath("damaged.xml"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(damaged.text.toUtf8());
        file.close();
        QString error;
        EXPECT_FALSE(loadTemplate(file.fileName(), &error)) << damaged.text.left(300).toStdString();
        EXPECT_TRUE(error.startsWith(file.fileName())) << error.toStdString();
        EXPECT_TRUE(error.contains(damaged.error)) << error.toStdString() << " for " << damaged.error.toStdString();
    }
    QString error;
    EXPECT_FALSE(loadTemplate(folder.filePath("none.xml"), &error));
    EXPECT_TRUE(error.contains("none.xml: ")) << error.toStdString();
}

// Half a file, or a file with bytes changed, left out or doubled, never ends the program: it is read, or refused by
// file and line.
TEST(Template, AnyDamageIsEitherReadOrRefused)
{
    constexpr int variants = 3000;
    QVector<QByteArray> texts;
    for (const QString &name : reportNames()) {
        QFile whole(QStringLiteral(":/templates/%1.xml").arg(name));
        ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
        texts.append(whole.readAll());
    }
    QRandomGenerator random(20261124);
    QTemporaryDir folder;
    const QString path = folder.filePath("damaged.xml");
    const QRegularExpression fileAndLine('^' + QRegularExpression::escape(path) + ":\\d+: .");
    int refused = 0, read = 0;
    for (int variant = 0; variant < variants; ++variant) {
        QByteArray text = texts[random.bounded(int(texts.size()))];
        for (int change = random.bounded(1, 4); change > 0 && !text.isEmpty(); --change) {
            const int at = random.bounded(int(text.size())), length = random.bounded(1, 60);
            switch (random.bounded(8)) {
            case 0:
                text.truncate(at);
                break;
            case 1:
                text.remove(at, length);
                break;
            case 2:
                text.insert(at, text.mid(random.bounded(int(text.size())), length));
                break;
            default:
                text[at] = static_cast<char>(random.bounded(256));
            }
        }
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(text);
        file.close();
        QString error;
        const auto report = loadTemplate(path, &error);
        if (report) {
            ++read;
            EXPECT_EQ(error, "") << variant;
            EXPECT_TRUE(report->section(SectionKind::Detail)) << variant;
        } else {
            ++refused;
            EXPECT_TRUE(fileAndLine.match(error).hasMatch()) << variant << ' ' << error.toStdString();
        }
    }
    EXPECT_GT(read, variants / 100); // changes within a text are no damage
    EXPECT_GT(refused, variants / 2);
}

} // namespace

} // namespace tradewick::test
