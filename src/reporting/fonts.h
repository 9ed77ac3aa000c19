// The faces of the templates as this machine has them, measured the same for every screen and printer.
#pragma once

#include "reporting/template.h"

#include <QFont>
#include <QFontMetricsF>
#include <QStringView>

#include <array>
#include <memory>

namespace tradewick
{

// The families that stand for a template's face, in the order in which they are asked for a glyph: the Latin one
// first, since a Chinese family alone would draw Latin letters too. An unknown face gives those of 宋体.
QStringList familiesOf(const QString &face);

// Families that familiesOf() names and this machine lacks; empty on a complete one.
QStringList missingFamilies();

// A font whose pixel is a twip, without hinting and kerning, so that a text's width is the sum of its characters'.
class TextFont
{
public:
    explicit TextFont(const FontSpec &spec);

    const QFont &font() const { return m_font; }
    // The same for a text whose characters do not add up: letters that join, marks that combine.
    QFont shapingFont() const;
    static bool addsUp(QStringView text);
    double ascent() const { return m_ascent; }
    double lineHeight() const { return m_lineHeight; }
    // In the Chinese faces a blank is half an em wide, and fixed texts make their gaps with it. The Latin glyph that
    // stands for it is narrower: a text is painted in pieces that each begin where width() has it.
    bool wideBlanks() const { return m_wideBlanks; }
    // Width of one line of text in twips.
    double width(QStringView text) const;

    // One object per face, size and weight, as long as the program runs.
    static const TextFont &of(const FontSpec &spec);

private:
    float advance(char16_t character) const;

    QFont m_font;
    QFontMetricsF m_metrics;
    double m_ascent, m_lineHeight;
    bool m_wideBlanks;
    using Block = std::array<float, 256>;
    mutable std::array<std::unique_ptr<Block>, 256> m_advances; // by character, a block once it is met
};

} // namespace tradewick
