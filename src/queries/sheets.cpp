// Detail sheets: finds them, prints any of their documents again, and the sales of a period.
#include "common/query_screen.h"
#include "documents/documents.h"
#include "queries/queries.h"
#include "queries/query_parts.h"

namespace tradewick
{

namespace
{

// The invoice with one price is printed from the sheet alone.
void printChosen(QueryScreen &screen)
{
    const QString chosen = screen.choice("Com_Print");
    if (!screen.number().isEmpty() && chosen != QStringLiteral("单价格发票"))
        printSheet(chosen, screen.number(), &screen);
}

} // namespace

QuerySpec YY_mxd_CxTj()
{
    return {
        .name = "YY_mxd_CxTj",
        .caption = "明细单查询统计",
        .dates = period("开票日期："),
        .criteria = criteria::sheets() +
                    QVector<Criterion>{{"Combo5", "发票编号：",
                                        "select DISTINCT fpbh from yy_mxb_h where not fpbh is null order by fpbh"}},
        .quick = {{.name = "Combo4",
                   .typed = "select * from yy_mxb_h where htbh like '%{Combo4}%'order by fpbh,djrq",
                   .chosen = "select * from yy_mxb_h where htbh='{Combo4}'order by fpbh,djrq",
                   .empties = "Combo5"},
                  {.name = "Combo5",
                   .typed = "select * from yy_mxb_h where fpbh like '%{Combo5}%'order by fpbh,djrq",
                   .chosen = "select * from yy_mxb_h where fpbh='{Combo5}'order by fpbh,djrq",
                   .empties = "Combo4"}},
        .lists = {{.control = "AdoprimaryRs",
                   .grid = "TDBGrid3",
                   .columns = {{"fpbh", "发票号码"}, {"djrq", "登记日期"}},
                   .all = "select * from yy_mxb_h order by fpbh,djrq",
                   .find = "select * from yy_mxb_h where fpbh<>'' and djrq>='{DTPicker1}' and djrq<='{DTPicker2}'",
                   .order = "order by gsmc,fpbh",
                   .opens = "YY_DZ_MXB",
                   .key = "fpbh"}},
        .entry = YY_DZ_MXB,
        .choices = {{"Com_Print",
                     "打印选项：",
                     {"明细单", "发票", "装箱单", "报关单", "产地证", "FormA", "装船通知", "寄单证明", "汇票",
                      "产地证申请书", "FormA申请书", "报检单", "报关委托书", "英文发票", "英文装箱单", "英文汇票"}}},
        .buttons = {{"CmdPRINT2", "打印", "Ctrl+Shift+P", printChosen},
                    groupedPrint("查询列印", {.question = "是否按销货单位统计？否，则按国外购货单位统计。",
                                              .yes = "出口销售合同结案情况统计表（按销货单位）",
                                              .no = "出口销售合同结案情况统计表（按国外客户）",
                                              .isRefused = &QueryScreen::tellReversedAtFind,
                                              .icon = MessageIcon::Information}),
                    workbook()},
    };
}

} // namespace tradewick
