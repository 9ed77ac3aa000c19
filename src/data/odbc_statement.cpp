#include "data/odbc_statement.h"

#include "data/date_text.h"
#include "data/sql_error.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>

#include <algorithm>
#include <array>
#include <list>
#include <sql.h>
#include <sqlext.h>

namespace tradewick
{

namespace
{

// Characters of the longest text that SQL Server has a type of known length for.
constexpr qsizetype longestShortText = 4000;

SQLWCHAR *wide(const QString &text)
{
    return const_cast<SQLWCHAR *>(reinterpret_cast<const SQLWCHAR *>(text.utf16()));
}

class OdbcStatement
{
public:
    explicit OdbcStatement(SQLHANDLE connection) : m_connection(connection)
    {
        if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, connection, &m_handle)))
            throw errorOf(diagnostics(SQL_HANDLE_DBC, connection));
    }
    ~OdbcStatement() { SQLFreeHandle(SQL_HANDLE_STMT, m_handle); }
    OdbcStatement(const OdbcStatement &) = delete;
    OdbcStatement &operator=(const OdbcStatement &) = delete;

    OdbcResult run(const BoundStatement &statement)
    {
        SQLWCHAR *text = wide(statement.text);
        const auto size = static_cast<SQLINTEGER>(statement.text.size());
        // What is prepared runs as a procedure, at whose end a "set" is forgotten.
        const bool direct = statement.parameters.isEmpty();
        if (!direct)
            check(SQLPrepareW(m_handle, text, size));
        for (const QVariant &value : statement.parameters)
            bind(value);
        // An update that meets no row gives "no data".
        if (const SQLRETURN code = direct ? SQLExecDirectW(m_handle, text, size) : SQLExecute(m_handle);
            code != SQL_NO_DATA)
            check(code);
        OdbcResult result;
        SQLSMALLINT columns = 0;
        check(SQLNumResultCols(m_handle, &columns));
        if (columns == 0) {
            SQLLEN rows = 0;
            check(SQLRowCount(m_handle, &rows));
            result.changed = rows;
            return result;
        }
        QVector<SQLSMALLINT> types;
        for (SQLUSMALLINT i = 1; i <= columns; ++i)
            types.append(describe(i, result.columns));
        for (;;) {
            const SQLRETURN code = SQLFetch(m_handle);
            if (code == SQL_NO_DATA)
                return result;
            check(code);
            QVariantList row;
            for (SQLUSMALLINT i = 1; i <= columns; ++i)
                row.append(value(i, types[i - 1]));
            result.rows.push_back(std::move(row));
        }
    }

