// One shipment from order to refund, typed as clerks type it, in every window of its way: what was ordered, packed and
// paid stands on each paper and in each statistic over it, and the check of the database finds nothing.
#include "common/number_text.h"
#include "common/query_screen.h"
#include "common/tabbed_form.h"
#include "contracts/contracts.h"
#include "database/description.h"
#include "documents/documents.h"
#include "papers/papers.h"
#include "queries/queries.h"
#include "reporting/layout.h"
#include "settlement/settlement.h"
#include "shipping/shipping.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <QDialog>
#include <QFile>
#include <QLocale>

namespace tradewick
{

using namespace test;

namespace
{

// What was ordered, and how it was packed: figures of one package, taxes in per cent.
struct Goods {
    const char *code;
    double frame, mirror, quantity, packages, net, gross, volume, addedTax, levy;
};
// The first two come with the customer's prices, which bring no tax along; the third is searched for. All sums differ.
constexpr Goods goods[] = {{"CH-1", 2.5, 1.25, 120, 10, 8.5, 9.25, .055, 0, 0},
                           {"CH-2", 4, .4, 75, 15, 3, 3.5, .02, 0, 0},
                           {"CH-3", 10.05, 0, 40, 4, 20, 23.25, .125, 17, 13}};
constexpr double rate = 7.25, bought = 6.5;

class Chain : public testing::Test
{
protected:
    Chain()
    {
        Connection &connection = database.connection();
        for (const TableDescription &table : tableDescriptions()) // partners stay, goods and documents go
            if (!table.name.startsWith("sys_") && table.name != "yy_gwkh_zl" && table.name != "yy_gyszl")
                connection.Execute("delete from " + table.name);
        connection.Execute("update yy_gwkh_zl set hl='{r}' where khbh='K001'", {{"r", rate}});
        for (const Goods &one : goods) {
            const Values values{
                {"c", one.code}, {"a", one.addedTax}, {"l", one.levy}, {"f", one.frame}, {"m", one.mirror}};
            for (const char *row : {"yy_bzdj(cpbh,cpmc,dw,bacp,cplb,zzs,zsl) "
                                    "values('{c}','镜{c}','PCS','7009','镜','{a}','{l}')",
                                    "yy_bzdj_b(cpbh,khbh,gg,jkdj,jmdj,gys_dj) "
                                    "values('{c}','K001','S','{f}','{m}',{f}+{m})"})
                connection.Execute(QString("insert into ") + row, values);
        }
        connection.Execute("delete from yy_bzdj_b where cpbh='CH-3'");
        setReportViewer([this](Report &report, QWidget *) {
            QStringList texts;
            for (const auto layout = report.layout(); const PagePtr page = layout->next();)
                for (const PageItem &item : page->items)
                    if (item.isText())
                        texts.append(page->text(item).toString());
            printed[report.name()] = texts.join(u'|').simplified();
        });
        names = {{"day", QDate::currentDate().toString(Qt::ISODate)},
                 {"company", database.value("select gsmc from sys_gsmc").toString()},
                 {"buyer", database.value("select khmc from yy_gwkh_zl where khbh='K001'").toString()}};
        QHash<QString, double> sums{{"bought", goods[2].quantity * bought}};
        for (const Goods &one : goods) {
            const double amount = one.quantity * (one.frame + one.mirror);
            sums["q"] += one.quantity;
            sums["p"] += one.packages;
            sums["n"] += one.packages * one.net;
            sums["g"] += one.packages * one.gross;
            sums["v"] += one.packages * one.volume;
            sums["a"] += amount;
            sums["base"] += amount * rate;
            sums["tax"] += amount * rate * one.addedTax / 100;
            sums["levy"] += amount * rate * one.levy / 100;
        }
        for (auto sum = sums.cbegin(); sum != sums.cend(); ++sum) { // plain and as money: {a} and {a.00}
            names[sum.key()] = numberText(*sum);
            names[sum.key() + ".00"] = QLocale(QLocale::English).toString(*sum, 'f', 2);
        }
    }
    ~Chain() override { setReportViewer({}); }

