// The code forms of one table: what is common to them all, and the few things in which they differ.
#include "make_form.h"
#include "masterdata/masterdata.h"
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

struct CodeForm {
    MakeForm make;
    const char *table, *key, *name; // columns
    const char *first, *second;     // numbers of the first records
    const char *afterThousand;      // the number behind 1000: a tail of three digits wraps

    friend void PrintTo(const CodeForm &form, std::ostream *out) { *out << form.table; }
};

const CodeForm codeForms[] = {
    {made<sys_bzsz>, "sys_bzsz", "bzbh", "bizh", "$0001", "$0002", "$0001"},
    {made<sys_zffs>, "sys_zffs", "fkbh", "zffs", "F0001", "F0002", "F0001"},
    {made<sys_fkfs>, "sys_fkfs", "fkbh", "fkfs", "F0001", "F0002", "F0001"},
    {made<sys_JLDW>, "sys_jldw", "jlbh", "jldw", "J0001", "J0002", "J0001"},
    {made<Sys_GKSZ>, "sys_gksz", "gkbh", "gkmc", "P0001", "P0002", "P1001"},
    {made<Sys_CwGs_ZL>, "sys_cwgs", "gsbh", "gsmc", "P0001", "P0002", "P1001"},
    {made<Sys_TcGs_Set>, "sys_tcgs", "gsbh", "gsmc", "P0001", "P0002", "P1001"},
    {made<sys_bmsz>, "sys_bmsz", "bmbh", "bmmc", "B0001", "B0002", "B1001"},
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
    const FormDriver drive(*form);
    for (const char *number : {c.first, c.second}) {
        drive.click("Cmdadd");
        EXPECT_EQ(drive.text("Text(0)"), number);
        drive.type("Text(1)", "O'Brien 名称");
        drive.click("CmdOK");
        EXPECT_FALSE(form->isBusy());
        EXPECT_EQ(database.value(statement("select count(*) from TABLE where KEY='{k}' and NAME='{n}'"),
                                 {{"k", number}, {"n", "O'Brien 名称"}}),
                  1)
            << number;
    }
    EXPECT_EQ(database.count(c.table), 2);
    EXPECT_TRUE(dialogs.shown.isEmpty());
    auto *list = drive.find<Grid>("TDBGrid3");
    EXPECT_EQ(list->model()->index(1, 0).data(), c.second);
    EXPECT_EQ(list->model()->index(1, 1).data(), "O'Brien 名称");
}

TEST_P(CodeForms, NumbersGoOnBehindTheHighestKeyAsFarAsTheyAreRead)
{
    const CodeForm &c = GetParam();
    const QString prefix = QString(c.first).left(1);
    insert(prefix + "0999", "old");
    const auto form = c.make();
    const FormDriver drive(*form);
    for (const QString &number : {prefix + "1000", QString(c.afterThousand)}) {
        drive.click("Cmdadd");
        EXPECT_EQ(drive.text("Text(0)"), number);
        drive.click("Cmdcancel"); // costs no number
        drive.click("Cmdadd");
        EXPECT_EQ(drive.text("Text(0)"), number);
        drive.type("Text(1)", "new");
        drive.click("CmdOK");
        EXPECT_EQ(database.value(statement("select count(*) from TABLE where KEY='{k}'"), {{"k", number}}), 1);
    }
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
    for (auto make : {made<Sys_CwGs_ZL>, made<Sys_TcGs_Set>}) {
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
