// What all forms of master data have in common, and how each of them differs in it: fields, states, the walk through
// the records, messages, and what an error of the database shows.
#include "make_form.h"
#include "masterdata/company_registration.h"
#include "masterdata/currencies.h"
#include "masterdata/customers.h"
#include "masterdata/delivery_addresses.h"
#include "masterdata/departments.h"
#include "masterdata/payment_methods.h"
#include "masterdata/ports.h"
#include "masterdata/products.h"
#include "masterdata/regions.h"
#include "masterdata/settlement_terms.h"
#include "masterdata/shipping_companies.h"
#include "masterdata/staff.h"
#include "masterdata/suppliers.h"
#include "masterdata/trucking_companies.h"
#include "masterdata/units.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <QLabel>
#include <QRegularExpression>

#include <map>

namespace tradewick
{

using namespace test;

namespace
{

enum class After { Next, Last };           // which record a deletion shows
enum class On { Report, Skip, Unhandled }; // what becomes of an error of the database

struct Form {
    MakeForm make;
    const char *caption, *table;
    QString array;             // name of the text fields' array
    QString columns, captions; // of its fields in their order
    QString heads;             // of the list's columns
    QString notes = {};
    QString others = {};       // "Combo1=gsxz" for the fields beside the array
    QStringList required = {}; // "Text(0)=message", in the order they are looked at
    QString title = "提示";    // of those messages
    QString blanks = {};       // columns that hold two blanks where nothing was typed
    QString filled = {};       // other columns that hold something then
    On ok = On::Report, add = On::Report, next = On::Report, ends = On::Unhandled;
    After afterDelete = After::Next;
    bool lastAfterLast = false; // behind the last record deleted comes the last one left, not the first
    bool walksWhileBusy = false;
    const char *edit = "编辑"; // caption of Cmdedit

