// A database of this program's own on a MariaDB server: the one that all tests share, or, where there is none, one that
// ends with the program.
#pragma once

#include <QString>
#include <QStringList>

namespace tradewick::test
{

class ServerDatabase
{
public:
    ServerDatabase();
    ~ServerDatabase();
    ServerDatabase(const ServerDatabase &) = delete;
    ServerDatabase &operator=(const ServerDatabase &) = delete;

    QString name() const { return m_name; }
    QString source() const; // mariadb://...
    QString socket() const;
    // Statements in the server's own SQL, outside of the database.
    void run(const QString &statement) const;

private:
    QString m_name;
};

} // namespace tradewick::test
