#include "database/backup.h"

#include <sqlite3.h>

#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>
#include <QThread>

#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace tradewick
{

namespace
{

// Those who are just saving are waited for, asked at short intervals: where many save, the moment between two of them
// is short.
constexpr int waitMilliseconds = 30000;

int wait(void *, int asked)
{
    QThread::msleep(1);
    return asked < waitMilliseconds;
}

// A file by the library's own interface, which copies pages.
class SqliteFile
{
public:
    explicit SqliteFile(const QString &name)
    {
        sqlite3 *file = nullptr;
        const int result = sqlite3_open_v2(name.toUtf8().constData(), &file, SQLITE_OPEN_READWRITE, nullptr);
        m_file.reset(file); // to be closed although it could not be opened
        check(result);
        sqlite3_busy_handler(file, wait, nullptr);
    }

    // The first column of the rows.
    QStringList column(const QString &statement)
    {
        sqlite3_stmt *rows = nullptr;
        check(sqlite3_prepare_v2(m_file.get(), statement.toUtf8().constData(), -1, &rows, nullptr));
        const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> guard(rows, sqlite3_finalize);
        QStringList values;
        int step = SQLITE_ROW;
        while ((step = sqlite3_step(rows)) == SQLITE_ROW)
            values.append(QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(rows, 0))));
        if (step != SQLITE_DONE)
            check(step);
        return values;
    }

    QVector<TableCount> counts()
    {
        QVector<TableCount> counts;
        for (const QString &table : column(QStringLiteral("select name from sqlite_master where type = 'table'")))
            counts.append({table, column("select count(*) from " + quotedName(table)).first().toLongLong()});
        return counts;
    }

    // Copies all pages as they stand at one moment and gives what is counted at that very moment.
    QVector<TableCount> copyTo(SqliteFile &copy)
    {
        column(QStringLiteral("begin"));
        QVector<TableCount> counted = counts();
        sqlite3_backup *backup = sqlite3_backup_init(copy.m_file.get(), "main", m_file.get(), "main");
        const int step = backup ? sqlite3_backup_step(backup, -1) : sqlite3_errcode(copy.m_file.get());
        sqlite3_backup_finish(backup);
        if (step != SQLITE_DONE)
            throw CommandError(QString::fromUtf8(sqlite3_errstr(step)));
        column(QStringLiteral("commit"));
        // One file, whatever the way in which the original keeps its journal.
        copy.column(QStringLiteral("pragma journal_mode = delete"));
        return counted;
    }

    void requireWhole()
    {
        const QStringList faults = column(QStringLiteral("pragma integrity_check"));
        if (faults != QStringList(QStringLiteral("ok")))
            throw CommandError(QStringLiteral("%1: the file is damaged: %2")
                                   .arg(QString::fromUtf8(sqlite3_db_filename(m_file.get(), "main")), faults.first()));
    }

private:
    void check(int result)
    {
        if (result != SQLITE_OK)
            throw CommandError(QString::fromUtf8(m_file ? sqlite3_errmsg(m_file.get()) : sqlite3_errstr(result)));
    }

    std::unique_ptr<sqlite3, decltype(&sqlite3_close)> m_file{nullptr, sqlite3_close};
};

void storeOnDisk(const QString &path, int flags)
{
    const int file = ::open(QFile::encodeName(path).constData(), flags);
    const bool stored = file >= 0 && ::fsync(file) == 0;
    if (file >= 0)
        ::close(file);
    if (!stored)
        throw CommandError(QStringLiteral("%1 cannot be written: %2").arg(path, qt_error_string()));
}

} // namespace

QVector<TableCount> backUp(const QString &source, const QString &file)
{
    if (!isFile(file))
        throw CommandError(QStringLiteral("%1: a backup is a file").arg(shownName(file)));
    refuseExisting(file);
    const QString folder = QFileInfo(file).absolutePath();
    // Its owner's alone from the start, and gone unless it gets its name.
    QTemporaryFile part(folder + QStringLiteral("/.backup-XXXXXX.db"));
    if (!part.open())
        throw CommandError(QStringLiteral("%1 cannot be made: %2").arg(file, part.errorString()));
    const QString name = part.fileName();
    part.close();

    QVector<TableCount> counted;
    if (!isFile(source))
        counted = copyDatabase(source, name);
    else if (!QFileInfo(source).isFile())
        throw CommandError(QStringLiteral("%1 does not exist").arg(source));
    {
        SqliteFile copy(name);
        if (isFile(source))
            counted = SqliteFile(source).copyTo(copy);
        copy.requireWhole();
        if (copy.counts() != counted)
            throw CommandError(QStringLiteral("%1: the copy does not count the same rows").arg(shownName(source)));
    }
    storeOnDisk(name, O_RDWR);
    if (!QFile::rename(name, file))
        throw CommandError(QStringLiteral("%1 cannot be made").arg(file));
    storeOnDisk(folder, O_RDONLY | O_DIRECTORY);
    return counted;
}

QVector<TableCount> restore(const QString &file, const QString &target)
{
    if (!isFile(file) || !QFileInfo(file).isFile())
        throw CommandError(QStringLiteral("%1: there is no such backup").arg(shownName(file)));
    SqliteFile(file).requireWhole();
    return copyDatabase(file, target);
}

} // namespace tradewick
