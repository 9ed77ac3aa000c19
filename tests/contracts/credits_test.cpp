// Both registers of letters of credit: which contracts they offer and take, and what their Cancel removes.
#include "contracts/contracts.h"
#include "document_form.h"

#include <QDateEdit>

namespace tradewick
{

using namespace test;

class Credits : public DocumentForm
{
protected:
    const QString company = row("select gsmc from sys_gsmc")["gsmc"].toString();
    const QString customer = row("select khmc from yy_gwkh_zl where khbh='K001'")["khmc"].toString();

    int linesOf(const QString &credit, const QString &table = "yy_xyz_nb")
    {
        return database.value("select count(*) from " + table + " where xyzh='{x}'", {{"x", credit}}).toInt();
    }
};

TEST_F(Credits, TheNumberOfABankTakesThePlaceOfTheProposedOne)
{
    const QString month = "XY" + QDate::currentDate().toString("yyMM");
    database.elsewhere("delete from yy_xyz_nh where xyzh like '%{m}%'", {{"m", month}});
    const FormDriver drive = open(YY_XyZ_New_Rpt());
    const struct {
        const char *proposed, *typed;
    } cases[] = {{"00001", nullptr},      {"00002", "ZBANK"},    {"00001", "ZBANK/26-417"},
                 {"00007", "ZBANK00417"}, {"00418", "ZZ-10099"}, {"10100", nullptr}};
    for (const auto &c : cases) {
        drive.click("Cmdadd");
        EXPECT_EQ(drive.text("Text1(0)"), month + c.proposed);
        EXPECT_EQ(drive.text("Combo1(2)") + drive.text("Combo1(3)"), "AllowedAllowed");
        if (c.typed) // over what was proposed, without a key in between
            QTest::keyClicks(drive.control("Text1(0)"), c.typed);
        const QString number = drive.text("Text1(0)");
        EXPECT_EQ(number, c.typed ? QString(c.typed) : month + c.proposed);
        drive.click("CmdOK");
        EXPECT_EQ(row("select djrq from yy_xyz_nh where xyzh='{x}'", {{"x", number}})["djrq"].toDate(),
                  QDate::currentDate());
    }
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
}

TEST_F(Credits, OffersContractsOfBothPartiesThatStandOnNoCredit)
{
    database.elsewhere("insert into yy_gw_wxht_h(htbh,khmc,gsmc) values('X-EMPTY','{k}','{g}')",
                       {{"k", customer}, {"g", company}});
    const FormDriver drive = open(YY_XyZ_New_Rpt());
    drive.click("Cmdadd");
    EXPECT_EQ(search(0, "X"), 0);
    drive.choose("Combo1(0)", company);
    EXPECT_EQ(search(0, "X"), 0);
    drive.choose("Combo1(0)", "another company");
    drive.choose("Combo1(4)", customer);
    EXPECT_EQ(search(0, "X"), 0);
    drive.choose("Combo1(0)", company);
    expectCopied(row("select * from yy_gwkh_zl where khbh='K001'"), {"bizh", "hl", "kzr khmc"});
    // One of this customer's three contracts is taken, one has goods in two units.
    EXPECT_EQ(search(0, "X"), 3);
    EXPECT_EQ(search(0, "80000"), 2);
    const QString unit = cellOf(pickerGrid(), 0, "dw");
    EXPECT_NE(cellOf(pickerGrid(), 1, "dw"), unit);
    takeFirst();
    const Row contract = row("select * from yy_gw_wxht_h where htbh='X260800001'");
    for (const auto &[column, from] :
         {std::pair("htbh", "htbh"), {"htrq", "djrq"}, {"qydd", "qydz"}, {"yxqsrq", "yxqsrq"}, {"yxjzrq", "yxjzrq"}})
        EXPECT_EQ(cell(0, column), contract[from].toString()) << column;
    double quantity = 0, amount = 0;
    for (const Row &line :
         database.connection().rows("select * from yy_gw_wxht_b where htbh='X260800001' and dw='{d}'", {{"d", unit}})) {
        quantity += line["sl"].toDouble();
        amount += line["je"].toDouble();
    }
    EXPECT_EQ(cell(0, "dw"), unit);
    EXPECT_DOUBLE_EQ(cell(0, "sl").toDouble(), quantity);
    EXPECT_NEAR(cell(0, "je").toDouble(), amount, 1e-6);
    EXPECT_EQ(cell(0, "xyzh"), drive.text("Text1(0)"));
    // What is not stored yet stands on no credit: the same contract is offered, and taken, again.
    EXPECT_EQ(search(1, "80000"), 2);
    takeFirst();
    EXPECT_EQ(cell(1, "htbh") + cell(1, "dw"), "X260800001" + unit);
    const QString number = drive.text("Text1(0)");
    drive.click("CmdOK");
    EXPECT_EQ(linesOf(number), 2);
    drive.click("Cmdedit");
    EXPECT_EQ(search(2, "80000"), 0);
    drive.click("CmdOK");
    drive.click("Cmddelete");
    EXPECT_EQ(linesOf(number), 0);
    drive.click("Cmdadd");
    drive.choose("Combo1(0)", company);
    drive.choose("Combo1(4)", customer);
    EXPECT_EQ(search(0, "80000"), 2);
}

TEST_F(Credits, FiltersByContractAndByNumber)
{
    const FormDriver drive = open(YY_XyZ_New_Rpt());
    EXPECT_EQ(drive.text("Text1(0)"), "XY261100001") << "the last record";
    for (const Grid *grid : {lines(), pickerGrid()})
        EXPECT_TRUE(grid->accessibleName().contains("合同")); // and no goods
    const struct {
        const char *box, *typed, *shown;
    } cases[] = {{"Text3", "-", "ELB-LC-2600417 HP/26/10-0093 CAP-7715-26"},
                 {"Text3", "77", "CAP-7715-26"},
                 {"Text2", "no such contract", "CAP-7715-26"},
                 {"Text2", "X261000003", "ELB-LC-2600417"}, // the second contract of its credit
                 {"Text3", "nothing", ""}};
    for (const auto &c : cases) {
        drive.type(c.box, c.typed);
        EXPECT_EQ(shownKeys().toStdString(), c.shown) << c.typed;
    }
    // Contracts of four credits fit; the first row's alone comes.
    const QString first = row("select distinct htbh,xyzh from yy_xyz_nb where htbh like '%X2610%'")["xyzh"].toString();
    drive.type("Text2", "X2610");
    EXPECT_EQ(shownKeys(), first);
}

// The list goes on showing which record is on the form.
TEST_F(Credits, TheListMarksTheRecordThatFollowsAnother)
{
    dialogs.settle = [](const ConflictQuestion &) { return ConflictAnswer{false}; }; // what is gone is given up
    for (const char *shown : {"MIL260914E", "XY261100001"}) {                        // one in between, and the last
        const FormDriver drive = open(YY_XyZ_New_Rpt());
        const auto *list = drive.find<Grid>("TDBGrid3");
        const auto expectMarked = [&] {
            const int row = form->records().absolutePosition();
            EXPECT_TRUE(list->selectionModel()->isRowSelected(row)) << row << shown;
            EXPECT_EQ(list->model()->index(row, 0).data().toString(), drive.text("Text1(0)"));
        };
        while (drive.text("Text1(0)") != shown)
            drive.click("cmdxq");
        expectMarked();
        drive.click("Cmddelete");
        expectMarked();
        const QString gone = drive.text("Text1(0)");
        drive.click("Cmdedit");
        drive.type("Text1(7)", "BANK");
        database.elsewhere("delete from yy_xyz_nh where xyzh='{x}'", {{"x", gone}});
        drive.click("CmdOK");
        EXPECT_NE(drive.text("Text1(0)"), gone);
        expectMarked();
        form.reset();
    }
}

// The flag of an Add outlives its OK in both registers, so that a later Cancel of an Edit removes lines.
TEST_F(Credits, CancelRemovesTheLinesOfWhateverIsShownAfterAnAdd)
{
    for (const auto &[spec, head, table] :
         {std::tuple(YY_XyZ_New_Rpt(), "yy_xyz_nh", "yy_xyz_nb"), {YY_Yh_XYZ(), "yy_xyz_h", "yy_xyz_b"}}) {
        for (const QString key : {"AA-1", "AA-2"}) {
            database.elsewhere(QString("insert into %1(xyzh) values('{k}')").arg(head), {{"k", key}});
            for (int i = 0; i < 2; ++i)
                database.elsewhere(QString("insert into %1(xyzh,htbh) values('{k}','X260800001')").arg(table),
                                   {{"k", key}});
        }
        const FormDriver drive = open(spec);
        const auto show = [&](const QString &key) {
            for (form->records().MoveFirst(); !form->records().EOF_() && drive.text("Text1(0)") != key;)
                form->records().MoveNext();
        };
        const struct {
            bool adds;
            const char *shown;
            int left; // lines of it after Edit and Cancel
        } cases[] = {{false, "AA-1", 2}, {true, "AA-1", 0}, {false, "AA-2", 2}};
        for (const auto &c : cases) {
            if (c.adds) {
                drive.click("Cmdadd");
                drive.click("CmdOK");
            }
            show(c.shown);
            drive.click("Cmdedit");
            drive.click("Cmdcancel");
            EXPECT_EQ(linesOf(c.shown, table), c.left) << table << c.adds;
        }
        EXPECT_EQ(database.value(QString("select count(*) from %1 where xyzh like '%AA-%'").arg(head)), 2);
    }
}

TEST_F(Credits, TheRegisterByGoodsCopiesAContractEachTimeItIsChosen)
{
    const QString contract = "X260800003";
    database.elsewhere("update yy_gw_wxht_h set dizh='address', qttk='terms' where htbh='X260800003'");
    const auto markFirst = [&](const QString &mark) {
        database.elsewhere("update yy_gw_wxht_b set wanch='{w}' where htbh='X260800003' and xc=1", {{"w", mark}});
    };
    const int all = database.value("select count(*) from yy_gw_wxht_b where htbh='X260800003'").toInt();
    double total = 0;
    for (const Row &line : database.connection().rows("select je from yy_gw_wxht_b where htbh='X260800003'"))
        total += line["je"].toDouble();
    database.elsewhere("insert into yy_gw_wxht_b(htbh) values('X-OTHER')");
    const FormDriver opener = open(YY_XyZ_New_Rpt());
    opener.click("Cmd_Yh_XYZ");
    auto *other = form->findChild<RecordForm *>("YY_Yh_XYZ");
    ASSERT_TRUE(other && other->isVisible());
    const FormDriver drive = open(YY_Yh_XYZ());
    drive.click("Cmdadd");
    const QString number = drive.text("Text1(0)");
    EXPECT_EQ(drive.text("Text1(16)"), QDate::currentDate().toString(Qt::ISODate));
    int expected = 0;
    const struct {
        const char *mark;
        int taken; // of the marked line
    } marks[] = {{"", 1}, {"未完成", 1}, {"完成", 0}};
    for (const auto &c : marks) {
        markFirst(c.mark);
        drive.choose("Combo1(0)", "X-OTHER");
        drive.choose("Combo1(0)", contract);
        expected += 1 + all - 1 + c.taken;
        EXPECT_EQ(linesOf(number, "yy_xyz_b"), expected) << c.mark;
    }
    expectCopied(row("select * from yy_gw_wxht_h where htbh='X260800003'"),
                 {"khmc", "khdz dizh", "syr gsmc", "mdgk", "zygk", "jgtk", "bizh", "qttk", "khbh"});
    EXPECT_NEAR(drive.text("Text1(13)").toDouble(), total, 1e-6);
    const Row line = row("select * from yy_xyz_b where xyzh='{x}' and cpbh<>''", {{"x", number}}),
              original = row("select * from yy_gw_wxht_b where htbh='X260800003' and cpbh='{c}' and gg='{g}'",
                             {{"c", line["cpbh"]}, {"g", line["gg"]}});
    for (const char *column : {"cpmc", "cplb", "khlh", "dj", "dw", "htbh", "gsmc", "jhrq", "sl", "je", "bacp", "yanse",
                               "zzs", "zsl", "yw_cpmc"})
        EXPECT_EQ(line[column], original[column]) << column;
    // A line by hand: the price is typed.
    const int at = newRow();
    EXPECT_GT(search(at, "JM-1010"), 0);
    takeFirst();
    EXPECT_EQ(cell(at, "bacp"), row("select bacp from yy_bzdj where cpbh='JM-1010'")["bacp"].toString());
    EXPECT_EQ(cell(at, "htbh") + cell(at, "xyzh"), contract + number);
    EXPECT_EQ(cell(at, "dj"), "0");
    drive.typeCell(lines(), at, "dj", "2.5");
    drive.typeCell(lines(), at, "sl", "6");
    EXPECT_EQ(cell(at, "je"), "15");
    database.elsewhere("delete from yy_gw_wxht_b where htbh='X-OTHER'");
    drive.choose("Combo1(0)", "X-OTHER");
    EXPECT_EQ(drive.text("Text1(13)"), "");
    drive.click("Cmdcancel");
    EXPECT_EQ(linesOf(number, "yy_xyz_b"), 0) << "what went to the server at once goes with the Add";
    database.elsewhere("insert into yy_xyz_h(xyzh,kzrq) values('DAY','2026-09-06')");
    drive.find<QDateEdit>("DTPicker1")->setDate({2026, 9, 6});
    EXPECT_EQ(shownKeys(), "DAY");
}

} // namespace tradewick
