// Master data of a large company: forms with trees, the product register, a sorted list; each beside the bare SQL.
#include "common/branch_tree.h"
#include "common/globals.h"
#include "common/record_form.h"
#include "contracts/contracts.h"
#include "database/description.h"
#include "figures.h"
#include "form_bench.h"
#include "masterdata/masterdata.h"

#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>

#include <algorithm>
#include <functional>
#include <stdexcept>

namespace tradewick
{

namespace
{

constexpr int topsOfCompany = 200, belowEachTop = 9, staffOfDepartment = 10;
constexpr int products = 50000, pricesOfProduct = 10, contracts = 100000;
constexpr int runs = 25;

// A client without the program: one connection of its own, statements read whole.
class BareClient
{
public:
    explicit BareClient(const QString &path)
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "bare");
        database.setDatabaseName(path);
        database.open();
    }
    ~BareClient() { QSqlDatabase::removeDatabase("bare"); }

    // Reads every value; keeps the rows where a further statement needs them.
    static void run(const QString &statement, const QVariantList &values = {}, QVector<QVariantList> *kept = nullptr)
    {
        QSqlQuery query(QSqlDatabase::database("bare"));
        query.setForwardOnly(true);
        query.prepare(statement);
        for (const QVariant &value : values)
            query.addBindValue(value);
        if (!query.exec())
            throw std::runtime_error(query.lastError().text().toStdString());
        QVariantList row(query.isSelect() ? query.record().count() : 0);
        while (query.next()) {
            for (int i = 0; i < row.size(); ++i)
                row[i] = query.value(i);
            if (kept)
                kept->append(row);
        }
    }
    static QVector<QVariantList> rows(const QString &statement, const QVariantList &values = {})
    {
        QVector<QVariantList> kept;
        run(statement, values, &kept);
        return kept;
    }
};

void makeTables()
{
    for (const QString &statement : ddl(Engine::Sqlite))
        BareClient::run(statement);
}

void fill()
{
    const auto insert = [](const QString &into, const QVariantList &values) {
        BareClient::run("insert into " + into + " values(" + QStringList(values.size(), "?").join(u',') + ")", values);
    };
    const auto key = [](const char *letter, int number, int digits) {
        return letter + QString::number(number).rightJustified(digits, u'0');
    };
    BareClient::run("begin");
    int department = 0, person = 0;
    const auto addDepartment = [&](const QString &name, const QString &above) {
        const QString number = key("B", department++, 4);
        insert("sys_bmsz(bmbh,bmmc,sjbm)", {number, name, above});
        for (int i = 0; i < staffOfDepartment; ++i, ++person)
            insert("sys_gzry(bmmc,bmbh,zgbh,name,zhwu)",
                   {name, number, key("", person, 6), key("员工", person, 6), person % 3 ? "业务员" : "单证员"});
    };
    for (int top = 0; top < topsOfCompany; ++top) {
        const QString name = key("部门", top, 3);
        addDepartment(name, "无");
        for (int below = 0; below < belowEachTop; ++below)
            addDepartment(name + key("-", below, 1), name);
    }
    for (int product = 0; product < products; ++product) {
        const QString code = key("NB-", product, 5);
        insert("yy_bzdj(cpbh,cplb,cpmc,dw,bacp,beizhu)",
               {code, key("类别", product % 40, 2), key("画框", product, 5), "PCS", "44140090", ""});
        for (int size = 0; size < pricesOfProduct; ++size)
            insert("yy_bzdj_b(cpbh,gg,gys_bizh,jkdj,jmdj,gys_dj)", {code, key("", size, 2), "USD", 1.5, 2.5, 4.0});
    }
    for (int contract = 0; contract < contracts; ++contract) {
        const int customer = contract * 7919 % contracts; // 5,000 characters begin the names
        insert("yy_gw_wxht_h(htbh,khbh,khmc,djrq)",
               {key("X26", contract, 7), "K001", QChar(0x4e00 + customer % 5000) + key("贸易", customer, 6),
                "2026-03-05"});
    }
    BareClient::run("commit");
}

using Action = std::function<std::unique_ptr<RecordForm>(int run)>;

// Each in turn, so that they meet the same machine. What the form takes over no rows at all, its widgets, is taken off
// where `withoutRows` is given: beside a small table that is all there is to see.
Figure compare(const QString &name, double goal, const Action &form, const std::function<void(int)> &bare,
               const Action &withoutRows = {})
{
    QVector<double> ours, theirs, none;
    const auto timed = [](const Action &action, int run) {
        std::unique_ptr<RecordForm> opened; // its closing is not measured
        return milliseconds([&] { opened = action(run); });
    };
    for (int run = 0; run < runs; ++run) {
        theirs.append(milliseconds([&] { bare(run); }));
        ours.append(timed(form, run));
        none.append(withoutRows ? timed(withoutRows, run) : 0);
    }
    QString detail =
        QStringLiteral("%1 ms, bare SQL %2 ms").arg(median(ours), 0, 'f', 1).arg(median(theirs), 0, 'f', 1);
    if (withoutRows)
        detail += QStringLiteral(", over none %1 ms").arg(median(none), 0, 'f', 1);
    return {name, (median(ours) - median(none)) / median(theirs), goal, detail};
}

