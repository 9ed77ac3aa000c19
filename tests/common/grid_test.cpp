// Lists sorted by their heads and searched by typing, alone and beside the buttons of a form.
#include "common/record_form.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <QClipboard>
#include <QHeaderView>

namespace tradewick
{

using namespace test;

namespace
{

enum Column { Number, Customer, Date, Rate };

RecordFormSpec contracts()
{
    return {
        .name = "contracts",
        .caption = "Contracts",
        .statement = "select * from yy_gw_wxht_h order by htbh",
        .pages = {{"", {{"Text(0)", "htbh", "Number:"}, {"Text(1)", "khmc", "Customer:"}, {"Text(2)", "hl", "Rate:"}}}},
        .list = {{"htbh", "Number"}, {"khmc", "Customer"}, {"djrq", "Date"}, {"hl", "Rate"}},
        .lines = {.statement = "select * from yy_gw_wxht_b where htbh='{htbh}' order by cpbh",
                  .deletion = "delete from yy_gw_wxht_b where htbh='{htbh}'",
                  .key = "htbh",
                  .grids = {{.columns = {{"cpbh", "Product"}, {"sl", "Quantity"}}}}},
        .filters = {{"Text1", "Filter", "select * from yy_gw_wxht_h where htbh like '%{text}%' order by htbh"}},
        .find = {"htbh", "prompt", "title", "not found"},
    };
}

class Lists : public testing::Test
{
protected:
    void contract(const QString &number, const QVariant &customer, const QVariant &date, const QVariant &rate)
    {
        database.connection().Execute("insert into yy_gw_wxht_h(htbh,khmc,djrq,hl) values('{n}','{c}','{d}','{r}')",
                                      {{"n", number}, {"c", customer}, {"d", date}, {"r", rate}});
    }
    void fiveContracts()
    {
        contract("C1", "张三", "2026-11-24", 10);
        contract("C2", "apple ", "2026-03-05", 9);
        contract("C3", {}, {}, {});
        contract("C4", "李四", "2025-12-31", 9);
        contract("C5", "Apple", "2026-03-05", -1.5);
    }
    void threeThousandContracts() // more than a record set keeps at hand
    {
        database.connection().transaction([this] {
            for (int i = 0; i < 3000; ++i)
                contract(QStringLiteral("D%1").arg(i, 4, 10, QChar('0')), QStringLiteral("客户%1").arg(i), {}, i / 2);
        });
    }
    void open()
    {
        form = std::make_unique<RecordForm>(contracts());
        drive = std::make_unique<FormDriver>(*form);
        list = drive->find<Grid>("TDBGrid3");
    }
    static void clickHead(const Grid &grid, int column)
    {
        QHeaderView &head = *grid.horizontalHeader();
        const int middle = head.sectionViewportPosition(column) + head.sectionSize(column) / 2;
        QTest::mouseClick(head.viewport(), Qt::LeftButton, {}, {middle, head.height() / 2});
    }
    static QStringList shown(const Grid &grid, int column = Number)
    {
        QStringList texts;
        for (int row = 0; row < grid.model()->rowCount(); ++row)
            texts.append(grid.model()->index(row, column).data().toString());
        return texts;
    }
    // The highlighted row, the fields and the record set stand on one record.
    void expectOn(const QString &number) const
    {
        SCOPED_TRACE(number.toStdString());
        EXPECT_EQ(drive->text("Text(0)"), number);
        EXPECT_EQ(list->currentIndex().siblingAtColumn(Number).data().toString(), number);
        EXPECT_TRUE(list->viewport()->rect().intersects(list->visualRect(list->currentIndex())));
        const QModelIndexList selected = list->selectionModel()->selectedRows();
        ASSERT_EQ(selected.size(), 1);
        EXPECT_EQ(selected.first().row(), list->currentIndex().row());
    }
    static void typeKeys(Grid &grid, const QString &keys)
    {
        for (const QChar key : keys) {
            if (key.unicode() < 128)
                QTest::keyClick(&grid, key.toLatin1());
            else
                FormDriver::commit(&grid, key);
        }
    }

