#include "masterdata/products.h"

#include "common/dialogs.h"
#include "common/globals.h"
#include "common/number_text.h"
#include "papers/papers.h"

namespace tradewick
{

namespace
{

const char *const categories = "select DISTINCT cplb from yy_bzdj";

const RecordFormSpec productSpec = {
    .name = "yy_cpbj",
    .caption = "商品资料设置",
    .statement = "select * FROM yy_bzdj order by cpbh,CPMC",
    .fields = {{"Text(0)", "cpbh", "商品编号:"},
               {"Combo1(0)", "cplb", "商品类别:", FieldKind::Combo, 0, 1, categories},
               {"Text(1)", "cpmc", "商品名称:"},
               {"Combo1(1)", "dw", "单    位:", FieldKind::Combo, 0, 1,
                "select DISTINCT jldw from sys_jldw where not jldw is null "},
               {"Text(2)", "bacp", "H.S.编码:"},
               {"Text(3)", "beizhu", "备    注:"}},
    .pairsInRow = 2,
    .list = {{"cpbh", "商品编号"}, {"cpmc", "商品名称"}},
    .required = {{"Text(0)", "编号不能为空"}},
    .unique = {"select * from yy_bzdj where cpbh='{key}'", "商品编码，不能重复，请核对！"},
    .arrowsWrap = false,
    .failures = {.next = Failure::Skip,
                 .previous = Failure::Skip,
                 .ends = Failure::Skip,
                 .add = Failure::None,
                 .ok = Failure::Skip},
    .body = {.statement = "select * from yy_bzdj_b where cpbh='{cpbh}'",
             .deletion = "delete from yy_bzdj_b where cpbh='{cpbh}'",
             .key = "cpbh",
             .columns = {{"gg", "规格"},
                         {"gys_bizh", "币制"},
                         {"jkdj", "画框单价"},
                         {"jmdj", "镜/画单价"},
                         {"gys_dj", "货品单价"},
                         {"cpbh", "商品编码"},
                         {"khbh", "客户编号"},
                         {"khmc", "客户名称"}},
             .dropDowns = {{"khbh", "T_down", "select khbh FROM yy_gwkh_zl where not khbh is null order by khbh"}}},
    .printButtons = {{"Cmdprint", "打印", "Ctrl+P"}},
    .actions = {{"CMd_LC", "另存", "Ctrl+Shift+S", true}},
    .filter = {"Text1", "商品查询", "select * FROM yy_bzdj where cpbh like '%{text}%' order by cpbh,CPMC"},
};

const char *const defaultCurrency = "USD";

const char *const customerName = "select khmc from yy_gwkh_zl where khbh='{khbh}'";
const char *const copyPrice = "insert into yy_bzdj_b(cpbh,gg,gys_bizh,gys_dj,jmdj,jkdj) "
                              "values('','{gg}','{gys_bizh}','{gys_dj}','{jmdj}','{jkdj}')";
const char *const attachCopies = "update yy_bzdj_b set cpbh='{cpbh}' where cpbh=''";
const char *const dropCopies = "delete from yy_bzdj_b where cpbh=''";

// What a product saved under another code takes along.
const QStringList copiedFields{"Combo1(0)", "Combo1(1)", "Text(2)", "Text(1)", "Text(3)"};

} // namespace

yy_cpbj::yy_cpbj(QWidget *mainWindow) : RecordForm(productSpec, mainWindow) {}

void yy_cpbj::bodyRowStarted()
{
    if (fieldText("Text(0)").isEmpty())
        return;
    for (const char *price : {"jkdj", "jmdj", "gys_dj"})
        body().Fields(price).setValue(0);
}

void yy_cpbj::bodyCellEdited(const QString &column)
{
    if (column == "gg") {
        body().Fields("cpbh").setValue(fieldText("Text(0)").trimmed());
        body().Fields("gys_bizh").setValue(defaultCurrency);
    } else if (column == "jkdj" || column == "jmdj" || column == "gys_dj") {
        // What was typed over the sum is the sum again at once.
        const auto number = [this](const char *price) { return numberFromText(body().Fields(price).text()); };
        body().Fields("gys_dj").setValue(number("jmdj") + number("jkdj"));
    } else if (column == "khbh") {
        const QVector<Values> found = gConn->rows(customerName, {{"khbh", body().Fields("khbh").value()}});
        if (!found.isEmpty())
            body().Fields("khmc").setValue(found.first()["khmc"]);
    }
}

// The whole price list, whatever product is shown.
void yy_cpbj::print(const QString &)
{
    if (fieldText("Text(0)").trimmed().isEmpty()) {
        dialogs().message(this, QStringLiteral("没有记录，不能打印！"), QStringLiteral("系统提示"),
                          MessageIcon::Critical);
        return;
    }
    run(Failure::Report, {[this] { showDocument("商品资料明细表", *gConn, {}, this); }});
}

// Save as: the prices are copied under the empty code and a new product is begun, whose code is typed next.
void yy_cpbj::action(const QString &)
{
    if (isBusy())
        return;
    QStringList kept;
    for (const QString &field : copiedFields)
        kept.append(fieldText(field).trimmed());
    bool copied = false;
    run(Failure::Report, {[this] { copyPrices(); }, [&] { copied = true; }});
    if (!copied)
        return;
    m_copying = true;
    add();
    for (int i = 0; i < copiedFields.size(); ++i)
        setFieldText(copiedFields[i], kept[i]);
}

// A general price list: whose customer a price was for is not copied.
void yy_cpbj::copyPrices()
{
    inOneTransaction([this] {
        for (int row = 0; row < body().RecordCount(); ++row) {
            Values price;
            for (const char *column : {"gg", "gys_bizh", "gys_dj", "jmdj", "jkdj"})
                price.insert(column, body().valueAt(row, body().columnIndex(column)));
            gConn->Execute(copyPrice, price);
        }
    });
}

// Grid and combo boxes are locked before the code is looked at: a refused OK leaves them so, until the next one that is
// taken, or Cancel.
void yy_cpbj::saving()
{
    lockField("Combo1(0)", true);
    lockField("Combo1(1)", true);
    if (body().RecordCount() > 0)
        body().MoveLast();
}

void yy_cpbj::stored()
{
    if (!m_copying)
        return;
    gConn->Execute(attachCopies, {{"cpbh", fieldText("Text(0)")}});
    gConn->onCommit([this] { m_copying = false; });
}

// The rows of the product that is abandoned go with it, copies among them; those of a stored product that bears the
// typed code do not.
void yy_cpbj::cancelling()
{
    if (!isAdding())
        return;
    store([this] {
        if (m_copying)
            gConn->Execute(dropCopies);
        if (keyIsTaken())
            return;
        refreshBody();
        while (body().RecordCount() > 0) {
            body().MoveFirst();
            body().Delete();
        }
    });
}

void yy_cpbj::recordsChanged(Change change)
{
    if (change != Change::Saved)
        return;
    fillCombo("Combo1(0)", categories);
    if (!body().hasPendingChanges())
        refreshBody();
}

} // namespace tradewick
