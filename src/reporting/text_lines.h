// How a text stands in its box: on how many lines, how large, and whether all of it is there. All lengths are twips.
#pragma once

#include "reporting/page.h"

namespace tradewick
{

// Stands behind what is left of a text that does not fit its box.
constexpr char16_t cutSign = u'…';

// One line of an item's text as it stands on the page.
struct TextLine {
    QStringView text;
    double x, baseline; // where its first character starts, from the paper's top left
    double width;
    bool cut = false; // there is more of it: the sign follows
};

// The lines of an item's text within its box. A text goes on to the next line at blanks, behind closing brackets and
// between Chinese characters where the box has room for it, and becomes smaller, down to 70 per cent, where it has not;
// what does not fit then is cut between two characters. A number keeps to one line and all of its digits: it is set
// narrower.
struct TextLines {
    QVector<TextLine> lines;
    double size = 1;        // of the characters, of the font's
    double narrow = 1;      // their width, of the width at that size
    bool overflows = false; // something is missing, or too narrow to be read
};
TextLines arrange(const Page &page, const PageItem &item);

// What a layout has to know of a text before it is placed.
struct TextFit {
    float width = -1; // of a text that stands on one line as it is, otherwise -1
    int height = 0;   // of its box: higher than it was where the text may grow and has to
    bool overflows = false;
};
// number: of a field with a number, else not a number. grows: the box may become higher.
TextFit fit(QStringView text, double number, const TextFont &font, int width, int height, bool grows);

// The lines of a text in a box that has become as high as it needs, and the height of each.
QVector<QStringView> linesOfGrown(QStringView text, const TextFont &font, int width, double *lineHeight);

} // namespace tradewick
