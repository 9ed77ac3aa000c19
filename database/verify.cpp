#include "database/verify.h"

#include "data/row_cursor.h"
#include "database/description.h"
#include "database/relations.h"
#include "database/source.h"

#include <QTextStream>

#include <algorithm>
#include <tuple>

namespace tradewick
{

namespace
{

// Numbers that only the forms keep apart; the database takes twins of them.
constexpr struct {
    const char *table, *column;
} looseKeys[] = {{"qb_pass", "name"},
                 {"cy_pcd_rpt", "pcdh"},
                 {"cy_dcd_djb_h", "cw_dcdh"},
                 {"cy_hytd_djb_h", "cw_tdhm"},
                 {"cy_hxd_gsly", "hxdh"}};

class Verification
{
public:
    Verification(Connection &connection, QTextStream &out) : m_connection(connection), m_out(out) {}

    bool run()
    {
        if (m_connection.engine() == Engine::Sqlite)
            fileDamage();
        missingParts();
        if (m_findings > 0)
            return false; // what is missing cannot be read
        if (m_connection.engine() == Engine::MariaDb)
            foreignColumns();
        for (const Relation &relation : relations())
            missingRows(relation);
        for (const TableDescription &table : tableDescriptions()) {
            if (!table.unique.isEmpty())
                twins(table.name, table.unique);
            wrongValues(table);
        }
        for (const auto &key : looseKeys)
            twins(QString::fromLatin1(key.table), QString::fromLatin1(key.column));
        lots();
        return m_findings == 0;
    }

private:
    void tell(const QString &finding)
    {
        ++m_findings;
        m_out << finding << '\n';
    }

    void read(const QString &statement, const std::function<void(const QVariantList &)> &row)
    {
        const auto rows = m_connection.cursorBound({statement, {}});
        rows->readAll(rows->columns().size(), [&row](const QVariantList &values) {
            row(values);
            return true;
        });
    }

    void fileDamage()
    {
        read(QStringLiteral("pragma integrity_check"), [this](const QVariantList &row) {
            // Values against a rule are told row by row.
            const QString fault = row.first().toString();
            if (fault != u"ok" && !fault.startsWith(QLatin1String("CHECK constraint failed")))
                tell("file: " + fault);
        });
    }

    void missingParts()
    {
        for (const Part &part : partsOf(m_connection))
            if (!part.isPresent)
                tell(part.name + ": missing");
    }

    // Tables that were not made by this program's own script: they may refuse Chinese, or keep no transactions.
    void foreignColumns()
    {
        QStringList tables;
        for (const TableDescription &table : tableDescriptions()) {
            tables.append(table.name);
            const ColumnKinds kinds = m_connection.kindsOf(table.name);
            for (const ColumnDescription &column : table.columns)
                if (kinds[column.name] != column.kind)
                    tell(QStringLiteral("column %1.%2: its type is another").arg(table.name, column.name));
        }
        read(QStringLiteral("select table_name, engine, table_collation from information_schema.tables"
                            " where table_schema = database() and table_type = 'BASE TABLE'"
                            " and (engine <> 'InnoDB' or table_collation <> 'utf8mb4_uca1400_as_ci')"),
             [&](const QVariantList &row) {
                 if (tables.contains(row[0].toString().toLower()))
                     tell(QStringLiteral("table %1: it is of %2 and %3")
                              .arg(row[0].toString(), row[1].toString(), row[2].toString()));
             });
    }

    void missingRows(const Relation &relation)
    {
        for (const Row &row : m_connection.rows(relation.missing))
            tell(QStringLiteral("%1: no row of %2 for %3 row(s) of %4 %5")
                     .arg(relation.table, relation.other, row["n"].toString(), relation.column, shown(row["number"])));
    }

    // A blank stands for no number yet.
    void twins(const QString &table, const QString &key)
    {
        // Case beyond ASCII, too, makes no other number.
        const QString same = m_connection.engine() == Engine::Sqlite ? key + " collate tradewick" : key;
        read(
            QStringLiteral("select min(%1), count(*) from %2 where %1 <> '' group by %3 having count(*) > 1 order by 1")
                .arg(key, table, same),
            [&](const QVariantList &row) {
                tell(QStringLiteral("%1: %2 rows of %3 %4").arg(table, row[1].toString(), key, shown(row[0])));
            });
    }

    // SQL text that is true where the column holds what its kind does not allow.
    QString wrong(const ColumnDescription &column) const
    {
        const bool isFile = m_connection.engine() == Engine::Sqlite;
        switch (column.kind) {
        case ColumnKind::Number:
            return isFile ? QStringLiteral("not (%1) or %2 in (9e999, -9e999)").arg(sqliteRule(column), column.name)
                          : QString();
        case ColumnKind::Date:
            return isFile ? "not (" + sqliteRule(column) + u')'
                          : QStringLiteral("day(%1) = 0 or month(%1) = 0").arg(column.name);
        case ColumnKind::Flag:
            return column.name + " not in (0, 1)";
        default:
            return isFile ? QStringLiteral("typeof(%1) = 'blob'").arg(column.name) : QString();
        }
    }

