#include "reporting/page_view.h"

#include "reporting/painter.h"
#include "reporting/text_lines.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include <cmath>

namespace tradewick
{

namespace
{

constexpr double gap = 14; // pixels around a page
constexpr double zoomStep = 1.2;

} // namespace

PageView::PageView(QWidget *parent) : QAbstractScrollArea(parent)
{
    setObjectName(QStringLiteral("pages"));
    setAccessibleName(QStringLiteral("报表页面"));
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setBackgroundRole(QPalette::Dark);
    viewport()->setAutoFillBackground(true);
}

double PageView::pixelsPerTwip() const
{
    return m_zoom * logicalDpiX() / 1440;
}

QSizeF PageView::pageSize() const
{
    if (m_pages.isEmpty())
        return {};
    const Paper &paper = m_pages.first()->context->paper;
    return QSizeF(paper.width, paper.height) * paper.scale * pixelsPerTwip();
}

QRectF PageView::pageRect(int page) const
{
    const QSizeF size = pageSize();
    const double left = qMax(gap, (viewport()->width() - size.width()) / 2) - horizontalScrollBar()->value();
    return {QPointF(left, gap + page * (size.height() + gap) - verticalScrollBar()->value()), size};
}

void PageView::addPage(const PagePtr &page)
{
    for (const qsizetype item : page->overflows)
        m_overflows.append({static_cast<int>(m_pages.size()), item});
    m_pages.append(page);
    if (m_pages.size() == 1)
        refit();
    updateBars();
    if (pageRect(static_cast<int>(m_pages.size()) - 1).top() < viewport()->height())
        viewport()->update();
}

void PageView::clear()
{
    m_pages.clear();
    m_overflows.clear();
    m_overflow = -1;
    m_found = {};
    updateBars();
}

int PageView::currentPage() const
{
    if (m_pages.isEmpty())
        return -1;
    const double middle = verticalScrollBar()->value() + viewport()->height() / 2.0;
    return qBound(0, static_cast<int>((middle - gap / 2) / (pageSize().height() + gap)),
                  static_cast<int>(m_pages.size()) - 1);
}

void PageView::goTo(int page)
{
    if (m_pages.isEmpty())
        return;
    page = qBound(0, page, static_cast<int>(m_pages.size()) - 1);
    // pages smaller than the view stand in its middle, so that the page asked for is the current one
    const double spare = qMax(0.0, (viewport()->height() - pageSize().height()) / 2 - gap);
    verticalScrollBar()->setValue(qRound(page * (pageSize().height() + gap) - spare));
}

void PageView::applyZoom(double zoom)
{
    zoom = qBound(0.1, zoom, 8.0);
    if (qFuzzyCompare(zoom, m_zoom))
        return;
    const double height = pageSize().height() + gap, half = viewport()->height() / 2.0;
    const double middle = height > 0 ? (verticalScrollBar()->value() + half) / height : 0;
    const bool top = verticalScrollBar()->value() == 0;
    m_zoom = zoom;
    updateBars();
    verticalScrollBar()->setValue(top ? 0 : qRound(middle * (pageSize().height() + gap) - half));
    viewport()->update();
    Q_EMIT zoomChanged(m_zoom);
}

void PageView::setZoom(double zoom)
{
    m_fit = Fit::None;
    applyZoom(zoom);
}

void PageView::zoomBy(int steps)
{
    setZoom(m_zoom * std::pow(zoomStep, steps));
}

void PageView::fitWidth()
{
    m_fit = Fit::Width;
    refit();
}

void PageView::fitPage()
{
    m_fit = Fit::Page;
    refit();
}

void PageView::refit()
{
    const QSizeF size = pageSize() / m_zoom;
    if (m_fit == Fit::None || size.isEmpty())
        return;
    // the width without the bar's, whether it is shown already or not
    const int bar = verticalScrollBar()->isVisible() ? 0 : verticalScrollBar()->sizeHint().width();
    const double across = (viewport()->width() - bar - 2 * gap) / size.width();
    const double down = (viewport()->height() - 2 * gap) / size.height();
    applyZoom(m_fit == Fit::Width ? across : qMin(across, down));
}

void PageView::updateBars()
{
    const QSizeF size = pageSize();
    const int width = static_cast<int>(std::ceil(size.width() + 2 * gap));
    const int height = static_cast<int>(std::ceil(static_cast<double>(m_pages.size()) * (size.height() + gap) + gap));
    horizontalScrollBar()->setRange(0, qMax(0, width - viewport()->width()));
    horizontalScrollBar()->setPageStep(viewport()->width());
    verticalScrollBar()->setRange(0, qMax(0, height - viewport()->height()));
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setSingleStep(60);
    horizontalScrollBar()->setSingleStep(60);
    scrollContentsBy(0, 0);
}

void PageView::scrollContentsBy(int, int)
{
    viewport()->update();
    if (const int page = currentPage(); page != m_current) {
        m_current = page;
        Q_EMIT currentPageChanged(page);
    }
}

void PageView::resizeEvent(QResizeEvent *)
{
    refit();
    updateBars();
}

void PageView::wheelEvent(QWheelEvent *event)
{
    if (!(event->modifiers() & Qt::ControlModifier))
        return QAbstractScrollArea::wheelEvent(event);
    if (event->angleDelta().y() != 0)
        zoomBy(event->angleDelta().y() > 0 ? 1 : -1);
    event->accept();
}

void PageView::keyPressEvent(QKeyEvent *event)
{
    if (!handleKey(event->key()))
        QAbstractScrollArea::keyPressEvent(event);
}

QVector<KeyText> PageView::keys() const
{
    return {{QStringLiteral("PgUp / PgDn"), QStringLiteral("上一页、下一页")},
            {QStringLiteral("Home / End"), QStringLiteral("首页、末页")},
            {QStringLiteral("+ / -"), QStringLiteral("放大、缩小")},
            {QStringLiteral("0"), QStringLiteral("原大小")}};
}

bool PageView::handleKey(int key)
{
    switch (key) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        zoomBy(1);
        return true;
    case Qt::Key_Minus:
        zoomBy(-1);
        return true;
    case Qt::Key_0:
        setZoom(1);
        return true;
    case Qt::Key_PageUp:
        goTo(currentPage() - 1);
        return true;
    case Qt::Key_PageDown:
        goTo(currentPage() + 1);
        return true;
    case Qt::Key_Home:
        goTo(0);
        return true;
    case Qt::Key_End:
        goTo(static_cast<int>(m_pages.size()) - 1);
        return true;
    default:
        return false;
    }
}

