// Domestic suppliers.
#include "masterdata/masterdata.h"
#include "masterdata/partners.h"

namespace tradewick
{

RecordFormSpec yy_GYszl()
{
    RecordFormSpec spec = partnerRegister(
        {"gfbh",
         "厂商编号:",
         {"Text1(1)", "zwmc", "中文名称:"},
         {"Text1(9)", "ywmc", "英文名称:"},
         {"Text1(2)", "zwdz", "中文地址:"},
         {"Text1(8)", "ywdz", "英文地址:"},
         {"Combo1(0)", "sheng",
          "省、自治区、直辖市:", field::combo("select DISTINCT sheng from yy_gyszl where not sheng is null")},
         "币       制:",
         "汇   率:",
         "日       期:",
         "是否打印当前厂家资料？否则打印国内厂家简表。",
         "国内厂家资料",
         "国内厂家简表"});
    spec.name = "yy_GYszl";
    spec.caption = "国内厂商资料登记_表";
    spec.statement = "select * FROM yy_gyszl ORDER BY gfbh,zwmc";
    spec.list = {{"gfbh", "厂商编号"}, {"zwmc", "厂商名称"}};
    spec.required = {{"Text1(0)", "所有名称不能为空"}, {"Text1(1)", "所有名称不能为空"}};
    spec.checks = {isNew("Text1(0)", "select * from yy_gyszl where gfbh='{text}'", "客户编号，不能重复，请核对！")};
    spec.filters = {{.name = "Text2",
                     .caption = "厂商编号:",
                     .statement = "select * FROM yy_gyszl where gfbh like '%{text}%' ORDER BY gfbh,zwmc",
                     .trimmed = false}};
    spec.failures.edit = Failure::Skip;
    return spec;
}

} // namespace tradewick
