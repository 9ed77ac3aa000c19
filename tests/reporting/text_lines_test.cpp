#include "report_helpers.h"
#include "reporting/text_lines.h"

namespace tradewick::test
{

namespace
{

struct Shown {
    QStringList lines;
    TextLines of;
};

// A text in a box at 0/0 of a band that does not grow.
Shown shown(const QVariant &value, int width, int height, const QString &more, QVector<Overflow> *overflows = nullptr)
{
    const auto report = templateOf(QStringLiteral("<detail height='9000'><field name='F' left='0' top='0' width='%1' "
                                                  "height='%2' dataField='a' %3/></detail>")
                                       .arg(width)
                                       .arg(height)
                                       .arg(more));
    const auto pages =
        Layout(report, std::make_unique<TestRows>(QStringList{"a"}, QVector<QVariantList>{{value}}), {}, {}, Paper())
            .all();
    const PageItem &item = pages[0]->items[0];
    Shown result{{}, arrange(*pages[0], item)};
    for (TextLine &line : result.of.lines) {
        EXPECT_GE(line.x, item.x1) << value.toString().toStdString();
        EXPECT_LE(line.x + line.width, item.x2 + 1) << value.toString().toStdString();
        result.lines.append(line.text.toString() + (line.cut ? "…" : ""));
        line.text = {}; // of a page that ends here
    }
    if (overflows)
        *overflows += overflowsOf(pages);
    EXPECT_EQ(overflowsOf(pages).size(), result.of.overflows ? 1 : 0);
    return result;
}

TEST(TextLines, StandInTheirBoxesOrAreMarked)
{
    constexpr double any = -1;
    const QString arial = "font='Arial' size='10' align='right'";
    const struct {
        QVariant value;
        int width, height;
        QString more;
        QStringList lines;
        double size; // any: smaller than it is, but no less than 70 per cent
        bool narrow, lost;
    } cases[] = {
        {"PARTIAL SHIPMENTS", 2200, 240, arial, {"PARTIAL SHIPMENTS"}, 1, false, false},
        {"PARTIAL SHIPMENTS", 1300, 480, arial, {"PARTIAL", "SHIPMENTS"}, 1, false, false},
        {"PARTIAL SHIPMENTS", 1700, 240, arial, {"PARTIAL SHIPMENTS"}, any, false, false},
        {"PARTIAL SHIPMENTS", 1000, 240, arial, {"PARTIAL SHI…"}, 0.7, false, true},
        {"SHIPMENTS", 1000, 480, arial, {"SHIPMENTS"}, any, false, false}, // rather than divided
        {"ONE\nTWO\nTHREE", 2200, 400, arial, {"ONE", "TWO…"}, 0.7, false, true},
        {"ONE\nTWO\nTHREE", 2200, 560, arial, {"ONE", "TWO", "THREE"}, any, false, false},
        {"ONE\n\n", 2200, 240, arial, {"ONE"}, 1, false, false},
        // numbers keep to one line and their digits, whatever the box
        {12345678.125, 700, 480, arial, {"12345678.125"}, 1, true, false},
        {"12,345,678.13", 700, 480, arial, {"12,345,678.13"}, 1, true, false}, // from a caller's label, too
        {"USD123456789.12", 900, 480, arial, {"USD123456789.12"}, 1, true, false},
        {-12345678.125, 200, 480, arial, {"-12345678.125"}, 1, true, true},
        {"新疆维吾尔自治区", 1300, 240, "size='10.5'", {"新疆维吾尔自治区"}, any, false, false},
        {"木制圆形相框，带镜子。", 1050, 700, "size='10.5'", {"木制圆形相", "框，带镜", "子。"}, 1, false, false},
        {"木制圆形（相框）", 1050, 700, "size='10.5'", {"木制圆形", "（相框）"}, 1, false, false},
        {"G.W(KGS)N.W(KGS)", 1200, 480, arial, {"G.W(KGS)", "N.W(KGS)"}, 1, false, false},
        {"毛重(KGS)净重", 1050, 480, arial, {"毛重(KGS)", "净重"}, 1, false, false},
        {QString("e\u0301 😀😀😀😀"), 500, 240, arial, {QString("e\u0301 😀…")}, 0.7, false, true},
    };
    for (const auto &of : cases) {
        const Shown result = shown(of.value, of.width, of.height, of.more);
        const std::string name = of.value.toString().toStdString() + " in " + std::to_string(of.width);
        EXPECT_EQ(result.lines.join('|').toStdString(), of.lines.join('|').toStdString()) << name;
        EXPECT_EQ(result.of.overflows, of.lost) << name;
        EXPECT_EQ(result.of.narrow < 1, of.narrow) << name;
        if (of.size == any)
            EXPECT_TRUE(result.of.size < 1 && result.of.size > 0.69) << name << result.of.size;
        else
            EXPECT_NEAR(result.of.size, of.size, 1e-9) << name;
    }
}

TEST(TextLines, WhatDoesNotFitIsToldInALine)
{
    QVector<Overflow> overflows;
    shown(QString(50, 'W') + "\nX", 500, 240, {}, &overflows);
    shown("fits", 500, 240, {}, &overflows);
    ASSERT_EQ(overflows.size(), 1);
    EXPECT_EQ(overflows[0].text.size(), 52);
    EXPECT_EQ(overflows[0].box, QRect(100, 200, 500, 240));
    EXPECT_EQ(wordsFor(overflows[0]).toStdString(), "page 1: F does not fit: “" + std::string(40, 'W') + "…”");
}

TEST(Fonts, EveryFaceHasItsFamiliesAndTheBlankOfItsScript)
{
    EXPECT_EQ(missingFamilies(), QStringList());
    const struct {
        const char *face;
        bool chinese; // with blanks half as wide as a character
    } cases[] = {{"宋体", true}, {"細明體", true},           {"隶书", true},
                 {"黑体", true}, {"Arial", false},           {"Bookman Old Style", false},
                 {"", true},     {"Monotype Corsiva", false}};
    for (const auto &of : cases) {
        const TextFont &font = TextFont::of({QString::fromUtf8(of.face), 10.5, false});
        EXPECT_EQ(font.font().families().size(), 5);
        const double gap = font.width(u"出   口") - font.width(u"出口");
        if (of.chinese)
            EXPECT_NEAR(gap, 3 * 105, 1) << of.face;
        else
            EXPECT_LT(gap, 3 * 70) << of.face;
    }
}

} // namespace

} // namespace tradewick::test
