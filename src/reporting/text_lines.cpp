#include "reporting/layout.h"

namespace tradewick
{

namespace
{

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

bool breaksBetween(QChar left, QChar right)
{
    return !closes(right) && !right.isSpace() &&
           (left.isSpace() || left == u'-' || left == u')' || left == u']' || isWide(left) ||
            (isWide(right) && left != u'('));
}

// Appends the lines of a text without line ends, each at most `width` wide; a word wider than that is divided.
void wrap(QStringView text, const TextFont &font, double width, QVector<QStringView> &lines)
{
    qsizetype start = 0, lastBreak = 0;
    double used = 0;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype size = text[at].isHighSurrogate() && at + 1 < text.size() ? 2 : 1;
        const double advance = font.width(text.mid(at, size));
        if (used + advance > width && at > start && !text[at].isSpace()) {
            const qsizetype end = lastBreak > start ? lastBreak : at;
            lines.append(text.mid(start, end - start));
            start = lastBreak = at = end;
            used = 0;
            continue;
        }
        used += advance;
        at += size;
        if (at < text.size() && breaksBetween(text[at - 1], text[at]))
            lastBreak = at;
    }
    lines.append(text.mid(start));
}

} // namespace

TextLines arrange(const Page &page, const PageItem &item)
{
    const TextFont &font = *page.context->fonts[item.object->font];
    const QStringView text = page.text(item);
    const double width = item.x2 - item.x1;
    // a box a little short of a line still counts it: designers draw boxes by eye
    const int room = qMax(1, static_cast<int>((item.y2 - item.y1) / font.lineHeight() + 0.15));

    QVector<QStringView> lines;
    for (QStringView paragraph : text.split(u'\n')) {
        if (paragraph.endsWith(u'\r'))
            paragraph.chop(1);
        if (room == 1)
            lines.append(paragraph);
        else
            wrap(paragraph, font, width, lines);
        if (lines.size() >= room)
            break;
    }

    TextLines result;
    double baseline = item.y1 + font.ascent();
    for (QStringView line : lines.mid(0, room)) {
        while (!line.isEmpty() && line.back().isSpace())
            line.chop(1);
        const double used = font.width(line);
        const double left = width - used;
        double x = item.x1;
        // what is too wide keeps its beginning, whatever the alignment
        if (left < 0)
            result.overflows |= left < -0.5;
        else if (item.object->align != TextAlign::Left)
            x += item.object->align == TextAlign::Right ? left : left / 2;
        result.lines.append({line, x, baseline, used});
        baseline += font.lineHeight();
    }
    return result;
}

} // namespace tradewick
