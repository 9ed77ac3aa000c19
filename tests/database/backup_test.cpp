// Backups of a database that others write into, and back.
#include "database/description.h"
#include "program.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <atomic>
#include <thread>

namespace tradewick
{

namespace
{

using namespace test;

class Backup : public testing::Test
{
protected:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    QString answer(const QString &name, const QString &statement) const
    {
        return sqlite(path(name), statement + u';').out.trimmed();
    }
    QStringList files() const { return QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name); }

private:
    QTemporaryDir m_folder;
};

// Another desktop that saves documents of a head and three lines until it is told to end.
class Writer
{
public:
    explicit Writer(const QString &connectionString) : m_thread([this, connectionString] { write(connectionString); })
    {
        waitForMore();
    }
    ~Writer()
    {
        m_end = true;
        m_thread.join();
    }
    Writer(const Writer &) = delete;
    Writer &operator=(const Writer &) = delete;
    void waitForMore()
    {
        for (const int before = m_saved; m_saved == before && !m_failed;)
            std::this_thread::yield();
    }
    int saved() const { return m_saved; }
    bool failed() const { return m_failed; }

private:
    void write(const QString &connectionString)
    {
        try {
            Connection connection;
            connection.Open(connectionString);
            while (!m_end) {
                const QVariant number = "W" + QString::number(m_saved);
                connection.transaction([&] {
                    for (int line = 0; line < 3; ++line)
                        connection.Execute("insert into yy_gw_wxht_b (htbh,xc) values ('{number}',{line})",
                                           {{"number", number}, {"line", line}});
                    connection.Execute("insert into yy_gw_wxht_h (htbh) values ('{number}')", {{"number", number}});
                });
                ++m_saved;
            }
        } catch (const DataError &error) {
            ADD_FAILURE() << error.what();
            m_failed = true;
        }
    }

