// Printing onto preprinted paper: how far a printer's print has to be moved to meet the form, and the sheet to find
// out.
#pragma once

#include <QSizeF>
#include <QString>

class QPainter;

namespace tradewick
{

// In tenths of a millimetre; negative to the left and up.
struct PaperShift {
    int right = 0, down = 0;
    bool operator==(const PaperShift &) const = default;
};

// What was kept for a report on a printer, no shift without. It stands in a file of the user's configuration, for how
// a printer feeds its paper is a matter of the desk that it stands at.
PaperShift paperShift(const QString &printer, const QString &report);
void setPaperShift(const QString &printer, const QString &report, PaperShift shift);

// Draws rulers in millimetres along a sheet's upper and left edge, 2 cm within it, and a cross at each 5 cm: laid on
// the form, they show by how much to shift. sheet: in millimetres. words: to stand on it.
void paintRulers(QPainter &painter, const QSizeF &sheet, double pixelsPerMillimetre, const QString &words);

} // namespace tradewick
