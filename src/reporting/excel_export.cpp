#include "reporting/excel_export.h"

#include "common/dialogs.h"
#include "reporting/excel_dialog.h"
#include "reporting/xls_writer.h"

#include <QSet>

#include <algorithm>
#include <cmath>

namespace tradewick
{

namespace
{

using Pages = QVector<PagePtr>;

constexpr int tolerance = 60; // twips, about a millimetre: texts no further apart stand at the same edge

// A text on a page, and the columns of its cell once they are known.
struct Cell {
    const PageItem *item;
    QStringView text;
    QRect box;
    int first = 0, last = 0;
    int below = 0; // rows it reaches into

    int right() const { return box.left() + box.width(); }
    int bottom() const { return box.top() + box.height(); }
    bool isHead() const { return item->band == SectionKind::PageHeader || item->band == SectionKind::GroupHeader; }
};
using Cells = QVector<Cell>;

// The texts of a page from the top and from the left.
Cells textsOf(const Page &page)
{
    Cells texts;
    for (const PageItem &item : page.items) {
        if (item.isText() && !page.text(item).isEmpty())
            texts.append({&item, page.text(item), item.box()});
    }
    std::stable_sort(texts.begin(), texts.end(), [](const Cell &one, const Cell &other) {
        return std::pair(one.box.top(), one.box.left()) < std::pair(other.box.top(), other.box.left());
    });
    return texts;
}

// The columns of a report start where its texts start.
class Columns
{
public:
    explicit Columns(const Pages &pages)
    {
        QSet<int> found;
        int right = 0;
        for (const auto &page : pages) {
            for (const PageItem &item : page->items) {
                if (!item.isText() || page->text(item).isEmpty())
                    continue;
                found.insert(item.box().left());
                right = std::max(right, item.box().left() + item.box().width());
            }
        }
        QVector<int> lefts(found.begin(), found.end());
        std::sort(lefts.begin(), lefts.end());
        constexpr int limit = 256; // of columns in a sheet
        int apart = tolerance;
        do {
            m_edges.clear();
            for (const int left : std::as_const(lefts)) {
                if (m_edges.isEmpty() || left - m_edges.last() > apart)
                    m_edges.append(left);
            }
            apart *= 2;
        } while (m_edges.size() > limit);
        m_edges.append(right);
    }

    void place(Cell &cell) const
    {
        const auto end = m_edges.begin() + count();
        cell.first = int(std::upper_bound(m_edges.begin(), end, cell.box.left()) - m_edges.begin()) - 1;
        cell.last = int(std::lower_bound(m_edges.begin(), end, cell.right() - tolerance) - m_edges.begin()) - 1;
        cell.last = std::max(cell.first, cell.last);
    }

    int left() const { return m_edges.first(); }
    int right() const { return m_edges.last(); }

    qsizetype count() const { return m_edges.size() - 1; }

    QVector<int> widths() const
    {
        QVector<int> widths;
        for (qsizetype i = 0; i < count(); ++i)
            widths.append(m_edges[i + 1] - m_edges[i]);
        return widths;
    }

private:
    QVector<int> m_edges; // the columns' left edges and the right one of the last
};

struct Row {
    int top, height;
    Cells cells;

