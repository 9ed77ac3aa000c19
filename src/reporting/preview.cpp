#include "reporting/preview.h"

#include "common/dialogs.h"
#include "common/flow_layout.h"
#include "data/data_error.h"
#include "reporting/excel_export.h"
#include "reporting/painter.h"

#include <QAction>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSpinBox>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace tradewick
{

namespace
{

constexpr int sliceMs = 25; // of layout between two looks at keys and clicks

ExcelExporter &excelExporter()
{
    static ExcelExporter exporter = exportShownReport;
    return exporter;
}

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

// What a print job and a file are called: the document's name, and the number of the one document that it shows. A list
// has several values or none, and bears its name alone.
QString titleOf(const Report &report)
{
    const Values &values = report.DataControl1.values;
    const QString number = values.size() == 1 ? values.cbegin()->toString().trimmed() : QString();
    return number.isEmpty() ? report.caption() : report.caption() + u'-' + number;
}

// The title as a file may be named on every system.
QString fileNameOf(const Report &report)
{
    QString name = titleOf(report);
    for (QChar &c : name)
        if (QStringView(u"/\\:*?\"<>|").contains(c) || !c.isPrint())
            c = u'_';
    return name;
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

Paper paperOf(const QPageLayout &layout, const ReportTemplate &report, bool fit)
{
    const QSizeF twips = layout.fullRect(QPageLayout::Point).size() * 20;
    return paperFor(report, qRound(twips.width()), qRound(twips.height()), fit);
}

} // namespace

struct ReportPreview::Tool {
    int id;
    const char *name, *caption;
    QList<QKeySequence> keys;
    std::function<void()> run;
    bool whenComplete = false;
};

ReportPreview::ReportPreview(Report &report, QWidget *parent, Pages pages)
    : QDialog(parent, Qt::Window), m_report(report),
      m_layouts(pages ? std::move(pages) : [&report](const Paper &paper) { return report.layout(paper); }),
      m_view(new PageView(this)), m_tools(new QWidget(this)), m_page(new QSpinBox(this)), m_count(new QLabel(this)),
      m_sought(new QLineEdit(this)), m_status(new QLabel(this)), m_progressRow(new QWidget(this))
{
    setObjectName(QStringLiteral("preview"));
    setWindowTitle(report.caption());
    setSizeGripEnabled(true);
    resize(QSize(1180, 820).boundedTo(screen()->availableSize() - QSize(40, 60)));

    m_page->setObjectName(QStringLiteral("page"));
    m_page->setAccessibleName(QStringLiteral("页码"));
    m_page->setRange(1, 1);
    m_page->setKeyboardTracking(false);
    m_count->setObjectName(QStringLiteral("count"));
    m_sought->setObjectName(QStringLiteral("sought"));
    m_sought->setAccessibleName(QStringLiteral("查找文字"));
    m_sought->setPlaceholderText(QStringLiteral("查找文字"));
    m_sought->setMaximumWidth(160);
    m_sought->setClearButtonEnabled(true);
    m_status->setObjectName(QStringLiteral("status"));
    m_tools->setObjectName(QStringLiteral("tools"));
    m_tools->setLayout(new FlowLayout(nullptr));
    addTools();

    auto *progress = new QProgressBar(this);
    progress->setObjectName(QStringLiteral("progress"));
    progress->setAccessibleName(QStringLiteral("排版进度"));
    progress->setRange(0, 0); // how many rows there are is known when the last one is read
    auto *stop = new QPushButton(QStringLiteral("取消"), this);
    stop->setObjectName(QStringLiteral("cancel"));
    stop->setAccessibleName(QStringLiteral("取消排版"));
    stop->setAutoDefault(false);
    auto *row = new QHBoxLayout(m_progressRow);
    row->setContentsMargins(6, 2, 6, 2);
    row->addWidget(m_status);
    row->addWidget(progress, 1);
    row->addWidget(stop);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_tools);
    column->addWidget(m_view, 1);
    column->addWidget(m_progressRow);

    connect(stop, &QPushButton::clicked, this, &ReportPreview::cancel);
    connect(m_view, &PageView::currentPageChanged, this, &ReportPreview::showPosition);
    connect(m_page, &QSpinBox::valueChanged, this, [this](int page) { m_view->goTo(page - 1); });
    connect(m_sought, &QLineEdit::returnPressed, this, &ReportPreview::find);
    connect(m_sought, &QLineEdit::textChanged, this, [this](const QString &text) {
        if (text.isEmpty())
            m_view->findNext({});
    });
    new QShortcut(QKeySequence(QStringLiteral("Ctrl+F")), this, [this] { askForText(); });
    m_view->setFocus();
    QTimer::singleShot(0, this, &ReportPreview::layOut);
}

ReportPreview::~ReportPreview() = default;

QList<QAction *> ReportPreview::tools() const
{
    QList<QAction *> tools;
    for (const QToolBar *bar : m_tools->findChildren<QToolBar *>())
        for (QAction *action : bar->actions())
            if (action->data().isValid())
                tools.append(action);
    return tools;
}

QAction *ReportPreview::addTool(const Tool &tool)
{
    QAction *action = m_bar->addAction(QString::fromUtf8(tool.caption));
    action->setObjectName(QString::fromLatin1(tool.name));
    action->setData(tool.id);
    action->setShortcuts(tool.keys);
    if (!tool.keys.isEmpty())
        action->setToolTip(QStringLiteral("%1 (%2)").arg(action->text(), tool.keys.first().toString()));
    QWidget *button = m_bar->widgetForAction(action);
    button->setObjectName(QStringLiteral("tool_") + action->objectName());
    button->setAccessibleName(action->text());
    button->setFocusPolicy(Qt::TabFocus);
    connect(action, &QAction::triggered, this, tool.run);
    if (tool.whenComplete) {
        action->setEnabled(false);
        m_whenComplete.append(action);
    }
    return action;
}

void ReportPreview::addTools()
{
    // Two bars, of which the second stands below the first where the window is too narrow for both.
    const auto addBar = [this] {
        m_bar = new QToolBar(m_tools);
        m_bar->setToolButtonStyle(Qt::ToolButtonTextOnly);
        m_tools->layout()->addWidget(m_bar);
    };
    addBar();
    const auto step = [this](int pages) { m_view->goTo(m_view->currentPage() + pages); };
    addTool({1, "first", "首页", {QKeySequence("Ctrl+Home")}, [this] { m_view->goTo(0); }});
    addTool({2, "previous", "上一页", {QKeySequence("Alt+Left")}, [step] { step(-1); }});
    m_bar->addWidget(m_page);
    m_bar->addWidget(m_count);
    addTool({3, "next", "下一页", {QKeySequence("Alt+Right")}, [step] { step(1); }});
    addTool({4, "last", "末页", {QKeySequence("Ctrl+End")}, [this] { m_view->goTo(m_page->maximum() - 1); }});
    m_bar->addSeparator();
    addTool({5, "zoomIn", "放大", {QKeySequence("Ctrl++"), QKeySequence("Ctrl+=")}, [this] { m_view->zoomBy(1); }});
    addTool({6, "zoomOut", "缩小", {QKeySequence("Ctrl+-")}, [this] { m_view->zoomBy(-1); }});
    addTool({7, "fitWidth", "适合宽度", {QKeySequence("Ctrl+2")}, [this] { m_view->fitWidth(); }});
    addTool({8, "fitPage", "适合页面", {QKeySequence("Ctrl+1")}, [this] { m_view->fitPage(); }});
    addBar();
    m_bar->addWidget(m_sought);
    addTool({9, "find", "查找", {QKeySequence("F3")}, [this] { find(); }});
    m_bar->addSeparator();
    addTool({10, "print", "打印", {QKeySequence("Ctrl+P")}, [this] { print(); }, true});
    addTool({11, "pdf", "另存为PDF", {QKeySequence("Ctrl+S")}, [this] { savePdf(); }, true});
    addTool({12, "close", "关闭", {}, [this] { reject(); }});
    if (m_report.family().excelTool)
        addTool({excelTool, "excel", "转换EXCEL文档", {QKeySequence("Alt+E")}, [this] { exportPages(); }, true});
}

// Makes pages for a moment, then lets the window live and goes on.
void ReportPreview::layOut()
{
    try {
        if (!m_started) {
            m_started = true;
            const ReportTemplate &report = m_report.model();
            const auto choice = memory().of.constFind({report.name, memory().printers.value(report.name)});
            m_layout =
                m_layouts(choice == memory().of.constEnd() ? paperFor(report) : paperOf(choice->layout, report, true));
        }
        if (!m_layout)
            return; // cancelled
        QElapsedTimer clock;
        clock.start();
        do {
            const PagePtr page = m_layout->next();
            if (!page)
                return finish();
            m_view->addPage(page);
        } while (m_view->pages().size() > 1 && clock.elapsed() < sliceMs);
    } catch (const DataError &failure) {
        dialogs().message(this, failure.text(), m_report.caption(), MessageIcon::Critical);
        return finish();
    }
    showPosition();
    QTimer::singleShot(0, this, &ReportPreview::layOut);
}

void ReportPreview::finish()
{
    m_layout.reset();
    m_progressRow->hide();
    for (QAction *action : std::as_const(m_whenComplete))
        action->setEnabled(true);
    m_view->viewport()->update(); // the number of pages is known now
    showPosition();
}

void ReportPreview::cancel()
{
    m_started = true;
    finish();
}

void ReportPreview::showPosition()
{
    const int pages = static_cast<int>(m_view->pages().size());
    const QSignalBlocker blocker(m_page);
    m_page->setRange(qMin(1, pages), pages);
    m_page->setValue(m_view->currentPage() + 1);
    m_count->setText(QStringLiteral(" / %1 ").arg(pages));
    m_status->setText(QStringLiteral("正在排版：第 %1 页").arg(pages));
}

void ReportPreview::askForText()
{
    m_sought->setFocus();
    m_sought->selectAll();
}

void ReportPreview::find()
{
    if (m_sought->text().isEmpty())
        return askForText();
    if (!m_view->findNext(m_sought->text()))
        dialogs().message(this, QStringLiteral("没有找到“%1”").arg(m_sought->text()), m_report.caption(),
                          MessageIcon::Information);
}

void ReportPreview::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        // Of the button that has the focus, or of the search box; no button of the window is the one to press.
        if (auto *button = qobject_cast<QAbstractButton *>(focusWidget()))
            button->click();
        return;
    }
    // page keys count wherever the focus is; text fields take theirs before
    if (event->key() == Qt::Key_Escape || !m_view->handleKey(event->key()))
        QDialog::keyPressEvent(event);
}

