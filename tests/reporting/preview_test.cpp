#include "data/data_error.h"
#include "report_helpers.h"
#include "reporting/overlay.h"
#include "reporting/preview.h"
#include "support/scripted_dialogs.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QDoubleSpinBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPrinter>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSettings>
#include <QSpinBox>
#include <QTest>
#include <QWheelEvent>

namespace tradewick::test
{

namespace
{

class PreviewTest : public testing::Test
{
protected:
    ~PreviewTest() override
    {
        setExcelExporter({});
        setPrinterChooser({});
    }

    ReportPreview &open(int rows, const char *name = "yy_XsFp_dJRPT")
    {
        Report &of = report(QString::fromLatin1(name));
        m_preview = std::make_unique<ReportPreview>(of, nullptr, [this, &of, rows](const Paper &paper) {
            papers.append(paper);
            return of.layout(invoiceRows(rows), paper);
        });
        m_preview->resize(1200, 800);
        m_preview->show();
        QApplication::setActiveWindow(m_preview.get());
        return *m_preview;
    }
    ReportPreview &opened(int rows, const char *name = "yy_XsFp_dJRPT")
    {
        open(rows, name);
        EXPECT_TRUE(QTest::qWaitFor([this] { return action("print")->isEnabled(); }, 60000));
        return *m_preview;
    }

    template <class Control> Control *find(const char *name) const
    {
        auto *control = m_preview->findChild<Control *>(QLatin1String(name));
        EXPECT_TRUE(control) << name;
        return control;
    }
    QAction *action(const char *name) const { return find<QAction>(name); }
    PageView &view() const { return *find<PageView>("pages"); }
    int page() const { return find<QSpinBox>("page")->value(); }
    void click(const char *tool) const
    {
        QTest::mouseClick(find<QWidget>((QByteArray("tool_") + tool).constData()), Qt::LeftButton);
    }

    ScriptedDialogs asked;
    QVector<Paper> papers; // that pages were laid out for
    std::unique_ptr<ReportPreview> m_preview;
};

TEST_F(PreviewTest, FirstPageShowsWhileLaterOnesAreLaidOutAndCancelKeepsThem)
{
    open(20000);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !view().pages().isEmpty(); }, 60000));
    EXPECT_LT(view().pages().size(), 20000 / 27);
    EXPECT_EQ(page(), 1);
    EXPECT_EQ(view().verticalScrollBar()->value(), 0);
    EXPECT_FALSE(action("print")->isEnabled());
    EXPECT_TRUE(find<QWidget>("progress")->isVisible());
    QTest::mouseClick(find<QWidget>("cancel"), Qt::LeftButton);
    const qsizetype pages = view().pages().size();
    EXPECT_FALSE(find<QWidget>("progress")->isVisible());
    for (int turn = 0; turn < 50; ++turn)
        QApplication::processEvents();
    EXPECT_EQ(view().pages().size(), pages);
    EXPECT_LT(pages, 20000 / 27);
    EXPECT_TRUE(action("print")->isEnabled());
    EXPECT_EQ(find<QLabel>("count")->text(), QStringLiteral(" / %1 ").arg(pages));
}

TEST_F(PreviewTest, MovesByToolsKeysAndNumber)
{
    opened(120);
    ASSERT_EQ(view().pages().size(), 5);
    const struct {
        const char *tool;
        int key, page;
    } steps[] = {{"next", 0, 2},        {"last", 0, 5},           {"next", 0, 5},       {"previous", 0, 4},
                 {"first", 0, 1},       {"previous", 0, 1},       {"", Qt::Key_End, 5}, {"", Qt::Key_PageUp, 4},
                 {"", Qt::Key_Home, 1}, {"", Qt::Key_PageDown, 2}};
    for (const char *fit : {"fitWidth", "fitPage"}) {
        click(fit);
        view().goTo(0);
        for (const auto &step : steps) {
            if (step.key)
                QTest::keyClick(&view(), static_cast<Qt::Key>(step.key));
            else
                click(step.tool);
            EXPECT_EQ(page(), step.page) << step.tool << step.key << fit;
        }
        find<QSpinBox>("page")->setValue(4);
        EXPECT_EQ(view().currentPage(), 3);
    }
    // the keys count when a button has the focus as well
    find<QWidget>("tool_print")->setFocus();
    QTest::keyClick(find<QWidget>("tool_print"), Qt::Key_End);
    EXPECT_EQ(page(), 5);
    QTest::keyClick(&view(), Qt::Key_Escape);
    EXPECT_FALSE(m_preview->isVisible());
}

