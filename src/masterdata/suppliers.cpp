#include "masterdata/suppliers.h"

namespace tradewick
{

namespace
{

const char *const provinces = "select DISTINCT sheng from yy_gyszl where not sheng is null";

const RecordFormSpec supplierSpec = {
    .name = "yy_GYszl",
    .caption = "国内厂商资料登记_表",
    .statement = "select * FROM yy_gyszl ORDER BY gfbh,zwmc",
    .fields = partnerFields({"gfbh",
                             "厂商编号:",
                             {"Text1(1)", "zwmc", "中文名称:"},
                             {"Text1(9)", "ywmc", "英文名称:"},
                             {"Text1(2)", "zwdz", "中文地址:"},
                             {"Text1(8)", "ywdz", "英文地址:"},
                             {"Combo1(0)", "sheng", "省、自治区、直辖市:", FieldKind::Combo, 0, 1, provinces},
                             "币       制:",
                             "汇   率:",
                             "日       期:"}),
    .pairsInRow = 2,
    .list = {{"gfbh", "厂商编号"}, {"zwmc", "厂商名称"}},
    .required = {{"Text1(0)", "所有名称不能为空"}, {"Text1(1)", "所有名称不能为空"}},
    .unique = {"select * from yy_gyszl where gfbh='{key}'", "客户编号，不能重复，请核对！"},
    .captions = partnerCaptions(),
    .arrowsWrap = false,
    .failures = {.edit = Failure::Skip},
    .printButtons = {{"Cmdprint", "打印", "Ctrl+P"}},
    .filter = {"Text2", "厂商编号:", "select * FROM yy_gyszl where gfbh like '%{text}%' ORDER BY gfbh,zwmc", false},
    .find = findPartner("gfbh"),
};

const PartnerPrinting printing{"是否打印当前厂家资料？否则打印国内厂家简表。", "国内厂家资料", "国内厂家简表"};

} // namespace

yy_GYszl::yy_GYszl(QWidget *mainWindow) : TradePartnerForm(supplierSpec, provinces, printing, mainWindow) {}

} // namespace tradewick
