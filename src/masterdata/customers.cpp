// Foreign customers.
#include "masterdata/masterdata.h"
#include "masterdata/partners.h"

namespace tradewick
{

// The English name and address stand in the columns that are called after the Chinese ones, and the other way about:
// the trade documents read them so.
RecordFormSpec YY_GWKH_ZL()
{
    RecordFormSpec spec = partnerRegister(
        {"khbh",
         "客户编号:",
         {"Text1(1)", "khmc", "*英文名称:"},
         {"Text1(9)", "ywmc", "中文名称:"},
         {"Text1(2)", "zwdz", "*英文地址:"},
         {"Text1(8)", "ywdz", "中文地址:"},
         {"Combo1(0)", "gb", "国别:", field::used("select DISTINCT gb from YY_GWKH_ZL where not gb is null")},
         "币     制:",
         "汇率:",
         "日     期:",
         "是否打印当前客户资料？否则打印全部客户简表。",
         "国外客户资料",
         "国外客户简表"});
    spec.name = "YY_GWKH_ZL";
    spec.caption = "国外客户录入窗口";
    spec.statement = "select * FROM YY_GWKH_ZL ORDER BY khbh,khmc";
    spec.list = {{"khbh", "客户编号"}, {"khmc", "国外客户"}};
    spec.required = {{"Text1(0)", "编号不能为空"}};
    spec.checks = {isNew("Text1(0)", "select * from yy_gwkh_zl where khbh='{text}'", "客户编码，不能重复，请核对！")};
    spec.filters = {{"Text2", "客户编号:", "select * FROM yy_gwkh_zl where khbh like '%{text}%' order by khbh,khMC"}};
    return spec;
}

} // namespace tradewick
