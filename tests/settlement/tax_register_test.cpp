// The register of tax documents by its controls.
#include "reporting/report.h"
#include "settlement/settlement.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

namespace tradewick
{

using namespace test;

namespace
{

class TaxRegister : public testing::Test
{
protected:
    TaxRegister()
    {
        for (const char *statement :
             {"insert into yy_mxb_h(fpbh,hl,hxdh,cg_csmc) values('F1',2,'H1','S')",
              "insert into yy_mxb_h(fpbh,djrq) values('F2','2026-03-05')", "insert into yy_mxb_h(fpbh) values('F3')",
              "insert into yy_mxb_b(fpbh,xh,cpmc,dj,sl,je,zzs,zsl,jianshu,zjz) "
              "values('F1',1,'A',5,100,500,17,13,4,7.5)",
              "insert into yy_mxb_b(fpbh,xh,cpmc,je,zzs) values('F1',2,'B',0.003,null)",
              "insert into yy_mxb_b(fpbh,xh,dj,je,zzs,zsl) values('F2',1,1,250.5,17,13)",
              "insert into yy_ssdj_b(fpbh,cpmc) values('','of none')"})
            database.connection().Execute(statement);
    }
    ~TaxRegister() override { setReportViewer({}); }

    FormDriver open()
    {
        form = std::make_unique<RecordForm>(YY_SsPj_DJB());
        return FormDriver(*form);
    }
    void addInvoice(const FormDriver &drive, const QString &invoice)
    {
        drive.click("Cmdadd");
        drive.choose("Combo1(0)", invoice);
        drive.type("Text1(0)", "V1");
        drive.control("Text1(1)")->setFocus();
        QTest::keyClicks(drive.control("Text1(1)"), "2026/1/15"); // of which "2026/1/1" is a date already
    }
    // All values of some rows by "|", Null as "-".
    QString rows(const QString &statement)
    {
        QStringList texts;
        for (const Row &row : database.connection().rows(statement))
            for (const QVariant &value : row.values())
                texts.append(value.isNull()                        ? "-"
                             : value.typeId() == QMetaType::Double ? QString::number(value.toDouble(), 'g', 12)
                                                                   : value.toString());
        return texts.join('|');
    }
    QString totals(const QString &invoice)
    {
        return rows("select jshj_dx,jshj_xx,sj_sjjedx,sj_sjjexx from yy_ssdj_h where fpbh='" + invoice + "'");
    }

