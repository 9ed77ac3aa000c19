// The program, the stock shells, and places for new databases: files, or databases of the server that the run uses.
#pragma once

#include "support/test_database.h"

#include <QCoreApplication>
#include <QProcess>
#include <QStringList>

namespace tradewick::test
{

struct Ended {
    int status = -1;
    QString out, err;
    QStringList lines() const { return out.split(u'\n', Qt::SkipEmptyParts); }
};

inline Ended run(const QString &program, const QStringList &arguments, const QString &input = {},
                 const QString &folder = {})
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(program, arguments);
    process.write(input.toUtf8());
    process.closeWriteChannel();
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit)
        return {-1, {}, process.errorString()};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

inline Ended tool(const QStringList &arguments, const QString &folder = {})
{
    return run(binFolder() + "/tradewick-database", arguments, {}, folder);
}

// The stock shell of SQLite, which stops at the first refused statement.
inline Ended sqlite(const QString &file, const QString &statements)
{
    return run("sqlite3", {"-bail", file}, statements);
}

// Where a database can be made: the name of no file yet, or an empty database of the server.
class NewPlace
{
public:
    NewPlace()
    {
        static int last = 0;
        m_name = QStringLiteral("tradewick_place_%1_%2").arg(QCoreApplication::applicationPid()).arg(++last);
        if (m_test.isOnServer())
            m_test.connection().executeBound({"create database " + m_name + " character set latin1", {}});
    }
    ~NewPlace()
    {
        if (m_test.isOnServer())
            m_test.connection().executeBound({"drop database " + m_name, {}});
    }
    NewPlace(const NewPlace &) = delete;
    NewPlace &operator=(const NewPlace &) = delete;

    bool isOnServer() const { return m_test.isOnServer(); }
    QString source() const
    {
        return isOnServer() ? m_test.dataSource().replace(u'/' + m_test.catalog() + u'?', u'/' + m_name + u'?')
                            : m_folder.filePath("new.db");
    }
    // What the stock shell of the engine prints for a statement, values of a row parted by tabs.
    Ended shell(const QString &statement) const
    {
        if (!isOnServer())
            return run("sqlite3", {"-bail", "-separator", "\t", source()}, statement);
        return run("mariadb",
                   {"--no-defaults", "--default-character-set=utf8mb4", "--user=root", "--batch", "--raw",
                    "--skip-column-names", "--socket=" + source().section("socket=", 1), m_name},
                   statement);
    }
    QString answer(const QString &statement) const { return shell(statement + u';').out.trimmed(); }

private:
    TestDatabase m_test; // holds the server
    QTemporaryDir m_folder;
    QString m_name;
};

} // namespace tradewick::test
