// The trading company itself: registration, letterhead and bank; the first row is the one that start-up reads.
#include "masterdata/masterdata.h"

namespace tradewick
{

namespace
{

// The bank's name and addresses bear the same labels as the company's; a frame tells them apart.
FieldSpec ofBank(const QString &name, const QString &column, const QString &caption)
{
    return {.name = name, .column = column, .caption = caption, .group = QStringLiteral("银行资料")};
}

} // namespace

RecordFormSpec sys_gssz()
{
    return {
        .name = "sys_gssz",
        .caption = "公司名称设置",
        .statement = "select * FROM sys_gsmc",
        .pages = {{"",
                   {{"Text(0)", "gsBH", "公司编号:"},
                    {"Text(1)", "gsmC", "公司名称:"},
                    {"Text(2)", "E_gsmc", "英文名称:"},
                    {"Text(3)", "gsdz", "公司地址:"},
                    {"Text(4)", "E_gsdz", "英文地址:"},
                    {"Text(5)", "gs_phone", "公司电话:"},
                    {"Text(6)", "gs_fax", "公司传真:"},
                    {"Text(7)", "FPZT", "发票字头:"},
                    {"Text(8)", "BgBm", "海关注册编码:"},
                    {"Text(9)", "EDI_Code", "外管局注册码:"},
                    {"Text(10)", "McHzCH", "进出口企业代码:"},
                    {"Text(11)", "SjZCh", "商检注册:"},
                    {"Text(12)", "SWDJH", "税务登记号:"},
                    {"Text(14)", "GS_Email", "E_Mail号:"},
                    {"Combo1", "gSXZ", "公司性质:", field::combo()},
                    {"Text1", "LOGO", "", field::picture},
                    ofBank("Text(13)", "BANK_Name", "开户银行:"),
                    ofBank("Text(15)", "BANK_DZ", "中文地址:"),
                    ofBank("Text(16)", "BANK_En", "英文名称:"),
                    ofBank("Text(17)", "BANk_DE", "英文地址:"),
                    ofBank("Text(18)", "SWift_Code", "Swiftcode:"),
                    ofBank("Text(19)", "BANK_Code", "银行账号:"),
                    ofBank("Text(20)", "Bank_Fax", "传真号码:"),
                    ofBank("Text(21)", "Bank_Phone", "电话号码:")}}},
        .pairsInRow = 2,
        .list = {{"gsBH", "公司编号"}, {"gsmC", "公司名称"}},
        .picture = {.cleared = "", .clickChooses = true},
        .defaults = {{"LOGO", "  "}},
        .required = codeAndName(),
        .whenEmpty = {{"Text(5)"}, {"Text(2)"}, {"Text(3)"}, {"Text(4)"}},
        .failures = {.add = Failure::Skip},
    };
}

} // namespace tradewick
