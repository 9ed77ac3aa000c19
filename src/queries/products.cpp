// Products with their prices.
#include "common/globals.h"
#include "common/query_screen.h"
#include "papers/report_table.h"
#include "queries/queries.h"
#include "queries/query_parts.h"

namespace tradewick
{

namespace
{

// What the list shows goes on paper, in its order.
void print(QueryScreen &screen)
{
    Report &priceList = report("Sys_Cpzlb_rpt");
    priceList.startOver();
    priceList.DataControl1 = {.ConnectionString = gConnStr, .rows = shownRows(screen)};
    priceList.show(&screen);
    priceList.DataControl1.rows = {}; // the list goes with its screen
}

} // namespace

QuerySpec YY_spZl_CXTjB()
{
    return {
        .name = "YY_spZl_CXTjB",
        .caption = "商品资料查询统计表",
        .criteria = criteria::products(),
        .trimsTexts = true,
        .lists = {{.control = "AdopriMary",
                   .grid = "TDBGrid1",
                   .columns = {{"cpbh", "商品编号"},
                               {"cpmc", "商品名称"},
                               {"gys_lh", "厂家件号"},
                               {"cpgg", "规格"},
                               {"yanse", "颜色"},
                               {"bacp", "H.S.编码"},
                               {"dw", "单位"},
                               {"gys_bizh", "币种"},
                               {"gys_dj", "出厂价"},
                               {"gysbh", "厂家编号"},
                               {"gys_mc", "厂家名称"}},
                   .all = "select * from yy_bzdj_rpt order by cpbh,cpmc",
                   .find = "select * from yy_bzdj_rpt where cpbh<>''",
                   .order = "order by cplb,cpbh,cpmc,gys_mc",
                   .opens = "yy_cpbj",
                   .key = "cpbh"}},
        .buttons = {{"CmdPRINT", "列印查询表", "Ctrl+P", print}, workbook()},
    };
}

} // namespace tradewick
