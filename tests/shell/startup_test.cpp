#include "data/data_error.h"
#include "shell/main_window.h"
#include "shell/startup.h"
#include "shell_support.h"

#include <QDialog>
#include <QDir>
#include <QLabel>
#include <QLineEdit>

using namespace std::chrono_literals;
using namespace tradewick;
using namespace tradewick::test;

namespace
{

const QVariant null;
const Shown settingsAreWrong{"服务器设置有问题,点确认,设置.", "系统提示", MessageIcon::Exclamation};

class StartUp : public ShellTest
{
protected:
    // Starts the program and closes whatever dialog it ends in; gives that dialog's name.
    std::string start()
    {
        std::string name;
        whenModal([&](QWidget &modal) {
            name = modal.objectName().toStdString();
            splashIsGone = window("frmSplash") == nullptr;
            mainWindowStands = window("main_FRM") != nullptr;
            static_cast<QDialog &>(modal).done(0);
        });
        Main(0ms);
        return name;
    }
    bool splashIsGone = false;
    bool mainWindowStands = false;
};

} // namespace

TEST_F(StartUp, GoesOnOnlyWhenTheLastFailureIsANullInTheSettings)
{
    const QString server = database.dataSource();
    const QString away = m_folder.filePath("none.db");
    struct Case {
        QVariantList row;
        bool starts;
    };
    const Case cases[] = {
        {{null, "sa", server, database.catalog()}, true},  // the ordinary case: no password
        {{"", "sa", server, database.catalog()}, false},   // empty is not Null
        {{"pw", "sa", server, database.catalog()}, false}, // all filled: nothing is pending
        {{"pw", null, database.dataSource("clerk"), null}, true},
        {{null, "sa", "  " + server + " ", database.catalog()}, true},
        {{null, "sa", away, database.catalog()}, false}, // the refused connection overwrites the Null
        {{null, "sa", null, database.catalog()}, false},
    };
    for (const auto &[row, starts] : cases) {
        writeSettings({row});
        ends.clear();
        EXPECT_EQ(start(), starts ? "frmLogin" : "frmODBCLogon") << row[0].toString().toStdString();
        EXPECT_TRUE(splashIsGone);
        EXPECT_EQ(mainWindowStands, starts);
        EXPECT_EQ(dialogs.shown, starts ? QVector<Shown>() : QVector<Shown>{settingsAreWrong});
        EXPECT_EQ(ends, starts ? QList<int>() : QList{0});
        dialogs.shown.clear();
        closeAll();
        QFile::remove(m_folder.filePath("data_link.mdb"));
    }
}

TEST_F(StartUp, TrimsTheSettingsIntoTheConnectionString)
{
    const QString clerk = database.dataSource("clerk");
    const QString server = database.dataSource();
    const std::pair<QVariantList, QString> cases[] = {
        {{null, " sa ", " " + server + "  ", " " + database.catalog()},
         "password=;User ID=sa;Initial Catalog=" + database.catalog() + ";Data Source=" + server},
        {{" pw ", null, clerk, " " + database.catalog()},
         "password=pw;User ID=;Initial Catalog=" + database.catalog() + ";Data Source=" + clerk},
    };
    for (const auto &[row, opened] : cases) {
        writeSettings({row, {"other", "row", "is", "not read"}});
        EXPECT_EQ(start(), "frmLogin");
        EXPECT_EQ(gConnStr, "Provider=SQLOLEDB.1;Persist Security Info=True;" + opened);
        EXPECT_TRUE(gConn->isOpen());
        EXPECT_EQ(Connection::shared(gConnStr), gConn);
        closeAll();
        QFile::remove(m_folder.filePath("data_link.mdb"));
    }
}