void PageView::paintEvent(QPaintEvent *event)
{
    if (m_pages.isEmpty())
        return;
    QPainter painter(viewport());
    const double height = pageSize().height() + gap;
    const int last = static_cast<int>(m_pages.size()) - 1;
    const int from =
        qBound(0, static_cast<int>((verticalScrollBar()->value() + event->rect().top()) / height) - 1, last);
    for (int page = from; page <= last; ++page) {
        const QRectF rect = pageRect(page);
        if (rect.top() > event->rect().bottom())
            break;
        if (rect.bottom() < event->rect().top())
            continue;
        painter.fillRect(rect, Qt::white); // paper is white whatever the palette
        painter.save();
        painter.setClipRect(rect);
        painter.translate(rect.topLeft());
        paintPage(painter, *m_pages[page], pixelsPerTwip());
        markFound(painter, page);
        markOverflows(painter, page);
        painter.restore();
    }
}

// Marks where the sought text stands, the place found last more strongly.
void PageView::markFound(QPainter &painter, int page) const
{
    if (m_sought.isEmpty())
        return;
    const Page &of = *m_pages[page];
    painter.save();
    // over coloured cells, too, and what is black stays so
    painter.setCompositionMode(QPainter::CompositionMode_Multiply);
    const double scale = pixelsPerTwip() * of.context->paper.scale;
    painter.scale(scale, scale);
    for (qsizetype at = 0; at < of.items.size(); ++at) {
        const PageItem &item = of.items[at];
        if (!item.isText() || !of.text(item).contains(m_sought, Qt::CaseInsensitive))
            continue;
        const TextFont &font = *of.context->fonts[item.object->font];
        const QColor colour(m_found == Place{page, at} ? 0xffa726 : 0xfff176);
        const TextLines lines = arrange(of, item);
        for (const TextLine &line : lines.lines) {
            for (qsizetype start = line.text.indexOf(m_sought, 0, Qt::CaseInsensitive); start >= 0;
                 start = line.text.indexOf(m_sought, start + m_sought.size(), Qt::CaseInsensitive))
                painter.fillRect(QRectF(line.x + font.width(line.text.left(start)) * lines.size * lines.narrow,
                                        line.baseline - font.ascent() * lines.size,
                                        font.width(line.text.mid(start, m_sought.size())) * lines.size * lines.narrow,
                                        font.lineHeight() * lines.size),
                                 colour);
        }
    }
    painter.restore();
}

