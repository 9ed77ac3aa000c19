// What docs/office.md tells an administrator to type, typed: certificates, settings of the server, users and rights.
#include "common/globals.h"
#include "common/record_form.h"
#include "papers/papers.h"
#include "shell/commands.h"
#include "shell/connection_settings.h"
#include "shell/login.h"
#include "shell/main_window.h"
#include "shell/process.h"
#include "shell/startup.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"
#include "support/test_server.h"

#include <gtest/gtest.h>

#include <QProcess>
#include <QSet>
#include <QTemporaryDir>

namespace tradewick
{

using namespace test;

namespace
{

// The one fenced text of the document that holds these words.
QString fromDocument(const QString &words)
{
    QFile file(OFFICE_DOCUMENT);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QStringList blocks = QString::fromUtf8(file.readAll()).split("```").filter(words);
    EXPECT_EQ(blocks.size(), 1) << words.toStdString();
    return blocks.value(0).section(u'\n', 1);
}

void runProgram(const QString &program, const QStringList &arguments, const QString &folder = {})
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitCode(), 0) << arguments.join(' ').toStdString()
                                     << process.readAllStandardError().toStdString();
}

void tool(const QStringList &arguments)
{
    runProgram(binFolder() + "/tradewick-database", arguments);
}

// The document's certificates, made for this machine.
class Certificates
{
public:
    Certificates()
    {
        runProgram("bash", {"-ec", fromDocument("openssl req").replace("192.168.1.10", "127.0.0.1")}, m_folder.path());
    }
    QString path(const QString &name) const { return m_folder.filePath(name); }
    QStringList serverOptions() const
    {
        QStringList options;
        for (const QString &line : fromDocument("innodb-buffer-pool-size = 1G").split(u'\n'))
            if (line.contains(u'=') && !line.startsWith("bind-address"))
                options.append("--" + QString(line).remove(u' ').replace("/etc/mysql/tls", m_folder.path()));
        return options;
    }

private:
    QTemporaryDir m_folder;
};

class OfficeDocument : public testing::Test
{
protected:
    QTemporaryDir folder;
    Certificates certificates;
    TestServer server{certificates.serverOptions()};
    ScriptedDialogs dialogs;
    const QString password = "a long password", database = server.source("tradewick");

    OfficeDocument()
    {
        // The system's user of that name is not on every machine.
        for (const QString &statement :
             fromDocument("create user").replace("identified via unix_socket", "").split(";\n"))
            if (!statement.isEmpty())
                server.run({statement});
        tool({"create", database});
        qputenv("TRADEWICK_USER_PASSWORD", "pw");
        tool({"user", database, "王敏"});
        qunsetenv("TRADEWICK_USER_PASSWORD");
        setApplicationDirectory(folder.path());
    }
    ~OfficeDocument() override
    {
        QWidgetList windows = QApplication::topLevelWidgets();
        windows.removeIf([](const QWidget *window) { return window->parentWidget() != nullptr; });
        qDeleteAll(windows);
        setApplicationDirectory({});
        gCompanyRs.reset();
        gConn.reset();
        gConnStr.clear();
        gOperatorName.clear();
    }

    QString source(const QString &query) const { return server.tcpSource("tradewick", query, "desk"); }
    QString trusted() const { return source("tls=verify&ca=" + certificates.path("ca.pem")).remove("desk@"); }
    int count(const QString &what) const
    {
        Connection connection;
        connection.Open(connectionStringOf(database));
        return connection.rows("select count(*) as v from " + what).first()["v"].toInt();
    }
    // The program as it starts: the settings typed as the document has them, then the first user.
    void start(main_FRM &mainWindow)
    {
        tool({"connect", folder.filePath("data_link.mdb"), trusted()});
        {
            frmODBCLogon settings(nullptr);
            const FormDriver drive(settings);
            drive.type("txtUID", "desk");
            drive.type("txtPWD", password);
            drive.click("Cmdtry");
            ASSERT_EQ(dialogs.take().text, "连接成功 ！");
            drive.click("cmdOK");
        }
        ASSERT_TRUE(OpenDataLink());
        mainWindow.show();
        frmLogin login(&mainWindow);
        const FormDriver drive(login);
        drive.find<QComboBox>("C_NA")->setEditText("王敏");
        drive.type("txtPassword", "pw");
        drive.click("cmdOK");
        ASSERT_EQ(dialogs.shown, QVector<Shown>());
        ASSERT_EQ(gOperatorName, "王敏");
    }
};

} // namespace

