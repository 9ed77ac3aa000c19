#include "data/collation.h"

#include <QCollator>

#include <algorithm>
#include <array>

namespace tradewick
{

namespace
{

int withoutTrailingBlanks(const char *text, int length)
{
    while (length > 0 && text[length - 1] == ' ')
        --length;
    return length;
}

// Order of the ASCII characters: signs, digits, letters regardless of case.
const std::array<unsigned char, 128> &asciiOrder()
{
    static const auto order = [] {
        std::array<unsigned char, 128> weights{};
        for (int c = 0; c < 128; ++c) {
            const bool digit = c >= '0' && c <= '9', upper = c >= 'A' && c <= 'Z', lower = c >= 'a' && c <= 'z';
            weights[c] = static_cast<unsigned char>(digit ? 128 + c : upper ? 128 + c + 32 : lower ? 128 + c : c);
        }
        return weights;
    }();
    return order;
}

// How much two texts have in common at their beginning, in whole characters: texts that are ordered are mostly those of
// few names, again and again.
int sameBytes(const char *a, int lengthA, const char *b, int lengthB)
{
    const int common = std::min(lengthA, lengthB);
    int same = static_cast<int>(std::mismatch(a, a + common, b).first - a);
    const auto isWithinCharacter = [](const char *text, int length, int at) {
        return at < length && (static_cast<unsigned char>(text[at]) & 0xc0U) == 0x80;
    };
    while (same > 0 && (isWithinCharacter(a, lengthA, same) || isWithinCharacter(b, lengthB, same)))
        --same;
    return same;
}

QString foldedText(const char *text, int length)
{
    return QString::fromUtf8(text, length).toCaseFolded();
}

} // namespace

int compareText(const char *a, int lengthA, const char *b, int lengthB)
{
    lengthA = withoutTrailingBlanks(a, lengthA);
    lengthB = withoutTrailingBlanks(b, lengthB);
    const auto &order = asciiOrder();
    for (int i = 0; i < lengthA && i < lengthB; ++i) {
        const auto x = static_cast<unsigned char>(a[i]), y = static_cast<unsigned char>(b[i]);
        if (x > 127 || y > 127) {
            const int same = sameBytes(a + i, lengthA - i, b + i, lengthB - i);
            return compareFolded(foldedText(a + i + same, lengthA - i - same),
                                 foldedText(b + i + same, lengthB - i - same));
        }
        if (order[x] != order[y])
            return order[x] < order[y] ? -1 : 1;
    }
    return lengthA == lengthB ? 0 : lengthA < lengthB ? -1 : 1;
}

QString foldedForOrder(const QString &text)
{
    qsizetype length = text.size();
    while (length > 0 && text[length - 1] == u' ')
        --length;
    return text.left(length).toCaseFolded();
}

int compareFolded(QStringView a, QStringView b)
{
    static const QCollator collator = [] {
        QCollator chinese(QLocale(QLocale::Chinese, QLocale::China));
        chinese.setCaseSensitivity(Qt::CaseInsensitive);
        return chinese;
    }();
    const qsizetype common = std::min(a.size(), b.size());
    qsizetype at = 0;
    while (at < common && a[at] == b[at])
        ++at;
    if (at == common)
        return static_cast<int>(a.size() - b.size());
    const char16_t x = a[at].unicode(), y = b[at].unicode();
    if (x < 128 && y < 128)
        return asciiOrder()[x] - asciiOrder()[y];
    // The locale's own order has Chinese before Latin, the server's has it behind.
    if (x < 128 || y < 128)
        return x < 128 ? -1 : 1;
    if (at > 0 && a[at].isLowSurrogate())
        --at;
    const int order = collator.compare(a.mid(at), b.mid(at));
    return order != 0 ? order : a.compare(b);
}

} // namespace tradewick
