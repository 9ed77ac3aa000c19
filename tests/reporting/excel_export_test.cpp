#include "reporting/excel_dialog.h"
#include "reporting/excel_export.h"
#include "support/scripted_dialogs.h"
#include "support/xls_readers.h"

#include <QApplication>
#include <QFileSystemModel>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeView>

#include <deque>
#include <limits>

namespace tradewick::test
{

using namespace Qt::StringLiterals;

namespace
{

constexpr double none = std::numeric_limits<double>::quiet_NaN();

// A text to be put on a page.
struct Text {
    int left, top, width, height;
    QString words;
    double number = none;
    QString format{};
    TextAlign align = TextAlign::Left;
    SectionKind band = SectionKind::Detail;
    int font = 0;
};

Text head(int left, int top, int width, const QString &words)
{
    return {left, top, width, 300, words, none, {}, TextAlign::Left, SectionKind::PageHeader};
}

QStringList textsIn(const QJsonArray &rows)
{
    QStringList texts;
    for (const auto &row : rows) {
        for (const auto &cell : row.toArray()) {
            if (!cell.isNull())
                texts << cell.toVariant().toString();
        }
    }
    return texts;
}

} // namespace

class ExcelExport : public testing::Test
{
protected:
    QTemporaryDir folder;
    QString path = folder.filePath(u"out.xls"_s);
    QString error;

    QJsonObject exported(const QVector<PagePtr> &pages)
    {
        EXPECT_TRUE(exportToExcel(pages, path, &error)) << error.toStdString();
        return readWorkbook(path);
    }
    std::shared_ptr<ReportTemplate> report = std::make_shared<ReportTemplate>();
    std::shared_ptr<PageContext> context = std::make_shared<PageContext>();
    std::deque<ReportObject> objects; // the pages' items point at them

