// Users and their rights, by the controls of the form.
#include "shell/users.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <gtest/gtest.h>

#include <QCheckBox>

namespace tradewick
{

using namespace test;

namespace
{

class Users : public testing::Test
{
protected:
    TestDatabase database;
    ScriptedDialogs dialogs;
    std::unique_ptr<RecordForm> form;

    void SetUp() override
    {
        for (const char *name : {"anna", "bert", "carl"})
            database.connection().Execute("insert into qb_pass(name,pass,t1) values('{n}','p','{on}')",
                                          {{"n", name}, {"on", "True"}});
    }
    FormDriver open()
    {
        form = std::make_unique<RecordForm>(sys_QXSZ());
        return FormDriver(*form);
    }
};

} // namespace

TEST_F(Users, CheckBoxesStandForTheirFlags)
{
    // The order within the fourth group is its own.
    const int flags[28] = {1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14,
                           15, 17, 18, 16, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28};
    const FormDriver drive = open();
    drive.expectAccessibleNames();
    for (int i = 0; i < 28; ++i) {
        auto *check = drive.find<QCheckBox>(QString("Check1(%1)").arg(i));
        EXPECT_FALSE(check->isEnabled());
        drive.click("Cmdedit");
        EXPECT_TRUE(check->isEnabled());
        check->setChecked(!check->isChecked());
        drive.click("CmdOK");
        EXPECT_EQ(database.value(QString("select t%1 from qb_pass where name='anna'").arg(flags[i])).toBool(), i != 0)
            << i;
    }
    EXPECT_EQ(drive.find<QCheckBox>("Check1(15)")->text(), "区域设置");
    EXPECT_EQ(drive.find<QCheckBox>("Check1(2)")->text(), "商品资料 ");
}

TEST_F(Users, ANewUserHasNoRightsAndNeedsNoName)
{
    const FormDriver drive = open();
    drive.click("Cmdadd");
    drive.click("CmdOK");
    EXPECT_TRUE(dialogs.shown.isEmpty());
    EXPECT_EQ(database.count("qb_pass"), 4);
    const Row user = database.connection().rows("select * from qb_pass where name is null").value(0);
    for (int flag = 1; flag <= 28; ++flag)
        EXPECT_EQ(user.value(QString("t%1").arg(flag)).toString(), "0") << "off, and not Null, which would leave it on";
}

TEST_F(Users, DeleteAsksNothing)
{
    const FormDriver drive = open();
    drive.click("cmdnext");
    drive.click("Cmddelete");
    EXPECT_EQ(drive.text("Text1(0)"), "carl");
    EXPECT_EQ(database.count("qb_pass"), 2);
    drive.click("Cmddelete"); // the last: read again, and on to the row behind the first, or back to it
    EXPECT_EQ(drive.text("Text1(0)"), "anna");
    drive.click("Cmddelete");
    drive.click("Cmddelete");
    EXPECT_EQ(database.count("qb_pass"), 0);
    EXPECT_TRUE(dialogs.shown.isEmpty());
}

} // namespace tradewick
