// The code form of currencies, and on it what the engine does for every code form.
#include "masterdata/masterdata.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <gtest/gtest.h>

namespace tradewick
{

using namespace test;

namespace
{

class Currencies : public testing::Test
{
protected:
    TestDatabase database;
    ScriptedDialogs dialogs;
    std::unique_ptr<RecordForm> form;

    void insert(const QString &key, const QString &symbol)
    {
        database.connection().Execute("insert into sys_bzsz(bzbh,bizh,bzcode,hl) values('{k}','{s}','x','1')",
                                      {{"k", key}, {"s", symbol}});
    }
    FormDriver open()
    {
        form = std::make_unique<RecordForm>(sys_bzsz());
        return FormDriver(*form);
    }
};

} // namespace

TEST_F(Currencies, EnterAndArrowsMoveAlongTheFields)
{
    insert("$0001", "USD");
    const FormDriver drive = open();
    drive.click("Cmdedit");
    const struct {
        const char *field;
        int key;
        const char *then;
    } cases[] = {{"Text(0)", Qt::Key_Return, "Text(1)"}, {"Text(1)", Qt::Key_Enter, "Text(2)"},
                 {"Text(2)", Qt::Key_Down, "Text(3)"},   {"Text(3)", Qt::Key_Down, "Text(0)"},
                 {"Text(0)", Qt::Key_Up, "Text(3)"},     {"Text(2)", Qt::Key_Up, "Text(1)"}};
    for (const auto &c : cases) {
        drive.control(c.field)->setFocus();
        drive.press(c.field, c.key);
        EXPECT_EQ(drive.focused(), c.then) << c.field;
    }
    // While an input method composes, the keys are its own; what it commits is what is stored.
    QWidget *name = drive.control("Text(2)");
    name->setFocus();
    FormDriver::compose(name, "meiyuan");
    for (int key : {Qt::Key_Return, Qt::Key_Down, Qt::Key_Up}) {
        drive.press("Text(2)", key);
        EXPECT_EQ(drive.focused(), "Text(2)");
    }
    EXPECT_EQ(form->records().Fields("bzcode").text(), "x");
    QTest::keyClick(name, Qt::Key_A, Qt::ControlModifier);
    FormDriver::commit(name, "美元");
    EXPECT_EQ(form->records().Fields("bzcode").text(), "美元");
    drive.press("Text(2)", Qt::Key_Return);
    EXPECT_EQ(drive.focused(), "Text(3)");
}

TEST_F(Currencies, EnterLeadsThroughTheFieldsToOkAndPressesIt)
{
    insert("$0001", "USD");
    const FormDriver drive = open();
    drive.control("TDBGrid3")->setFocus();
    drive.press("TDBGrid3", Qt::Key_Tab);
    EXPECT_EQ(drive.focused(), "Text(0)"); // no stop between that shows nowhere
    drive.click("Cmdadd");
    drive.type("Text(1)", "EUR");
    drive.control("Text(0)")->setFocus();
    for (const char *field : {"Text(0)", "Text(1)", "Text(2)", "Text(3)"})
        drive.press(field, Qt::Key_Return);
    ASSERT_EQ(drive.focused(), "CmdOK");
    drive.press("CmdOK", Qt::Key_Return);
    EXPECT_FALSE(form->isBusy());
    EXPECT_EQ(database.value("select bizh from sys_bzsz where bzbh='$0002'"), "EUR");
    EXPECT_EQ(drive.focused(), "Text(0)");
}

// The code forms leave the way through the records open, and its keys leave no field.
TEST_F(Currencies, NoWayLeadsPastATextInANumber)
{
    for (const char *key : {"$0001", "$0002", "$0003"})
        insert(key, "USD");
    const FormDriver drive = open();
    drive.click("cmdnext");
    drive.click("Cmdedit");
    for (const int key : {Qt::Key_Home, Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_End}) {
        drive.type("Text(3)", "abc");
        QTest::keyClick(drive.control("Text(3)"), static_cast<Qt::Key>(key), Qt::AltModifier);
        QApplication::processEvents();
        EXPECT_EQ(dialogs.take(), (Shown{"数值输入有误，请重新核对！", "系统提示", MessageIcon::Critical}));
        EXPECT_EQ(drive.text("Text(0)") + drive.text("Text(3)"), "$0002abc");
    }
    drive.type("Text(3)", "1,234.50");
    QTest::keyClick(drive.control("Text(3)"), Qt::Key_PageDown, Qt::AltModifier);
    EXPECT_EQ(drive.text("Text(0)"), "$0003");
    drive.click("CmdOK");
    EXPECT_EQ(database.value("select hl from sys_bzsz where bzbh='$0002'"), 1234.5);
}

TEST_F(Currencies, TheListShowsItsKeysInFull)
{
    const FormDriver drive = open();
    const auto *list = drive.find<Grid>("TDBGrid3");
    const QString key = "$0001 and much more";
    drive.click("Cmdadd");
    drive.type("Text(0)", key);
    QApplication::processEvents();
    EXPECT_GE(list->columnWidth(0), list->fontMetrics().horizontalAdvance(key));
    EXPECT_GE(list->columnViewportPosition(1) + list->columnWidth(1), list->viewport()->width());
}

} // namespace tradewick
