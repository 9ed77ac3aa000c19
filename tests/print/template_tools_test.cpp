// What those who draw templates are shown and told, and whether what is printed stands where the template says.
#include "papers/report_table.h"
#include "reporting/template.h"
#include "support/test_database.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace tradewick
{

using namespace test;

namespace
{

QString outputOf(const QString &program, const QStringList &arguments, int *status = nullptr)
{
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(60000)) << program.toStdString();
    if (status)
        *status = process.exitCode();
    else
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    return QString::fromUtf8(process.readAllStandardOutput());
}

QString printed(const QStringList &arguments, int *status = nullptr)
{
    return outputOf(binFolder() + "/tradewick-print", arguments, status);
}

const QString templates = TEMPLATES;

class TemplateTools : public testing::Test
{
protected:
    QTemporaryDir folder;

    QString file(const QString &name) const { return folder.filePath(name); }

    void write(const QString &name, const QString &text) const
    {
        QFile to(file(name));
        ASSERT_TRUE(to.open(QIODevice::WriteOnly));
        to.write(text.toUtf8());
    }

    void writeTemplate(const QString &name, const QString &head, const QString &detail, const QString &foot,
                       int headHeight = 1000)
    {
        write(name + ".xml", QStringLiteral("<report name='%1' printWidth='10000' leftMargin='100' rightMargin='100' "
                                            "topMargin='200' bottomMargin='200'><pageHeader height='%2'>%3</pageHeader>"
                                            "<groupHeader level='1' height='0' groupField='fpbh'/>"
                                            "<detail height='300'>%4</detail><groupFooter level='1' height='1000'>%5"
                                            "</groupFooter></report>")
                                 .arg(name)
                                 .arg(headHeight)
                                 .arg(head, detail, foot));
    }
};

QString box(int left, int top, int width, int height, const QString &further)
{
    return QStringLiteral(" left='%1' top='%2' width='%3' height='%4' %5 ")
        .arg(left)
        .arg(top)
        .arg(width)
        .arg(height)
        .arg(further);
}

QString label(const QString &name, int left, int top, int width, int height, const QString &text,
              const QString &further = {})
{
    return QStringLiteral("<label name='%1'%2>%3</label>").arg(name, box(left, top, width, height, further), text);
}

QString field(const QString &name, const QString &column, int left, int top, int width, const QString &further = {})
{
    return QStringLiteral("<field name='%1' dataField='%2'%3/>").arg(name, column, box(left, top, width, 230, further));
}

QString line(const QString &name, int x1, int y1, int x2, int y2)
{
    return QStringLiteral("<line name='%1' x1='%2' y1='%3' x2='%4' y2='%5'/>")
        .arg(name)
        .arg(x1)
        .arg(y1)
        .arg(x2)
        .arg(y2);
}

} // namespace

