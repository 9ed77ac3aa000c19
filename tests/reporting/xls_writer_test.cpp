#include "reporting/xls_writer.h"
#include "support/xls_readers.h"

#include <QDir>
#include <QTemporaryDir>

#include <csignal>
#include <limits>
#include <sys/resource.h>
#include <sys/stat.h>

namespace tradewick::test
{

using namespace Qt::StringLiterals;

class Xls : public testing::Test
{
protected:
    QTemporaryDir folder;
    QString path = folder.filePath(u"目标.xls"_s);

    void save(XlsWriter &writer)
    {
        QString error;
        ASSERT_TRUE(writer.save(path, &error)) << error.toStdString();
    }
};

TEST_F(Xls, TextsComeBackToTheCharacter)
{
    const QStringList texts{u"0012"_s,
                            u"形式发票 PROFORMA INVOICE"_s,
                            u"café ÿ"_s,
                            u"第一行\n第二行\ttab"_s,
                            QString(QChar(0)) + QChar(1) + QChar(0x1f) + QChar(0x7f),
                            u"😀👩‍👧 货柜🚢"_s,
                            u"مرحبا שלום"_s,
                            u"=1+1"_s,
                            u" "_s,
                            u"  两端  "_s};
    XlsWriter writer;
    const quint16 plain = writer.format({});
    for (const QString &text : texts) {
        writer.beginRow();
        writer.text(1, text, plain);
        writer.text(2, {}, plain);
        writer.text(3, text, plain); // the second time from the shared table
    }
    save(writer);
    const QJsonArray rows = cells(readSheet(path));
    ASSERT_EQ(rows.size(), texts.size());
    for (int i = 0; i < texts.size(); ++i)
        EXPECT_EQ(rows[i].toArray(), (QJsonArray{QJsonValue(), texts[i], QJsonValue(), texts[i]})) << i;
    const QByteArray csv = output(u"xls2csv"_s, {u"-dutf-8"_s, path});
    EXPECT_TRUE(csv.contains("PROFORMA INVOICE") && csv.contains("\"0012\"")) << csv.toStdString();
}

TEST_F(Xls, NumbersComeBackExactly)
{
    const QVector<double> numbers{
        0,          1,       -1,        536870911, -536870912,           536870912, 0.01,
        0.1,        1234.56, -99999.99, 1.0 / 3,   123456789012345.0,    1e300,     -5e-324,
        1.7e308,    0.07,    0.29,      100.5,     0.049999999999999996, 2.675,     5368709.11,
        -5368709.13};
    XlsWriter writer;
    const quint16 plain = writer.format({});
    for (const double number : numbers) {
        writer.beginRow();
        writer.number(0, number, plain);
    }
    writer.beginRow();
    writer.number(0, std::numeric_limits<double>::infinity(), plain);
    save(writer);
    const QJsonArray rows = cells(readSheet(path));
    ASSERT_EQ(rows.size(), numbers.size() + 1);
    for (int i = 0; i < numbers.size(); ++i)
        EXPECT_EQ(rows[i][0].toDouble(1e99), numbers[i]) << i;
    EXPECT_EQ(rows.last()[0].toString(), u"inf"_s);
}

// Texts that end, start or tear at every place around the limit of a record.
TEST_F(Xls, TextsCrossTheRecordLimit)
{
    QStringList texts;
    for (int length = 8224 - 30; length < 8224 + 10; ++length) {
        texts << QString(length, QLatin1Char('a')) + QString::number(length);
        texts << QString(length / 2, QChar(0x4e00 + length % 1000)) + QString::number(length);
        texts << u"é%1"_s.arg(length) << u"字%1"_s.arg(length);
    }
    texts << QString(32767, QChar(0x8d27)) << QString(32767, QLatin1Char('x'));
    for (int i = 0; i < 6000; ++i) // short ones of uneven lengths
        texts << QString(i % 7, QLatin1Char('s')) + QString(i % 3, QChar(0x6c49)) + QString::number(i);
    XlsWriter writer;
    const quint16 plain = writer.format({});
    for (const QString &text : std::as_const(texts)) {
        writer.beginRow();
        writer.text(0, text, plain);
    }
    save(writer);
    const QJsonArray rows = cells(readSheet(path));
    ASSERT_EQ(rows.size(), texts.size());
    for (int i = 0; i < texts.size(); ++i)
        ASSERT_EQ(rows[i][0].toString(), texts[i]) << i;
}

TEST_F(Xls, LongTextGoesOnInRowsBelow)
{
    const QString text = QString(32766, QChar(0x6587)) + u"😀"_s + QString(40000, QLatin1Char('b'));
    XlsWriter writer;
    const quint16 plain = writer.format({});
    writer.beginRow();
    writer.text(0, u"left"_s, plain);
    writer.text(1, text, plain);
    writer.beginRow();
    writer.text(0, u"next"_s, plain);
    save(writer);
    const QJsonArray rows = cells(readSheet(path));
    ASSERT_EQ(rows.size(), 4);
    EXPECT_EQ(rows[0][1].toString().size(), 32766); // the pair stays whole
    EXPECT_EQ(rows[0][1].toString() + rows[1][1].toString() + rows[2][1].toString(), text);
    EXPECT_EQ(rows[3][0].toString(), u"next"_s);
}

TEST_F(Xls, EveryNumberOfRows)
{
    struct Case {
        int rows, titles;
        QVector<int> sheets;
    };
    for (const Case &one :
         {Case{0, 0, {0}}, Case{1, 0, {1}}, Case{1, 1, {1}}, Case{33, 2, {33}}, Case{65536, 0, {65536}},
          Case{65537, 0, {65536, 1}}, Case{70000, 2, {65536, 4466}}, Case{140000, 0, {65536, 65536, 8928}}}) {
        XlsWriter writer(u"报表"_s);
        const quint16 plain = writer.format({});
        for (int i = 0; i < one.rows; ++i) {
            writer.beginRow();
            writer.number(0, i, plain);
            writer.text(1, u"row %1"_s.arg(i), plain);
            if (i + 1 == one.titles) {
                writer.merge(1, 2);
                writer.markTitles();
            }
        }
        save(writer);
        const QJsonObject book = readWorkbook(path);
        const QJsonArray sheets = book[u"sheets"_s].toArray();
        ASSERT_EQ(sheets.size(), one.sheets.size()) << one.rows;
        int row = 0;
        for (int i = 0; i < sheets.size(); ++i) {
            const QJsonObject sheet = sheets[i].toObject();
            EXPECT_EQ(sheet[u"name"_s].toString(), i == 0 ? u"报表"_s : u"报表 (%1)"_s.arg(i + 1));
            const QJsonArray rows = cells(sheet);
            ASSERT_EQ(rows.size(), one.sheets[i]);
            for (int j = 0; j < rows.size(); ++j) {
                const int expected = i > 0 && j < one.titles ? j : row++;
                ASSERT_EQ(rows[j][0].toInt(-1), expected);
                ASSERT_EQ(rows[j][1].toString(), u"row %1"_s.arg(expected));
            }
            EXPECT_EQ(sheet[u"merged"_s].toArray().size(), one.titles > 0 ? 1 : 0);
        }
        EXPECT_EQ(row, one.rows);
        QJsonArray titles;
        for (int i = 0; one.titles > 0 && i < sheets.size(); ++i)
            titles.append(QJsonArray{i, i + 1, 0, one.titles});
        EXPECT_EQ(book[u"titles"_s].toArray(), titles);
    }
}

TEST_F(Xls, LooksAreKept)
{
    XlsWriter writer(u"a[b]:c*?/\\d very long name that no sheet could bear"_s);
    const QVector<XlsFormat> formats{{},
                                     {.face = u"Arial"_s, .twips = 360, .bold = true, .align = XlsAlign::Centre},
                                     {.colour = 0x123456, .align = XlsAlign::Right, .number = u"#,##0.00"_s},
                                     {.colour = 0xff0000, .number = u"0.000"_s},
                                     {.face = u"隶书"_s, .number = u"0.0000"_s},
                                     {.number = u"0.000"_s}};
    writer.setColumnWidths({1050, 2100, 99999});
    for (const XlsFormat &format : formats) {
        EXPECT_EQ(writer.format(format), writer.format(format));
        writer.breakPage();
        writer.breakPage();
        writer.beginRow(400);
        writer.number(0, 1, writer.format(format));
        writer.merge(0, 3);
    }
    save(writer);
    const QJsonObject sheet = readSheet(path);
    EXPECT_EQ(sheet[u"name"_s].toString(), u"abcd very long name that"_s);
    EXPECT_EQ(sheet[u"widths"_s].toArray(), (QJsonArray{2560, 5120, 65280}));
    EXPECT_EQ(sheet[u"breaks"_s].toArray(), (QJsonArray{1, 2, 3, 4, 5}));
    for (int i = 0; i < formats.size(); ++i) {
        const XlsFormat &format = formats[i];
        const quint32 c = format.colour;
        const QJsonArray look = sheet[u"looks"_s][i][0].toArray();
        EXPECT_EQ(look.first().toString(), format.face);
        EXPECT_EQ(look[1].toInt(), format.twips);
        EXPECT_EQ(look[2].toInt(), format.bold ? 700 : 400);
        EXPECT_EQ(look[3].toString(), format.number.isEmpty() ? u"General"_s : format.number);
        EXPECT_EQ(look[4].toInt(), int(format.align));
        if (c != 0) {
            EXPECT_EQ(look[5].toArray(), (QJsonArray{int(c >> 16), int(c >> 8 & 255), int(c & 255)}));
        }
        EXPECT_EQ(sheet[u"heights"_s][i].toInt(), 400);
        EXPECT_EQ(sheet[u"merged"_s][i].toArray(), (QJsonArray{i, i + 1, 0, 4}));
    }
}

TEST_F(Xls, FailureKeepsTheOldFileAndLeavesNoOther)
{
    const auto filled = [](int column) {
        XlsWriter writer;
        for (int i = 0; i < 3000; ++i) {
            writer.beginRow();
            writer.text(column, QString::number(i), writer.format({}));
        }
        return writer;
    };
    XlsWriter old = filled(0);
    save(old);
    QString error;
    EXPECT_FALSE(filled(256).save(path, &error));
    EXPECT_TRUE(error.contains(u"256"_s));
    EXPECT_TRUE(filled(255).save(path, &error));

    QDir().mkdir(folder.filePath(u"dir.xls"_s));
    for (const QString &bad : {u"dir.xls"_s, u"no/such/folder.xls"_s, u"目标.xls/a.xls"_s}) {
        error.clear();
        EXPECT_FALSE(filled(0).save(folder.filePath(bad), &error)) << bad.toStdString();
        EXPECT_TRUE(error.contains(bad)) << error.toStdString();
    }

    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit full{30000, limit.rlim_max}; // as on a full disk
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &full);
    EXPECT_FALSE(filled(1).save(path, &error));
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Dirs | QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot),
              (QStringList{u"dir.xls"_s, u"目标.xls"_s}));
    EXPECT_EQ(cells(readSheet(path))[0].toArray().size(), 256);
}

} // namespace tradewick::test
