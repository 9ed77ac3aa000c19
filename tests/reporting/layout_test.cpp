#include "report_helpers.h"
#include "reporting/text_lines.h"

#include <QDate>

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
        {1234.625, "#,##0.00", "1,234.62"},
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
    // no rows: no group begins, so none ends, fixed texts of its bands included
    QString fixed = bands;
    fixed.replace("'HTBH'>", "'HTBH'><label name='T' left='0' top='0' width='90' height='200'>fixed</label>");
    EXPECT_EQ(joined(layOut(templateOf(fixed), rows({}))), "");
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
    EXPECT_EQ(joined(layOut(report, named({"a", "b", "c"}), {}, {{"L_F", "free"}})), "a a free b free b | c c free c");
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
    const auto form =
        templateOf("<groupHeader level='1' height='15000'><label name='G' left='0' top='0' width='900' "
                   "height='300'>form</label></groupHeader><detail height='0'><label name='D' left='0' "
                   "top='0' width='900' height='300'>never</label></detail><groupFooter level='1' "
                   "height='3000'><label name='S' left='0' top='2700' width='900' height='300'>sum</label>"
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

TEST(Layout, PaperFollowsTheObjectsAndNotThePrintWidth)
{
    const struct {
        int left, width;
        QString more;
        int paper, from, to; // where the object begins and ends on the sheet
    } cases[] = {
        {0, 11580, "", 11906, 100, 11680},                 // told places stay as they are
        {0, 11900, "", 11906, 6, 11906},                   // moved where they would leave the sheet
        {0, 11907, "", 16838, 238, 12145},                 // across, inside of what can be printed
        {1000, 15500, "", 16838, 1100, 16600},             //
        {0, 16362, "", 16838, 238, 16600},                 //
        {0, 17295, "", 16838, 238, 16600},                 // and drawn smaller
        {0, 17295, "overlay='always'", 11906, 100, 17395}, // but not what goes into a form's boxes
        {-50, 600, "documentName='within it'", 11906, 50, 650},
    };
    for (const auto &of : cases) {
        const QString object = "<label name='%1' left='%2' top='0' width='%3' height='200' visible='%4'>text</label>";
        const auto report =
            templateOf("<pageHeader height='300'>" + object.arg("A").arg(of.left).arg(of.width).arg("true") +
                           object.arg("B").arg(0).arg(30000).arg("false") + "</pageHeader><detail height='0'>" +
                           object.arg("C").arg(0).arg(30000).arg("true") + "</detail>",
                       of.more);
        const auto pages = layOut(report, nullptr);
        const Paper &paper = pages[0]->context->paper;
        const QRect box = pages[0]->items[0].box();
        EXPECT_NEAR(paper.width * paper.scale, of.paper, 1) << of.width;
        EXPECT_NEAR(paper.height * paper.scale, 11906 + 16838 - of.paper, 1);
        EXPECT_NEAR(box.left() * paper.scale, of.from, 1);
        EXPECT_NEAR((box.left() + box.width()) * paper.scale, of.to, 1);
        EXPECT_EQ(pages[0]->overflows.isEmpty(), of.to <= of.paper);
    }
}

TEST(Layout, FormsThatFillTheirSheetStayOnePage)
{
    const QString bands = "<pageHeader height='10000'/><groupHeader level='1' height='3000'/><detail height='300'>"
                          "<field name='D' left='0' top='0' width='900' height='200' dataField='name'/></detail>"
                          "<groupFooter level='1' height='%1'><label name='S' left='0' top='%2' width='900' "
                          "height='200'>sum</label></groupFooter>";
    const struct {
        int footer, margin;
        QString pages;
    } cases[] = {{638, 1440, "a sum"},  // as the template has it: 2880 of margins and 13938 of bands
                 {2800, 1440, "a sum"}, // margins down to what printers leave white
                 {3300, 1440, "a | sum"},
                 {2800, 238, "a sum"}};
    for (const auto &of : cases)
        EXPECT_EQ(joined(layOut(templateOf(bands.arg(of.footer).arg(of.footer - 200), {}, of.margin), named({"a"}))),
                  of.pages.toStdString())
            << of.footer;
}

TEST(Layout, TotalsGoOnWithTheLastRowUnderTheHeads)
{
    const QString bands =
        "<groupHeader level='1' height='400' groupField='%4'><label name='G' left='0' top='0' width='900' "
        "height='300'>cols</label></groupHeader><detail height='%1'><field name='D' left='0' top='0' "
        "width='900' height='300' dataField='name'/></detail><groupFooter level='1' height='%2'><label "
        "name='S' left='0' top='%3' width='900' height='300'>sum</label></groupFooter><pageFooter "
        "height='300'><field name='F' left='0' top='0' width='900' height='300' dataField='name'/>"
        "</pageFooter>";
    const struct {
        int row, total;
        QStringList rows;
        const char *pages, *group;
    } cases[] = {{5000, 3000, {"a", "b", "c"}, "cols a b b | cols c sum c", ""},
                 {5000, 500, {"a", "b", "c"}, "cols a b c sum c", ""},
                 {9000, 8000, {"a"}, "cols a a | sum a", ""},                      // the only row stays with its heads
                 {5000, 12000, {"a", "b", "c"}, "cols a b c c | sum c", ""},       // no room for both
                 {5000, 3000, {"a", "b"}, "cols a sum a | cols b sum b", "name"}}; // the heads of a group go along
    for (const auto &of : cases)
        EXPECT_EQ(joined(layOut(templateOf(bands.arg(of.row).arg(of.total).arg(of.total - 300).arg(of.group)),
                                named(of.rows))),
                  of.pages);
    // that of the outer group does not fit behind that of the inner one, which goes along
    const auto nested = templateOf(
        bands.arg(5000)
            .arg(3000)
            .arg(2700)
            .arg("")
            .replace("<detail", "<groupHeader level='2' height='0'/><detail")
            .replace("</detail>", "</detail><groupFooter level='2' height='500'><label name='I' left='0' top='0' "
                                  "width='900' height='300'>inner</label></groupFooter>"));
    EXPECT_EQ(joined(layOut(nested, named({"a", "b", "c"}))), "cols a b b | cols c inner sum c");
}

TEST(Layout, ATableIsClosedWhereAPageEndsBehindOneOfItsRows)
{
    const auto report = templateOf(
        "<groupHeader level='1' height='0'/><detail height='4000'><line name='A' x1='100' y1='0' x2='100' y2='4000' "
        "weight='3'/><line name='B' x1='900' y1='0' x2='900' y2='4000'/><line name='C' x1='1200' y1='0' x2='1200' "
        "y2='3000'/></detail><groupFooter level='1' height='3000'><label name='S' left='0' top='0' width='900' "
        "height='3000'>sum</label></groupFooter>");
    const auto pages = layOut(report, named({"a", "b", "c", "d"}));
    ASSERT_EQ(pages.size(), 2);
    QVector<PageItem> closing;
    for (const PageItem &item : pages[0]->items + pages[1]->items)
        if (item.y1 == item.y2)
            closing.append(item);
    ASSERT_EQ(closing.size(), 1) << "not above the total";
    const int walls = pages[0]->items.first().x1;
    EXPECT_EQ(closing[0].x1, walls);
    EXPECT_EQ(closing[0].x2, walls + 800);
    EXPECT_EQ(closing[0].y1, pages[0]->items.first().y1 + 3 * 4000);
    EXPECT_EQ(closing[0].object->weight, 3);
    // behind the total of an inner group, too
    const auto grouped = templateOf(
        "<groupHeader level='1' height='0'/><groupHeader level='2' height='0' groupField='name'/><detail "
        "height='4000'><line name='A' x1='100' y1='0' x2='100' y2='4000'/><line name='B' x1='900' y1='0' x2='900' "
        "y2='4000'/></detail><groupFooter level='2' height='1000'><label name='S' left='0' top='0' width='900' "
        "height='900'>sum</label></groupFooter><groupFooter level='1' height='300'/>");
    const auto first = layOut(grouped, named({"a", "b", "c", "d"})).first()->items;
    EXPECT_EQ(first.last().y1, first.first().y1 + 3 * 5000);
    EXPECT_EQ(first.last().y2, first.last().y1);
}

TEST(Layout, BandsGrowForTheirTextsAndMoveWhatStandsBelow)
{
    const QString bands = R"(<detail height="1000" canGrow="%1">
        <field name="long" left="0" top="100" width="3000" height="240" dataField="a"/>
        <field name="longer" left="4000" top="100" width="3000" height="240" dataField="b"/>
        <field name="beside" left="8000" top="100" width="900" height="240" dataField="c"/>
        <line name="rule" x1="0" y1="330" x2="9000" y2="330"/>
        <line name="side" x1="0" y1="0" x2="0" y2="1000"/>
        <image name="logo" left="0" top="50" width="500" height="500"/>
        <field name="below" left="0" top="400" width="3000" height="240" dataField="d"/>
        <label name="sign" left="0" top="700" width="3000" height="240">signature</label></detail>)";
    const auto lines = [](int count) { return QStringList(count, "line").join('\n'); };
    QImage logo(1, 1, QImage::Format_RGB32);
    const auto places = [&](const char *grows, const QVariantList &row) {
        const auto report = templateOf(bands.arg(QLatin1String(grows)));
        QHash<QString, QRect> boxes;
        const auto pages =
            Layout(report, std::make_unique<TestRows>(QStringList{"a", "b", "c", "d"}, QVector<QVariantList>{row}), {},
                   {{"logo", logo}}, paperFor(*report))
                .all();
        for (const PageItem &item : pages[0]->items)
            boxes[item.object->name] = item.box();
        return boxes;
    };
    const auto before = places("true", {"short", "short", "c", "d"});
    EXPECT_EQ(before, places("false", {lines(9), lines(4), "c", "d"})); // where it may not
    const auto after = places("true", {lines(4), lines(9), "c", lines(3)});
    const int first = after["longer"].height() - 240, then = after["below"].height() - 240;
    EXPECT_GT(first, 5 * 200);
    EXPECT_GT(then, 200);
    const struct {
        const char *name;
        int moved, longer;
    } expected[] = {{"beside", 0, first}, {"rule", first, 0},     {"side", 0, first + then},
                    {"logo", 0, 0},       {"below", first, then}, {"sign", first + then, 0}};
    for (const auto &of : expected) {
        EXPECT_EQ(after[of.name].top() - before[of.name].top(), of.moved) << of.name;
        EXPECT_EQ(after[of.name].height() - before[of.name].height(), of.longer) << of.name;
    }
}