TEST_F(TemplateTools, TheCheckFindsEachFaultAndNothingElse)
{
    const QString heads = label("H1", 0, 700, 2000, 230, "ITEM") + label("H2", 2000, 700, 2000, 230, "SIZE") +
                          label("H3", 4000, 700, 2000, 230, "QUANTITY");
    const QString columns = field("F1", "cpbh", 0, 20, 2000) + field("F2", "gg", 2000, 20, 1900) +
                            field("F3", "sl", 4100, 20, 1900, "align='right'");
    const QString sum = "summary='sum' summaryGroup='GroupHeader1' align='right'";
    const QString over = label("A", 0, 0, 3000, 230, "COMMERCIAL INVOICE", "except='overlap: so is the printed form'") +
                         label("B", 300, 40, 3000, 230, "PACKING LIST");
    const struct {
        QString head, detail, foot, findings; // rule and object of each; empty for none
        int headHeight = 1000;
    } cases[] = {
        {heads, columns, field("Sum", "sl", 4100, 0, 1900, sum), ""},
        {label("A", 0, 0, 3000, 230, "COMMERCIAL INVOICE") + label("B", 300, 40, 3000, 230, "PACKING LIST"), "", "",
         "overlap: A"},
        {over, "", "", ""},
        {label("A", 0, 900, 3000, 230, "TOTAL"), "", "", "outside: A"},
        {label("A", 9000, 0, 1100, 230, "TOTAL"), "", "", "outside: A"},
        {line("A", 0, 0, 0, 1016), "", "", "outside: A"},
        {label("A", 0, 16650, 2000, 230, "TOTAL"), "", "", "pages: takes 2 pages|outside: A beyond the sheet", 17000},
        {label("A", 0, 0, 600, 230, "COMMERCIAL INVOICE"), "", "", "cut: A"},
        {label("A", 0, 0, 900, 230, "COMMERCIAL INVOICE"), "", "", "cut: A"},
        {"", "", label("L_TalAM", 0, 0, 9000, 410, "", "font='Arial' size='10' bold='true'"), "short: L_TalAM"},
        {"", field("F", "je", 0, 20, 700), "", "narrow: F"},
        {"", field("F", "je", 0, 20, 1200), "", ""},
        {"", "", label("L_LEss", 0, 0, 500, 230, ""), "narrow: L_LEss"},
        {line("A", 0, 100, 1000, 100) + line("B", 1020, 100, 1020, 900), "", "", "gap: A"},
        {line("A", 0, 100, 1000, 100) + line("B", 1000, 100, 1000, 900), "", "", ""},
        {line("A", 0, 100, 1000, 100) + line("B", 0, 140, 1000, 140), "", "", ""}, // a double rule
        {heads,
         field("F1", "cpbh", 0, 20, 2000) + field("F2", "gg", 3000, 20, 1900) + field("F3", "sl", 4900, 20, 1100), "",
         "column: F2"},
        {heads, columns, field("Sum", "sl", 6100, 0, 1900, sum), "column: Sum"},
        {"", "", label("A", 0, 700, 3000, 230, "TOTAL"), "pages: takes 2 pages", 15700},
        {line("A", 0, 100, 1000, 100) + line("B", 1000, 100, 0, 100), "", "", "twice: B"},
        {label("A", 0, 0, 3000, 230, "TOTAL", "except='cut: none'"), "", "", "except: A"},
        {"", field("F", "cpbhx", 0, 20, 2000), "", "data: F"},
    };
    write("reports.tsv", "report\tfolder\ttwin\tsource\nt\t\t\tyy_mxb_rpt\n");
    for (const auto &of : cases) {
        writeTemplate("t", of.head, of.detail, of.foot, of.headHeight);
        int status = 0;
        const QString told = printed({"--lint", file("t.xml")}, &status);
        const QStringList lines = told.split('\n', Qt::SkipEmptyParts);
        const QStringList expected = of.findings.split('|', Qt::SkipEmptyParts);
        ASSERT_EQ(lines.size(), expected.size() + 1) << told.toStdString() << " for " << of.findings.toStdString();
        for (qsizetype at = 0; at < expected.size(); ++at)
            EXPECT_TRUE(lines[at].startsWith("t: " + expected[at])) << lines[at].toStdString();
        EXPECT_EQ(lines.last(), QString("%1 findings in 1 templates").arg(expected.size()));
        EXPECT_EQ(status, of.findings.isEmpty() ? 0 : 1);
    }
    writeTemplate("unlisted", "", "", "");
    int status = 0;
    EXPECT_TRUE(printed({"--lint", file("unlisted.xml")}, &status).startsWith("unlisted: table: "));
    EXPECT_EQ(printed({"--lint", file("none.xml")}, &status), "");
    EXPECT_EQ(status, 1);
}