    TestDatabase database;
    ScriptedDialogs dialogs;
    std::unique_ptr<RecordForm> form;
    std::unique_ptr<FormDriver> drive;
    Grid *list = nullptr;
};

} // namespace

TEST_F(Lists, AHeadSortsUpwardsDownwardsAndBack)
{
    fiveContracts();
    open();
    const QStringList asRead{"C1", "C2", "C3", "C4", "C5"};
    const struct {
        Column column;
        QStringList upwards, downwards;
    } cases[] = {
        {Number, asRead, {"C5", "C4", "C3", "C2", "C1"}},
        // Case and trailing blanks do not count, Latin before Chinese, Chinese by pinyin.
        {Customer, {"C3", "C2", "C5", "C4", "C1"}, {"C1", "C4", "C2", "C5", "C3"}},
        {Date, {"C3", "C4", "C2", "C5", "C1"}, {"C1", "C2", "C5", "C4", "C3"}},
        {Rate, {"C3", "C5", "C2", "C4", "C1"}, {"C1", "C2", "C4", "C5", "C3"}},
    };
    const QHeaderView &head = *list->horizontalHeader();
    const auto described = [&](int column) {
        return list->model()->headerData(column, Qt::Horizontal, Qt::AccessibleDescriptionRole).toString();
    };
    list->setFocus();
    for (const bool byKey : {false, true})
        for (const auto &c : cases) {
            const auto sort = [&] {
                if (byKey)
                    QTest::keyClick(list, Qt::Key_F8);
                else
                    clickHead(*list, c.column);
            };
            list->setCurrentIndex(list->model()->index(list->currentIndex().row(), c.column));
            const QString record = drive->text("Text(0)");
            sort();
            EXPECT_EQ(shown(*list), c.upwards) << c.column;
            EXPECT_EQ(head.sortIndicatorSection(), c.column);
            EXPECT_EQ(described(c.column), "升序排列");
            expectOn(record);
            sort();
            EXPECT_EQ(shown(*list), c.downwards) << c.column;
            EXPECT_EQ(described(c.column), "降序排列");
            expectOn(record);
            sort();
            EXPECT_EQ(shown(*list), asRead) << c.column;
            EXPECT_EQ(head.sortIndicatorSection(), -1);
            EXPECT_EQ(described(c.column), "");
            expectOn(record);
        }
    EXPECT_TRUE(head.isSortIndicatorShown());
}

TEST_F(Lists, ButtonsGoOnInTheRecordSetsOrderAndTheListFollows)
{
    database.connection().transaction([this] {
        for (int i = 0; i < 300; ++i)
            contract(QStringLiteral("C%1").arg(i, 3, 10, QChar('0')), {}, {}, i % 7);
    });
    open();
    clickHead(*list, Rate);
    EXPECT_EQ(shown(*list).mid(0, 3), (QStringList{"C000", "C007", "C014"}));
    expectOn("C000");
    const struct {
        const char *button, *record;
    } steps[] = {{"cmdnext", "C001"}, {"cmdnext", "C002"}, {"cmdmd", "C299"},  {"cmdnext", "C299"},
                 {"cmdxq", "C298"},   {"cmdqd", "C000"},   {"cmdnext", "C001"}};
    for (const auto &step : steps) {
        drive->click(step.button);
        expectOn(step.record);
    }
    dialogs.typed = "c003";
    drive->click("Cmd_find");
    expectOn("C003");
    // A row chosen in the list is the record that the buttons go on from.
    const QModelIndex row = list->model()->index(list->currentIndex().row() + 2, Number);
    ASSERT_EQ(row.data(), "C017");
    list->scrollTo(row);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(row).center());
    expectOn("C017");
    drive->click("cmdnext");
    expectOn("C018");
    QTest::keyClick(list, Qt::Key_Down);
    expectOn("C025");
    drive->click("cmdxq");
    expectOn("C024");
}

