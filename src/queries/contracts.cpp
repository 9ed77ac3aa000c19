// Export and purchase contracts.
#include "contracts/contracts.h"

#include "common/query_screen.h"
#include "queries/queries.h"
#include "queries/query_parts.h"

namespace tradewick
{

namespace
{

// The other party stands under the customer's head on both screens, and the place of signing has no column.
QueryListSpec contractList(const QString &party)
{
    return {
        .control = "AdoprimaryRs",
        .grid = "TDBGrid2",
        .columns = {{"htbh", "合同编号"},
                    {"djrq", "签约日期"},
                    {"gsmc", "签约公司"},
                    {party, "国外买方"},
                    {"qydd", "签约地点"},
                    {"yxqsrq", "有效期自"},
                    {"yxjzrq", "有效期止"}},
        .within = "and yxjzrq>='{DTPicker3}' and yxjzrq<='{DTPicker4}'",
        .order = "order by gsmc",
        .orderWithin = "order by djrq",
        .footers = {{"htbh", "合同总数"}, {"djrq", "{count}份", ColumnText::AtLoad}},
        .key = "htbh",
    };
}

// One of the parties, that alone: the condition takes the place of the first one that was put together last, which the
// goods of all contracts are narrowed by, too.
void printGoodsOf(QueryScreen &screen, qsizetype party, const QString &name)
{
    const Fragment fragment = fragmentOf(screen.spec().criteria[party], screen.criteria());
    if (!fragment.text.isEmpty()) // else what is missing is told, and what was put together before stays
        screen.fragments().first() = fragment;
    showStatistic(screen, name, {screen.criteria(), false, QVector<Fragment>{fragment}});
}

void printAllGoods(QueryScreen &screen)
{
    showStatistic(screen, "外销合同商品统计表（按商品名称）",
                  {screen.criteria(), false, QVector<Fragment>{screen.fragments().first()}});
}

} // namespace

QuerySpec YY_WXHt_cxTjB()
{
    QueryListSpec list = contractList("khmc");
    list.all = "select * from yy_gw_wxht_h order by htbh,djrq";
    list.find = "select * from yy_gw_wxht_h where htbh<>'' and djrq>='{DTPicker1}' and djrq<='{DTPicker2}'";
    list.opens = "YY_WXHT";
    return {
        .name = "YY_WXHt_cxTjB",
        .caption = "销售合同查询统计",
        .dates = periodAndValidity("签约日期："),
        .criteria = criteria::exportContracts(),
        .lists = {list},
        .entry = YY_WXHT,
        .buttons = {groupedPrint("查询列印", {.question = "是否按签约公司分组统计？否，则按国外客户。",
                                              .yes = "外销合同统计表（按签约公司）",
                                              .no = "外销合同统计表（按国外客户）"}),
                    {"Cmd_SPtJ", "商品统计", "Alt+G", [](QueryScreen &screen) { screen.showOptions(); }},
                    recordPrint("Cur_prt", "当前合同", "销售确认书"),
                    workbook()},
        .options = {"Frame3",
                    "商品统计表_列印选项",
                    {{"Option1",
                      "当前签约公司",
                      {},
                      [](QueryScreen &screen) { printGoodsOf(screen, 0, "外销合同商品统计表（按签约公司）"); }},
                     {"Option2",
                      "当前国外客户",
                      {},
                      [](QueryScreen &screen) { printGoodsOf(screen, 1, "外销合同商品统计表（按国外客户）"); }},
                     {"Option3", "全部商品", {}, printAllGoods}}},
    };
}

QuerySpec YY_cgHt_CXtjb()
{
    QueryListSpec list = contractList("csmc");
    list.all = "select * from yy_gn_cght_h order by htbh,djrq";
    list.find = "select * from yy_gn_cght_h where htbh<>'' and djrq>='{DTPicker1}' and djrq<='{DTPicker2}'";
    list.opens = "YY_CGHT";
    return {
        .name = "YY_cgHt_CXtjb",
        .caption = "国内采购查询统计",
        .dates = periodAndValidity("签约日期："),
        .criteria = criteria::purchases(),
        .lists = {list},
        .entry = YY_CGHT,
        .buttons = {groupedPrint("查询列印", {.question = "是否按签约公司分组统计？否，则按国内厂家。",
                                              .yes = "采购合同统计表（按签约公司）",
                                              .no = "采购合同统计表（按国内厂商）"}),
                    recordPrint("Cur_prt", "当前合同", "采购合同书（英文金额）"), workbook()},
    };
}

// A credit over two contracts is found by either of them; over a contract of two credits the first is.
QuerySpec YY_XYz_CxTj()
{
    const QString quick = "快捷查询";
    return {
        .name = "YY_XYz_CxTj",
        .caption = "信用证查询统计",
        .dates = periodAndValidity("开证日期："),
        .criteria =
            criteria::credits() +
            QVector<Criterion>{{.name = "Combo4",
                                .caption = "合同编号：",
                                .offers = "select DISTINCT htbh from yy_xyz_nb where not htbh is null order by htbh",
                                .frame = quick},
                               {.name = "Combo5",
                                .caption = "信用证号：",
                                .offers = "select DISTINCT xyzh from yy_xyz_nh where not xyzh is null order by xyzh",
                                .frame = quick}},
        .quick = {{.name = "Combo4",
                   .chosen = "select* FROM yy_xyz_Nh where xyzh='{xyzh}'",
                   .via = "select distinct htbh,xyzh from yy_xyz_nb where htbh like '%{Combo4}%'"},
                  {.name = "Combo5",
                   .typed = "select * from yy_xyz_nh where xyzh like '%{Combo5}%'order by xyzh,kzrq",
                   .chosen = "select * from yy_xyz_nh where xyzh='{Combo5}'order by xyzh,kzrq"}},
        .lists = {{.control = "AdoprimaryRs",
                   .grid = "TDBGrid2",
                   .columns = {{"xyzh", "信用证号"},
                               {"kzrq", "开证日期"},
                               {"kzyh", "开证行"},
                               {"kzr", "开证人"},
                               {"htbh", "合同编号"},
                               {"syr", "受益人"},
                               {"xyzyxq", "有效期"}},
                   .all = "select * from yy_xyz_nh order by xyzh,kzrq",
                   .find = "select * from yy_xyz_nh where xyzh<>'' and kzrq>='{DTPicker1}' and kzrq<='{DTPicker2}'",
                   .within = "and xyzyxq>='{DTPicker3}' and xyzyxq<='{DTPicker4}'",
                   .order = "order by syr",
                   .orderWithin = "order by kzrq",
                   .footers = {{"xyzh", "信用证份数"}, {"kzrq", "{count}份", ColumnText::AtLoad}},
                   .opens = "YY_XyZ_New_Rpt",
                   .key = "xyzh"}},
        .entry = YY_XyZ_New_Rpt,
        .buttons = {groupedPrint("查询列印", {.question = "是否按受益人分组统计？否，则按收货人。",
                                              .yes = "信用证查询统计表（按受益人）",
                                              .no = "信用证查询统计表（按收货人）"}),
                    workbook()},
    };
}

} // namespace tradewick
