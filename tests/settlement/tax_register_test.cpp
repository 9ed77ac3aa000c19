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
    ~TaxRegister() override { setReportViewer({}); }

    FormDriver open(std::initializer_list<const char *> rows)
    {
        for (const char *row : rows)
            database.connection().Execute(QString("insert into ") + row);
        form = std::make_unique<RecordForm>(YY_SsPj_DJB());
        return FormDriver(*form);
    }
    // All values of some rows by "|", Null as "-".
    QString rows(const QString &statement)
    {
        QStringList texts;
        for (const Row &row : database.connection().rows(statement))
            for (const QVariant &value : row.values())
                texts.append(value.isNull() ? "-" : Recordset::text(value, ColumnKind::Unknown));
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
    const FormDriver drive =
        open({"yy_mxb_h(fpbh,hl,hxdh,cg_csmc) values('F1',2,'H1','S')", "yy_mxb_h(fpbh) values('F2')",
              "yy_mxb_h(fpbh) values('F3')", "yy_ssdj_b(fpbh,cpmc) values('','of none')",
              "yy_mxb_b(fpbh,xh,cpmc,dj,sl,je,zzs,zsl,jianshu) values('F1',1,'A',5,100,500,17,13,4)",
              "yy_mxb_b(fpbh,xh,cpmc,je) values('F1',2,'B',0.003)",
              "yy_mxb_b(fpbh,dj,je,zzs,zsl) values('F2',1,-250.5,17,13)"});
    const auto add = [&](const QString &invoice) {
        drive.click("Cmdadd");
        drive.choose("Combo1(0)", invoice);
        drive.type("Text1(0)", "V1");
        drive.control("Text1(1)")->setFocus();
        QTest::keyClicks(drive.control("Text1(1)"), "2026/1/15"); // of which "2026/1/1" is a date already
    };
    auto *invoice = drive.find<Grid>("TDBGrid1"), *certificate = drive.find<Grid>("TDBGrid3");
    for (const char *without : {"F2", "F3"}) { // a rate, goods
        add(without);
        drive.click("CmdOK");
    }
    EXPECT_EQ(rows("select dj,je,suie,sjje from yy_ssdj_b where fpbh='F2'"), "0|0|0|0");
    EXPECT_EQ(rows("select hx_zjje from yy_ssdj_h order by fpbh") + totals("F3"), "-250.5|--|-|-|-");
    add("F1");
    EXPECT_TRUE(invoice->isEditing() && !certificate->isEditing());
    drive.click("CmdOK");
    EXPECT_EQ(rows("select cpmc,dj,je,suie,sjje,sjze,zsl from yy_ssdj_b where fpbh='F1' order by xh"),
              "A|10|1000|170|130|1170|13|B|0|0.006|0|0|0.006|0");
    EXPECT_EQ(rows("select zzsfph,zzs_kprq,hxdh,csmc,jianshu,hx_zjje from yy_ssdj_h where fpbh='F1'"),
              "V1|2026-01-15|H1|S|4| 500.003");
    EXPECT_EQ(totals("F1"), "壹仟壹佰柒拾圆零壹分|1170.006|壹佰叁拾圆整|130");
    EXPECT_EQ(drive.text("Text1(25)") + drive.text("Text1(36)") + drive.text("FP_id"), "SF1F1");
    EXPECT_EQ(drive.find<QComboBox>("Combo1(0)")->count(), 0) << "all are registered";

    drive.click("Cmdedit");
    drive.typeCell(invoice, 0, "sl", "200");
    QTest::keyClick(form.get(), Qt::Key_2, Qt::AltModifier);
    const auto shown = [&](int column) { return certificate->model()->index(0, column).data().toString(); };
    EXPECT_EQ(shown(1) + u'|' + shown(4) + u'|' + shown(7), "200|2000|130");
    drive.typeCell(certificate, 0, "zzs", "16"); // from which the certificate's tax does not follow
    EXPECT_EQ(shown(7), "130");
    drive.typeCell(certificate, 0, "zsl", "10");
    drive.click("CmdOK");
    EXPECT_EQ(rows("select sl,je,suie,sjje,sjze from yy_ssdj_b where cpmc='A'"), "200|2000|340|200|1170");
    EXPECT_EQ(totals("F1"), "壹仟壹佰柒拾圆零壹分|1170.006|壹佰叁拾圆整|130");
    drive.click("Cmdedit");
    drive.click("CmdOK");
    EXPECT_EQ(totals("F1"), "贰仟叁佰肆拾圆零壹分|2340.006|贰佰圆整|200");

    drive.click("Cmdedit"); // an Add lasts until its Cancel
    drive.click("Cmdcancel");
    EXPECT_EQ(rows("select cpmc from yy_ssdj_b where fpbh<>'F2'"), "of none");
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
    drive.click("Cmdadd");
    form->focusField("Text1(36)");
    QApplication::processEvents();
    drive.type("Text1(36)", "F1");
    drive.leave("Text1(36)");
    EXPECT_EQ(dialogs.take().text, "销货发票号码“F1”已被另一记录使用，请核对！");
    drive.type("Combo1(0)", "");
    drive.click("Cmdcancel");
    EXPECT_EQ(rows("select cpmc from yy_ssdj_b where fpbh<>'F2'"), "of none");
    for (const char *button : {"cmdqd", "cmdnext", "Cmdadd", "Cmdcancel"}) // back where Add began
        drive.click(button);
    EXPECT_EQ(drive.text("FP_id"), "F3");
    drive.click("cmdxq");
    drive.click("Cmddelete");
    EXPECT_EQ(drive.text("FP_id") + rows("select cpmc from yy_ssdj_b"), "F1of none");
    drive.click("Cmdadd"); // without an invoice, which leaves the others offered
    drive.type("Text1(0)", "V1");
    drive.click("CmdOK");
    EXPECT_EQ(drive.find<QComboBox>("Combo1(0)")->itemText(0), "F2");
}

