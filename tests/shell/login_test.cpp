#include "shell/login.h"
#include "shell/main_window.h"
#include "shell_support.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QRegularExpression>

using namespace tradewick;
using namespace tradewick::test;

namespace
{

const Shown noSuchUser{"没有此用户名，请重新选择！", "系统提示", MessageIcon::Critical};
const Shown wrongPassword{"密码错误，请重新确认!", "系统提示", MessageIcon::Critical};

class Login : public ShellTest
{
protected:
    Login()
    {
        database.connection().Execute("delete from qb_pass");
        addUser("Wang", "Pw1");
        addUser("李'四", "x ");
        addUser("nopass", {});
    }
    void addUser(const QString &name, const QVariant &pass)
    {
        database.connection().Execute("insert into qb_pass (name, pass) values ('{name}', '{pass}')",
                                      {{"name", name}, {"pass", pass}});
    }
    frmLogin &open()
    {
        login = std::make_unique<frmLogin>(&mainWindow);
        mainWindow.show();
        login->open();
        return *login;
    }
    void enter(const QString &name, const QString &password)
    {
        find<QComboBox>(*login, "C_NA").setEditText(name);
        find<QLineEdit>(*login, "txtPassword").setText(password);
        click(*login, "cmdOK");
    }
    QString status() { return find<QLabel>(mainWindow, "Tool27").text(); }

    main_FRM mainWindow;
    std::unique_ptr<frmLogin> login;
};

} // namespace

TEST_F(Login, OffersTheNamesAndSuggestsTheSystemsUser)
{
    addUser("Wang", "second");
    database.connection().Execute("insert into qb_pass (pass) values ('nameless')");
    const auto &names = find<QComboBox>(open(), "C_NA");
    QStringList offered;
    for (int i = 0; i < names.count(); ++i)
        offered.append(names.itemText(i));
    EXPECT_EQ(offered, QStringList({"nopass", "Wang", "李'四"}));
    QProcess system;
    system.start("id", {"-un"});
    ASSERT_TRUE(system.waitForFinished());
    EXPECT_EQ(names.currentText(), QString::fromLocal8Bit(system.readAll()).trimmed());
    EXPECT_EQ(find<QLineEdit>(*login, "txtPassword").displayText(), "");
    QTest::keyClicks(&find<QLineEdit>(*login, "txtPassword"), "ab");
    EXPECT_EQ(find<QLineEdit>(*login, "txtPassword").displayText(), "**");
}

TEST_F(Login, TellsAnUnknownNameFromAWrongPassword)
{
    struct Case {
        const char *name, *password;
        Shown message;
    };
    const Case cases[] = {
        {"nobody", "", noSuchUser},     {"", "", noSuchUser},           {"Wang' or '1'='1", "", noSuchUser},
        {"Wang", "", wrongPassword},    {"Wang", "pw1", wrongPassword}, {"Wang", "Pw1 ", wrongPassword},
        {"wang", "Pw1", wrongPassword}, // found without regard to case, then compared exactly
        {"李'四", "x", wrongPassword},  {"nopass", "", wrongPassword},
    };
    open();
    for (const auto &[name, password, message] : cases) {
        enter(name, password);
        EXPECT_EQ(dialogs.take(), message) << name;
        const bool unknown = message == noSuchUser;
        EXPECT_EQ(find<QComboBox>(*login, "C_NA").currentText(), unknown ? "" : name);
        EXPECT_EQ(find<QLineEdit>(*login, "txtPassword").text(), unknown ? password : "");
        EXPECT_EQ(login->focusWidget(), &find<QWidget>(*login, unknown ? "C_NA" : "txtPassword"));
        EXPECT_TRUE(login->isVisible());
    }
    EXPECT_EQ(gOperatorName, "");
    EXPECT_EQ(status(), "");
}

TEST_F(Login, NamesTheOperatorInTheStatusText)
{
    gCompanyName = "  青柏进出口 ";
    open();
    enter("李'四", "x ");
    EXPECT_FALSE(login->isVisible());
    EXPECT_TRUE(dialogs.shown.isEmpty());
    EXPECT_EQ(gOperatorName, "李'四");
    EXPECT_TRUE(QRegularExpression("^青柏进出口     操作员 :李'四          操作时间:\\d\\d:\\d\\d:\\d\\d$")
                    .match(status())
                    .hasMatch())
        << status().toStdString();

    gCompanyName.clear();
    open();
    enter("Wang", "Pw1");
    EXPECT_TRUE(status().startsWith("     操作员 :Wang"));
}

// Each flag alone switches off the one command that it governs, the last five none, and Null leaves on.
TEST_F(Login, EachFlagSwitchesOffItsCommandAndNoOther)
{
    const char *const governed[28] = {"Tool84",  "Tool98",  "Tool94",  "Tool95",  "Tool96",  "Tool93",
                                      "Tool114", "Tool107", "Tool103", "Tool101", "Tool104", "Tool105",
                                      "Tool8",   "Tool86",  "Tool88",  "Tool87",  "Tool85",  "Tool89",
                                      "Tool97",  "Tool54",  "Tool55",  "Tool56",  "Tool57"};
    QString allOn;
    for (int flag = 1; flag <= 28; ++flag)
        allOn += QString(",t%1=1").arg(flag);
    for (int flag = 1; flag <= 28; ++flag) {
        database.connection().Execute(QString("update qb_pass set pass='Pw1'%1,t%2=0,t%3=null where name='Wang'")
                                          .arg(allOn)
                                          .arg(flag)
                                          .arg(flag % 28 + 1));
        main_FRM window;
        frmLogin form(&window);
        find<QComboBox>(form, "C_NA").setEditText("Wang");
        find<QLineEdit>(form, "txtPassword").setText("Pw1");
        click(form, "cmdOK");
        QStringList off;
        for (const QAction *action : window.findChildren<QAction *>(QRegularExpression("^Tool")))
            if (!action->isEnabled())
                off.append(action->objectName());
        EXPECT_EQ(off, governed[flag - 1] ? QStringList{governed[flag - 1]} : QStringList()) << flag;
    }
}

TEST_F(Login, CannotBeClosedButByItsButtons)
{
    open();
    login->close();
    EXPECT_TRUE(login->isVisible());
    QTest::keyClick(login.get(), Qt::Key_Escape);
    EXPECT_TRUE(login->isVisible());
    EXPECT_TRUE(ends.isEmpty());
    click(*login, "cmdCancel");
    EXPECT_EQ(ends, QList{0});
    EXPECT_TRUE(dialogs.shown.isEmpty());
}
