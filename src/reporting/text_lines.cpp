#include "reporting/text_lines.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tradewick
{

namespace
{

constexpr double smallest = 0.7;  // of a text that is made smaller to fit
constexpr int sizes = 6;          // that are tried down to it
constexpr double narrowest = 0.5; // of a number that can still be read
constexpr double shortBox = 0.15; // of a line: designers draw boxes by eye
constexpr double touching = 0.5;  // twips

// Chinese characters and their punctuation: a line may end before and behind each.
bool isWide(QChar character)
{
    return character.unicode() >= 0x2e80 && !character.isSurrogate();
}

bool closes(QChar character)
{
    static const QString closing = QStringLiteral("，。、；：？！）》」』】〕”’%,.;:?!)]");
    return closing.contains(character);
}

bool opens(QChar character)
{
    static const QString opening = QStringLiteral("（《「『【〔“‘([");
    return opening.contains(character);
}

bool breaksBetween(QChar left, QChar right)
{
    return !closes(right) && !right.isSpace() && !opens(left) &&
           (left.isSpace() || left == u'-' || left == u')' || left == u']' || isWide(left) || isWide(right));
}

qsizetype characterAt(QStringView text, qsizetype at)
{
    return text[at].isHighSurrogate() && at + 1 < text.size() ? 2 : 1;
}

QStringView withoutBlanksBehind(QStringView text)
{
    while (!text.isEmpty() && text.back().isSpace())
        text.chop(1);
    return text;
}

// A figure, as it stands in a column or was put into a label, there behind the code of its currency, too: one of its
// digits on a line below would be another one.
bool isFigure(QStringView text)
{
    constexpr qsizetype code = 3;
    if (text.size() > code && text[code].isDigit() &&
        std::all_of(text.begin(), text.begin() + code, [](QChar c) { return c >= u'A' && c <= u'Z'; }))
        text = text.mid(code);
    return std::all_of(text.begin(), text.end(),
                       [](QChar c) { return (c >= u'0' && c <= u'9') || QStringView(u".,-+%").contains(c); });
}

struct Lines {
    QVector<QStringView> lines;
    bool divided = false; // a word stands on two lines
};

// Appends the lines of a text without line ends, each at most `width` wide, until there are more than `room`.
void wrap(QStringView text, const TextFont &font, double width, qsizetype room, Lines &result)
{
    qsizetype start = 0, lastBreak = 0;
    double used = 0;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype size = characterAt(text, at);
        const double advance = font.width(text.mid(at, size));
        if (used + advance > width + touching && at > start && !text[at].isSpace()) {
            const qsizetype end = lastBreak > start ? lastBreak : at;
            result.divided |= lastBreak <= start;
            result.lines.append(text.mid(start, end - start));
            if (result.lines.size() > room)
                return;
            start = lastBreak = at = end;
            used = 0;
            continue;
        }
        used += advance;
        at += size;
        if (at < text.size() && breaksBetween(text[at - 1], text[at]))
            lastBreak = at;
    }
    result.lines.append(text.mid(start));
}

Lines linesOf(QStringView text, const TextFont &font, double width, qsizetype room)
{
    Lines result;
    for (QStringView paragraph : text.split(u'\n')) {
        wrap(withoutBlanksBehind(paragraph), font, width, room, result);
        if (result.lines.size() > room)
            break;
    }
    return result;
}

// As many characters as fit before the sign that there are more.
QStringView cut(QStringView line, const TextFont &font, double width)
{
    double used = font.width(QStringView(&cutSign, 1));
    qsizetype at = 0;
    while (at < line.size()) {
        const qsizetype size = characterAt(line, at);
        used += font.width(line.mid(at, size));
        if (used > width)
            break;
        at += size;
    }
    return withoutBlanksBehind(line.left(at));
}

struct Fitted {
    QVector<QStringView> lines;
    double size = 1;
    bool whole = true;
};

// The largest size at which a text fits without a word being divided, else the largest at which it fits at all; at the
// smallest one what fits of it.
Fitted fitted(QStringView text, const TextFont &font, double width, double height)
{
    const auto roomAt = [&](double size) {
        const double lines = height / (font.lineHeight() * size) + shortBox;
        return lines > 1e6 ? qsizetype(1e6) : qMax<qsizetype>(1, static_cast<qsizetype>(lines));
    };
    for (const bool dividing : {false, true}) {
        for (int step = 0; step <= sizes; ++step) {
            const double size = 1 - step * (1 - smallest) / sizes;
            const qsizetype room = roomAt(size);
            const Lines lines = linesOf(text, font, width / size, room);
            if (lines.lines.size() <= room && (dividing || !lines.divided))
                return {lines.lines, size, true};
        }
    }
    const qsizetype room = roomAt(smallest);
    QVector<QStringView> lines = linesOf(text, font, width / smallest, room).lines.mid(0, room);
    const QStringView last = lines.last();
    const QStringView rest = text.mid(last.data() - text.data());
    lines.last() = cut(rest.left(rest.indexOf(u'\n') < 0 ? rest.size() : rest.indexOf(u'\n')), font, width / smallest);
    return {lines, smallest, false};
}

bool isNumber(QStringView text, double number)
{
    return !std::isnan(number) || isFigure(text);
}

} // namespace

