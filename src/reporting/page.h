// Pages of positioned items, what a report becomes before it is painted or exported. All lengths are twips.
#pragma once

#include "reporting/fonts.h"
#include "reporting/template.h"

#include <QHash>
#include <QImage>
#include <QRect>
#include <QStringView>
#include <QVector>

#include <limits>
#include <memory>
#include <optional>

namespace tradewick
{

// A paper, and how a page laid out for it is drawn: `width` and `height` are those of the page, which at its scale
// fills the sheet.
struct Paper {
    int width = 11906, height = 16838;
    double scale = 1;
    int shift = 0;         // added to the template's left margin, so that all its objects stand on the sheet
    int edge = 0;          // that printers leave white above and below
    bool dataOnly = false; // no line, box, picture or fixed text: for a sheet that has them already
    bool operator==(const Paper &) const = default;
};

// A4 for a template: upright where its objects fit across it, else across, drawn smaller where they are too wide for
// that too. On a sheet across no object stands nearer to the edge than printers can print. What is printed onto a
// preprinted sheet is never drawn smaller.
Paper paperFor(const ReportTemplate &report);
// A paper of that size for a template: as it is, or, when `fit`, drawn smaller where the template is wider than it.
Paper paperFor(const ReportTemplate &report, int width, int height, bool fit);
// Whether a template's objects fit across a paper without being drawn smaller.
bool fitsAcross(const ReportTemplate &report, int width, int height);

// The line that closes a table where a page ends behind one of its rows: along the bottom of the row, between the outer
// of the upright lines that go on into the next row. None for rows without such lines, and none where each row has it.
std::optional<ReportObject> closingLine(const Section &row);

// What all pages of one run share.
struct PageContext {
    std::shared_ptr<const ReportTemplate> report;
    Paper paper;
    QVector<const TextFont *> fonts;     // by the template's font indexes
    QString pageTotal;                   // empty until the last page is laid out
    std::optional<ReportObject> closing; // of the detail
};

// One thing on a page. What it looks like stands in its template object: kind, font, align, colours, format, weight.
struct PageItem {
    const ReportObject *object;
    SectionKind band;
    int x1, y1, x2, y2; // box, or the ends of a line, from the paper's top left
    quint32 start = 0, length = 0;
    double number = std::numeric_limits<double>::quiet_NaN(); // of a field with a number, otherwise no number
    float width = -1;                                         // of a text that stands on one line as it is

    bool isText() const { return object->kind == ObjectKind::Label || object->kind == ObjectKind::Field; }
    QRect box() const { return {QPoint(qMin(x1, x2), qMin(y1, y2)), QSize(qAbs(x2 - x1), qAbs(y2 - y1))}; }
};

// A page, constant once it is made.
struct Page {
    std::shared_ptr<const PageContext> context;
    int number = 1;
    QVector<PageItem> items;       // in drawing order
    QString characters;            // the texts of all items one behind the other
    QHash<QString, QImage> images; // by object name
    QVector<qsizetype> overflows;  // items whose text is not all within their box, or not on the sheet

    // The whole text of an item, as it was before wrapping and cutting; empty for lines, shapes and images.
    QStringView text(const PageItem &item) const;
    // While it is made: puts an item behind the others. lost: its text does not fit its box.
    void append(const PageItem &item, QStringView text, bool lost);
};
using PagePtr = std::shared_ptr<const Page>;

// A text of which not all can be read on the paper.
struct Overflow {
    int page = 1;
    QString object; // its name in the template
    QString text;   // the whole of it
    QRect box;      // on the page
};
// Those of all pages, in the order of the pages.
QVector<Overflow> overflowsOf(const QVector<PagePtr> &pages);
// One line about it for a reader without the pages before him: page, object and how the text begins.
QString wordsFor(const Overflow &overflow);

} // namespace tradewick
