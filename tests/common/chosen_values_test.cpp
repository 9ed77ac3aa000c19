// Codes are found by their names as well, and a filter of dates that nobody has chosen shows none.
#include "common/combo_field.h"
#include "common/record_form.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <QCompleter>
#include <QDateEdit>
#include <QListView>

namespace tradewick
{

using namespace test;

namespace
{

class ChosenValues : public testing::Test
{
protected:
    ChosenValues()
    {
        const QString today = QDate::currentDate().toString(Qt::ISODate);
        for (const QString &contract : {"'C1','" + today + "'", QString("'C2','2020-02-29'"), QString("'C3',null")})
            database.connection().Execute("insert into yy_gw_wxht_h(htbh,djrq) values(" + contract + ")");
        for (const char *customer : {"'K001','Harbor'", "'K002','Maple'", "'K003','Maple leaf'", "'K004',null"})
            database.connection().Execute(QString("insert into yy_gwkh_zl(khbh,khmc) values(%1)").arg(customer));
        form = std::make_unique<RecordForm>(RecordFormSpec{
            .name = "contracts",
            .statement = "select * from yy_gw_wxht_h order by htbh",
            .pages = {{"",
                       {{"Text(0)", "htbh", "Number:"},
                        {"Combo1", "khbh", "Customer:",
                         field::combo("select khbh from yy_gwkh_zl order by khbh", "select khbh,khmc from yy_gwkh_zl")},
                        {"Text(1)", "gb", "Country:"}}}},
            .list = {{"htbh", "Number"}},
            .filters = {{"Text1", "Filter", "select * from yy_gw_wxht_h where htbh like '%{text}%' order by htbh"}},
            .dateFilter = {"DTPicker1", "Dates", "select * from yy_gw_wxht_h where djrq='{date}' order by htbh"},
        });
        drive = std::make_unique<FormDriver>(*form);
    }
    QStringList shown() const
    {
        QStringList numbers;
        for (int row = 0; row < form->records().RecordCount(); ++row)
            numbers.append(form->records().valueAt(row, form->records().columnIndex("htbh")).toString());
        return numbers;
    }

    TestDatabase database;
    ScriptedDialogs dialogs;
    std::unique_ptr<RecordForm> form;
    std::unique_ptr<FormDriver> drive;
};

} // namespace

TEST_F(ChosenValues, ACodeIsFoundByItsNameAndStaysTheCode)
{
    const struct {
        const char *typed;
        QStringList offered; // codes
        const char *taken;   // with Enter
    } cases[] = {
        {"harb", {"K001"}, "K001"}, {"K002", {"K002"}, "K002"},           {"k004", {"K004"}, "K004"},
        {"leaf", {"K003"}, "leaf"}, {"maple", {"K002", "K003"}, "maple"}, {"maple l", {"K003"}, "K003"},
    };
    drive->click("Cmdedit");
    auto *combo = drive->find<ComboField>("Combo1");
    for (const auto &[typed, offered, taken] : cases) {
        SCOPED_TRACE(typed);
        drive->type("Combo1", typed);
        QCompleter &list = *combo->completer();
        list.setCompletionPrefix(typed);
        list.complete();
        QStringList codes;
        for (int row = 0; row < list.completionCount(); ++row)
            codes.append(list.completionModel()->index(row, 0).data().toString());
        EXPECT_EQ(codes, offered);
        QTest::keyClick(list.popup(), Qt::Key_Return);
        QApplication::processEvents();
        list.popup()->hide();
        EXPECT_EQ(drive->text("Combo1"), taken);
        EXPECT_EQ(form->records().Fields("khbh").text(), taken);
    }
}

TEST_F(ChosenValues, ADateFilterShowsNoDateUntilOneIsChosen)
{
    auto *date = drive->find<QDateEdit>("DTPicker1");
    const QStringList all{"C1", "C2", "C3"};
    struct Step {
        const char *what;
        std::function<void()> act;
        const char *text; // "" today's
        QStringList shown;
    };
    const auto openCalendar = [date] {
        QTest::mouseClick(date, Qt::LeftButton, {}, {date->width() - 8, date->height() / 2});
        QApplication::processEvents();
    };
    const auto inCalendar = [](Qt::Key key) {
        QWidget *calendar = QApplication::activePopupWidget();
        ASSERT_NE(calendar, nullptr);
        QTest::keyClick(calendar->focusWidget() ? calendar->focusWidget() : calendar, key);
        QApplication::processEvents();
    };
    const Step steps[] = {
        {"at first", [] {}, "不限", all},
        {"passed", [&] { date->setFocus(), QTest::keyClick(date, Qt::Key_Tab); }, "不限", all},
        {"typed", [&] { QTest::keyClicks(date, "20200229"); }, "2020-02-29", {"C2"}},
        {"all", [&] { drive->click("Cmd_all"); }, "不限", all},
        {"an arrow", [&] { QTest::keyClick(date, Qt::Key_Down); }, "", {"C1"}},
        {"another filter", [&] { drive->type("Text1", "C3"); }, "不限", {"C3"}},
        {"the same date again", [&] { QTest::keyClick(date, Qt::Key_Up); }, "", {"C1"}},
        {"all again", [&] { drive->click("Cmd_all"); }, "不限", all},
        {"the calendar, opened", [&] { openCalendar(); }, "", all},
        {"and left", [&] { inCalendar(Qt::Key_Escape); }, "不限", all},
        {"today, picked", [&] { openCalendar(), inCalendar(Qt::Key_Return); }, "", {"C1"}},
        {"all once more", [&] { drive->click("Cmd_all"); }, "不限", all},
        {"today, typed", [&] { QTest::keyClicks(date, QDate::currentDate().toString("yyyyMMdd")); }, "", all},
        {"and taken", [&] { QTest::keyClick(date, Qt::Key_Return); }, "", {"C1"}},
    };
    for (const auto &[what, act, text, records] : steps) {
        act();
        EXPECT_EQ(date->text(), *text ? QString(text) : QDate::currentDate().toString(Qt::ISODate)) << what;
        EXPECT_EQ(shown(), records) << what;
    }
}

} // namespace tradewick
