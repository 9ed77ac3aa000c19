#include "reporting/layout.h"

#include "reporting/band_parts.h"
#include "reporting/printed_text.h"

#include <QSet>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tradewick
{

namespace
{

void warnOnce(const QString &report, const QString &field)
{
    static QSet<QString> warned;
    const QString both = report + u'.' + field;
    if (!warned.contains(both)) {
        warned.insert(both);
        qWarning("report %s: the source has no column %s", qUtf8Printable(report), qUtf8Printable(field));
    }
}

constexpr int leastMargin = 238; // 4.2 mm, what office printers leave white

} // namespace

// Neumaier's summation: sums of thousands of amounts stay those of the decimal figures.
void Layout::Total::add(const QVariant &value)
{
    if (value.isNull())
        return;
    ++count;
    const double number = value.toDouble(), next = sum + number;
    rest += std::abs(sum) >= std::abs(number) ? (sum - next) + number : (number - next) + sum;
    sum = next;
}

Layout::Layout(std::shared_ptr<const ReportTemplate> report, std::unique_ptr<RowSource> rows,
               const QHash<QString, QString> &labels, const QHash<QString, QImage> &images, const Paper &paper,
               FormatRule rule)
    : m_context(std::make_shared<PageContext>()), m_rows(std::move(rows)), m_labels(labels), m_images(images),
      m_rule(std::move(rule))
{
    m_context->report = std::move(report);
    m_context->paper = paper;
    for (const FontSpec &font : m_context->report->fonts)
        m_context->fonts.append(&TextFont::of(font));
    if (m_rows) {
        const QStringList columns = m_rows->columns();
        for (qsizetype at = columns.size() - 1; at >= 0; --at)
            m_columns.insert(columns[at].toLower(), static_cast<int>(at));
        m_row.resize(columns.size());
        m_nextRow.resize(columns.size());
    }
    m_pageHeader = bandOf(SectionKind::PageHeader, 0);
    m_detail = bandOf(SectionKind::Detail, 0);
    if (m_detail.section && !paper.dataOnly)
        m_context->closing = closingLine(*m_detail.section);
    m_pageFooter = bandOf(SectionKind::PageFooter, 0);
    m_footerShowsRows =
        !m_rule.columns.isEmpty() || std::any_of(m_pageFooter.sources.cbegin(), m_pageFooter.sources.cend(),
                                                 [](const Source &source) { return source.column >= 0; });
    for (int level = 1; level <= m_context->report->groups(); ++level) {
        m_headers.append(bandOf(SectionKind::GroupHeader, level));
        m_footers.append(bandOf(SectionKind::GroupFooter, level));
        const int column = columnOf(m_headers.constLast().section->groupField);
        m_groupColumns.append(column);
        use(column);
    }
    for (const QString &column : m_rule.columns)
        use(columnOf(column));
    setMargins();
}

void Layout::use(int column)
{
    if (column >= 0 && !m_used.contains(column))
        m_used.append(column);
}

Layout::~Layout() = default;

int Layout::columnOf(const QString &field) const
{
    return m_columns.value(field.toLower(), -1);
}

Layout::Band Layout::bandOf(SectionKind kind, int level)
{
    Band band{m_context->report->section(kind, level), {}};
    if (!band.section)
        return band;
    for (const ReportObject &object : band.section->objects) {
        Source source;
        if (!object.dataField.isEmpty()) {
            source.column = columnOf(object.dataField);
            if (source.column < 0 && m_rows)
                warnOnce(m_context->report->name, object.dataField);
            use(source.column);
        }
        if (object.summary != Summary::None && source.column >= 0) {
            source.total = static_cast<int>(m_totals.size());
            m_totals.append({&object, source.column, {}});
        }
        band.sources.append(source);
    }
    return band;
}

// The template's own, but no more than leaves room for each band once: a form that fills its sheet stays one page.
void Layout::setMargins()
{
    const Paper &paper = m_context->paper;
    const ReportTemplate &report = *m_context->report;
    m_top = qMax(report.topMargin, paper.edge);
    m_bottom = qMax(report.bottomMargin, paper.edge);
    int spare = paper.height - m_top - m_bottom;
    for (const Section &section : report.sections)
        spare -= section.height;
    const auto given = [](int margin) { return qMax(0, margin - leastMargin); };
    if (spare >= 0 || -spare > given(m_bottom) + given(m_top))
        return;
    const int below = qMin(-spare, given(m_bottom));
    m_bottom -= below;
    m_top -= -spare - below;
}

int Layout::footerTop() const
{
    return m_context->paper.height - m_bottom - m_pageFooter.height();
}

PagePtr Layout::next()
{
    while (m_ready.empty() && !m_done)
        step();
    if (m_ready.empty())
        return nullptr;
    PagePtr page = std::move(m_ready.front());
    m_ready.pop_front();
    return page;
}

QVector<PagePtr> Layout::all()
{
    QVector<PagePtr> pages;
    while (PagePtr page = next())
        pages.append(std::move(page));
    return pages;
}

// One row of the source, or its end.
void Layout::step()
{
    const bool first = !m_started;
    m_started = true;
    const bool row = m_rows ? m_rows->next() : first;
    if (m_rows && row)
        for (int column : std::as_const(m_used))
            m_nextRow[column] = m_rows->value(column);
    if (first) {
        m_row.swap(m_nextRow);
        startPage(0);
        if (row)
            open(1);
    } else if (row) {
        const int level = changedLevel();
        if (level > 0)
            close(level);
        m_row.swap(m_nextRow);
        if (level > 0)
            open(level);
    }
    if (row) {
        m_anyRow = true;
        for (Summing &summing : m_totals)
            summing.total.add(m_row[summing.column]);
        place(m_detail, 0);
        if (m_footerShowsRows)
            m_rowBefore = std::exchange(m_placedRow, m_row);
    } else {
        if (m_anyRow)
            close(1);
        finishPage();
        m_context->pageTotal = QString::number(m_pages);
        m_rows.reset();
        m_done = true;
    }
}

// The outermost group whose field has another value in the row just read; 0 without.
int Layout::changedLevel() const
{
    for (int level = 1; level <= m_groupColumns.size(); ++level) {
        const int column = m_groupColumns[level - 1];
        if (column >= 0 && m_row[column] != m_nextRow[column])
            return level;
    }
    return 0;
}

void Layout::open(int fromLevel)
{
    prepare(m_detail);
    int behind = m_height;
    for (qsizetype level = fromLevel; level <= m_headers.size(); ++level)
        behind += m_headers[level - 1].height();
    for (Summing &summing : m_totals)
        if (!summing.object->overReport && summing.object->summaryLevel >= fromLevel)
            summing.total = {};
    for (int level = fromLevel; level <= m_headers.size(); ++level) {
        behind -= m_headers[level - 1].height();
        place(m_headers[level - 1], behind);
        m_openGroups = level;
    }
}

void Layout::close(int fromLevel)
{
    m_openGroups = fromLevel - 1; // no heads over a total that stands on a page of its own
    for (int level = static_cast<int>(m_footers.size()); level >= fromLevel; --level)
        place(m_footers[level - 1], totalsBehind(level, fromLevel));
}

// How much room the totals of outer groups take that end with that of a level: they go where it goes, so that none
// stands on a page without a row. 0 where one page does not hold them all.
int Layout::totalsBehind(int level, int fromLevel)
{
    int room = 0;
    for (int outer = level - 1, height = 0; outer >= fromLevel; --outer) {
        prepare(m_footers[outer - 1]);
        if (m_height > 0)
            room = height + m_reach;
        height += m_height;
    }
    prepare(m_footers[level - 1]);
    int together = m_top + m_pageHeader.height() + m_lastRow.height + m_height + room;
    for (const Band &header : std::as_const(m_headers))
        together += header.height();
    return together <= footerTop() ? room : 0;
}

// Puts a band below the last one, on a new page when it does not fit together with what stands `behind` high below it.
void Layout::place(const Band &band, int behind)
{
    if (band.height() == 0)
        return;
    prepare(band);
    const auto fits = [&] { return m_y + (behind > 0 ? m_height + behind : m_reach) <= footerTop(); };
    const int page = footerTop() - m_top - m_pageHeader.height();
    const bool divides = !m_growth.isEmpty() && m_height > page;
    // one that fills a page and more may as well begin here, where there is some room
    if (!m_empty && !fits() && !(divides && footerTop() - m_y > page / 3)) {
        breakBefore(band, behind);
        prepare(band);
    }
    // Heads go where their first row goes, but no page is left with nothing else.
    if (!m_lastBand || m_lastBand->section->kind != SectionKind::GroupHeader)
        m_begin = m_empty ? LastRow()
                          : LastRow{m_page->items.size(), m_page->characters.size(), m_page->overflows.size(), m_y,
                                    m_lastBand};
    m_lastRow = &band == &m_detail ? m_begin : LastRow();
    m_lastRow.height = m_height;
    m_lastBand = &band;
    if (!m_growth.isEmpty() && m_y + m_height > footerTop())
        return placeDivided(band);
    put(band, m_y);
    m_y += m_height;
    m_empty = false;
}

// Goes on to a new page for the band that was prepared. A total takes the last row with it, under the heads of its
// columns, where both fit there with what stands `behind` high below it.
void Layout::breakBefore(const Band &band, int behind)
{
    const int need = m_height;
    int together = m_lastRow.height + need + behind;
    for (const Band &header : std::as_const(m_headers))
        together += header.height();
    const bool takesRow = band.section->kind == SectionKind::GroupFooter && m_lastRow.items >= 0 &&
                          m_top + m_pageHeader.height() + together <= footerTop();
    if (!takesRow) {
        finishPage();
        return startPage(need);
    }
    m_page->items.resize(m_lastRow.items);
    m_page->characters.truncate(m_lastRow.characters);
    m_page->overflows.resize(m_lastRow.overflows);
    m_placedRow.swap(m_rowBefore);
    m_y = m_lastRow.y;
    m_lastBand = m_lastRow.above;
    finishPage();
    m_placedRow.swap(m_rowBefore);
    const int open = std::exchange(m_openGroups, static_cast<int>(m_headers.size()));
    startPage(together);
    m_openGroups = open;
    prepare(m_detail);
    put(m_detail, m_y);
    m_y += m_height;
    m_empty = false;
}

// Puts a grown band that does not fit onto a page, as much of it as each page takes.
void Layout::placeDivided(const Band &band)
{
    auto endless = std::make_shared<PageContext>(*m_context);
    endless->paper.height = std::numeric_limits<int>::max() / 2;
    const auto whole = std::make_shared<Page>();
    whole->context = endless;
    const std::shared_ptr<Page> page = std::exchange(m_page, whole);
    put(band, 0);
    m_page = page;
    for (BandParts parts(*whole, m_height);;) {
        m_y += parts.take(*m_page, m_y, footerTop() - m_y, m_empty);
        m_empty = false;
        if (parts.isEmpty())
            return;
        finishPage();
        startPage(0);
    }
}

void Layout::startPage(int need)
{
    m_page = std::make_shared<Page>();
    m_page->context = m_context;
    m_page->images = m_images;
    m_page->number = ++m_pages;
    m_y = m_top;
    m_lastRow = {};
    m_lastBand = nullptr;
    prepare(m_pageHeader);
    put(m_pageHeader, m_y);
    m_y += m_pageHeader.height();
    m_empty = true;
    int heads = 0;
    for (int level = 0; level < m_openGroups; ++level)
        heads += m_headers[level].height();
    if (m_y + heads + need > footerTop())
        return; // a form that fills its page by itself
    for (int level = 0; level < m_openGroups; ++level) {
        prepare(m_headers[level]);
        put(m_headers[level], m_y);
        m_y += m_height;
    }
}

void Layout::finishPage()
{
    const bool innerTotal =
        m_lastBand && m_lastBand->section->kind == SectionKind::GroupFooter && m_lastBand->section->level > 1;
    if ((m_lastBand == &m_detail || innerTotal) && m_context->closing) {
        const ReportObject &line = *m_context->closing;
        const int left = m_context->report->leftMargin + m_context->paper.shift;
        m_page->append({&line, SectionKind::Detail, left + line.x1, m_y, left + line.x2, m_y}, {}, false);
    }
    // the last row of this page, not the one for which there was no room
    if (!m_placedRow.isEmpty())
        m_row.swap(m_placedRow);
    prepare(m_pageFooter);
    put(m_pageFooter, footerTop());
    if (!m_placedRow.isEmpty())
        m_row.swap(m_placedRow);
    m_page->items.squeeze();
    m_page->characters.squeeze();
    m_ready.push_back(std::move(m_page));
}

FormattedBand::Content Layout::contentOf(const Band &band, int object) const
{
    const ReportObject &of = band.section->objects[object];
    if (of.kind == ObjectKind::Label)
        return {m_labels.value(of.name, of.text)};
    if (of.kind != ObjectKind::Field)
        return {};
    const Source source = band.sources[object];
    if (source.total >= 0) {
        if (!m_anyRow)
            return {};
        const Total &total = m_totals[source.total].total;
        const double number = of.summary == Summary::Sum ? total.sum + total.rest : static_cast<double>(total.count);
        return {printedNumber(number, of.format), number};
    }
    if (source.column >= 0) {
        const QVariant &value = m_row[source.column];
        QString text = printedText(value, of.format);
        return {text, isNumberValue(value) ? value.toDouble() : FormattedBand::Content().number};
    }
    return {};
}

bool Layout::takesRoom(const ReportObject &object, const QString &text) const
{
    if (!object.visible)
        return false;
    if (object.kind == ObjectKind::Label || object.kind == ObjectKind::Field)
        return !text.isEmpty() || object.pageTotal || object.backColor != 0xffffffff;
    return object.kind != ObjectKind::Image || m_page->images.contains(object.name);
}

bool Layout::isShown(const ReportObject &object, const QString &text) const
{
    if (!m_context->paper.dataOnly || !takesRoom(object, text))
        return takesRoom(object, text);
    const bool isText = object.kind == ObjectKind::Label || object.kind == ObjectKind::Field;
    return isText && (object.pageTotal || (!text.isEmpty() && text != object.text));
}

// Works out what a band shows for the row at hand, and how high it is with that.
void Layout::prepare(const Band &band)
{
    m_growth.clear();
    m_height = band.height();
    m_reach = 0;
    if (m_height == 0)
        return;
    const QVector<ReportObject> &objects = band.section->objects;
    m_contents.resize(objects.size());
    m_fits.resize(objects.size());
    for (int at = 0; at < objects.size(); ++at)
        m_contents[at] = contentOf(band, at);
    if (m_rule.atFormat) {
        FormattedBand formatted(*band.section, m_pages, *this);
        m_rule.atFormat(formatted);
    }
    // A sheet that bears the form already has its boxes where they are, but for the rows: their space is one.
    const bool isPreprinted = m_context->paper.dataOnly && band.section->kind != SectionKind::Detail;
    const bool grows = band.section->canGrow && !isPreprinted && m_context->report->overlay != Overlay::Always;
    for (int at = 0; at < objects.size(); ++at) {
        const ReportObject &object = objects[at];
        // also what a preprinted form has already, so that its pages end where those of the full print do
        if (!takesRoom(object, m_contents[at].text))
            continue;
        m_reach = qMax(m_reach, qMax(object.y1, object.y2));
        if (object.kind > ObjectKind::Field || m_contents[at].text.isEmpty())
            continue;
        const int height = object.y2 - object.y1;
        // headings keep their places; what the columns and callers bring is as long as it is
        const bool growing = grows && (object.kind == ObjectKind::Field || object.isWritable());
        m_fits[at] = fit(m_contents[at].text, m_contents[at].number, *m_context->fonts[object.font],
                         object.x2 - object.x1, height, growing);
        if (m_fits[at].height > height)
            m_growth.add(object.y1, object.y2, m_fits[at].height);
    }
    if (!m_growth.isEmpty()) {
        m_growth.settle();
        m_height = m_growth.at(m_height);
        m_reach = m_growth.at(m_reach);
    }
    // what is white below the last total needs no page of its own
    m_reach = band.section->kind == SectionKind::GroupFooter ? qMin(m_reach, m_height) : m_height;
}

// Puts the band that was prepared.
void Layout::put(const Band &band, int y)
{
    if (band.height() == 0)
        return;
    const QVector<ReportObject> &objects = band.section->objects;
    const int left = m_context->report->leftMargin + m_context->paper.shift;
    for (int at = 0; at < objects.size(); ++at) {
        const ReportObject &object = objects[at];
        const FormattedBand::Content &content = m_contents[at];
        if (!isShown(object, content.text))
            continue;
        PageItem item{&object, band.section->kind, left + object.x1, y + object.y1, left + object.x2, y + object.y2};
        if (!m_growth.isEmpty()) {
            item.y1 = y + m_growth.at(object.y1);
            item.y2 = object.kind == ObjectKind::Image ? item.y1 + object.y2 - object.y1 : y + m_growth.at(object.y2);
        }
        if (item.isText() && !content.text.isEmpty()) {
            item.y2 = qMax(item.y2, item.y1 + m_fits[at].height);
            item.number = content.number;
            item.width = m_fits[at].width;
        }
        m_page->append(item, content.text, item.isText() && !content.text.isEmpty() && m_fits[at].overflows);
    }
}

} // namespace tradewick
