// From a template and rows to pages of positioned items, one page at a time. All lengths are twips.
#pragma once

#include "reporting/growth.h"
#include "reporting/printed_text.h"
#include "reporting/row_source.h"
#include "reporting/text_lines.h"

#include <QDateTime>

#include <deque>
#include <limits>
#include <memory>

namespace tradewick
{

class Layout;

// A band about to be placed, for the code of a report.
class FormattedBand
{
public:
    const Section &section;
    const int page; // number of the page it goes on, from 1

    // Text of an object of the band; the empty text for a name the band lacks.
    QString text(const QString &name) const;
    // Replaces it for this one time; a name the band lacks is passed over. Throws DataError 3265 for a label named as
    // those of callers that the rule does not declare.
    void setText(const QString &name, const QString &text);
    // The column of the record that the band shows, Null without rows and for a column that the rows lack. Throws
    // DataError 3265 for one that the rule does not declare.
    QVariant value(const QString &column) const;
    // Shows the picture of a file in an image on this page; one that is missing or unreadable leaves it empty. Throws
    // DataError 3265 where the report has no such image.
    void setPicture(const QString &name, const QString &path);

private:
    friend class Layout;
    struct Content {
        QString text;
        double number = std::numeric_limits<double>::quiet_NaN();
    };
    FormattedBand(const Section &ofSection, int onPage, Layout &layout)
        : section(ofSection), page(onPage), m_layout(layout)
    {
    }
    Layout &m_layout;
};

// The code of a report: what it does with each band, and what it needs and gives.
struct FormatRule {
    void (*atFormat)(FormattedBand &band) = nullptr; // called before a band is placed, and for each try to do so
    QStringList columns{};                           // of the record, that it reads
    QStringList labels{};                            // named as those of callers, that it writes
};

// Lays a report out while its rows are read, forwards and once. Rules beyond the bands' order:
//   a group field that is empty or that the source lacks makes one group of all rows;
//   a group's headers stand together with the first row, and again on each page that its rows go on to;
//   a total that goes on to a new page takes the last row with it, or stands there without heads;
//   a band that does not fit above the page footer goes on to a new page, a group footer for its objects only;
//   a band that can grow becomes higher for its texts; grown beyond a page, it is divided between lines of text;
//   a template that fills its sheet but for less than its margins has them narrowed;
//   without rows there is one page, of the page header and footer alone;
//   without a source the detail band is laid out once.
class Layout
{
public:
    // labels: texts of labels by name, in the place of their own. images: pictures by object name. Throws DataError as
    // the source does.
    Layout(std::shared_ptr<const ReportTemplate> report, std::unique_ptr<RowSource> rows,
           const QHash<QString, QString> &labels, const QHash<QString, QImage> &images, const Paper &paper,
           FormatRule rule = {});
    ~Layout();

    // The next page, nullptr behind the last. Throws DataError when the rows break off.
    PagePtr next();
    // All pages that are left.
    QVector<PagePtr> all();
    const PageContext &context() const { return *m_context; }

private:
    friend class FormattedBand;
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
    // Where the last row begins on the page, with the heads directly above it, if nothing stands below it and something
    // else above.
    struct LastRow {
        qsizetype items = -1, characters = 0, overflows = 0;
        int y = 0;
        const Band *above = nullptr; // what then is the last on the page
        int height = 0;              // of the row alone
    };
    struct Summing {
        const ReportObject *object;
        int column;
        Total total;
    };

    Band bandOf(SectionKind kind, int level);
    int columnOf(const QString &field) const;
    void use(int column);
    void step();
    void open(int fromLevel);
    void close(int fromLevel);
    int totalsBehind(int level, int fromLevel);
    int changedLevel() const;
    void place(const Band &band, int behind);
    void breakBefore(const Band &band, int behind);
    void placeDivided(const Band &band);
    void prepare(const Band &band);
    void put(const Band &band, int y);
    FormattedBand::Content contentOf(const Band &band, int object) const;
    bool takesRoom(const ReportObject &object, const QString &text) const;
    bool isShown(const ReportObject &object, const QString &text) const;
    void setMargins();
    void startPage(int need);
    void finishPage();
    int footerTop() const;

    std::shared_ptr<PageContext> m_context;
    std::unique_ptr<RowSource> m_rows;
    QHash<QString, QString> m_labels;
    const QHash<QString, QImage> m_images;
    QHash<QString, int> m_columns; // by lower-case name
    const FormatRule m_rule;
    Band m_pageHeader, m_detail, m_pageFooter;
    QVector<Band> m_headers, m_footers; // outermost first
    QVector<int> m_groupColumns;        // -1 for a group over all rows
    QVector<Summing> m_totals;
    QVector<int> m_used;           // columns that the template shows or groups by
    QVariantList m_row, m_nextRow; // the row that bands show, and the one just read
    QVariantList m_placedRow;      // the last row with its detail on the page; kept for a page footer with fields
    QVariantList m_rowBefore;      // and the one before it
    // of the band being placed
    QVector<FormattedBand::Content> m_contents;
    QVector<TextFit> m_fits;
    Growth m_growth;
    int m_height = 0, m_reach = 0; // of the band, and what of it needs room on the page

    LastRow m_lastRow, m_begin;       // m_begin: of the band last placed, a row or not
    const Band *m_lastBand = nullptr; // placed on the page
    std::deque<PagePtr> m_ready;
    std::shared_ptr<Page> m_page;
    int m_pages = 0;
    int m_top = 0, m_bottom = 0; // margins
    int m_y = 0;                 // where the next band goes
    bool m_footerShowsRows = false;
    bool m_empty = true;  // nothing but heads on the page yet
    int m_openGroups = 0; // whose heads are repeated
    bool m_started = false, m_anyRow = false, m_done = false;
};

} // namespace tradewick
