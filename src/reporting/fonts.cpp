#include "reporting/fonts.h"

#include <QFontDatabase>
#include <QHash>

#include <cmath>

namespace tradewick
{

namespace
{

struct Mapping {
    QLatin1String latin, chinese;
    bool chineseFace = false; // the template's own face is a Chinese one
};

const Mapping &mappingOf(const QString &face)
{
    static const QLatin1String ming("AR PL UMing CN"), kai("AR PL UKai CN"), hei("WenQuanYi Zen Hei");
    static const QLatin1String sans("Liberation Sans"), serif("Liberation Serif");
    static const QHash<QString, Mapping> table = {
        {QStringLiteral("宋体"), {serif, ming, true}},
        {QStringLiteral("細明體"), {serif, ming, true}},
        {QStringLiteral("隶书"), {serif, kai, true}},
        {QStringLiteral("黑体"), {sans, hei, true}},
        {QStringLiteral("Arial"), {sans, hei}},
        {QStringLiteral("Arial Black"), {sans, hei}},
        {QStringLiteral("Small Fonts"), {sans, hei}},
        {QStringLiteral("System"), {sans, hei}},
        {QStringLiteral("Bookman Old Style"), {QLatin1String("URW Bookman"), ming}},
        {QStringLiteral("Book Antiqua"), {QLatin1String("P052"), ming}},
        {QStringLiteral("Monotype Corsiva"), {QLatin1String("Z003"), kai}},
    };
    const auto found = table.constFind(face);
    return found != table.constEnd() ? *found : *table.constFind(QStringLiteral("宋体"));
}

QFont twipFont(const FontSpec &spec)
{
    QFont font;
    font.setFamilies(familiesOf(spec.face));
    font.setPixelSize(qMax(1, qRound(spec.points * 20)));
    font.setBold(spec.bold || spec.face == QLatin1String("Arial Black"));
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setKerning(false);
    // no ligatures, so that text copied from a PDF has the letters that were printed
    font.setStyleStrategy(QFont::StyleStrategy(QFont::PreferNoShaping | QFont::PreferQuality));
    return font;
}

} // namespace

// Whether each character stands for itself, so that widths add up: not so for halves of pairs and marks that combine.
bool TextFont::addsUp(QStringView text)
{
    for (QChar character : text) {
        const char16_t code = character.unicode();
        if (code >= 0x300 && (code < 0x2000 || (code >= 0xd800 && code < 0xe000) || character.isMark()))
            return false;
    }
    return true;
}

QStringList familiesOf(const QString &face)
{
    const Mapping &mapping = mappingOf(face);
    return {mapping.latin, mapping.chinese, QStringLiteral("WenQuanYi Zen Hei"), QStringLiteral("AR PL UMing CN"),
            QStringLiteral("Symbola")};
}

QStringList missingFamilies()
{
    QStringList missing;
    for (const char *face : {"宋体", "隶书", "黑体", "Bookman Old Style", "Book Antiqua", "Monotype Corsiva"})
        for (const QString &family : familiesOf(QString::fromUtf8(face)))
            if (!QFontDatabase::hasFamily(family) && !missing.contains(family))
                missing.append(family);
    return missing;
}

TextFont::TextFont(const FontSpec &spec)
    : m_font(twipFont(spec)), m_metrics(m_font), m_ascent(m_metrics.ascent()),
      m_lineHeight(m_metrics.ascent() + m_metrics.descent()), m_wideBlanks(mappingOf(spec.face).chineseFace)
{
}

QFont TextFont::shapingFont() const
{
    QFont font = m_font;
    font.setStyleStrategy(QFont::PreferQuality);
    return font;
}

float TextFont::advance(char16_t character) const
{
    std::unique_ptr<Block> &block = m_advances[character >> 8];
    if (!block) {
        block = std::make_unique<Block>();
        block->fill(NAN);
    }
    float &width = (*block)[character & 0xff];
    if (std::isnan(width) && character == u' ' && m_wideBlanks)
        width = static_cast<float>(m_font.pixelSize()) / 2;
    else if (std::isnan(width))
        width = static_cast<float>(m_metrics.horizontalAdvance(QChar(character)));
    return width;
}

double TextFont::width(QStringView text) const
{
    if (!addsUp(text))
        return m_metrics.horizontalAdvance(text.toString());
    double width = 0;
    for (QChar character : text)
        width += static_cast<double>(advance(character.unicode()));
    return width;
}

const TextFont &TextFont::of(const FontSpec &spec)
{
    static QHash<QString, std::shared_ptr<const TextFont>> fonts;
    const QString key = QStringLiteral("%1/%2/%3").arg(spec.face).arg(spec.points).arg(spec.bold);
    std::shared_ptr<const TextFont> &font = fonts[key];
    if (!font)
        font = std::make_shared<TextFont>(spec);
    return *font;
}

} // namespace tradewick
