// The register of verification forms by its controls: lots, returns and issues on their tabs.
#include "common/record_form.h"
#include "common/tabbed_form.h"
#include "settlement/settlement.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <QElapsedTimer>

namespace tradewick
{

using namespace test;

namespace
{

enum Tab { Lots, Returns, Issues };
const QString length = "核销单号编码为9位半角字符，请核对！", order = "起始编号不能大于终止编号，请核对！",
              issued = "此核销单号组已有领用过（部分或全部），不能再次领用！",
              again = "此核销单号已经回收过，不能再次回收！", badDate = "日期输入有误，请重新核对！";

class VerificationForms : public testing::Test
{
protected:
    FormDriver on(Tab tab) const { return FormDriver(window.tab(tab)); }
    // Types texts into fields of a tab, leaving each, then presses a button.
    void run(Tab tab, const char *begin, const QVector<std::pair<QString, QString>> &fields, const char *end) const
    {
        const FormDriver drive = on(tab);
        drive.click(begin);
        for (const auto &[field, text] : fields) {
            drive.type(field, text);
            drive.leave(field);
        }
        if (end)
            drive.click(end);
    }
    void lot(const QString &start, const QString &end) const
    {
        run(Lots, "Cmdadd", {{"Text1(1)", start}, {"Text1(2)", end}}, "CmdOK");
    }
    void issue(const QString &start, const QString &end) const
    {
        run(Issues, "Cmdadd", {{"Text1(15)", start}, {"Text1(16)", end}}, "CmdOK");
    }
    // Forms of each lot in the order of their entry: all, used, left, returned.
    QStringList counters()
    {
        QStringList lots;
        for (const Row &row : database.connection().rows("select * from cy_hxd_wgj_ld order by start"))
            lots.append(QString("%1 %2 %3 %4")
                            .arg(row["gl_fenshu"].toInt())
                            .arg(row["yy_fenshu"].toInt())
                            .arg(row["sy_fenshu"].toInt())
                            .arg(row["hs_fenshu"].toInt()));
        return lots;
    }
    static Shown stop(const QString &text) { return {text, "系统提示", MessageIcon::Critical}; }