    ExcelExport()
    {
        report->caption = u"装箱单_列印"_s;
        report->fonts = {{}, {.face = u"黑体"_s, .points = 18, .bold = true}};
        context->report = report;
    }
    PagePtr page(const QVector<Text> &texts)
    {
        auto made = std::make_shared<Page>();
        made->context = context;
        for (const Text &text : texts) {
            ReportObject &object = objects.emplace_back();
            object.kind = ObjectKind::Field;
            object.format = text.format;
            object.align = text.align;
            object.font = text.font;
            made->items.append({.object = &object,
                                .band = text.band,
                                .x1 = text.left,
                                .y1 = text.top,
                                .x2 = text.left + text.width,
                                .y2 = text.top + text.height,
                                .start = quint32(made->characters.size()),
                                .length = quint32(text.words.size()),
                                .number = text.number});
            made->characters += text.words;
        }
        return made;
    }
    static QJsonObject sheet(const QJsonObject &book, int index = 0) { return book[u"sheets"_s][index].toObject(); }
};

TEST_F(ExcelExport, PositionsBecomeColumnsAndJoinedCells)
{
    const QJsonObject book =
        exported({page({{7030, 1000, 2000, 300, u"1,234.50"_s, 1234.5, u"#,##0.00"_s, TextAlign::Right},
                        {140, 700, 2000, 300, u"货号"_s}, // items come in any order
                        {3000, 720, 2000, 300, u"数量"_s},
                        {7000, 690, 2110, 300, u"金额"_s},
                        {140, 0, 9000, 400, u"装箱单"_s, none, {}, TextAlign::Centre, SectionKind::Detail, 1},
                        {150, 1010, 2000, 300, u"00123"_s, none, u"0"_s},
                        {3010, 1000, 2000, 300, u"-7"_s, -7},
                        {140, 1300, 6000, 300, u"合计 TOTAL"_s},
                        {7000, 1300, 2000, 300, u"1e15"_s, 1e15},
                        {3000, 3900, 2000, 300, u"123456789012"_s, 123456789012},
                        {140, 3300, 6900, 300, u"  "_s},
                        {140, 3900, 2000, 300, {}}})});
    const QJsonArray rows = cells(sheet(book));
    const QJsonValue empty;
    EXPECT_EQ(rows, (QJsonArray{QJsonArray{u"装箱单"_s, empty, empty}, QJsonArray{u"货号"_s, u"数量"_s, u"金额"_s},
                                QJsonArray{u"00123"_s, -7, 1234.5}, QJsonArray{u"合计 TOTAL"_s, empty, u"1e15"_s},
                                QJsonArray{empty, empty, empty}, QJsonArray{u"  "_s, empty, empty},
                                QJsonArray{empty, 123456789012.0, empty}}));
    EXPECT_EQ(sheet(book)[u"merged"_s].toArray(),
              (QJsonArray{QJsonArray{0, 1, 0, 3}, QJsonArray{3, 4, 0, 2}, QJsonArray{5, 6, 0, 2}}));
    const QJsonArray looks = sheet(book)[u"looks"_s].toArray();
    EXPECT_EQ(looks[0][0].toArray(), (QJsonArray{u"黑体"_s, 360, 700, u"General"_s, 2, empty}));
    EXPECT_EQ(looks[2][2].toArray().at(3).toString(), u"#,##0.00"_s);
    EXPECT_EQ(looks[2][2].toArray().at(4).toInt(), 3);
    EXPECT_EQ(looks[6][1].toArray().at(3).toString(), u"0"_s);
    const QJsonArray widths = sheet(book)[u"widths"_s].toArray();
    EXPECT_EQ(widths, (QJsonArray{2860 * 256 / 105, 4000 * 256 / 105, 2140 * 256 / 105}));
    EXPECT_EQ(sheet(book)[u"heights"_s].toArray(), (QJsonArray{690, 310, 300, 300, 1700, 600, 300}));
    EXPECT_EQ(book[u"titles"_s].toArray().size(), 0);
}

TEST_F(ExcelExport, TallTextJoinsTheRowsBesideIt)
{
    const QJsonObject book = exported({page({{0, 0, 1000, 900, u"tall"_s},
                                             {2000, 0, 900, 300, u"a"_s},
                                             {2000, 300, 900, 300, u"b"_s},
                                             {2000, 600, 900, 300, u"c"_s},
                                             {0, 900, 900, 300, u"d"_s},
                                             {2000, 900, 900, 900, u"stopped"_s},
                                             {2000, 1200, 900, 300, u"e"_s}})});
    EXPECT_EQ(textsIn(cells(sheet(book))).join(QLatin1Char(' ')), u"tall a b c d stopped e"_s);
    EXPECT_EQ(sheet(book)[u"merged"_s].toArray(), (QJsonArray{QJsonArray{0, 3, 0, 1}}));
}

TEST_F(ExcelExport, LongTextIsNotHidden)
{
    const QString longText = QString(40000, u'长');
    const QJsonObject only = sheet(exported({page({{0, 0, 3000, 900, longText},
                                                   {4000, 0, 900, 300, u"a"_s},
                                                   {4000, 300, 900, 300, u"b"_s},
                                                   {2000, 900, 900, 300, u"c"_s}})}));
    EXPECT_EQ(cells(only)[0][0].toString() + cells(only)[1][0].toString(), longText);
    EXPECT_EQ(only[u"merged"_s].toArray(), (QJsonArray{QJsonArray{0, 1, 0, 2}}));
    EXPECT_EQ(textsIn(cells(only)).mid(3), (QStringList{u"b"_s, u"c"_s}));
}

// Texts strewn over each other at random: none is lost and none hides in a joined cell of another.
TEST_F(ExcelExport, NoTextIsLost)
{
    QRandomGenerator random(20261124);
    QVector<PagePtr> pages;
    QStringList expected;
    for (int i = 0; i < 30; ++i) {
        QVector<Text> items;
        for (int j = 0; j < 60; ++j) {
            expected << u"%1/%2"_s.arg(i).arg(j);
            items << Text{random.bounded(30000), random.bounded(15000), random.bounded(9000), random.bounded(2000),
                          expected.last()};
        }
        pages << page(items);
    }
    const QJsonObject only = sheet(exported(pages));
    const QJsonArray rows = cells(only);
    QStringList found = textsIn(rows);
    found.sort();
    expected.sort();
    EXPECT_EQ(found, expected);
    QSet<std::pair<int, int>> joined;
    for (const auto &merge : only[u"merged"_s].toArray()) {
        for (int row = merge[0].toInt(); row < merge[1].toInt(); ++row) {
            for (int column = merge[2].toInt(); column < merge[3].toInt(); ++column) {
                EXPECT_FALSE(joined.contains({row, column})) << row << ' ' << column;
                joined.insert({row, column});
                const bool corner = row == merge[0].toInt() && column == merge[2].toInt();
                EXPECT_TRUE(corner || rows[row][column].isNull()) << row << ' ' << column;
            }
        }
    }
}

TEST_F(ExcelExport, SharedHeadsAreTitles)
{
    const auto sheetOf = [&](const QString &secondHead, const QString &thirdTitle) {
        const auto one = [&](const QString &title, const QString &second) {
            return page({head(0, 0, 4000, title),
                         head(0, 400, 1000, second),
                         head(2000, 400, 1000, u"列"_s),
                         {0, 800, 1000, 300, u"same"_s},
                         {2000, 800, 1000, 300, u"same"_s}});
        };
        const QString title = u"TITLE"_s;
        return exported({one(title, u"头"_s), one(title, secondHead), one(thirdTitle, u"头"_s)});
    };
    struct Case {
        QString second, third;
        int rows, titles, firstBreak;
    };
    for (const Case &one : {Case{u"头"_s, u"TITLE"_s, 2 + 3, 2, 3}, Case{u"头2"_s, u"TITLE"_s, 1 + 3 * 2, 1, 3},
                            Case{u"头"_s, u"TITLE 3"_s, 3 * 3, 0, 3}}) {
        const QJsonObject book = sheetOf(one.second, one.third);
        EXPECT_EQ(cells(sheet(book)).size(), one.rows);
        EXPECT_EQ(textsIn(cells(sheet(book))).count(u"same"_s), 6);
        EXPECT_EQ(sheet(book)[u"breaks"_s][0].toInt(), one.firstBreak);
        EXPECT_EQ(sheet(book)[u"breaks"_s].toArray().size(), 2);
        const QJsonArray titles = book[u"titles"_s].toArray();
        EXPECT_EQ(titles, one.titles > 0 ? (QJsonArray{QJsonArray{0, 1, 0, one.titles}}) : QJsonArray());
    }
}

TEST_F(ExcelExport, LongReport)
{
    constexpr int ofPage = 35, count = 2000;
    QVector<PagePtr> pages;
    for (int i = 0; i < count; ++i) {
        QVector<Text> items{head(0, 0, 9000, u"报表"_s)};
        for (int j = 0; j < ofPage; ++j) {
            const int row = i * ofPage + j;
            items << Text{0, 400 + j * 300, 1500, 300, u"HT%1"_s.arg(row)}
                  << Text{2000, 400 + j * 300, 1000, 300, QString::number(row), double(row)};
        }
        pages << page(items);
    }
    const QJsonObject book = exported(pages);
    int row = 0;
    for (const auto &one : book[u"sheets"_s].toArray()) {
        const QJsonArray rows = cells(one.toObject());
        EXPECT_EQ(rows[0][0].toString(), u"报表"_s);
        for (int i = 1; i < rows.size(); ++i, ++row) {
            ASSERT_EQ(rows[i][0].toString(), u"HT%1"_s.arg(row));
            ASSERT_EQ(rows[i][1].toInt(-1), row);
        }
    }
    EXPECT_EQ(row, ofPage * count);
}

TEST_F(ExcelExport, NothingIsExportedWithoutPagesOrName)
{
    EXPECT_TRUE(exportToExcel({}, path, &error));
    EXPECT_TRUE(exportToExcel({}, {}, &error));
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_TRUE(error.isEmpty());
    EXPECT_FALSE(exportToExcel({page({{0, 0, 9, 9, u"x"_s}})}, {}, &error));
    EXPECT_TRUE(error.contains(u"没有指定文件名"_s));
    EXPECT_EQ(cells(sheet(exported({page({})}))).size(), 0); // a page of nothing is a sheet of nothing
}

TEST_F(ExcelExport, ShownReportGoesIntoTheChosenFile)
{
    ScriptedDialogs answers;
    QWidget preview;
    preview.show();
    const auto run = [&](const std::function<void(SJ_EXCEL_ZH *)> &act) {
        QTimer::singleShot(0, &preview, [&] { act(qobject_cast<SJ_EXCEL_ZH *>(QApplication::activeModalWidget())); });
        exportShownReport({page({{0, 0, 900, 300, u"内容"_s}})}, &preview);
        EXPECT_TRUE(preview.isVisible());
    };
    const auto close = [](SJ_EXCEL_ZH *form) { form->close(); };
    const auto save = [&](SJ_EXCEL_ZH *form) {
        auto *tree = form->findChild<QTreeView *>(u"Dir1"_s);
        tree->setCurrentIndex(qobject_cast<QFileSystemModel *>(tree->model())->index(folder.path()));
        form->findChild<QPushButton *>(u"Cmd_export"_s)->click();
        if (form->isVisible())
            form->close();
    };
    excelTargetFile.clear();
    run(close); // at the first export no file has been named yet
    EXPECT_TRUE(answers.take().text.contains(u"没有指定文件名"_s));

    answers.typed = u"out"_s;
    run(save);
    EXPECT_EQ(answers.take().icon, MessageIcon::None); // the input box alone
    EXPECT_EQ(textsIn(cells(readSheet(path))), QStringList{u"内容"_s});

    EXPECT_TRUE(QFile::remove(path));
    run(close); // the file named before is written once more
    EXPECT_TRUE(answers.shown.isEmpty());
    EXPECT_TRUE(QFile::exists(path));

    answers.typed = u"no/such"_s;
    run(save);
    ASSERT_EQ(answers.shown.size(), 2);
    EXPECT_EQ(answers.shown[1].icon, MessageIcon::Exclamation);
    EXPECT_TRUE(answers.shown[1].text.contains(u"no/such.xls"_s));
}

} // namespace tradewick::test
