// Reports: what layout and preview cost beside the bare painting of the same things.
#include "figures.h"
#include "papers/report_table.h"
#include "reporting/painter.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QPainter>
#include <QPdfWriter>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <vector>

namespace tradewick
{

namespace
{

constexpr int runs = 5, invoiceLines = 10000, longReportRows = 70000;

class MadeRows : public RowSource
{
public:
    explicit MadeRows(int count) : m_count(count) {}
    QStringList columns() const override
    {
        return {"e_gsmc", "e_gsdz", "gs_phone", "gs_fax", "khmc", "htbh", "dizh", "djrq", "phone", "fax",  "bizh",
                "cpmc",   "jgtk",   "qttk",     "madol",  "cpbh", "gg",   "dw",   "sl",   "jkdj",  "jmdj", "je"};
    }
    bool next() override { return ++m_row < m_count; }
    QVariant value(int column) const override
    {
        switch (column) {
        case 7:
            return QStringLiteral("2006-03-05");
        case 15:
            return QStringLiteral("NB-%1").arg(m_row, 5, 10, QLatin1Char('0'));
        case 16:
            return QStringLiteral("%1X%2X2.5CM").arg(10 + m_row % 30).arg(12 + m_row % 17);
        case 17:
            return QStringLiteral("PCS");
        case 18:
            return m_row % 900 * 10;
        case 19:
        case 20:
            return m_row % 70 * 0.35;
        case 21:
            return m_row % 900 * 3.5;
        default:
            return QStringLiteral("EASTERN HARBOUR TRADING 宁波");
        }
    }

private:
    int m_count, m_row = -1;
};

std::unique_ptr<Layout> invoice(int rows)
{
    Report &of = report(QStringLiteral("YY_Xsfp_Rpt"));
    return of.layout(std::make_unique<MadeRows>(rows), paperFor(of.model()));
}

// The same texts, fonts, places and lines as on the pages, drawn with no more than the drawing calls.
void paintBare(const QVector<PagePtr> &pages, const QVector<QVector<TextLines>> &texts, const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw std::runtime_error("no file to paint into");
    const Paper &paper = pages.first()->context->paper;
    QPdfWriter writer(&file);
    writer.setResolution(1440);
    writer.setPageSize(QPageSize(QSizeF(paper.width, paper.height) / 20, QPageSize::Point));
    writer.setPageMargins({});
    QPainter painter(&writer);
    const QPen black(Qt::black), ruled(Qt::black, 15);
    for (qsizetype page = 0; page < pages.size(); ++page) {
        if (page > 0)
            writer.newPage();
        for (qsizetype at = 0; at < pages[page]->items.size(); ++at) {
            const PageItem &item = pages[page]->items[at];
            if (item.isText()) {
                painter.setFont(pages[page]->context->fonts[item.object->font]->font());
                painter.setPen(black);
                for (const TextLine &line : texts[page][at].lines)
                    painter.drawText(QPointF(line.x, line.baseline), line.text.toString());
            } else if (item.object->kind == ObjectKind::Line) {
                painter.setPen(ruled);
                painter.drawLine(item.x1, item.y1, item.x2, item.y2);
            } else {
                painter.setPen(ruled);
                painter.drawRect(item.box());
            }
        }
    }
}

template <class Action> double seconds(const Action &action)
{
    QElapsedTimer clock;
    clock.start();
    action();
    return static_cast<double>(clock.nsecsElapsed()) / 1e9;
}

double median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + runs / 2, values.end());
    return values[runs / 2];
}

QString milliseconds(double time)
{
    return QStringLiteral("%1 ms").arg(time * 1000, 0, 'f', 0);
}

// Memory the process holds, in MB: the peak, set back by resetPeak().
double peakMemory()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (status.open(QIODevice::ReadOnly))
        for (const QByteArray &line : status.readAll().split('\n'))
            if (line.startsWith("VmHWM:"))
                return line.simplified().split(' ')[1].toDouble() / 1024;
    return std::nan("");
}

void resetPeak()
{
    QFile clear(QStringLiteral("/proc/self/clear_refs"));
    if (clear.open(QIODevice::WriteOnly))
        clear.write("5");
}

} // namespace

QVector<Figure> reportFigures()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("report.pdf"));

    // first: what the painting below leaves behind in the heap would count here
    resetPeak();
    qsizetype pages = 0;
    double first = 0;
    const double whole = seconds([&] {
        QVector<PagePtr> kept;
        QElapsedTimer clock;
        clock.start();
        const auto layout = invoice(longReportRows);
        while (PagePtr page = layout->next()) {
            if (kept.isEmpty())
                first = static_cast<double>(clock.nsecsElapsed()) / 1e9;
            kept.append(page);
        }
        pages = kept.size();
    });
    const double memory = peakMemory();

    const QVector<PagePtr> laidOut = invoice(invoiceLines)->all();
    QVector<QVector<TextLines>> texts;
    for (const PagePtr &page : laidOut) {
        texts.append(QVector<TextLines>());
        for (const PageItem &item : page->items)
            texts.last().append(item.isText() ? arrange(*page, item) : TextLines());
    }
    std::vector<double> bare, written, layout;
    for (int run = 0; run < runs; ++run) {
        bare.push_back(seconds([&] { paintBare(laidOut, texts, path); }));
        layout.push_back(seconds([] { invoice(invoiceLines)->all(); }));
        written.push_back(seconds([&] {
            QString error;
            if (!writePdf(invoice(invoiceLines)->all(), QStringLiteral("invoice"), path, &error))
                throw std::runtime_error(error.toStdString());
        }));
    }
    const double base = median(bare);
    const QString beside = QStringLiteral("; bare painting %1").arg(milliseconds(base));
    return {
        {QStringLiteral("invoice of 10000 lines, rows to PDF, to bare painting"), median(written) / base, 1.2,
         milliseconds(median(written)) + beside},
        {QStringLiteral("invoice of 10000 lines, layout alone, to bare painting"), median(layout) / base, 0.2,
         milliseconds(median(layout)) + beside},
        {QStringLiteral("report of 70000 rows, first page to whole layout"), first / whole, 0.05,
         QStringLiteral("%1 to %2, %3 pages").arg(milliseconds(first), milliseconds(whole)).arg(pages)},
        {QStringLiteral("report of 70000 rows, peak memory to 150 MB"), memory / 150, 1,
         QStringLiteral("%1 MB").arg(memory, 0, 'f', 0)},
    };
}

} // namespace tradewick
