// The truck dispatch by its controls.
#include "shipping_form.h"

namespace tradewick
{

using namespace test;

using TruckDispatch = ShippingForm;

TEST_F(TruckDispatch, ThreePicksTakeOverWhatTheyFindAsItStands)
{
    insert("sys_gsmc", {{"gsbh", "1"},
                        {"gsmc", "甲"},
                        {"e_gsmc", " A "},
                        {"gsdz", "a1 "},
                        {"e_gsdz", " a2"},
                        {"gs_phone", "a3"},
                        {"gs_fax", "a4"}});
    insert("sys_gsmc", {{"gsbh", "2"}, {"gsmc", "乙"}, {"e_gsmc", "B"}});
    insert("sys_tcgs", {{"gsbh", "1"},
                        {"gsmc", "T"},
                        {"ywmc", " t "},
                        {"dizhi", "t1 "},
                        {"phone", "t2"},
                        {"fax", "t3"},
                        {"lxr", "t4"}});
    for (const auto &[number, company] : {std::pair("F1", "甲"), {"F2", "甲"}, {"F3", "丙"}, {"F4", "乙"}})
        insert("yy_mxb_h", {{"fpbh", number}, {"gsmc", company}, {"htbh", " X1"}, {"jzxh", " MSKU "}});
    insert("cy_pcd_rpt", {{"pcdh", "PC0001"}, {"fpbh", "F4"}});
    const FormDriver drive = open(CY_Pcd_Djb());
    EXPECT_EQ(offered("Combo1(3)"), (QStringList{"F1", "F2", "F3"}));
    drive.click("Cmdadd");
    drive.control("Combo1(3)")->setFocus();
    QApplication::processEvents();
    EXPECT_EQ(dialogs.take(), stop("请先选择派车公司"));
    EXPECT_EQ(drive.focused(), "Combo1(0)");
    drive.choose("Combo1(0)", "乙");
    EXPECT_EQ(dialogs.take(), stop("此公司没有要派车的新发票，不能派车！"));
    EXPECT_TRUE(form->isBusy());
    EXPECT_EQ(offered("Combo1(3)").size(), 3);
    drive.choose("Combo1(0)", "甲");
    EXPECT_EQ(offered("Combo1(3)"), (QStringList{"F1", "F2"}));
    drive.choose("Combo1(1)", "T");
    drive.choose("Combo1(3)", "F2");
    drive.type("Text(15)", "12x");
    drive.leave("Text(15)");
    EXPECT_EQ(dialogs.take(), stop("数值输入有误，请重新核对！"));
    EXPECT_EQ(drive.text("Text(15)"), "12x");
    drive.type("Text(15)", "800");
    drive.click("CmdOK");
    EXPECT_EQ(row("select e_gsmc,gs_dizh,egs_dz,gs_phone,gs_fax,e_tcgs,tcgs_dz,tcgs_phone,tcgs_fax,tcgs_lxr,htbh,ghfth,"
                  "pcfy from cy_pcd_rpt where pcdh='PC0002'"),
              " A |a1 | a2|a3|a4| t |t1 |t2|t3|t4| X1| MSKU |800");

    QString date;
    setReportViewer([&](Report &shown, QWidget *) { date = shown.label("L_DcRq"); });
    database.connection().Execute("update cy_pcd_rpt set djrq='2026-03-05' where pcdh='PC0002'");
    drive.click("Cmdprint");
    EXPECT_EQ(date, " 2026 年 3月 5日");

    // One invoice that nobody knows, and none is known to be open.
    insert("cy_pcd_rpt", {{"pcdh", "PC0003"}});
    open(CY_Pcd_Djb());
    EXPECT_EQ(offered("Combo1(3)"), QStringList());
}

} // namespace tradewick
