#include "shell/commands.h"
#include "shell/main_window.h"
#include "shell/picture.h"
#include "shell_support.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QScreen>
#include <QScrollArea>
#include <QSignalSpy>
#include <QTime>
#include <QTimer>
#include <QToolButton>

using namespace tradewick;
using namespace tradewick::test;

namespace
{

class MainWindow : public ShellTest
{
protected:
    MainWindow()
    {
        writeSettings({{{}, "sa", database.dataSource(), {}}});
        mainWindow.resize(1366, 768);
        mainWindow.show();
    }
    void run(const QString &tool) { find<QAction>(mainWindow, tool).trigger(); }
    QToolButton &button(const QString &name) { return find<QToolButton>(mainWindow, name); }

    template <class Commands>
    void expectCommands(const QList<QAction *> &actions, const Commands &commands, const std::vector<Band> &bands)
    {
        ASSERT_EQ(actions.size(), commands.size());
        for (qsizetype i = 0; i < actions.size(); ++i) {
            const auto &[tool, caption, form] = commands[i];
            EXPECT_EQ(actions[i]->objectName(), tool);
            EXPECT_EQ(actions[i]->text(), caption);
            EXPECT_EQ(actions[i]->isSeparator(), !*caption);
            for (const Band &band : bands)
                for (const Tool &declared : band.tools)
                    EXPECT_TRUE(declared.name != tool || declared.opens == form) << tool;
            if (form == std::string("exit"))
                continue;
            actions[i]->trigger();
            EXPECT_EQ(window(form) != nullptr, formEntry(form) != nullptr) << tool;
            if (window(form))
                window(form)->close();
        }
    }

    main_FRM mainWindow;
    const Shown question{"是否真的退出系统？", "系统提示", MessageIcon::Question};
};

// The name that a form has when it is open; "" for a command that opens none.
struct Command {
    const char *tool, *caption, *form;
};

// Bands in their order, the Tools in theirs; a line is a separator.
const std::pair<const char *, std::vector<Command>> menus[] = {
    {"Band2",
     {{"Tool109", "商品资料查询统计", "YY_spZl_CXTjB"},
      {"Tool112", "国内采购合同统计", "YY_cgHt_CXtjb"},
      {"Tool118", "", ""},
      {"Tool121", "国外销售合同统计", "YY_WXHt_cxTjB"}}},
    {"Band3",
     {{"Tool108", "信用证接收统计", "YY_XYz_CxTj"},
      {"Tool110", "明细单查询统计", "YY_mxd_CxTj"},
      {"Tool119", "", ""},
      {"Tool120", "核销单领用回收", "YY_HxD_LyHs_TJB"}}},
    {"Band10",
     {{"Tool130", "订舱查询统计", "YY_DcD_CxTj"},
      {"Tool131", "派车查询统计", "CY_Pcd_CxTj"},
      {"Tool133", "", ""},
      {"Tool132", "海运提单查询", ""}}},
    {"Band11",
     {{"Tool138", "货物装柜测算", ""},
      {"Tool139", "出口成本预算", ""},
      {"Tool140", "", ""},
      {"Tool141", "外销缴税统计", "YY_ZsQk_TJB"},
      {"Tool142", "外销合同综合统计", ""}}},
    {"Band6",
     {{"Tool59", "关于本系统...", "frmAbout"},
      {"Tool64", "系统使用说明", ""},
      {"Tool62", "", ""},
      {"Tool61", "服务器连接设置", "frmODBCLogon"},
      {"Tool60", "数据备份与恢复", ""},
      {"Tool65", "", ""},
      {"Tool129", "退出系统", "exit"}}},
};
const std::pair<const char *, std::vector<Command>> groups[] = {
    {"ChildBand1",
     {{"Tool84", "国外客户", "YY_GWKH_ZL"},
      {"Tool98", "国内厂家", "yy_GYszl"},
      {"Tool94", "商品资料", "yy_cpbj"},
      {"Tool95", "采购合同", "YY_CGHT"},
      {"Tool96", "外销合同", "YY_WXHT"}}},
    {"ChildBand3",
     {{"Tool93", "信用证", "YY_XyZ_New_Rpt"},
      {"Tool114", "制单明细表", "YY_DZ_MXB"},
      {"Tool115", "税收票据", "YY_SsPj_DJB"},
      {"Tool107", "核销单管理", "CY_HXD_Djb"},
      {"Tool106", "议付交单结汇", ""}}},
    {"ChildBand4",
     {{"Tool103", "船务公司", "Sys_CwGs_ZL"},
      {"Tool101", "订舱单", "CY_Dcd_Rpt"},
      {"Tool104", "拖车公司", "Sys_TcGs_Set"},
      {"Tool105", "派车单", "CY_Pcd_Djb"},
      {"Tool8", "海运提单", "cy_HYtD_DjB"}}},
    {"ChildBand2",
     {{"Tool86", "付款方式", "sys_zffs"},
      {"Tool88", "币制设置", "sys_bzsz"},
      {"Tool87", "结算方式", "sys_fkfs"},
      {"Tool85", "区域设置", "sys_qysz"},
      {"Tool89", "口岸设置", "Sys_GKSZ"},
      {"Tool97", "计量单位", "sys_JLDW"}}},
    {"ChildBand6",
     {{"Tool54", "公司注册", "sys_gssz"},
      {"Tool55", "权限分配", "sys_QXSZ"},
      {"Tool56", "工作人员", "sys_gzry"},
      {"Tool57", "部门名称", "sys_bmsz"}}},
};

} // namespace

