// Booking notes and bills of lading by their controls.
#include "shipping_form.h"

#include <QAbstractItemView>
#include <QLabel>
#include <QSet>

#include <map>

namespace tradewick
{

using namespace test;

namespace
{

class ShippingNotes : public ShippingForm
{
protected:
    ShippingNotes()
    {
        insert("sys_gsmc", {{"gsbh", "1"},
                            {"gsmc", "甲"},
                            {"e_gsmc", " A "},
                            {"e_gsdz", "a1 "},
                            {"gsdz", " a2"},
                            {"gs_phone", "a3"},
                            {"gs_fax", "a4"}});
        insert("sys_gsmc", {{"gsbh", "2"}, {"gsmc", "乙"}});
        insert("sys_cwgs", {{"gsbh", "1"},
                            {"gsmc", "L"},
                            {"ywmc", " l "},
                            {"dizhi", "l1"},
                            {"phone", "l2"},
                            {"fax", "l3"},
                            {"logo", "l4"},
                            {"lxr", "l5"}});
        for (const char *number : {"F1", "F2"})
            insert("yy_mxb_h", {{"fpbh", number},
                                {"gsmc", "甲"},
                                {"htbh", "X1"},
                                {"madol", "MARK"},
                                {"cpmc", "帽's"},
                                {"mdgk", " HAM "},
                                {"ship_name", "SHIP "},
                                {"khmc", " K "},
                                {"zyqx", "2026-3-5"}});
        const struct {
            const char *invoice, *size, *package;
            int pieces;
            double weight, volume;
        } goods[] = {{"F1", "S", "CTNS", 3, 10.5, 1.5},
                     {"F1", "M", "PLTS", 1, 100, 2},
                     {"F1", "L", "CTNS", 4, 20, .25},
                     {"F2", "S", "CTNS", 7, 1, 1}};
        for (const auto &one : goods)
            insert("yy_mxb_b", {{"fpbh", one.invoice},
                                {"gg", one.size},
                                {"b_zdw", one.package},
                                {"jianshu", one.pieces},
                                {"zmz", one.weight},
                                {"hjtj", one.volume}});
    }

