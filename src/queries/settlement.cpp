// Tax, and verification forms as they were issued and returned.
#include "common/query_screen.h"
#include "queries/queries.h"
#include "queries/query_parts.h"

namespace tradewick
{

namespace
{

constexpr int returns = 0;

// What the conditions find on paper is counted there: the issues are printed by other rows than the screen shows.
void printForms(QueryScreen &screen)
{
    if (screen.tellReversedAtFind())
        return;
    const QString name = screen.shownList() == returns ? "出口收汇核销结算表" : "企业核销单领用情况统计表";
    showStatistic(screen, name, {screen.criteria()});
}

void printMonth(QueryScreen &screen)
{
    if (screen.shownList() == returns)
        showStatistic(screen, "出口情况定期统计报表", {screen.criteria()});
}

// The boxes of the month narrow the report to the office alone.
QVector<Criterion> boxesOfMonth(const QString &frame)
{
    QVector<Criterion> boxes = criteria::monthOfReturns().mid(1);
    for (Criterion &box : boxes) {
        box.fragment = nullptr;
        box.frame = frame;
    }
    return boxes;
}

} // namespace

QuerySpec YY_ZsQk_TJB()
{
    return {
        .name = "YY_ZsQk_TJB",
        .caption = "外销合同缴税情况统计",
        .dates = period("登记日期：自"),
        .criteria = criteria::taxes(),
        .lists = {{.control = "AdopriMary",
                   .grid = "TDBGrid1",
                   .columns = {{"htbh", "外销合同"},
                               {"fpbh", "销售发票号"},
                               {"djrq", "登记日期"},
                               {"cpmc", "商品名称"},
                               {"gg", "规格"},
                               {"yanse", "颜色"},
                               {"dw", "单位"},
                               {"sl", "计税数量"},
                               {"je", "计税金额"},
                               {"suie", "增值税金额"},
                               {"sjje", "实缴金额"},
                               {"gsmc", "签约公司"},
                               {"csmc", "国内厂家"}},
                   .all = "select * from yy_sstjb_rpt order by htbh,djrq",
                   .find = "select * from yy_sstjb_rpt where htbh<>'' and djrq>='{DTPicker1}' and djrq<='{DTPicker2}'",
                   .order = "\norder by htbh,fpbh",
                   .opens = "YY_SsPj_DJB",
                   .key = "fpbh"}},
        .buttons = {groupedPrint("查询统计表", {.question = "是按签约公司统计吗？否则按国内厂家分组。",
                                                .yes = "外销合同缴税情况统计表（按签约公司）",
                                                .no = "外销合同缴税情况统计表（按国内厂家）"}),
                    workbook()},
    };
}

QuerySpec YY_HxD_LyHs_TJB()
{
    const QString month = " "; // a frame without a caption
    return {
        .name = "YY_HxD_LyHs_TJB",
        .caption = "核销领用及回收情况查询统计",
        .criteriaCaption = "查询条件",
        .dates = period("统计日期："),
        .criteria = criteria::verifications() + boxesOfMonth(month),
        .lists = {{.control = "Ado_Hxd_Ly",
                   .grid = "TDBGrid2",
                   .caption = "核销单回收情况",
                   .columns = {{"hxdh", "核销单号"},
                               {"fpbh", "发票编号"},
                               {"htbh", "外销合同"},
                               {"djrq", "核销日期"},
                               {"gsmc", "公司名称"},
                               {"ldy", "核销员"}},
                   .all = "SELECT * FROM CY_HXD_GSLY ORDER BY HXDH,DJRQ",
                   .find = "select * from cy_hxd_gsly where htbh<>'' and djrq>='{DTPicker1}' and djrq<='{DTPicker2}'",
                   .order = "order by htbh,hxdh",
                   .footers = {{"hxdh", "回收总计:", ColumnText::ByFind}, {"fpbh", "{count}份", ColumnText::ByFind}},
                   .opens = "CY_HXD_Djb",
                   .key = "hxdh"},
                  {.control = "Ado_Hxd_Hs",
                   .grid = "TDBGrid3",
                   .caption = "核销单领用情况",
                   .columns = {{"hxdh_st", "起始单号"},
                               {"hxdh_en", "终止单号"},
                               {"htbh", "合同号码"},
                               {"ly_fenshu", "领用份数"},
                               {"djrq", "领用日期"},
                               {"hxy", "领单员"},
                               {"gsmc", "公司名称"}},
                   .all = "SELECT * FROM CY_HXD_GSHS ORDER BY HXDH_st,hxdh_en,DJRQ",
                   .find = "select * from cy_hxd_gshs where htbh<>'' and djrq>='{DTPicker1}' and djrq<='{DTPicker2}'",
                   .order = "order by htbh,hxdh_st,hxdh_en",
                   .footers = {{"hxdh_st", "领用总计:", ColumnText::ByFind},
                               {"hxdh_en", "{count}份", ColumnText::ByFind}},
                   .opens = "CY_HXD_Djb",
                   .key = "hxdh_st"}},
        .buttons = {{"CmdPRINT", "查询列印", "Ctrl+P", printForms, true},
                    {"SB_tjb", "上报统计表", "Alt+S", printMonth, false, month},
                    workbook()},
    };
}

} // namespace tradewick