    friend void PrintTo(const Form &form, std::ostream *out) { *out << form.table; }
};

const QString codeOrName = "编号或名称不能为空", everyName = "所有名称不能为空";
const QStringList bothOf{"Text(0)=" + codeOrName, "Text(1)=" + codeOrName},
    nameAlone{"Text(0)=", "Text(1)=" + codeOrName};

const QString carrierColumns = "gsbh gsmc ywmc dizhi beizhu phone fax dzyx lxr yzbm dbgh";
const QString carrierCaptions = "|英文名称:|地        址:|备注说明:|电       话:|传        真:|电子邮箱:|联  系  人:|"
                                "邮政编号:|电报挂号:";
const QString partnerColumns = " zwdz phone fax frdb djrq hl ywdz ywmc lxr khh xydj yhzh tysh dzyx wz yzbm jyfw";
const QString partnerCaptions = "|开户银行:|信用等级:|银行账号:|统一税号:|电子邮箱:|网络地址:|邮政编码:|经营范围:";

const Form forms[] = {
    {.make = declared<Sys_bzsz>,
     .caption = "币制设置 ",
     .table = "sys_bzsz",
     .array = "Text",
     .columns = "bzbh bizh bzcode hl",
     .captions = "币制编号:|币制符号:|币制（中文）:|汇    率:",
     .heads = "币制编号|币制名称",
     .notes = "注：请在币制符号中，正确地录入货币符号，如“USD”、“CNY”。|设置基准币，汇率为1。即1：1。",
     .required = bothOf,
     .ok = On::Skip,
     .walksWhileBusy = true},
    {.make = declared<Sys_zffs>,
     .caption = "付款方式设置窗口",
     .table = "sys_zffs",
     .array = "Text",
     .columns = "fkbh zffs beizhu",
     .captions = "编    号:|*付款方式:|备    注:",
     .heads = "付款编号|付款方式",
     .required = nameAlone,
     .walksWhileBusy = true},
    {.make = own<sys_fkfs>,
     .caption = "结算方式设置",
     .table = "sys_fkfs",
     .array = "Text",
     .columns = "fkbh fkfs beizhu",
     .captions = "编       号:|结算方式:|备       注:",
     .heads = "编   号|结算方式",
     .notes = "注:是指与客户间的交易规则，诸如“月结60天”等条款。",
     .required = bothOf,
     .ok = On::Skip,
     .afterDelete = After::Last,
     .lastAfterLast = true,
     .walksWhileBusy = true},
    {.make = declared<Sys_JLDW>,
     .caption = "计量单位设置",
     .table = "sys_jldw",
     .array = "Text",
     .columns = "jlbh jldw beizhu",
     .captions = "编    号:|计量单位:|备    注:",
     .heads = "计量编号|计量单位",
     .notes = "注:一般名称为英文公制，请注意填写。",
     .required = nameAlone,
     .walksWhileBusy = true},
    {.make = declared<Sys_GKSZ>,
     .caption = "常用港口设置",
     .table = "sys_gksz",
     .array = "Text",
     .columns = "gkbh gkmc gkmc_en gkxz beizhu",
     .captions = "港口编号:|*港口名称:|*英文名称:|港口性质:|备注说明:",
     .heads = "港口编号|港口名称",
     .notes = "说明:*港口名称，显示于单证，一般为英文。",
     .required = bothOf,
     .blanks = "gkmc_en gkxz beizhu",
     .ok = On::Skip,
     .walksWhileBusy = true},
    {.make = own<Sys_CwGs_ZL>,
     .caption = "船务公司资料录入",
     .table = "sys_cwgs",
     .array = "Text",
     .columns = carrierColumns,
     .captions = "船公司编号:|船公司名称:" + carrierCaptions,
     .heads = "船公司编号|船公司名称",
     .others = "Text1=logo",
     .required = bothOf,
     .blanks = "ywmc dizhi beizhu logo",
     .ok = On::Skip,
     .add = On::Unhandled},
    {.make = own<Sys_TcGs_Set>,
     .caption = "拖车公司资料设置",
     .table = "sys_tcgs",
     .array = "Text",
     .columns = carrierColumns,
     .captions = "拖车公司编号:|拖车公司名称:" + carrierCaptions,
     .heads = "拖车公司编号|拖车公司名称",
     .others = "Text1=logo",
     .required = bothOf,
     .blanks = "ywmc dizhi beizhu logo",
     .ok = On::Skip,
     .add = On::Unhandled},
    {.make = own<sys_gssz>,
     .caption = "公司名称设置",
     .table = "sys_gsmc",
     .array = "Text",
     .columns = "gsbh gsmc e_gsmc gsdz e_gsdz gs_phone gs_fax fpzt bgbm edi_code mchzch sjzch swdjh bank_name gs_email "
                "bank_dz bank_en bank_de swift_code bank_code bank_fax bank_phone",
     .captions = "公司编号:|公司名称:|英文名称:|公司地址:|英文地址:|公司电话:|公司传真:|发票字头:|海关注册编码:|"
                 "外管局注册码:|进出口企业代码:|商检注册:|税务登记号:|开户银行:|E_Mail号:|中文地址:|英文名称:|"
                 "英文地址:|Swiftcode:|银行账号:|传真号码:|电话号码:",
     .heads = "公司编号|公司名称",
     .others = "Combo1=gsxz Text1=logo",
     .required = bothOf,
     .blanks = "e_gsmc gsdz e_gsdz gs_phone logo",
     .add = On::Skip},
    {.make = declared<Sys_bmsz>,
     .caption = "部门名称设置",
     .table = "sys_bmsz",
     .array = "Text",
     .columns = "bmbh bmmc sjbm",
     .captions = "部门编号：|部门名称:|上级部门：",
     .heads = "部门编号|部门名称",
     .notes = "注：部门设置，是公司相应的基本资料，分两层管理。",
     .required = {"Text(0)=部门编号不能为空", "Text(1)=部门名称不能为空."},
     .title = "系统提示",
     .filled = "sjbm"},
    {.make = own<sys_gzry>,
     .caption = "系统操作员设置",
     .table = "sys_gzry",
     .array = "Text",
     .columns = "bmmc name zhwu zgbh",
     .captions = "部门名称:|姓    名:|职    务:|人员编号:",
     .heads = "人员编号|姓名",
     .required = {"Text(1)=姓名不能为空", "Text(2)=职务不能为空"},
     .title = "系统提示"},
    {.make = own<sys_qysz>,
     .caption = "区域设置",
     .table = "sys_qysz",
     .array = "Text",
     .columns = "sheng shi zheng",
     .captions = "国别设置:|州省/地区:|市/县:",
     .heads = "国别|州省/地区|市/县",
     .notes = "注：区域设置，是对国内供应厂家按区域分类而设，分三层管理。",
     .required = {"Text(0)=" + everyName, "Text(1)=" + everyName, "Text(2)=" + everyName}},
    {.make = own<sys_SSDZ>,
     .caption = "收货地点、送货地点设置",
     .table = "sys_ssdz",
     .array = "Text",
     .columns = "dzbh sslb ssdz",
     .captions = "地址编号:|收送类别:|收送地址:",
     .heads = "地址编号|收送地址",
     .required = bothOf},
    {.make = own<yy_GYszl>,
     .caption = "国内厂商资料登记_表",
     .table = "yy_gyszl",
     .array = "Text1",
     .columns = "gfbh zwmc" + partnerColumns,
     .captions =
         "厂商编号:|中文名称:|中文地址:|联系电话:|传真号码:|法人代表:|日       期:|汇   率:|英文地址:|英文名称:|"
         "联 系 人:" +
         partnerCaptions,
     .heads = "厂商编号|厂商名称",
     .others = "Combo1(0)=sheng Combo1(1)=bizh Combo1(2)=fkfs Combo1(3)=djy Combo1(4)=zffs",
     .required = {"Text1(0)=" + everyName, "Text1(1)=" + everyName},
     .filled = "djrq",
     .edit = "修改"},
    {.make = own<YY_GWKH_ZL>,
     .caption = "国外客户录入窗口",
     .table = "yy_gwkh_zl",
     .array = "Text1",
     .columns = "khbh khmc" + partnerColumns,
     .captions = "客户编号:|*英文名称:|*英文地址:|联系电话:|传真号码:|法人代表:|日     期:|汇率:|中文地址:|中文名称:|"
                 "联 系 人:" +
                 partnerCaptions,
     .heads = "客户编号|国外客户",
     .others = "Combo1(0)=gb Combo1(1)=bizh Combo1(2)=fkfs Combo1(3)=djy Combo1(4)=zffs",
     .required = {"Text1(0)=编号不能为空"},
     .filled = "djrq",
     .edit = "修改"},
    {.make = own<yy_cpbj>,
     .caption = "商品资料设置",
     .table = "yy_bzdj",
     .array = "Text",
     .columns = "cpbh cpmc bacp beizhu",
     .captions = "商品编号:|商品名称:|H.S.编码:|备    注:",
     .heads = "商品编号|商品名称",
     .others = "Combo1(0)=cplb Combo1(1)=dw",
     .required = {"Text(0)=编号不能为空"},
     .ok = On::Skip,
     .add = On::Unhandled,
     .next = On::Skip,
     .ends = On::Skip,
     .lastAfterLast = true},
};

class EveryForm : public testing::TestWithParam<Form>
{
protected:
    TestDatabase database;
    ScriptedDialogs dialogs;
    const Form &c = GetParam();
    const QStringList columns = c.columns.split(u' ');

