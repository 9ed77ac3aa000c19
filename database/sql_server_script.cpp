#include "database/sql_server_script.h"

#include "data/date_text.h"

#include <QFile>
#include <QLocale>
#include <QSaveFile>
#include <QStringList>

#include <cmath>

namespace tradewick
{

namespace
{

// The shell takes a line of "GO" or ":quit" for its own and "$(name)" for a variable, in the middle of a text too.
// So no line ends inside of quotes, and no dollar sign stands before a parenthesis.
QString textLiteral(const QString &text)
{
    QStringList parts;
    QString quoted;
    const auto end = [&] {
        if (!quoted.isEmpty())
            parts.append("N'" + quoted + u'\'');
        quoted.clear();
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c < u' ') {
            end();
            parts.append(QStringLiteral("NCHAR(%1)").arg(c.unicode()));
        } else {
            if (c == u'(' && quoted.endsWith(u'$'))
                end();
            quoted += c;
            if (c == u'\'')
                quoted += c;
        }
    }
    end();
    if (parts.isEmpty())
        return QStringLiteral("N''");
    // What is put together of short parts would be cut at 4,000 characters.
    if (parts.size() > 1)
        parts.prepend(QStringLiteral("CAST(N'' AS nvarchar(max))"));
    return parts.join(QStringLiteral(" + "));
}

struct UnfitValue {
}; // the column's kind cannot be it

QString literal(const QVariant &value, ColumnKind kind)
{
    if (value.isNull())
        return QStringLiteral("NULL");
    bool readable = true;
    switch (kind) {
    case ColumnKind::Number: {
        // With an exponent it is a float from the start, not a decimal that is rounded once more.
        const double number = value.toDouble(&readable);
        if (!readable || !std::isfinite(number))
            throw UnfitValue();
        return QString::number(number, 'e', QLocale::FloatingPointShortest);
    }
    case ColumnKind::Date: {
        // The only form that means one day in every language of the server.
        const QDate date = dateFromText(value.toString());
        if (!date.isValid())
            throw UnfitValue();
        return date.toString(QStringLiteral("''yyyyMMdd''"));
    }
    case ColumnKind::Flag:
        if (const int flag = value.toInt(&readable); readable && (flag == 0 || flag == 1))
            return QString::number(flag);
        throw UnfitValue();
    default:
        return textLiteral(value.toString());
    }
}

// A statement of the schema that does nothing where its object is there already.
QString ifMissing(const QString &statement)
{
    QStringList words = statement.simplified().split(u' ');
    words.removeOne("UNIQUE");
    const QString kind = words.value(1), name = words.value(2);
    if (kind == u"INDEX")
        return QStringLiteral("IF NOT EXISTS (SELECT * FROM sys.indexes WHERE name = N'%1')\n%2").arg(name, statement);
    // A view's statement has to stand alone.
    return QStringLiteral("IF OBJECT_ID(N'%1') IS NULL\n%2")
        .arg(name, kind == u"VIEW" ? "EXEC(" + textLiteral(statement.simplified()) + u')' : statement);
}

class Script
{
public:
    explicit Script(const QString &name) : m_file(name)
    {
        // Unbuffered, so that each write tells whether it was one.
        if (!m_file.open(QFile::WriteOnly | QFile::Unbuffered) ||
            !m_file.setPermissions(QFile::ReadOwner | QFile::WriteOwner))
            throw CommandError(QStringLiteral("%1 cannot be made: %2").arg(name, m_file.errorString()));
        put("-- sqlcmd -S SERVER -d DATABASE -f 65001 -I -i FILE\n"
            ":on error exit\n");
        batch("SET XACT_ABORT ON\nSET NOCOUNT ON\nSET QUOTED_IDENTIFIER ON");
        batch("BEGIN TRANSACTION");
        for (const QString &statement : ddl(Engine::SqlServer))
            batch(ifMissing(statement));
        for (const TableDescription &table : tableDescriptions())
            require(table.name, 0, "holds rows already");
    }

    void rows(const TableDescription &table, const QVector<ColumnDescription> &columns,
              const QVector<QVariantList> &rows)
    {
        QStringList names, inserts;
        for (const ColumnDescription &column : columns)
            names.append(column.name);
        for (const QVariantList &row : rows) {
            QStringList values;
            for (qsizetype i = 0; i < columns.size(); ++i)
                try {
                    values.append(literal(row[i], columns[i].kind));
                } catch (const UnfitValue &) {
                    throw CommandError(QStringLiteral("table %1: \"%2\" is not what %3 can be")
                                           .arg(table.name, row[i].toString(), columns[i].name));
                }
            inserts.append("INSERT INTO " + table.name + " (" + names.join(QStringLiteral(", ")) + ") VALUES (" +
                           values.join(QStringLiteral(", ")) + ')');
        }
        batch(inserts.join(u'\n'));
    }

    void require(const QString &table, qint64 rows, const char *otherwise)
    {
        batch(QStringLiteral("IF (SELECT COUNT(*) FROM %1) <> %2\n    RAISERROR(N'%1 %3', 16, 1)")
                  .arg(table)
                  .arg(rows)
                  .arg(otherwise));
    }

    void finish()
    {
        batch("COMMIT TRANSACTION");
        if (!m_file.commit())
            fail();
    }

private:
    void batch(const QString &statements) { put(statements + "\nGO\n"); }

    void put(const QString &text)
    {
        const QByteArray bytes = text.toUtf8();
        if (m_file.write(bytes) != bytes.size())
            fail();
    }

    [[noreturn]] void fail()
    {
        throw CommandError(QStringLiteral("%1 cannot be written: %2").arg(m_file.fileName(), m_file.errorString()));
    }

    QSaveFile m_file; // of that name only when all is written
};

} // namespace

QVector<TableCount> writeSqlServerScript(const QString &from, const QString &file)
{
    refuseExisting(file);
    Script script(file);
    QVector<TableCount> written;
    readAllRows(
        from,
        [&script](const auto &table, const auto &columns, const auto &rows) { script.rows(table, columns, rows); },
        [&written](const TableCount &table) { written.append(table); });
    for (const TableCount &table : written)
        script.require(table.table, table.rows, "does not hold all rows");
    script.finish();
    return written;
}

} // namespace tradewick
