// The preview: a report's pages with movement, zoom, search, print and PDF.
#pragma once

#include "reporting/page_view.h"
#include "reporting/report.h"

#include <QDialog>

class QAction;
class QDoubleSpinBox;
class QLabel;
class QLineEdit;
class QPageLayout;
class QPainter;
class QPrinter;
class QProgressBar;
class QSpinBox;
class QToolBar;
class QToolButton;

namespace tradewick
{

class ReportPreview : public QDialog
{
    Q_OBJECT

public:
    // pages: lays the report out for a paper, anew at each call; by default the report's own layout().
    using Pages = std::function<std::unique_ptr<Layout>(const Paper &paper)>;
    explicit ReportPreview(Report &report, QWidget *parent = nullptr, Pages pages = {});
    ~ReportPreview() override;

    // The toolbar's tools; each has its number as data(), the export to a workbook has 999 and stands last.
    QList<QAction *> tools() const; // without those of the row below, which some reports have
    static constexpr int excelTool = 999;

    // Prints on a printer as it is set: range, copies, paper. Asks whether to draw a report smaller that is wider than
    // the paper, unless it goes onto preprinted paper: then it is moved as was set for the printer. Gives false, after
    // a message, when the printer takes nothing.
    bool printOn(QPrinter &printer);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    struct Tool;
    void addTools();
    void addBar(QWidget *row);
    QAction *addTool(const Tool &tool);
    void addExtras();
    void showExtras();
    void switchData();
    bool isOverlay() const;
    QString printerName() const;
    Paper paper() const;
    Paper paperOf(const QPageLayout &layout, bool fit) const;
    bool choose(QPrinter &printer);
    bool begin(QPainter &painter, QPrinter &printer);
    void printTestSheet();
    void showShift();
    void keepShift();
    void layOut();
    void finish();
    void cancel();
    void showPosition();
    void askForText();
    void find();
    void print();
    void savePdf();
    void exportPages();

    Report &m_report;
    Pages m_layouts;
    std::unique_ptr<Layout> m_layout; // as long as pages are missing
    PageView *m_view;
    QWidget *m_tools;
    QWidget *m_extras;         // a row for what some reports have
    QToolBar *m_bar = nullptr; // that tools are added to
    QToolBar *m_marksBar = nullptr, *m_shiftBar = nullptr;
    QLabel *m_marks;
    QDoubleSpinBox *m_shiftRight = nullptr, *m_shiftDown = nullptr; // of a report for preprinted paper
    QSpinBox *m_page;
    QLabel *m_count;
    QLineEdit *m_sought;
    QLabel *m_status;
    QWidget *m_progressRow;
    QList<QAction *> m_whenComplete; // tools that take all pages
    bool m_started = false, m_dataOnly = false;
};

// Shows a report's preview modally; comes back when it is closed.
void showPreview(Report &report, QWidget *parent);

// Sets what the tool for a workbook does with the pages; an empty function restores the export itself.
using ExcelExporter = std::function<void(const QVector<PagePtr> &pages, QWidget *parent)>;
void setExcelExporter(ExcelExporter exporter);

// Sets what lets the user choose printer, range, copies and paper, false for cancel; an empty function restores the
// system's print dialog.
using PrinterChooser = std::function<bool(QPrinter &printer, QWidget *parent)>;
void setPrinterChooser(PrinterChooser chooser);

} // namespace tradewick
