// Query screens over 100,000 contracts with 1,000,000 lines and as many products with 400,000 prices: opening and a
// find with two criteria beside the bare statements, whose rows the driver reads; the first page of a long statistic.
#include "common/globals.h"
#include "common/query_screen.h"
#include "figures.h"
#include "form_bench.h"
#include "papers/papers.h"
#include "queries/queries.h"
#include "reporting/layout.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDateEdit>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <stdexcept>

namespace tradewick
{

namespace
{

constexpr int contracts = 100000, linesOfContract = 10, products = 100000, pricesOfProduct = 4, runs = 5,
              rowsOfStatistic = 20000;
const QStringList places{QStringLiteral("宁波"), QStringLiteral("杭州"), QStringLiteral("上海"), QStringLiteral("温州"),
                         QStringLiteral("义乌")};

void fillTables()
{
    constexpr int atOnce = 200;
    gConn->transaction([] {
        for (int first = 0; first < contracts; first += atOnce) {
            QVector<QVariantList> heads, lines, goods, prices;
            for (int i = first; i < first + atOnce; ++i) {
                const QString number = QString("%1").arg(i, 7, 10, QChar('0')),
                              day = QDate(2020, 1, 1).addDays(i % 2000).toString(Qt::ISODate);
                const QString company = places[i % 5] + QStringLiteral("东方进出口有限公司"),
                              customer = QStringLiteral("CUSTOMER %1 GMBH").arg(i % 300);
                heads.append({"X" + number, company, customer, day, day, day, "USD", 7.1, QString(60, u'框')});
                goods.append(
                    {"P" + number, QStringLiteral("框%1").arg(i % 900), places[i % 3], "PCS", QString(40, u'木')});
                for (int line = 0; line < linesOfContract; ++line)
                    lines.append({"X" + number, "P" + number, QStringLiteral("框"), "10X12CM", 5, 2.5, 12.5, "PCS"});
                for (int price = 0; price < pricesOfProduct; ++price)
                    prices.append({"P" + number, "S" + QString::number(price), company, price + 0.5, "RMB"});
            }
            insertRows(*gConn, "yy_gw_wxht_h(htbh,gsmc,khmc,djrq,yxqsrq,yxjzrq,bizh,hl,qttk)", heads);
            insertRows(*gConn, "yy_gw_wxht_b(htbh,cpbh,cpmc,gg,sl,dj,je,dw)", lines);
            insertRows(*gConn, "yy_bzdj(cpbh,cpmc,cplb,dw,cpgg)", goods);
            insertRows(*gConn, "yy_bzdj_b(cpbh,gysbh,gys_mc,gys_dj,gys_bizh)", prices);
        }
    });
}

// Gives the number of rows of the first.
int readBare(const QString &path, const QStringList &statements)
{
    int first = -1;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "bare");
        database.setDatabaseName(path);
        database.open();
        for (const QString &statement : statements) {
            QSqlQuery query(database);
            query.setForwardOnly(true);
            query.exec(statement);
            int rows = 0;
            while (query.next())
                ++rows;
            first = first < 0 ? rows : first;
        }
    }
    QSqlDatabase::removeDatabase("bare");
    return first;
}

Figure beside(const QString &name, const QString &path, const QStringList &statements,
              const std::function<int()> &action)
{
    QVector<double> bare, ours;
    int rows = 0;
    for (int i = 0; i < runs; ++i) {
        bare.append(milliseconds([&] { rows = readBare(path, statements); }));
        ours.append(milliseconds([&] {
            if (action() != rows)
                throw std::runtime_error("other rows than those of the statement");
        }));
    }
    return {name + " / the bare statements", median(ours) / median(bare), 1.5,
            QStringLiteral("%1 ms, statements %2 ms, %3 rows")
                .arg(median(ours), 0, 'f', 0)
                .arg(median(bare), 0, 'f', 0)
                .arg(rows)};
}

std::unique_ptr<QueryScreen> opened(const QuerySpec &spec)
{
    auto screen = std::make_unique<QueryScreen>(spec);
    screen->resize(1366, 700);
    screen->show();
    QApplication::processEvents();
    return screen;
}

Figure opening(const QString &name, const QuerySpec &spec, const QString &path)
{
    QStringList statements{QString::fromUtf8(spec.lists.first().all)};
    for (const Criterion &one : spec.criteria)
        statements.append(QString::fromUtf8(one.offers));
    return beside("open the " + name, path, statements, [&spec] { return opened(spec)->records().RecordCount(); });
}

// texts: of two boxes.
Figure find(const QString &name, const QuerySpec &spec, const Values &texts, const QString &path)
{
    const auto screen = opened(spec);
    Values values = texts;
    if (!spec.dates.isEmpty()) {
        screen->findChild<QDateEdit *>(fromDate)->setDate(QDate(2020, 6, 1));
        screen->findChild<QDateEdit *>(toDate)->setDate(QDate(2024, 6, 1));
        values.insert({{fromDate, "2020-06-01"}, {toDate, "2024-06-01"}});
    }
    for (auto text = texts.cbegin(); text != texts.cend(); ++text)
        screen->findChild<QComboBox *>(text.key())->setEditText(text->toString());
    QString statement = findStatement(spec.lists.first(), fragmentsOf(spec.criteria, values), false);
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        statement.replace(u'{' + value.key() + u'}', value->toString());
    return beside("find two criteria among " + name, path, {statement}, [&screen] {
        screen->findChild<QAbstractButton *>("CmdFIND")->click();
        QApplication::processEvents();
        return screen->records().RecordCount();
    });
}

Figure firstPage(const QString &path)
{
    const Values days{{fromDate, "2020-01-01"}, {toDate, "2020-02-09"}}; // forty days of fifty contracts
    const auto fillReport = [&days] {
        return fill(document(QStringLiteral("外销合同统计表（按签约公司）")), *gConn, Criteria{days});
    };
    QString statement = fillReport().report->DataControl1.Source;
    for (auto day = days.cbegin(); day != days.cend(); ++day)
        statement.replace(u'{' + day.key() + u'}', day->toString());
    return beside("first page of a statistic of 20,000 rows", path, {statement},
                  [&] { return fillReport().report->layout()->next() ? rowsOfStatistic : 0; });
}

} // namespace

QVector<Figure> queryFigures()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("queries.db");
    makeTables(path);
    useDatabase(path);
    fillTables();
    return {opening("contracts", YY_WXHt_cxTjB(), path),
            find("contracts", YY_WXHt_cxTjB(), {{"Combo2", "宁波"}, {"Combo3", "customer 1"}}, path),
            opening("products", YY_spZl_CXTjB(), path),
            find("products", YY_spZl_CXTjB(), {{"Combo2", "框1"}, {"Combo5", "宁波"}}, path), firstPage(path)};
}

} // namespace tradewick