TEST_F(OfficeDocument, FourRightsAreEnough)
{
    main_FRM mainWindow;
    start(mainWindow);

    QSet<QString> opened;
    for (const auto *bands : {&menuBands(), &sideBands()})
        for (const Band &band : *bands)
            for (const Tool &command : band.tools) {
                mainWindow.openForm(command.opens);
                EXPECT_EQ(dialogs.shown, QVector<Shown>()) << command.opens.toStdString();
                const auto forms = mainWindow.findChildren<RecordForm *>(Qt::FindDirectChildrenOnly);
                for (RecordForm *form : forms) {
                    opened.insert(form->objectName());
                    delete form;
                }
            }
    EXPECT_GE(opened.size(), 16);

    const struct {
        const char *form, *table, *key, *value; // key: its field; value: field that is changed
        const char *typed;                      // key; none: the form numbers
    } cases[] = {
        {"Sys_GKSZ", "sys_gksz where gkmc='%1'", "Text(0)", "Text(1)", nullptr},
        {"sys_JLDW", "sys_jldw where jldw='%1'", "Text(0)", "Text(1)", nullptr},
        {"YY_GWKH_ZL", "yy_gwkh_zl where khmc='%1'", "Text1(0)", "Text1(1)", "K1"},
        {"YY_WXHT", "yy_gw_wxht_h where gb='%1'", "Text1(0)", "Text1(1)", nullptr},
        {"sys_QXSZ", "qb_pass where name='%1'", "Text1(0)", "Text1(0)", "clerk"},
    };
    QString contract;
    for (const auto &c : cases) {
        SCOPED_TRACE(c.form);
        const FormEntry *entry = formEntry(c.form);
        ASSERT_TRUE(entry);
        const std::unique_ptr<QWidget> window(entry->make(&mainWindow, {}));
        auto &form = static_cast<RecordForm &>(*window);
        const FormDriver drive(form);
        const auto stored = [&](const char *value) { return count(QString(c.table).arg(value)); };
        for (const bool isLast : {false, true}) {
            drive.click("Cmdadd");
            if (c.typed)
                drive.type(c.key, c.typed);
            EXPECT_NE(drive.text(c.key), "");
            drive.type(c.value, "one");
            if (auto *lines = form.findChild<Grid *>("TDBGrid1")) {
                contract = drive.text(c.key);
                drive.typeCell(lines, 0, "beizhu", "first");
                drive.typeCell(lines, 1, "beizhu", "second");
            }
            drive.click("CmdOK");
            EXPECT_FALSE(form.isBusy());
            EXPECT_EQ(stored("one"), 1);
            drive.click("Cmdedit");
            drive.type(c.value, "two");
            drive.click("CmdOK");
            EXPECT_EQ(stored("two"), 1);
            if (!isLast) {
                drive.click("Cmddelete");
                EXPECT_EQ(stored("two"), 0);
            }
        }
        dialogs.shown.removeIf([](const Shown &shown) { return shown.icon == MessageIcon::Question; });
        EXPECT_EQ(dialogs.shown, QVector<Shown>());
    }
    EXPECT_EQ(contract, "X" + QDate::currentDate().toString("yyMM") + "00001");
    EXPECT_EQ(count("yy_gw_wxht_b"), 2);

    for (const char *name : {"形式发票", "形式发票2"})
        EXPECT_EQ(fill(document(name), *gConn, contract).report->layout()->all().size(), 1) << name;
    EXPECT_EQ(fill(document("国外客户资料"), *gConn, "K1").report->layout()->all().size(), 1);
    EXPECT_EQ(count("information_schema.processlist where user='desk'"), 1); // whatever forms are open
}

TEST_F(OfficeDocument, NoRightBeyondTheFour)
{
    const QString trustedBy = "tls=verify&ca=" + certificates.path("ca.pem");
    const QString login = "Password=" + password + ";Data Source=";
    Connection desk;
    desk.Open(login + source(trustedBy));
    for (const char *statement :
         {"drop table sys_gksz", "alter table sys_gksz add x int", "create table other (x int)", "truncate sys_gksz",
          "drop view yy_wxht_rpt", "create database other", "create user other", "grant select on tradewick.* to other",
          "select user from mysql.user", "select * into outfile '/x' from sys_gksz", "set global max_connections = 1"})
        EXPECT_THROW(desk.executeBound({statement, {}}), DataError) << statement;
    EXPECT_THROW(Connection().Open(login + source("tls=off")), DataError) << "a password in clear";

    // Backups need no right to write.
    const QString reader = QString(database).replace("root@", "tradewick@");
    tool({"check", reader});
    tool({"verify", reader});
    tool({"backup", reader, folder.filePath("backup.db")});
    Connection backup;
    backup.Open(connectionStringOf(folder.filePath("backup.db")));
    EXPECT_EQ(backup.rows("select name from qb_pass").value(0)["name"], "王敏");
    Connection reading;
    reading.Open(connectionStringOf(reader));
    EXPECT_THROW(reading.executeBound({"delete from qb_pass", {}}), DataError);
}

} // namespace tradewick