TEST_F(StartUp, EndsInTheDialogWithoutARowAndUnhandledWithoutAFile)
{
    writeSettings({});
    EXPECT_EQ(start(), "frmODBCLogon");
    EXPECT_EQ(dialogs.take(), settingsAreWrong);
    EXPECT_EQ(ends, QList{0});

    QFile::remove(m_folder.filePath("data_link.mdb"));
    static QStringList warnings;
    warnings.clear();
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &text) { warnings.append(text); });
    EXPECT_THROW(Main(0ms), DataError);
    qInstallMessageHandler(nullptr);
    EXPECT_TRUE(warnings.filter("QSql").isEmpty()) << warnings.join('\n').toStdString();
    EXPECT_EQ(dialogs.take(), settingsAreWrong);
    EXPECT_EQ(window("frmSplash"), nullptr);
}

TEST_F(StartUp, LoadsTheCompanyProfileAsItStands)
{
    writeSettings({{null, "sa", database.dataSource(), database.catalog()}});
    EXPECT_EQ(start(), "frmLogin");
    EXPECT_EQ(gCompanyName + gCompanyNameEn + gCompanyAddress + gCompanyAddressEn + gCompanyPhone + gCompanyFax, "");

    database.connection().Execute("insert into sys_gsmc (gsbh, gsmc, e_gsmc, gsdz, e_gsdz, gs_phone, gs_fax) values "
                                  "('1', ' 青柏 ', 'QINGBAI', '南京', 'NANJING', '025-1', '025-2')");
    EXPECT_EQ(start(), "frmLogin");
    const QStringList loaded{gCompanyName,      gCompanyNameEn, gCompanyAddress,
                             gCompanyAddressEn, gCompanyPhone,  gCompanyFax};
    EXPECT_EQ(loaded, QStringList({" 青柏 ", "QINGBAI", "南京", "NANJING", "025-1", "025-2"}));

    // Null empties four of the globals and leaves the English name and the fax.
    database.connection().Execute(
        "update sys_gsmc set gsmc=null, e_gsmc=null, gsdz=null, e_gsdz=null, gs_phone=null, gs_fax=null");
    EXPECT_EQ(start(), "frmLogin");
    const QStringList left{gCompanyName,      gCompanyNameEn, gCompanyAddress,
                           gCompanyAddressEn, gCompanyPhone,  gCompanyFax};
    EXPECT_EQ(left, QStringList({"", "QINGBAI", "", "", "", "025-2"}));
}

TEST_F(StartUp, SettingsDialogWritesTheRowOnlyAtOk)
{
    writeSettings({{null, "sa", "old", database.catalog()}});
    main_FRM mainWindow;
    const auto open = [&]() -> QWidget & {
        mainWindow.openForm("frmODBCLogon");
        return *window("frmODBCLogon");
    };
    const auto type = [](QWidget &dialog, const char *field, const QString &text) {
        find<QLineEdit>(dialog, field).clear();
        QTest::keyClicks(&find<QLineEdit>(dialog, field), text);
    };
    EXPECT_EQ(open().windowTitle(), "服务器连接设置");
    EXPECT_EQ(find<QLineEdit>(open(), "txtServer").text(), "old");
    type(open(), "txtServer", "new");
    click(open(), "cmdCancel");
    EXPECT_EQ(settings(), Rows{QVariantList({null, "sa", "old", database.catalog()})});

    type(open(), "txtServer", "new 'quoted'");
    type(open(), "txtUID", "");
    type(open(), "txtPWD", "pw");
    click(open(), "cmdOK");
    EXPECT_EQ(window("frmODBCLogon"), nullptr);
    EXPECT_EQ(settings(), Rows{QVariantList({"pw", null, "new 'quoted'", database.catalog()})});
    EXPECT_TRUE(dialogs.shown.isEmpty());
}

