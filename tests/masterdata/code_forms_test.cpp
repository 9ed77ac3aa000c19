// The code forms of one table: what is common to them all, and the few things in which they differ.
#include "masterdata/currencies.h"
#include "masterdata/payment_methods.h"
#include "masterdata/ports.h"
#include "masterdata/settlement_terms.h"
#include "masterdata/shipping_companies.h"
#include "masterdata/trucking_companies.h"
#include "masterdata/units.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <QFile>
#include <QImage>
#include <QLabel>

namespace tradewick
{

using namespace test;

namespace
{

template <const RecordFormSpec &Spec> std::unique_ptr<RecordForm> declared()
{
    return std::make_unique<RecordForm>(Spec);
}
template <class Form> std::unique_ptr<RecordForm> own()
{
    return std::make_unique<Form>();
}

enum Refusal { Shown_, Skipped };

struct CodeForm {
    std::unique_ptr<RecordForm> (*make)();
    const char *caption, *table, *key, *name, *optional; // columns; optional: the one in Text(2)
    const char *first, *second;                          // numbers of the first records
    bool silentWithoutKey;                               // an empty key stops OK without a word
    const char *optionalWhenEmpty;                       // what is stored for an empty Text(2)
    Refusal refusal;                                     // what a refused save shows
    bool deleteEndsOnLast, navigationWhileBusy;
};

const CodeForm codeForms[] = {
    {declared<Sys_bzsz>, "币制设置 ", "sys_bzsz", "bzbh", "bizh", "bzcode", "$0001", "$0002", false, nullptr, Skipped,
     false, true},
    {declared<Sys_zffs>, "付款方式设置窗口", "sys_zffs", "fkbh", "zffs", "beizhu", "F0001", "F0002", true, nullptr,
     Shown_, false, true},
    {own<sys_fkfs>, "结算方式设置", "sys_fkfs", "fkbh", "fkfs", "beizhu", "F0001", "F0002", false, nullptr, Skipped,
     true, true},
    {declared<Sys_JLDW>, "计量单位设置", "sys_jldw", "jlbh", "jldw", "beizhu", "J0001", "J0002", true, nullptr, Shown_,
     false, true},
    {declared<Sys_GKSZ>, "常用港口设置", "sys_gksz", "gkbh", "gkmc", "gkmc_en", "P0001", "P0002", false, "  ", Skipped,
     false, true},
    {own<Sys_CwGs_ZL>, "船务公司资料录入", "sys_cwgs", "gsbh", "gsmc", "ywmc", "P0001", "P0002", false, "  ", Skipped,
     false, false},
    {own<Sys_TcGs_Set>, "拖车公司资料设置", "sys_tcgs", "gsbh", "gsmc", "ywmc", "P0001", "P0002", false, "  ", Skipped,
     false, false},
};

class CodeForms : public testing::TestWithParam<CodeForm>
{
protected:
    TestDatabase database;
    ScriptedDialogs dialogs;

