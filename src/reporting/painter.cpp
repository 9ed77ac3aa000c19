#include "reporting/painter.h"

#include "reporting/text_lines.h"

#include <QFileInfo>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>

namespace tradewick
{

namespace
{

constexpr int twipsPerWeight = 15; // a pixel of the screens for which the templates were drawn
constexpr int twipsPerInch = 1440;

Qt::PenStyle penStyle(int style)
{
    switch (style) {
    case 3:
        return Qt::DotLine;
    case 4:
        return Qt::DashDotLine;
    case 5:
        return Qt::DashDotDotLine;
    default:
        return Qt::SolidLine;
    }
}

class PagePainter
{
public:
    PagePainter(QPainter &painter, const Page &page) : m_painter(painter), m_page(page) {}

    void paint()
    {
        const QVector<PageItem> &items = m_page.items;
        for (qsizetype at = 0; at < items.size(); ++at) {
            const PageItem &item = items[at];
            switch (item.object->kind) {
            case ObjectKind::Label:
            case ObjectKind::Field:
                text(item);
                break;
            case ObjectKind::Line:
                line(item);
                break;
            case ObjectKind::Shape:
                shape(item);
                break;
            case ObjectKind::Image:
                image(item);
                break;
            }
        }
        flushLines();
    }

private:
    void pen(const QPen &wanted)
    {
        if (m_painter.pen() != wanted)
            m_painter.setPen(wanted);
    }

    void text(const PageItem &item)
    {
        flushLines();
        const ReportObject &object = *item.object;
        if (object.backColor != 0xffffffff)
            m_painter.fillRect(item.box(), QColor(object.backColor));
        const TextLines arranged = arrange(m_page, item);
        if (m_font != object.font) {
            m_font = object.font;
            m_painter.setFont(m_page.context->fonts[m_font]->font());
        }
        pen(QPen(QColor(object.foreColor)));
        for (const TextLine &line : arranged.lines) {
            if (line.text.isEmpty() && !line.cut)
                continue;
            if (arranged.size == 1 && arranged.narrow == 1) {
                draw(line, line.x, line.baseline);
                continue;
            }
            m_painter.save();
            m_painter.translate(line.x, line.baseline);
            m_painter.scale(arranged.size * arranged.narrow, arranged.size);
            draw(line, 0, 0);
            m_painter.restore();
        }
    }

    void draw(const TextLine &line, double x, double baseline)
    {
        const TextFont &font = *m_page.context->fonts[m_font];
        const QString text =
            line.cut ? line.text.toString() + QChar(cutSign) : QString::fromRawData(line.text.data(), line.text.size());
        if (!TextFont::addsUp(line.text)) {
            m_painter.setFont(font.shapingFont());
            m_painter.drawText(QPointF(x, baseline), text);
            m_painter.setFont(font.font());
            return;
        }
        qsizetype end = font.wideBlanks() ? text.indexOf(u' ') : -1;
        if (end < 0)
            return m_painter.drawText(QPointF(x, baseline), text);
        for (qsizetype start = 0; start < text.size(); start = end) { // a word and the blanks behind it
            end = text.indexOf(u' ', start);
            while (end >= 0 && end < text.size() && text[end] == u' ')
                ++end;
            end = end < 0 ? text.size() : end;
            const QString piece = QString::fromRawData(text.data() + start, end - start);
            m_painter.drawText(QPointF(x, baseline), piece);
            x += font.width(piece);
        }
    }

    void line(const PageItem &item)
    {
        const ReportObject &object = *item.object;
        const QPen wanted(QColor(object.foreColor), object.weight * twipsPerWeight, penStyle(object.style),
                          object.style == 1 ? Qt::SquareCap : Qt::FlatCap);
        if (wanted != m_linePen)
            flushLines();
        m_linePen = wanted;
        m_lines.append(QLine(item.x1, item.y1, item.x2, item.y2));
    }

    // Lines of one pen that follow each other are drawn at once.
    void flushLines()
    {
        if (m_lines.isEmpty())
            return;
        pen(m_linePen);
        m_painter.drawLines(m_lines);
        m_lines.clear();
    }

    void shape(const PageItem &item)
    {
        flushLines();
        pen(QPen(QColor(item.object->foreColor), twipsPerWeight));
        m_painter.setBrush(item.object->backColor == 0xffffffff ? QBrush() : QBrush(QColor(item.object->backColor)));
        if (item.object->shape == 2)
            m_painter.drawEllipse(item.box());
        else if (item.object->shape == 3)
            m_painter.drawRoundedRect(item.box(), 15, 15, Qt::RelativeSize);
        else
            m_painter.drawRect(item.box());
    }

    // The whole picture in the middle of its box, in its own proportions.
    void image(const PageItem &item)
    {
        flushLines();
        const QImage image = m_page.images.value(item.object->name);
        QRectF place(QPointF(), QSizeF(image.size()).scaled(item.box().size(), Qt::KeepAspectRatio));
        place.moveCenter(QRectF(item.box()).center());
        m_painter.drawImage(place, image);
    }

    QPainter &m_painter;
    const Page &m_page;
    int m_font = -1;
    QPen m_linePen;
    QVector<QLine> m_lines; // not drawn yet
};

} // namespace

void paintPage(QPainter &painter, const Page &page, double pixelsPerTwip)
{
    painter.save();
    const double scale = pixelsPerTwip * page.context->paper.scale;
    painter.scale(scale, scale);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
    PagePainter(painter, page).paint();
    painter.restore();
}

bool writePdf(const QVector<PagePtr> &pages, const QString &title, QIODevice &device)
{
    QPdfWriter writer(&device);
    writer.setTitle(title);
    writer.setCreator(QStringLiteral("Tradewick"));
    writer.setResolution(twipsPerInch);
    const auto paper = [&writer](const Page &page) {
        const Paper &of = page.context->paper;
        const QSizeF points = QSizeF(of.width, of.height) * of.scale / 20;
        writer.setPageLayout(
            QPageLayout(QPageSize(points, QPageSize::Point, {}, QPageSize::ExactMatch), QPageLayout::Portrait, {}));
    };
    if (!pages.isEmpty())
        paper(*pages.first());
    QPainter painter;
    if (!painter.begin(&writer))
        return false;
    for (qsizetype at = 0; at < pages.size(); ++at) {
        if (at > 0) {
            paper(*pages[at]);
            writer.newPage();
        }
        paintPage(painter, *pages[at], 1);
    }
    return true;
}

bool writePdf(const QVector<PagePtr> &pages, const QString &title, const QString &path, QString *error)
{
    return replaceFile(
        path, [&](QIODevice &device) { return writePdf(pages, title, device); }, error);
}

bool replaceFile(const QString &path, const std::function<bool(QIODevice &)> &write, QString *error)
{
    const QFileInfo present(path);
    if (present.exists() && !present.isFile()) { // a device or pipe would be replaced by a file
        *error = QStringLiteral("“%1”不是普通文件").arg(path);
        return false;
    }
    QSaveFile file(path);
    const bool open = file.open(QIODevice::WriteOnly);
    if (open && !write(file))
        file.cancelWriting();
    if (!open || !file.commit()) {
        *error = file.errorString();
        return false;
    }
    return true;
}

} // namespace tradewick