TEST_F(StartUp, SettingsThatCannotBeWrittenWaitInTheDialog)
{
    writeSettings({{null, "sa", "old", null}});
    main_FRM mainWindow;
    mainWindow.openForm("frmODBCLogon");
    const QWidget &dialog = *window("frmODBCLogon");
    find<QLineEdit>(dialog, "txtServer").setText("new");
    const QString journal = m_folder.filePath("data_link.mdb-journal");
    ASSERT_TRUE(QDir().mkdir(journal)); // the file can be read, and not written
    click(dialog, "cmdOK");
    const Shown told = dialogs.take();
    EXPECT_TRUE(told.text.startsWith("设置没有保存") && told.text.contains("data_link.mdb")) << told.text.toStdString();
    EXPECT_EQ(told.icon, MessageIcon::Critical);
    ASSERT_EQ(window("frmODBCLogon"), &dialog);
    EXPECT_EQ(find<QLineEdit>(dialog, "txtServer").text(), "new");
    ASSERT_TRUE(QDir().rmdir(journal));
    click(dialog, "cmdOK");
    EXPECT_EQ(window("frmODBCLogon"), nullptr);
    EXPECT_EQ(settings(), Rows{QVariantList({null, "sa", "new", null})});
}

TEST_F(StartUp, SettingsDialogStartsARowInAnEmptyTable)
{
    writeSettings({});
    main_FRM mainWindow;
    mainWindow.openForm("frmODBCLogon");
    QTest::keyClicks(&find<QLineEdit>(*window("frmODBCLogon"), "txtServer"), "office.db");
    click(*window("frmODBCLogon"), "cmdOK");
    EXPECT_EQ(settings(), Rows{QVariantList({null, null, "office.db", null})});
}

TEST_F(StartUp, SettingsThatHoldAPasswordAreTheirOwnersAlone)
{
    writeSettings({{null, "sa", "office.db", null}});
    const QString file = m_folder.filePath("data_link.mdb");
    const auto othersMay = [&file] {
        return QFile::permissions(file) & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther);
    };
    const auto ownerMay = QFile::ReadOwner | QFile::WriteOwner;
    const auto everybody = ownerMay | QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    ASSERT_TRUE(QFile::setPermissions(file, everybody));
    main_FRM mainWindow;
    mainWindow.openForm("frmODBCLogon");
    QWidget &dialog = *window("frmODBCLogon");
    const QString note = find<QLabel>(dialog, "note").text();
    EXPECT_TRUE(note.contains("data_link.mdb") && note.contains("明文")) << note.toStdString();
    EXPECT_TRUE(find<QLabel>(dialog, "note").isVisible());
    for (const char *kind : {".db", "mariadb://", "主机\\实例"})
        EXPECT_TRUE(find<QLineEdit>(dialog, "txtServer").placeholderText().contains(kind)) << kind;

    QTest::keyClicks(&find<QLineEdit>(dialog, "txtPWD"), "secret");
    EXPECT_TRUE(othersMay()); // nothing is stored yet
    click(dialog, "cmdOK");
    EXPECT_EQ(settings(), Rows{QVariantList({"secret", "sa", "office.db", null})});
    EXPECT_FALSE(othersMay());
    EXPECT_EQ(QFile::permissions(file) & ownerMay, ownerMay);
}

TEST_F(StartUp, TryConnectsWithTheTextsAsTyped)
{
    writeSettings({{null, "sa", database.dataSource(), database.catalog()}});
    main_FRM mainWindow;
    mainWindow.openForm("frmODBCLogon");
    const QWidget &dialog = *window("frmODBCLogon");
    click(dialog, "Cmdtry");
    EXPECT_EQ(dialogs.take(), (Shown{"连接成功 ！", "系统提示", MessageIcon::Information}));
    find<QLineEdit>(dialog, "txtServer").setText(" " + database.dataSource());
    auto &again = find<QWidget>(dialog, "Cmdtry");
    QApplication::setActiveWindow(window("frmODBCLogon"));
    again.setFocus();
    QTest::keyClick(&again, Qt::Key_Return); // tries, and does not save
    EXPECT_EQ(dialogs.take(), (Shown{"服务器设置有问题，请重新核对。", "系统提示", MessageIcon::Information}));
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(settings(), Rows{QVariantList({null, "sa", database.dataSource(), database.catalog()})});
}
