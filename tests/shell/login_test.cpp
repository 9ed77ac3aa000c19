#include "shell/login.h"
#include "shell/main_window.h"
#include "shell/rights.h"
#include "shell_support.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
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
    bool isOn(const QString &tool) { return find<QAction>(mainWindow, tool).isEnabled(); }
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
    EXPECT_FALSE(names.currentText().isEmpty());
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

// Each flag alone switches off the one command it governs, Null none.
TEST_F(Login, EachFlagGovernsItsCommand)
{
    QString all;
    for (int i = 1; i <= 28; ++i)
        all += (i > 1 ? "," : "") + QString("t%1=1").arg(i);
    for (const Right &right : rights()) {
        main_FRM window;
        database.connection().Execute("update qb_pass set " + all + "," + right.flag + "=0 where name='Wang'");
        frmLogin form(&window);
        find<QComboBox>(form, "C_NA").setEditText("Wang");
        find<QLineEdit>(form, "txtPassword").setText("Pw1");
        click(form, "cmdOK");
        for (const Right &other : rights())
            if (!other.tool.isEmpty()) {
                EXPECT_EQ(find<QAction>(window, other.tool).isEnabled(), other.flag != right.flag)
                    << right.flag.toStdString() << " " << other.tool.toStdString();
            }
    }
}

TEST_F(Login, LeavesOnWhatHasNoFlag)
{
    QString off;
    for (int i = 1; i <= 28; ++i)
        off += (i > 1 ? "," : "") + QString("t%1=0").arg(i);
    database.connection().Execute("update qb_pass set " + off + ", t5=null where name='Wang'");
    open();
    enter("Wang", "Pw1");
    for (const char *tool : {"Tool96", "Tool115", "Tool106", "Tool121", "Tool109", "Tool7", "Tool61"})
        EXPECT_TRUE(isOn(tool)) << tool;
    for (const char *tool : {"Tool84", "Tool8", "Tool55", "Tool57"})
        EXPECT_FALSE(isOn(tool)) << tool;
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