    QString control(qsizetype field) const { return QStringLiteral("%1(%2)").arg(c.array).arg(field); }

    // One row with this text in every column of the array that takes text.
    void insert(const QString &text)
    {
        QStringList names = columns.filter(QRegularExpression("^(?!hl$|djrq$)"));
        database.connection().Execute("insert into " + QString(c.table) + "(" + names.join(u',') + ") values('{t}'" +
                                          QString(",'{t}'").repeated(names.size() - 1) + ")",
                                      {{"t", text}});
    }
    Row row(const QString &column, const QString &value)
    {
        const QVector<Row> rows = database.connection().rows(
            "select * from " + QString(c.table) + " where " + column + "='{v}'", {{"v", value}});
        return rows.size() == 1 ? rows.first() : Row();
    }
    QString name() const { return columns[1]; }
    int count() { return database.count(c.table); }

    // What the form has to have said of an error of the database; forgets it.
    void expectTold(On error, const QString &text)
    {
        ASSERT_EQ(dialogs.shown.size(), error == On::Report ? 1 : 0);
        for (const Shown &told : std::exchange(dialogs.shown, {})) {
            EXPECT_TRUE(told.text.contains(text, Qt::CaseInsensitive)) << told.text.toStdString();
            EXPECT_EQ(told, (Shown{told.text, "", MessageIcon::None}));
        }
    }
};

} // namespace

TEST_P(EveryForm, StoresEachFieldInItsOwnColumnUnderItsLabel)
{
    const auto form = c.make();
    const FormDriver drive(*form);
    std::map<QString, QString> typed; // by column
    drive.click("Cmdadd");
    const auto type = [&](const QString &name, const QString &column) {
        const QString text = column == "djrq" ? QStringLiteral("2026-03-05") : QString::number(10000 + typed.size());
        drive.type(name, text);
        typed[column] = text;
    };
    for (qsizetype i = 0; i < columns.size(); ++i)
        type(control(i), columns[i]);
    for (const QString &other : c.others.split(u' ', Qt::SkipEmptyParts))
        type(other.section(u'=', 0, 0), other.section(u'=', 1));
    drive.click("CmdOK");
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
    ASSERT_EQ(count(), 1);
    const Row stored = row(name(), typed[name()]);
    for (const auto &[column, text] : typed)
        EXPECT_EQ(stored[column].toString(), text) << column.toStdString();

    const QStringList captions = c.captions.split(u'|');
    ASSERT_EQ(captions.size(), columns.size());
    QMultiHash<const QWidget *, QString> labels;
    for (const QLabel *label : form->findChildren<QLabel *>())
        labels.insert(label->buddy(), label->text());
    for (qsizetype i = 0; i < columns.size(); ++i)
        EXPECT_EQ(labels.value(drive.control(control(i))), captions[i]);
    EXPECT_EQ(drive.text("Cmdedit"), c.edit);
    EXPECT_EQ(form->windowTitle(), c.caption);
    QStringList heads;
    const auto *list = drive.find<Grid>("TDBGrid3")->model();
    for (int i = 0; i < list->columnCount(); ++i)
        heads.append(list->headerData(i, Qt::Horizontal).toString());
    EXPECT_EQ(heads.join(u'|'), c.heads);
    for (const QString &note : c.notes.split(u'|', Qt::SkipEmptyParts))
        EXPECT_TRUE(labels.values().contains(note)) << note.toStdString();
}

TEST_P(EveryForm, AsksForWhatIsMissingAndFillsTheRest)
{
    const auto form = c.make();
    const FormDriver drive(*form);
    drive.click("Cmdadd");
    const QString key = "K0001";
    const auto fillRequired = [&] {
        drive.type(control(0), key);
        for (const QString &required : c.required)
            drive.type(required.section(u'=', 0, 0), key);
    };
    for (const QString &required : c.required) {
        const QString field = required.section(u'=', 0, 0), message = required.section(u'=', 1);
        fillRequired();
        drive.type(field, "");
        drive.click("CmdOK");
        EXPECT_EQ(dialogs.shown, message.isEmpty() ? QVector<Shown>()
                                                   : QVector<Shown>({{message, c.title, MessageIcon::Exclamation}}));
        dialogs.shown.clear();
        EXPECT_TRUE(form->isBusy());
        EXPECT_EQ(drive.focused(), message.isEmpty() ? "CmdOK" : control(0));
        EXPECT_FALSE(drive.control(field)->property("readOnly").toBool());
        EXPECT_EQ(count(), 0);
    }
    fillRequired();
    drive.click("CmdOK");
    EXPECT_FALSE(form->isBusy());
    const Values stored = row(columns[0], key).named();
    ASSERT_FALSE(stored.isEmpty());
    for (auto value = stored.cbegin(); value != stored.cend(); ++value) {
        const bool isRequired =
            columns.indexOf(value.key()) == 0 || c.required.join(u' ').contains(control(columns.indexOf(value.key())));
        if (c.filled.split(u' ').contains(value.key()))
            EXPECT_FALSE(value->toString().trimmed().isEmpty()) << value.key().toStdString();
        else
            EXPECT_EQ(value->toString(), c.blanks.split(u' ').contains(value.key()) ? "  "
                                         : isRequired                               ? key
                                                                                    : "")
                << value.key().toStdString();
    }
}

TEST_P(EveryForm, WalksToTheEndsAndBackToTheFirstOnCancel)
{
    const auto empty = c.make();
    const FormDriver none(*empty);
    for (const char *button : {"cmdqd", "cmdxq", "cmdnext", "cmdmd"})
        none.click(button);
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
    for (const char *key : {"A0001", "B0001", "C0001", "D0001"})
        insert(key);
    const auto form = c.make();
    const FormDriver drive(*form);
    const struct {
        const char *button, *shown;
    } steps[] = {{"cmdxq", "A0001"},   {"cmdnext", "B0001"}, {"cmdmd", "D0001"},
                 {"cmdnext", "D0001"}, {"cmdxq", "C0001"},   {"cmdqd", "A0001"}};
    for (const auto &step : steps) {
        drive.click(step.button);
        EXPECT_EQ(drive.text(control(0)), step.shown) << step.button;
        EXPECT_EQ(drive.find<Grid>("TDBGrid3")->currentIndex().row(), form->records().absolutePosition());
    }
    for (const char *begin : {"Cmdadd", "Cmdedit"}) {
        drive.click("cmdmd");
        drive.click(begin);
        EXPECT_EQ(drive.enabled("cmdnext"), c.walksWhileBusy);
        for (const char *off : {"Cmdadd", "Cmdedit", "Cmddelete", "Cmdreturn", "TDBGrid3"})
            EXPECT_FALSE(drive.enabled(off)) << off;
        EXPECT_EQ(drive.focused(), control(0));
        drive.type(control(1), "lost");
        form->close();
        EXPECT_TRUE(form->isVisible());
        drive.click("Cmdcancel");
        EXPECT_EQ(drive.text(control(0)), "A0001");
        EXPECT_TRUE(drive.control(control(1))->property("readOnly").toBool());
        EXPECT_FALSE(form->records().hasPendingChanges());
    }
    EXPECT_EQ(count(), 4);
    EXPECT_TRUE(row(name(), "lost").columns().isEmpty());
    drive.click("cmdmd");
    drive.click("Cmdedit");
    drive.type(control(1), "kept");
    drive.click("CmdOK");
    EXPECT_EQ(drive.text(control(0)), "D0001");
    EXPECT_EQ(row(name(), "kept")[columns[0]], "D0001");
    drive.click("Cmdreturn");
    EXPECT_FALSE(form->isVisible());
}

TEST_P(EveryForm, DeletesWhatIsShownAndGoesOn)
{
    for (const char *key : {"A0001", "B0001", "C0001", "D0001"})
        insert(key);
    const auto form = c.make();
    const FormDriver drive(*form);
    const Shown question{"是否真的删除当前记录 ？", "系统提示", MessageIcon::Question};
    drive.click("cmdnext");
    dialogs.answer = false;
    drive.click("Cmddelete");
    EXPECT_EQ(dialogs.take(), question);
    EXPECT_EQ(count(), 4);
    EXPECT_EQ(drive.text(control(0)), "B0001");
    dialogs.answer = true;
    // A deletion that the database refuses is passed over, and the handler goes on to the next record.
    database.refuseDeletion(c.table);
    drive.click("Cmddelete");
    EXPECT_EQ(dialogs.take(), question);
    EXPECT_EQ(count(), 4);
    EXPECT_EQ(drive.text(control(0)), c.afterDelete == After::Last ? "D0001" : "C0001");
    database.allowDeletion(c.table);
    drive.click("cmdqd");
    drive.click("cmdnext");
    drive.click("Cmddelete");
    EXPECT_TRUE(row(name(), "B0001").columns().isEmpty());
    EXPECT_EQ(drive.text(control(0)), c.afterDelete == After::Last ? "D0001" : "C0001");
    drive.click("cmdmd");
    drive.click("Cmddelete");
    EXPECT_TRUE(row(name(), "D0001").columns().isEmpty());
    EXPECT_EQ(drive.text(control(0)), c.lastAfterLast ? "C0001" : "A0001");
    drive.click("Cmddelete");
    drive.click("Cmddelete");
    EXPECT_EQ(count(), 0);
    EXPECT_EQ(drive.text(control(0)), "");
    drive.click("Cmddelete"); // nothing is left
    EXPECT_EQ(dialogs.shown.count(question), dialogs.shown.size());
}

TEST_P(EveryForm, TellsOrPassesOverARefusedSaveAndTheRowStillWaits)
{
    insert("A0001");
    database.refuse(c.table, name(), "never");
    const auto form = c.make();
    const FormDriver drive(*form);
    for (const char *begin : {"Cmdadd", "Cmdedit"}) {
        drive.click(begin);
        const QString key = begin == QString("Cmdadd") ? "B0001" : "C0001";
        drive.type(control(0), key);
        for (const QString &required : c.required)
            drive.type(required.section(u'=', 0, 0), key);
        drive.type(control(1), "never");
        drive.click("CmdOK");
        expectTold(c.ok, "refused");
        EXPECT_FALSE(form->isBusy());
        EXPECT_TRUE(form->records().hasPendingChanges());
        EXPECT_EQ(drive.text(control(1)), "never");
        EXPECT_TRUE(row(name(), "never").columns().isEmpty());
        // What waits goes through with the next save that the database takes.
        drive.click("Cmdedit");
        drive.type(control(1), "taken");
        drive.click("CmdOK");
        EXPECT_EQ(dialogs.shown, QVector<Shown>());
        EXPECT_EQ(row(name(), "taken")[columns[0]], key);
        EXPECT_EQ(count(), 2);
    }
}

TEST_P(EveryForm, TellsOrPassesOverWhatCannotBeRead)
{
    database.connection().transaction([this] {
        for (int i = 0; i < 1600; ++i)
            insert(QStringLiteral("A%1").arg(i, 4, 10, QChar(u'0')));
    });
    // Records that nobody looked at yet follow in blocks of 64.
    struct {
        const char *button;
        int at;
        On error;
        std::unique_ptr<RecordForm> form = {};
    } cases[] = {{"cmdnext", 1343, c.next}, {"cmdxq", 1280, c.next}, {"cmdmd", 1280, c.ends}, {"Cmdadd", 1280, c.add}};
    for (auto &step : cases) {
        step.form = c.make();
        step.form->records().setAbsolutePosition(step.at);
    }
    database.drop(c.table);
    for (const auto &step : cases) {
        SCOPED_TRACE(step.button);
        auto *button = step.form->findChild<QAbstractButton *>(step.button);
        if (step.error == On::Unhandled)
            EXPECT_THROW(button->click(), DataError);
        else
            button->click();
        expectTold(step.error, c.table);
        // What was passed over goes on, what was told ends there.
        const bool isAdd = step.button == QString("Cmdadd");
        EXPECT_EQ(step.form->records().RecordCount(), isAdd && c.add == On::Skip ? 1601 : 1600);
    }
}

INSTANTIATE_TEST_SUITE_P(All, EveryForm, testing::ValuesIn(forms),
                         [](const auto &form) { return std::string(form.param.table); });

} // namespace tradewick