    QString linesOf(const QString &table)
    {
        return row("select fpbh,htbh,madol,cpmc,b_zdw,jianshu,zmz,hjtj,xh from " + table + " order by fpbh,b_zdw,xh");
    }
    // A note of the first invoice under the carrier's own number.
    QString book()
    {
        const FormDriver drive = open(CY_Dcd_Rpt());
        drive.click("Cmdadd");
        drive.choose("Combo1(0)", "甲");
        drive.choose("Combo1(1)", "F1");
        drive.choose("Combo1(2)", "L");
        drive.type("Text(22)", "SZX 7");
        drive.click("CmdOK");
        return drive.text("Text(0)");
    }
    int lineCount(const char *table) { return database.count(table); }
    static QString thisMonth() { return QDate::currentDate().toString("yyMM"); }
};

constexpr const char *linesOfF1 = "F1|X1|MARK|帽's|CTNS|7|30.5|1.75| 1|F1|X1|MARK|帽's|PLTS|1|100|2| 1";

} // namespace

TEST_F(ShippingNotes, ABookingTakesCompanyGoodsAndLine)
{
    const FormDriver drive = open(CY_Dcd_Rpt());
    drive.click("Cmdadd");
    EXPECT_EQ(drive.text("Text(22)"), "DC" + thisMonth() + "00001");
    drive.control("Combo1(1)")->setFocus();
    QApplication::processEvents();
    EXPECT_EQ(dialogs.take(), stop("请先选择派车公司"));
    EXPECT_EQ(drive.focused(), "Combo1(0)");
    drive.choose("Combo1(0)", "甲");
    EXPECT_EQ(offered("Combo1(1)"), (QStringList{"F1", "F2"}));
    drive.choose("Combo1(1)", "F1");
    EXPECT_EQ(linesOf("cy_dcd_djb_b"), linesOfF1);
    drive.choose("Combo1(1)", "F2"); // comes behind the others
    EXPECT_EQ(linesOf("cy_dcd_djb_b"), QString(linesOfF1) + "|F2|X1|MARK|帽's|CTNS|7|1|1| 3");
    drive.choose("Combo1(2)", "L");
    drive.type("Text(22)", "SZX 7");
    drive.click("CmdOK");
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
    EXPECT_EQ(row("select dcdh,cw_dcdh,tygs_emc,tygs_edz,tygs_dz,tygs_phone,tygs_fax,mdgk,ship_name,hyd,zhgk,zyqx,shr,"
                  "htbh,cygs_emc,cygs_dz,cygs_phone,cygs_fax,cygs_logo,cygs_lxr from cy_dcd_djb_h"),
              "DC" + thisMonth() + "00001|SZX 7|A|a1|a2|a3|a4| HAM |SHIP || |2026-3-5| K |X1|l|l1|l2|l3|l4|l5");

    // OK does not end the Add: a Cancel goes on taking the lines away.
    drive.click("Cmdedit");
    drive.click("Cmdcancel");
    EXPECT_EQ(lineCount("cy_dcd_djb_b"), 0);
    EXPECT_EQ(lineCount("cy_dcd_djb_h"), 1);
    drive.click("Cmdedit");
    drive.choose("Combo1(0)", "甲");
    drive.choose("Combo1(1)", "F1");
    drive.click("Cmdcancel"); // by now it is an Edit's
    EXPECT_EQ(lineCount("cy_dcd_djb_b"), 2);
}

// Two desktops are offered one number, which neither clerk sees.
TEST_F(ShippingNotes, ANoteWhoseNumberAnotherDesktopTookGoesOnUnderTheNext)
{
    const QString number = "DC" + thisMonth() + "0000%1";
    for (const bool stored : {true, false}) { // the other's record, or only its goods
        const FormDriver drive = open(CY_Dcd_Rpt());
        drive.click("Cmdadd");
        const QString offered = drive.text("Text(0)"), next = number.arg(stored ? 2 : 4);
        ASSERT_EQ(offered, number.arg(stored ? 1 : 3));
        if (stored)
            insert("cy_dcd_djb_h", {{"dcdh", offered}, {"djrq", QDate::currentDate()}});
        insert("cy_dcd_djb_b", {{"dcdh", offered}, {"fpbh", "X"}});
        drive.choose("Combo1(0)", "甲");
        drive.choose("Combo1(1)", stored ? "F1" : "F2");
        EXPECT_EQ(drive.text("Text(0)"), next);
        EXPECT_EQ(drive.text("Text(22)"), next);
        drive.click("CmdOK");
        EXPECT_EQ(dialogs.shown, QVector<Shown>());
        EXPECT_EQ(row("select fpbh from cy_dcd_djb_b where dcdh='" + offered + "'"), "X");
        EXPECT_EQ(row("select DISTINCT fpbh from cy_dcd_djb_b where dcdh='" + next + "'"), stored ? "F1" : "F2");
    }
    // A line typed by hand goes along at OK; the carrier's number stays as it was typed over.
    const FormDriver drive = open(CY_Dcd_Rpt());
    drive.click("Cmdadd");
    drive.type("Text(22)", "SZX 7");
    drive.typeCell(drive.find<Grid>("TDBGrid1"), 0, "gfh", "SEAL");
    insert("cy_dcd_djb_h", {{"dcdh", drive.text("Text(0)")}, {"djrq", QDate::currentDate()}});
    drive.click("CmdOK");
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
    EXPECT_EQ(row("select h.dcdh,h.cw_dcdh,gfh,b.dcdh from cy_dcd_djb_h h,cy_dcd_djb_b b where b.dcdh=h.dcdh and "
                  "gfh='SEAL'"),
              QString("%1|SZX 7|SEAL|%1").arg(number.arg(6)));
}

TEST_F(ShippingNotes, EveryChoiceOfABookingReadsItsGoodsAgain)
{
    const QString booked = book();
    const FormDriver drive = open(CY_Dcd_Rpt());
    const auto lines = [&] { return drive.find<Grid>("TDBGrid1")->model()->rowCount(); };
    drive.click("Cmdedit");
    const int before = lines();
    insert("cy_dcd_djb_b", {{"dcdh", booked}, {"fpbh", "F1"}});
    drive.choose("Combo1(3)", "是");
    EXPECT_EQ(lines(), before + 1);
    drive.typeCell(drive.find<Grid>("TDBGrid1"), 0, "gfh", "SEAL");
    drive.choose("Combo1(4)", "否"); // what was typed is not read away
    EXPECT_EQ(form->lines().valueAt(0, form->lines().columnIndex("gfh")).toString(), "SEAL");
}

TEST_F(ShippingNotes, ACompanyWithoutOpenInvoicesEndsTheAdd)
{
    insert("cy_dcd_djb_b", {{"dcdh", "DC1"}, {"fpbh", "F1"}});
    const FormDriver drive = open(CY_Dcd_Rpt());
    for (const char *company : {"乙", "甲", "甲"}) {
        drive.click("Cmdadd");
        drive.choose("Combo1(0)", company);
        const bool isOpen = dialogs.shown.isEmpty();
        EXPECT_EQ(form->isBusy(), isOpen);
        EXPECT_EQ(std::exchange(dialogs.shown, {}),
                  isOpen ? QVector<Shown>() : QVector<Shown>{stop("此公司没有要订舱的新发票，不能订舱！")});
        if (isOpen) {
            EXPECT_EQ(offered("Combo1(1)"), QStringList{"F2"});
            drive.click("Cmdcancel");
            database.connection().Execute("insert into cy_dcd_djb_b(dcdh) values('DC1')"); // nothing is open then
        }
        EXPECT_EQ(form->records().RecordCount(), 0);
    }
    EXPECT_EQ(lineCount("cy_dcd_djb_b"), 2);
}

TEST_F(ShippingNotes, FieldsThatAreLeftKeepOrLoseWhatWasTyped)
{
    const FormDriver drive = open(CY_Dcd_Rpt());
    drive.click("Cmdadd");
    const struct {
        const char *field, *typed, *shown, *told;
    } cases[] = {{"Text(20)", "2026/3/5", "2026/3/5", nullptr},
                 {"Text(20)", "soon", "soon", "日期输入有误，请重新核对！"},
                 {"Text(20)", " ", " ", nullptr},
                 {"Text(1)", "soon", "soon", "日期输入有误，请重新核对！"},
                 {"Text(1)", "2026/3/5", "2026-03-05", nullptr},
                 {"Text(21)", "12x", "", "数值输入有误，请重新核对！"},
                 {"Text(21)", "1,200", "1200", nullptr}};
    for (const auto &one : cases) {
        drive.type(one.field, one.typed);
        drive.leave(one.field);
        EXPECT_EQ(std::exchange(dialogs.shown, {}), one.told ? QVector<Shown>{stop(one.told)} : QVector<Shown>());
        EXPECT_EQ(drive.text(one.field), one.shown);
    }
    // Arrows pass over the number that stands behind the other.
    drive.control("Text(26)")->setFocus();
    drive.press("Text(26)", Qt::Key_Down);
    EXPECT_EQ(drive.focused(), "Text(1)");
    drive.click("Cmdcancel");
}

TEST_F(ShippingNotes, ABillIsMadeFromABooking)
{
    const QString booked = book();
    database.connection().Execute("update cy_dcd_djb_h set tzr=' N ',tygs_emc=' A ',cygs_lxr=' l5 '");
    database.connection().Execute("update cy_dcd_djb_b set gfh='SEAL',xjh='7',cpgg='G'");
    insert("cy_dcd_djb_h", {{"dcdh", "DC2"}, {"cw_dcdh", " "}});
    insert("cy_dcd_djb_h", {{"dcdh", "DC3"}});
    const FormDriver drive = open(cy_HYtD_DjB());
    const QStringList notes = offered("Combo1(0)");
    EXPECT_EQ(QSet<QString>(notes.begin(), notes.end()), (QSet<QString>{" ", "SZX 7"}));
    auto *combo = drive.find<QComboBox>("Combo1(0)");
    const auto click = [&](const QString &note) {
        combo->setFocus();
        combo->showPopup();
        QApplication::processEvents();
        combo->view()->setCurrentIndex(combo->model()->index(combo->findText(note), 0));
        QTest::keyClick(combo->view(), Qt::Key_Return);
        QApplication::processEvents();
    };
    drive.click("Cmdadd");
    click(" ");
    EXPECT_EQ(dialogs.take(), stop("此公司没有新订舱单，不能出提单！"));
    EXPECT_FALSE(form->isBusy());
    EXPECT_EQ(form->records().RecordCount(), 0);

    drive.click("Cmdadd");
    click("SZX 7");
    const QString bill = "TD" + thisMonth() + "00001";
    EXPECT_EQ(linesOf("cy_hytd_djb_b"), linesOfF1);
    click("SZX 7"); // twice is twice
    EXPECT_EQ(lineCount("cy_hytd_djb_b"), 4);
    drive.click("CmdOK");
    EXPECT_EQ(row("select tdhm,cw_tdhm,dcdh,tygs,shr,tzr,ship_name,zhgk,mdgk,hyd,zyqx,tygs_emc,cygs,cygs_emc,cygs_lxr "
                  "from cy_hytd_djb_h"),
              QString("%1|%1|SZX 7|甲| K | N |SHIP | | HAM ||2026-3-5|A|L|l|l5").arg(bill));
    EXPECT_EQ(row("select DISTINCT tdhm,dcdh,gfh,xjh,cpgg,xh from cy_hytd_djb_b"), bill + u'|' + booked + "|-|7|G| 1");
    EXPECT_EQ(offered("Combo1(0)").size(), 2); // until the form is opened again
    open(cy_HYtD_DjB());
    EXPECT_EQ(offered("Combo1(0)"), QStringList{" "});
    insert("cy_hytd_djb_h", {{"tdhm", "TD1"}});
    open(cy_HYtD_DjB());
    EXPECT_EQ(offered("Combo1(0)"), QStringList());
}

TEST_F(ShippingNotes, EveryChoicePrintsOnItsPaperAndLeavesWhatItDoesNotName)
{
    QStringList shown;
    std::map<QString, QString> labels;
    setReportViewer([&](Report &of, QWidget *) {
        shown.append(of.name());
        for (const char *name : {"L_cwgs", "L_yWmC", "L_FAx", "L_teL"})
            labels[name] = of.label(name);
    });
    const FormDriver bookings = open(CY_Dcd_Rpt());
    ASSERT_EQ(offered("Combo2").size(), 20);
    bookings.click("Cmdprint"); // the blank choice, and no record
    bookings.type("Combo2", "铁行渣华提单");
    bookings.click("Cmdprint");
    bookings.type("Combo2", " NYK订舱单 ");
    bookings.click("Cmdprint");
    EXPECT_EQ(shown, (QStringList{"CY_ty_DCD_Rpt", "CY_DCD_Nyk_Rpt"}));
    EXPECT_EQ(dialogs.shown, QVector<Shown>());

    open(cy_HYtD_DjB());
    FormDriver(*form).click("Cmdprint");
    EXPECT_EQ(dialogs.take(), stop("没有当前记录，不能打印！"));
    insert("cy_hytd_djb_h", {{"tdhm", "TD1"}});
    const FormDriver bills = open(cy_HYtD_DjB());
    ASSERT_EQ(offered("Combo2").size(), 20);
    shown.clear();
    const struct {
        const char *choice, *report, *above, *below, *fax;
    } cases[] = {
        {"OOCL提单", "CY_HYTD_WanNe_Rpt", "ＯＯＣＬ　ＣＯＭＰＡＮＹ", "",
         "Fax:852-25318272(香港) 86-20-87520384（广州）86-755-25832301-3（深圳）"},
        {"CMA（ANL）提单", "CY_HYTD_WanNe_Rpt", "ＯＯＣＬ　ＣＯＭＰＡＮＹ",
         "CMA CGM(CHINA) SHIPPING CO.,LTD SHENZHEN BRANCH", "Fax:86-755-25833501/3502/3503"},
        {"川崎提单", "CY_HYTD_WanNe_Rpt", "川崎汽船（中国）有限公司", " K LINE（CHINA）CO.,LTD SHENZHEN BRANCH",
         "Fax:86-755-82934158"},
        {"铁行渣华", "CY_HYTD_WanNe_Rpt", "铁行渣华(中国)船务公司深圳分公司", " K LINE（CHINA）CO.,LTD SHENZHEN BRANCH",
         "Fax:86-755-25153320/3303"},
        {"YangMinG提单", "CY_HYTD_WanNe_Rpt", "", "YANG MING LINE", "Fax:86-769-2486895"},
        {"", "CY_HYTD_WanNe_Rpt", "", "YANG MING LINE", "Fax:86-769-2486895"},
        {"APL提单", "CY_HYTD_RPT", "", "", ""},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.choice);
        bills.type("Combo2", one.choice);
        bills.click("Cmdprint");
        EXPECT_EQ(shown, QStringList{one.report});
        EXPECT_EQ(labels["L_cwgs"], one.above);
        EXPECT_EQ(labels["L_yWmC"], one.below);
        EXPECT_EQ(labels["L_FAx"], one.fax);
        shown.clear();
    }
    bills.type("Combo2", "YangMing提单");
    bills.click("Cmdprint");
    EXPECT_EQ(shown, QStringList());
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
}