TEST_F(PreviewTest, ZoomsByToolsKeysAndWheel)
{
    opened(12);
    const double width = view().zoom();
    click("fitPage");
    const double whole = view().zoom();
    EXPECT_LT(whole, width);
    EXPECT_EQ(view().verticalScrollBar()->maximum(), 0);
    m_preview->resize(1200, 1000);
    QApplication::processEvents();
    EXPECT_GT(view().zoom(), whole); // the fit lasts
    QTest::keyClick(&view(), Qt::Key_0);
    EXPECT_EQ(view().zoom(), 1);
    QTest::keyClick(&view(), Qt::Key_Plus);
    EXPECT_GT(view().zoom(), 1);
    QTest::keyClick(&view(), Qt::Key_Minus);
    EXPECT_NEAR(view().zoom(), 1, 1e-9);
    click("zoomIn");
    click("zoomOut");
    EXPECT_NEAR(view().zoom(), 1, 1e-9);
    for (const int delta : {120, -120, -120}) {
        QWheelEvent wheel({100, 100}, view().viewport()->mapToGlobal(QPointF(100, 100)), {}, {0, delta}, Qt::NoButton,
                          Qt::ControlModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view().viewport(), &wheel);
    }
    EXPECT_LT(view().zoom(), 1);
    view().setZoom(1e9);
    EXPECT_EQ(view().zoom(), 8);
}

TEST_F(PreviewTest, FindsTextOnLaterPagesAndMarksIt)
{
    opened(120);
    QTest::keyClick(&view(), Qt::Key_F, Qt::ControlModifier);
    auto *sought = find<QLineEdit>("sought");
    ASSERT_EQ(QApplication::focusWidget(), sought);
    QTest::keyClicks(sought, "nb-0100");
    QTest::keyClick(sought, Qt::Key_Return);
    EXPECT_EQ(page(), 4);
    const QImage marked = view().viewport()->grab().toImage();
    const auto colours = [](const QImage &image) {
        QSet<QRgb> found;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                found.insert(image.pixel(x, y));
        return found;
    };
    EXPECT_TRUE(colours(marked).contains(0xffffa726));
    click("find"); // round, to the only one again
    EXPECT_EQ(page(), 4);
    EXPECT_TRUE(asked.shown.isEmpty());
    sought->clear();
    EXPECT_FALSE(colours(view().viewport()->grab().toImage()).contains(0xffffa726));
    QTest::keyClicks(sought, "NB-99999");
    QTest::keyClick(sought, Qt::Key_Return);
    EXPECT_EQ(asked.take().text, "没有找到“NB-99999”");
    EXPECT_TRUE(m_preview->isVisible()); // Enter pressed no button
}

TEST_F(PreviewTest, ExcelToolIsThereForItsFamiliesOnly)
{
    QVector<PagePtr> exported;
    int times = 0;
    setExcelExporter([&](const QVector<PagePtr> &pages, QWidget *) {
        exported = pages;
        ++times;
    });
    opened(120);
    EXPECT_EQ(m_preview->tools().last()->text(), "转换EXCEL文档");
    EXPECT_EQ(m_preview->tools().last()->data(), 999);
    click("excel");
    click("excel");
    EXPECT_EQ(times, 2);
    EXPECT_EQ(exported.size(), 5);
    EXPECT_TRUE(m_preview->isVisible());

    Report without({.excelTool = false}, templateOf("<detail height='0'/>"));
    const ReportPreview other(without);
    EXPECT_EQ(other.tools().last()->text(), "关闭");
}