TEST_F(Lists, SavingDeletingAndFilteringKeepTheSort)
{
    fiveContracts();
    open();
    clickHead(*list, Rate);
    EXPECT_EQ(shown(*list), (QStringList{"C3", "C5", "C2", "C4", "C1"}));
    drive->click("Cmdadd"); // last until it is stored, and gone when it is cancelled
    EXPECT_EQ(shown(*list), (QStringList{"C3", "C5", "C2", "C4", "C1", ""}));
    drive->click("Cmdcancel");
    EXPECT_EQ(shown(*list), (QStringList{"C3", "C5", "C2", "C4", "C1"}));
    expectOn("C1");
    drive->click("Cmdadd");
    drive->type("Text(0)", "C6");
    drive->type("Text(2)", "9.5");
    expectOn("C6");
    drive->click("CmdOK");
    EXPECT_EQ(shown(*list), (QStringList{"C3", "C5", "C2", "C4", "C6", "C1"}));
    expectOn("C6");
    drive->click("Cmdedit");
    drive->type("Text(2)", "-100");
    drive->click("CmdOK");
    EXPECT_EQ(shown(*list), (QStringList{"C3", "C6", "C5", "C2", "C4", "C1"}));
    expectOn("C6");
    drive->click("cmdqd");
    drive->click("cmdnext");
    drive->click("Cmddelete"); // the record set's next follows, not the list's
    EXPECT_EQ(shown(*list), (QStringList{"C3", "C6", "C5", "C4", "C1"}));
    expectOn("C3");
    drive->click("cmdnext");
    expectOn("C4");
    drive->click("cmdxq");
    expectOn("C3");
    drive->type("Text1", "C");
    EXPECT_EQ(shown(*list), (QStringList{"C3", "C6", "C5", "C4", "C1"}));
    expectOn("C1");
    drive->type("Text1", "nothing");
    drive->type("Text1", "5");
    EXPECT_EQ(shown(*list), QStringList{"C5"});
    drive->type("Text1", "");
    clickHead(*list, Rate);
    EXPECT_EQ(shown(*list), (QStringList{"C1", "C4", "C5", "C6", "C3"}));
    clickHead(*list, Rate);
    EXPECT_EQ(shown(*list), (QStringList{"C1", "C3", "C4", "C5", "C6"}));
}

TEST_F(Lists, AFieldAListAndALineShowANumberAsItIsStored)
{
    open();
    auto *body = drive->find<Grid>("TDBGrid1");
    drive->click("Cmdadd");
    drive->type("Text(0)", "C1");
    drive->type("Text(2)", "07.50");
    drive->typeCell(body, 0, "cpbh", "P1");
    drive->typeCell(body, 0, "sl", "020");
    EXPECT_EQ(drive->text("Text(2)"), "07.50");
    drive->click("CmdOK");
    EXPECT_EQ(drive->text("Text(2)"), "7.5");
    EXPECT_EQ(shown(*list, Rate), QStringList{"7.5"});
    EXPECT_EQ(shown(*body, 1), QStringList{"20"});
}

TEST_F(Lists, ABodySortsUntilItCanBeTypedInto)
{
    contract("C1", {}, {}, {});
    for (const auto &[product, quantity] : {std::pair("P1", 3), std::pair("P2", 1), std::pair("P3", 2)})
        database.connection().Execute("insert into yy_gw_wxht_b(htbh,cpbh,sl) values('C1','{p}','{q}')",
                                      {{"p", product}, {"q", quantity}});
    open();
    auto *body = drive->find<Grid>("TDBGrid1");
    clickHead(*body, 1);
    EXPECT_EQ(shown(*body), (QStringList{"P2", "P3", "P1"}));
    drive->click("Cmdedit");
    EXPECT_EQ(shown(*body), (QStringList{"P1", "P2", "P3", ""}));
    clickHead(*body, 1);
    body->setFocus();
    QTest::keyClick(body, Qt::Key_F8);
    EXPECT_EQ(shown(*body), (QStringList{"P1", "P2", "P3", ""}));
    EXPECT_EQ(body->horizontalHeader()->sortIndicatorSection(), -1);
    drive->typeCell(body, 3, "cpbh", "P0");
    drive->typeCell(body, 1, "sl", "20");
    drive->click("CmdOK");
    clickHead(*body, 1);
    EXPECT_EQ(shown(*body), (QStringList{"P0", "P3", "P1", "P2"}));
    drive->click("Cmdedit");
    body->editCell(3, "sl");
    body->cellEditor()->setText("7");
    body->setEditing(false); // a cell that is open then is taken
    EXPECT_EQ(body->cellEditor(), nullptr);
    EXPECT_EQ(shown(*body, 1), (QStringList{"", "3", "20", "7"}));
}

