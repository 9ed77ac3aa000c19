#include "data/mariadb_result.h"

#include <QSqlResult>

#include <errmsg.h>
#include <mysql.h>

namespace tradewick
{

QByteArray shapeOfResult(const QSqlQuery &query)
{
    const QVariant handle = query.result()->handle();
    if (!query.isSelect() || qstrcmp(handle.typeName(), "st_mysql_res*") != 0)
        return {};
    MYSQL_RES *result = *static_cast<MYSQL_RES *const *>(handle.constData());
    QByteArray shape;
    for (unsigned int i = 0; i < mysql_num_fields(result); ++i) {
        const MYSQL_FIELD &field = *mysql_fetch_field_direct(result, i);
        const quint64 column[] = {static_cast<quint64>(field.type), field.length, field.decimals, field.charsetnr,
                                  field.flags & UNSIGNED_FLAG};
        shape.append(reinterpret_cast<const char *>(column), sizeof column);
    }
    return shape;
}

bool isOtherShape(const QSqlError &error)
{
    return error.nativeErrorCode().toInt() == CR_NEW_STMT_METADATA;
}

} // namespace tradewick