// Each command stands in its band, bears its caption, and opens its form, or will when that form is there.
TEST_F(MainWindow, EachCommandStandsInItsPlaceAndOpensItsForm)
{
    const auto &bar = find<QMenuBar>(mainWindow, "Band1");
    qsizetype head = 0;
    for (const auto &[band, commands] : menus) {
        const auto &menu = find<QMenu>(mainWindow, band);
        EXPECT_EQ(bar.actions().value(head++), menu.menuAction()) << band;
        expectCommands(menu.actions(), commands, menuBands());
    }
    for (const auto &[group, commands] : groups) {
        QList<QAction *> actions;
        for (const QToolButton *tool : find<QWidget>(mainWindow, group).findChildren<QToolButton *>())
            actions.append(tool->defaultAction());
        expectCommands(actions, commands, sideBands());
    }
}

TEST_F(MainWindow, ACommandWithoutAFormDoesNothing)
{
    const auto windows = QApplication::topLevelWidgets().size();
    for (const char *tool : {"Tool6", "Tool106", "Tool132", "Tool138", "Tool139", "Tool142", "Tool64", "Tool60"})
        run(tool);
    EXPECT_EQ(QApplication::topLevelWidgets().size(), windows);
    EXPECT_TRUE(dialogs.shown.isEmpty());
    EXPECT_TRUE(ends.isEmpty());
}

TEST_F(MainWindow, OpensOneInstanceOfAFormUntilItIsClosed)
{
    for (const auto &[tool, form] : {std::pair("Tool59", "frmAbout"),
                                     {"Tool19", "frmAbout"},
                                     {"Tool61", "frmODBCLogon"},
                                     {"Tool5", "frmSplash"}}) {
        run(tool);
        const QPointer<QWidget> first = window(form);
        ASSERT_TRUE(first) << tool;
        EXPECT_FALSE(first->isModal());
        first->showMinimized();
        run(tool);
        EXPECT_EQ(window(form), first);
        EXPECT_FALSE(first->isMinimized());
        first->close();
        run(tool); // before the closed one is deleted
        EXPECT_NE(window(form), nullptr);
        EXPECT_NE(window(form), first);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_FALSE(first);
        window(form)->close();
        EXPECT_EQ(window(form), nullptr);
    }
}