    TestDatabase database;
    ScriptedDialogs dialogs;
    std::unique_ptr<RecordForm> form;
};

} // namespace

TEST_F(TaxRegister, TotalsAreThoseOfTheLinesBeforeTheSave)
{
    const FormDriver drive = open();
    addInvoice(drive, "F1");
    auto *invoice = drive.find<Grid>("TDBGrid1"), *certificate = drive.find<Grid>("TDBGrid3");
    EXPECT_TRUE(invoice->isEditing() && !certificate->isEditing());
    drive.click("CmdOK");
    EXPECT_EQ(rows("select cpmc,dj,je,suie,sjje,sjze,zsl from yy_ssdj_b where fpbh='F1' order by xh"),
              "A|10|1000|170|130|1170|13|B|0|0.006|0|0|0.006|0");
    EXPECT_EQ(rows("select zzsfph,zzs_kprq,hxdh,csmc,jianshu,hx_zjje from yy_ssdj_h"), "V1|2026-01-15|H1|S|4| 500.003");
    EXPECT_EQ(totals("F1"), "壹仟壹佰柒拾圆零壹分|1170.006|壹佰叁拾圆整|130");
    EXPECT_EQ(drive.text("Text1(25)") + drive.text("Text1(36)") + drive.text("FP_id"), "SF1F1");
    const auto *invoices = drive.find<QComboBox>("Combo1(0)");
    EXPECT_TRUE(invoices->findText("F1") < 0 && invoices->findText("F2") >= 0);

    drive.click("Cmdedit");
    drive.typeCell(invoice, 0, "sl", "200");
    QTest::keyClick(form.get(), Qt::Key_2, Qt::AltModifier);
    const auto shown = [&](int column) { return certificate->model()->index(0, column).data().toString(); };
    EXPECT_EQ(shown(1) + u'|' + shown(4) + u'|' + shown(7), "200|2000|130");
    drive.typeCell(certificate, 0, "zzs", "16"); // from which the certificate's tax does not follow
    EXPECT_EQ(shown(7), "130");
    drive.typeCell(certificate, 0, "zsl", "10");
    drive.click("CmdOK");
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
    EXPECT_EQ(rows("select sl,je,suie,sjje,sjze from yy_ssdj_b where fpbh='F1' and xh=1"), "200|2000|340|200|1170");
    EXPECT_EQ(totals("F1"), "壹仟壹佰柒拾圆零壹分|1170.006|壹佰叁拾圆整|130");
    drive.click("Cmdedit");
    drive.click("CmdOK");
    EXPECT_EQ(totals("F1"), "贰仟叁佰肆拾圆零壹分|2340.006|贰佰圆整|200");

    drive.click("Cmdedit"); // an Add lasts until its Cancel
    drive.click("Cmdcancel");
    EXPECT_EQ(rows("select cpmc from yy_ssdj_b"), "of none");
    EXPECT_EQ(database.count("yy_ssdj_h"), 1);
    drive.click("Cmdadd");
    form->focusField("Text1(36)");
    QApplication::processEvents();
    drive.type("Text1(36)", "F1");
    drive.leave("Text1(36)");
    EXPECT_EQ(dialogs.take().text, "销货发票号码“F1”已被另一记录使用，请核对！");
    drive.type("Combo1(0)", "");
    drive.click("Cmdcancel");
    EXPECT_EQ(rows("select cpmc from yy_ssdj_b"), "of none");
}

TEST_F(TaxRegister, WithoutARateTheGoodsCountNothingAndWithoutGoodsThereAreNoTotals)
{
    const FormDriver drive = open();
    for (const char *invoice : {"F2", "F3"}) {
        addInvoice(drive, invoice);
        drive.click("CmdOK");
    }
    EXPECT_EQ(rows("select dj,je,suie,sjje from yy_ssdj_b where fpbh='F2'"), "0|0|0|0");
    EXPECT_EQ(rows("select hx_zjje from yy_ssdj_h order by fpbh"), " 250.5|-");
    EXPECT_EQ(totals("F3"), "-|-|-|-");
}

TEST_F(TaxRegister, ASearchNarrowsUntilAnotherOne)
{
    for (const char *values : {"'A1','H1'", "'A2','H2'", "'B1','H2'"})
        database.connection().Execute(QString("insert into yy_ssdj_h(fpbh,hxdh) values(%1)").arg(values));
    const FormDriver drive = open();
    EXPECT_EQ(drive.text("FP_id"), "B1");
    const struct {
        const char *box, *typed, *invoices, *form;
        bool chosen;
    } steps[] = {{"Combo4", "a", "A1A2", "", false},  {"Combo5", "h2", "A2B1", "h2", false},
                 {"Combo5", " ", "A2B1", " ", false}, {"Combo5", "H1", "A1", "H1", false},
                 {"Combo4", "B1", "B1", "", true},    {"Combo4", "", "B1", "", false}};
    for (const auto &step : steps) {
        step.chosen ? drive.choose(step.box, step.typed) : drive.type(step.box, step.typed);
        QString shown;
        for (int row = 0; row < form->records().RecordCount(); ++row)
            shown += form->records().valueAt(row, form->records().columnIndex("fpbh")).toString();
        EXPECT_EQ(shown, step.invoices) << step.box << step.typed;
        EXPECT_EQ(drive.text("Combo5"), step.form) << step.box << step.typed;
    }
}

TEST_F(TaxRegister, EachButtonPrintsItsPaperOfTheInvoice)
{
    QStringList shown;
    setReportViewer([&](Report &paper, QWidget *) { shown += paper.name() + paper.label("L_ZwJe"); });
    const FormDriver none = open();
    for (const char *button : {"Fp_Rpt", "Bgd_rpt"}) {
        none.click(button);
        EXPECT_EQ(dialogs.take(), (Shown{"没有当前记录，不能打印！", "系统提示", MessageIcon::Critical}));
    }
    database.connection().Execute("insert into yy_ssdj_h(fpbh) values('F1')");
    const FormDriver drive = open();
    drive.click("Fp_Rpt");
    drive.click("Bgd_rpt");
    EXPECT_EQ(shown, (QStringList{"YY_Sp_CkZy_Rpt伍佰圆整", "YY_BGD_TsZy_RpT"}));
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
}

} // namespace tradewick
