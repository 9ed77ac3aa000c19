// The goods register and its price list: a head for each product, and under it a price row for each size, of all
// customers or of one.
#include "common/globals.h"
#include "common/record_form.h"
#include "masterdata/masterdata.h"
#include "papers/papers.h"

namespace tradewick
{

namespace
{

std::optional<double> sumOfParts(const LineNumbers &price)
{
    return price["jmdj"] + price["jkdj"];
}

// ---- save as: the prices are copied under the empty code and a new product is begun, whose code is typed next ----

const char *const copyPrice = "insert into yy_bzdj_b(cpbh,gg,gys_bizh,gys_dj,jmdj,jkdj) "
                              "values('','{gg}','{gys_bizh}','{gys_dj}','{jmdj}','{jkdj}')";
const char *const attachCopies = "update yy_bzdj_b set cpbh='{cpbh}' where cpbh=''";
const char *const dropCopies = "delete from yy_bzdj_b where cpbh=''";
const char *const copying = "copying"; // copied prices wait for the OK that names the new product

void saveAs(RecordForm &form)
{
    if (form.isBusy() || form.tellWaiting())
        return;
    const QStringList fields{"Combo1(0)", "Combo1(1)", "Text(2)", "Text(1)", "Text(3)"};
    QStringList kept;
    for (const QString &field : fields)
        kept.append(form.text(field).trimmed());
    bool copied = false;
    form.run(Failure::Report, {[&] {
                                   form.connection()->transaction([&] {
                                       Recordset &prices = form.lines();
                                       for (int row = 0; row < prices.RecordCount(); ++row) {
                                           Values price; // a general price: whose customer it was for is not copied
                                           for (const char *column : {"gg", "gys_bizh", "gys_dj", "jmdj", "jkdj"})
                                               price.insert(column, prices.valueAt(row, prices.columnIndex(column)));
                                           form.connection()->Execute(copyPrice, price);
                                       }
                                   });
                               },
                               [&] { copied = true; }});
    if (!copied)
        return;
    form.setProperty(copying, true);
    form.add();
    for (int i = 0; i < fields.size(); ++i)
        form.setText(fields[i], kept[i]);
}

void attach(RecordForm &form)
{
    if (!form.property(copying).toBool())
        return;
    form.connection()->Execute(attachCopies, {{"cpbh", form.text("Text(0)")}});
    form.connection()->onCommit([&form] { form.setProperty(copying, false); });
}

void dropCopied(RecordForm &form)
{
    if (form.isAdding() && form.property(copying).toBool())
        form.connection()->Execute(dropCopies);
}

// Grid and combo boxes are locked before the code is looked at: a refused OK leaves them so, until the next one that is
// taken, or Cancel.
void lockCombos(RecordForm &form)
{
    form.lockField("Combo1(0)");
    form.lockField("Combo1(1)");
}

} // namespace

RecordFormSpec yy_cpbj()
{
    return {
        .name = "yy_cpbj",
        .caption = "商品资料设置",
        .statement = "select * FROM yy_bzdj order by cpbh,CPMC",
        .pages = {{"",
                   {{"Text(0)", "cpbh", "商品编号:"},
                    {"Combo1(0)", "cplb", "商品类别:", field::combo("select DISTINCT cplb from yy_bzdj")},
                    {"Text(1)", "cpmc", "商品名称:"},
                    {"Combo1(1)", "dw",
                     "单    位:", field::combo("select DISTINCT jldw from sys_jldw where not jldw is null ")},
                    {"Text(2)", "bacp", "H.S.编码:"},
                    {"Text(3)", "beizhu", "备    注:"}}}},
        .pairsInRow = 2,
        .list = {{"cpbh", "商品编号"}, {"cpmc", "商品名称"}},
        .buttons =
            {{.name = "CMd_LC", .caption = "另存", .shortcut = "Ctrl+Shift+S", .press = saveAs, .whileAdding = true},
             {.name = "Cmdprint",
              .caption = "打印",
              .shortcut = "Ctrl+P",
              .press =
                  [](RecordForm &form) { // the whole price list, whatever product is shown
                      printRecord("商品资料明细表", form.text("Text(0)"), &form, "没有记录，不能打印！");
                  },
              .ofStored = true}},
        .required = {{"Text(0)", "编号不能为空"}},
        .checks = {isNew("Text(0)", "select * from yy_bzdj where cpbh='{text}'", "商品编码，不能重复，请核对！")},
        .lines = {.statement = "select * from yy_bzdj_b where cpbh='{cpbh}'",
                  .deletion = "delete from yy_bzdj_b where cpbh='{cpbh}'",
                  .key = "cpbh",
                  .grids = {{.columns = {{"gg", "规格"},
                                         {"gys_bizh", "币制"},
                                         {"jkdj", "画框单价"},
                                         {"jmdj", "镜/画单价"},
                                         {"gys_dj", "货品单价"},
                                         {"cpbh", "商品编码"},
                                         {"khbh", "客户编号"},
                                         {"khmc", "客户名称"}},
                             .dropDowns = {{"khbh", "T_down",
                                            "select khbh FROM yy_gwkh_zl where not khbh is null order by khbh"}},
                             .rules = {{.edited = {"gg"}, .presets = {{"cpbh", "{Text(0)}"}, {"gys_bizh", "USD"}}},
                                       // What was typed over the sum is the sum again at once.
                                       {{"jkdj", "jmdj", "gys_dj"}, "gys_dj", sumOfParts},
                                       {.edited = {"khbh"},
                                        .statement = "select khmc from yy_gwkh_zl where khbh='{khbh}'",
                                        .copies = {{"khmc", "khmc"}}}},
                             .deletesWhileLocked = false}},
                  .starts = {{"jkdj", "0"}, {"jmdj", "0"}, {"gys_dj", "0"}},
                  .startsNeedKey = true},
        .filters = {{"Text1", "商品查询", "select * FROM yy_bzdj where cpbh like '%{text}%' order by cpbh,CPMC"}},
        .failures = {.next = Failure::Skip,
                     .previous = Failure::Skip,
                     .ends = Failure::Skip,
                     .add = Failure::None,
                     .ok = Failure::Skip},
        .arrowsWrap = false,
        .cancelDropsLines = true,
        .afterDelete = AfterDelete::LastBehindLast,
        .refilled = {"Combo1(0)"},
        .onOk = lockCombos,
        .onStore = attach,
        .onCancel = dropCopied,
    };
}

} // namespace tradewick
