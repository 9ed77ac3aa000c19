#include "report_helpers.h"

#include <QDate>

#include <cmath>

namespace tradewick::test
{

namespace
{

const QString detailOf5000 =
    R"(<detail height="5000"><field name="D" left="0" top="0" width="5000" height="300" dataField="name"/></detail>)";

QVector<PagePtr> layOut(const std::shared_ptr<const ReportTemplate> &report, std::unique_ptr<RowSource> rows,
                        const FormatRule &rule = {}, const QHash<QString, QString> &labels = {})
{
    return Layout(report, std::move(rows), labels, {}, paperFor(*report), rule).all();
}

std::unique_ptr<RowSource> named(const QStringList &names)
{
    QVector<QVariantList> rows;
    for (const QString &name : names)
        rows.append({name});
    return std::make_unique<TestRows>(QStringList{"Name"}, rows);
}

std::string joined(const QVector<PagePtr> &pages)
{
    QStringList texts;
    for (const PagePtr &page : pages)
        texts.append(textsOf(*page).join(' '));
    return texts.join(" | ").toStdString();
}

TEST(Layout, PrintsValuesByTheirFormat)
{
    const struct {
        QVariant value;
        QString format, text;
    } cases[] = {
        {{}, "0.00", ""},
        {1234.5, "#,##0.00", "1,234.50"},
        {-1234567.891, "#,##0.00", "-1,234,567.89"},
        {1.005, "0.00", "1.00"},
        {3.125, "0.00", "3.12"},
        {1234.375, "#,##0.00", "1,234.38"},
        {1.1 + 2.035, "0.00", "3.14"}, // 3.1349999999999998
        {2.675, "0.00", "2.68"},
        {-0.001, "0.00", "0.00"},
        {"12.5", "0.00", "12.50"},
        {"no number", "0.00", "no number"},
        {0.1 + 0.2, "", "0.3"},
        {0.5, "", "0.5"},
        {1e15, "", "1000000000000000"},
        {12, "", "12"},
        {QDate(2006, 3, 5), "mmmm d, yyyy", "March 5, 2006"},
        {"2006-03-05", "mmmm d, yyyy", "March 5, 2006"},
        {QDateTime(QDate(2006, 12, 25), QTime(8, 0)), "mmmm d, yyyy", "December 25, 2006"},
        {"soon", "mmmm d, yyyy", "soon"},
        {QDate(2026, 11, 24), "", "2026-11-24"},
        {"NB-1 木框", "", "NB-1 木框"},
    };
    for (const auto &of : cases)
        EXPECT_EQ(printedText(of.value, of.format).toStdString(), of.text.toStdString());
}

TEST(Layout, BandsStandInTheirOrderWithinTheMargins)
{
    const auto report = templateOf(R"(
        <pageHeader height="1000"><label name="H" left="50" top="10" width="900" height="300">head</label></pageHeader>
        <groupHeader level="1" height="400"><label name="G" left="0" top="0" width="900" height="300">cols</label>
        </groupHeader>)" + detailOf5000 +
                                   R"(<groupFooter level="1" height="600"><label name="S" left="0" top="0" width="900"
        height="300">sum</label></groupFooter><pageFooter height="300"><label name="p_number" left="0" top="0"
        width="900" height="300"/><field name="F" left="900" top="0" width="900" height="300" pageTotal="true"/>
        </pageFooter>)");
    const auto pages = layOut(report, named({"a", "b", "c"}), reportFamilyB().rule);
    // 16838 less 200 + 1000 above and 200 + 300 below leave room for heads of 400 and two rows of 5000; the group
    // footer would still fit on the second page behind the third
    EXPECT_EQ(joined(pages), "head cols a b 1 2 | head cols c sum 2 2");
    ASSERT_EQ(pages.size(), 2);
    const QVector<PageItem> &items = pages[0]->items;
    EXPECT_EQ(items[0].box(), QRect(150, 210, 900, 300));
    EXPECT_EQ(items[1].box(), QRect(100, 1200, 900, 300));
    EXPECT_EQ(items[2].y1, 1600);
    EXPECT_EQ(items[3].y1, 6600);
    EXPECT_EQ(items[4].y1, 16838 - 200 - 300);
    EXPECT_EQ(pages[1]->number, 2);
}

TEST(Layout, GroupsOpenAndCloseFromTheOutermostThatChanges)
{
    const auto label = [](const QString &name, const QString &field) {
        return QStringLiteral("<field name='%1' left='0' top='0' width='500' height='200' dataField='%2'/>")
            .arg(name, field);
    };
    const auto sum = [](const QString &name, int level, const QString &more) {
        return QStringLiteral("<field name='%1' left='600' top='0' width='500' height='200' dataField='SL' "
                              "summaryGroup='GroupHeader%2' %3/>")
            .arg(name)
            .arg(level)
            .arg(more);
    };
    const QString bands =
        "<groupHeader level='1' height='250' groupField='HTBH'>" + label("A", "htbh") +
        "</groupHeader><groupHeader level='2' height='250' groupField='lb'>" + label("B", "LB") +
        "</groupHeader><groupHeader level='3' height='0' groupField='missing'/><detail height='250'>" +
        label("C", "name") + "</detail><groupFooter level='3' height='0'/>" + "<groupFooter level='2' height='250'>" +
        label("D", "name") + sum("E", 2, "summary='sum' format='0.00'") +
        "</groupFooter><groupFooter level='1' height='250'>" + label("F", "htbh") + sum("G", 1, "summary='count'") +
        "</groupFooter>";
    const auto report = templateOf(bands);
    const QStringList columns{"htbh", "lb", "name", "sl"};
    const auto rows = [&columns](const QVector<QVariantList> &of) { return std::make_unique<TestRows>(columns, of); };
    EXPECT_EQ(joined(layOut(report, rows({{"X", "p", "r1", 1},
                                          {"X", "p", "r2", 2},
                                          {"X", "q", "r3", 4},
                                          {"Y", "q", "r4", QVariant()},
                                          {"Y", "q", "r5", 16}}))),
              // the group that just closed, not the row that opened the next
              "X p r1 r2 r2 3.00 q r3 r3 4.00 X 3 Y q r4 r5 r5 16.00 Y 1");
    // no rows: the bands once, their fields empty
    EXPECT_EQ(joined(layOut(report, rows({}))), "");
    // running over the report
    QString running = bands;
    running.replace("summary='sum'", "summary='sum' running='report'");
    EXPECT_EQ(joined(layOut(templateOf(running), rows({{"X", "p", "r1", 1}, {"Y", "p", "r2", 2}}))),
              "X p r1 r1 1.00 X 1 Y p r2 r2 3.00 Y 1");
}

TEST(Layout, FieldsTakeTheCurrentRowWhateverTheCaseOfTheirColumn)
{
    const auto report = templateOf(R"(
        <pageHeader height="5000"><field name="H" left="0" top="0" width="900" height="300" dataField="NAME"/></pageHeader>
        <detail height="5000"><field name="D" left="0" top="0" width="900" height="300" dataField="nAmE"/>
          <field name="E" left="0" top="300" width="900" height="300" dataField="nowhere">never</field>
          <field name="L" left="0" top="600" width="900" height="300">initial</field>
          <label name="L_F" left="0" top="900" width="900" height="300"/>
          <label name="V" left="0" top="1200" width="900" height="300" visible="false">hidden</label></detail>
        <pageFooter height="300"><field name="F" left="0" top="0" width="900" height="300" dataField="name"/></pageFooter>)");
    EXPECT_EQ(joined(layOut(report, named({"a", "b", "c"}), {}, {{"L_F", "free"}})),
              "a a free b free b | c c free c");
    // without a source the detail band comes once, with what the caller wrote
    EXPECT_EQ(joined(layOut(report, nullptr, {}, {{"L_F", "free"}})), "free");
    // without rows there is a page, but no detail
    const auto none = layOut(report, named({}));
    ASSERT_EQ(none.size(), 1);
    EXPECT_EQ(joined(none), "");
}

TEST(Layout, HeadsStayWithTheirFirstRowAndFormsAreNotRepeated)
{
    // a group head at the end of a page waits for its first row
    const auto grouped = templateOf("<groupHeader level='1' height='1000' groupField='name'><label name='G' left='0' "
                                    "top='0' width='900' height='300'>head</label></groupHeader>" +
                                    detailOf5000 + "<groupFooter level='1' height='0'/>");
    EXPECT_EQ(joined(layOut(grouped, named({"a", "a", "b"}))), "head a a | head b");
    // a form in the group header that fills its page stands there once, however many rows there are
    const auto form = templateOf("<groupHeader level='1' height='15000'><label name='G' left='0' top='0' width='900' "
                                 "height='300'>form</label></groupHeader><detail height='0'><label name='D' left='0' "
                                 "top='0' width='900' height='300'>never</label></detail><groupFooter level='1' "
                                 "height='3000'><label name='S' left='0' top='0' width='900' height='300'>sum</label>"
                                 "</groupFooter>");
    EXPECT_EQ(joined(layOut(form, named({"a", "b", "c"}))), "form | sum");
    // bands taller than the page: one a page, and an end
    const auto tall = templateOf("<detail height='20000'><field name='D' left='0' top='0' width='900' height='300' "
                                 "dataField='name'/></detail>");
    EXPECT_EQ(joined(layOut(tall, named({"a", "b"}))), "a | b");
}

TEST(Layout, SumsOfManyAmountsAreThoseOfTheDecimals)
{
    const auto report = templateOf("<groupHeader level='1' height='0'/><detail height='0'/><groupFooter level='1' "
                                   "height='300'><field name='S' left='0' top='0' width='900' height='300' "
                                   "dataField='je' summary='sum' summaryGroup='GroupHeader1'/></groupFooter>");
    const auto sumOf = [&report](int count, const TestRows::Make &make) {
        return joined(layOut(report, std::make_unique<TestRows>(QStringList{"je"}, count, make)));
    };
    EXPECT_EQ(sumOf(100000, [](int) { return QVariantList{0.1}; }), "10000");
    EXPECT_EQ(sumOf(3, [](int row) { return QVariantList{row == 0 ? 1e16 : row == 1 ? 0.25 : -1e16}; }), "0.25");
}

TEST(Layout, PaperFollowsTheWidth)
{
    EXPECT_EQ(paperFor(*templateOf("<detail height='0'/>", 11706)), (Paper{11906, 16838, 1}));
    EXPECT_EQ(paperFor(*templateOf("<detail height='0'/>", 11707)), (Paper{16838, 11906, 1}));
    const Paper wide = paperFor(*templateOf("<detail height='0'/>", 26805));
    EXPECT_EQ(wide.width, 27005);
    EXPECT_NEAR(wide.width * wide.scale, 16838, 1);
    EXPECT_NEAR(wide.height * wide.scale, 11906, 1);
}

TEST(Layout, TextStaysInItsBox)
{
    const auto report = templateOf(R"(<detail height="4000">
        <field name="left" left="0" top="0" width="1000" height="240" dataField="a"/>
        <field name="right" left="1000" top="0" width="1000" height="240" align="right" dataField="a"/>
        <field name="centre" left="2000" top="0" width="1000" height="240" align="center" dataField="a"/>
        <field name="lines" left="0" top="1000" width="1000" height="2000" dataField="b"/>
        <field name="cut" left="0" top="3000" width="1000" height="240" align="right" dataField="b"/>
        </detail>)");
    const auto arranged = [&report](const QString &a, const QString &b) {
        const auto pages =
            layOut(report, std::make_unique<TestRows>(QStringList{"a", "b"}, QVector<QVariantList>{{a, b}}));
        QHash<QString, TextLines> lines;
        for (const PageItem &item : pages[0]->items) {
            TextLines of = arrange(*pages[0], item);
            for (const TextLine &line : of.lines)
                EXPECT_GT(line.baseline, item.y1);
            lines[item.object->name] = of;
        }
        // the texts are views of the page, which ends here
        QHash<QString, QPair<QStringList, TextLines>> kept;
        for (auto at = lines.cbegin(); at != lines.cend(); ++at) {
            QStringList texts;
            for (const TextLine &line : at->lines)
                texts.append(line.text.toString());
            kept[at.key()] = {texts, at.value()};
        }
        return kept;
    };
    const auto one = arranged("12.50", "ROUND WOODEN FRAMES 木制圆形相框，带镜子。\nSECOND");
    EXPECT_EQ(one["left"].second.lines[0].x, 100);
    const TextLine &right = one["right"].second.lines[0], &centre = one["centre"].second.lines[0];
    EXPECT_NEAR(right.x + right.width, 2100, 0.01);
    EXPECT_NEAR(centre.x + centre.width / 2, 2600, 0.01);
    EXPECT_FALSE(one["right"].second.overflows);

    const QStringList &lines = one["lines"].first;
    EXPECT_EQ(lines.last(), "SECOND");
    EXPECT_EQ(lines.join("").remove(' '), "ROUNDWOODENFRAMES木制圆形相框，带镜子。SECOND");
    EXPECT_TRUE(lines.contains("WOODEN")) << lines.join('|').toStdString();
    for (const QString &line : lines)
        EXPECT_FALSE(line.startsWith(u'，') || line.startsWith(u'。')) << line.toStdString();
    for (const TextLine &line : one["lines"].second.lines)
        EXPECT_LE(line.width, 1000.5);
    EXPECT_FALSE(one["lines"].second.overflows);

    // one line: cut at its edge, its beginning kept whatever the alignment
    EXPECT_EQ(one["cut"].first.size(), 1);
    EXPECT_TRUE(one["cut"].second.overflows);
    EXPECT_EQ(one["cut"].second.lines[0].x, 100);

    // a word wider than the box, marks that combine and characters beyond the first plane end too
    const auto odd =
        arranged("", QString(60, 'W') + QString::fromUtf8(" e\u0301\u0301 😀😀😀😀😀😀😀 ") + QString(5000, u'木'));
    EXPECT_EQ(odd["lines"].first.size(), 9);
}

TEST(Layout, PageStampsFollowTheClockAtEachPage)
{
    static int calls;
    calls = 0;
    reportClock = [] { return QDateTime(QDate(2026, 11, 24), QTime(23, 59, 58)).addSecs(calls++ < 1 ? 0 : 3); };
    const auto report = templateOf("<detail height='9000'/><pageFooter height='300'>" + [] {
        QString labels;
        int left = 0;
        for (const char *name : {"p_year", "p_month", "p_day", "p_week", "p_time", "p_number"})
            labels += QStringLiteral("<label name='%1' left='%2' top='0' width='900' height='300'/>")
                          .arg(QLatin1String(name))
                          .arg(left += 900);
        return labels;
    }() + "</pageFooter>");
    QVector<PagePtr> pages;
    pages = layOut(report, named({"a", "b"}), reportFamilyC().rule);
    reportClock = &QDateTime::currentDateTime;
    EXPECT_EQ(joined(pages), "2026年 11月 24日 星期二 23:59:58 1 | 2026年 11月 25日 星期三 0:00:01 2");
}

TEST(Layout, RowsAreReadOnlyAsFarAsPagesAreTaken)
{
    static int made;
    made = 0;
    const auto report = templateOf(detailOf5000);
    Layout layout(report,
                  std::make_unique<TestRows>(QStringList{"name"}, 1000000,
                                             [](int row) {
                                                 ++made;
                                                 return QVariantList{row};
                                             }),
                  {}, {}, paperFor(*report));
    const PagePtr first = layout.next();
    ASSERT_TRUE(first);
    EXPECT_EQ(textsOf(*first), (QStringList{"0", "1", "2"}));
    EXPECT_LE(made, 4);
    EXPECT_EQ(first->items[1].number, 1);
}

} // namespace

} // namespace tradewick::test