TEST_F(MainWindow, TheSplashClosesAtAClickOnItsPicture)
{
    run("Tool5");
    EXPECT_TRUE(window("frmSplash")->windowFlags().testFlag(Qt::FramelessWindowHint));
    click(*window("frmSplash"), "Picture1");
    EXPECT_EQ(window("frmSplash"), nullptr);
    run("Tool5");
    QTest::keyClick(window("frmSplash"), Qt::Key_Escape);
    EXPECT_EQ(window("frmSplash"), nullptr);
}

TEST_F(MainWindow, TheAboutBoxHasNoSystemInformation)
{
    run("Tool59");
    EXPECT_EQ(window("frmAbout")->windowTitle(), "关于.... ");
    EXPECT_EQ(find<QLabel>(*window("frmAbout"), "lblTitle").text(), "青柏外贸单证系统");
    click(*window("frmAbout"), "cmdSysInfo");
    EXPECT_EQ(dialogs.take().text, "此时系统信息不可用");
    click(*window("frmAbout"), "cmdOK");
    EXPECT_EQ(window("frmAbout"), nullptr);
}

TEST_F(MainWindow, AsksOnceBeforeTheProcessEnds)
{
    const std::function<void()> ways[] = {[this] { run("Tool7"); }, [this] { run("Tool129"); },
                                          [this] { mainWindow.close(); }};
    for (const auto &way : ways) {
        dialogs.answer = false;
        way();
        EXPECT_EQ(dialogs.take(), question);
        EXPECT_TRUE(ends.isEmpty());
        EXPECT_TRUE(mainWindow.isVisible());
        dialogs.answer = true;
        way();
        EXPECT_EQ(dialogs.take(), question);
        EXPECT_EQ(ends, QList{0});
        ends.clear();
    }
    EXPECT_FALSE(mainWindow.isVisible()); // closed by its frame
}

TEST_F(MainWindow, WhoeverEndsTheProcessHearsOfWhatIsNotStored)
{
    run("Tool88");
    auto &form = *window("sys_bzsz");
    dialogs.answer = false;
    for (const bool adding : {true, false}) {
        click(form, adding ? "Cmdadd" : "Cmdcancel");
        run("Tool7");
        EXPECT_EQ(dialogs.take().text.contains("尚有未保存的记录"), adding);
    }
}

TEST_F(MainWindow, TheProcessEndsAtOnceWithoutAskingAgain)
{
    setEndProcess({});
    EXPECT_EXIT(run("Tool7"), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(endProcess(1), testing::ExitedWithCode(1), "");
}

TEST_F(MainWindow, TheClockFollowsTheTimerAndTheLoginTimeDoesNot)
{
    auto &timer = find<QTimer>(mainWindow, "Timer1");
    auto &clock = find<QLabel>(mainWindow, "Tool23");
    EXPECT_EQ(timer.interval(), 1000);
    EXPECT_TRUE(timer.isActive());
    mainWindow.setStatusText("登录");
    clock.clear();
    QSignalSpy spy(&timer, &QTimer::timeout);
    ASSERT_TRUE(spy.wait(5000));
    EXPECT_LE(QTime::fromString(clock.text(), "HH:mm:ss").secsTo(QTime::currentTime()), 2)
        << clock.text().toStdString();
    EXPECT_EQ(find<QLabel>(mainWindow, "Tool27").text(), "登录");
}

TEST_F(MainWindow, ASwitchedOffCommandCannotBeInvoked)
{
    mainWindow.switchOff("Tool59");
    run("Tool59");
    EXPECT_EQ(window("frmAbout"), nullptr);
    mainWindow.switchOff("Tool84");
    EXPECT_FALSE(button("Tool84").isEnabled());
    EXPECT_TRUE(button("Tool98").isEnabled());
}

TEST_F(MainWindow, TheSideBarIsWorkedByKeyboard)
{
    auto &side = find<QScrollArea>(mainWindow, "Band8");
    QApplication::setActiveWindow(&mainWindow);
    button("Tool84").setFocus();
    mainWindow.switchOff("Tool98");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_EQ(QApplication::focusWidget(), &button("Tool94")); // over the one that is off
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    auto *header = qobject_cast<QToolButton *>(QApplication::focusWidget());
    ASSERT_TRUE(header);
    EXPECT_EQ(header->text(), "单证管理");
    QTest::keyClick(header, Qt::Key_Return);
    EXPECT_TRUE(button("Tool93").isVisibleTo(&side));
    EXPECT_FALSE(button("Tool84").isVisibleTo(&side)); // one group is open at a time
    QTest::keyClick(header, Qt::Key_Up);
    EXPECT_EQ(QApplication::focusWidget()->accessibleName(), "业务管理");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up);
    EXPECT_EQ(QApplication::focusWidget()->accessibleName(), "系统设置"); // around the top
}