TEST_F(PreviewTest, PdfIsWrittenWhereTheUserSays)
{
    QTemporaryDir folder;
    opened(12);
    click("pdf"); // cancelled
    EXPECT_EQ(asked.take().text, "另存为PDF");
    EXPECT_EQ(asked.suggested, "形式发票打印输出.pdf");
    Report &of = report("yy_XsFp_dJRPT");
    of.DataControl1.values = {{"htbh", "X26/0001 "}};
    click("pdf");
    EXPECT_EQ(asked.take().text, "另存为PDF");
    EXPECT_EQ(asked.suggested, "形式发票打印输出-X26_0001.pdf");
    of.DataControl1.values.clear();
    asked.typed = folder.filePath("out.pdf");
    click("pdf");
    asked.shown.clear();
    EXPECT_TRUE(pdfText(*asked.typed).contains("NB-0012"));
    asked.typed = folder.filePath("none/out.pdf");
    click("pdf");
    ASSERT_EQ(asked.shown.size(), 2);
    EXPECT_TRUE(asked.shown[1].text.startsWith("不能写入文件："));
    EXPECT_EQ(asked.shown[1].icon, MessageIcon::Critical);
}

TEST_F(PreviewTest, PrintsRangeCopiesAndPaperAndRemembersThem)
{
    QTemporaryDir folder;
    const QString path = folder.filePath("printed.pdf");
    QVector<QPageLayout> offered;
    QString job;
    std::function<void(QPrinter &)> choose;
    setPrinterChooser([&](QPrinter &printer, QWidget *) {
        offered.append(printer.pageLayout());
        job = printer.docName();
        if (!choose)
            return false;
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(path);
        choose(printer);
        return true;
    });
    opened(120, "YY_Xsfp_Rpt");
    click("print"); // cancelled
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_EQ(offered.last().orientation(), QPageLayout::Landscape);
    EXPECT_EQ(job, "形式发票");

    choose = [](QPrinter &printer) {
        printer.setPrintRange(QPrinter::PageRange);
        printer.setFromTo(2, 3);
    };
    asked.isClosed = true;
    QFile::remove(path);
    click("print"); // a sheet narrower than the template: asked, and nothing printed without an answer
    EXPECT_EQ(asked.take().text, "纸张宽度小于报表宽度，是否缩小以适合纸张？");
    EXPECT_FALSE(QFile::exists(path));
    asked.isClosed = false;
    click("print"); // and made to fit
    EXPECT_EQ(asked.take().text, "纸张宽度小于报表宽度，是否缩小以适合纸张？");
    QStringList pages = pdfText(path).split('\f', Qt::SkipEmptyParts);
    ASSERT_EQ(pages.size(), 2);
    EXPECT_TRUE(pages[0].simplified().contains("Page 2 Of 6") && pages[1].simplified().contains("Page 3 Of 6"));
    EXPECT_TRUE(pages[0].contains("AMOUNT"));

    choose = [](QPrinter &printer) { printer.setPageSize(QPageSize(QPageSize::A3)); };
    click("print"); // wide enough: nothing to ask, pages laid out for it
    EXPECT_TRUE(asked.shown.isEmpty());
    EXPECT_EQ(papers.last().scale, 1);
    EXPECT_NEAR(papers.last().width, 23811, 20);
    pages = pdfText(path).split('\f', Qt::SkipEmptyParts);
    EXPECT_LT(pages.size(), 6);

    click("print");
    EXPECT_EQ(offered.last().pageSize().id(), QPageSize::A3); // remembered
    opened(1, "YY_Xsfp_Rpt");
    EXPECT_NEAR(papers.last().width, 23811, 20); // by the next preview of the report too
    opened(1);
    EXPECT_EQ(papers.last(), Paper()); // and by no other
}