    QString statement(const QString &text) const
    {
        return QString(text)
            .replace("TABLE", GetParam().table)
            .replace("KEY", GetParam().key)
            .replace("NAME", GetParam().name);
    }
    void insert(const QString &key, const QString &name)
    {
        database.connection().Execute(statement("insert into TABLE(KEY,NAME) values('{k}','{n}')"),
                                      {{"k", key}, {"n", name}});
    }
};

} // namespace

TEST_P(CodeForms, AddsNumbersAndStores)
{
    const CodeForm &c = GetParam();
    const auto form = c.make();
    EXPECT_EQ(form->windowTitle(), c.caption);
    const FormDriver drive(*form);
    for (const char *number : {c.first, c.second}) {
        drive.click("Cmdadd");
        EXPECT_EQ(drive.text("Text(0)"), number);
        EXPECT_EQ(drive.focused(), "Text(0)");
        EXPECT_EQ(drive.enabled("cmdqd"), c.navigationWhileBusy);
        drive.type("Text(1)", "O'Brien 名称");
        drive.click("CmdOK");
        EXPECT_FALSE(form->isBusy());
        const QVariant optional =
            database.value(statement("select ") + c.optional + statement(" from TABLE where KEY='{k}' and NAME='{n}'"),
                           {{"k", number}, {"n", "O'Brien 名称"}});
        EXPECT_EQ(optional.toString(), c.optionalWhenEmpty ? c.optionalWhenEmpty : "") << number;
    }
    EXPECT_EQ(database.count(c.table), 2);
    EXPECT_TRUE(dialogs.shown.isEmpty());
    auto *list = drive.find<Grid>("TDBGrid3");
    EXPECT_EQ(list->model()->index(1, 0).data(), c.second);
    EXPECT_EQ(list->model()->index(1, 1).data(), "O'Brien 名称");
}

TEST_P(CodeForms, RefusesAnEmptyKeyOrNameInItsOwnWay)
{
    const CodeForm &c = GetParam();
    const auto form = c.make();
    const FormDriver drive(*form);
    for (const char *emptied : {"Text(0)", "Text(1)"}) {
        drive.click("Cmdadd");
        drive.type("Text(1)", "name");
        drive.type(emptied, "");
        drive.click("CmdOK");
        if (emptied == QString("Text(0)") && c.silentWithoutKey) {
            EXPECT_TRUE(dialogs.shown.isEmpty());
        } else {
            EXPECT_EQ(dialogs.take(), (Shown{"编号或名称不能为空", "提示", MessageIcon::Exclamation}));
        }
        EXPECT_TRUE(form->isBusy());
        EXPECT_FALSE(drive.control("Text(1)")->property("readOnly").toBool());
        if (emptied == QString("Text(1)")) {
            EXPECT_EQ(drive.focused(), "Text(0)");
        }
        drive.click("Cmdcancel");
    }
    EXPECT_EQ(database.count(c.table), 0);
}

TEST_P(CodeForms, ShowsOrSkipsARefusedSaveAndTheRowStillWaits)
{
    const CodeForm &c = GetParam();
    insert("A", "one");
    const auto form = c.make();
    const FormDriver drive(*form);
    drive.click("Cmdadd");
    drive.type("Text(0)", "A"); // there already
    drive.type("Text(1)", "twin");
    drive.click("CmdOK");
    EXPECT_EQ(dialogs.shown.size(), c.refusal == Shown_ ? 1 : 0);
    if (c.refusal == Shown_) {
        const Shown shown = dialogs.take();
        EXPECT_FALSE(shown.text.isEmpty());
        EXPECT_EQ(shown.title, "");
    }
    EXPECT_FALSE(form->isBusy());
    EXPECT_TRUE(form->records().hasPendingChanges());
    EXPECT_EQ(drive.text("Text(1)"), "twin");
    EXPECT_EQ(database.count(c.table), 1);
    // What waits goes through with the next save, once its key is free.
    drive.click("Cmdedit");
    drive.type("Text(0)", "B");
    drive.click("CmdOK");
    EXPECT_EQ(database.value(statement("select NAME from TABLE where KEY='B'")), "twin");
}

TEST_P(CodeForms, CancelReturnsToTheFirstAndDeleteGoesOn)
{
    const CodeForm &c = GetParam();
    for (const char *key : {"A", "B", "C", "D"})
        insert(key, key);
    const auto form = c.make();
    const FormDriver drive(*form);
    drive.click("cmdmd");
    drive.click("Cmdedit");
    drive.type("Text(1)", "lost");
    drive.click("Cmdcancel");
    EXPECT_EQ(drive.text("Text(0)"), "A");
    EXPECT_EQ(database.value(statement("select NAME from TABLE where KEY='D'")), "D");
    drive.click("cmdnext");
    drive.click("Cmddelete");
    EXPECT_EQ(dialogs.take(), (Shown{"是否真的删除当前记录 ？", "系统提示", MessageIcon::Question}));
    EXPECT_EQ(drive.text("Text(0)"), c.deleteEndsOnLast ? "D" : "C");
    EXPECT_EQ(database.value(statement("select KEY from TABLE where KEY='B'")), QVariant());
}

INSTANTIATE_TEST_SUITE_P(All, CodeForms, testing::ValuesIn(codeForms),
                         [](const auto &form) { return std::string(form.param.table); });

// ---- the logo of the companies that carry the goods ----

namespace
{

QString pictureIn(const QTemporaryDir &folder, const QString &name)
{
    QImage image(20, 10, QImage::Format_RGB32);
    image.fill(Qt::red);
    EXPECT_TRUE(image.save(folder.filePath(name)));
    return folder.filePath(name);
}

bool showsPicture(const FormDriver &drive)
{
    return !drive.find<QLabel>("Image1")->pixmap(Qt::ReturnByValue).isNull();
}

} // namespace

TEST(CarrierLogo, FollowsTheRecordAndChangesOnlyWhileItIsEdited)
{
    TestDatabase database;
    ScriptedDialogs dialogs;
    const QTemporaryDir folder;
    const QString picture = pictureIn(folder, "徽 标.png");
    for (const char *table : {"sys_cwgs", "sys_tcgs"}) {
        const Values values{{"p", picture}, {"q", folder.filePath("gone.jpg")}};
        database.connection().Execute(QString("insert into %1(gsbh,gsmc,logo) values('P0001','a','{p}')").arg(table),
                                      values);
        database.connection().Execute(QString("insert into %1(gsbh,gsmc,logo) values('P0002','b','{q}')").arg(table),
                                      values);
    }
    for (auto make : {own<Sys_CwGs_ZL>, own<Sys_TcGs_Set>}) {
        const auto form = make();
        const FormDriver drive(*form);
        EXPECT_TRUE(showsPicture(drive));
        drive.click("cmdnext");
        EXPECT_FALSE(showsPicture(drive));
        EXPECT_EQ(drive.text("Text(1)"), "b");
        dialogs.typed = picture;
        drive.click("Command1"); // Browse: nothing
        drive.click("Command2");
        QTest::mouseClick(drive.control("Image1"), Qt::LeftButton);
        EXPECT_TRUE(dialogs.shown.isEmpty());
        EXPECT_EQ(drive.text("Text1"), folder.filePath("gone.jpg"));
        drive.click("Cmdedit");
        QTest::mouseClick(drive.control("Image1"), Qt::LeftButton);
        EXPECT_TRUE(dialogs.shown.isEmpty());
        drive.click("Command1");
        EXPECT_EQ(dialogs.take().text, "选取图标对话框");
        EXPECT_TRUE(showsPicture(drive));
        EXPECT_EQ(form->records().Fields("logo").text(), picture);
        drive.click("Cmdcancel");
        EXPECT_EQ(drive.text("Text(0)"), "P0001");
        EXPECT_TRUE(showsPicture(drive));
        drive.click("Cmdedit");
        drive.click("Command2");
        EXPECT_FALSE(showsPicture(drive));
        drive.click("CmdOK");
        EXPECT_EQ(form->records().Fields("logo").value(), " ");
        drive.click("Cmdadd");
        EXPECT_EQ(drive.text("Text1"), "  ");
        drive.click("Cmdcancel");
    }
}

} // namespace tradewick
