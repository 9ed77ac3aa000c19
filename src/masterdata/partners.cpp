#include "masterdata/partners.h"

#include "common/dialogs.h"
#include "common/record_form.h"
#include "papers/papers.h"

namespace tradewick
{

RecordFormSpec partnerRegister(const PartnerNaming &own)
{
    const auto print = [own](RecordForm &form) {
        const QString key = form.text("Text1(0)");
        const std::optional<bool> one =
            key.trimmed().isEmpty() ? true : dialogs().choose(&form, own.question, RecordForm::systemTitle());
        if (one)
            printRecord(*one ? own.one : own.all, key, &form);
    };
    return {
        .pages = {{"",
                   {{"Text1(0)", own.key, own.keyCaption},
                    own.area,
                    own.name,
                    own.otherName,
                    own.address,
                    own.otherAddress,
                    {"Text1(3)", "phone", "联系电话:"},
                    {"Text1(4)", "fax", "传真号码:"},
                    {"Text1(5)", "frdb", "法人代表:"},
                    {"Text1(10)", "lxr", "联 系 人:"},
                    {"Text1(11)", "khh", "开户银行:"},
                    {"Text1(13)", "yhzh", "银行账号:"},
                    {"Text1(12)", "xydj", "信用等级:"},
                    {"Text1(14)", "tysh", "统一税号:"},
                    {"Text1(15)", "dzyx", "电子邮箱:"},
                    {"Text1(16)", "wz", "网络地址:"},
                    {"Text1(17)", "yzbm", "邮政编码:"},
                    {"Text1(18)", "jyfw", "经营范围:"},
                    {"Combo1(1)", "bizh", own.currencyCaption,
                     field::combo("select DISTINCT bizh,hl from sys_bzsz", "select bizh,bzcode from sys_bzsz")},
                    {"Text1(7)", "hl", own.rateCaption},
                    {"Combo1(2)", "fkfs", "结算方式:", field::combo("select DISTINCT fkfs from sys_fkfs")},
                    {"Combo1(4)", "zffs", "付款方式:", field::combo("select DISTINCT zffs from sys_zffs")},
                    // A text like the others: no format is asked of it before the database does.
                    {"Text1(6)", "djrq", own.dateCaption},
                    {"Combo1(3)", "djy",
                     "登记员:", field::combo("select DISTINCT name from sys_gzry where zhwu like '%文%'")}}}},
        .pairsInRow = 2,
        .captions = {"前端", "向前", "向后", "后端", "新增", "删除", "修改", "确认", "取消", "返回"},
        .buttons = {{"Cmdprint", "打印", "Ctrl+P", print}},
        .defaults = {today("djrq")},
        .picks = {{"Combo1(1)",
                   {{"select DISTINCT hl,bzcode from sys_bzsz where bizh='{text}'",
                     {{"hl", "hl"}, {"bzcode", "bzcode"}}}}}},
        .find = {own.key, "请输入客户编号:", "系统操作提示", "没有查到该客户"},
        .arrowsWrap = false,
        // A country or province typed for the first time is offered from the next record on.
        .refilled = {"Combo1(0)"},
    };
}

} // namespace tradewick