    // All columns of a table in one go.
    void wrongValues(const TableDescription &table)
    {
        QStringList names, shownColumns, conditions;
        for (const ColumnDescription &column : table.columns) {
            const QString condition = wrong(column);
            if (condition.isEmpty())
                continue;
            names.append(column.name);
            conditions.append(condition);
            shownColumns.append(QStringLiteral("%1, %2").arg(condition, column.name));
        }
        if (conditions.isEmpty())
            return;
        read(QStringLiteral("select %1, %2 from %3 where %4 order by %1")
                 .arg(m_connection.identityColumn(), shownColumns.join(QStringLiteral(", ")), table.name,
                      conditions.join(QStringLiteral(" or "))),
             [&](const QVariantList &row) {
                 for (qsizetype i = 0; i < names.size(); ++i)
                     if (row[2 * i + 1].toBool())
                         tell(QStringLiteral("%1: row %2 has %3 in %4")
                                  .arg(table.name, row[0].toString(), shown(row[2 * i + 2]), names[i]));
             });
    }

    // A verification number: three characters of a series, six digits of a sequence.
    struct Form {
        QString series;
        int sequence = 0;
        explicit Form(const QVariant &number)
        {
            const QString text = number.toString().trimmed();
            series = text.left(3).toCaseFolded();
            for (const QChar c : text.right(6)) {
                if (c < u'0' || c > u'9')
                    break;
                sequence = sequence * 10 + c.digitValue();
            }
        }
    };

    struct Range {
        QString name;
        Form first, last;
        Range(const QVariant &start, const QVariant &end)
            : name(start.toString() + QStringLiteral(" to ") + end.toString()), first(start), last(end)
        {
        }
        bool isSeries() const { return !first.series.isEmpty() && first.series == last.series; }
        // How many numbers both have in common; over two series nothing counts.
        int common(const Range &other) const
        {
            if (!isSeries() || !other.isSeries() || first.series != other.first.series)
                return 0;
            return std::max(0, std::min(last.sequence, other.last.sequence) -
                                   std::max(first.sequence, other.first.sequence) + 1);
        }
    };

    struct Lot {
        Range range;
        double forms, used, left, returned; // as the counters say
        int issued = 0, back = 0;           // as the rows say
        bool counts() const { return range.isSeries() && range.last.sequence > range.first.sequence; }
    };

    void lots()
    {
        QVector<Lot> lots;
        read(QStringLiteral("select start, endh, gl_fenshu, yy_fenshu, sy_fenshu, hs_fenshu from cy_hxd_wgj_ld"
                            " order by 1, 2"),
             [&lots](const QVariantList &row) {
                 lots.append({Range(row[0], row[1]), row[2].toDouble(), row[3].toDouble(), row[4].toDouble(),
                              row[5].toDouble()});
             });
        QVector<Range> issues;
        read(QStringLiteral("select hxdh_st, hxdh_en from cy_hxd_gshs order by 1, 2"),
             [&issues](const QVariantList &row) { issues.append(Range(row[0], row[1])); });
        for (const Range &issue : std::as_const(issues))
            for (Lot &lot : lots)
                lot.issued += lot.range.common(issue);
        read(QStringLiteral("select hxdh from cy_hxd_gsly"), [&lots](const QVariantList &row) {
            const Range form(row[0], row[0]);
            for (Lot &lot : lots)
                lot.back += lot.range.common(form);
        });
        counters(lots);
        issuedTwice(issues);
    }

    void counters(const QVector<Lot> &lots)
    {
        for (const Lot &lot : lots) {
            const auto compare = [&](const char *counter, double says, double is, const char *source) {
                if (says != is)
                    tell(QStringLiteral("cy_hxd_wgj_ld: lot %1 has %2 %3, %4 is %5")
                             .arg(lot.range.name, counter)
                             .arg(says)
                             .arg(source)
                             .arg(is));
            };
            compare("sy_fenshu", lot.left, lot.forms - lot.used, "gl_fenshu less yy_fenshu");
            if (!lot.counts())
                continue; // nothing is counted over two series
            compare("gl_fenshu", lot.forms, lot.range.common(lot.range), "the range");
            compare("yy_fenshu", lot.used, lot.issued, "the number issued by cy_hxd_gshs");
            compare("hs_fenshu", lot.returned, lot.back, "the number returned by cy_hxd_gsly");
        }
    }

    // Two desktops may issue one range at once: each looks for others before either is stored.
    void issuedTwice(QVector<Range> issues)
    {
        std::stable_sort(issues.begin(), issues.end(), [](const Range &a, const Range &b) {
            return std::tie(a.first.series, a.first.sequence) < std::tie(b.first.series, b.first.sequence);
        });
        const Range *widest = nullptr; // of those that begin before
        for (const Range &issue : std::as_const(issues)) {
            if (!issue.isSeries())
                continue;
            const int twice = widest ? widest->common(issue) : 0;
            if (twice > 0)
                tell(QStringLiteral("cy_hxd_gshs: %1 and %2 issue %3 number(s) twice")
                         .arg(widest->name, issue.name)
                         .arg(twice));
            if (!widest || widest->first.series != issue.first.series || issue.last.sequence > widest->last.sequence)
                widest = &issue;
        }
    }

    static QString shown(const QVariant &value)
    {
        return value.isNull() ? QStringLiteral("Null") : u'"' + value.toString() + u'"';
    }

    Connection &m_connection;
    QTextStream &m_out;
    int m_findings = 0;
};

} // namespace

bool verifyDatabase(const QString &source, QTextStream &out)
{
    Connection connection;
    openSource(connection, source);
    bool isSound = false;
    readSnapshot(connection, [&] { isSound = Verification(connection, out).run(); });
    return isSound;
}

} // namespace tradewick
