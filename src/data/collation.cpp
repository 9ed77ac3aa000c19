#include "data/collation.h"

#include <QCollator>

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

int compareBeyondAscii(const char *a, int lengthA, const char *b, int lengthB)
{
    static const QCollator collator = [] {
        QCollator chinese(QLocale(QLocale::Chinese, QLocale::China));
        chinese.setCaseSensitivity(Qt::CaseInsensitive);
        return chinese;
    }();
    const QString textA = QString::fromUtf8(a, lengthA).toCaseFolded();
    const QString textB = QString::fromUtf8(b, lengthB).toCaseFolded();
    qsizetype at = 0;
    while (at < textA.size() && at < textB.size() && textA[at] == textB[at])
        ++at;
    if (at == textA.size() || at == textB.size())
        return static_cast<int>(textA.size() - textB.size());
    // The locale's own order has Chinese before Latin, the server's has it behind.
    const bool asciiA = textA[at].unicode() < 128, asciiB = textB[at].unicode() < 128;
    if (asciiA != asciiB)
        return asciiA ? -1 : 1;
    if (at > 0 && textA[at].isLowSurrogate())
        --at;
    const int order = collator.compare(textA.mid(at), textB.mid(at));
    return order != 0 ? order : textA.compare(textB);
}

} // namespace

int compareText(const char *a, int lengthA, const char *b, int lengthB)
{
    lengthA = withoutTrailingBlanks(a, lengthA);
    lengthB = withoutTrailingBlanks(b, lengthB);
    const auto &order = asciiOrder();
    for (int i = 0; i < lengthA && i < lengthB; ++i) {
        const auto x = static_cast<unsigned char>(a[i]), y = static_cast<unsigned char>(b[i]);
        if (x > 127 || y > 127)
            return compareBeyondAscii(a + i, lengthA - i, b + i, lengthB - i);
        if (order[x] != order[y])
            return order[x] < order[y] ? -1 : 1;
    }
    return lengthA == lengthB ? 0 : lengthA < lengthB ? -1 : 1;
}

} // namespace tradewick
