#include "reporting/page.h"

#include <algorithm>

namespace tradewick
{

namespace
{

constexpr int unprintable = 238; // 4.2 mm, what office printers leave white along each edge
constexpr int beyond = 30;       // that a box may stand over the edge of the sheet

// On a sheet across frames reach from edge to edge; what stands upright was laid against printed forms.
int edgeOf(int width, int height)
{
    return width > height ? unprintable : 0;
}

} // namespace

bool fitsAcross(const ReportTemplate &report, int width, int height)
{
    const auto [left, right] = report.extent();
    return report.overlay == Overlay::Always || right - left <= width - 2 * edgeOf(width, height);
}

Paper paperFor(const ReportTemplate &report, int width, int height, bool fit)
{
    Paper paper{width, height};
    if (report.overlay == Overlay::Always)
        return paper;
    const auto [left, right] = report.extent();
    paper.edge = edgeOf(width, height);
    if (fitsAcross(report, width, height)) {
        if (right > width - paper.edge)
            paper.shift = width - paper.edge - right;
        else if (left < paper.edge)
            paper.shift = paper.edge - left;
        return paper;
    }
    if (!fit)
        return paper;
    paper.scale = static_cast<double>(width - 2 * unprintable) / (right - left);
    paper.width = qRound(width / paper.scale);
    paper.height = qRound(height / paper.scale);
    paper.edge = qRound(unprintable / paper.scale);
    paper.shift = paper.edge - left;
    return paper;
}

Paper paperFor(const ReportTemplate &report)
{
    const Paper a4;
    return fitsAcross(report, a4.width, a4.height) ? paperFor(report, a4.width, a4.height, true)
                                                   : paperFor(report, a4.height, a4.width, true);
}

QStringView Page::text(const PageItem &item) const
{
    if (item.object->pageTotal)
        return context->pageTotal;
    return QStringView(characters).mid(item.start, item.length);
}

void Page::append(const PageItem &item, QStringView text, bool lost)
{
    const Paper &paper = context->paper;
    const bool offSheet =
        item.x1 < -beyond || item.y1 < -beyond || item.x2 > paper.width + beyond || item.y2 > paper.height + beyond;
    if (lost || (offSheet && !text.isEmpty()))
        overflows.append(items.size());
    items.append(item);
    items.last().start = static_cast<quint32>(characters.size());
    items.last().length = static_cast<quint32>(text.size());
    characters.append(text);
}

QVector<Overflow> overflowsOf(const QVector<PagePtr> &pages)
{
    QVector<Overflow> overflows;
    for (const PagePtr &page : pages) {
        for (const qsizetype at : page->overflows) {
            const PageItem &item = page->items[at];
            overflows.append({page->number, item.object->name, page->text(item).toString(), item.box()});
        }
    }
    return overflows;
}

QString wordsFor(const Overflow &overflow)
{
    constexpr int shown = 40;
    const QString text = overflow.text.simplified();
    return QStringLiteral("page %1: %2 does not fit: “%3”")
        .arg(overflow.page)
        .arg(overflow.object, text.size() > shown ? text.left(shown) + u'…' : text);
}

std::optional<ReportObject> closingLine(const Section &row)
{
    std::optional<ReportObject> closing;
    for (const ReportObject &wall : row.objects) {
        if (wall.kind != ObjectKind::Line || wall.x1 != wall.x2 || qMax(wall.y1, wall.y2) < row.height)
            continue;
        if (!closing) {
            closing = wall;
            closing->name.clear();
            closing->y1 = closing->y2 = row.height;
        }
        closing->x1 = qMin(closing->x1, wall.x1);
        closing->x2 = qMax(closing->x2, wall.x1);
        closing->weight = qMax(closing->weight, wall.weight);
    }
    if (!closing || closing->x1 == closing->x2)
        return {};
    for (const ReportObject &line : row.objects)
        if (line.kind == ObjectKind::Line && line.y1 == row.height && line.y2 == row.height &&
            qMin(line.x1, line.x2) <= closing->x1 && qMax(line.x1, line.x2) >= closing->x2 &&
            line.weight >= closing->weight)
            return {};
    return closing;
}

} // namespace tradewick