TEST(Layout, BandsHigherThanAPageAreDividedBetweenLines)
{
    const auto report = templateOf(R"(<pageHeader height="1000"/><groupHeader level="1" height="0"/><detail height="0"/>
        <groupFooter level="1" height="1500" canGrow="true">
        <label name="L_A" left="0" top="0" width="5000" height="500" font="Arial" size="10"/>
        <label name="L_B" left="5100" top="40" width="2000" height="400" size="12"/>
        <line name="side" x1="5050" y1="0" x2="5050" y2="1500"/>
        <label name="sign" left="0" top="1000" width="3000" height="240">signature</label></groupFooter>
        <pageFooter height="500"/>)");
    QStringList a, b;
    for (int line = 0; line < 150; ++line) {
        a.append(QStringLiteral("%1. clause").arg(line));
        b.append(QStringLiteral("第 %1 条").arg(line));
    }
    const auto pages = layOut(report, nullptr, {}, {{"L_A", a.join('\n')}, {"L_B", b.mid(0, 100).join('\n')}});
    ASSERT_EQ(pages.size(), 3);
    QHash<QString, QStringList> printed;
    int sides = 0;
    for (const PagePtr &page : pages) {
        EXPECT_TRUE(page->overflows.isEmpty());
        for (const PageItem &item : page->items) {
            EXPECT_GE(item.box().top(), 1200);
            EXPECT_LE(item.box().bottom(), 16838 - 200 - 500);
            sides += item.object->name == "side" ? item.box().height() : 0;
            if (!item.isText())
                continue;
            for (const TextLine &line : arrange(*page, item).lines) {
                printed[item.object->name].append(line.text.toString());
                EXPECT_LE(line.baseline, item.box().bottom());
            }
        }
    }
    EXPECT_EQ(printed["L_A"], a);
    EXPECT_EQ(printed["L_B"], b.mid(0, 100));
    EXPECT_EQ(printed["sign"], QStringList{"signature"});
    EXPECT_GE(sides, 150 * 200);
    EXPECT_EQ(pages.last()->items.last().object->name, "sign");
}

