// What the query screens print and count, and what stays behind a find or a print.
#include "query_driver.h"
#include "shell/main_window.h"
#include "support/xls_readers.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QProcess>
#include <QRadioButton>
#include <QTemporaryDir>

namespace tradewick
{

using namespace test;

namespace
{

class Queries : public testing::Test, protected QueryTest
{
protected:
    // Contracts of two companies and two customers, one of them with another validity.
    void insertContracts()
    {
        const struct {
            const char *number, *date, *company, *customer, *until;
        } contracts[] = {{"X1", "2026-01-10", "甲公司", "Ann", "2026-03-01"},
                         {"X2", "2026-02-10", "乙公司", "Ann", "2026-09-01"},
                         {"X3", "2026-03-10", "甲公司", "Bob", "2026-09-01"}};
        for (const auto &one : contracts) {
            insert("yy_gw_wxht_h", {{"htbh", one.number},
                                    {"djrq", one.date},
                                    {"gsmc", one.company},
                                    {"khmc", one.customer},
                                    {"bizh", "USD"},
                                    {"hl", 7},
                                    {"yxjzrq", one.until}});
            insert("yy_gw_wxht_b", {{"htbh", one.number}, {"cpmc", one.number}, {"sl", 2}, {"je", 10.5}});
        }
    }
    const Shown nothing{"没有可打印的明细数据", "系统提示", MessageIcon::Critical};
    void ask(const FormDriver &drive, bool yes)
    {
        dialogs.shown.clear();
        dialogs.answer = yes;
        drive.click("CmdPRINT");
    }
};

} // namespace

TEST_F(Queries, DatesThatAreTurnedRoundAreToldInTheWordsOfFindAndPrint)
{
    insertContracts();
    const Shown question{"是否按签约公司分组统计？否，则按国外客户。", "系统提示", MessageIcon::Question};
    const FormDriver drive = open(YY_WXHt_cxTjB());
    setDates("2026-02-01", "2026-01-01");
    drive.click("CmdFIND");
    EXPECT_EQ(dialogs.take(), reversed);
    EXPECT_FALSE(drive.enabled("CmdPRINT"));
    EXPECT_EQ(found("htbh"), "X1|X2|X3");
    setDates("2026-01-01", "2026-12-31");
    drive.click("CmdFIND");
    EXPECT_TRUE(drive.enabled("CmdPRINT") && dialogs.shown.isEmpty());
    setDates("2026-02-01", "2026-01-01");
    ask(drive, true);
    EXPECT_EQ(dialogs.shown, (QVector<Shown>{question, reversedAtPrint}));
    // The second range alone stops no find, which finds nothing, but a print.
    setDates("2026-01-01", "2026-12-31");
    setDate("DTPicker3", "2026-12-31");
    setDate("DTPicker4", "2026-01-01");
    drive.find<QCheckBox>("Check1")->setChecked(true);
    dialogs.shown.clear();
    drive.click("CmdFIND");
    EXPECT_TRUE(dialogs.shown.isEmpty());
    EXPECT_EQ(found("htbh"), "");
    ask(drive, true);
    EXPECT_EQ(dialogs.shown, (QVector<Shown>{question, reversedAtPrint}));
    EXPECT_TRUE(printed.isEmpty());
}

// However its box is entered, and whatever of it is selected, digits are a date from its year on.
TEST_F(Queries, DatesAreTypedAndTheListsOfBoxesCloseAtFind)
{
    const FormDriver drive = open(YY_WXHt_cxTjB());
    ASSERT_TRUE(QTest::qWaitForWindowActive(screen.get()));
    const auto typed = [&](const QString &digits) {
        for (const QChar digit : digits)
            QTest::keyClick(screen->focusWidget(), digit.toLatin1());
        return screen->findChild<QDateEdit *>(screen->focusWidget()->objectName())->date().toString(Qt::ISODate);
    };
    const auto press = [&](Qt::Key key, Qt::KeyboardModifiers with = Qt::NoModifier) {
        QTest::keyClick(screen->focusWidget(), key, with);
        return screen->focusWidget()->objectName();
    };
    EXPECT_EQ(press(Qt::Key_0, Qt::AltModifier), "DTPicker1");
    EXPECT_EQ(typed("20250801"), "2025-08-01");
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(typed("20240702"), "2024-07-02");
    press(Qt::Key_Home);
    EXPECT_EQ(typed("20230603"), "2023-06-03");
    EXPECT_EQ(press(Qt::Key_Tab), "DTPicker2");
    EXPECT_EQ(press(Qt::Key_Tab), "DTPicker3");
    EXPECT_EQ(press(Qt::Key_Backtab, Qt::ShiftModifier), "DTPicker2");
    EXPECT_EQ(typed("20261231"), "2026-12-31");
    auto *company = drive.find<QComboBox>("Combo2");
    company->addItem("A");
    drive.type("Combo2", "A");
    EXPECT_TRUE(company->completer()->popup()->isVisible());
    drive.click("CmdFIND");
    EXPECT_FALSE(company->completer()->popup()->isVisible());
}

TEST_F(Queries, TheFirstCountStaysBelowAndThatOfTheLastFindIsPrinted)
{
    insertContracts();
    const FormDriver drive = open(YY_WXHt_cxTjB());
    EXPECT_EQ(footer("htbh") + footer("djrq"), "合同总数3份");
    setDates("2026-01-01", "2026-12-31");
    drive.find<QCheckBox>("Check1")->setChecked(true);
    setDate("DTPicker3", "2026-01-01");
    setDate("DTPicker4", "2026-06-30");
    drive.click("CmdFIND");
    EXPECT_EQ(found("htbh"), "X1");
    EXPECT_EQ(footer("djrq"), "3份");
    dialogs.isClosed = true; // Escape is neither of both groupings
    ask(drive, true);
    EXPECT_TRUE(printed.isEmpty() && dialogs.shown.size() == 1);
    dialogs.isClosed = false;
    ask(drive, true);
    EXPECT_EQ(printedColumn("htbh"), "X1");
    // By what is typed now, with the count of before.
    drive.find<QCheckBox>("Check1")->setChecked(false);
    drive.type("Combo3", "an");
    ask(drive, false);
    EXPECT_EQ(printed, (QStringList{"YY_WxHt_TjB_rPT", "yy_whht_Tjb_rptB"}));
    EXPECT_EQ(printedColumn("htbh"), "X1|X2");
    EXPECT_EQ(shown["L_QsRq"] + shown["L_JzRq"] + shown["L_CS"], "2026-01-012026-12-311份");
    // A find of nothing prints by the validity, ticked or not.
    drive.type("Combo3", "nobody");
    drive.click("CmdFIND");
    ask(drive, false);
    EXPECT_EQ(statement, "select * from yy_wxht_rpt where htbh<>'' and djrq>='{DTPicker1}' and djrq<='{DTPicker2}'and "
                         "yxjzrq>='{DTPicker3}' and yxjzrq<='{DTPicker4}'AND khmc like'%{Combo3}%'order by khmc,htbh");
    drive.type("Combo3", "");
    setDates("2026-02-01", "2026-02-28");
    drive.click("CmdFIND");
    ask(drive, true);
    EXPECT_EQ(statement, "select * from yy_wxht_rpt where htbh<>''and djrq>='{DTPicker1}' and "
                         "djrq<='{DTPicker2}'order by gsmc,htbh");
}

TEST_F(Queries, AllGoodsStayThoseOfThePartyThatWasPrintedLast)
{
    insertContracts();
    const FormDriver drive = open(YY_WXHt_cxTjB());
    setDates("2026-01-01", "2026-12-31");
    const auto choose = [&](const char *option) {
        drive.click("Cmd_SPtJ");
        EXPECT_TRUE(drive.control("Frame3")->isVisible());
        drive.find<QRadioButton>(option)->click();
        EXPECT_FALSE(drive.control("Frame3")->isVisible());
        EXPECT_FALSE(drive.find<QRadioButton>(option)->isChecked());
        QStringList goods = printedColumn("cpmc").split('|');
        goods.sort();
        return goods.join('|');
    };
    EXPECT_EQ(choose("Option3"), "X1|X2|X3");
    EXPECT_EQ(rows.first().value("bzje").toDouble(), 10.5 * 7);
    for (const auto &[option, message] : {std::pair("Option1", "请选择公司名称"), {"Option2", "请选择国外客户名称"}}) {
        choose(option);
        EXPECT_EQ(dialogs.take(), (Shown{message, "系统提示", MessageIcon::Critical}));
    }
    drive.type("Combo2", "甲");
    drive.type("Combo3", "Ann");
    EXPECT_EQ(choose("Option3"), "X1|X2|X3");
    EXPECT_EQ(choose("Option1"), "X1|X3");
    EXPECT_EQ(shown["L_gsmc"], "甲");
    drive.type("Combo2", "乙"); // what was put together holds the text of then
    EXPECT_EQ(choose("Option3"), "X1|X3");
    EXPECT_EQ(choose("Option2"), "X1|X2");
    EXPECT_EQ(shown["L_gsmc"], "Ann");
    EXPECT_EQ(choose("Option3"), "X1|X2");
    drive.click("CmdFIND");
    EXPECT_EQ(choose("Option3"), "X1|X2|X3");
    ask(drive, true);
    EXPECT_EQ(choose("Option3"), "X2");
    EXPECT_EQ(printed.last(), "YY_wxht_Cptj_CP");
}

TEST_F(Queries, TheRecordIsShownWithItsLinesAndPrinted)
{
    insertContracts();
    QString opened;
    const FormDriver drive =
        open(YY_WXHt_cxTjB(), [&opened](const QString &form, const QString &column, const QVariant &value) {
            opened = form + ' ' + column + ' ' + value.toString();
        });
    drive.press("TDBGrid2", Qt::Key_Down);
    EXPECT_EQ(drive.text("Text1(0)") + drive.text("Combo1(1)"), "X2乙公司");
    EXPECT_EQ(drive.find<Grid>("TDBGrid1")->recordsetModel()->index(0, 1).data().toString(), "X2");
    drive.press("TDBGrid2", Qt::Key_Return);
    EXPECT_EQ(opened, "YY_WXHT htbh X2");
    drive.click("Cur_prt");
    EXPECT_EQ(printed, QStringList{"YY_wxHt_Rpt"});
    EXPECT_EQ(shown["L_ZjjE"], "USD TEN AND CENTS FIFTY ONLY");
    drive.click("CmdFIND"); // of the last thirty days
    drive.click("Cur_prt");
    EXPECT_EQ(dialogs.take(), (Shown{"没有当前记录，不能打印！", "系统提示", MessageIcon::Critical}));
}

TEST_F(Queries, AFoundRecordOpensInItsEntryForm)
{
    insertContracts();
    main_FRM window;
    window.show();
    auto *found = qobject_cast<QueryScreen *>(window.openForm("YY_WXHt_cxTjB"));
    ASSERT_NE(found, nullptr);
    found->grid(0)->setFocus();
    found->records().MoveLast();
    const auto open = [&] { QTest::keyClick(found->grid(0), Qt::Key_Return); };
    found->records().MovePrevious();
    database.connection().Execute("delete from yy_gw_wxht_h where htbh='X2'");
    open(); // another record that is shown instead is not taken for it
    EXPECT_EQ(dialogs.take(), (Shown{"没有找到“X2”，可能已被删除。", "系统提示", MessageIcon::Exclamation}));
    auto *entry = window.findChild<RecordForm *>("YY_WXHT");
    ASSERT_NE(entry, nullptr);
    found->records().MoveLast();
    open();
    EXPECT_EQ(entry->text("Text1(0)"), "X3");
    entry->findChild<QDateEdit *>("DTPicker3")->setDate({2026, 1, 10});
    EXPECT_EQ(entry->records().RecordCount(), 1);
    open(); // a filter of that form does not hide it
    EXPECT_EQ(entry->text("Text1(0)"), "X3");
    entry->findChild<QAbstractButton *>("Cmdedit")->click(); // what is typed there stays
    found->records().MoveFirst();
    window.activateWindow();
    open();
    EXPECT_EQ(dialogs.take(),
              (Shown{QStringLiteral("“%1”正在录入，不能转到“X1”。请先确认或取消。").arg(entry->window()->windowTitle()),
                     "系统提示", MessageIcon::Exclamation}));
    EXPECT_TRUE(QTest::qWaitForWindowActive(entry->window()));
    EXPECT_EQ(entry->text("Text1(0)"), "X3");
    entry->findChild<QAbstractButton *>("Cmdcancel")->click();
    EXPECT_EQ(entry->text("Text1(0)"), "X1");
    found->records().MoveLast();
    window.switchOff("Tool96"); // who may not open the form
    open();
    EXPECT_EQ(entry->text("Text1(0)"), "X1");
}

TEST_F(Queries, BoxesOfNumbersFindAtOnce)
{
    for (const auto &[credit, beneficiary] : {std::pair("L10", "A"), {"L11", "B"}, {"L2", "C"}})
        insert("yy_xyz_nh", {{"xyzh", credit}, {"syr", beneficiary}, {"kzrq", "2026-01-01"}});
    for (const auto &[credit, contract] : {std::pair("L11", "X9"), {"L2", "X9"}})
        insert("yy_xyz_nb", {{"xyzh", credit}, {"htbh", contract}});
    for (const auto &[invoice, contract] : {std::pair("F1", "X1"), {"F2", "X1"}, {"F3", "X12"}})
        insert("yy_mxb_h", {{"fpbh", invoice}, {"htbh", contract}});
    const FormDriver credits = open(YY_XYz_CxTj());
    EXPECT_EQ(footer("xyzh") + footer("kzrq"), "信用证份数3份");
    credits.type("Combo5", "l1");
    EXPECT_EQ(found("xyzh"), "L10|L11");
    credits.type("Combo5", "");
    EXPECT_EQ(found("xyzh"), "L10|L11");
    credits.choose("Combo5", "L2");
    EXPECT_EQ(found("xyzh"), "L2");
    credits.choose("Combo4", "X9"); // of two credits the first
    EXPECT_EQ(found("xyzh"), "L11");
    credits.click("Command1");
    EXPECT_EQ(credits.text("Combo4") + credits.text("Combo5"), "");
    const FormDriver sheets = open(YY_mxd_CxTj());
    sheets.type("Combo4", "x1");
    EXPECT_EQ(found("fpbh"), "F1|F2|F3");
    sheets.choose("Combo4", "X1");
    EXPECT_EQ(found("fpbh") + sheets.text("Combo4"), "F1|F2X1");
    sheets.choose("Combo5", "F3");
    EXPECT_EQ(found("fpbh"), "F3");
    EXPECT_EQ(sheets.text("Combo4"), "");
}

// A credit without contracts is found and not printed.
TEST_F(Queries, CreditsArePrintedThroughTheirContracts)
{
    for (const char *credit : {"L1", "L2"})
        insert("yy_xyz_nh", {{"xyzh", credit}, {"syr", "A"}, {"khmc", "B"}, {"kzrq", "2026-01-05"}});
    insert("yy_xyz_nb", {{"xyzh", "L2"}, {"htbh", "X1"}, {"je", 3}});
    const FormDriver drive = open(YY_XYz_CxTj());
    setDates("2026-01-01", "2026-01-31");
    drive.type("Combo2", "a");
    drive.type("Combo3", "b");
    drive.click("CmdFIND");
    EXPECT_EQ(found("xyzh"), "L1|L2");
    ask(drive, false);
    EXPECT_EQ(printed, QStringList{"YY_xyz_CxTj_RptB"});
    EXPECT_EQ(printedColumn("xyzh") + shown["L_CS"], "L22份");
    EXPECT_TRUE(statement.endsWith("where yy_XyZ_NH.xyzh<>''and yy_XyZ_NH.kzrq>='{DTPicker1}'and "
                                   "yy_XyZ_NH.kzrq<='{DTPicker2}'AND yy_XyZ_NH.syr like '%{Combo2}%'AND "
                                   "yy_XyZ_NH.khmc like'%{Combo3}%'order by yy_XyZ_NH.khmc,yy_XyZ_NH.xyzh"))
        << statement.toStdString();
}

TEST_F(Queries, DispatchesAreSummedByEachFindOfSomeAndPrintedCrosswise)
{
    for (const auto &[number, company, fee] : {std::tuple("PC1", "B", 10.5), {"PC2", "A", 2.0}, {"PC3", "A", 4.0}})
        insert(
            "cy_pcd_rpt",
            {{"pcdh", number}, {"djrq", "2026-01-05"}, {"pcgs", company}, {"tcgs", "T"}, {"pcfy", fee}, {"escg", 1}});
    const FormDriver drive = open(CY_Pcd_CxTj());
    const auto footers = [this] {
        QStringList texts;
        for (const char *column : {"pcdh", "djrq", "zhdz", "pcfy", "escg", "sswcg"})
            texts.append(footer(column, "TDBGrid1"));
        return texts.join('|');
    };
    EXPECT_EQ(footers(), "总计次数||车费总计|||");
    EXPECT_FALSE(drive.enabled("CmdPRINT"));
    setDates("2026-01-05", "2026-01-05");
    drive.type("Combo1", "a");
    drive.click("CmdFIND");
    EXPECT_EQ(footers(), "总计次数|2次|车费总计|6|2|0");
    drive.type("Combo1", "");
    drive.click("CmdFIND");
    EXPECT_EQ(footers(), "总计次数|3次|车费总计|16.5|3|0");
    for (const bool yes : {true, false}) {
        ask(drive, yes);
        EXPECT_EQ(printedColumn("pcdh"), "PC2|PC3|PC1");
        EXPECT_EQ(shown["L_pCCs"], "3 次");
    }
    EXPECT_EQ(printed, (QStringList{"CY_pcd_cxtj_RpT", "Cy_Pcd_Cxtj_rptB"}));
    drive.click("Cur_prt");
    EXPECT_EQ(statement, "select * from cy_pcd_rpt where pcdh='{pcdh} '");
    EXPECT_EQ(printedColumn("pcdh"), "PC2");
    drive.type("Combo1", "nobody");
    drive.click("CmdFIND");
    EXPECT_EQ(footers(), "总计次数|3次|车费总计|16.5|3|0");
    printed.clear();
    ask(drive, true);
    EXPECT_TRUE(printed.isEmpty());
    EXPECT_EQ(dialogs.shown.last(), nothing);
    drive.type("Combo1", "");
    drive.click("CmdFIND");
    drive.type("Combo1", "nobody"); // what would be printed is not there, whatever was found
    ask(drive, true);
    EXPECT_TRUE(printed.isEmpty());
    EXPECT_EQ(dialogs.shown.last(), nothing);
}

TEST_F(Queries, FormsAreFoundWithAContractAndReportedWithout)
{
    for (const auto &[form, contract, date] :
         {std::tuple("H1", "X1", "2026-01-05"), {"H2", "", "2026-01-06"}, {"H3", "X1", "2026-02-01"}})
        insert("cy_hxd_gsly", {{"hxdh", form}, {"htbh", contract}, {"djrq", date}, {"gsmc", "A"}});
    for (const auto &[first, contract] : {std::pair("H1", "X1"), {"H9", ""}})
        insert("cy_hxd_gshs", {{"hxdh_st", first}, {"htbh", contract}, {"djrq", "2026-01-05"}});
    const FormDriver drive = open(YY_HxD_LyHs_TJB());
    EXPECT_EQ(found("hxdh") + ' ' + found("hxdh_st", 1), "H1|H2|H3 H1|H9");
    EXPECT_EQ(footer("hxdh"), "");
    setDates("2026-01-01", "2026-01-31");
    drive.click("CmdFIND");
    EXPECT_EQ(found("hxdh") + ' ' + found("hxdh_st", 1), "H1 H1");
    EXPECT_EQ(footer("hxdh") + footer("fpbh"), "回收总计:1份");
    EXPECT_EQ(footer("hxdh_st", "TDBGrid3") + footer("hxdh_en", "TDBGrid3"), "领用总计:1份");
    drive.click("CmdPRINT");
    EXPECT_EQ(printed.last() + printedColumn("hxdh") + shown["L_Fs"], "CY_HXD_cxtj_rptH11");
    for (const auto &[year, month, forms, title] :
         {std::tuple("", "", "H1|H2|H3", "年度月份出口情况定期统计报表"),
          {"2026", " ", "H1|H2|H3", "2026年度月份出口情况定期统计报表"},
          {"2026", "1", "H1|H2", "2026年度1月份出口情况定期统计报表"},
          {"x' or 1=1 --", "", "", "x' or 1=1 --年度月份出口情况定期统计报表"}}) {
        drive.type("Text1", year);
        drive.type("Text2", month);
        drive.click("SB_tjb");
        EXPECT_EQ(printed.last(), "CY_hxd_yueFen_Rpt");
        EXPECT_EQ(printedColumn("hxdh") + shown["L_bT"], QString(forms) + title);
    }
    drive.find<QTabWidget>("SSTab1")->setCurrentIndex(1);
    printed.clear();
    drive.click("SB_tjb");
    EXPECT_TRUE(printed.isEmpty() && dialogs.shown.isEmpty());
    drive.click("CmdPRINT"); // by the number, not by the contract
    EXPECT_EQ(printed.last() + printedColumn("hxdh_st") + shown["L_Fs"], "CY_hxD_LY_TJBH1|H92");
    setDates("2026-02-01", "2026-01-31");
    for (const char *button : {"CmdFIND", "CmdPRINT"}) {
        drive.click(button);
        EXPECT_EQ(dialogs.take(), reversed);
    }
}

TEST_F(Queries, SheetsBookingsAndTaxesHaveTheirOwnWayToPrint)
{
    insert("yy_mxb_h", {{"fpbh", "F1"}, {"djrq", "2026-01-05"}, {"gsmc", "A"}, {"htbh", "X1"}, {"hl", 1}});
    insert("yy_mxb_b", {{"fpbh", "F1"}, {"sl", 1}, {"je", 1}});
    for (const auto &[note, shipper] : {std::pair("DC1", "B"), {"DC2", "A"}})
        insert("cy_dcd_djb_h", {{"dcdh", note}, {"djrq", "2026-01-05"}, {"tygs", shipper}, {"cygs", shipper}});
    const FormDriver sheets = open(YY_mxd_CxTj());
    setDates("2026-01-01", "2026-01-31");
    sheets.click("CmdFIND");
    ask(sheets, false);
    EXPECT_EQ(dialogs.take(),
              (Shown{"是否按销货单位统计？否，则按国外购货单位统计。", "系统提示", MessageIcon::Information}));
    EXPECT_EQ(printed.takeLast(), "YY_Mxb_CxTj_RptB");
    for (const auto &[chosen, report] :
         {std::pair("单价格发票", ""), {"退税专用报关单", "YY_BGD_TsZy_RpT"}, {"汇票", "YY_Hp_rPT"}}) {
        sheets.type("Com_Print", chosen);
        sheets.click("CmdPRINT2");
        EXPECT_EQ(printed.join(' '), report);
        printed.clear();
    }
    setDates("2026-02-01", "2026-01-31");
    ask(sheets, true);
    EXPECT_EQ(dialogs.take(), reversed); // and nothing is asked
    // The print of bookings finds first.
    const FormDriver bookings = open(YY_DcD_CxTj());
    setDates("2026-01-01", "2026-01-31");
    ask(bookings, false);
    EXPECT_EQ(found("dcdh"), "DC2|DC1");
    EXPECT_EQ(printed.takeLast() + printedColumn("dcdh"), "Cy_DCd_CXTJ_RptBDC2|DC1");
    bookings.click("CmdPRINT2");
    EXPECT_EQ(printed.takeLast(), "CY_Dcd_dj_Rpt");
    const FormDriver taxes = open(YY_ZsQk_TJB());
    taxes.click("CmdFIND");
    ask(taxes, true);
    EXPECT_TRUE(printed.isEmpty());
    EXPECT_EQ(dialogs.shown.last(), nothing);
}

// What the list shows, in its order, goes on paper and into a workbook.
TEST_F(Queries, TheListOfProductsGoesOutAsItStands)
{
    for (const auto &[code, price] : {std::pair("P1", 2.5), {"P2", 1.5}, {"Q1", 3.0}}) {
        insert("yy_bzdj", {{"cpbh", code}, {"cpmc", "框"}, {"cplb", "木"}});
        insert("yy_bzdj_b", {{"cpbh", code}, {"gys_dj", price}});
    }
    QStringList paper;
    setReportViewer([&paper](Report &report, QWidget *) {
        const auto read = report.DataControl1.rows();
        const auto column = read->columns().indexOf("cpbh");
        while (read->next())
            paper.append(read->value(int(column)).toString());
    });
    const FormDriver drive = open(YY_spZl_CXTjB());
    drive.click("CmdPRINT");
    drive.type("Combo3", "木 ");
    drive.type("Combo1", "p");
    drive.click("CmdFIND");
    drive.find<Grid>("TDBGrid1")->model()->sort(8);
    drive.click("CmdPRINT");
    EXPECT_EQ(paper.join(' '), "P1 P2 Q1 P2 P1");
    const QTemporaryDir folder;
    dialogs.typed = folder.filePath("found.xls");
    drive.control("Combo1")->setFocus(); // whose text would take the key for its cursor
    screen->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(screen.get()));
    QTest::keyClick(screen->focusWidget(), Qt::Key_E, Qt::ControlModifier);
    QStringList cellsOfBook;
    for (const QJsonValue row : cells(readSheet(*dialogs.typed)))
        cellsOfBook += {row.toArray()[0].toString(), row.toArray()[8].toVariant().toString()};
    EXPECT_EQ(cellsOfBook.join(' '), "商品编号 出厂价 P2 1.5 P1 2.5");
    drive.type("Combo3", "木工"); // a part or more of a category is another one
    drive.click("CmdFIND");
    EXPECT_EQ(found("cpbh"), "");
}