    // A text with its {names} filled in.
    QString filled(QString with) const
    {
        for (auto name = names.cbegin(); name != names.cend(); ++name)
            with.replace(u'{' + name.key() + u'}', *name);
        return with;
    }

    Grid *lines() const { return window->findChild<Grid *>("TDBGrid1"); }
    // Types into a line's cell and takes the first row that is found.
    void take(int line, const QString &column, const QString &typed) const
    {
        lines()->setFocus();
        lines()->editCell(line, column);
        FormDriver::commit(lines()->cellEditor(), typed);
        QTest::keyClick(lines()->cellEditor(), Qt::Key_Down);
        QTest::keyClick(window->findChild<Grid *>("TDBGrid2"), Qt::Key_Return);
    }
    void typeEach(const FormDriver &drive, const char *column, double Goods::*figure) const
    {
        for (int i = 0; i < 3; ++i)
            drive.typeCell(lines(), i, column, numberText(goods[i].*figure));
    }
    // Begins a record and types into its fields, each on the page where it is: "Text1(0)=one;Combo1(0)=other".
    FormDriver fill(const FormDriver &drive, const QString &fields) const
    {
        drive.click("Cmdadd");
        for (const QString &field : filled(fields).split(u';')) {
            const QString name = field.section(u'=', 0, 0);
            for (int page = 0; !drive.control(name)->isVisible() && page < 4; ++page)
                QTest::keyClick(window.get(), static_cast<Qt::Key>(Qt::Key_1 + page), Qt::AltModifier);
            drive.choose(name, field.section(u'=', 1));
        }
        return drive;
    }
    FormDriver add(const RecordFormSpec &spec, const QString &fields)
    {
        window = std::make_unique<RecordForm>(spec);
        return fill(FormDriver(*window), fields);
    }
    // Stores it and prints it by these buttons.
    void store(const FormDriver &drive, std::initializer_list<const char *> buttons = {}) const
    {
        drive.click("CmdOK");
        for (const char *button : buttons)
            drive.click(button);
        EXPECT_EQ(dialogs.shown, QVector<Shown>()) << window->windowTitle().toStdString();
    }