    std::atomic<int> m_saved = 0;
    std::atomic<bool> m_end = false, m_failed = false;
    std::thread m_thread;
};

TEST_F(Backup, HoldsWholeDocumentsWhileOthersSave)
{
    TestDatabase database;
    int last = 0;
    {
        Writer writer(database.connectionString());
        for (int i = 0; i < 5; ++i) {
            const QString name = QStringLiteral("%1.db").arg(i);
            const int before = writer.saved();
            const Ended ended = tool({"backup", database.dataSource(), path(name)});
            ASSERT_EQ(ended.status, 0) << ended.err.toStdString();
            const int heads = answer(name, "select count(*) from yy_gw_wxht_h").toInt();
            EXPECT_GE(heads, std::max(before, last));
            EXPECT_EQ(answer(name, "select count(*) from yy_gw_wxht_b").toInt(), 3 * heads);
            EXPECT_EQ(tool({"verify", path(name)}).out, "");
            last = heads;
            writer.waitForMore(); // the backup has not stopped it
        }
    }
    EXPECT_GT(database.count("yy_gw_wxht_h"), last);
}

TEST_F(Backup, ComesBackAsItWas)
{
    TestDatabase database(TestDatabase::Demonstration);
    database.elsewhere("update yy_gw_wxht_h set madol='{text}'", {{"text", "trailing 😀  "}});
    ASSERT_EQ(tool({"backup", database.dataSource(), path("backup.db")}).status, 0);
    EXPECT_EQ(QFile::permissions(path("backup.db")) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    EXPECT_EQ(files(), QStringList{"backup.db"});

    const NewPlace place;
    const Ended restored = tool({"restore", path("backup.db"), place.source()});
    ASSERT_EQ(restored.status, 0) << restored.err.toStdString();
    EXPECT_EQ(restored.lines().last(), "759 rows of 40 tables");
    ASSERT_EQ(tool({"backup", place.source(), path("again.db")}).status, 0);
    EXPECT_EQ(sqlite(path("again.db"), ".dump").out, sqlite(path("backup.db"), ".dump").out);
    // A backup is a database like any other.
    EXPECT_EQ(tool({"check", path("backup.db")}).status, 0);

    EXPECT_EQ(tool({"restore", path("backup.db"), place.source()}).status, 1);
    EXPECT_EQ(tool({"backup", place.source(), path("backup.db")}).status, 1) << "written over";
}

TEST_F(Backup, KeepsTheJournalOfTheOriginalToItself)
{
    ASSERT_EQ(tool({"demo", path("office.db")}).status, 0);
    ASSERT_EQ(answer("office.db", "pragma journal_mode = wal"), "wal");
    ASSERT_EQ(tool({"backup", path("office.db"), path("backup.db")}).status, 0);
    EXPECT_EQ(answer("backup.db", "pragma journal_mode"), "delete");
    EXPECT_EQ(answer("backup.db", "select count(*) from yy_gw_wxht_h"), "12");
}

TEST_F(Backup, LeavesNothingBehindWhenItFails)
{
    ASSERT_EQ(tool({"demo", path("office.db")}).status, 0);
    for (const char *name : {"torn.db", "crooked.db", "none.db"})
        ASSERT_TRUE(QFile::copy(path("office.db"), path(name)));
    const auto overwrite = [this](const QString &name, qint64 from, const QByteArray &bytes) {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QFile::ReadWrite) && file.seek(from));
        for (qint64 left = file.size() - from; left > 0; left -= bytes.size())
            file.write(bytes);
    };
    overwrite("torn.db", 40 * 4096, QByteArray(512, '\x55'));
    overwrite("none.db", 0, QByteArray("no database at all\n"));
    // An index that is not what it says holds other keys than the rows.
    ASSERT_EQ(sqlite(path("crooked.db"), "pragma writable_schema = on; update sqlite_master set sql = replace(sql,"
                                         " '(djrq)', '(hl)') where name = 'ix_yy_gw_wxht_h_djrq';")
                  .status,
              0);
    const QStringList before = files();
    const struct {
        QStringList arguments;
        const char *said;
    } cases[] = {
        {{"backup", path("torn.db"), path("backup.db")}, "malformed"},
        {{"backup", path("crooked.db"), path("backup.db")}, "the file is damaged: "},
        {{"backup", path("none.db"), path("backup.db")}, "not a database"},
        {{"backup", path("absent.db"), path("backup.db")}, "does not exist"},
        {{"backup", path("office.db"), path("no/folder/backup.db")}, "cannot be made"},
        {{"backup", path("office.db"), path("backup.bak")}, "ends in .db"},
        {{"backup", path("office.db"), "mariadb://localhost/x"}, "a backup is a file"},
        {{"restore", path("crooked.db"), path("new.db")}, "the file is damaged: "},
        {{"restore", path("none.db"), path("new.db")}, "not a database"},
        {{"restore", path("absent.db"), path("new.db")}, "no such backup"},
    };
    for (const auto &failing : cases) {
        const Ended ended = tool(failing.arguments);
        EXPECT_EQ(ended.status, 1) << failing.arguments.join(' ').toStdString();
        EXPECT_TRUE(ended.err.contains(failing.said)) << ended.err.toStdString();
    }
    EXPECT_EQ(files(), before);
    // A disk that is full after 40 KB.
    for (const QStringList &command : {QStringList{"backup", path("office.db"), path("backup.db")},
                                       {"copy", path("office.db"), path("new.db")},
                                       {"copy", path("office.db"), path("all.sql")},
                                       {"demo", path("new.db")}}) {
        const Ended full = run("bash", QStringList{"-c", "trap '' XFSZ; ulimit -f 40; exec \"$@\"", "bash",
                                                   binFolder() + "/tradewick-database"} +
                                           command);
        EXPECT_EQ(full.status, 1) << command.join(' ').toStdString();
        EXPECT_FALSE(full.err.isEmpty());
        EXPECT_EQ(files(), before) << command.join(' ').toStdString();
    }
}

} // namespace

} // namespace tradewick
