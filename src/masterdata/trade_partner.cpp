#include "masterdata/trade_partner.h"

#include "common/dialogs.h"
#include "common/globals.h"
#include "data/date_text.h"
#include "papers/papers.h"

namespace tradewick
{

const char *const currencyOf = "select DISTINCT hl,bzcode from sys_bzsz where bizh='{bizh}'";

QVector<FieldSpec> partnerFields(const PartnerNaming &own)
{
    return {{"Text1(0)", own.key, own.keyCaption},
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
            {"Combo1(1)", "bizh", own.currencyCaption, FieldKind::Combo, 0, 1, "select DISTINCT bizh,hl from sys_bzsz"},
            {"Text1(7)", "hl", own.rateCaption},
            {"Combo1(2)", "fkfs", "结算方式:", FieldKind::Combo, 0, 1, "select DISTINCT fkfs from sys_fkfs"},
            {"Combo1(4)", "zffs", "付款方式:", FieldKind::Combo, 0, 1, "select DISTINCT zffs from sys_zffs"},
            // A text like the others: no format is asked of it before the database does.
            {"Text1(6)", "djrq", own.dateCaption},
            {"Combo1(3)", "djy", "登记员:", FieldKind::Combo, 0, 1,
             "select DISTINCT name from sys_gzry where zhwu like '%文%'"}};
}

QStringList partnerCaptions()
{
    return {"前端", "向前", "向后", "后端", "新增", "删除", "修改", "确认", "取消", "返回"};
}

FindSpec findPartner(const QString &key)
{
    return {key, "请输入客户编号:", "系统操作提示", "没有查到该客户"};
}

TradePartnerForm::TradePartnerForm(const RecordFormSpec &spec, const char *areas, const PartnerPrinting &printing,
                                   QWidget *mainWindow)
    : RecordForm(spec, mainWindow), m_areas(areas), m_printing(printing)
{
}

void TradePartnerForm::afterAdd()
{
    setFieldText("Text1(6)", dateText(QDate::currentDate()));
}

void TradePartnerForm::comboChosen(const QString &name)
{
    if (name != "Combo1(1)")
        return;
    run(Failure::Report, {[this, name] {
            const QVector<Values> found = gConn->rows(currencyOf, {{"bizh", fieldText(name).trimmed()}});
            if (found.isEmpty())
                return;
            records().Fields("hl").setValue(found.first()["hl"]);
            records().Fields("bzcode").setValue(found.first()["bzcode"]);
        }});
}

void TradePartnerForm::print(const QString &)
{
    const QString title = QStringLiteral("系统提示"), key = fieldText("Text1(0)");
    if (key.trimmed().isEmpty()) {
        dialogs().message(this, QStringLiteral("没有当前记录，不能打印！"), title, MessageIcon::Critical);
        return;
    }
    const QString &name = dialogs().ask(this, m_printing.question, title) ? m_printing.one : m_printing.all;
    run(Failure::Report, {[&] { showDocument(name, *gConn, key, this); }});
}

// A country or province typed for the first time is offered from the next record on.
void TradePartnerForm::recordsChanged(Change)
{
    fillCombo("Combo1(0)", m_areas);
}

} // namespace tradewick
