#include "shell/startup.h"

#include "common/dialogs.h"
#include "common/globals.h"
#include "shell/connection_settings.h"
#include "shell/login.h"
#include "shell/main_window.h"
#include "shell/process.h"
#include "shell/splash.h"

#include <QCoreApplication>
#include <QPointer>
#include <QScreen>
#include <QThread>

namespace tradewick
{

namespace
{

QPointer<frmSplash> splashScreen;

void closeSplash()
{
    if (splashScreen)
        splashScreen->close();
}

QString trimmedValue(Recordset &settings, const QString &column)
{
    const QVariant value = settings.Fields(column).value();
    if (!value.isValid())
        throw DataError(DataError::invalidUseOfNull, QStringLiteral("无效使用 Null"));
    return value.toString().trimmed();
}

// Takes the column over where it is not Null; the empty text where it is and emptyWhenNull says so.
void loadProfile(const QString &column, QString &global, bool emptyWhenNull)
{
    const QVariant value = gCompanyRs->Fields(column).value();
    if (value.isValid())
        global = value.toString();
    else if (emptyWhenNull)
        global = QString();
}

void loadCompanyProfile()
{
    gCompanyRs = std::make_unique<Recordset>();
    gCompanyRs->Open(QStringLiteral("select * from sys_gsmc"), {}, gConn);
    if (gCompanyRs->RecordCount() == 0)
        return;
    gCompanyRs->MoveFirst();
    loadProfile("GSMC", gCompanyName, true);
    loadProfile("E_gsmc", gCompanyNameEn, false);
    loadProfile("GSDZ", gCompanyAddress, true);
    loadProfile("E_gsDZ", gCompanyAddressEn, true);
    loadProfile("GS_PHONE", gCompanyPhone, true);
    loadProfile("GS_fax", gCompanyFax, false);
}

} // namespace

bool OpenDataLink()
{
    splashScreen = new frmSplash;
    splashScreen->setAttribute(Qt::WA_DeleteOnClose);
    splashScreen->show();
    splashScreen->repaint();
    // The picture reaches the screen; what the user does meanwhile waits.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);

    int pending = 0; // number of the last failure, which no success clears
    const auto attempt = [&pending](const auto &statement) {
        try {
            statement();
        } catch (const DataError &error) {
            pending = error.number();
        }
    };
    QString password;
    QString user;
    QString server;
    QString database;
    const auto local = std::make_shared<Connection>();
    Recordset settings;
    attempt([&] {
        local->Open(localConnectionString());
        settings.Open(QStringLiteral("select * from data_link"), {}, local);
    });
    attempt([&] { settings.MoveFirst(); });
    attempt([&] { password = trimmedValue(settings, "Password"); });
    attempt([&] { user = trimmedValue(settings, "UserID"); });
    attempt([&] { server = trimmedValue(settings, "datasource"); });
    attempt([&] { database = trimmedValue(settings, "Database"); });
    gConnStr = QStringLiteral("Provider=SQLOLEDB.1;Persist Security Info=True;password=") + password +
               QStringLiteral(";User ID=") + user + QStringLiteral(";Initial Catalog=") + database +
               QStringLiteral(";Data Source=") + server;
    gConn = std::make_shared<Connection>();
    gConn->CursorLocation = 3;
    attempt([] { gConn->Open(gConnStr, {}, {}, -1); });
    if (pending == DataError::invalidUseOfNull) {
        Connection::share(gConn);
        return true;
    }

    dialogs().message(nullptr, QStringLiteral("服务器设置有问题,点确认,设置."), QStringLiteral("系统提示"),
                      MessageIcon::Exclamation);
    closeSplash();
    frmODBCLogon(nullptr).exec();
    endProcess(0);
    return false;
}

void Main(std::chrono::milliseconds splash)
{
    if (!OpenDataLink())
        return;
    loadCompanyProfile();
    QThread::msleep(static_cast<unsigned long>(splash.count()));
    closeSplash();
    auto *mainWindow = new main_FRM;
    mainWindow->setGeometry(mainWindow->screen()->availableGeometry()); // where nothing maximises windows
    mainWindow->showMaximized();
    frmLogin(mainWindow).exec();
}

} // namespace tradewick