TEST_F(MainWindow, EnterPressesAToolThatHasTheFocus)
{
    QApplication::setActiveWindow(&mainWindow);
    auto &tools = find<QWidget>(mainWindow, "Band7");
    auto &about = find<QToolButton>(tools, "Tool19");
    about.setFocus();
    QTest::keyClick(&about, Qt::Key_Return);
    EXPECT_NE(window("frmAbout"), nullptr);
}

// In twips from the picture and the tool bar, as a form's frame stands; a second one stands aside, and ends with the
// first.
TEST_F(MainWindow, FormsStandAtTheirPlacesAndNotExactlyOverEachOther)
{
    mainWindow.setGeometry(mainWindow.screen()->availableGeometry());
    QCoreApplication::processEvents();
    const QRect picture = find<Picture>(mainWindow, "Picture1").geometry();
    const QPoint frame(mainWindow.geometry().left(), mainWindow.frameGeometry().top());
    const double bar = find<QWidget>(mainWindow, "Band7").height();
    const QRect screen = mainWindow.screen()->availableGeometry();
    const QRectF code(frame.x() + picture.left() + 1, frame.y() + bar * 2.5 - 50 / 15.0, picture.width() - 2,
                      picture.height() - 20);
    const QRectF document(screen.left(), frame.y() + picture.top() + 20, screen.width(), picture.height());
    struct Case {
        const char *tool, *form;
        QRectF area;
        int step;
    };
    const Case cases[] = {{"Tool88", "sys_bzsz", code, 0},
                          {"Tool96", "YY_WXHT", document, 0},
                          {"Tool89", "Sys_GKSZ", code, 1},
                          {"Tool103", "Sys_CwGs_ZL", document, 1},
                          {"Tool97", "sys_JLDW", code, 2}};
    for (const auto &[tool, form, area, step] : cases) {
        run(tool);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window(form)));
        const QRectF expected = area & QRectF(screen);
        const QRect stands = window(form)->frameGeometry();
        const double aside = stands.left() - expected.left();
        EXPECT_EQ(step == 0, aside < 2) << form;
        EXPECT_NEAR(stands.top() - expected.top(), aside, 2) << form;
        EXPECT_NEAR(stands.right() + 1, expected.right(), 2) << form;
        EXPECT_NEAR(stands.bottom() + 1, expected.bottom(), 2) << form;
    }
    EXPECT_NE(window("Sys_GKSZ")->pos(), window("sys_JLDW")->pos());
    window("Sys_GKSZ")->close();
    run("Tool86"); // the place that became free
    EXPECT_LT(window("sys_zffs")->pos().x(), window("sys_JLDW")->pos().x());
}

