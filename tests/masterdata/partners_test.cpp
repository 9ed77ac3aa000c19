// The registers of domestic suppliers and foreign customers: one behaviour, two tables.
#include "data/date_text.h"
#include "make_form.h"
#include "masterdata/masterdata.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <QAbstractItemView>
#include <QCompleter>

namespace tradewick
{

using namespace test;

namespace
{

struct Partner {
    MakeForm make;
    const char *table, *key, *name, *area; // columns
    const char *taken, *empty;             // messages
    bool filterTrims;

    friend void PrintTo(const Partner &partner, std::ostream *out) { *out << partner.table; }
};

const Partner partners[] = {
    {made<yy_GYszl>, "yy_gyszl", "gfbh", "zwmc", "sheng", "客户编号，不能重复，请核对！", "所有名称不能为空", false},
    {made<YY_GWKH_ZL>, "yy_gwkh_zl", "khbh", "khmc", "gb", "客户编码，不能重复，请核对！", "编号不能为空", true},
};

class Partners : public testing::TestWithParam<Partner>
{
protected:
    TestDatabase database;
    ScriptedDialogs dialogs;
    std::unique_ptr<RecordForm> form;

    QString statement(const QString &text) const
    {
        return QString(text)
            .replace("TABLE", GetParam().table)
            .replace("KEY", GetParam().key)
            .replace("NAME", GetParam().name)
            .replace("AREA", GetParam().area);
    }
    void insert(const QString &key, const QString &area = "Kent")
    {
        database.connection().Execute(
            statement("insert into TABLE(KEY,NAME,AREA,hl,bizh) values('{k}','{k}','{a}','2','GBP')"),
            {{"k", key}, {"a", area}});
    }
    QVariant stored(const QString &column, const QString &key)
    {
        return database.value("select " + column + statement(" from TABLE where KEY='{k}'"), {{"k", key}});
    }
    FormDriver open()
    {
        form = GetParam().make();
        return FormDriver(*form);
    }
};

} // namespace

TEST_P(Partners, AnEmptyRegisterIsHarmlessAndTheFirstRecordIsStored)
{
    const FormDriver drive = open();
    for (const char *button : {"cmdqd", "cmdxq", "cmdnext", "cmdmd", "Cmddelete"})
        drive.click(button);
    dialogs.take(); // the question of the deletion alone
    drive.click("Cmd_find");
    ASSERT_EQ(dialogs.shown.size(), 2);
    EXPECT_EQ(dialogs.shown[1], (Shown{"没有查到该客户", "系统操作提示", MessageIcon::Information}));
    dialogs.shown.clear();
    drive.click("Cmdadd");
    EXPECT_EQ(drive.text("Text1(0)"), "");
    EXPECT_EQ(drive.text("Text1(6)"), dateText(QDate::currentDate()));
    for (const char *button : {"cmdqd", "cmdnext", "Cmd_find", "Cmdreturn", "Text2"})
        EXPECT_FALSE(drive.enabled(button)) << button;
    drive.type("Text1(0)", "N'1");
    drive.type("Text1(1)", "Name");
    drive.type("Combo1(0)", "Wales");
    drive.click("CmdOK");
    EXPECT_TRUE(dialogs.shown.isEmpty());
    EXPECT_EQ(stored(GetParam().area, "N'1"), "Wales");
    EXPECT_EQ(stored("djrq", "N'1").toString(), QDate::currentDate().toString(Qt::ISODate));
    EXPECT_EQ(drive.text("Combo1(0)"), "Wales");
    EXPECT_EQ(drive.find<QComboBox>("Combo1(0)")->findText("Wales"), 0);
}

TEST_P(Partners, ACodeThatIsTakenIsClearedWhileAddingAlone)
{
    const Partner &c = GetParam();
    insert("A");
    insert("B");
    const FormDriver drive = open();
    const Shown taken{c.taken, "系统提示", MessageIcon::Critical};
    const Shown empty{c.empty, "提示", MessageIcon::Exclamation};
    drive.click("Cmdadd");
    drive.type("Text1(0)", "a");
    drive.leave("Text1(0)");
    EXPECT_EQ(dialogs.take(), taken);
    EXPECT_EQ(drive.text("Text1(0)"), "");
    EXPECT_EQ(drive.focused(), "Text1(0)");
    drive.click("CmdOK");
    EXPECT_EQ(dialogs.take(), empty);
    EXPECT_TRUE(form->isBusy());
    // The refused OK took the check along; the database decides.
    drive.type("Text1(0)", "A");
    drive.type("Text1(1)", "twin");
    drive.leave("Text1(0)");
    EXPECT_TRUE(dialogs.shown.isEmpty());
    drive.click("CmdOK");
    const Shown refused = dialogs.take();
    EXPECT_EQ(refused.title, "");
    EXPECT_FALSE(refused.text.isEmpty());
    EXPECT_FALSE(form->isBusy());
    EXPECT_EQ(database.count(c.table), 2);
    drive.click("Cmdedit");
    drive.click("Cmdcancel");
    // OK straight from the field checks it first, and the code can be typed at once.
    drive.click("Cmdadd");
    drive.type("Text1(0)", "B");
    drive.click("CmdOK");
    EXPECT_EQ(dialogs.take(), taken);
    EXPECT_EQ(drive.focused(), "Text1(0)");
    EXPECT_TRUE(form->isBusy());
    drive.click("Cmdcancel");
    // Edit does not look.
    drive.click("Cmdedit");
    drive.type("Text1(0)", "B");
    drive.leave("Text1(0)");
    EXPECT_TRUE(dialogs.shown.isEmpty());
    drive.click("Cmdcancel");
    EXPECT_EQ(drive.text("Text1(0)"), "A");
}

TEST_P(Partners, FindAndFilterGoByTheCode)
{
    const Partner &c = GetParam();
    for (const char *key : {"AB1", "AB2", "B_2", "C%"})
        insert(key);
    const FormDriver drive = open();
    const struct {
        std::optional<QString> answer;
        const char *shown;
        int messages;
    } finds[] = {{"b_2", "B_2", 1}, {"AB", "AB1", 2}, {"AB2", "AB2", 1}, {std::nullopt, "AB1", 2}};
    for (const auto &f : finds) {
        drive.click("cmdmd");
        dialogs.typed = f.answer;
        drive.click("Cmd_find");
        EXPECT_EQ(dialogs.shown.size(), f.messages);
        EXPECT_EQ(dialogs.shown.first(), (Shown{"请输入客户编号:", "系统操作提示", MessageIcon::None}));
        EXPECT_EQ(drive.text("Text1(0)"), f.shown);
        dialogs.shown.clear();
    }
    auto *list = drive.find<Grid>("TDBGrid3");
    const struct {
        const char *typed;
        int found;
    } filters[] = {{"b", 3}, {"_", 1}, {"%", 1}, {"b ", c.filterTrims ? 3 : 0}, {"none", 0}, {"", 4}};
    for (const auto &f : filters) {
        drive.type("Text2", f.typed);
        EXPECT_EQ(list->model()->rowCount(), f.found) << f.typed;
        EXPECT_EQ(drive.text("Text1(0)").isEmpty(), f.found == 0) << f.typed;
    }
}

TEST_P(Partners, ACurrencyBringsItsRateWhileTheRecordIsEdited)
{
    insert("A");
    database.connection().Execute("insert into sys_bzsz(bzbh,bizh,bzcode,hl) values('$0001','USD','美元','7.25')");
    const FormDriver drive = open();
    auto *currency = drive.find<QComboBox>("Combo1(1)");
    drive.click("Cmdedit");
    drive.type("Combo1(1)", "usd");
    drive.leave("Combo1(1)");
    EXPECT_EQ(drive.text("Text1(7)"), "7.25");
    EXPECT_EQ(currency->currentText(), "USD");
    drive.type("Combo1(1)", "XXX"); // has no rate
    drive.leave("Combo1(1)");
    EXPECT_EQ(drive.text("Text1(7)"), "7.25");
    drive.type("Text1(7)", "7.5"); // stays open to another rate
    drive.click("CmdOK");
    EXPECT_EQ(stored("hl", "A"), 7.5);
    EXPECT_EQ(stored("bzcode", "A"), "美元");
    EXPECT_EQ(stored("bizh", "A"), "XXX");
    drive.click("Cmdedit"); // the date has no check of its own
    drive.type("Text1(6)", "soon");
    drive.click("CmdOK");
    EXPECT_TRUE(dialogs.take().text.endsWith("期”：日期输入有误，请重新核对！"));
    EXPECT_EQ(drive.text("state"), "未保存");
}

// Enter takes from a list at once; a beginning that only one item has is completed.
TEST_P(Partners, EnterTakesAChoiceOnceAndCompletesIt)
{
    insert("A");
    database.connection().Execute("insert into sys_bzsz(bzbh,bizh,bzcode,hl) values('$0001','USD','美元','7.25')");
    database.connection().Execute("insert into sys_bzsz(bzbh,bizh,bzcode,hl) values('$0002','EUR','欧元','8')");
    const FormDriver drive = open();
    auto *currency = drive.find<QComboBox>("Combo1(1)");
    drive.click("Cmdedit");
    drive.type("Combo1(1)", "u"); // both have one
    QAbstractItemView *fitting = currency->completer()->popup();
    ASSERT_TRUE(fitting->isVisible());
    const auto activate = [&] { // without a window manager the list that closed has taken that along
        form->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
        QApplication::processEvents();
    };
    QTest::keyClick(fitting, Qt::Key_Return);
    activate();
    EXPECT_EQ(currency->currentText(), "USD");
    EXPECT_EQ(drive.text("Text1(7)"), "7.25");
    currency->setFocus();
    drive.press("Combo1(1)", Qt::Key_Down);
    ASSERT_TRUE(currency->view()->isVisible());
    QTest::keyClick(currency->view(), Qt::Key_End);
    QTest::keyClick(currency->view(), Qt::Key_Return);
    activate();
    EXPECT_EQ(currency->currentText(), "EUR");
    EXPECT_EQ(drive.text("Text1(7)"), "8");
    EXPECT_EQ(drive.focused(), "Text1(7)"); // without a second Enter
    drive.type("Combo1(1)", "u");
    ASSERT_TRUE(fitting->isVisible());
    drive.click("CmdOK"); // the list would go on writing into what is locked now
    EXPECT_FALSE(fitting->isVisible());
}

TEST_P(Partners, CancelGoesToTheFirstAndArrowsStopAtTheEnds)
{
    for (const char *key : {"A", "B", "C"})
        insert(key, QString("area of ") + key);
    const FormDriver drive = open();
    drive.click("cmdmd");
    drive.click("Cmdedit");
    const struct {
        const char *field;
        int key;
        const char *then;
    } keys[] = {{"Text1(0)", Qt::Key_Up, "Text1(0)"},
                {"Text1(0)", Qt::Key_Down, "Text1(1)"},
                {"Text1(1)", Qt::Key_Down, "Text1(2)"},
                {"Text1(18)", Qt::Key_Down, "Text1(18)"},
                {"Text1(18)", Qt::Key_Up, "Text1(17)"}};
    for (const auto &k : keys) {
        drive.control(k.field)->setFocus();
        drive.press(k.field, k.key);
        EXPECT_EQ(drive.focused(), k.then) << k.field;
    }
    drive.click("Cmdcancel");
    EXPECT_EQ(drive.text("Text1(0)"), "A");
    drive.click("cmdnext");
    drive.click("Cmddelete");
    EXPECT_EQ(drive.text("Text1(0)"), "C");
    EXPECT_EQ(database.count(GetParam().table), 2);
    const auto *areas = drive.find<QComboBox>("Combo1(0)");
    EXPECT_EQ(areas->count(), 2);
    EXPECT_LT(areas->findText("area of B"), 0);
    EXPECT_EQ(areas->currentText(), "area of C");
    // What another desktop stored meanwhile is offered after the next Cancel.
    database.elsewhere(statement("insert into TABLE(KEY,AREA) values('D','area of D')"));
    drive.click("Cmdedit");
    drive.click("Cmdcancel");
    EXPECT_GE(areas->findText("area of D"), 0);
}

INSTANTIATE_TEST_SUITE_P(All, Partners, testing::ValuesIn(partners),
                         [](const auto &form) { return std::string(form.param.table); });

TEST(PartnerClerks, AreTheStaffWhoseDutyIsDocuments)
{
    TestDatabase database;
    database.connection().Execute("insert into sys_gzry(zgbh,name,zhwu) values('1','Li','跟单文员')");
    database.connection().Execute("insert into sys_gzry(zgbh,name,zhwu) values('2','Wu','经理')");
    for (auto make : {made<yy_GYszl>, made<YY_GWKH_ZL>}) {
        const auto form = make();
        auto *clerks = form->findChild<QComboBox *>("Combo1(3)");
        ASSERT_EQ(clerks->count(), 1);
        EXPECT_EQ(clerks->itemText(0), "Li");
    }
}

} // namespace tradewick
