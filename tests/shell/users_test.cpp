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
    // In the order of the boxes; within the fourth group it is its own.
    const std::pair<int, const char *> boxes[28] = {
        {1, "国外客户"},      {2, "国内厂家"},    {3, "商品资料 "},       {4, "采购合同"},      {5, "外销合同"},
        {6, "信用证"},        {7, "制单明细"},    {8, "核销单管理"},      {9, "船公司资料"},    {10, "订舱单"},
        {11, "拖车公司资料"}, {12, "派车单"},     {13, "海运提单"},       {14, "付款方式"},     {15, "币制设置"},
        {17, "区域设置"},     {18, "口岸设置"},   {16, "结算方式"},       {19, "计量设置"},     {20, "公司资料"},
        {21, "权限分配"},     {22, "工作人员"},   {23, "部门设置"},       {24, "外销合同进程"}, {25, "订舱统计"},
        {26, "派车统计"},     {27, "明细单统计"}, {28, "信用证接收情况"},
    };
    const FormDriver drive = open();
    drive.expectAccessibleNames();
    for (int i = 0; i < 28; ++i) {
        const auto &[flag, caption] = boxes[i];
        auto *check = drive.find<QCheckBox>(QString("Check1(%1)").arg(i));
        EXPECT_EQ(check->text(), caption);
        drive.click("Cmdedit");
        EXPECT_TRUE(check->isEnabled());
        check->setChecked(!check->isChecked());
        drive.click("CmdOK");
        EXPECT_FALSE(check->isEnabled()) << i;
        EXPECT_EQ(database.value(QString("select t%1 from qb_pass where name='anna'").arg(flag)).toBool(), i != 0) << i;
    }
}

TEST_F(Users, ButtonsBearTheirOwnCaptions)
{
    const FormDriver drive = open();
    const std::pair<const char *, const char *> buttons[] = {
        {"cmdqd", "首端"}, {"cmdmd", "末端"}, {"Cmdedit", "修改"}, {"Cmddelete", "删除"}};
    for (const auto &[name, caption] : buttons)
        EXPECT_TRUE(drive.text(name).startsWith(caption)) << name << drive.text(name).toStdString();
}

// A database that fails under the form is passed over without a word.
TEST_F(Users, FailuresAreSkipped)
{
    database.connection().transaction([this] {
        for (int i = 0; i < 200; ++i) // more than are read at once
            database.connection().Execute("insert into qb_pass(name,pass) values('{n}','p')",
                                          {{"n", QString("u%1").arg(i)}});
    });
    const FormDriver drive = open();
    database.connection().Execute("alter table qb_pass rename to qb_pass_away");
    drive.click("Cmdadd");
    EXPECT_TRUE(drive.enabled("CmdOK"));
    drive.type("Text1(0)", "dora");
    drive.click("CmdOK");
    drive.click("Cmdcancel");
    drive.click("Cmddelete");
    EXPECT_TRUE(dialogs.shown.isEmpty()) << dialogs.shown.first().text.toStdString();
    database.connection().Execute("alter table qb_pass_away rename to qb_pass");
    EXPECT_EQ(database.count("qb_pass"), 203);
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

} // namespace tradewick