TEST_F(MainWindow, OpenFormsStayInFrontAndAreMarkedAndGoneRound)
{
    run("Tool88");
    run("Tool89");
    QWidget *first = window("sys_bzsz");
    QWidget *second = window("Sys_GKSZ");
    for (const QWidget *form : {first, second}) {
        EXPECT_EQ(form->windowType(), Qt::Dialog); // which window managers keep over the window that it belongs to
        EXPECT_EQ(form->parentWidget(), &mainWindow);
        EXPECT_TRUE(form->windowFlags().testFlags(Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint));
    }
    EXPECT_TRUE(button("Tool88").property("open").toBool() && button("Tool89").property("open").toBool());
    EXPECT_FALSE(button("Tool86").property("open").toBool());

    struct Press {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        QWidget *reached;
    };
    const Press presses[] = {
        {Qt::Key_F6, Qt::NoModifier, &mainWindow},
        {Qt::Key_F6, Qt::NoModifier, first},
        {Qt::Key_Tab, Qt::ControlModifier, second},
        {Qt::Key_F6, Qt::ShiftModifier, first},
        {Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier, &mainWindow},
    };
    ASSERT_TRUE(QTest::qWaitFor([second] { return QApplication::activeWindow() == second; }, 5000));
    for (const auto &[key, modifiers, reached] : presses) {
        QWidget *from = QApplication::activeWindow();
        QTest::keyClick(from->focusWidget() ? from->focusWidget() : from, key, modifiers);
        EXPECT_TRUE(QTest::qWaitFor([reached = reached] { return QApplication::activeWindow() == reached; }, 5000))
            << key;
    }
    first->close();
    run("Tool88"); // again, before the closed one is deleted
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(button("Tool88").property("open").toBool());
    window("sys_bzsz")->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(button("Tool88").property("open").toBool());
}

TEST_F(MainWindow, MenusOpenByKeyboard)
{
    QApplication::setActiveWindow(&mainWindow);
    auto &bar = find<QMenuBar>(mainWindow, "Band1");
    const std::pair<QKeyCombination, int> keys[] = {
        {Qt::Key_F10, 0}, {Qt::ALT | Qt::Key_1, 0}, {Qt::ALT | Qt::Key_5, 4}};
    for (const auto &[key, head] : keys) {
        QTest::keyClick(&mainWindow, key.key(), key.keyboardModifiers());
        EXPECT_EQ(bar.activeAction(), bar.actions()[head]);
        if (QWidget *popup = QApplication::activePopupWidget())
            popup->close();
        bar.setActiveAction(nullptr);
    }
}

TEST_F(MainWindow, NothingIsCutOffOnASmallScreen)
{
    for (const QSize &size : {QSize(1366, 768), QSize(683, 384)}) { // the same screen at twice the scale
        mainWindow.resize(size);
        EXPECT_EQ(mainWindow.size(), size);
        for (const Band &band : sideBands()) {
            auto &group = find<QWidget>(mainWindow, band.name);
            for (auto *header : mainWindow.findChildren<QToolButton *>())
                if (header->text() == band.caption && !header->isChecked())
                    QTest::mouseClick(header, Qt::LeftButton);
            QCoreApplication::processEvents();
            ASSERT_TRUE(group.isVisible());
            for (const Tool &tool : band.tools)
                EXPECT_GE(button(tool.name).width(), button(tool.name).sizeHint().width());
        }
    }
}

TEST(FreeArea, FollowsTheBands)
{
    const WindowLengths lengths{20000, 12000, 600, 2000};
    EXPECT_EQ(freeArea(lengths, 10), QRectF(2004, 1030, 17800, 10190));
    EXPECT_EQ(freeArea(lengths, 200), QRectF(2004, 1030, 17800, 10000));
    EXPECT_EQ(freeArea({20000, 1900, 600, 2000}, 200), std::nullopt);
    EXPECT_EQ(freeArea({2100, 12000, 600, 2000}, 200), std::nullopt);
}

TEST_F(MainWindow, ThePictureFillsTheFreeAreaAtEverySize)
{
    const auto &picture = find<Picture>(mainWindow, "Picture1");
    for (const QSize &size : {QSize(1000, 700), QSize(1366, 768)}) {
        mainWindow.resize(size);
        const int side = find<QWidget>(mainWindow, "Band8").width();
        EXPECT_NEAR(picture.x(), side, 1);
        EXPECT_NEAR(picture.width(), size.width() - side - 200 / 15.0, 1);
        const auto &toolBar = find<QWidget>(mainWindow, "Band7");
        EXPECT_NEAR(picture.y(), toolBar.height() * 1.7 + 10 / 15.0, 1);
        EXPECT_NEAR(picture.height(), size.height() - 3 * toolBar.height() - 200 / 15.0, 1);
    }
}