private:
    // A value as long as the driver may look at it.
    struct Parameter {
        QString text;
        double number = 0;
        qint64 whole = 0;
        SQLLEN length = 0;
    };

    void bind(const QVariant &value)
    {
        Parameter &parameter = m_parameters.emplace_back();
        const auto number = static_cast<SQLUSMALLINT>(m_parameters.size());
        const auto send = [&](SQLSMALLINT type, SQLSMALLINT sqlType, SQLULEN size, void *data) {
            check(SQLBindParameter(m_handle, number, SQL_PARAM_INPUT, type, sqlType, size, 0, data, 0,
                                   &parameter.length));
        };
        switch (value.typeId()) {
        case QMetaType::Bool:
        case QMetaType::Int:
        case QMetaType::LongLong:
            parameter.whole = value.toLongLong();
            send(SQL_C_SBIGINT, SQL_BIGINT, 0, &parameter.whole);
            break;
        case QMetaType::Double:
            parameter.number = value.toDouble();
            send(SQL_C_DOUBLE, SQL_DOUBLE, 0, &parameter.number);
            break;
        default: // Null has a type too, and the server turns text into every other
            parameter.text = value.toString();
            parameter.length =
                value.isValid() ? static_cast<SQLLEN>(parameter.text.size() * sizeof(SQLWCHAR)) : SQL_NULL_DATA;
            const bool isLong = parameter.text.size() > longestShortText;
            send(SQL_C_WCHAR, isLong ? SQL_WLONGVARCHAR : SQL_WVARCHAR,
                 static_cast<SQLULEN>(std::max(parameter.text.size(), longestShortText)), wide(parameter.text));
        }
    }

    SQLSMALLINT describe(SQLUSMALLINT column, QStringList &names)
    {
        std::array<SQLWCHAR, 256> name{};
        SQLSMALLINT length = 0, type = 0;
        check(SQLDescribeColW(m_handle, column, name.data(), static_cast<SQLSMALLINT>(name.size()), &length, &type,
                              nullptr, nullptr, nullptr));
        names.append(QString::fromUtf16(reinterpret_cast<const char16_t *>(name.data()), length));
        return type;
    }

    // Reads a column of one size; gives whether it is not Null.
    template <typename Value> bool get(SQLUSMALLINT column, SQLSMALLINT type, Value &value)
    {
        SQLLEN length = 0;
        check(SQLGetData(m_handle, column, type, &value, sizeof(value), &length));
        return length != SQL_NULL_DATA;
    }

    QVariant value(SQLUSMALLINT column, SQLSMALLINT type)
    {
        switch (type) {
        case SQL_BIT:
        case SQL_TINYINT:
        case SQL_SMALLINT:
        case SQL_INTEGER:
        case SQL_BIGINT: {
            qint64 whole = 0;
            return get(column, SQL_C_SBIGINT, whole) ? QVariant(static_cast<qlonglong>(whole)) : QVariant();
        }
        case SQL_REAL:
        case SQL_FLOAT:
        case SQL_DOUBLE:
        case SQL_DECIMAL:
        case SQL_NUMERIC: {
            double number = 0;
            return get(column, SQL_C_DOUBLE, number) ? QVariant(number) : QVariant();
        }
        case SQL_DATE: // as the second version of ODBC has it, which the toolkit asks for
        case SQL_TIMESTAMP:
        case SQL_TYPE_DATE:
        case SQL_TYPE_TIMESTAMP: {
            SQL_TIMESTAMP_STRUCT date{};
            return get(column, SQL_C_TYPE_TIMESTAMP, date) ? QVariant(dateText(QDate(date.year, date.month, date.day)))
                                                           : QVariant();
        }
        default:
            return text(column);
        }
    }

    QVariant text(SQLUSMALLINT column)
    {
        QString whole(QLatin1String(""));
        std::array<char16_t, 2048> part{};
        for (;;) {
            SQLLEN length = 0;
            const SQLRETURN code =
                SQLGetData(m_handle, column, SQL_C_WCHAR, part.data(), part.size() * sizeof(char16_t), &length);
            if (code == SQL_NO_DATA)
                return whole;
            check(code);
            if (length == SQL_NULL_DATA)
                return {};
            // The last character of a part that is full is a NUL.
            const auto full = static_cast<SQLLEN>((part.size() - 1) * sizeof(char16_t));
            const bool more = length == SQL_NO_TOTAL || length > full;
            whole.append(QStringView(part.data(), (more ? full : length) / static_cast<SQLLEN>(sizeof(char16_t))));
            if (!more)
                return whole;
        }
    }

    void check(SQLRETURN code)
    {
        if (!SQL_SUCCEEDED(code))
            throw errorOf(diagnostics(SQL_HANDLE_STMT, m_handle));
    }

    // Not every driver has a state for the end of its link, all know of it.
    bool isLost() const
    {
        SQLUINTEGER dead = SQL_CD_FALSE;
        return SQL_SUCCEEDED(SQLGetConnectAttrW(m_connection, SQL_ATTR_CONNECTION_DEAD, &dead, 0, nullptr)) &&
               dead == SQL_CD_TRUE;
    }

    DriverError diagnostics(SQLSMALLINT type, SQLHANDLE handle) const
    {
        DriverError error;
        if (isLost())
            error.states.append(QStringLiteral("08S01"));
        std::array<SQLWCHAR, 6> state{};
        std::array<SQLWCHAR, 1024> message{};
        SQLINTEGER number = 0;
        SQLSMALLINT length = 0;
        for (SQLSMALLINT i = 1; SQL_SUCCEEDED(SQLGetDiagRecW(type, handle, i, state.data(), &number, message.data(),
                                                             static_cast<SQLSMALLINT>(message.size()), &length));
             ++i) {
            error.states.append(QString::fromUtf16(reinterpret_cast<const char16_t *>(state.data()), 5));
            error.numbers.append(number);
            error.texts.append(QString::fromUtf16(reinterpret_cast<const char16_t *>(message.data())));
        }
        return error;
    }

    SQLHANDLE m_connection, m_handle = SQL_NULL_HANDLE;
    std::list<Parameter> m_parameters;
};

} // namespace

OdbcResult runOdbc(const QSqlDatabase &database, const BoundStatement &statement)
{
    const QVariant handle = database.driver()->handle();
    return OdbcStatement(*static_cast<SQLHANDLE const *>(handle.constData())).run(statement);
}

} // namespace tradewick
