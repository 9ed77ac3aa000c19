// The tradewick-database program, and the files it makes as the stock sqlite3 shell sees them.
#include "database/description.h"
#include "program.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>

namespace tradewick
{

namespace
{

using namespace test;

class DatabaseFile : public testing::Test
{
protected:
    QString path(const QString &name) const { return m_directory.filePath(name); }
    Ended shell(const QString &statements) const { return sqlite(file, statements); }
    QString answer(const QString &statement) const { return shell(statement).out.trimmed(); }
    void make(const QString &command)
    {
        const Ended made = tool({command, file});
        ASSERT_EQ(made.status, 0) << made.err.toStdString();
    }

private:
    QTemporaryDir m_directory;

protected:
    const QString file = path("office.db");
};

QStringList missingIn(const Ended &check)
{
    return check.lines().filter(QRegularExpression(": missing$"));
}

TEST_F(DatabaseFile, CreatedFileHasEverythingOfTheSystem)
{
    make("create");
    const Ended check = tool({"check", file});
    EXPECT_EQ(check.status, 0);
    EXPECT_EQ(check.lines().filter("table ").size(), 40);
    EXPECT_EQ(check.lines().filter("view ").size(), 8);
    EXPECT_TRUE(check.out.contains("column yy_mxb_rpt.bzje: present\n"));
    EXPECT_TRUE(check.lines().last().endsWith(" present, 0 missing"));
}

TEST_F(DatabaseFile, CheckNamesWhatIsMissing)
{
    const struct {
        const char *damage, *missing;
    } cases[] = {
        {"alter table sys_gksz drop column gkxz;", "column sys_gksz.gkxz: missing"},
        {"drop table sc_kldt;", "table sc_kldt: missing,column sc_kldt.ddbh: missing,column sc_kldt.klbh: missing"},
        {"drop view cy_hytd_rpt;", "view cy_hytd_rpt: missing"},
    };
    for (const auto &damaged : cases) {
        SCOPED_TRACE(damaged.damage);
        QFile::remove(file);
        make("create");
        ASSERT_EQ(shell(damaged.damage).status, 0);
        const Ended check = tool({"check", file});
        EXPECT_EQ(check.status, 1);
        const QStringList missing = missingIn(check);
        for (const QString &line : QString(damaged.missing).split(u','))
            EXPECT_TRUE(missing.contains(line)) << check.out.toStdString();
        EXPECT_TRUE(check.lines().last().endsWith(QString(", %1 missing").arg(missing.size())));
    }
}

TEST_F(DatabaseFile, StockShellReadsAndWritesAllOfIt)
{
    make("demo");
    for (const ViewDescription &view : viewDescriptions()) {
        const Ended read = shell("select * from " + view.name + " where rtrim(" + view.key + ") > 'A' limit 3;");
        EXPECT_EQ(read.status, 0) << view.name.toStdString() << ": " << read.err.toStdString();
    }
    EXPECT_EQ(answer("update yy_gw_wxht_h set qydz = '泉州', djrq = '2026-08-06' where htbh = 'X260800001';"
                     "select distinct qydz, djrq from yy_wxht_rpt where htbh = 'x260800001' collate nocase;"),
              "泉州|2026-08-06");
    const QString copy = path("copy.db");
    ASSERT_EQ(run("sqlite3", {copy}, shell(".dump").out).status, 0);
    EXPECT_EQ(tool({"check", copy}).status, 0);
    EXPECT_EQ(run("sqlite3", {copy}, "select sum(je) from yy_wxht_rpt;").out,
              shell("select sum(je) from yy_wxht_rpt;").out);
}

TEST_F(DatabaseFile, RefusesWhatIsNoNumberNoDateNoFlagAndTwins)
{
    make("create");
    ASSERT_EQ(shell("insert into sys_bzsz (bzbh) values ('$0001');"
                    "insert into yy_gw_wxht_h (htbh) values ('X1');"
                    "insert into yy_mxb_b (fpbh) values ('FP1');"
                    "insert into cy_pcd_rpt (pcdh) values ('PC0001');")
                  .status,
              0);
    const struct {
        const char *statement;
        bool taken;
    } cases[] = {
        {"update sys_bzsz set hl = '7.12'", true},
        {"update sys_bzsz set hl = ' 7'", true},
        {"update sys_bzsz set hl = null", true},
        {"update sys_bzsz set hl = 'seven'", false},
        {"update sys_bzsz set hl = '7,12'", false},
        {"update sys_bzsz set hl = x'37'", false},
        {"update yy_gw_wxht_h set djrq = '2026-02-28'", true},
        {"update yy_gw_wxht_h set djrq = '2026-02-28 14:30'", true},
        {"update yy_gw_wxht_h set djrq = null", true},
        {"update yy_gw_wxht_h set djrq = '2026-02-30'", false},
        {"update yy_gw_wxht_h set djrq = '2026-2-8'", false},
        {"update yy_gw_wxht_h set djrq = '28.02.2026'", false},
        {"update yy_gw_wxht_h set djrq = 20260228", false},
        {"insert into qb_pass (name, t1) values ('A', 1), ('a ', 0), ('A', null)", true},
        {"insert into qb_pass (name, t1) values ('A', 2)", false},
        {"insert into qb_pass (name, t1) values ('A', 'True')", false},
        {"insert into sys_bzsz (bzbh) values (null), (null)", true},
        {"insert into sys_bzsz (bzbh) values ('$0001  ')", false},
        {"insert into yy_gw_wxht_h (htbh) values ('x1')", false},
        {"insert into yy_gw_wxht_h (htbh) values (' X1')", true},
        {"insert into yy_mxb_b (fpbh) values ('FP1')", true},
        {"insert into cy_pcd_rpt (pcdh) values ('PC0001')", true},
    };
    for (const auto &tried : cases)
        EXPECT_EQ(shell(QString(tried.statement) + ';').status == 0, tried.taken) << tried.statement;
}

TEST_F(DatabaseFile, ScratchTablesTakeRowsWhole)
{
    make("create");
    for (const QString table : {"yy_mxb_h", "yy_mxb_b"}) {
        const QString columns =
            "select group_concat(name) from (select name from pragma_table_info('%1') order by cid);";
        EXPECT_EQ(answer(columns.arg(table)), answer(columns.arg(table + "_tm")));
        EXPECT_EQ(shell(QString("insert into %1 (fpbh, gsmc) values ('FP1', 'company');"
                                "insert into %1_tm select * from %1; delete from %1;"
                                "insert into %1 select * from %1_tm;")
                            .arg(table))
                      .status,
                  0);
        EXPECT_EQ(answer("select fpbh, gsmc from " + table + ';'), "FP1|company");
    }
}

TEST_F(DatabaseFile, LookupsGoThroughAnIndexOnBothSidesOfAView)
{
    make("create");
    const auto planOf = [this](const QString &statement) { return answer("explain query plan " + statement + ';'); };
    for (const TableDescription &table : tableDescriptions())
        for (const QString &key : table.indexed + QStringList(table.unique)) {
            const auto column = std::find_if(table.columns.begin(), table.columns.end(),
                                             [&](const ColumnDescription &other) { return other.name == key; });
            if (column == table.columns.end())
                continue; // a table without a unique key
            const char *where = column->kind == ColumnKind::Text ? "rtrim(%1) = rtrim('x') collate nocase"
                                                                 : "%1 between '2026-01-01' and '2026-01-31'";
            const QString plan = planOf("select * from " + table.name + " where " + QString(where).arg(key));
            EXPECT_TRUE(plan.contains("SEARCH") && !plan.contains("SCAN"))
                << table.name.toStdString() << '.' << key.toStdString() << '\n'
                << plan.toStdString();
        }
    for (const ViewDescription &view : viewDescriptions()) {
        const QString plan =
            planOf("select * from " + view.name + " where rtrim(" + view.key + ") = rtrim('x') collate nocase");
        EXPECT_EQ(plan.count("SEARCH"), 2) << view.name.toStdString() << '\n' << plan.toStdString();
    }
}

TEST_F(DatabaseFile, DemonstrationDataMakeSense)
{
    make("demo");
    const struct {
        const char *query;
        int atLeast;
    } counts[] = {
        {"select count(*) from sys_bmsz where length(bmbh) = 5", 5},
        {"select count(*) from sys_gzry where bmmc is not null", 10},
        {"select count(*) from sys_gzry where zhwu like '%文%'", 3},
        {"select count(*) from sys_bzsz where bizh in ('CNY', 'USD', 'EUR', 'GBP', 'JPY') and hl > 0", 5},
        {"select count(*) from sys_bzsz where bizh = 'CNY' and hl = 1", 1},
        {"select count(*) from sys_gksz", 10},
        {"select count(*) from yy_gwkh_zl", 6},
        {"select count(distinct bizh) from yy_gwkh_zl where hl > 0", 3},
        {"select count(*) from yy_gyszl", 8},
        {"select count(*) from yy_bzdj", 40},
        {"select count(distinct khbh) from yy_bzdj_b", 6},
        {"select count(*) from yy_gw_wxht_h", 12},
        {"select count(*) from yy_wxht_rpt where htbh = 'X260800001'", 30},
        {"select count(*) from qb_pass", 5},
        {"select t1+t2+t3+t4+t5+t6+t7+t8+t9+t10+t11+t12+t13+t14+t15+t16+t17+t18+t19+t20+t21+t22+t23+t24+t25+t26+t27+t28"
         " from qb_pass where name = '系统管理员'",
         28},
    };
    for (const auto &counted : counts)
        EXPECT_GE(answer(QString(counted.query) + ';').toInt(), counted.atLeast) << counted.query;

    // Each names the rows that would be wrong.
    const char *const faults[] = {
        "select htbh from yy_gw_wxht_b where htbh not in (select htbh from yy_gw_wxht_h)",
        "select htbh from yy_gw_wxht_h where htbh not in (select htbh from yy_gw_wxht_b)",
        "select h.htbh from yy_gw_wxht_h h left join yy_gwkh_zl k on h.khbh = k.khbh and h.khmc = k.khmc"
        " and h.dizh = k.zwdz and h.bizh = k.bizh and h.hl = k.hl and h.jsfs = k.zffs where k.khbh is null",
        "select h.htbh from yy_gw_wxht_h h left join sys_gsmc c on h.gsmc = c.gsmc and h.e_gsdz = c.e_gsdz"
        " and h.logo = c.logo and h.bank_code = c.bank_code where c.gsmc is null",
        "select htbh from yy_gw_wxht_h where"
        " htbh not glob 'X' || substr(djrq, 3, 2) || substr(djrq, 6, 2) || '[0-9][0-9][0-9][0-9][0-9]'",
        "select htbh from yy_gw_wxht_h where qyr not in (select name from sys_gzry) or bmmc not in"
        " (select bmmc from sys_bmsz) or zygk not in (select gkmc from sys_gksz) or mdgk not in"
        " (select gkmc from sys_gksz)",
        "select htbh, cpbh from yy_gw_wxht_b where je is null or abs(je - (jkdj + jmdj) * sl) > 0.000001"
        " or abs(dj - jkdj - jmdj) > 0.000001 or sl <= 0",
        "select htbh from yy_gw_wxht_b group by htbh having min(xc) <> 1 or max(xc) <> count(*)",
        "select l.cpbh from yy_gw_wxht_b l where not exists (select 1 from yy_bzdj_b q where q.cpbh = l.cpbh"
        " and q.gg = l.gg and q.khbh = l.khbh and q.jkdj = l.jkdj and q.jmdj = l.jmdj)",
        "select cpbh from yy_bzdj_b where gys_mc is null or khmc is null or gys_bizh is null"
        " or abs(gys_dj - jkdj - jmdj) > 0.000001",
        "select cpbh, gg, khbh from yy_bzdj_b group by 1, 2, 3 having count(*) > 1",
        "select bmmc from sys_bmsz where sjbm <> '无' and sjbm not in (select bmmc from sys_bmsz where sjbm = '无')",
        "select khbh from yy_gwkh_zl where khmc glob '*[一-龥]*' or zwdz glob '*[一-龥]*' or ywmc not glob '*[一-龥]*'",
        "select dw from yy_bzdj where dw not in (select jldw from sys_jldw)",
    };
    for (const char *fault : faults) {
        const Ended found = shell(QString(fault) + ';');
        EXPECT_EQ(found.status, 0) << fault << '\n' << found.err.toStdString();
        EXPECT_EQ(found.out, "") << fault;
    }
    const QString logo = answer("select logo from sys_gsmc;");
    EXPECT_EQ(QFileInfo(logo).absolutePath(), QFileInfo(file).absolutePath());
    QFile picture(logo);
    ASSERT_TRUE(picture.open(QFile::ReadOnly));
    EXPECT_EQ(picture.read(8), QByteArray("\x89PNG\r\n\x1a\n"));
}

TEST_F(DatabaseFile, RefusedCommandsLeaveFilesAsTheyWere)
{
    make("demo");
    const QString before = answer(".dump");
    QFile other(path("other.db"));
    ASSERT_TRUE(other.open(QFile::WriteOnly));
    other.write("this is no database, only some text of a length that SQLite reads as a broken header of one\n");
    other.close();
    const struct {
        QStringList arguments;
        int status;
        const char *said;
    } cases[] = {
        {{"create", file}, 1, "exists already"},
        {{"demo", file}, 1, "holds rows already"},
        {{"demo", other.fileName()}, 1, "not a database"},
        {{"check", other.fileName()}, 1, "not a database"},
        {{"check", path("none.db")}, 1, "does not exist"},
        {{"create", path("office.mdb")}, 1, "ends in .db"},
        {{"create", path("none/office.db")}, 1, "cannot be made"},
        {{"connect", file, "x"}, 1, "exists already"},
        {{"script", "oracle"}, 2, "Usage:"},
        {{"create"}, 2, "Usage:"},
        {{}, 2, "Usage:"},
    };
    const QStringList names = QFileInfo(file).dir().entryList(QDir::Files);
    for (const auto &refused : cases) {
        const Ended ended = tool(refused.arguments);
        EXPECT_EQ(ended.status, refused.status) << refused.arguments.join(' ').toStdString();
        EXPECT_TRUE(ended.err.contains(refused.said)) << ended.err.toStdString();
    }
    EXPECT_EQ(answer(".dump"), before);
    EXPECT_EQ(QFileInfo(file).dir().entryList(QDir::Files), names);
    EXPECT_EQ(QFileInfo(other.fileName()).size(), 92);
}

TEST_F(DatabaseFile, DemonstrationFillsADatabaseMadeBefore)
{
    make("create");
    make("demo");
    EXPECT_EQ(answer("select count(*) from yy_gw_wxht_h;"), "12");
}

TEST_F(DatabaseFile, SettingsAreOneRowThatOnlyTheOwnerReads)
{
    const QString settings = path("data_link.mdb");
    ASSERT_EQ(tool({"connect", settings, "C:\\it's an office.db"}).status, 0);
    EXPECT_EQ(run("sqlite3", {settings},
                  "select datasource, typeof(UserID), typeof(Password), typeof(\"Database\") from data_link;")
                  .out,
              "C:\\it's an office.db|null|null|null\n");
    EXPECT_EQ(QFile::permissions(settings) &
                  (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
              QFile::Permissions());
}

TEST(Script, IsWholeForEachEngine)
{
    const struct {
        const char *engine, *end;
        QStringList holds;
    } cases[] = {
        {"sqlite",
         ";\n",
         {"djrq DATE CHECK", "CREATE UNIQUE INDEX ix_yy_mxb_h_fpbh ON yy_mxb_h (rtrim(fpbh) COLLATE NOCASE)"}},
        {"mariadb", ";\n", {"tradewick_id BIGINT", "utf8mb4_uca1400_as_ci", "ON h.htbh = b.htbh"}},
        {"sqlserver",
         "\nGO\n",
         {"Chinese_PRC_CI_AS", "SET QUOTED_IDENTIFIER ON\nGO\n", "(fpbh) WHERE fpbh IS NOT NULL", "xsfp bit NULL"}},
    };
    for (const auto &wanted : cases) {
        SCOPED_TRACE(wanted.engine);
        const Ended script = tool({"script", wanted.engine});
        EXPECT_EQ(script.status, 0);
        for (const QString &part : wanted.holds)
            EXPECT_TRUE(script.out.contains(part)) << part.toStdString();
        EXPECT_EQ(script.out.split(wanted.end).filter(QRegularExpression("^CREATE TABLE ")).size(), 40);
        EXPECT_EQ(script.out.split(wanted.end).filter(QRegularExpression("^CREATE VIEW ")).size(), 8);
    }
    // The engine's own shell takes it.
    const NewPlace place;
    const Ended made = place.shell(tool({"script", place.isOnServer() ? "mariadb" : "sqlite"}).out);
    EXPECT_EQ(made.status, 0) << made.err.toStdString();
    EXPECT_EQ(tool({"check", place.source()}).status, 0);
}

} // namespace

} // namespace tradewick
