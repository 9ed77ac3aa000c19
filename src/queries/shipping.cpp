// Truck dispatches and booking notes.
#include "shipping/shipping.h"

#include "common/query_screen.h"
#include "queries/queries.h"
#include "queries/query_parts.h"

namespace tradewick
{

namespace
{

bool isNotFound(QueryScreen &screen)
{
    return !screen.find();
}

void printDispatch(QueryScreen &screen)
{
    Recordset &records = screen.records();
    const bool isThere = !records.BOF() && !records.EOF_();
    printRecord("当前派车单", isThere ? records.Fields("pcdh").text() : QString(), &screen);
}

// On the general form, whatever the line.
void printBooking(QueryScreen &screen)
{
    if (screen.number().isEmpty())
        screen.tell("没有当前记录，不能打印！");
    else
        printRecord("APL订舱单", screen.number(), &screen);
}

} // namespace

QuerySpec CY_Pcd_CxTj()
{
    return {
        .name = "CY_Pcd_CxTj",
        .caption = "派车单查询统计",
        .dates = period("起始日期：", "截止日期："),
        .criteria = criteria::dispatches(),
        .lists = {{.control = "AdopriMary",
                   .grid = "TDBGrid1",
                   .columns = {{"pcdh", "派车单号"},
                               {"djrq", "派车日期"},
                               {"pcgs", "派车公司"},
                               {"tcgs", "拖车公司"},
                               {"zhdz", "装货地点"},
                               {"fpbh", "发票编号"},
                               {"pcfy", "拖车费用"},
                               {"ghfth", "柜号/封条号"},
                               {"escg", "20' 柜数"},
                               {"sscg", "40'柜数"},
                               {"sscgg", "40'H柜"},
                               {"sswcg", "45'柜"}},
                   .all = "select * from cy_pcd_rpt order by pcdh,djrq",
                   .find = "select * from cy_pcd_rpt where pcdh<>'' and djrq>='{DTPicker1}' and djrq<='{DTPicker2}'",
                   .order = "\norder by pcgs",
                   .footers = {{"pcdh", "总计次数"},
                               {"djrq", "{count}次", ColumnText::ByFindOfSome},
                               {"zhdz", "车费总计"},
                               {"pcfy", "{zjfy}", ColumnText::ByFindOfSome},
                               {"escg", "{escg}", ColumnText::ByFindOfSome},
                               {"sscg", "{sscg}", ColumnText::ByFindOfSome},
                               {"sscgg", "{sscgg}", ColumnText::ByFindOfSome},
                               {"sswcg", "{sswcg}", ColumnText::ByFindOfSome}},
                   .sums = "select sum(isnull(pcfy,0)) as zjfy,SUM(ISNULL(ESCG,0)) AS ESCG,SUM(ISNULL(SSCG,0)) AS "
                           "SSCG,SUM(ISNULL(SSCGG,0)) AS SSCGG,SUM(ISNULL(SSWCG,0)) AS SSWCG   FROM cy_pcd_rpt where "
                           "pcdh<>'' and djrq>='{DTPicker1}' and djrq<='{DTPicker2}'",
                   .opens = "CY_Pcd_Djb",
                   .key = "pcdh"}},
        .buttons = {groupedPrint("列印查询表", {.question = "是按拖车公司分组统计吗？否则按派车公司分组。",
                                                .yes = "派车费用统计表（按拖车公司）",
                                                .no = "派车费用统计表（按派车公司）"}),
                    {"Cur_prt", "当前派车单", "Ctrl+Shift+P", printDispatch},
                    workbook()},
    };
}

QuerySpec YY_DcD_CxTj()
{
    return {
        .name = "YY_DcD_CxTj",
        .caption = "订舱单查询统计表",
        .dates = period("订舱日期："),
        .criteria = criteria::bookings(),
        .lists = {{.control = "AdoprimaryRs",
                   .grid = "TDBGrid2",
                   .columns = CY_Dcd_Rpt().list,
                   .all = "select* FROM CY_DCD_DJB_H with(nolock) ",
                   .find = "select * from cy_dcd_djb_h where djrq>='{DTPicker1}' and djrq<='{DTPicker2}'",
                   .order = "\norder by tygs,fpbh",
                   .opens = "CY_Dcd_Rpt",
                   .key = "dcdh"}},
        .entry = CY_Dcd_Rpt,
        .buttons = {groupedPrint("查询列印",
                                 {.question = "是否按订舱公司汇总？否，则按船务公司汇总。",
                                  .yes = "订舱费用情况统计表（按订舱公司）",
                                  .no = "订舱费用情况统计表（按船务公司）",
                                  .isRefused = isNotFound},
                                 false),
                    {"CmdPRINT2", "打印", "Ctrl+Shift+P", printBooking},
                    workbook()},
    };
}

} // namespace tradewick
