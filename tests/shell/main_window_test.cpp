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

    main_FRM mainWindow;
    const Shown question{"是否真的退出系统？", "系统提示", MessageIcon::Question};
};

QStringList captions(const QList<QAction *> &actions)
{
    QStringList texts;
    for (const QAction *action : actions)
        texts.append(action->isSeparator() ? "-" : action->text());
    return texts;
}

} // namespace

TEST_F(MainWindow, HasTheBandsInTheirOrder)
{
    EXPECT_EQ(mainWindow.windowTitle(), "青柏外贸单证系统");
    EXPECT_EQ(captions(find<QMenuBar>(mainWindow, "Band1").actions()),
              QStringList({"【业务查询统计】", "【单证查询统计】", "【储运分析统计】", "【综合预算统计】",
                           "【系统帮助信息】"}));
    EXPECT_EQ(captions(find<QMenu>(mainWindow, "Band6").actions()),
              QStringList({"关于本系统...", "系统使用说明", "-", "服务器连接设置", "数据备份与恢复", "-", "退出系统"}));
    EXPECT_EQ(captions(find<QMenu>(mainWindow, "Band11").actions()),
              QStringList({"货物装柜测算", "出口成本预算", "-", "外销缴税统计", "外销合同综合统计"}));
    EXPECT_EQ(find<QAction>(mainWindow, "Tool136").menu(), &find<QMenu>(mainWindow, "Band11"));

    const std::pair<const char *, QStringList> groups[] = {
        {"ChildBand1", {"国外客户", "国内厂家", "商品资料", "采购合同", "外销合同"}},
        {"ChildBand3", {"信用证", "制单明细表", "税收票据", "核销单管理", "议付交单结汇"}},
        {"ChildBand4", {"船务公司", "订舱单", "拖车公司", "派车单", "海运提单"}},
        {"ChildBand2", {"付款方式", "币制设置", "结算方式", "区域设置", "口岸设置", "计量单位"}},
        {"ChildBand6", {"公司注册", "权限分配", "工作人员", "部门名称"}},
    };
    for (const auto &[name, texts] : groups) {
        QStringList found;
        for (const QToolButton *tool : find<QWidget>(mainWindow, name).findChildren<QToolButton *>()) {
            found.append(tool->text());
            EXPECT_EQ(tool->accessibleName(), tool->text());
            EXPECT_FALSE(tool->icon().isNull());
        }
        EXPECT_EQ(found, texts) << name;
    }
    EXPECT_EQ(find<QLabel>(mainWindow, "Tool28").text(), "青柏软件");
    EXPECT_EQ(find<QLabel>(mainWindow, "Tool16").text(), "Num Lock");
    EXPECT_EQ(find<QLabel>(mainWindow, "Tool18").text(), "2004-03-22");
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

TEST_F(MainWindow, FormsStandBelowTheToolBarWithTheirFrames)
{
    mainWindow.setGeometry(mainWindow.screen()->availableGeometry());
    QCoreApplication::processEvents();
    const auto &bar = find<QWidget>(mainWindow, "Band7");
    const int below = bar.mapToGlobal(QPoint(0, bar.height())).y();
    const int beside = mainWindow.mapToGlobal(QPoint(find<QWidget>(mainWindow, "Band8").width(), 0)).x();
    for (const auto &[tool, form] : {std::pair("Tool88", "sys_bzsz"), {"Tool96", "YY_WXHT"}}) {
        run(tool);
        QWidget *shown = window(form);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(shown));
        ASSERT_GT(shown->geometry().top(), shown->frameGeometry().top());
        EXPECT_GE(shown->frameGeometry().top(), below) << form;
        EXPECT_LT(shown->frameGeometry().top(), below + 60) << form;
        EXPECT_TRUE(shown->frameGeometry().left() >= beside || shown->objectName() != "sys_bzsz");
        EXPECT_TRUE(mainWindow.screen()->geometry().contains(shown->frameGeometry())) << form;
    }
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
