#include "data/mariadb_wait.h"

#include "data/data_error.h"
#include "data/watch.h"

#include <QDeadlineTimer>
#include <QHash>
#include <QSqlDatabase>
#include <QSqlQuery>

#include <algorithm>
#include <cerrno>
#include <mysql.h>
#include <poll.h>

namespace tradewick
{

namespace
{

constexpr int asksEvery = 50; // ms

struct Session {
    qulonglong number; // by which the server knows it
    MariaDbSource source;
};

// By their sockets: the library tells nothing else of a connection that waits.
QHash<my_socket, Session> &sessions()
{
    static QHash<my_socket, Session> all;
    return all;
}

// The statement ends with an error then; where the server takes no second connection it goes on to its end.
void endStatement(const Session &session)
{
    const Watch nobody([] { return true; });
    const QString name = QStringLiteral("tradewick-stop");
    try {
        QSqlDatabase other = QSqlDatabase::addDatabase("QMYSQL", name);
        openMariaDb(other, session.source);
        QSqlQuery query(other);
        query.prepare("kill query ?");
        query.bindValue(0, session.number);
        query.exec();
    } catch (const DataError &) {
    }
    QSqlDatabase::removeDatabase(name);
}

// In place of the library's own waiting: more than 0 when there is something to read, 0 when the time is over.
int waitForServer(my_socket socket, my_bool isReading, int timeout)
{
    pollfd answer{socket, static_cast<short>(isReading ? POLLIN : POLLOUT), 0};
    const QDeadlineTimer deadline = timeout > 0 ? QDeadlineTimer(timeout) : QDeadlineTimer(QDeadlineTimer::Forever);
    bool isStopped = false;
    while (!deadline.hasExpired()) {
        const auto left = deadline.isForever() ? asksEvery : deadline.remainingTime();
        const int ready = poll(&answer, 1, static_cast<int>(std::min<qint64>(asksEvery, left)));
        if (ready > 0 || (ready < 0 && errno != EINTR))
            return ready;
        if (!isStopped && !Watch::goesOn()) {
            isStopped = true;
            endStatement(sessions().value(socket));
        }
    }
    return 0;
}

} // namespace

void watchAnswers(const QVariant &driverHandle, const MariaDbSource &source)
{
    if (qstrcmp(driverHandle.typeName(), "st_mysql*") != 0)
        return;
    MYSQL *server = *static_cast<MYSQL *const *>(driverHandle.constData());
    sessions().insert(mysql_get_socket(server), {mysql_thread_id(server), source});
    mysql_optionsv(server, MARIADB_OPT_IO_WAIT, &waitForServer);
}

} // namespace tradewick
