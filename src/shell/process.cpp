#include "shell/process.h"

#include <QCoreApplication>

#include <cstdlib>

namespace tradewick
{

namespace
{

std::function<void(int)> &otherEnd()
{
    static std::function<void(int)> end;
    return end;
}

QString &otherDirectory()
{
    static QString directory;
    return directory;
}

} // namespace

void endProcess(int code)
{
    if (otherEnd())
        otherEnd()(code);
    else
        std::quick_exit(code);
}

void setEndProcess(std::function<void(int)> end)
{
    otherEnd() = std::move(end);
}

QString applicationDirectory()
{
    return otherDirectory().isEmpty() ? QCoreApplication::applicationDirPath() : otherDirectory();
}

void setApplicationDirectory(const QString &directory)
{
    otherDirectory() = directory;
}

QString localSettingsFile()
{
    return applicationDirectory() + QStringLiteral("/data_link.mdb");
}

QString localConnectionString()
{
    return QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=%1\\data_link.mdb;Persist Security Info=False")
        .arg(applicationDirectory());
}

} // namespace tradewick
