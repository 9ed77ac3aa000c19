#include "masterdata/customers.h"

namespace tradewick
{

namespace
{

const char *const countries = "select DISTINCT gb from YY_GWKH_ZL where not gb is null";

// The English name and address stand in the columns that are called after the Chinese ones, and the other way about:
// the trade documents read them so.
const RecordFormSpec customerSpec = {
    .name = "YY_GWKH_ZL",
    .caption = "国外客户录入窗口",
    .statement = "select * FROM YY_GWKH_ZL ORDER BY khbh,khmc",
    .fields = partnerFields({"khbh",
                             "客户编号:",
                             {"Text1(1)", "khmc", "*英文名称:"},
                             {"Text1(9)", "ywmc", "中文名称:"},
                             {"Text1(2)", "zwdz", "*英文地址:"},
                             {"Text1(8)", "ywdz", "中文地址:"},
                             {"Combo1(0)", "gb", "国别:", FieldKind::Combo, 0, 1, countries},
                             "币     制:",
                             "汇率:",
                             "日     期:"}),
    .pairsInRow = 2,
    .list = {{"khbh", "客户编号"}, {"khmc", "国外客户"}},
    .required = {{"Text1(0)", "编号不能为空"}},
    .unique = {"select * from yy_gwkh_zl where khbh='{key}'", "客户编码，不能重复，请核对！"},
    .captions = partnerCaptions(),
    .arrowsWrap = false,
    .printButtons = {{"Cmdprint", "打印", "Ctrl+P"}},
    .filter = {"Text2", "客户编号:", "select * FROM yy_gwkh_zl where khbh like '%{text}%' order by khbh,khMC"},
    .find = findPartner("khbh"),
};

const PartnerPrinting printing{"是否打印当前客户资料？否则打印全部客户简表。", "国外客户资料", "国外客户简表"};

} // namespace

YY_GWKH_ZL::YY_GWKH_ZL(QWidget *mainWindow) : TradePartnerForm(customerSpec, countries, printing, mainWindow) {}

} // namespace tradewick