TEST_F(TemplateTools, ATemplateIsDrawnAsItIsOnDisk)
{
    write("reports.tsv", "report\tfolder\ttwin\tsource\nt\t\t\tyy_mxb_rpt\n");
    const QString detail = field("F1", "cpbh", 0, 20, 2000) + field("F2", "e_gsmc", 2000, 20, 8000);
    const struct {
        QString rows;
        int count;
        const char *company;
    } cases[] = {
        {"empty", 0, ""}, {"1", 1, "JIAHE ARTS"}, {"40", 40, "JIAHE ARTS"}, {"longest", 5, "JIAHE INTERNATIONAL"}};
    for (const auto &of : cases) {
        writeTemplate("t", label("A", 0, 0, 6000, 230, "AS OF " + of.rows), detail, "");
        printed({"--template", file("t.xml"), "--rows", of.rows, "--pdf", file("o.pdf"), "--png", file("o.png")});
        const QString text = outputOf("pdftotext", {"-layout", file("o.pdf"), "-"});
        EXPECT_EQ(text.count("JH-0418"), of.count);
        EXPECT_TRUE(text.contains("AS OF " + of.rows) && text.contains(of.company)) << text.toStdString();
        EXPECT_EQ(QImage(file("o-1.png")).width(), 1240); // A4 at 150 dots an inch
    }
    int status = 0;
    printed({"--template", file("t.xml"), "--rows", "some", "--pdf", file("o.pdf")}, &status);
    EXPECT_EQ(status, 1);
}

TEST_F(TemplateTools, TheGalleryMarksWhatDiffersFromTheOneBefore)
{
    write("reports.tsv", "report\tfolder\ttwin\tsource\na\t合同\tb\tyy_mxb_rpt\nb\t单证\t\tyy_mxb_rpt\n");
    writeTemplate("a", label("A", 0, 0, 6000, 230, "ONE"), "", "");
    writeTemplate("b", label("A", 0, 0, 6000, 230, "TWO"), "", "");
    printed({"--gallery", file("before"), "--template", folder.path()});
    writeTemplate("a", label("A", 4000, 0, 6000, 230, "ONE"), "", "");
    printed({"--gallery", file("after"), "--template", folder.path(), "--before", file("before")});
    QFile index(file("after/index.html"));
    ASSERT_TRUE(index.open(QIODevice::ReadOnly));
    const QString html = QString::fromUtf8(index.readAll());
    EXPECT_TRUE(html.contains("<p>changed: a</p>")) << html.toStdString();
    for (const char *picture : {"a-1.png", "b-1.png", "../before/a-1.png", "a-1.difference.png", "contact 合同.png"})
        EXPECT_TRUE(html.contains(QString("src=\"%1\"").arg(picture)) &&
                    QFile::exists(file("after/") + QString::fromUtf8(picture)))
            << picture;
    EXPECT_FALSE(QFile::exists(file("after/b-1.difference.png")));
    // red where the word was, green where it is: 96 pixels to 1440 twips
    const QImage marked(file("after/a-1.difference.png"));
    QRect red, green;
    for (int y = 0; y < marked.height(); ++y) {
        for (int x = 0; x < marked.width(); ++x) {
            const QColor colour = marked.pixelColor(x, y);
            if (colour.red() > colour.green() + 100)
                red |= QRect(x, y, 1, 1);
            if (colour.green() > colour.red() + 100)
                green |= QRect(x, y, 1, 1);
        }
    }
    EXPECT_NEAR(red.left(), 100 / 15.0, 2);
    EXPECT_NEAR(green.left(), 4100 / 15.0, 2);
}