void ReportPreview::print()
{
    PrintMemory &choices = memory();
    const QString &report = m_report.name();
    QPrinter printer(QPrinter::HighResolution);
    if (choices.printers.contains(report))
        printer.setPrinterName(choices.printers.value(report));
    const auto choice = choices.of.constFind({report, printer.printerName()});
    if (choice != choices.of.constEnd()) {
        printer.setPageLayout(choice->layout);
        printer.setCopyCount(choice->copies);
        printer.setCollateCopies(choice->collate);
    } else {
        const Paper paper = paperFor(m_report.model());
        printer.setPageSize(QPageSize(QPageSize::A4));
        printer.setPageOrientation(paper.width > paper.height ? QPageLayout::Landscape : QPageLayout::Portrait);
    }
    printer.setDocName(titleOf(m_report));
    printer.setFromTo(0, 0);
    if (!choosePrinter(printer, this))
        return;
    choices.printers[report] = printer.printerName();
    choices.of[{report, printer.printerName()}] = {printer.pageLayout(), printer.copyCount(), printer.collateCopies()};
    printOn(printer);
}

bool ReportPreview::printOn(QPrinter &printer)
{
    const ReportTemplate &report = m_report.model();
    Paper paper = paperOf(printer.pageLayout(), report, false);
    if (paper.width < report.paperWidth() &&
        dialogs().ask(this, QStringLiteral("纸张宽度小于报表宽度，是否缩小以适合纸张？"), m_report.caption(),
                      Preset::Yes))
        paper = paperOf(printer.pageLayout(), report, true);
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

    printer.setFullPage(true);
    QPainter painter;
    if (!painter.begin(&printer)) {
        dialogs().message(this, QStringLiteral("打印机没有响应，不能打印！"), m_report.caption(),
                          MessageIcon::Critical);
        return false;
    }
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

void ReportPreview::savePdf()
{
    const std::optional<QString> path =
        dialogs().saveFile(this, QStringLiteral("另存为PDF"), fileNameOf(m_report) + QStringLiteral(".pdf"),
                           QStringLiteral("PDF (*.pdf)"));
    QString error;
    if (path && !writePdf(m_view->pages(), titleOf(m_report), *path, &error))
        dialogs().message(this, QStringLiteral("不能写入文件：%1").arg(error), m_report.caption(),
                          MessageIcon::Critical);
}

void ReportPreview::exportPages()
{
    if (!m_view->pages().isEmpty())
        excelExporter()(m_view->pages(), this);
}

void showPreview(Report &report, QWidget *parent)
{
    ReportPreview preview(report, parent);
    preview.exec();
}

void setExcelExporter(ExcelExporter exporter)
{
    excelExporter() = exporter ? std::move(exporter) : exportShownReport;
}

void setPrinterChooser(PrinterChooser chooser)
{
    printerChooser() = std::move(chooser);
}

} // namespace tradewick
