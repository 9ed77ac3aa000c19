// Sheets and lists of the registers: one customer or supplier in full, or all of them; the price list.
#include "papers/areas.h"

namespace tradewick
{

QVector<Document> masterDataDocuments()
{
    return {
        {"国外客户资料",
         "YY_KhZl_XX_Rpt",
         {"国外客户", "khbh", "select khbh from YY_GWKH_ZL where khbh='{khbh}'",
          "select * from YY_GWKH_ZL where khbh='{khbh}'"}},
        {"国外客户简表", "khzl_rpt", {.rows = "select * from YY_GWKH_ZL order by khbh "}},
        {"国内厂家资料",
         "Yy_Gys_xxZl",
         {"国内厂家", "gfbh", "select gfbh from YY_GyszL where gfbh='{gfbh}'",
          "select * from YY_GyszL where gfbh='{gfbh}'"}},
        {"国内厂家简表", "YY_Gys_JMZL", {.rows = "select * from YY_GysZL order by gfbh "}},
        {"商品资料明细表", "Sys_Cpzlb_rpt", {.rows = "select* from yy_bzdj_rpt order BY gysbh,cplb,cpbh,cpmc"}},
    };
}

} // namespace tradewick
