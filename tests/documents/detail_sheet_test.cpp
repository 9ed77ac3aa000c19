// The detail sheet by its controls: what a contract, a credit and a supplier fill in, packing, copies, the way back.
#include "documents/documents.h"
#include "reporting/report.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QCompleter>
#include <QDate>
#include <QLabel>

#include <map>
#include <thread>

namespace tradewick
{

using namespace test;

namespace
{

const char *const key = "Text1(0)";
const char *const sheet = "FP990100001"; // of no month that is numbered here

class DetailSheet : public testing::Test
{
protected:
    TestDatabase database{TestDatabase::Demonstration};
    ScriptedDialogs dialogs;
    std::unique_ptr<RecordForm> form;

    DetailSheet()
    {
        run("delete from yy_mxb_h");
        run("delete from yy_mxb_b");
    }
    void run(const QString &statement, const Values &values = {}) { database.connection().Execute(statement, values); }
    void addSheet(const QString &number, const QString &contract)
    {
        run("insert into yy_mxb_h(fpbh,djrq,htbh,khmc,tstk,xsfp,yjl,kzje) values('{n}','1999-01-02','{h}','{k}',"
            "'O''NEILL',1,2.5,10)",
            {{"n", number}, {"h", contract}, {"k", "K " + number}});
    }
    void addGoods(const QString &number, int lines)
    {
        for (int i = 0; i < lines; ++i)
            run("insert into yy_mxb_b(fpbh,cpbh,sl,jianshu) values('{n}','{n}',{i},1)", {{"n", number}, {"i", i + 1}});
    }
    FormDriver open()
    {
        form = std::make_unique<RecordForm>(YY_DZ_MXB());
        return FormDriver(*form);
    }
    // Adds a sheet and shows its goods.
    FormDriver adding()
    {
        FormDriver drive = open();
        drive.click("Cmdadd");
        QTest::keyClick(form.get(), Qt::Key_2, Qt::AltModifier);
        return drive;
    }
    // Takes the item that stands there from the list once more.
    void takeAgain(const FormDriver &drive, const QString &combo)
    {
        auto *box = drive.find<QComboBox>(combo);
        box->showPopup();
        QTest::keyClick(box->view(), Qt::Key_Return);
        QApplication::processEvents();
    }
    Grid *goods() { return form->findChild<Grid *>("TDBGrid1"); }
    QString cell(int row, const QString &column)
    {
        return form->lines().valueAt(row, form->lines().columnIndex(column)).toString();
    }
    int stored(const QString &number)
    {
        return database.value("select count(*) from yy_mxb_b where fpbh='{n}'", {{"n", number}}).toInt();
    }
    QVariant ofContract(const QString &column, const QString &contract)
    {
        return database.value("select " + column + " from yy_gw_wxht_h where htbh='{h}'", {{"h", contract}});
    }
};

} // namespace

TEST_F(DetailSheet, AddBeginsWithWhatMostSheetsHave)
{
    run("insert into yy_mxb_h(fpbh,djrq) values('FP010100041','{d}')", {{"d", QDate::currentDate()}});
    run("insert into yy_mxb_h(fpbh,djrq) values('FP{m}00077','2001-01-01')",
        {{"m", QDate::currentDate().toString("yyMM")}});
    const FormDriver drive = open();
    for (const char *flag : {"Check1", "Check2", "Check3", "Check4(0)", "Check4(1)", "Check4(2)", "Check4(3)"})
        EXPECT_FALSE(drive.enabled(flag)) << flag;
    drive.click("Cmdadd");
    // The month is that of the rows' dates, not that of their numbers.
    EXPECT_EQ(drive.text(key), "FP" + QDate::currentDate().toString("yyMM") + "00042");
    const std::map<QString, QString> expected{{"djrq", QDate::currentDate().toString(Qt::ISODate)},
                                              {"myxz", "一般贸易"},
                                              {"yfzffs", "PREPAID"},
                                              {"dw", "PCS"},
                                              {"b_zdw", "CTNS"},
                                              {"ysfs", "BY SEA"},
                                              {"yjl", "0"},
                                              {"sfts", "退税"},
                                              {"zmxz", "一般征税"},
                                              {"bxje", "0"},
                                              {"xsfp", "True"},
                                              {"xszxd", "True"},
                                              {"xsforma", "True"},
                                              {"lysl", "True"},
                                              {"qbgc", "True"},
                                              {"lymz", ""},
                                              {"hjkcf", ""},
                                              {"kzje", ""}};
    for (const auto &[column, value] : expected)
        EXPECT_EQ(form->records().Fields(column).text(), value) << column.toStdString();
    EXPECT_TRUE(drive.find<QAbstractButton>("Check4(2)")->isChecked() && drive.enabled("Check4(2)"));
    for (const char *shut : {"Save_As", "Cmdprint", "Com_Find"})
        EXPECT_FALSE(drive.enabled(shut)) << shut;
}

TEST_F(DetailSheet, PackingFollowsWhatWasTypedLast)
{
    const FormDriver drive = adding();
    const struct {
        const char *column, *typed;
        std::map<QString, double> then;
    } steps[] = {
        {"sl", "12", {{"je", 0}, {"jianshu", 0}}},
        {"dj", "2.5", {{"je", 30}}},
        {"je", "99", {{"je", 30}}},
        {"zjz", "7", {{"zjz", 7}, {"djz", 0}}}, // nothing to share it among
        {"jianshu", "4", {{"zjz", 0}, {"zmz", 0}, {"hjtj", 0}, {"sl", 12}}},
        {"djz", "2.5", {{"zjz", 10}, {"zmz", 0}}},
        {"dmz", "3", {{"zmz", 12}, {"zjz", 10}}},
        {"djtj", "0.05", {{"hjtj", 0.2}}},
        {"zjz", "9", {{"djz", 2.25}, {"dmz", 3}, {"djtj", 0.05}}},
        {"zmz", "13", {{"dmz", 3.25}, {"djz", 2.25}}},
        {"hjtj", "1", {{"djtj", 0.25}, {"dmz", 3.25}}},
        {"jianshu", "3", {{"zjz", 6.75}, {"zmz", 9.75}, {"hjtj", 0.75}}},
        {"zjz", "10", {{"djz", 10. / 3}}},
    };
    for (const auto &step : steps) {
        drive.typeCell(goods(), 0, step.column, step.typed);
        for (const auto &[column, value] : step.then)
            EXPECT_NEAR(cell(0, column).toDouble(), value, 1e-12)
                << step.column << ' ' << step.typed << ": " << column.toStdString();
    }
    EXPECT_EQ(cell(0, "fpbh"), drive.text(key));
    drive.typeCell(goods(), 1, "sl", "1000");
    drive.typeCell(goods(), 1, "jianshu", "7");
    const std::map<QString, QString> sums{{"sl", "1012"},  {"jianshu", "10"}, {"zjz", "10"},
                                          {"zmz", "9.75"}, {"hjtj", "0.75"},  {"je", "30"}};
    for (const auto &[column, sum] : sums) {
        QString text;
        QMetaObject::invokeMethod(drive.control("TDBGrid1_totals"), "text", Q_RETURN_ARG(QString, text),
                                  Q_ARG(QString, column));
        EXPECT_EQ(text, sum) << column.toStdString();
    }
}

// Enter completes what a register of units has, in a field and in a cell. A text that was used before completes none.
TEST_F(DetailSheet, EnterCompletesWhatIsKnownAndLeavesWhatIsNew)
{
    addSheet("FP990100009", "");
    run("update yy_mxb_h set bxlb='ALL RISKS AND WAR RISK'");
    const FormDriver drive = adding();
    const auto enter = [&](QWidget *list) {
        ASSERT_TRUE(list->isVisible());
        QTest::keyClick(list, Qt::Key_Return);
        form->activateWindow(); // without a window manager the list that closed has taken that along
        ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
        QApplication::processEvents();
    };
    for (const auto &[tab, field, typed, then] :
         {std::tuple(Qt::Key_2, "Combo1(7)", "ct", "CTNS"), {Qt::Key_4, "Combo1(15)", "ALL RISKS", "ALL RISKS"}}) {
        QTest::keyClick(form.get(), tab, Qt::AltModifier);
        drive.type(field, typed);
        enter(drive.find<QComboBox>(field)->completer()->popup());
        EXPECT_EQ(drive.text(field), then);
    }
    QTest::keyClick(form.get(), Qt::Key_2, Qt::AltModifier);
    int row = 0;
    for (const auto &[typed, then] : {std::pair("ct", "CTNS"), {"c", "c"}}) { // CBM begins so, too
        goods()->editCell(row, "b_zdw");
        QTest::keyClicks(goods()->cellEditor(), typed);
        enter(goods()->cellEditor()->completer()->popup());
        EXPECT_EQ(cell(row++, "b_zdw"), then);
    }
}

TEST_F(DetailSheet, AContractFillsHeadAndGoods)
{
    const QString contract = "X260800001";
    run("update yy_gw_wxht_h set dizh='  12 Main St  ', gb=' USA ', fstk='it''s' where htbh='{h}'", {{"h", contract}});
    run("update yy_gw_wxht_b set wanch=case xc when 1 then '完成' when 2 then '' else null end where htbh='{h}'",
        {{"h", contract}});
    run("insert into yy_xyz_nb(xyzh,htbh) values('LC-1','{h}')", {{"h", contract}});
    run("insert into yy_xyz_nh(xyzh,kzrq,kzyh,yfyh,bizh,xyzlb,xyzyxq,kzje) values('LC-1','2026-03-05',' BANK ',' N ',"
        "'EUR','30 Days','2026-09-01',777)");
    const int all = database.value("select count(*) from yy_gw_wxht_b where htbh='{h}'", {{"h", contract}}).toInt();
    const double amount =
        database.value("select sum(je) from yy_gw_wxht_b where htbh='{h}'", {{"h", contract}}).toDouble();
    const FormDriver drive = adding();
    const QString number = drive.text(key);
    drive.typeCell(goods(), 0, "cpbh", "by hand");
    drive.choose("Combo1(0)", contract);
    ASSERT_EQ(stored(number), all - 1) << "the finished line stays away, and so does what was typed";
    EXPECT_EQ(cell(0, "xh"), "1");
    for (const char *column : {"cpbh", "yw_cpmc", "bacp", "sl", "je", "yanse"})
        EXPECT_EQ(cell(0, column), database
                                       .value("select " + QString(column) +
                                                  " from yy_gw_wxht_b where htbh='{h}' "
                                                  "and xc=2",
                                              {{"h", contract}})
                                       .toString())
            << column;
    EXPECT_EQ(cell(0, "jianshu"), "");
    const std::map<QString, QString> copied{
        {"khmc", "khmc"}, {"bizh", "bizh"},     {"babm", "bgbm"},          {"zyqx", "jhdz"},
        {"tstk", "fstk"}, {"madol", "madol"},   {"logo", "logo"},          {"hl", "hl"},
        {"gsmc", "gsmc"}, {"e_gsdz", "e_gsdz"}, {"bank_code", "bank_code"}};
    for (const auto &[to, from] : copied)
        EXPECT_EQ(form->records().Fields(to).text(), ofContract(from, contract).toString()) << to.toStdString();
    EXPECT_EQ(form->records().Fields("khdz").text(), "12 Main St");
    EXPECT_EQ(drive.text("Text1(24)"), "USA");
    EXPECT_NEAR(drive.text("Text1(3)").toDouble(), amount, 1e-9);
    EXPECT_EQ(drive.text("Text1(37)"), cell(0, "bacp"));
    EXPECT_EQ(drive.text("Text1(38)"), cell(0, "cpmc"));

    ASSERT_EQ(drive.find<QComboBox>("Combo1(1)")->count(), 1);
    drive.choose("Combo1(1)", "LC-1");
    const std::map<QString, QString> ofCredit{{"kzrq", "2026-03-05"}, {"kzyh", "BANK"},     {"yfyh", " N "},
                                              {"bizh", "EUR"},        {"xyzlb", "30 Days"}, {"xyzyxq", "2026-09-01"},
                                              {"kzje", "777"},        {"fpzy", ""}};
    for (const auto &[column, value] : ofCredit)
        EXPECT_EQ(form->records().Fields(column).text(), value) << column.toStdString();
    drive.choose("Combo1(16)", "C001");
    const Row maker = database.connection().rows("select * from yy_gyszl where gfbh='C001'").first();
    const std::map<QString, QString> ofMaker{{"cg_csmc", "zwmc"}, {"cg_csdz", "zwdz"},   {"cg_csswdjh", "tysh"},
                                             {"cg_cskhh", "khh"}, {"cg_csyhzh", "yhzh"}, {"cg_csphone", "phone"},
                                             {"cg_csfax", "fax"}};
    for (const auto &[to, from] : ofMaker)
        EXPECT_EQ(form->records().Fields(to).text(), maker[from].toString()) << to.toStdString();

    // Chosen again it takes the packing away, and the amount is the contract's; the credit stays with its list.
    drive.typeCell(goods(), 0, "jianshu", "5");
    takeAgain(drive, "Combo1(0)");
    EXPECT_EQ(cell(0, "jianshu"), "");
    EXPECT_NEAR(drive.text("Text1(3)").toDouble(), amount, 1e-9);
    EXPECT_EQ(drive.text("Combo1(1)"), "LC-1");
    drive.click("CmdOK");
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
    EXPECT_EQ(stored(number), all - 1);

    // A contract that lost its lines meanwhile: the address goes, the amount stays; so does no credit.
    drive.click("Cmdedit");
    run("delete from yy_gw_wxht_b where htbh='{h}'", {{"h", contract}});
    run("delete from yy_xyz_nb");
    takeAgain(drive, "Combo1(0)");
    EXPECT_EQ(form->records().Fields("khdz").text(), "");
    EXPECT_NEAR(drive.text("Text1(3)").toDouble(), amount, 1e-9);
    EXPECT_EQ(drive.text("Combo1(1)"), "");
    EXPECT_EQ(stored(number), 0);
}

// Both are offered one number, and neither sheet is stored while its goods are already.
TEST_F(DetailSheet, GoodsOfAnAddAtAnotherDesktopStay)
{
    const FormDriver drive = adding();
    const QString number = drive.text(key);
    addGoods(number, 2);
    drive.choose("Combo1(0)", "X260800001");
    EXPECT_TRUE(dialogs.take().text.contains("已被另一记录使用"));
    EXPECT_EQ(stored(number), 2);
    drive.click("Cmdcancel");
    dialogs.shown.clear(); // told again, as the box is left
    drive.click("Cmdadd");
    const QString next = drive.text(key);
    EXPECT_NE(next, number);
    drive.choose("Combo1(0)", "X260800001");
    const int all = stored(next);
    QTest::keyClick(form.get(), Qt::Key_2, Qt::AltModifier);
    goods()->setFocus();
    QTest::keyClick(goods(), Qt::Key_Delete);
    EXPECT_EQ(stored(next), all - 1);
    drive.choose("Combo1(0)", "X260800002"); // what was deleted here is nobody else's
    drive.click("Cmdcancel");
    EXPECT_EQ(stored(next), 0);
    EXPECT_EQ(stored(number), 2);
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
}

TEST_F(DetailSheet, CancelGoesBackToWhereAddBeganWithoutItsGoods)
{
    for (const char *number : {"FP1", "FP2", "FP3"})
        addSheet(number, "X260800001");
    const FormDriver drive = open();
    drive.click("cmdnext");
    drive.click("Cmdadd");
    const QString number = drive.text(key);
    drive.choose("Combo1(0)", "X260800001");
    EXPECT_GT(stored(number), 0);
    drive.click("Cmdcancel");
    EXPECT_EQ(stored(number), 0);
    EXPECT_EQ(drive.text(key), "FP2");
    // It counts for that Add alone, whether cancelled or stored.
    for (const bool stores : {false, true}) {
        drive.click("cmdmd");
        if (stores) {
            drive.click("Cmdadd");
            drive.click("CmdOK");
        }
        drive.click("Cmdedit");
        drive.click("Cmdcancel");
        EXPECT_EQ(drive.text(key), "FP1");
    }
    // In Edit what is stored stays.
    drive.click("Cmdedit");
    drive.choose("Combo1(0)", "X260800002");
    const int lines = stored("FP1");
    EXPECT_GT(lines, 0);
    drive.click("Cmdcancel");
    EXPECT_EQ(stored("FP1"), lines);
}

TEST_F(DetailSheet, BadDatesAreToldAndMendedWhereTheyAreExpected)
{
    const FormDriver drive = adding();
    const struct {
        const char *field, *focus;
    } cases[] = {{"Text1(2)", "Text1(2)"},   {"Text1(5)", "Text1(5)"},   {"Text1(12)", "Text1(12)"},
                 {"Text1(36)", "Text1(36)"}, {"Text1(22)", "Text1(22)"}, {"Text1(23)", "Text1(22)"},
                 {"Text1(47)", "Text1(47)"}};
    for (const auto &c : cases) {
        form->focusField(c.field);
        QApplication::processEvents();
        drive.type(c.field, "2026-02-30");
        drive.leave(c.field);
        EXPECT_EQ(dialogs.take(), (Shown{"日期输入有误，请重新核对！", "系统提示", MessageIcon::Critical})) << c.field;
        EXPECT_EQ(drive.focused(), c.focus);
        drive.type(c.field, "");
    }
}

TEST_F(DetailSheet, ASearchedContractsSheetsAloneAreWalked)
{
    run("update yy_gw_wxht_b set wanch='完成' where htbh='X260900001'");
    run("update yy_gw_wxht_b set wanch='' where htbh='X260900002'");
    for (const auto &[number, contract] :
         {std::pair("FP1", "X260800001"), {"FP2", "X260800002"}, {"FP3", "X260800001"}})
        addSheet(number, contract);
    const FormDriver drive = open();
    auto *find = drive.find<QComboBox>("Com_Find");
    EXPECT_GE(find->findText("X260800002"), 0);
    for (const char *finished : {"X260900001", "X260900002"}) // a blank mark counts as finished here
        EXPECT_LT(find->findText(finished), 0) << finished;
    drive.choose("Com_Find", "X260800001");
    EXPECT_EQ(form->records().RecordCount(), 2);
    drive.click("cmdnext");
    EXPECT_EQ(drive.text(key), "FP3");
    drive.choose("Com_Find", "");
    EXPECT_EQ(form->records().RecordCount(), 2);
    drive.click("Cmd_all");
    EXPECT_EQ(form->records().RecordCount(), 3);
}

TEST_F(DetailSheet, ACopyHasAllOfItsSourceUnderItsOwnNumber)
{
    addSheet(sheet, "X260800001");
    addGoods(sheet, 3);
    const FormDriver drive = open();
    const QString proposed = "FP" + QDate::currentDate().toString("yyMM") + "00001";
    for (const auto &answer : {std::optional<QString>(), std::optional<QString>("  ")}) {
        dialogs.typed = answer;
        drive.click("Save_As");
        EXPECT_EQ(dialogs.take(), (Shown{"请输入另存发票号:", "系统提示", MessageIcon::None}));
        EXPECT_EQ(dialogs.suggested, proposed);
        EXPECT_EQ(database.count("yy_mxb_h"), 1);
    }
    dialogs.typed = proposed;
    drive.click("Save_As");
    dialogs.take();
    EXPECT_EQ(drive.text(key), proposed);
    EXPECT_EQ(goods()->model()->rowCount(), 3);
    const auto rows = database.connection().rows("select * from yy_mxb_h order by djrq");
    ASSERT_EQ(rows.size(), 2);
    for (const QString &column : rows[0].columns())
        if (column == u"djrq")
            EXPECT_EQ(rows[1][column].toDate(), QDate::currentDate());
        else
            EXPECT_EQ(rows[1][column].toString(), column == u"fpbh" ? proposed : rows[0][column].toString())
                << column.toStdString();
    EXPECT_EQ(database.value("select sum(sl) from yy_mxb_b where fpbh='{n}'", {{"n", proposed}}).toInt(), 1 + 2 + 3);

    // Neither a number that is taken nor one whose goods wait for a sheet of another desktop.
    run("insert into yy_mxb_b(fpbh) values('FP-GOODS')");
    for (const char *taken : {sheet, "FP-GOODS"}) {
        const int goodsBefore = database.count("yy_mxb_b");
        dialogs.typed = taken;
        drive.click("Save_As");
        ASSERT_EQ(dialogs.shown.size(), 2);
        EXPECT_TRUE(dialogs.shown.last().text.contains("编号重复"));
        dialogs.shown.clear();
        EXPECT_EQ(database.count("yy_mxb_h"), 2);
        EXPECT_EQ(database.count("yy_mxb_b"), goodsBefore);
    }
}

TEST_F(DetailSheet, CopiesOfTwoDesktopsAreNeverMixed)
{
    constexpr int copies = 25;
    const std::map<QString, int> sources{{"FP-A", 3}, {"FP-B", 8}};
    std::vector<std::thread> desktops;
    desktops.reserve(sources.size());
    std::map<QString, QString> errors;
    for (const auto &[source, lines] : sources) {
        addSheet(source, "X260800001");
        addGoods(source, lines);
        errors[source]; // made before both write to theirs
    }
    addSheet("FP-0", ""); // the first number, stored last
    for (const auto &one : sources)
        desktops.emplace_back([&errors, source = one.first, where = database.connectionString()] {
            try {
                Connection connection;
                connection.Open(where);
                for (int i = 0; i < copies; ++i)
                    copySheet(connection, source, QStringLiteral("%1-%2").arg(source).arg(i));
            } catch (const DataError &error) {
                errors.at(source) = error.text();
            }
        });
    for (std::thread &desktop : desktops)
        desktop.join();
    for (const auto &[source, lines] : sources) {
        EXPECT_EQ(errors[source], "");
        for (int i = 0; i < copies; ++i) {
            const Values copy{{"n", QStringLiteral("%1-%2").arg(source).arg(i)}, {"s", source}};
            EXPECT_EQ(database.value("select count(*) from yy_mxb_b where fpbh='{n}' and cpbh='{s}'", copy), lines);
            EXPECT_EQ(stored(copy["n"].toString()), lines);
            EXPECT_EQ(database.value("select khmc from yy_mxb_h where fpbh='{n}'", copy), "K " + source);
        }
    }
    EXPECT_EQ(database.count("yy_mxb_h"), 3 + 2 * copies);
}

TEST_F(DetailSheet, TheDocumentToPrintIsChosen)
{
    addSheet(sheet, "");
    const FormDriver drive = open();
    auto *choice = drive.find<QComboBox>("Com_Print");
    QStringList offered;
    for (int i = 0; i < choice->count(); ++i)
        offered.append(choice->itemText(i));
    for (const QLabel *label : form->findChildren<QLabel *>())
        EXPECT_TRUE(label->buddy() != choice || label->text() == "单证打印选项:") << label->text().toStdString();
    EXPECT_EQ(offered.join(u' '),
              "单价格发票 发票 装箱单 报关单 产地证 FormA 装船通知 寄单证明 汇票 产地证申请书 FormA申请书 报检单 "
              "报关委托书 英文发票 英文装箱单 英文汇票 出口专用发票 退税专用报关单 明细单");
    for (const char *nothing : {"", "发"}) {
        drive.type("Com_Print", nothing);
        drive.click("Cmdprint");
        EXPECT_EQ(dialogs.shown, QVector<Shown>()) << nothing;
        EXPECT_EQ(drive.focused(), "Com_Print");
    }
    for (const bool overlay : {true, false}) {
        dialogs.answer = overlay;
        drive.type("Com_Print", " 出口专用发票 ");
        drive.click("Cmdprint");
        EXPECT_EQ(std::exchange(dialogs.shown, {}),
                  (QVector<Shown>{{"是否套打？否，则正常打印。", "系统提示", MessageIcon::Information},
                                  {"没有当前记录，不能打印！", "系统提示", MessageIcon::Critical}}));
    }
    dialogs.isClosed = true; // neither
    drive.click("Cmdprint");
    EXPECT_EQ(dialogs.shown.size(), 1);
}

TEST_F(DetailSheet, TheMailingCertificateIsPrintedAsItWasEdited)
{
    addSheet(sheet, "");
    run("update yy_mxb_h set gsmc=' 泉岭 ', e_gsmc='QUANLING'");
    const std::map<QString, QString> own{
        {"Text2", "CERTIFICATE"},
        {"Text1", "WE HEREBY CERTIFY THAT ONE SET OF ORIGINAL SHIPPING DUCUMENTS INCLUDING 1/3 ORIGINAL B/L HAS BEEN "
                  "AIRMAILED TP APPLICANT BY EMS WITHIN TWO DAYS AFTER B/L DATE ADN SHIPPING ADVICE HAS BEEN PREFORMED "
                  "BY FACSIMILE TO APPLICATE WITHIN TWO DAYS AFTER B/L DATE."},
        {"Text3", "THANKS FOR YOUR KIND COOPERATION ,REGARDS."}};
    std::map<QString, QString> printed;
    setReportViewer([&](Report &report, QWidget *) {
        printed.clear();
        for (const char *label : {"L_TItLE", "L_nR", "L_LUOKUAN", "L_FpBh", "L_DjRq", "L_EGSMC2", "L_gSMC2"})
            printed[label] = report.label(label);
    });
    const FormDriver drive = open();
    for (const bool edits : {true, false}) { // the second time nothing is left of the first
        drive.type("Com_Print", "寄单证明");
        drive.click("Cmdprint");
        auto *editor = form->findChild<QDialog *>("YY_JdZm_rpt");
        ASSERT_NE(editor, nullptr);
        EXPECT_EQ(editor->windowTitle(), "寄单证明编辑器");
        const FormDriver write(*editor);
        for (const auto &[field, text] : own) {
            EXPECT_EQ(write.text(field), text);
            QTest::keyClicks(write.control(field), "locked");
            EXPECT_EQ(write.text(field), text);
        }
        if (edits) {
            write.click("Cmdedit");
            for (const auto &[field, text] : own)
                write.type(field, "other " + field);
        }
        write.click("CmdPrn");
        EXPECT_EQ(printed["L_TItLE"], edits ? "other Text2" : own.at("Text2"));
        EXPECT_EQ(printed["L_nR"], edits ? "other Text1" : own.at("Text1"));
        EXPECT_EQ(printed["L_LUOKUAN"], edits ? "other Text3" : own.at("Text3"));
        EXPECT_EQ(printed["L_FpBh"], QString("Invoice No.") + sheet);
        EXPECT_EQ(printed["L_DjRq"], "Date:1999-01-02");
        EXPECT_EQ(printed["L_EGSMC2"], "泉岭");
        EXPECT_EQ(printed["L_gSMC2"], "QUANLING");
        write.click("CmdExt");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    setReportViewer({});
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
}

} // namespace tradewick