TEST_F(PreviewTest, TextsThatDoNotFitAreMarkedCountedAndSteppedThrough)
{
    opened(1); // all of it fits
    EXPECT_FALSE(find<QWidget>("extras")->isVisible());
    const QString bands = "<detail height='9000'><field name='F' left='0' top='%1' width='2000' height='240' "
                          "dataField='a'/></detail>";
    static Report of(reportFamilyA(), templateOf(bands.arg(4000)));
    const auto rows = [](int row) { return QVariantList{QString(row == 1 ? 1 : 100, 'W')}; };
    m_preview = std::make_unique<ReportPreview>(of, nullptr, [rows](const Paper &paper) {
        return of.layout(std::make_unique<TestRows>(QStringList{"a"}, 3, rows), paper);
    });
    m_preview->show();
    ASSERT_TRUE(QTest::qWaitFor([this] { return action("print")->isEnabled(); }, 60000));
    EXPECT_TRUE(find<QWidget>("extras")->isVisible());
    EXPECT_EQ(find<QLabel>("marks")->text(), " 未印全：2 处 ");
    const auto reds = [this] { // pixels in the colours of a mark
        const QImage image = view().viewport()->grab().toImage();
        int found = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                found += qRed(image.pixel(x, y)) > 150 && qBlue(image.pixel(x, y)) < qRed(image.pixel(x, y)) - 15;
        return found;
    };
    view().fitPage();
    EXPECT_GT(reds(), 50);
    const struct {
        const char *tool;
        int page;
    } steps[] = {{"nextMark", 1}, {"nextMark", 3}, {"nextMark", 1}, {"previousMark", 3}};
    for (const auto &step : steps) {
        click(step.tool);
        EXPECT_EQ(page(), step.page) << step.tool;
        EXPECT_GT(reds(), 50);
    }
    view().goTo(1);
    EXPECT_EQ(reds(), 0);
}

TEST_F(PreviewTest, DataGoesOntoPreprintedPaperWhereThePrinterNeedsIt)
{
    QTemporaryDir folder;
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder.path());
    setPrinterChooser([&](QPrinter &printer, QWidget *) {
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(folder.filePath("printed.pdf"));
        return true;
    });
    // where the word begins, in points from the sheet's upper left corner
    const auto placeOf = [&](const QString &word) {
        const QString words = QString::fromUtf8(output("pdftotext", {"-bbox", folder.filePath("printed.pdf"), "-"}));
        const QRegularExpression place("xMin=\"([0-9.]+)\" yMin=\"([0-9.]+)\"[^>]*>" + word);
        const QRegularExpressionMatch found = place.match(words);
        return found.hasMatch() ? QPointF(found.captured(1).toDouble(), found.captured(2).toDouble()) : QPointF(-1, -1);
    };
    const QString bands =
        "<detail height='9000'><label name='C' left='0' top='0' width='2000' height='240'>CAPTION</label>"
        "<field name='F' left='15000' top='2000' width='2000' height='240' dataField='a'/></detail>";
    for (const QString &overlay : {QStringLiteral("choice"), QStringLiteral("always")}) {
        Report of(reportFamilyA(), templateOf(bands, "overlay='" + overlay + "'"));
        const auto openIt = [&] {
            m_preview = std::make_unique<ReportPreview>(of, nullptr, [&](const Paper &paper) {
                papers.append(paper);
                return of.layout(
                    std::make_unique<TestRows>(QStringList{"a"}, QVector<QVariantList>{{QStringLiteral("DATA")}}),
                    paper);
            });
            m_preview->show();
            ASSERT_TRUE(QTest::qWaitFor([this] { return action("print")->isEnabled(); }, 60000));
            if (overlay == "choice") {
                EXPECT_FALSE(find<QWidget>("extras")->isVisible());
                click("dataOnly");
                ASSERT_TRUE(QTest::qWaitFor([this] { return action("print")->isEnabled(); }, 60000));
            }
        };
        openIt();
        EXPECT_TRUE(papers.last().scale == 1 && papers.last().shift == 0);
        click("print");
        const QPointF before = placeOf("DATA");
        EXPECT_NEAR(before.x(), 15100 / 20.0, 1);
        EXPECT_EQ(placeOf("CAPTION").x() < 0, overlay == "choice");
        EXPECT_TRUE(asked.shown.isEmpty()); // nothing is offered to be drawn smaller
        find<QDoubleSpinBox>("shiftRight")->setValue(-12.5);
        find<QDoubleSpinBox>("shiftDown")->setValue(3.1);
        openIt(); // kept
        EXPECT_EQ(find<QDoubleSpinBox>("shiftRight")->value(), -12.5);
        click("print");
        EXPECT_NEAR(placeOf("DATA").x() - before.x(), -12.5 / 25.4 * 72, 0.1);
        EXPECT_NEAR(placeOf("DATA").y() - before.y(), 3.1 / 25.4 * 72, 0.1);
        click("testSheet");
        const QPointF cross = placeOf("100/150"); // a figure beside its cross, moved as the data is
        EXPECT_NEAR(cross.x(), (100.5 - 12.5) / 25.4 * 72, 1);
        EXPECT_EQ(paperShift("another", "t"), PaperShift()); // neither on another printer
        EXPECT_EQ(paperShift({}, "another"), PaperShift());  // nor of another document
        find<QDoubleSpinBox>("shiftRight")->setValue(0);
        find<QDoubleSpinBox>("shiftDown")->setValue(0);
        m_preview.reset(); // before its report
    }
}