    bool meets(const Cell &cell) const
    {
        return std::any_of(cells.begin(), cells.end(),
                           [&](const Cell &other) { return other.first <= cell.last && cell.first <= other.last; });
    }
};

// Puts each text into the row whose texts start about as high; two that share a column do not share a row.
QVector<Row> gather(Cells texts, const Columns &columns)
{
    QVector<Row> rows;
    for (Cell &cell : texts) {
        columns.place(cell);
        auto row = rows.end();
        for (auto at = rows.end(); at != rows.begin();) {
            --at;
            if (cell.box.top() - at->top >= std::min(cell.box.height(), at->height) / 2)
                break;
            const auto taken = [&](const Cell &other) { return other.first == cell.first; };
            if (std::none_of(at->cells.begin(), at->cells.end(), taken))
                row = at;
        }
        if (row == rows.end())
            row = rows.insert(rows.end(), {cell.box.top(), cell.box.height(), {}});
        row->cells.append(cell);
    }
    for (Row &row : rows) {
        std::sort(row.cells.begin(), row.cells.end(), [](const Cell &a, const Cell &b) { return a.first < b.first; });
        for (qsizetype i = 1; i < row.cells.size(); ++i)
            row.cells[i - 1].last = std::min(row.cells[i - 1].last, row.cells[i].first - 1);
    }
    return rows;
}

// The rows of a page as high as on paper. A gap higher than the row above it becomes an empty row.
QVector<Row> rowsOf(const Page &page, const Columns &columns)
{
    QVector<Row> rows;
    const QVector<Row> gathered = gather(textsOf(page), columns);
    for (qsizetype i = 0; i < gathered.size(); ++i) {
        Row row = gathered[i];
        int own = 0;
        for (const Cell &cell : std::as_const(row.cells))
            own = std::max(own, cell.box.height());
        const int pitch = i + 1 < gathered.size() ? gathered[i + 1].top - row.top : own;
        own = std::min(own, pitch);
        const int gap = pitch - own;
        row.height = gap > own ? own : pitch;
        rows.append(row);
        if (gap > own)
            rows.append({row.top + own, gap, {}});
    }
    for (qsizetype i = 0; i < rows.size(); ++i) {
        for (Cell &cell : rows[i].cells) {
            for (qsizetype j = i + 1;
                 j < rows.size() && rows[j].top + tolerance < cell.bottom() && !rows[j].meets(cell); ++j)
                ++cell.below;
        }
    }
    return rows;
}

// How many rows of first, from the top, head the page of rows as well.
qsizetype sharedHead(const QVector<Row> &first, const QVector<Row> &rows)
{
    const auto equal = [](const Row &one, const Row &other) {
        return std::equal(one.cells.begin(), one.cells.end(), other.cells.begin(), other.cells.end(),
                          [](const Cell &a, const Cell &b) {
                              return a.isHead() && b.isHead() && a.box == b.box && a.text == b.text;
                          });
    };
    return std::mismatch(first.begin(), first.end(), rows.begin(), rows.end(), equal).first - first.begin();
}

// The number format of a field's cell. Without one of its own, a long whole number would be shown with an exponent.
QString numberFormat(const ReportObject &field, double number)
{
    constexpr double shownWhole = 1e11;
    const bool isLong = std::abs(number) >= shownWhole && number == std::trunc(number);
    return field.format.isEmpty() && isLong ? QStringLiteral("0") : field.format;
}

void writeRow(XlsWriter &writer, const Row &row, const ReportTemplate &report)
{
    constexpr double exact = 1e15;     // a cell's number keeps no more digits
    constexpr double lineOfPoint = 24; // twips
    writer.beginRow(row.height);
    for (const Cell &cell : row.cells) {
        const ReportObject &object = *cell.item->object;
        const FontSpec &font = report.fonts[object.font];
        const bool isNumber = std::abs(cell.item->number) < exact; // an item without number has none that compares
        const quint16 format =
            writer.format({.face = font.face,
                           .twips = int(std::lround(font.points * 20)),
                           .bold = font.bold,
                           .colour = object.foreColor & 0xFFFFFF,
                           .align = object.align == TextAlign::Right    ? XlsAlign::Right
                                    : object.align == TextAlign::Centre ? XlsAlign::Centre
                                                                        : XlsAlign::Left,
                           .wrap = cell.box.height() > 2 * lineOfPoint * font.points || cell.text.contains(u'\n'),
                           .number = isNumber ? numberFormat(object, cell.item->number) : QString()});
        if (isNumber)
            writer.number(cell.first, cell.item->number, format);
        else
            writer.text(cell.first, cell.text.toString(), format);
        // The rows below would hide what a long text goes on with there.
        writer.merge(cell.first, cell.last, cell.text.size() > XlsWriter::cellLimit ? 0 : cell.below);
    }
}

} // namespace

bool exportToExcel(const Pages &pages, const QString &path, QString *error)
{
    if (pages.isEmpty())
        return true;
    if (path.isEmpty()) {
        *error = QStringLiteral("没有指定文件名，报表没有转换为 EXCEL 文档。");
        return false;
    }
    const Columns columns(pages);
    const QVector<Row> first = rowsOf(*pages.first(), columns);
    qsizetype head = pages.size() > 1 ? first.size() : 0;
    for (qsizetype i = 1; i < pages.size() && head > 0; ++i)
        head = std::min(head, sharedHead(first, rowsOf(*pages[i], columns)));

    const PageContext &context = *pages.first()->context;
    const auto onPaper = [&](int twips) { return std::max(0, int(std::lround(twips * context.paper.scale))); };
    constexpr int bottom = 283;
    XlsWriter writer(context.report->caption);
    writer.setColumnWidths(columns.widths());
    writer.setPaper({.width = onPaper(context.paper.width),
                     .height = onPaper(context.paper.height),
                     .left = onPaper(columns.left()),
                     .right = onPaper(context.paper.width - columns.right()),
                     .top = first.isEmpty() ? 0 : onPaper(first.first().top),
                     .bottom = bottom});
    for (const auto &page : pages) {
        const bool isFirst = page == pages.first();
        const QVector<Row> rows = isFirst ? first : rowsOf(*page, columns);
        writer.breakPage();
        for (qsizetype i = isFirst ? 0 : head; i < rows.size(); ++i) {
            writeRow(writer, rows[i], *context.report);
            if (isFirst && i + 1 == head)
                writer.markTitles();
        }
    }
    return writer.save(path, error);
}

void exportShownReport(const Pages &pages, QWidget *parent)
{
    SJ_EXCEL_ZH(parent).exec();
    QString error;
    if (!exportToExcel(pages, excelTargetFile, &error))
        dialogs().message(parent, error, QStringLiteral("系统提示"), MessageIcon::Exclamation);
}

} // namespace tradewick