TEST_F(Queries, StatisticsArePrintedWithoutAWindow)
{
    insertContracts();
    const QTemporaryDir folder;
    const auto print = [&](const QStringList &arguments) {
        QProcess program;
        program.start(binFolder() + "/tradewick-print", QStringList{"--database", database.dataSource(), "--pdf",
                                                                    folder.filePath("a.pdf"), "--document"} +
                                                            arguments);
        program.waitForFinished(60000);
        QProcess reader;
        reader.start("pdftotext", {"-layout", folder.filePath("a.pdf"), "-"});
        reader.waitForFinished();
        return QString::fromUtf8(program.readAllStandardError() + reader.readAllStandardOutput());
    };
    const QStringList year{"--from", "2026-01-01", "--to", "2026/12/31"};
    const QString all = print(QStringList{"外销合同统计表（按国外客户）"} + year);
    EXPECT_TRUE(all.contains("3份") && all.contains("X1") && all.contains("Bob")) << all.toStdString();
    const QString one = print(QStringList{"外销合同统计表（按签约公司）", "--where", "签约公司=甲", "--where",
                                          "有效日期=2026-09-01..2026-09-30"} +
                              year);
    EXPECT_TRUE(one.contains("X3") && !one.contains("X1") && one.contains("1份")) << one.toStdString();
    EXPECT_TRUE(print(QStringList{"外销合同商品统计表（按签约公司）"} + year).contains("请选择公司名称"));
    QFile::remove(folder.filePath("a.pdf"));
    for (const char *statistic : {"派车费用统计表（按派车公司）", "外销合同缴税情况统计表（按签约公司）"}) {
        EXPECT_TRUE(print(QStringList{statistic} + year).contains(nothing.text)) << statistic;
        EXPECT_FALSE(QFile::exists(folder.filePath("a.pdf"))) << statistic;
    }
    EXPECT_TRUE(
        print(QStringList{"派车费用统计表（按派车公司）", "--where", "甲=1"} + year).contains("派车公司, 拖车公司"));
}

} // namespace tradewick
