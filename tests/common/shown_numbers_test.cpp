// Numbers of a column stand below each other with as many places; what is stored, copied and typed stays as it is.
#include "common/column_footer.h"
#include "common/record_form.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <QClipboard>
#include <QStyledItemDelegate>

namespace tradewick
{

using namespace test;

TEST(ShownNumbers, HaveThePlacesOfTheirColumn)
{
    TestDatabase database;
    ScriptedDialogs dialogs;
    database.connection().Execute("insert into yy_gw_wxht_h(htbh) values('C1')");
    for (const char *line : {"'a',240,8.98,2155.2,0.5", "'b',7.5,13,97.125,0", "'c',200,1.23456,182,1.125"})
        database.connection().Execute(
            QString("insert into yy_gw_wxht_b(htbh,cpbh,sl,dj,je,xc) values('C1',%1)").arg(line));
    RecordForm form(RecordFormSpec{
        .name = "contracts",
        .statement = "select * from yy_gw_wxht_h",
        .pages = {{"", {{"Text(0)", "htbh", "Number:"}}}},
        .list = {{"htbh", "Number"}},
        .lines = {.statement = "select * from yy_gw_wxht_b where htbh='{htbh}' order by cpbh",
                  .key = "htbh",
                  .grids = {{.columns =
                                 {{"cpbh", "编号"}, {"sl", "数量"}, {"dj", "单价"}, {"je", "金额"}, {"xc", "体积"}}}}},
    });
    const FormDriver drive(form);
    const auto *grid = drive.find<Grid>("TDBGrid1");
    const QStringList expected[] = {{"a", "240.0", "8.9800", "2155.20", "0.500"},
                                    {"b", "7.5", "13.0000", "97.12", "0.000"}, // a half goes to the even neighbour
                                    {"c", "200.0", "1.2346", "182.00", "1.125"}};
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 5; ++column) {
            const QModelIndex cell = grid->model()->index(row, column);
            EXPECT_EQ(grid->shownText(cell), expected[row][column]);
            EXPECT_LE(grid->fontMetrics().horizontalAdvance(expected[row][column]), grid->columnWidth(column));
        }
    EXPECT_EQ(grid->model()->index(2, 2).data().toString(), "1.23456");
    EXPECT_EQ(form.lines().valueAt(1, form.lines().columnIndex("je")).toDouble(), 97.125);

    // Quantity and amount are summed below, without a declaration, and shown as their columns are.
    auto *totals = drive.find<ColumnFooter>("TDBGrid1_totals");
    EXPECT_EQ(totals->text("sl").toDouble(), 240 + 7.5 + 200);
    EXPECT_EQ(totals->text("je").toDouble(), 2155.2 + 97.125 + 182);
    EXPECT_EQ(totals->text("dj"), "");
    EXPECT_TRUE(totals->accessibleDescription().contains("2434.32")) << totals->accessibleDescription().toStdString();

    // A number with more places widens all of its column, whenever it comes.
    form.lines().setValueAt(0, form.lines().columnIndex("sl"), 240.125);
    EXPECT_EQ(grid->shownText(grid->model()->index(1, 1)), "7.500");
}

} // namespace tradewick