    TestDatabase database;
    ScriptedDialogs dialogs;
    TabbedForm window{CY_HXD_Djb()};
};

} // namespace

TEST_F(VerificationForms, NumbersIssuedAndReturnedCountInEveryLotThatHoldsThem)
{
    lot("ABC000100", "ABC000199");
    EXPECT_EQ(counters(), QStringList{"100 0 100 0"});
    issue("ABC000150", "ABC000160");
    EXPECT_EQ(counters(), QStringList{"100 11 89 0"});
    EXPECT_EQ(on(Lots).text("T_Sy"), "89");
    run(Returns, "Cmdadd", {{"Text1(4)", "ABC000155"}}, "CmdOK");
    EXPECT_EQ(counters(), QStringList{"100 11 89 1"});
    // Over two series nothing counts, neither in a lot, whichever of them a number is of, nor in a range issued.
    lot("ABC000900", "ABD000999");
    issue("XBC000195", "XBD000203");
    EXPECT_EQ(counters(), (QStringList{"100 11 89 1", "0 0 0 0"}));
    EXPECT_EQ(on(Issues).text("Text1(18)"), "");
    // An issue over the end of one lot into another, and back into the first; numbers that no lot holds.
    lot("ABC000198", "ABC000250");
    issue("ABC000197", "ABC000202");
    EXPECT_EQ(counters(), (QStringList{"100 14 86 1", "53 5 48 0", "0 0 0 0"}));
    issue("ABC000998", "ABC000999");
    issue("ABD000998", "ABD000999");
    for (const char *number : {"ABC000199", "ABC000099", "ABC000998", "ABD000998", "XYZ000155"})
        run(Returns, "Cmdadd", {{"Text1(4)", number}}, "CmdOK");
    const QStringList after{"100 14 86 2", "53 5 48 1", "0 0 0 0"};
    EXPECT_EQ(counters(), after);
    // Neither editing nor deleting moves a counter.
    on(Issues).click("cmdqd");
    run(Issues, "Cmdedit", {{"Text1(16)", "ABC000165"}}, "CmdOK");
    run(Lots, "Cmdedit", {{"Text1(2)", on(Lots).text("Text1(2)")}}, "CmdOK");
    run(Returns, "Cmdedit", {{"Text1(4)", "ABC000188"}}, "CmdOK");
    EXPECT_EQ(counters(), after);
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
    on(Issues).click("Cmddelete");
    on(Returns).click("Cmddelete");
    EXPECT_EQ(database.count("cy_hxd_gshs") * 10 + database.count("cy_hxd_gsly"), 45);
    EXPECT_EQ(counters(), after);
}

TEST_F(VerificationForms, NumbersWithLettersCountByTheDigitsThatTheyBeginWith)
{
    lot("ABC00009X", "ABC00019X");
    lot("ABCDEFGHI", "ABC00011X");
    lot("ABC000010", "ABC000020");
    issue("ABC000010", "ABC000012");
    run(Returns, "Cmdadd", {{"Text1(4)", "ABC00011X"}}, "CmdOK");
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
    EXPECT_EQ(counters(), (QStringList{"11 3 8 1", "11 3 8 1", "12 2 10 1"}));
}

TEST_F(VerificationForms, TellsWhatIsWrongWithANumberAndGoesWhereItIsMended)
{
    issue("ABC000150", "ABC000160");
    run(Returns, "Cmdadd", {{"Text1(4)", "ABC000155"}}, "CmdOK");
    const struct {
        Tab tab;
        const char *begin, *firstField, *first, *field, *text;
        QString told;
        const char *focused, *left;
    } cases[] = {
        {Lots, "Cmdadd", "Text1(0)", "2026-03-05", "Text1(1)", "", length, "Text1(1)", ""},
        {Lots, "Cmdadd", "Text1(0)", "2026-03-05", "Text1(1)", "ABC00010", length, "Text1(1)", "ABC00010"},
        {Lots, "Cmdadd", "Text1(1)", "ABC000100", "Text1(2)", "ABC0001000", length, "Text1(1)", "ABC0001000"},
        {Lots, "Cmdadd", "Text1(1)", "ABC000100", "Text1(2)", "ABC000100", order, "Text1(1)", "ABC000100"},
        {Issues, "Cmdadd", "Text1(17)", "X1", "Text1(14)", "2026-13-05", badDate, "Text1(14)", "2026-13-05"},
        {Returns, "Cmdadd", "Text1(3)", "2026-03-05", "Text1(4)", "ABC00015", length, "Text1(4)", "ABC00015"},
        {Returns, "Cmdadd", "Text1(3)", "2026-03-05", "Text1(4)", " ABC000155 ", again, "Combo1(2)", ""},
        {Returns, "Cmdedit", "Text1(3)", "2026-03-05", "Text1(4)", "ABC000155", again, "Combo1(2)", ""},
        {Returns, "Cmdadd", "Text1(4)", "", "Text1(8)", "Before May", badDate, "Text1(8)", "Before May"},
        {Issues, "Cmdadd", "Text1(15)", "short", "Text1(16)", "ABC00016", length, "Text1(15)", "ABC00016"},
        {Issues, "Cmdadd", "Text1(15)", "ABC000100", "Text1(16)", "ABC000099", order, "Text1(15)", "ABC000099"},
        // An earlier issue within the new one, one around its start, one that begins within it.
        {Issues, "Cmdadd", "Text1(15)", "ABC000100", "Text1(16)", "ABC000199", issued, "Text1(15)", "ABC000199"},
        {Issues, "Cmdadd", "Text1(15)", "ABC000160", "Text1(16)", "ABC000169", issued, "Text1(15)", "ABC000169"},
        {Issues, "Cmdadd", "Text1(15)", "ABC000100", "Text1(16)", "ABC000150", issued, "Text1(15)", "ABC000150"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(QString("%1: %2 %3").arg(c.begin, c.first, c.text).toStdString());
        run(c.tab, c.begin, {{c.firstField, c.first}, {c.field, c.text}}, nullptr);
        EXPECT_EQ(dialogs.take(), stop(c.told));
        EXPECT_EQ(on(c.tab).text(c.field), c.left);
        EXPECT_EQ(window.focusWidget()->objectName(), c.focused);
        on(c.tab).click("Cmdcancel");
    }
    // A shortcut key leaves no field: what is typed there is looked at, once.
    const FormDriver drive = on(Lots);
    drive.click("Cmdadd");
    drive.type("Text1(1)", "ABC000100");
    for (const char *end : {"ABC000100", "ABC000199"}) {
        drive.type("Text1(2)", end);
        QTest::keyClick(drive.control("Text1(2)"), Qt::Key_S, Qt::ControlModifier);
        QApplication::processEvents();
        EXPECT_EQ(dialogs.shown, end == QString("ABC000100") ? QVector<Shown>{stop(order)} : QVector<Shown>());
        dialogs.shown.clear();
    }
    EXPECT_EQ(counters(), QStringList{"100 0 100 0"});
}

// The tabs are one form: fields are unlocked on all, and what ends the adding of one ends it for all.
TEST_F(VerificationForms, WhatHappensOnOneTabIsFeltOnTheOthers)
{
    lot("ABC000100", "ABC000199");
    issue("ABC000150", "ABC000160");
    on(Lots).click("Cmdadd");
    const FormDriver issues = on(Issues);
    EXPECT_FALSE(issues.control("Text1(15)")->property("readOnly").toBool());
    EXPECT_TRUE(issues.enabled("Combo1(4)"));
    issues.type("Text1(18)", "3");
    issues.type("Text1(15)", "ABC00015");
    issues.leave("Text1(15)"); // what is wrong there is told while a lot is typed alone
    EXPECT_EQ(dialogs.take(), stop(length));
    issues.type("Text1(15)", "ABC000151");
    issues.leave("Text1(15)");
    EXPECT_EQ(issues.text("Text1(18)"), "10");
    window.close();
    EXPECT_TRUE(window.isVisible());
    on(Lots).click("Cmdcancel");
    EXPECT_TRUE(issues.control("Text1(15)")->property("readOnly").toBool());
    EXPECT_FALSE(issues.enabled("Combo1(4)"));
    run(Issues, "Cmdadd", {{"Text1(15)", "ABC000170"}, {"Text1(16)", "ABC000179"}}, nullptr);
    run(Returns, "Cmdadd", {}, "Cmdcancel");
    on(Issues).click("CmdOK");
    EXPECT_EQ(counters(), QStringList{"100 11 89 0"});
    EXPECT_EQ(database.count("cy_hxd_gshs"), 2);
}

TEST_F(VerificationForms, AnIssueAndItsCountersAreStoredTogetherOrNotAtAll)
{
    lot("ABC000001", "ABC020000");
    database.refuse("cy_hxd_wgj_ld", "yy_fenshu", "6");
    issue("ABC000001", "ABC010000");
    EXPECT_TRUE(dialogs.take().text.contains("refused"));
    EXPECT_EQ(counters(), QStringList{"20000 0 20000 0"});
    dialogs.stepsBeforeCancel = 5;
    on(Issues).click("Cmdedit");
    on(Issues).click("CmdOK");
    EXPECT_EQ(dialogs.take(), (Shown{"登记已取消，领用记录尚未保存。", "", MessageIcon::None}));
    EXPECT_EQ(counters(), QStringList{"20000 0 20000 0"});
    EXPECT_EQ(database.count("cy_hxd_gshs"), 0);
    EXPECT_EQ(on(Issues).text("state"), "未保存");
    dialogs.stepsBeforeCancel = -1;
    database.elsewhere("update cy_hxd_wgj_ld set yy_fenshu=7");
    QElapsedTimer clock;
    clock.start();
    on(Issues).click("Cmdedit");
    on(Issues).click("CmdOK");
    EXPECT_LT(clock.elapsed(), 20000);
    RecordProperty("milliseconds", static_cast<int>(clock.elapsed()));
    EXPECT_EQ(counters(), QStringList{"20000 10007 9993 0"});
    EXPECT_EQ(database.count("cy_hxd_gshs"), 1);
}

TEST_F(VerificationForms, AReturnTakesOverItsInvoiceWhichIsOfferedNoMore)
{
    for (const char *row : {"insert into yy_mxb_h(fpbh,htbh,gsmc,bizh,zyqx,hxdh,hgbm,cpmc,b_zdw) "
                            "values('F1','X1','甲','EUR','Before May','ABC000155','3701','镜','CTNS')",
                            "insert into yy_mxb_h(fpbh,htbh) values('F2','X2')",
                            "insert into yy_mxb_b(fpbh,jianshu,je) values('F1',10,1000.5)",
                            "insert into yy_mxb_b(fpbh,jianshu) values('F1',3)"})
        database.connection().Execute(row);
    run(Returns, "Cmdadd", {}, "CmdOK"); // any OK reads what is offered anew, that of a void form as well
    const FormDriver drive = on(Returns);
    drive.click("Cmdadd");
    drive.type("Text1(7)", "5");
    drive.choose("Combo1(2)", "F2");
    EXPECT_EQ(drive.text("Text1(12)") + drive.text("Text1(7)"), "05");
    drive.choose("Combo1(2)", "F1");
    drive.click("CmdOK");
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
    const Row row = database.connection()
                        .rows("select hxdh,htbh,gsmc,bizh,zyqx,bgdh,cpmc,b_zdw,jianshu,hxje from cy_hxd_gsly where "
                              "hxdh<>''")
                        .first();
    QString stored;
    for (const QVariant &value : row.values())
        stored += value.toString() + u'|';
    EXPECT_EQ(stored, "ABC000155|X1|甲|EUR|Before May|3701|镜|CTNS|13|1000.5|");
    const auto *invoices = drive.find<QComboBox>("Combo1(2)");
    EXPECT_EQ(invoices->findText("F1"), -1);
    EXPECT_GE(invoices->findText("F2"), 0);
    drive.click("Cmdedit");
    drive.type("Combo1(2)", "");
    drive.click("CmdOK");
    EXPECT_GE(invoices->findText("F1"), 0);
}

} // namespace tradewick
