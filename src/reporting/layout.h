// From a template and rows to pages of positioned items, one page at a time. All lengths are twips.
#pragma once

#include "reporting/fonts.h"
#include "reporting/row_source.h"
#include "reporting/template.h"

#include <QDateTime>
#include <QHash>
#include <QImage>
#include <QRectF>
#include <QStringView>
#include <QVector>

#include <deque>
#include <limits>
#include <memory>

namespace tradewick
{

// A paper, and the scale at which a page laid out for width and height is drawn to fill it.
struct Paper {
    int width = 11906, height = 16838;
    double scale = 1;
    bool operator==(const Paper &) const = default;
};

// A4 for a template: upright where it fits, else across, else across and drawn smaller.
Paper paperFor(const ReportTemplate &report);
// A paper of that size for a template: as it is, or, when `fit`, drawn smaller where the template is wider than it.
Paper paperFor(const ReportTemplate &report, int width, int height, bool fit);

// What all pages of one run share.
struct PageContext {
    std::shared_ptr<const ReportTemplate> report;
    Paper paper;
    QVector<const TextFont *> fonts; // by the template's font indexes
    QHash<QString, QImage> images;   // by object name
    QString pageTotal;               // empty until the last page is laid out
};

// One thing on a page. What it looks like stands in its template object: kind, font, align, colours, format, weight.
struct PageItem {
    const ReportObject *object;
    SectionKind band;
    int x1, y1, x2, y2; // box, or the ends of a line, from the paper's top left
    quint32 start = 0, length = 0;
    double number = std::numeric_limits<double>::quiet_NaN(); // of a field with a number, otherwise no number

    bool isText() const { return object->kind == ObjectKind::Label || object->kind == ObjectKind::Field; }
    QRect box() const { return {QPoint(qMin(x1, x2), qMin(y1, y2)), QSize(qAbs(x2 - x1), qAbs(y2 - y1))}; }
};

// A page, constant once it is made.
struct Page {
    std::shared_ptr<const PageContext> context;
    int number = 1;
    QVector<PageItem> items; // in drawing order
    QString characters;      // the texts of all items one behind the other

    // The whole text of an item, as it was before wrapping and cutting; empty for lines, shapes and images.
    QStringView text(const PageItem &item) const;
};
using PagePtr = std::shared_ptr<const Page>;

// One line of an item's text as it stands on the page.
struct TextLine {
    QStringView text;
    double x, baseline; // where its first character starts, from the paper's top left
    double width;
};

// The lines of an item's text within its box. A box with room for several lines has the text wrapped at blanks and
// between Chinese characters, lines beyond its height left out; in a box of one line the text goes on to the right.
// overflows tells that something lies outside of the box, where it has to be cut.
struct TextLines {
    QVector<TextLine> lines;
    bool overflows = false;
};
TextLines arrange(const Page &page, const PageItem &item);

// A value as a field prints it: by its format, without one numbers in their shortest decimal form and dates as ISO. Two
// places are rounded as the words of an amount are, an exact half to the even neighbour.
QString printedText(const QVariant &value, const QString &format);

// A band about to be placed, for the code of a report.
class FormattedBand
{
public:
    const Section &section;
    const int page; // number of the page it goes on, from 1

    // Text of an object of the band; the empty text for a name the band lacks.
    QString text(const QString &name) const;
    // Replaces it for this one time; a name the band lacks is passed over.
    void setText(const QString &name, const QString &text);

private:
    friend class Layout;
    struct Content {
        QString text;
        double number = std::numeric_limits<double>::quiet_NaN();
    };
    FormattedBand(const Section &ofSection, int onPage, QVector<Content> &contents)
        : section(ofSection), page(onPage), m_contents(contents)
    {
    }
    QVector<Content> &m_contents; // of the band's objects
};
using FormatHook = void (*)(FormattedBand &band);

// Lays a report out while its rows are read, forwards and once. Rules beyond the bands' order:
//   a group field that is empty or that the source lacks makes one group of all rows;
//   a group's headers stand together with the first row, and again on each page that the group goes on to;
//   a band that does not fit above the page footer goes on to a new page; one taller than a page is cut at its end;
//   without rows there is one page, with the group bands and their fields empty, without detail;
//   without a source the detail band is laid out once.
class Layout
{
public:
    // labels: texts of the free labels by name. images: pictures by object name. Throws DataError as the source does.
    Layout(std::shared_ptr<const ReportTemplate> report, std::unique_ptr<RowSource> rows,
           const QHash<QString, QString> &labels, const QHash<QString, QImage> &images, const Paper &paper,
           FormatHook atFormat = nullptr);
    ~Layout();

    // The next page, nullptr behind the last. Throws DataError when the rows break off.
    PagePtr next();
    // All pages that are left.
    QVector<PagePtr> all();
    const PageContext &context() const { return *m_context; }

private:
    struct Total {
        double sum = 0, rest = 0; // rest: what adding doubles has lost
        qint64 count = 0;
        void add(const QVariant &value);
    };
    struct Source {
        int column = -1; // of the rows
        int total = -1;  // of m_totals
    };
    struct Band {
        const Section *section = nullptr;
        QVector<Source> sources; // of each object
        int height() const { return section ? section->height : 0; }
    };
    struct Summing {
        const ReportObject *object;
        int column;
        Total total;
    };

    Band bandOf(SectionKind kind, int level);
    int columnOf(const QString &field) const;
    void step();
    void open(int fromLevel);
    void close(int fromLevel);
    int changedLevel() const;
    void place(const Band &band, int together);
    void put(const Band &band, int y);
    FormattedBand::Content contentOf(const Band &band, int object) const;
    void startPage(int need);
    void finishPage();
    int footerTop() const;

    std::shared_ptr<PageContext> m_context;
    std::unique_ptr<RowSource> m_rows;
    QHash<QString, QString> m_labels;
    QHash<QString, int> m_columns; // by lower-case name
    FormatHook m_atFormat;
    Band m_pageHeader, m_detail, m_pageFooter;
    QVector<Band> m_headers, m_footers; // outermost first
    QVector<int> m_groupColumns;        // -1 for a group over all rows
    QVector<Summing> m_totals;
    QVector<int> m_used;           // columns that the template shows or groups by
    QVariantList m_row, m_nextRow; // the row that bands show, and the one just read
    QVariantList m_placedRow;      // the last row with its detail on the page; kept for a page footer with fields
    QVector<FormattedBand::Content> m_contents; // of the band being placed

    std::deque<PagePtr> m_ready;
    std::shared_ptr<Page> m_page;
    int m_pages = 0;
    int m_y = 0; // where the next band goes
    bool m_footerShowsRows = false;
    bool m_empty = true; // nothing but heads on the page yet
    int m_openGroups = 0;
    bool m_started = false, m_anyRow = false, m_done = false;
};

} // namespace tradewick