TextFit fit(QStringView text, double number, const TextFont &font, int width, int height, bool grows)
{
    TextFit result{-1, height, false};
    text = withoutBlanksBehind(text);
    if (text.isEmpty())
        return result;
    if (!text.contains(u'\n')) {
        const double used = font.width(text);
        if (used <= width + touching)
            result.width = static_cast<float>(used);
        else if (isNumber(text, number))
            result.overflows = used * narrowest > width;
        if (result.width >= 0 || isNumber(text, number))
            return result;
    }
    const Fitted lines = fitted(text, font, width, grows ? std::numeric_limits<double>::infinity() : height);
    result.overflows = !lines.whole;
    const double needed = static_cast<double>(lines.lines.size()) * font.lineHeight() * lines.size;
    if (grows && needed > height + shortBox * font.lineHeight() * lines.size)
        result.height = static_cast<int>(std::ceil(needed));
    return result;
}

QVector<QStringView> linesOfGrown(QStringView text, const TextFont &font, int width, double *lineHeight)
{
    const Fitted lines = fitted(withoutBlanksBehind(text), font, width, std::numeric_limits<double>::infinity());
    *lineHeight = font.lineHeight() * lines.size;
    return lines.lines;
}

TextLines arrange(const Page &page, const PageItem &item)
{
    const TextFont &font = *page.context->fonts[item.object->font];
    const double width = item.x2 - item.x1;
    TextLines result;
    const auto place = [&](QStringView line, double used, double baseline, bool isCut) {
        const double left = width - used;
        double x = item.x1;
        if (left > 0 && item.object->align != TextAlign::Left)
            x += item.object->align == TextAlign::Right ? left : left / 2;
        result.lines.append({line, x, baseline, used, isCut});
    };
    const QStringView text = withoutBlanksBehind(page.text(item));
    double baseline = item.y1 + font.ascent();
    if (item.width >= 0 || text.isEmpty()) {
        place(text, qMax(0.0, static_cast<double>(item.width)), baseline, false);
        return result;
    }
    if (!text.contains(u'\n') && isNumber(text, item.number)) {
        const double used = font.width(text);
        result.narrow = qMin(1.0, width / qMax(1.0, used));
        result.overflows = result.narrow < narrowest;
        place(text, used * result.narrow, baseline, false);
        return result;
    }
    const Fitted lines = fitted(text, font, width, item.y2 - item.y1);
    result.size = lines.size;
    result.overflows = !lines.whole;
    if (lines.lines.size() > 1) // a line alone keeps to the baseline of its neighbours
        baseline = item.y1 + font.ascent() * lines.size;
    for (qsizetype at = 0; at < lines.lines.size(); ++at) {
        const QStringView line = withoutBlanksBehind(lines.lines[at]);
        const bool isCut = !lines.whole && at + 1 == lines.lines.size();
        const double sign = isCut ? font.width(QStringView(&cutSign, 1)) : 0;
        place(line, (font.width(line) + sign) * lines.size, baseline, isCut);
        baseline += font.lineHeight() * lines.size;
    }
    return result;
}

} // namespace tradewick