    void sell()
    {
        const FormDriver order = add(YY_WXHT(), "Combo1(0)=K001;Combo1(1)={company}");
        names["order"] = order.text("Text1(0)");
        take(2, "cpbh", goods[2].code);
        typeEach(order, "jkdj", &Goods::frame);
        typeEach(order, "sl", &Goods::quantity);
        store(order, {"Cmdprint(0)", "Cmdprint(1)"});
        const FormDriver purchase = add(YY_CGHT(), "Combo1(0)={order};Combo1(1)=C001;Combo1(2)={company}");
        names["purchase"] = purchase.text("Text1(0)");
        take(0, "cpbh", goods[2].code);
        purchase.typeCell(lines(), 0, "dj", numberText(bought));
        purchase.typeCell(lines(), 0, "sl", numberText(goods[2].quantity));
        store(purchase, {"Cmdprint"});
        const FormDriver credit =
            add(YY_XyZ_New_Rpt(), "Text1(0)=LC-1;Text1(1)={day};Combo1(0)={company};Combo1(4)={buyer};Text1(8)={a}");
        take(0, "htbh", names["order"]);
        store(credit);
        const FormDriver sheet = // which ends beside the goods
            add(YY_DZ_MXB(), "Combo1(0)={order};Combo1(1)=LC-1;Combo1(16)=C001;Text1(27)=ABC000155;Combo1(7)=PCS");
        names["invoice"] = sheet.text("Text1(0)");
        typeEach(sheet, "jianshu", &Goods::packages);
        typeEach(sheet, "djz", &Goods::net);
        typeEach(sheet, "dmz", &Goods::gross);
        typeEach(sheet, "djtj", &Goods::volume);
        store(sheet);
        const auto *choices = sheet.find<QComboBox>("Com_Print");
        for (int i = 0; i < choices->count(); ++i) {
            sheet.type("Com_Print", choices->itemText(i));
            sheet.click("Cmdprint");
            if (auto *editor = window->findChild<QDialog *>("YY_JdZm_rpt")) {
                FormDriver(*editor).click("CmdPrn");
                editor->close();
            }
        }
        EXPECT_EQ(dialogs.take().text, "是否套打？否，则正常打印。");
    }
    void ship()
    {
        store(add(CY_Pcd_Djb(),
                  "Combo1(0)={company};Combo1(3)={invoice};Combo1(1)=顺路集装箱拖车行;Text(5)=2;Text(15)=1880"),
              {"Cmdprint"});
        store(add(CY_Dcd_Rpt(),
                  "Text(22)=SZX 7;Combo1(0)={company};Combo1(1)={invoice};Combo1(2)=蓝岬船务有限公司;Text(21)=5230.5;"
                  "Combo2=通用订舱单"),
              {"Cmdprint"});
        store(add(cy_HYtD_DjB(), "Combo1(0)=SZX 7;Combo2=通用提单"), {"Cmdprint"});
        window = std::make_unique<TabbedForm>(CY_HXD_Djb());
        for (const auto &[tab, fields] : {std::pair(0, "Text1(1)=ABC000100;Text1(2)=ABC000199"),
                                          {2, "Text1(15)=ABC000150;Text1(16)=ABC000159;Text1(17)={order}"},
                                          {1, "Combo1(2)={invoice};Combo1(6)=正常贸易（退税）"}})
            store(fill(FormDriver(static_cast<TabbedForm &>(*window).tab(tab)), fields));
        store(add(YY_SsPj_DJB(), "Combo1(0)={invoice};Text1(0)=V1"), {"Fp_Rpt", "Bgd_rpt"});
    }
    void count()
    {
        for (const QuerySpec &spec : {YY_WXHt_cxTjB(), YY_cgHt_CXtjb(), YY_XYz_CxTj(), YY_mxd_CxTj(), YY_ZsQk_TJB(),
                                      YY_HxD_LyHs_TJB(), CY_Pcd_CxTj(), YY_DcD_CxTj()}) {
            QueryScreen screen(spec);
            const FormDriver drive(screen);
            drive.click("CmdFIND");
            for (const bool byFirst : {true, false}) {
                dialogs.answer = byFirst;
                drive.click("CmdPRINT");
            }
            if (spec.lists.size() > 1) {
                drive.click("SB_tjb");
                screen.findChild<QTabWidget *>()->setCurrentIndex(1);
                drive.click("CmdPRINT");
            }
            for (const QueryButton &option : spec.options.options) {
                drive.type("Combo2", names["company"]);
                drive.type("Combo3", names["buyer"]);
                drive.click("Cmd_SPtJ");
                drive.find<QAbstractButton>(option.name)->click();
            }
        }
    }

    TestDatabase database{TestDatabase::Demonstration};
    ScriptedDialogs dialogs;
    std::unique_ptr<QWidget> window;
    QHash<QString, QString> names, printed; // what {names} stand for; the pages of each report
};

} // namespace

// chain.txt: reports by ",", then what stands on the pages of each, by ";", texts next to each other by "|".
TEST_F(Chain, FromTheOrderToTheRefund)
{
    sell();
    ship();
    count();
    QFile papers(CHAIN);
    ASSERT_TRUE(papers.open(QFile::ReadOnly));
    for (const Document &statistic : documents())
        EXPECT_TRUE(!statistic.isStatistic() || printed.contains(statistic.report)) << statistic.name.toStdString();
    for (const QString &line : QString::fromUtf8(papers.readAll()).split(u'\n', Qt::SkipEmptyParts))
        for (const QString &report : line.section(u'=', 0, 0).split(u',')) {
            const QString pages = printed.take(report);
            for (const QString &one : filled(line.section(u'=', 1)).split(u';'))
                EXPECT_TRUE(pages.contains(one))
                    << report.toStdString() << ": " << one.toStdString() << "\nnot in " << pages.toStdString();
        }
    EXPECT_EQ(printed.keys().join(u' ').toStdString(), "") << "were not expected";
    EXPECT_EQ(findingsIn(database.dataSource()).toStdString(), "");
}

} // namespace tradewick
