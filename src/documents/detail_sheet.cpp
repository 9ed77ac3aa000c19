// The detail sheet: one record of all that the documents of a shipment print, filled from a contract and a credit and
// completed by hand.
#include "common/dialogs.h"
#include "common/record_form.h"
#include "data/date_text.h"
#include "data/sql_error.h"
#include "documents/documents.h"
#include "documents/mailing_certificate.h"
#include "papers/papers.h"

namespace tradewick
{

namespace
{

const char *const ports = "select DISTINCT gkmc from sys_gksz where not gkmc is null order by gkmc";
const char *const openContracts = "select DISTINCT htbh from yy_gw_wxht_b where not htbh is null and (wanch is null or "
                                  "wanch='未完成') order by htbh";
const char *const suppliers = "select DISTINCT gfbh from yy_gyszl where not gfbh is null order by gfbh";
const char *const supplierNames = "select gfbh,zwmc from yy_gyszl where not gfbh is null";
const char *const portNames = "select gkmc,gkmc_en from sys_gksz where not gkmc is null";
const char *const customsUsed = "select DISTINCT hgmc from yy_mxb_h where not hgmc is null order by hgmc";
const char *const insurancesUsed = "select DISTINCT bxlb from yy_mxb_h where not bxlb is null order by bxlb";
const char *const units = "select DISTINCT jldw from sys_jldw where not jldw is null order by jldw";
const char *const unitNames = "select jldw,beizhu from sys_jldw where not jldw is null";
const char *const destinationsUsed = "select DISTINCT xfgb from yy_mxb_h where not xfgb is null order by xfgb";

// ---- what a choice fills in ----

const char *const contract =
    "select isnull(phone,' ') as phone,isnull(hl,0) as hl,isnull(fax,' ') as fax,isnull(dizh,' ')as "
    "dizh,isnull(bizh,' ')as bizh,isnull(khmc,' ')as khmc,isnull(gb,' ')as gb,isnull(sheng,' ')as sheng "
    ",isnull(shi,' ')as shi,isnull(jgtk,' ')as jgtk,isnull(bank_name,' ') as bank_name,isnull(bank_code,' ') as "
    "bank_code,isnull(qttk,'')as qttk,isnull(gsmc,' ')as gsmc,isnull(zygk,' ')as zygk,isnull(mdgk,' ')as "
    "mdgk,yy_gw_wxht_h.* from yy_gw_wxht_h where htbh='{text}' and not khmc is null";
const char *const removeGoods = "delete from yy_mxb_b where fpbh='{key}'";
const char *const amountOfContract =
    "select htbh,sum(isnull(je,0)) as zje from yy_gw_wxht_b where htbh='{text}' group by htbh ";
// A blank mark counts as unfinished here, not in the list of contracts.
const char *const openLines =
    "select isnull(yanse,'') as yanse,isnull(cpbh,'') as cpbh,isnull(cpmc,'') as cpmc,isnull(yw_cpmc,'') as "
    "yw_cpmc,isnull(cplb,'') as cplb,isnull(khlh,'') as khlh,isnull(gg,'') as gg ,isnull(dj,0) as dj,isnull(dw,'') as "
    "dw,isnull(htbh,'') as htbh,isnull(gsmc,'') as gsmc,jhrq,isnull(sl,0) as sl,isnull(je,0) as je,bacp,isnull(zzs,0) "
    "as zzs,isnull(zsl,0) as zsl,isnull(jmdj,0) as jmdj,isnull(jkdj,0) as jkdj FROM yy_gw_wxht_b where "
    "htbh='{text}'and (wanch is null or wanch='' OR WANCH='未完成')";
const char *const insertGoods =
    "insert into yy_mxb_b(xh,fpbh,cpbh,cpmc,yw_cpmc,cplb,khlh,gg,dj,dw,htbh,gsmc,jhrq,sl,je,bacp,yanse,zzs,zsl,jmdj,"
    "jkdj) values('{i}','{key}','{cpbh}','{cpmc}','{yw_cpmc}','{cplb}','{khlh}','{gg}','{dj}','{dw}','{htbh}','{gsmc}',"
    "'{jhrq}','{sl}','{je}','{bacp}','{yanse}','{zzs}','{zsl}','{jmdj}','{jkdj}')";
const char *const creditsOfContract =
    "select DISTINCT xyzh from yy_xyz_nb where not xyzh is null and htbh='{text}' order by xyzh";
const char *const credit = "select * from yy_xyz_nh where xyzh='{text}'";
const char *const supplier = "select * from yy_gyszl where gfbh='{text}' and not zwmc is null";

PickSpec contractPick()
{
    return {"Combo1(0)",
            {{.statement = contract,
              .copies = {{"khmc", "khmc"},
                         {"mdgk", "mdgk"},
                         {"zygk", "zygk"},
                         {"jgtk", "jgtk"},
                         {"bizh", "bizh"},
                         {"qttk", "qttk"},
                         {"babm", "bgbm"},
                         {"zyqx", "jhdz"},
                         {"madol", "madol"},
                         {"tstk", "fstk"},
                         {"sjzch", "sjzch"},
                         {"swdjh", "swdjh"},
                         {"gsmc", "gsmc"},
                         {"hl", "hl"},
                         {"e_gsmc", "e_gsmc"},
                         {"phone", "phone"},
                         {"fax", "fax"},
                         {"bank_name", "bank_name"},
                         {"bank_code", "bank_code"},
                         {"gs_phone", "gs_phone"},
                         {"gs_fax", "gs_fax"},
                         {"logo", "logo"},
                         {"gsdz", "gsdz"},
                         {"e_gsdz", "e_gsdz"},
                         {"gs_email", "gs_email"}},
              .clear = removeGoods},
             {.statement = contract, .copies = {{"khdz", "dizh"}, {"mygb", "gb"}}, .trimmed = true},
             {.statement = amountOfContract,
              .copies = {{"kzje", "zje"}},
              .also =
                  [](RecordForm &form, const Row *found) {
                      if (!found) // the customer's address goes, not the amount
                          form.records().Fields("khdz").setValue(QString());
                  }},
             {.statement = openLines, .copies = {{"cpbm", "bacp"}, {"cpmc", "cpmc"}}, .insert = insertGoods},
             {.statement = creditsOfContract, .offers = "Combo1(1)", .also = [](RecordForm &form, const Row *found) {
                  if (!found) // a credit of another contract does not stay
                      form.setText("Combo1(1)", {});
              }}}};
}

PickSpec creditPick()
{
    return {"Combo1(1)",
            {{.statement = credit, .copies = {{"kzrq", "kzrq"}, {"kzyh", "kzyh"}, {"tzyh", "tzyh"}}, .trimmed = true},
             {.statement = credit,
              .copies = {{"yfyh", "yfyh"},
                         {"bizh", "bizh"},
                         {"xyzlb", "xyzlb"},
                         {"fpzy", "fpzy"},
                         {"zhuanchuan", "zhuanchuan"},
                         {"xyzyxq", "xyzyxq"},
                         {"kzhbm", "kzhbm"},
                         {"kzje", "kzje"}}}}};
}

PickSpec supplierPick()
{
    return {"Combo1(16)",
            {{supplier,
              {{"cg_csmc", "zwmc"},
               {"cg_csdz", "zwdz"},
               {"cg_csswdjh", "tysh"},
               {"cg_cskhh", "khh"},
               {"cg_csyhzh", "yhzh"},
               {"cg_csphone", "phone"},
               {"cg_csfax", "fax"}}}}};
}

// ---- the goods ----

std::optional<double> perPackage(const LineNumbers &line, const char *total)
{
    return line["jianshu"] == 0 ? std::nullopt : std::optional(line[total] / line["jianshu"]);
}

std::optional<double> amount(const LineNumbers &line)
{
    return line["dj"] * line["sl"];
}
std::optional<double> netWeight(const LineNumbers &line)
{
    return line["jianshu"] * line["djz"];
}
std::optional<double> grossWeight(const LineNumbers &line)
{
    return line["jianshu"] * line["dmz"];
}
std::optional<double> volume(const LineNumbers &line)
{
    return line["jianshu"] * line["djtj"];
}
std::optional<double> netWeightOfOne(const LineNumbers &line)
{
    return perPackage(line, "zjz");
}
std::optional<double> grossWeightOfOne(const LineNumbers &line)
{
    return perPackage(line, "zmz");
}
std::optional<double> volumeOfOne(const LineNumbers &line)
{
    return perPackage(line, "hjtj");
}

LinesSpec goods()
{
    const QStringList ofPackage{"jianshu", "djz", "dmz", "djtj"}, ofAll{"zjz", "zmz", "hjtj"};
    return {
        .statement = "select * from yy_mxb_B with (nolock) where fpbh='{fpbh}'",
        .deletion = "delete from yy_mxb_B where fpbh='{fpbh}'",
        .key = "fpbh",
        .grids = {{.columns = {{"cpbh", "商品编码"},  {"cpmc", "商品名称"},  {"guihao", "柜号"},
                               {"fth", "封条号"},     {"gg", "规格"},        {"dw", "单位"},
                               {"dj", "单价"},        {"sl", "数量"},        {"fpbh", "发票编号"},
                               {"jianshu", "件数"},   {"b_zdw", "包装种类"}, {"jh", "件箱号"},
                               {"djz", "单净重"},     {"dmz", "单毛重"},     {"zjz", "合计净重"},
                               {"zmz", "合计毛重"},   {"je", "金额"},        {"djtj", "单件体积（CBM）"},
                               {"hjtj", "合计体积"},  {"shuming", "说明"},   {"xh", "序号"},
                               {"jmdj", "镜/画单价"}, {"jkdj", "画框单价"}},
                   .dropDowns = {{"b_zdw", "TDBDropDown1", units}},
                   // A total typed by hand sets the figure of one package, and the reverse; the quantity follows
                   // neither.
                   .rules = {{{"dj", "sl", "je"}, "je", amount},
                             {ofPackage, "zjz", netWeight},
                             {ofPackage, "zmz", grossWeight},
                             {ofPackage, "hjtj", volume},
                             {ofAll, "djz", netWeightOfOne},
                             {ofAll, "dmz", grossWeightOfOne},
                             {ofAll, "djtj", volumeOfOne}},
                   .page = 1}},
        .starts = {{"fpbh", "{Text1(0)}"}, {"dj", "0"}, {"sl", "0"}, {"jianshu", "0"}},
    };
}

// ---- fields ----

QVector<PageSpec> pages()
{
    const QString customs = "报关资料", certificates = "FormA 或 C/O补充资料", ninth = "FormA第九栏显示内容",
                  eighth = "FormA第八栏显示内容", base = "元基准币";
    const FieldType allowed = field::combo(QStringList{"Allowed", "Not-Allowed"});
    return {
        {"主 要 信 息",
         {{"Text1(0)", "fpbh", "发票号码："},
          {"Text1(1)", "djbh", "统一发票号:"},
          {"Text1(2)", "djrq", "登记日期：", field::date},
          {"Combo1(0)", "htbh", "合同编号：", field::combo(openContracts)},
          {"Combo1(1)", "xyzh", "信用证号：", field::combo()},
          {.name = "Combo1(2)",
           .column = "fkfs",
           .caption = "付款方式：",
           .type = field::combo({"L/C AT Sight", "T/T", "L/C", "D/A", "D/P"}),
           .unit = "（收汇）"},
          {"Combo1(3)", "xyzlb", "信证类别：",
           field::combo({"AT Sight", "15 Days", "30 Days", "45 Days", "60 Days", "90 Days", "120 Days", "180 Days",
                         "360 Days"})},
          {"Text1(3)", "kzje", "开证金额："},
          {.name = "Text1(4)", .column = "bizh", .joined = true},
          {"Text1(5)", "xyzyxq", "证有效期：", field::date},
          {"Text1(6)", "zygk", "装运港口："},
          {"Combo1(17)", "zkg", "转运港口：", field::combo(ports, portNames)},
          {"Text1(7)", "mdgk", "目的港口："},
          {"Combo1(4)", "yfzffs", "运费支付：", field::combo({"PREPAID", "COLLECT"})},
          {"Combo1(5)", "fpzy", "分批装运：", allowed},
          {"Combo1(6)", "zhuanchuan", "转    船：", allowed},
          {"Text1(8)", "jgtk", "价格条款："},
          {"Text1(9)", "qttk", "其它条款：", field::text, 2},
          {"Text1(10)", "zyqx", "装运限期 及地点", field::text, 2},
          {"Text1(11)", "kzhbm", "开证行编号："},
          {"Text1(12)", "kzrq", "开证日期：", field::date},
          {"Text1(13)", "kzyh", "开证银行：", field::text, 2},
          {"Text1(14)", "tzyh", "通知银行："},
          {"Text1(15)", "yfyh", "议付银行：", field::text, 2},
          {.name = "Text1(16)", .column = "khmc", .caption = "国外客户：", .unit = "(开证人)"},
          {.name = "Text1(17)", .column = "gsmc", .caption = "经营单位：", .span = 2, .unit = "(出口方)"}}},
        {"商 品 信 息",
         {{"Text1(18)", "madol", "唛头", field::longText},
          {"Text1(19)", "tstk", "特殊条款", field::longText, 2},
          {"Combo1(7)", "dw", "汇总单位：", field::combo(units, unitNames)},
          {"Combo1(8)", "b_zdw", "汇总包装单位：", field::combo(units, unitNames)},
          {.name = "Text1(20)", .column = "yjl", .caption = "佣金率：", .unit = "%"},
          {"Check1", "xsfp", "显示于发票", field::check},
          {"Check2", "xszxd", "显示于装箱单", field::check},
          {"Check3", "xsforma", "显示于产地证及FORMA", field::check}}},
        {"报关单产地证",
         {{"Combo1(13)", "hgmc", "海关名称：", field::used(customsUsed), 1, customs},
          {"Text1(21)", "hgbm", "报关单号：", field::text, 1, customs},
          {"Text1(22)", "bgrq", "申报日期：", field::date, 1, customs},
          {"Text1(23)", "hgfxrq", "放行日期：", field::date, 1, customs},
          {"Text1(24)", "mygb", "贸易国别：", field::text, 1, customs},
          {"Combo1(9)", "xfgb", "消费国别：", field::used(destinationsUsed), 1, customs, "(运抵国)"},
          {"Combo1(10)", "myxz", "贸易性质：", field::combo({"一般贸易", "进料加工", "来料加工", "补偿贸易", "退货"}),
           1, customs},
          {"Combo1(11)", "ysfs", "运输方式：",
           field::combo({"VESSEL", "TRAIN", "SEA/AIR", "LAND BRIAGE", "TRUCK", "AIR", "BY SEA"}), 1, customs},
          {"Text1(25)", "babm", "备案号码：", field::text, 1, customs},
          {"Text1(26)", "xkzh", "许可证号：", field::text, 1, customs},
          {"Text1(27)", "hxdh", "核销单号：", field::text, 1, customs},
          {"Text1(28)", "fsdj", "附随单据：", field::text, 1, customs},
          {"Text1(29)", "hyd", "货 源 地：", field::text, 1, customs},
          {"Combo1(12)", "zmxz", "征免性质：", field::combo(QStringList{"一般征税", "免税"}), 1, customs},
          {"Combo1(14)", "sfts", "出口退税：", field::combo(QStringList{"退税", "不退税"}), 1, customs},
          {"Text1(30)", "msqk", "税收征免情况：", field::text, 1, customs},
          {"Combo1(16)", "cg_csbh", "厂商编号：", field::combo(suppliers, supplierNames), 1, certificates},
          {"Text1(31)", "cg_csmc", "厂商名称：", field::text, 1, certificates},
          {"Text1(32)", "cg_csdz", "厂商地址：", field::text, 1, certificates},
          {"Text1(33)", "cg_csphone", "电话：", field::text, 1, certificates},
          {"Text1(34)", "cdzh", "产地证号：", field::text, 1, certificates},
          {"Text1(35)", "qzdd", "签证地点：", field::text, 1, certificates},
          {"Text1(36)", "qzrq", "签证日期：", field::date, 1, certificates},
          {"Text1(37)", "cpbm", "H.S.编码：", field::text, 1, certificates},
          {"Text1(38)", "cpmc", "商品总称：", field::text, 1, certificates},
          {"Text1(39)", "scdd", "商品生产制造加工地点", field::text, 1, certificates},
          {"Text1(40)", "jkgx", "含进口成分产品主要制造加工工序", field::text, 2, certificates},
          {"Check4(0)", "lymz", "列印毛重", field::check, 1, ninth},
          {"Check4(1)", "lysl", "列印数量", field::check, 1, ninth},
          {"Check4(2)", "qbgc", "全部国产\"P\"", field::check, 1, eighth},
          {"Check4(3)", "hjkcf", "含进口成分\"W\"", field::check, 1, eighth}}},
        {"其 它 信 息",
         {{"Text1(41)", "dcsm", "订舱详细（说明）：", field::longText, 3},
          {"Text1(42)", "ship_name", "运输工具（船名）："},
          {"Text1(43)", "jzxh", "集装箱/封条号组："},
          {"Text1(44)", "fthm", "封条号码（  组）："},
          {"Text1(45)", "zhdh", "装货单号："},
          {"Text1(46)", "thdh", "提货单号："},
          {"Text1(47)", "qyrq", "开船日期：", field::date},
          {.name = "Text1(48)", .column = "zyf", .caption = "装 运 费：", .unit = base},
          {.name = "Text1(49)", .column = "qtfy", .caption = "其它费用（拖车、关、证手续费）：", .unit = base},
          {"Text1(50)", "bxdh", "保险单号："},
          {"Combo1(15)", "bxlb", "保险类别：", field::used(insurancesUsed)},
          {"Text1(51)", "pkdd", "赔款地点："},
          {.name = "Text1(52)", .column = "bxf", .caption = "保 险 费：", .unit = base},
          {.name = "Text1(53)", .column = "bxje", .caption = "保险金额：发票金额的", .unit = "%"},
          {"Text1(54)", "zjsmc", "中间商名称及地址："},
          {.name = "Text1(55)", .column = "zjsyjl", .caption = "中间商佣金率：", .unit = "%"}}},
    };
}

// ---- save as ----

// A row that every copy finds is written to before the scratch tables are: whoever copies next waits there. The scratch
// tables cannot hold anybody back as long as they are empty.
const char *const firstSheet = "select min(fpbh) as fpbh from yy_mxb_h";
const char *const lockSheet = "update yy_mxb_h set fpbh=fpbh where fpbh='{fpbh}'";
const char *const takenBySheet = "select fpbh from yy_mxb_h where fpbh='{new}'";
const char *const takenByGoods = "select fpbh from yy_mxb_b where fpbh='{new}'";
const char *const copying[] = {"delete from yy_mxb_h_tm",
                               "delete from yy_mxb_b_tm",
                               "insert into yy_mxb_h_tm select * from yy_mxb_h where fpbh='{fpbh}'",
                               "insert into yy_mxb_b_tm select * from yy_mxb_b where fpbh='{fpbh}'",
                               "update yy_mxb_b_tm set fpbh='{new}'",
                               "update yy_mxb_h_tm set fpbh='{new}',djrq='{today}'",
                               "insert into yy_mxb_h select * from yy_mxb_h_tm",
                               "insert into yy_mxb_b select * from yy_mxb_b_tm"};

void saveAs(RecordForm &form)
{
    if (form.text("Text1(0)").isEmpty() || form.tellWaiting())
        return;
    form.run(Failure::Report, {[&] {
                 const QString number = dialogs()
                                            .input(&form, QStringLiteral("请输入另存发票号:"),
                                                   RecordForm::systemTitle(), form.proposedKey())
                                            .value_or(QString())
                                            .trimmed();
                 if (number.isEmpty())
                     return;
                 copySheet(*form.connection(), form.text("Text1(0)"), number);
                 form.refresh();
                 form.records().Find("fpbh", number);
             }});
}

// ---- printing ----

const QString taxInvoice = "出口专用发票", taxInvoiceOverlay = "出口专用发票套打", certificate = "寄单证明";

// The documents of a sheet; how the tax invoice is printed is asked.
QStringList choices()
{
    QStringList all;
    for (const Document &document : documents())
        if (document.record.name == u"单证明细表" && document.name != taxInvoiceOverlay)
            all.append(document.name);
    return all;
}

void print(RecordForm &form)
{
    if (choices().contains(form.choice("Com_Print")))
        printSheet(form.choice("Com_Print"), form.text("Text1(0)"), &form);
    else
        form.findChild<QWidget *>("Com_Print")->setFocus();
}

} // namespace

void printSheet(const QString &choice, const QString &number, QWidget *parent)
{
    QString chosen = choice;
    if (!choices().contains(chosen))
        return;
    if (chosen == taxInvoice) {
        const auto isOverlay = dialogs().choose(parent, QStringLiteral("是否套打？否，则正常打印。"),
                                                RecordForm::systemTitle(), MessageIcon::Information);
        if (!isOverlay)
            return;
        if (*isOverlay)
            chosen = taxInvoiceOverlay;
    }
    if (chosen == certificate && !number.trimmed().isEmpty()) {
        auto *editor = new YY_JdZm_rpt(document(chosen), number, parent);
        editor->setAttribute(Qt::WA_DeleteOnClose);
        editor->open();
        return;
    }
    printRecord(chosen, number, parent);
}

void copySheet(Connection &connection, const QString &from, const QString &to)
{
    const Values values{{"fpbh", from}, {"new", to}, {"today", dateText(QDate::currentDate())}};
    // Read before, for what a transaction reads is as old as its first reading.
    const Values first = connection.rows(firstSheet).first().named();
    connection.transaction([&] {
        connection.Execute(lockSheet, first);
        for (const char *taken : {takenBySheet, takenByGoods})
            if (!connection.rows(taken, values).isEmpty())
                throw refused(Refusal::Duplicate, {});
        for (const char *statement : copying)
            connection.Execute(statement, values);
    });
}

RecordFormSpec YY_DZ_MXB()
{
    return {
        .name = "YY_DZ_MXB",
        .caption = "各类单证明细表",
        .statement = "select* FROM yy_mxb_H with(nolock)",
        .pages = pages(),
        .pairsInRow = 3,
        .list = {{"fpbh", "发票号码"}, {"khmc", "客户名称"}},
        .captions = {"前端", "向前", "向后", "后端", "添加", "删除", "编辑", "确认", "取消", "返回"},
        .choices = {{"Com_Print", "单证打印选项:", choices()}},
        // Enter goes from the choice to what prints it.
        .buttons = {{"Cmdprint", "打印", "Ctrl+P", print}, {"Save_As", "另存", "Ctrl+Shift+S", saveAs}},
        .numbering = monthly("FP", "select distinct fpbh from yy_mxb_H where year(djrq)='{year}'and "
                                   "month(djrq)='{month}' order by fpbh"),
        .defaults = {today("djrq"),
                     {"myxz", "一般贸易"},
                     {"yfzffs", "PREPAID"},
                     {"dw", "PCS"},
                     {"b_zdw", "CTNS"},
                     {"ysfs", "BY SEA"},
                     {"yjl", "0"},
                     {"sfts", "退税"},
                     {"zmxz", "一般征税"},
                     {"bxje", "0"},
                     {"xsfp", "True"},
                     {"xszxd", "True"},
                     {"xsforma", "True"},
                     {"lysl", "True"},
                     {"qbgc", "True"}},
        .required = {{"Text1(0)", "所有名称不能为空"}},
        // A bad date of release is mended from the date of declaration on.
        .checks = {{.field = "Text1(23)", .focus = "Text1(22)"}},
        .picks = {contractPick(), creditPick(), supplierPick()},
        .lines = goods(),
        .filters = {{.name = "Com_Find",
                     .caption = "合同查询",
                     .statement = "select* FROM yy_mxb_H with(nolock) where htbh='{text}'",
                     .offers = openContracts}},
        .failures = failuresOfDocuments,
        .cancelDropsLines = true,
        .cancelReturns = true,
        .afterDelete = AfterDelete::Last,
    };
}

} // namespace tradewick