std::unique_ptr<RecordForm> shown(std::unique_ptr<RecordForm> form)
{
    form->resize(1366, 700);
    form->show();
    QApplication::processEvents();
    return form;
}

std::unique_ptr<RecordForm> unfolded(std::unique_ptr<RecordForm> form)
{
    form->findChild<BranchTree *>()->expandAll();
    QApplication::processEvents();
    return form;
}

} // namespace

QVector<Figure> masterFigures()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("master.db"), emptyPath = folder.filePath("empty.db");
    {
        const BareClient empty(emptyPath);
        makeTables();
    }
    const BareClient bare(path);
    makeTables();
    fill();
    useDatabase(emptyPath);
    const auto emptyConnection = gConn; // stays open
    useDatabase(path);

    QVector<Figure> figures;
    const auto departmentRecords = [] { BareClient::run("select * from sys_bmsz order by bmbh collate nocase"); };
    const auto staffRecords = [] {
        BareClient::run("select * from sys_gzry order by zgbh collate nocase");
        BareClient::run("select distinct zhwu from sys_gzry where not zhwu is null");
    };
    const QString tops = "select distinct bmbh,bmmc from sys_bmsz where sjbm='无'",
                  below = "select distinct bmbh,bmmc from sys_bmsz where rtrim(sjbm)=? collate nocase",
                  staff = "select distinct zgbh,name from sys_gzry where rtrim(bmbh)=? collate nocase";
    const auto firstLevel = [&] {
        BareClient::run("select count(*) from sys_bmsz");
        return BareClient::rows(tops);
    };
    figures.append(compare(
        "open the departments form over 2,000 departments, more than over none / bare SQL", 1.5,
        [](int) { return shown(std::make_unique<RecordForm>(sys_bmsz())); },
        [&](int) {
            departmentRecords();
            firstLevel();
            BareClient::run(tops); // the box above the tree
        },
        [&](int) {
            useDatabase(emptyPath);
            auto form = shown(std::make_unique<RecordForm>(sys_bmsz()));
            useDatabase(path);
            return form;
        }));
    figures.append(compare(
        "open the departments form and unfold its whole tree / bare SQL", 1.5,
        [](int) { return unfolded(shown(std::make_unique<RecordForm>(sys_bmsz()))); },
        [&](int) {
            departmentRecords();
            BareClient::run(tops);
            for (const QVariantList &top : firstLevel())
                BareClient::run(below, {top[1]});
        }));
    figures.append(compare(
        "open the staff form over 20,000 people / bare SQL", 1.5,
        [](int) { return shown(std::make_unique<RecordForm>(sys_gzry())); },
        [&](int) {
            staffRecords();
            firstLevel();
        }));
    figures.append(compare(
        "open the staff form and unfold its whole tree / bare SQL", 1.5,
        [](int) { return unfolded(shown(std::make_unique<RecordForm>(sys_gzry()))); },
        [&](int) {
            staffRecords();
            for (const QVariantList &top : firstLevel()) {
                BareClient::run(staff, {top[0]});
                for (const QVariantList &department : BareClient::rows(below, {top[1]}))
                    BareClient::run(staff, {department[0]});
            }
        }));
    const QString prices = "select * from yy_bzdj_b where rtrim(cpbh) = ? collate nocase";
    figures.append(compare(
        "open the products form over 50,000 products, 500,000 prices / bare SQL", 1.5,
        [](int) { return shown(std::make_unique<RecordForm>(yy_cpbj())); },
        [&](int) {
            BareClient::run("select distinct cplb from yy_bzdj");
            BareClient::run("select distinct jldw from sys_jldw where not jldw is null");
            BareClient::run("select * from yy_bzdj order by cpbh collate nocase,cpmc collate nocase");
            BareClient::run(prices, {"NB-00000"});
        }));

    const auto form = shown(std::make_unique<RecordForm>(yy_cpbj()));
    auto *filter = form->findChild<QLineEdit *>("Text1");
    const struct {
        const char *what;
        QStringList typed; // in turn
    } keystrokes[] = {{"that leaves most", {"N", "-"}}, {"that leaves a few", {"4917", "2350"}}};
    for (const auto &keystroke : keystrokes)
        figures.append(compare(
            QStringLiteral("one keystroke in the products' filter %1 / bare SQL").arg(keystroke.what), 1.5,
            [&](int run) {
                filter->setText(keystroke.typed[run % 2]);
                QApplication::processEvents();
                return nullptr;
            },
            [&](int run) {
                BareClient::run("select * from yy_bzdj where cpbh like ? order by cpbh collate nocase,"
                                "cpmc collate nocase",
                                {"%" + keystroke.typed[run % 2] + "%"});
                BareClient::run(prices, {"NB-00000"});
            }));

    const auto list = shown(std::make_unique<RecordForm>(YY_WXHT()));
    QHeaderView *head = list->findChild<Grid *>("TDBGrid3")->horizontalHeader();
    figures.append(compare(
        "sort the list of 100,000 contracts by pinyin / bare SQL, sorted by code points", 2,
        [&](int run) {
            head->setSortIndicator(1, run % 2 ? Qt::DescendingOrder : Qt::AscendingOrder);
            QApplication::processEvents();
            return nullptr;
        },
        [](int) { BareClient::run("select htbh,khmc from yy_gw_wxht_h order by khmc collate nocase"); }));
    return figures;
}

} // namespace tradewick