// What the declarations of both say beside their fields.
TEST_F(ShippingNotes, BothOpenOnTheirLastAndGoBackToIt)
{
    const struct {
        RecordFormSpec spec;
        const char *table, *key, *number, *choice;
        bool missingMovesFocus;
    } cases[] = {{CY_Dcd_Rpt(), "cy_dcd_djb_h", "dcdh", "Text(22)", "订舱打印选项", true},
                 {cy_HYtD_DjB(), "cy_hytd_djb_h", "tdhm", "Text(11)", "提单打印选项", false}};
    for (const auto &of : cases) {
        for (const char *key : {"N1", "N2", "N3"})
            insert(of.table, {{of.key, key}});
        const FormDriver drive = open(of.spec);
        EXPECT_EQ(drive.text("Text(0)"), "N3");
        EXPECT_FALSE(drive.control("Text(0)")->isVisible());
        QStringList captions;
        for (const QLabel *label : form->findChildren<QLabel *>())
            if (label->buddy() == drive.control("Combo2"))
                captions.append(label->text());
        EXPECT_EQ(captions, QStringList{of.choice});
        drive.click("Cmdadd");
        EXPECT_EQ(drive.focused(), of.number);
        drive.type("Text(0)", "");
        drive.control("Text(3)")->setFocus();
        drive.click("CmdOK");
        EXPECT_EQ(dialogs.take(), (Shown{"所有名称不能为空", "提示", MessageIcon::Exclamation}));
        EXPECT_EQ(drive.focused(), of.missingMovesFocus ? of.number : "CmdOK");
        drive.click("Cmdcancel");
        EXPECT_EQ(drive.text("Text(0)"), "N1");
        dialogs.answer = true;
        drive.click("Cmddelete");
        EXPECT_EQ(dialogs.take(), (Shown{"是否删除当前记录?", "系统提示", MessageIcon::Question}));
        EXPECT_EQ(drive.text("Text(0)"), "N3");
    }
}

} // namespace tradewick