TEST_F(PreviewTest, BrokenRowsAreToldAndThePreviewStays)
{
    Report &of = report("YY_Xsfp_Rpt");
    m_preview = std::make_unique<ReportPreview>(of, nullptr, [&of](const Paper &paper) {
        return of.layout(std::make_unique<TestRows>(QStringList{"cpbh"}, 1000,
                                                    [](int row) {
                                                        if (row == 500)
                                                            throw DataError(2006, "server has gone away");
                                                        return QVariantList{row};
                                                    }),
                         paper);
    });
    m_preview->show();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !asked.shown.isEmpty(); }, 60000));
    EXPECT_EQ(asked.take(), (Shown{"server has gone away", "形式发票", MessageIcon::Critical}));
    EXPECT_TRUE(m_preview->isVisible());
    EXPECT_GT(view().pages().size(), 1);
}

TEST_F(PreviewTest, EveryControlHasNames)
{
    setExcelExporter([](const QVector<PagePtr> &, QWidget *) {});
    opened(1);
    const QStringList captions{"首页",     "上一页", "下一页", "末页",      "放大", "缩小",         "适合宽度",
                               "适合页面", "查找",   "打印",   "另存为PDF", "关闭", "转换EXCEL文档"};
    QStringList found;
    for (const QAction *tool : m_preview->tools())
        found.append(tool->text());
    EXPECT_EQ(found, captions);
    for (QWidget *control : m_preview->findChildren<QWidget *>()) {
        const bool operated = qobject_cast<QAbstractButton *>(control) || qobject_cast<QAbstractSpinBox *>(control) ||
                              qobject_cast<QLineEdit *>(control) || qobject_cast<PageView *>(control);
        if (!operated || !control->isVisible() || control->objectName().startsWith("qt_") ||
            control->parentWidget()->inherits("QLineEdit"))
            continue;
        EXPECT_FALSE(control->objectName().isEmpty()) << control->metaObject()->className();
        EXPECT_FALSE(control->accessibleName().isEmpty()) << control->objectName().toStdString();
        EXPECT_NE(control->focusPolicy() & Qt::TabFocus, 0) << control->objectName().toStdString();
    }
    // All of it in the width of a small screen, in two rows where that is at twice the scale.
    for (const QSize &size : {QSize(1366, 700), QSize(683, 350)}) {
        m_preview->resize(size);
        QCoreApplication::processEvents();
        EXPECT_EQ(m_preview->size(), size);
        for (const QAction *tool : m_preview->tools()) {
            const auto *button = find<QWidget>(("tool_" + tool->objectName()).toLatin1().constData());
            const QRect shown(button->mapTo(m_preview.get(), QPoint()), button->size());
            EXPECT_TRUE(button->isVisible() && m_preview->rect().contains(shown)) << tool->text().toStdString();
            EXPECT_GE(shown.width(), button->sizeHint().width()) << tool->text().toStdString();
        }
    }
    auto *last = find<QWidget>("tool_excel");
    int times = 0;
    setExcelExporter([&times](const QVector<PagePtr> &, QWidget *) { ++times; });
    last->setFocus();
    QTest::keyClick(last, Qt::Key_Return);
    QTest::keyClick(last, Qt::Key_Space);
    EXPECT_EQ(times, 2);
}

} // namespace

} // namespace tradewick::test
