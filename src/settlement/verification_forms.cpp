// The register of export verification forms: lots drawn from the exchange bureau, ranges issued to staff for a
// contract, and forms that came back, each closed against its invoice. Every number that is issued or returned counts
// in the lots that hold it.
#include "common/dialogs.h"
#include "common/number_text.h"
#include "common/record_form.h"
#include "data/date_text.h"
#include "settlement/settlement.h"
#include "settlement/verification_numbers.h"

namespace tradewick
{

namespace
{

enum Tab { Lots, Returns, Issues };

const char *const companies = "select DISTINCT gsmc from sys_gsmc order by gsmc";
const char *const staff = "select DISTINCT name from sys_gzry order by name";
const char *const openInvoices =
    "select DISTINCT fpbh from yy_mxb_H where fpbH NOT IN(SELECT DISTINCT fpbh FROM CY_hxd_gsly)";
const char *const invoice = "select * from yy_mxb_h where fpbh='{text}'";
const char *const totalsOfInvoice = "select fpbh, sum(isnull(jianshu,0)) as jianshu,sum(isnull(je,0)) as zjje from "
                                    "yy_mxb_b where fpbh='{text}' group by fpbh";
const char *const returned = "select * from cy_hxd_gsly where hxdh='{number}'";
const char *const overlapping =
    "select * from cy_hxd_gshs where (hxdh_st>='{s}' and hxdh_en<= '{e}') or (hxdh_st<='{s}' and hxdh_en>= '{s}') or "
    "(hxdh_st>='{s}' and hxdh_st<= '{e}')";
const char *const countReturn =
    "update cy_hxd_wgj_ld set hs_fenshu=hs_fenshu+1 where Left(start, 3) = '{series}' and Left(endH, 3) = '{series}' "
    "and right(start,6)<={n} and right(ENDH,6)>={n}";
const char *const countIssue =
    "update cy_hxd_wgj_ld set sy_fenshu=gl_fenshu-yy_fenshu-1,yy_fenshu=yy_fenshu+1 where Left(start, 3) = '{series}' "
    "and Left(endH, 3) = '{series}' and right(start,6)<={n} and right(ENDH,6)>={n}";

const QString lotStart = "Text1(1)", lotEnd = "Text1(2)", returnNumber = "Text1(4)", shipmentDate = "Text1(8)",
              issueStart = "Text1(15)", issueEnd = "Text1(16)";

QString badLength()
{
    return QStringLiteral("核销单号编码为9位半角字符，请核对！");
}
QString badOrder()
{
    return QStringLiteral("起始编号不能大于终止编号，请核对！");
}

// ---- what is told when a field is left ----

struct Refused {
    QString message, focus; // no field to go to: the one that was left is emptied
};
using Refusal = std::optional<Refused>;

QString typed(const RecordForm &form, const QString &field)
{
    return form.text(field).trimmed();
}

Refusal refusalOfRange(const RecordForm &form, const QString &startField, const QString &endField)
{
    switch (faultOf(typed(form, startField), typed(form, endField))) {
    case RangeFault::Length:
        return Refused{badLength(), startField};
    case RangeFault::Order:
        return Refused{badOrder(), startField};
    case RangeFault::None:
        break;
    }
    return std::nullopt;
}

// A number that came back is refused for a record that bears it already, too: it is typed anew there.
Refusal refusalOfReturn(RecordForm &form)
{
    const QString number = typed(form, returnNumber);
    if (!number.isEmpty() && number.size() != lengthOfNumber)
        return Refused{badLength(), returnNumber};
    if (form.firstRow(returned, {{"number", number}}))
        return Refused{QStringLiteral("此核销单号已经回收过，不能再次回收！"), {}};
    return std::nullopt;
}

Refusal refusalOfIssue(RecordForm &form)
{
    Refusal refusal = refusalOfRange(form, issueStart, issueEnd);
    if (!refusal && form.isAdding() &&
        form.firstRow(overlapping, {{"s", typed(form, issueStart)}, {"e", typed(form, issueEnd)}}))
        refusal = Refused{QStringLiteral("此核销单号组已有领用过（部分或全部），不能再次领用！"), issueStart};
    return refusal;
}

Refusal refusalOf(RecordForm &form, const QString &field)
{
    if (field == issueStart) { // asked of it while a lot is typed, on the first tab, and only then
        if (form.beside(Lots).isBusy() && typed(form, issueStart).size() != lengthOfNumber)
            return Refused{badLength(), issueStart};
        return std::nullopt;
    }
    if (!form.isBusy())
        return std::nullopt;
    if (field == returnNumber)
        return refusalOfReturn(form);
    // The invoice's own words, which come along with it, are stored: they are told where the field is passed alone.
    if (field == shipmentDate && !typed(form, field).isEmpty() && !dateFromText(typed(form, field)).isValid())
        return Refused{RecordForm::badDate(), field};
    if (field == lotStart && typed(form, lotStart).size() != lengthOfNumber)
        return Refused{badLength(), lotStart};
    if (field == lotEnd)
        return refusalOfRange(form, lotStart, lotEnd);
    if (field == issueEnd)
        return refusalOfIssue(form);
    return std::nullopt;
}

// Writes the number of forms of a range, where it is one.
void writeCount(RecordForm &form, const QString &start, const QString &end, const QStringList &columns)
{
    const int forms = formsFrom(typed(form, start), typed(form, end));
    Recordset &records = form.records();
    if (forms <= 1 || records.BOF() || records.EOF_())
        return;
    for (const QString &column : columns)
        if (records.Fields(column).text() != numberText(forms))
            records.Fields(column).setValue(double(forms));
}

// An Edit that merely passes the numbers of a lot leaves it what was not issued yet.
bool isRangeTyped(RecordForm &form)
{
    const Recordset &lots = form.records();
    const int row = lots.absolutePosition();
    const auto isTyped = [&](const char *column) {
        const int at = lots.columnIndex(column);
        return lots.storedValueAt(row, at).toString() != lots.valueAt(row, at).toString();
    };
    return form.isAdding() || lots.isNew(row) || isTyped("start") || isTyped("endh");
}

bool left(RecordForm &form, const QString &field)
{
    if (!field.startsWith("Text1("))
        return true;
    Refusal refusal;
    bool isAsked = false;
    form.run(Failure::Report, {[&] {
                 refusal = refusalOf(form, field);
                 isAsked = true;
             }});
    if (refusal) {
        dialogs().message(&form, refusal->message, RecordForm::systemTitle(), MessageIcon::Critical);
        if (refusal->focus.isEmpty())
            form.setText(field, {});
        else
            form.focusField(refusal->focus);
    }
    if (refusal || !isAsked)
        return false;
    if (field == lotEnd && form.isBusy() && isRangeTyped(form))
        writeCount(form, lotStart, lotEnd, {"gl_fenshu", "sy_fenshu"});
    // Of the range that is shown there, whatever field was left, on whatever tab.
    writeCount(form.beside(Issues), issueStart, issueEnd, {"ly_fenshu"});
    return true;
}

// ---- counters of the lots ----

QString stored(RecordForm &form, int row, const char *column)
{
    return form.records().valueAt(row, form.records().columnIndex(column)).toString().trimmed();
}

// One that was refused before, and is stored along with another, began with Add.
bool counts(RecordForm &form, int row)
{
    return row != form.records().absolutePosition() || form.isAdding();
}

void countReturned(RecordForm &form, int row)
{
    const QString number = stored(form, row, "hxdh");
    if (counts(form, row) && !number.isEmpty())
        form.connection()->Execute(countReturn, {{"series", seriesOf(number)}, {"n", sequenceOf(number)}});
}

// One by one, for a range may lie in several lots.
void countIssued(RecordForm &form, int row)
{
    const QString start = stored(form, row, "hxdh_st"), end = stored(form, row, "hxdh_en");
    if (!counts(form, row) || start.isEmpty())
        return;
    const QString series = seriesOf(start);
    const int first = sequenceOf(start);
    const bool isDone = dialogs().steps(&form, QStringLiteral("正在登记领用份数……"), formsFrom(start, end), [&](int i) {
        form.connection()->Execute(countIssue, {{"series", series}, {"n", first + i}});
    });
    if (!isDone)
        throw DataError(0, QStringLiteral("登记已取消，领用记录尚未保存。"));
}

// What is typed into a lot meanwhile stays, and meets the new counters when it is stored.
void showCounters(RecordForm &form)
{
    RecordForm &lots = form.beside(Lots);
    if (&form != &lots && !lots.isBusy() && !lots.records().hasPendingChanges())
        lots.refresh();
    form.beside(Returns).offer("Combo1(2)", openInvoices);
}

// ---- the tabs ----

RecordFormSpec tabOf(Tab number, const QString &caption, const char *statement, const QString &control)
{
    RecordFormSpec form;
    form.name = "CY_HXD_Djb";
    form.caption = caption;
    form.tab = number;
    form.statement = statement;
    form.control = control;
    form.pairsInRow = 3;
    form.listBelow = true;
    form.failures.add = Failure::Skip;
    form.hasNavigation = false;
    form.disablesCombos = true;
    form.adding = Adding::UntilStored;
    form.onLeft = left;
    form.onSaved = showCounters;
    return form;
}

RecordFormSpec lots()
{
    RecordFormSpec form = tabOf(Lots, "外管局领单", "SELECT * FROM CY_HXD_WGJ_LD ORDER BY DJRQ", "Ado_wgj_lD");
    form.pages = {{"",
                   {{"Text1(0)", "djrq", "领取日期：", field::date},
                    {lotStart, "start", "起始号码："},
                    {lotEnd, "endH", "终止号码："},
                    {"Combo1(0)", "gsmc", "申领公司：", field::combo(companies), 2},
                    {"Combo1(1)", "lqr", "申领人员：", field::combo(staff)},
                    {"T_Zj", "GL_FenShU", "共领份数："},
                    {"T_Yy", "YY_FenShU", "已用份数："},
                    {"T_Sy", "SY_FenShU", "剩余份数："},
                    {"T_hs", "HS_FenShU", "回收份数："}}}};
    form.key = lotStart;
    form.firstFocus = "Text1(0)";
    form.list = {
        {"djrq", "请领日期"}, {"start", "起始号码"}, {"endH", "终止号码"}, {"GSMC", "公司名称"}, {"lqr", "领取人"}};
    form.listName = "TDBGrid1";
    form.defaults = {today("djrq"), {"GL_FenShU", "0"}, {"HS_FenShU", "0"}, {"YY_FenShU", "0"}, {"SY_FenShU", "0"}};
    return form;
}

RecordFormSpec returns()
{
    const QString more = "当前核销单补充资料";
    RecordFormSpec form = tabOf(Returns, "核销单回收", "SELECT * FROM CY_HXD_GSLY ORDER BY HXDH,DJRQ", "Ado_Hxd_LY");
    form.pages = {
        {"",
         {{"Text1(3)", "djrq", "核销日期：", field::date},
          {returnNumber, "hxdh", "核销单号："},
          {"Combo1(2)", "fpbh", "发票号码：", field::combo(openInvoices)},
          {"Combo1(6)", "MYFS", "贸易方式：",
           field::combo(QStringList{"正常贸易（退税）", "正常贸易（不退税）", "作废", "来料加工", "进料加工（退税）",
                                    "进料加工（不退税）"})},
          {"Combo1(7)", "SHFS", "收汇方式：", field::combo(QStringList{"信用证", "托收", "自寄单据", "其他"})},
          {"Text1(5)", "htbh", "外销合同："},
          {"Text1(6)", "bizh", "核销币种："},
          {"Text1(7)", "hxje", "核销总值："},
          {shipmentDate, "zyqx", "装运期限："},
          {"Text1(9)", "gsmc", "公司名称："},
          {"Combo1(3)", "ldy", "核 销 员：", field::combo(staff)},
          {"Text1(10)", "bgdh", "报关单号："},
          {"Text1(11)", "cpmc", "商品名称："},
          {"Text1(12)", "jianshu", "包装件数："},
          {"Text1(13)", "b_zdw", "包装单位："},
          {.name = "Text1(19)", .column = "SHjE", .caption = "收汇金额", .group = more},
          {.name = "Text1(21)", .column = "DkLz", .caption = "抵扣料值", .group = more},
          {.name = "Text1(23)", .column = "YBF", .caption = "运（保）费", .group = more},
          {.name = "Text1(25)", .column = "YJHK", .caption = "佣金回扣", .group = more},
          {.name = "Text1(20)", .column = "TPKE", .caption = "退赔款额", .group = more},
          {.name = "Text1(22)", .column = "JGLZ", .caption = "加工料值", .group = more},
          {.name = "Text1(24)", .column = "QTFY", .caption = "其它费用", .group = more},
          {.name = "Text1(26)", .column = "CHAE", .caption = "差   额", .group = more}}}};
    form.key = returnNumber;
    form.firstFocus = "Text1(3)";
    form.list = {{"hXDH", "核销单号"}, {"fpbh", "发票编号"}, {"htbh", "外销合同"},
                 {"djrq", "核销日期"}, {"GSMC", "公司名称"}, {"ldy", "核销员"}};
    form.listName = "TDBGrid2";
    form.defaults = {today("djrq"), {"fpbh", ""}}; // beside a return without any (Null) no invoice would be offered
    form.picks = {{"Combo1(2)",
                   {{.statement = invoice,
                     .copies = {{"htbh", "htbh"},
                                {"gsmc", "gsmc"},
                                {"bizh", "bizh"},
                                {"zyqx", "zyqx"},
                                {"hxdh", "hxdh"},
                                {"bgdh", "hgbm"},
                                {"cpmc", "cpmc"},
                                {"b_zdw", "b_zdw"}}},
                    {.statement = totalsOfInvoice,
                     .copies = {{"jianshu", "jianshu"}, {"hxje", "zjje"}},
                     .also = [](RecordForm &one, const Row *totals) {
                         if (!totals)
                             one.records().Fields("jianshu").setValue(0.0);
                     }}}}};
    form.onNew = countReturned;
    return form;
}

RecordFormSpec issues()
{
    RecordFormSpec form =
        tabOf(Issues, "核销单领用", "SELECT * FROM CY_HXD_GSHS ORDER BY HXDH_st,hxdh_en,DJRQ", "Ado_HxD_hS");
    form.pages = {{"",
                   {{"Text1(14)", "djrq", "领用日期：", field::date},
                    {issueStart, "hxdh_st", "起始单号："},
                    {issueEnd, "hxdh_en", "终止单号："},
                    {"Combo1(4)", "gsmc", "公司名称：", field::combo(companies), 2},
                    {"Combo1(5)", "hxy", "领 单 员：", field::combo(staff)},
                    {"Text1(17)", "htbh", "外销合同："},
                    {"Text1(18)", "ly_fenshu", "领用份数："}}}};
    form.key = issueStart;
    form.firstFocus = "Text1(14)";
    form.list = {{"hxdh_st", "起始单号"}, {"hxdh_en", "终止单号"}, {"htbh", "合同号码"}, {"ly_fenshu", "领用份数"},
                 {"djrq", "领用日期"},    {"hxy", "领单员"},       {"GSMC", "公司名称"}};
    form.listName = "TDBGrid3";
    form.defaults = {today("djrq")};
    // Looks the company's name up among the invoice numbers: what it copies is there only where both are alike.
    form.picks = {
        {"Combo1(4)",
         {{.statement = invoice, .copies = {{"htbh", "htbh"}, {"gsmc", "gsmc"}, {"hxdh", "hxdh"}, {"bgdh", "hgbm"}}}}}};
    form.onNew = countIssued;
    return form;
}

} // namespace

RecordFormSpec CY_HXD_Djb()
{
    return {.name = "CY_HXD_Djb", .caption = "核销单管理", .tabs = {lots(), returns(), issues()}};
}

} // namespace tradewick
