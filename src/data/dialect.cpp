#include "data/dialect.h"

namespace tradewick
{

namespace
{

constexpr Dialect sqlite{
    .identity = "rowid",
    .columns = "select c.name, c.type, t.type = 'table' from sqlite_master t join pragma_table_info(t.name) c where "
               "lower(t.name) = ?",
    // The schema's own indexes are of an expression, in which the column stands in parentheses as in any other.
    .uniqueColumn = "select c.name from sqlite_master t join pragma_table_info(t.name) c join sqlite_master i on "
                    "i.type = 'index' and i.tbl_name = t.name where lower(t.name) = ? and "
                    "i.sql like 'create unique index%(' || c.name || ')%'",
    // Two desktops that both mean to write wait for each other here, not in the middle.
    .begin = "begin immediate",
    .isOdbc = false,
    .canBreak = false,
    .holdTable = "",
    .holdRow = "", // nobody else writes while a transaction is open
    .exactText = "%1 = ?",
    .emptyRow = " default values",
    .oneRow = "",
};

constexpr Dialect mariaDb{
    .identity = "tradewick_id",
    // As a join it would take the server twenty times as long.
    .columns = "select column_name, data_type, (select table_type = 'BASE TABLE' from information_schema.tables where "
               "table_schema = database() and table_name = ?) from information_schema.columns where table_schema = "
               "database() and table_name = ? and extra not like '%INVISIBLE%' order by ordinal_position",
    .uniqueColumn = "",
    .begin = "begin",
    .isOdbc = false,
    .canBreak = true,
    .holdTable = "",
    .holdRow = " lock in share mode",
    .exactText = "binary %1 = binary ?",
    .emptyRow = "() values()",
    .oneRow = "",
};

constexpr Dialect sqlServer{
    .identity = "",
    .columns = "select c.column_name, c.data_type, case t.table_type when 'BASE TABLE' then 1 else 0 end from "
               "information_schema.columns c inner join information_schema.tables t on t.table_schema = "
               "c.table_schema and t.table_name = c.table_name where c.table_name = ? order by c.ordinal_position",
    .uniqueColumn =
        "select max(c.name) from sys.indexes i inner join sys.index_columns p on p.object_id = i.object_id and "
        "p.index_id = i.index_id inner join sys.columns c on c.object_id = p.object_id and c.column_id = p.column_id "
        "where i.object_id = object_id(?) and i.is_unique = 1 and p.is_included_column = 0 "
        "group by i.index_id having count(*) = 1 order by i.index_id",
    .begin = "select 1",
    .isOdbc = true,
    .canBreak = true,
    .holdTable = " with (repeatableread)",
    .holdRow = "",
    .exactText = "cast(%1 as varbinary(max)) = cast(cast(? as nvarchar(max)) as varbinary(max))",
    .emptyRow = " default values",
    .oneRow = " top (1)",
};

} // namespace

const Dialect &dialectOf(Engine engine)
{
    switch (engine) {
    case Engine::MariaDb:
        return mariaDb;
    case Engine::SqlServer:
        return sqlServer;
    default:
        return sqlite;
    }
}

} // namespace tradewick
