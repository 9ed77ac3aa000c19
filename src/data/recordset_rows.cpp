#include "data/recordset_rows.h"

#include "data/collation.h"
#include "data/date_text.h"
#include "data/dialect.h"
#include "data/number_of.h"
#include "data/sql_error.h"

#include <algorithm>

namespace tradewick
{

namespace
{

// Rows read around the one that is looked at, and how many are kept.
constexpr int rowsAtOnce = 64;
constexpr int rowsKept = 1024;

// A value as its column stores it. Throws DataError, which names the column, for a text that is no number or date where
// the column takes one.
QVariant stored(const QVariant &value, ColumnKind kind, const QString &column)
{
    if (value.isNull())
        return {};
    const bool isText = value.typeId() == QMetaType::QString;
    const QString text = value.toString();
    switch (kind) {
    case ColumnKind::Number: {
        if (!isText)
            return value;
        if (text.trimmed().isEmpty())
            return {};
        if (const std::optional<double> number = numberOf(text))
            return *number;
        throw refused(Refusal::NotANumber, column);
    }
    case ColumnKind::Date: {
        if (isText && text.trimmed().isEmpty())
            return {};
        if (isText && !dateFromText(text).isValid())
            throw refused(Refusal::NotANumber, column);
        return dateText(value);
    }
    case ColumnKind::Flag:
        return (isText ? text.trimmed().compare("true", Qt::CaseInsensitive) == 0 : value.toBool()) ? 1 : 0;
    default:
        return value;
    }
}

} // namespace

void RecordsetRows::examine(Connection &connection)
{
    table = plainTableOf(m_statement);
    if (table.isEmpty() || !connection.isBaseTable(table)) {
        table.clear();
        return;
    }
    identity = connection.identityColumn();
    if (identity.isEmpty())
        return;
    const ColumnKinds kindsOfTable = connection.kindsOf(table);
    columns = connection.columnsOf(table);
    for (const QString &column : std::as_const(columns))
        kinds.append(kindsOfTable.value(column));
    uniqueColumn = static_cast<int>(columns.indexOf(connection.uniqueColumnOf(table)));
    if (m_values.isEmpty() || !connection.dialect().canBreak)
        return;
    QString whole = m_statement;
    whole.replace(whole.indexOf(u'*'), 1, ' ' + identity + ", " + table + ".* ");
    m_few = connection.bound(whole, m_values);
    m_few.text += QStringLiteral(" limit %1").arg(rowsAtOnce + 1);
    if (!m_few.order.isEmpty()) // the client orders, and has to have all first
        m_few = {};
}

void RecordsetRows::read(Connection &connection, const QString &statement, const Values &values,
                         const RecordsetRows &before)
{
    m_statement = statement;
    m_values = values;
    if (!before.identity.isEmpty() && before.identity == connection.identityColumn() &&
        before.m_statement == m_statement && before.m_values == m_values) {
        table = before.table;
        identity = before.identity;
        uniqueColumn = before.uniqueColumn;
        columns = before.columns;
        kinds = before.kinds;
        m_few = before.m_few;
    } else {
        examine(connection);
    }
    if (!identity.isEmpty()) {
        if (readFew(connection))
            return;
        QString identities = m_statement;
        identities.replace(identities.indexOf(u'*'), 1, u' ' + identity + u' ');
        connection.readKeys(connection.bound(identities, m_values), keys);
        if (!m_values.isEmpty() && !keys.isEmpty() && keys.size() <= rowsAtOnce)
            fetchAround(connection, 0);
        return;
    }
    const QString source = table.isEmpty() ? plainTableOf(m_statement) : table; // a view has kinds, too
    const ColumnKinds kindsOfTable = source.isEmpty() ? ColumnKinds() : connection.kindsOf(source);
    connection.read(
        m_statement, m_values,
        [&](const QStringList &names) {
            for (const QString &name : names) {
                columns.append(name.toLower());
                kinds.append(kindsOfTable.value(name.toLower(), ColumnKind::Unknown));
            }
        },
        [&](const QVariantList &row) {
            keys.append(nextTemporaryKey);
            rows.insert(nextTemporaryKey--, row);
            return true;
        });
    if (!table.isEmpty())
        uniqueColumn = static_cast<int>(columns.indexOf(connection.uniqueColumnOf(table)));
}

// The lines of a document and what a filter leaves are few: identities and rows come together, in one way to the server
// and back. When there are more, what was read is the first page, and gives false. A file is no way off, and asked
// twice it would look through a large table twice.
bool RecordsetRows::readFew(Connection &connection)
{
    if (m_few.text.isEmpty())
        return false;
    QVector<qint64> found;
    connection.readBound(m_few, columns.size() + 1, [&](const QVariantList &line) {
        found.append(line.first().toLongLong());
        rows.insert(found.last(), line.mid(1));
        return true;
    });
    if (found.size() > rowsAtOnce)
        return false;
    keys = found;
    return true;
}

BoundStatement RecordsetRows::selectRows() const
{
    return {"select " + table + "." + identity + ", " + table + ".* from " + table + " where " + identity, {}};
}

void RecordsetRows::fetchAround(Connection &connection, int row)
{
    const int first = row / rowsAtOnce * rowsAtOnce;
    const int last = std::min<int>(first + rowsAtOnce, static_cast<int>(keys.size()));
    BoundStatement select = selectRows();
    select.text += " in (";
    if (rows.size() > rowsKept) {
        for (auto read = rows.cbegin(); uniqueColumn >= 0 && read != rows.cend(); ++read)
            letGo.insert(read.key(), (*read)[uniqueColumn]);
        rows.clear();
        asWritten.clear();
    }
    for (int i = first; i < last; ++i) {
        if (keys[i] < 0 || rows.contains(keys[i])) // those read already stand as they were read
            continue;
        select.text += select.parameters.isEmpty() ? "?" : ",?";
        select.parameters.append(keys[i]);
    }
    select.text += ")";
    connection.readBound(select, columns.size() + 1, [&](const QVariantList &line) {
        const QVariantList values = line.mid(1);
        if (isRecord(letGo.value(line[0].toLongLong()), values))
            rows.insert(line[0].toLongLong(), values);
        return true;
    });
    // A row that someone deleted meanwhile stands empty until the next refresh.
    for (int i = first; i < last; ++i)
        if (keys[i] >= 0 && !rows.contains(keys[i]))
            rows.insert(keys[i], QVariantList(columns.size()));
}

QVariant RecordsetRows::knownKey(const Connection &connection, qint64 key) const
{
    if (uniqueColumn < 0)
        return {};
    if (const auto waiting = pending.constFind(key); waiting != pending.constEnd())
        return (isSent(connection, *waiting) ? waiting->written
                : waiting->isNew             ? waiting->values
                                             : waiting->original)[uniqueColumn];
    const auto read = rows.constFind(key);
    return read == rows.constEnd() ? letGo.value(key) : (*read)[uniqueColumn];
}

// An identity that was given away again belongs to another record, which has another key.
bool RecordsetRows::isRecord(const QVariant &knownKey, const QVariantList &row) const
{
    return uniqueColumn < 0 || knownKey.isNull() ||
           compareFolded(foldedForOrder(knownKey.toString()), foldedForOrder(row[uniqueColumn].toString())) == 0;
}

// Without an identity a row is found by its key as it was read.
QVariantList RecordsetRows::now(Connection &connection, qint64 key, bool hold) const
{
    const Dialect &dialect = connection.dialect();
    const QVariant known = knownKey(connection, key);
    BoundStatement select;
    if (!identity.isEmpty() && key >= 0) {
        select = selectRows();
        select.text += QLatin1String(" = ?") + QLatin1String(hold ? dialect.holdRow : "");
        select.parameters = {key};
    } else if (identity.isEmpty() && uniqueColumn >= 0) {
        select = {"select * from " + table + QLatin1String(hold ? dialect.holdTable : "") + " where " +
                      columns[uniqueColumn] + " = ?",
                  {known}};
    } else {
        return {};
    }
    QVariantList found;
    const int before = identity.isEmpty() ? 0 : 1;
    connection.readBound(select, columns.size() + before, [&](const QVariantList &line) {
        found = line.mid(before);
        return true;
    });
    return found.isEmpty() || isRecord(known, found) ? found : QVariantList();
}

const QVariantList &RecordsetRows::row(Connection &connection, int at)
{
    const qint64 key = keys[at];
    if (const auto found = pending.constFind(key); found != pending.constEnd())
        return found->values;
    if (!rows.contains(key))
        fetchAround(connection, at);
    return *rows.constFind(key); // the rows may be shared with a state
}

const QVariantList &RecordsetRows::rowAsRead(Connection &connection, int at)
{
    const qint64 key = keys[at];
    if (asWritten.remove(key))
        if (const QVariantList found = now(connection, key); !found.isEmpty())
            rows.insert(key, found);
    return row(connection, at);
}

bool RecordsetRows::holdsRowsOf(const RecordsetRows &other) const
{
    return !identity.isEmpty() && table == other.table && columns == other.columns && kinds == other.kinds &&
           keys == other.keys && other.pending.isEmpty() && std::all_of(keys.cbegin(), keys.cend(), [&](qint64 key) {
               return rows.contains(key) && other.rows.contains(key);
           });
}

QVariantList RecordsetRows::columnValues(Connection &connection, int column)
{
    QHash<qint64, QVariant> read;
    const bool large = !identity.isEmpty() && keys.size() > rowsKept;
    if (large)
        connection.readBound({"select " + identity + ", " + columns[column] + " from " + table, {}}, 2,
                             [&read](const QVariantList &line) {
                                 read.insert(line[0].toLongLong(), line[1]);
                                 return true;
                             });
    QVariantList values;
    values.reserve(keys.size());
    for (int at = 0; at < keys.size(); ++at)
        values.append(large && !pending.contains(keys[at]) ? read.value(keys[at]) : row(connection, at).value(column));
    return values;
}

RecordsetRows::Pending &RecordsetRows::pendingRow(Connection &connection, int at)
{
    const qint64 key = keys[at];
    if (!pending.contains(key)) {
        const QVariantList asRead = rowAsRead(connection, at);
        pending.insert(key, {asRead, asRead, false});
    }
    return pending[key];
}

QVector<int> RecordsetRows::waiting() const
{
    QVector<int> positions;
    for (auto at = static_cast<int>(keys.size()) - 1; at >= 0 && positions.size() < pending.size(); --at)
        if (pending.contains(keys[at]))
            positions.append(at);
    std::reverse(positions.begin(), positions.end());
    return positions;
}

QVariantList RecordsetRows::storedForm(const Pending &row) const
{
    QVariantList form;
    form.reserve(columns.size());
    for (int i = 0; i < columns.size(); ++i) {
        const QVariant &value = row.values[i];
        const bool isUntouched =
            !row.isNew && value.isValid() && value.typeId() == row.original[i].typeId() && value == row.original[i];
        form.append(isUntouched ? value : stored(value, kinds[i], columns[i]));
    }
    return form;
}

bool RecordsetRows::looksAlike(const QVariantList &one, const QVariantList &other) const
{
    for (int i = 0; i < columns.size(); ++i) { // Qt finds the text "07.50" equal to the number
        const bool isSame = one[i].typeId() == other[i].typeId() && one[i] == other[i];
        if (!isSame && Recordset::text(one[i], kinds[i]) != Recordset::text(other[i], kinds[i]))
            return false;
    }
    return true;
}

qint64 RecordsetRows::insert(Connection &connection, const Pending &row) const
{
    QString names, marks;
    QVariantList parameters;
    parameters.reserve(columns.size());
    for (int i = 0; i < columns.size(); ++i) {
        if (row.values[i].isNull())
            continue;
        if (!parameters.isEmpty()) {
            names += u',';
            marks += u',';
        }
        names += columns[i];
        marks += u'?';
        parameters.append(row.written[i]);
    }
    return connection.insertBound({"insert into " + table +
                                       (names.isEmpty() ? QString(QLatin1String(connection.dialect().emptyRow))
                                                        : "(" + names + ") values(" + marks + ")"),
                                   parameters});
}

// The row as it was read, whole: what another desktop changed in it no longer fits. To the letter, the case and the
// blanks of texts too, which comparisons pass over otherwise.
void RecordsetRows::appendWhere(const Connection &connection, BoundStatement &statement, qint64 key,
                                const QVariantList &original) const
{
    const char *word = " where ";
    if (!identity.isEmpty()) {
        statement.text += word + identity + " = ?";
        statement.parameters.append(key);
        word = " and ";
    }
    for (int i = 0; i < columns.size(); ++i) {
        statement.text += word;
        word = " and ";
        if (original[i].isNull()) {
            statement.text += columns[i] + " is null";
            continue;
        }
        const char *exact = kinds[i] == ColumnKind::Text ? connection.dialect().exactText : "%1 = ?";
        statement.text += QString(QLatin1String(exact)).arg(columns[i]);
        statement.parameters.append(original[i]);
    }
}

// Gives whether the row was there as it was read. Without an identity, twins are told apart by nothing: one of them
// is as good as the other.
bool RecordsetRows::changeOneRow(Connection &connection, const QString &verb, const QString &rest,
                                 const QVariantList &parameters, qint64 key, const QVariantList &original) const
{
    BoundStatement statement{verb + QLatin1String(connection.dialect().oneRow) + u' ' + rest, parameters};
    appendWhere(connection, statement, key, original);
    return connection.executeBound(statement) > 0;
}

bool RecordsetRows::isSent(const Connection &connection, const Pending &row) const
{
    return row.sentIn != 0 && row.sentIn == connection.runningTransaction();
}

bool RecordsetRows::store(Connection &connection, Recordset *set, qint64 key)
{
    Pending &row = pending[key];
    bool isThere = false;
    const QVariantList form = storedForm(row);
    if (!isSent(connection, row)) {
        row.written = form;
        row.storedKey = key;
        if (row.isNew)
            isThere = storeNew(connection, key);
        else
            storeChanged(connection, set, key, row.original);
    } else if (form != row.written) {
        const QVariantList standing = now(connection, row.storedKey);
        row.written = form;
        storeChanged(connection, set, key, standing);
    }
    row.sent = row.values;
    row.sentIn = connection.runningTransaction();
    return !isThere;
}

bool RecordsetRows::storeNew(Connection &connection, qint64 key)
{
    Pending &row = pending[key];
    // The save before this one may have been stored although no answer came.
    if (row.attempted && now(connection, row.attempted) == row.written) {
        row.storedKey = row.attempted;
        return true;
    }
    const qint64 written = insert(connection, row);
    row.storedKey = identity.isEmpty() ? key : written;
    if (connection.dialect().canBreak)
        row.attempted = row.storedKey;
    return false;
}

void RecordsetRows::storeChanged(Connection &connection, Recordset *set, qint64 key, const QVariantList &original)
{
    const Pending &row = pending[key];
    const QVariantList &typed = row.written;
    QString assignments;
    QVariantList parameters;
    for (int i = 0; i < typed.size(); ++i) {
        if (typed[i] == original[i] && typed[i].isNull() == original[i].isNull())
            continue;
        assignments += (parameters.isEmpty() ? QString() : QString(", ")) + columns[i] + " = ?";
        parameters.append(typed[i]);
    }
    if (parameters.isEmpty() ||
        changeOneRow(connection, "update", table + " set " + assignments, parameters, row.storedKey, original))
        return;
    const Conflict conflict{columns, kinds, original, now(connection, row.storedKey), row.values, set, key};
    // What both typed alike, or what was stored when the link broke, stands there already.
    if (conflict.now != typed)
        throw ConflictError(conflict);
}

void RecordsetRows::remove(Connection &connection, Recordset *set, int at)
{
    const qint64 key = keys[at];
    const auto waiting = pending.constFind(key);
    const bool isPending = waiting != pending.constEnd();
    const bool wasSent = isPending && isSent(connection, *waiting);
    if (isPending && waiting->isNew && !wasSent)
        return;
    if (table.isEmpty())
        throw DataError(3251, QStringLiteral("该记录集不能修改"));
    const qint64 storedKey = wasSent ? waiting->storedKey : key;
    const QVariantList asRead = wasSent     ? now(connection, storedKey)
                                : isPending ? waiting->original
                                            : rowAsRead(connection, at);
    if (changeOneRow(connection, "delete", "from " + table, {}, storedKey, asRead))
        return;
    const Conflict conflict{columns, kinds, asRead, now(connection, storedKey), {}, set, key};
    if (!conflict.now.isEmpty()) // another desktop's deletion is what was wanted
        throw ConflictError(conflict);
}

} // namespace tradewick
