// What the preview prints, on what paper, and what is remembered of it.
#include "common/dialogs.h"
#include "data/data_error.h"
#include "reporting/overlay.h"
#include "reporting/painter.h"
#include "reporting/preview.h"

#include <QDoubleSpinBox>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>

namespace tradewick
{

namespace
{

constexpr double millimetresPerInch = 25.4;

PrinterChooser &printerChooser()
{
    static PrinterChooser chooser;
    return chooser;
}

bool choosePrinter(QPrinter &printer, QWidget *parent)
{
    if (printerChooser())
        return printerChooser()(printer, parent);
    QPrintDialog dialog(&printer, parent);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange);
    return dialog.exec() == QDialog::Accepted;
}

// What was chosen for a report on a printer, until the program ends.
struct PrintChoice {
    QPageLayout layout;
    int copies = 1;
    bool collate = true;
};

struct PrintMemory {
    QHash<QString, QString> printers;               // last one by report
    QHash<QPair<QString, QString>, PrintChoice> of; // by report and printer
};

PrintMemory &memory()
{
    static PrintMemory choices;
    return choices;
}

} // namespace

// The printer that this report is printed on unless another one is chosen.
QString ReportPreview::printerName() const
{
    const QString last = memory().printers.value(m_report.name());
    return last.isEmpty() ? QPrinterInfo::defaultPrinterName() : last;
}

Paper ReportPreview::paperOf(const QPageLayout &layout, bool fit) const
{
    const QSizeF twips = layout.fullRect(QPageLayout::Point).size() * 20;
    const int width = qRound(twips.width()), height = qRound(twips.height());
    if (isOverlay()) {
        Paper paper{width, height};
        paper.dataOnly = m_dataOnly;
        return paper;
    }
    return paperFor(m_report.model(), width, height, fit);
}

Paper ReportPreview::paper() const
{
    const auto choice = memory().of.constFind({m_report.name(), memory().printers.value(m_report.name())});
    if (choice != memory().of.constEnd())
        return paperOf(choice->layout, true);
    Paper paper = paperFor(m_report.model());
    if (isOverlay())
        paper = paper.width > paper.height ? Paper{Paper().height, Paper().width} : Paper();
    paper.dataOnly = m_dataOnly;
    return paper;
}

// Lets the user choose, with what was chosen last time. False when he does not.
bool ReportPreview::choose(QPrinter &printer)
{
    PrintMemory &choices = memory();
    const QString &report = m_report.name();
    if (choices.printers.contains(report))
        printer.setPrinterName(choices.printers.value(report));
    const auto choice = choices.of.constFind({report, printer.printerName()});
    if (choice != choices.of.constEnd()) {
        printer.setPageLayout(choice->layout);
        printer.setCopyCount(choice->copies);
        printer.setCollateCopies(choice->collate);
    } else {
        const Paper wanted = paperFor(m_report.model());
        printer.setPageSize(QPageSize(QPageSize::A4));
        printer.setPageOrientation(wanted.width > wanted.height ? QPageLayout::Landscape : QPageLayout::Portrait);
    }
    printer.setDocName(m_report.title());
    printer.setFromTo(0, 0);
    if (!choosePrinter(printer, this))
        return false;
    choices.printers[report] = printer.printerName();
    choices.of[{report, printer.printerName()}] = {printer.pageLayout(), printer.copyCount(), printer.collateCopies()};
    showShift(); // of the printer chosen
    return true;
}

void ReportPreview::print()
{
    QPrinter printer(QPrinter::HighResolution);
    if (choose(printer))
        printOn(printer);
}

void ReportPreview::printTestSheet()
{
    QPrinter printer(QPrinter::HighResolution);
    if (!choose(printer))
        return;
    QPainter painter;
    if (!begin(painter, printer))
        return;
    const PaperShift shift = paperShift(printer.printerName(), m_report.name());
    paintRulers(painter, printer.pageLayout().fullRect(QPageLayout::Millimeter).size(),
                printer.resolution() / millimetresPerInch,
                QStringLiteral("%1  %2  右移 %3 mm  下移 %4 mm")
                    .arg(m_report.caption(), printer.printerName())
                    .arg(shift.right / 10.0)
                    .arg(shift.down / 10.0));
}

// Begins to paint, moved as the printer needs it for preprinted paper. False, after a message, when it takes nothing.
bool ReportPreview::begin(QPainter &painter, QPrinter &printer)
{
    printer.setFullPage(true);
    if (!painter.begin(&printer)) {
        dialogs().message(this, QStringLiteral("打印机没有响应，不能打印！"), m_report.caption(),
                          MessageIcon::Critical);
        return false;
    }
    if (isOverlay()) {
        const PaperShift shift = paperShift(printer.printerName(), m_report.name());
        const double pixels = printer.resolution() / millimetresPerInch / 10;
        painter.translate(shift.right * pixels, shift.down * pixels);
    }
    return true;
}

bool ReportPreview::printOn(QPrinter &printer)
{
    Paper paper = paperOf(printer.pageLayout(), false);
    if (!isOverlay() && !fitsAcross(m_report.model(), paper.width, paper.height)) {
        const auto isSmaller =
            dialogs().choose(this, QStringLiteral("纸张宽度小于报表宽度，是否缩小以适合纸张？"), m_report.caption());
        if (!isSmaller)
            return false;
        if (*isSmaller)
            paper = paperOf(printer.pageLayout(), true);
    }
    QVector<PagePtr> pages = m_view->pages();
    if (pages.isEmpty())
        return false;
    if (!(paper == pages.first()->context->paper)) {
        try {
            pages = m_layouts(paper)->all();
        } catch (const DataError &failure) {
            dialogs().message(this, failure.text(), m_report.caption(), MessageIcon::Critical);
            return false;
        }
    }
    const int count = static_cast<int>(pages.size());
    const bool ranged = printer.printRange() == QPrinter::PageRange && printer.fromPage() > 0;
    const int from = ranged ? qMin(printer.fromPage(), count) : 1;
    const int to = ranged && printer.toPage() > 0 ? qBound(from, printer.toPage(), count) : count;
    const int copies = printer.supportsMultipleCopies() ? 1 : qMax(1, printer.copyCount());
    const int whole = printer.collateCopies() ? copies : 1; // runs through all pages
    const int each = copies / whole;                        // prints of a page within a run

    QPainter painter;
    if (!begin(painter, printer))
        return false;
    bool first = true;
    for (int run = 0; run < whole; ++run) {
        for (int page = from; page <= to; ++page) {
            for (int copy = 0; copy < each; ++copy) {
                if (!first)
                    printer.newPage();
                first = false;
                paintPage(painter, *pages[page - 1], printer.resolution() / 1440.0);
            }
        }
    }
    return painter.end();
}

void ReportPreview::showShift()
{
    if (!m_shiftRight)
        return;
    const PaperShift kept = paperShift(printerName(), m_report.name());
    const QSignalBlocker right(m_shiftRight), down(m_shiftDown);
    m_shiftRight->setValue(kept.right / 10.0);
    m_shiftDown->setValue(kept.down / 10.0);
}

void ReportPreview::keepShift()
{
    setPaperShift(printerName(), m_report.name(),
                  {qRound(m_shiftRight->value() * 10), qRound(m_shiftDown->value() * 10)});
}

void setPrinterChooser(PrinterChooser chooser)
{
    printerChooser() = std::move(chooser);
}

} // namespace tradewick