// The templates that are told to the twip, read back from their PDF: each text's first line from pdftotext's boxes, in
// points; each line, and a text that pdftotext joins to its neighbour, from the operators of the page, whose unit is
// the twip.
TEST_F(TemplateTools, WhatAFormPrintsStandsWhereItsTemplateSaysToTheTwip)
{
    static const QString operators = R"(
import json, re, sys, zlib
data, lines, texts, weight, at = open(sys.argv[1], 'rb').read(), [], [], 0, (0, 0)
for start in re.finditer(rb'stream\r?\n', data):
    try: text = zlib.decompress(data[start.end():data.find(b'endstream', start.end())]).decode('latin1')
    except Exception: continue
    if ' cm\n' not in text: continue
    for words in (row.split() for row in text.split('\n')):
        if len(words) > 1 and words[1] == 'w': weight = float(words[0])
        if words[-1:] == ['m']: at = tuple(map(float, words[:2]))
        if words[-1:] == ['l']: lines.append([*at, *map(float, words[:2]), weight])
        if words[-1:] == ['Tm']: first = True
        if words[2:3] == ['Td'] and first: first = texts.append([float(words[0]), -float(words[1])])
json.dump([lines, texts], sys.stdout))";
    struct Word {
        double left, right, top;
        QString text;
    };
    for (const QString name : {"YY_FormA_rpt", "yy_BgD_rPt"}) {
        SCOPED_TRACE(name.toStdString());
        // as it stands before it grows for texts longer than their boxes
        QFile whole(templates + u'/' + name + ".xml");
        ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
        write("form.xml", QString::fromUtf8(whole.readAll()).remove(" canGrow=\"true\""));
        const QString path = file("form.xml"), pdf = file("o.pdf");
        printed({"--template", path, "--rows", "1", "--pdf", pdf});
        const QString info = outputOf("pdfinfo", {pdf});
        EXPECT_TRUE(info.contains(QRegularExpression("Pages: +1\n"))) << info.toStdString();
        EXPECT_TRUE(info.contains(QRegularExpression("Page size: +595.* x 84[12]"))) << info.toStdString();
        QVector<Word> words;
        auto boxes = QRegularExpression("xMin=\"([^\"]+)\" yMin=\"([^\"]+)\" xMax=\"([^\"]+)\"[^>]*>([^<]*)<")
                         .globalMatch(outputOf("pdftotext", {"-bbox", pdf, "-"}));
        while (boxes.hasNext()) {
            const auto of = boxes.next();
            words.append({of.captured(1).toDouble() * 20, of.captured(3).toDouble() * 20,
                          of.captured(2).toDouble() * 20, of.captured(4)});
        }
        const QJsonArray drawn = QJsonDocument::fromJson(outputOf("python3", {"-c", operators, pdf}).toUtf8()).array();
        const QJsonArray lines = drawn[0].toArray(), starts = drawn[1].toArray();
        QString error;
        const auto report = loadTemplate(path, &error);
        ASSERT_TRUE(report) << error.toStdString();
        int y = report->topMargin, texts = 0;
        QHash<QString, double> offsets; // of Chinese glyphs, whose font has another ascent: one for each font
        for (const Section &section : report->sections) {
            for (const ReportObject &object : section.objects) {
                SCOPED_TRACE(object.name.toStdString());
                const int left = report->leftMargin + object.x1, right = report->leftMargin + object.x2;
                const int top = y + object.y1;
                if (object.kind == ObjectKind::Line) {
                    EXPECT_TRUE(lines.contains(QJsonArray{left, top, right, y + object.y2, object.weight * 15}));
                    continue;
                }
                QVector<Word> line;
                for (const Word &word : words)
                    if (qAbs(word.top - top) < 70 && word.left > left - 2 && word.right < right + 2)
                        line.append(word);
                if (line.isEmpty()) { // nothing to fill it with, or so near another that both are read as one word
                    const bool begins = std::any_of(starts.begin(), starts.end(), [&](const QJsonValue &start) {
                        return qAbs(start[0].toDouble() - left) < 1 && start[1].toDouble() > top &&
                               start[1].toDouble() < y + object.y2;
                    });
                    EXPECT_TRUE(object.isFree() || begins) << "nothing printed";
                    continue;
                }
                ++texts;
                if (!object.text.isEmpty() && !object.text.startsWith("L_")) {
                    EXPECT_TRUE(object.text.startsWith(line.first().text)) << line.first().text.toStdString();
                }
                const double from = line.first().left, to = line.last().right;
                const double place = object.align == TextAlign::Left    ? from - left
                                     : object.align == TextAlign::Right ? to - right
                                                                        : (from + to - left - right) / 2;
                EXPECT_NEAR(place, 0, 1);
                const bool chinese = line.first().text[0].unicode() >= 0x2e80;
                const QString key = QString("%1 %2").arg(object.font).arg(chinese);
                if (!offsets.contains(key))
                    offsets[key] = chinese ? line.first().top - top : 0;
                EXPECT_NEAR(line.first().top - top, offsets[key], 1);
            }
            y += section.height;
        }
        EXPECT_GT(texts, 50);
    }
}

} // namespace tradewick
