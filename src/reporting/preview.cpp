#include "reporting/preview.h"

#include "common/dialogs.h"
#include "common/flow_layout.h"
#include "common/window_keys.h"
#include "data/data_error.h"
#include "reporting/excel_export.h"
#include "reporting/painter.h"

#include <QAction>
#include <QDoubleSpinBox>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
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
      m_view(new PageView(this)), m_tools(new QWidget(this)), m_extras(new QWidget(this)), m_marks(new QLabel(this)),
      m_page(new QSpinBox(this)), m_count(new QLabel(this)), m_sought(new QLineEdit(this)), m_status(new QLabel(this)),
      m_progressRow(new QWidget(this))
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
    m_marks->setObjectName(QStringLiteral("marks"));
    m_extras->setObjectName(QStringLiteral("extras"));
    m_extras->setLayout(new FlowLayout(nullptr));
    addTools();
    addExtras();

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
    column->addWidget(m_extras);
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
    connect(addKeys(this, {QKeySequence(QStringLiteral("Ctrl+F"))}, m_sought->accessibleName()), &QShortcut::activated,
            this, &ReportPreview::askForText);
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

void ReportPreview::addBar(QWidget *row)
{
    m_bar = new QToolBar(row);
    m_bar->setToolButtonStyle(Qt::ToolButtonTextOnly);
    row->layout()->addWidget(m_bar);
}

void ReportPreview::addTools()
{
    // Two bars, of which the second stands below the first where the window is too narrow for both.
    addBar(m_tools);
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
    addBar(m_tools);
    m_bar->addWidget(m_sought);
    addTool({9, "find", "查找", {QKeySequence("F3")}, [this] { find(); }});
    m_bar->addSeparator();
    addTool({10, "print", "打印", {QKeySequence("Ctrl+P")}, [this] { print(); }, true});
    addTool({11, "pdf", "另存为PDF", {QKeySequence("Ctrl+S")}, [this] { savePdf(); }, true});
    if (m_report.model().overlay == Overlay::Choice) {
        QAction *only = addTool({13, "dataOnly", "只打数据", {QKeySequence("Alt+D")}, [this] { switchData(); }});
        only->setCheckable(true);
    }
    addTool({12, "close", "关闭", {}, [this] { reject(); }});
    if (m_report.family().excelTool)
        addTool({excelTool, "excel", "转换EXCEL文档", {QKeySequence("Alt+E")}, [this] { exportPages(); }, true});
}

// What is there for some reports only: texts that do not fit, and the place on preprinted paper.
void ReportPreview::addExtras()
{
    addBar(m_extras);
    m_marksBar = m_bar;
    m_bar->addWidget(m_marks);
    addTool({14, "previousMark", "上一处", {QKeySequence("Shift+F4")}, [this] { m_view->goToOverflow(-1); }});
    addTool({15, "nextMark", "下一处", {QKeySequence("F4")}, [this] { m_view->goToOverflow(1); }});
    if (m_report.model().overlay != Overlay::Never) {
        addBar(m_extras);
        m_shiftBar = m_bar;
        const auto spin = [this](const char *name, const QString &caption) {
            auto *box = new QDoubleSpinBox(m_bar);
            box->setObjectName(QLatin1String(name));
            box->setAccessibleName(caption);
            box->setPrefix(caption + u' ');
            box->setSuffix(QStringLiteral(" mm"));
            box->setDecimals(1);
            box->setSingleStep(0.1);
            box->setRange(-99.9, 99.9);
            box->setKeyboardTracking(false);
            m_bar->addWidget(box);
            return box;
        };
        m_shiftRight = spin("shiftRight", QStringLiteral("右移"));
        m_shiftDown = spin("shiftDown", QStringLiteral("下移"));
        showShift();
        connect(m_shiftRight, &QDoubleSpinBox::valueChanged, this, &ReportPreview::keepShift);
        connect(m_shiftDown, &QDoubleSpinBox::valueChanged, this, &ReportPreview::keepShift);
        addTool({16, "testSheet", "打印标尺", {}, [this] { printTestSheet(); }});
    }
    showExtras();
}

void ReportPreview::showExtras()
{
    const qsizetype marks = m_view->overflows();
    m_marks->setText(QStringLiteral(" 未印全：%1 处 ").arg(marks));
    m_marksBar->setVisible(marks > 0);
    if (m_shiftBar)
        m_shiftBar->setVisible(isOverlay());
    m_extras->setVisible(marks > 0 || isOverlay());
}

bool ReportPreview::isOverlay() const
{
    return m_dataOnly || m_report.model().overlay == Overlay::Always;
}

void ReportPreview::switchData()
{
    m_dataOnly = !m_dataOnly;
    m_view->clear();
    m_started = false;
    for (QAction *action : std::as_const(m_whenComplete))
        action->setEnabled(false);
    m_progressRow->show();
    layOut();
}

// Makes pages for a moment, then lets the window live and goes on.
void ReportPreview::layOut()
{
    try {
        if (!m_started) {
            m_started = true;
            m_layout = m_layouts(paper());
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
    showExtras();
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

void ReportPreview::savePdf()
{
    QString name = m_report.title();
    for (QChar &c : name) // as a file may be named on every system
        if (QStringView(u"/\\:*?\"<>|").contains(c) || !c.isPrint())
            c = u'_';
    const std::optional<QString> path =
        dialogs().saveFile(this, QStringLiteral("另存为PDF"), name + ".pdf", QStringLiteral("PDF (*.pdf)"));
    QString error;
    if (path && !writePdf(m_view->pages(), m_report.title(), *path, &error))
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

} // namespace tradewick
