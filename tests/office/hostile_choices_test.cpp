// Texts that would be statements if they were ever read as such, where one table's go into another, at the login and in
// the settings of a desktop.
#include "common/record_form.h"
#include "contracts/contracts.h"
#include "hostile_texts.h"
#include "masterdata/masterdata.h"
#include "papers/papers.h"
#include "shell/connection_settings.h"
#include "shell/login.h"
#include "shell/main_window.h"
#include "shell/process.h"
#include "shell/users.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"

#include <QFile>

namespace tradewick
{

using namespace test;

// What one table holds goes into statements on others: a customer's quote, a company's letterhead, a copied price list,
// a printed sheet.
TEST(HostileChoices, AreTakenOverToTheCharacter)
{
    TestDatabase database;
    ScriptedDialogs dialogs;
    for (const QString &text : hostile) {
        SCOPED_TRACE(text.toStdString());
        const Values values{{"t", text}, {"copy", text + "copy"}};
        for (const char *statement :
             {"insert into yy_gwkh_zl(khbh,khmc,zwdz) values('{t}','{t}','{t}')",
              "insert into sys_bzsz(bzbh,bizh,bzcode,hl) values('{t}','{t}','{t}',2)",
              "insert into sys_gsmc(gsbh,gsmc,e_gsmc) values('{t}','{t}','{t}')",
              "insert into yy_bzdj(cpbh,cpmc,cplb) values('{t}','{t}','{t}')",
              "insert into yy_bzdj_b(cpbh,gg,gys_bizh,khbh,jkdj,jmdj,gys_dj) values('{t}','{t}','{t}','{t}',1,2,3)"})
            database.connection().Execute(statement, values);
        const auto count = [&](const char *statement) { return database.value(statement, values).toInt(); };
        {
            RecordForm contracts(YY_WXHT());
            const FormDriver drive(contracts);
            drive.click("Cmdadd");
            for (const char *combo : {"Combo1(0)", "Combo1(1)"}) {
                drive.type(combo, text);
                drive.press(combo, Qt::Key_Return);
            }
            drive.click("CmdOK");
            const QString number = drive.text("Text1(0)");
            EXPECT_EQ(count("select count(*) from yy_gw_wxht_h where khbh='{t}' and khmc='{t}' and dizh='{t}' and "
                            "gsmc='{t}' and e_gsmc='{t}'"),
                      1);
            EXPECT_EQ(count("select count(*) from yy_gw_wxht_b where cpbh='{t}' and gg='{t}' and cplb='{t}' and dj=3"),
                      1);
            EXPECT_EQ(drive.find<Grid>("TDBGrid1")->model()->rowCount(), 1);
        }
        RecordForm products(yy_cpbj());
        const FormDriver drive(products);
        drive.type("Text1", text);
        drive.click("CMd_LC");
        drive.type("Text(0)", text + "copy");
        drive.click("CmdOK");
        EXPECT_EQ(count("select count(*) from yy_bzdj where cpbh='{copy}' and cpmc='{t}' and cplb='{t}'"), 1);
        EXPECT_EQ(count("select count(*) from yy_bzdj_b where cpbh='{copy}' and gg='{t}' and gys_bizh='{t}'"), 1);
        drive.click("Cmdedit");
        auto *prices = drive.find<Grid>("TDBGrid1");
        drive.typeCell(prices, 0, "khbh", text);
        drive.click("CmdOK");
        EXPECT_EQ(count("select count(*) from yy_bzdj_b where cpbh='{copy}' and khbh='{t}' and khmc='{t}'"), 1);

        RecordForm customers(YY_GWKH_ZL());
        const FormDriver clerk(customers);
        clerk.type("Text2", text);
        clerk.click("Cmdedit");
        clerk.type("Combo1(1)", text);
        clerk.press("Combo1(1)", Qt::Key_Return);
        clerk.click("CmdOK");
        EXPECT_EQ(count("select count(*) from yy_gwkh_zl where khbh='{t}' and bzcode='{t}' and hl=2"), 1);
        EXPECT_EQ(dialogs.shown, QVector<Shown>());
        EXPECT_NO_THROW(fill(document("国外客户资料"), database.connection(), text));
        EXPECT_THROW(fill(document("国外客户资料"), database.connection(), text + "?"), DataError);
        drive.click("Cmddelete");
        dialogs.take();
        EXPECT_EQ(count("select count(*) from yy_bzdj_b where cpbh='{copy}'"), 0);
        EXPECT_EQ(count("select count(*) from yy_bzdj_b where cpbh='{t}'"), 1);
    }
    EXPECT_EQ(database.count("yy_gwkh_zl"), hostile.size());
    EXPECT_EQ(database.count("yy_gw_wxht_b"), hostile.size());
}

TEST(HostileLogin, OpensToItsOwnNameAndPasswordAlone)
{
    TestDatabase database{TestDatabase::Demonstration};
    ScriptedDialogs dialogs;
    main_FRM mainWindow;
    frmLogin login(&mainWindow);
    const FormDriver drive(login);
    const Content before = contentOf(database);
    const QString user = database.value("select name from qb_pass").toString();
    for (const QString &text : hostile) {
        for (const QString &name : {text, user}) {
            drive.type("C_NA", name);
            drive.type("txtPassword", text);
            drive.click("cmdOK");
            EXPECT_EQ(dialogs.take().text, name == user ? "密码错误，请重新确认!" : "没有此用户名，请重新选择！");
            EXPECT_TRUE(login.isVisible());
        }
    }
    EXPECT_EQ(contentOf(database), before);
    const QString &name = hostile[0], &password = hostile[2];
    {
        RecordForm users(sys_QXSZ());
        const FormDriver clerk(users);
        clerk.click("Cmdadd");
        clerk.type("Text1(0)", name);
        clerk.type("Text1(1)", password);
        clerk.click("CmdOK");
    }
    drive.type("C_NA", name);
    drive.type("txtPassword", password);
    drive.click("cmdOK");
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
    EXPECT_FALSE(login.isVisible());
}

TEST(HostileSettings, AreKeptToTheCharacter)
{
    const QTemporaryDir folder;
    setApplicationDirectory(folder.path());
    ScriptedDialogs dialogs;
    ASSERT_TRUE(QFile(folder.filePath("data_link.mdb")).open(QIODevice::WriteOnly));
    Connection local;
    local.Open(localConnectionString());
    local.Execute(settingsDdl());
    const QStringList boxes{"txtServer", "txtUID", "txtPWD", "txtDatabase"};
    for (const QString &text : hostile) {
        frmODBCLogon settings(nullptr);
        const FormDriver drive(settings);
        for (int i = 0; i < boxes.size(); ++i)
            drive.type(boxes[i], QString::number(i) + text);
        drive.click("Cmdtry");
        EXPECT_EQ(dialogs.take().text, "服务器设置有问题，请重新核对。");
        drive.click("cmdOK");
        frmODBCLogon again(nullptr);
        const FormDriver reader(again);
        for (int i = 0; i < boxes.size(); ++i)
            EXPECT_EQ(reader.text(boxes[i]), QString::number(i) + text);
        EXPECT_EQ(local.rows("select * from data_link").size(), 1);
    }
    setApplicationDirectory({});
}

} // namespace tradewick