TEST_F(TaxRegister, ASearchNarrowsUntilAnotherOne)
{
    const FormDriver drive = open({"yy_ssdj_h(fpbh,hxdh,sj_zclx) values('A1','H1','X')",
                                   "yy_ssdj_h(fpbh,hxdh) values('A2','H2')", "yy_ssdj_h(fpbh,hxdh) values('B1','H2')"});
    const struct {
        const char *box, *typed, *last, *form;
        int records;
        bool chosen;
    } steps[] = {{"Combo4", "a", "A2", "", 2, false},  {"Combo5", "h2", "B1", "h2", 2, false},
                 {"Combo5", " ", "B1", " ", 2, false}, {"Combo5", "H1", "A1", "H1", 1, false},
                 {"Combo4", "B1", "B1", "", 1, true},  {"Combo4", "", "B1", "", 1, false}};
    for (const auto &step : steps) {
        step.chosen ? drive.choose(step.box, step.typed) : drive.type(step.box, step.typed);
        drive.click("cmdmd");
        EXPECT_EQ(drive.text("FP_id"), step.last) << step.box << step.typed;
        EXPECT_EQ(form->records().RecordCount(), step.records) << step.box << step.typed;
        EXPECT_EQ(drive.text("Combo5"), step.form) << step.box << step.typed;
    }
    drive.click("Cmdedit"); // a choice reads the lines anew
    database.elsewhere("insert into yy_ssdj_b(fpbh) values('B1')");
    QTest::keyClick(form.get(), Qt::Key_2, Qt::AltModifier);
    drive.choose("Combo1(1)", "X");
    EXPECT_EQ(form->lines().RecordCount(), 1);
}

TEST_F(TaxRegister, EachButtonPrintsItsPaperOfTheInvoice)
{
    QStringList shown;
    setReportViewer([&](Report &paper, QWidget *) { shown += paper.name() + paper.label("L_ZwJe"); });
    for (const char *invoice : {"yy_ssdj_h(fpbh) values('')", "yy_ssdj_h(fpbh) values('F1')"}) {
        const FormDriver drive = open({"yy_mxb_h(fpbh) values('F1')", "yy_mxb_b(fpbh,je) values('F1',500)", invoice});
        drive.click("Fp_Rpt");
        drive.click("Bgd_rpt");
        database.connection().Execute("delete from yy_mxb_h");
        database.connection().Execute("delete from yy_mxb_b");
    }
    EXPECT_EQ(shown, (QStringList{"YY_Sp_CkZy_Rpt伍佰圆整", "YY_BGD_TsZy_RpT"}));
    const Shown none{"没有当前记录，不能打印！", "系统提示", MessageIcon::Critical};
    EXPECT_EQ(dialogs.shown, (QVector<Shown>{none, none}));
}

} // namespace tradewick