TEST_F(Lists, WhatIsCopiedIsInTheOrderSeen)
{
    fiveContracts();
    open();
    clickHead(*list, Rate);
    list->setFocus();
    QTest::keyClick(list, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(list, Qt::Key_C, Qt::ControlModifier);
    QStringList numbers;
    for (const QString &line : QApplication::clipboard()->text().split(u'\n'))
        numbers.append(line.section(u'\t', 0, 0));
    EXPECT_EQ(numbers, shown(*list));
    EXPECT_EQ(QApplication::clipboard()->text().section(u'\n', 1, 1), "C5\tApple\t2026-03-05\t-1.5");
}

TEST_F(Lists, TypingGoesToTheRowThatBeginsSo)
{
    fiveContracts();
    threeThousandContracts();
    open();
    list->setFocus();
    EXPECT_TRUE(list->testAttribute(Qt::WA_InputMethodEnabled));
    for (const bool sorted : {false, true}) {
        const struct {
            Column column;
            const char *typed;
            const char *found;
        } cases[] = {{Number, "d2999", "D2999"}, {Number, "c4", "C4"},
                     {Number, "x", "C4"},        {Customer, "app", sorted ? "C2" : "C5"},
                     {Customer, "李", "C4"},     {Customer, "客户2345", "D2345"},
                     {Rate, "-", "C5"},          {Date, "2025", "C4"}};
        if (sorted) {
            clickHead(*list, Number);
            clickHead(*list, Number);
        }
        for (const auto &c : cases) {
            const int row = list->currentIndex().row();
            list->keyboardSearch({}); // forgets what was typed, as a pause does
            list->setCurrentIndex(list->model()->index(row, c.column));
            typeKeys(*list, QString::fromUtf8(c.typed));
            expectOn(c.found);
        }
    }
}

TEST_F(Lists, AColumnThatCannotBeReadIsNotSortedBy)
{
    threeThousandContracts();
    open();
    clickHead(*list, Rate);
    QApplication::processEvents();
    EXPECT_TRUE(dialogs.shown.isEmpty());
    database.connection().Close();
    clickHead(*list, Rate);
    QApplication::processEvents();
    EXPECT_FALSE(dialogs.take().text.isEmpty());
    EXPECT_EQ(list->horizontalHeader()->sortIndicatorSection(), -1);
    EXPECT_EQ(list->recordsetModel()->recordAt(7), 7);
    database.connection().Open(database.connectionString());
}

TEST_F(Lists, ColumnsAreAsWideAsWhatStandsInThem)
{
    contract("C1", "宁波东方工艺品进出口有限公司", "2026-11-24", 10);
    contract("A-long-contract-number", "W", {}, 123456.75);
    open();
    for (int column = Number; column <= Rate; ++column)
        for (int row = 0; row < list->model()->rowCount(); ++row) {
            const QModelIndex cell = list->model()->index(row, column);
            EXPECT_LT(list->sizeHintForIndex(cell).width(), list->columnWidth(column)) << row << column;
        }
    EXPECT_LT(list->columnWidth(Date), list->columnWidth(Customer));
    const int before = list->columnWidth(Number);
    form->records().Fields("htbh").setValue("A-contract-number-that-is-longer-than-all");
    EXPECT_GT(list->columnWidth(Number), before) << "typed, not stored yet";
    EXPECT_LE(list->sizeHintForIndex(list->model()->index(0, Number)).width(), list->columnWidth(Number));
}

TEST_F(Lists, AKeyIsWholeOnceItComesIntoSight)
{
    threeThousandContracts();
    contract("Z-the-longest-contract-number", "W", {}, {});
    open();
    const QModelIndex longest = list->model()->index(3000, Number);
    ASSERT_EQ(longest.data().toString(), "Z-the-longest-contract-number");
    const int first = list->columnWidth(Number);
    EXPECT_LT(first, list->sizeHintForIndex(longest).width());
    drive->click("cmdmd");
    EXPECT_LE(list->sizeHintForIndex(longest).width(), list->columnWidth(Number));
}

} // namespace tradewick