// Frames the boxes that do not hold their texts, the one gone to last more strongly. What stands beyond the sheet is
// marked at its edge.
void PageView::markOverflows(QPainter &painter, int page) const
{
    constexpr int least = 200; // twips that a mark has at the sheet's edge
    const Page &of = *m_pages[page];
    if (of.overflows.isEmpty())
        return;
    painter.save();
    const double scale = pixelsPerTwip() * of.context->paper.scale;
    painter.scale(scale, scale);
    for (const qsizetype item : of.overflows) {
        const QRect box = of.items[item].box();
        const int left = qBound(0, box.left(), of.context->paper.width - least);
        const int top = qBound(0, box.top(), of.context->paper.height - least);
        const bool current = m_overflow >= 0 && m_overflows[m_overflow] == Place{page, item};
        painter.setPen(QPen(QColor(0xc62828), current ? 60 : 20));
        painter.setBrush(QColor(198, 40, 40, current ? 70 : 30));
        painter.drawRect(
            QRect(QPoint(left, top), QPoint(qMax(left + least, box.right()), qMax(top + least, box.bottom()))));
    }
    painter.restore();
}

void PageView::goToOverflow(int step)
{
    const qsizetype count = m_overflows.size();
    if (count == 0)
        return;
    m_overflow = m_overflow < 0 ? (step > 0 ? 0 : count - 1) : (m_overflow + step + count) % count;
    showPlace(m_overflows[m_overflow]);
}

bool PageView::findNext(const QString &text)
{
    if (text.compare(m_sought, Qt::CaseInsensitive) != 0)
        m_found = {qMax(0, currentPage()), -1};
    m_sought = text;
    viewport()->update();
    if (text.isEmpty() || m_pages.isEmpty())
        return false;
    const int count = static_cast<int>(m_pages.size());
    // once round, and the page begun with a second time for what stands before the last place
    for (int step = 0; step <= count; ++step) {
        const int page = (m_found.page + step) % count;
        const Page &of = *m_pages[page];
        for (qsizetype at = step == 0 ? m_found.item + 1 : 0; at < of.items.size(); ++at) {
            if (of.items[at].isText() && of.text(of.items[at]).contains(text, Qt::CaseInsensitive)) {
                m_found = {page, at};
                showPlace(m_found);
                return true;
            }
        }
    }
    return false;
}

void PageView::showPlace(const Place &place)
{
    const Page &page = *m_pages[place.page];
    const double scale = pixelsPerTwip() * page.context->paper.scale;
    const QRect box = page.items[place.item].box();
    const QRectF rect = pageRect(place.page);
    const double top = rect.top() + box.top() * scale, bottom = rect.top() + box.bottom() * scale;
    if (top < 0 || bottom > viewport()->height())
        verticalScrollBar()->setValue(
            qRound(verticalScrollBar()->value() + (top + bottom) / 2 - viewport()->height() / 2.0));
    const double left = rect.left() + box.left() * scale, right = rect.left() + box.right() * scale;
    if (left < 0 || right > viewport()->width())
        horizontalScrollBar()->setValue(qRound(horizontalScrollBar()->value() + left - gap));
    viewport()->update();
}

} // namespace tradewick