TEST(Layout, DataOnlyLeavesOutWhatTheFormHasAlready)
{
    const QString bands =
        R"(<detail height="1000"><label name="A" left="0" top="0" width="900" height="240">caption</label>
        <field name="F" left="1000" top="0" width="900" height="240" dataField="name"/>
        <label name="L_F" left="2000" top="0" width="900" height="240"/>
        <line name="N" x1="0" y1="500" x2="900" y2="500"/><shape name="S" left="0" top="0" width="900" height="900"/>
        </detail>)";
    const auto report = templateOf(bands);
    Paper paper;
    paper.dataOnly = true;
    const auto pages = Layout(report, named({"data"}), {{"L_F", "free"}}, {}, paper).all();
    EXPECT_EQ(textsOf(*pages[0]), (QStringList{"data", "free"}));
    EXPECT_EQ(pages[0]->items.size(), 2);

    // marks of several lines are whole in the rows, whose space is open; a box of the head has its place
    const auto boxes = templateOf(
        R"(<groupHeader level="1" height="300" canGrow="true"><label name="L_F" left="0" top="0" width="900" height="240"/>
        </groupHeader><detail height="300" canGrow="true"><field name="F" left="0" top="0" width="900" height="240"
        dataField="name"/></detail><groupFooter level="1" height="0"/>)");
    const QVector<Overflow> lost =
        overflowsOf(Layout(boxes, named({"one\ntwo\nthree"}), {{"L_F", "four\nfive\nsix"}}, {}, paper).all());
    ASSERT_EQ(lost.size(), 1);
    EXPECT_EQ(lost[0].object, "L_F");

    // its pages end where those of the full print do, whose boxes take their room
    const auto boxed = templateOf(
        "<groupHeader level='1' height='0'/><detail height='5000'><field name='F' left='0' top='0' width='900' "
        "height='240' dataField='name'/></detail><groupFooter level='1' height='9000'><label name='L_F' left='0' "
        "top='0' "
        "width='900' height='240'/><shape name='S' left='0' top='0' width='900' height='9000'/></groupFooter>");
    EXPECT_EQ(joined(Layout(boxed, named({"a", "b"}), {{"L_F", "sum"}}, {}, paper).all()), "a | b sum");
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
