// What a user arranges with the mouse comes back with the next window of the same name, as far as the screen allows.
#include "common/kept_layout.h"
#include "common/pane_splitter.h"
#include "common/record_form.h"
#include "common/user_settings.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <QHeaderView>
#include <QScreen>

namespace tradewick
{

using namespace test;

namespace
{

class KeptLayouts : public testing::Test
{
protected:
    KeptLayouts()
    {
        userSettings().clear();
        database.connection().Execute("insert into yy_gw_wxht_h(htbh,khmc) values('C1','A customer')");
    }

    std::unique_ptr<RecordForm> open(const QString &name = "contracts")
    {
        auto form = std::make_unique<RecordForm>(RecordFormSpec{
            .name = name,
            .statement = "select * from yy_gw_wxht_h order by htbh",
            .pages = {{"", {{"Text(0)", "htbh", "Number:"}}}},
            .list = {{"htbh", "Number"}, {"khmc", "Customer"}, {"djrq", "Date"}},
            .lines = {.statement = "select * from yy_gw_wxht_b where htbh='{htbh}'",
                      .key = "htbh",
                      .grids = {{.columns = {{"cpbh", "Product"}, {"sl", "Quantity"}, {"dj", "Price"}}}}},
        });
        form->resize(700, 500);
        form->show();
        QApplication::processEvents();
        return form;
    }
    static void drag(QWidget *over, QPoint from, int by)
    {
        QTest::mousePress(over, Qt::LeftButton, {}, from);
        QTest::mouseMove(over, from + QPoint(by / 2, 0));
        QTest::mouseMove(over, from + QPoint(by, 0));
        QTest::mouseRelease(over, Qt::LeftButton, {}, from + QPoint(by, 0));
        QApplication::processEvents();
    }
    static void dragEdge(const Grid &grid, int column, int by)
    {
        const QHeaderView &head = *grid.horizontalHeader();
        drag(head.viewport(), {head.sectionViewportPosition(column) + head.sectionSize(column) - 1, 5}, by);
    }
    static Grid &grid(const RecordForm &form, const char *name) { return *form.findChild<Grid *>(name); }

    TestDatabase database;
    ScriptedDialogs dialogs;
    KeptLayout layout{*qApp};
};

} // namespace

TEST_F(KeptLayouts, WhatIsDrawnComesBackAndNoOtherWindowHasIt)
{
    const struct {
        const char *what;
        std::function<void(RecordForm &form)> draw;
        std::function<QVariant(RecordForm &form)> seen;
    } cases[] = {
        {"size", [](RecordForm &form) { form.resize(620, 555); }, [](RecordForm &form) { return form.size(); }},
        {"width of a list's first column", [](RecordForm &form) { dragEdge(grid(form, "TDBGrid3"), 0, 31); },
         [](RecordForm &form) { return grid(form, "TDBGrid3").columnWidth(0); }},
        {"width of a column of lines, narrower", [](RecordForm &form) { dragEdge(grid(form, "TDBGrid1"), 1, -17); },
         [](RecordForm &form) { return grid(form, "TDBGrid1").columnWidth(1); }},
        {"order of a list's columns",
         [](RecordForm &form) {
             const QHeaderView &head = *grid(form, "TDBGrid3").horizontalHeader();
             drag(head.viewport(), {head.sectionViewportPosition(1) + 20, 5}, -head.sectionSize(0) - 10);
         },
         [](RecordForm &form) { return grid(form, "TDBGrid3").horizontalHeader()->visualIndex(1); }},
        {"width of the list",
         [](RecordForm &form) { drag(form.findChild<PaneSplitter *>()->handle(1), QPoint(2, 90), 40); },
         [](RecordForm &form) { return form.findChild<PaneSplitter *>()->sizes().first(); }},
    };
    for (const auto &[what, draw, seen] : cases) {
        SCOPED_TRACE(what);
        auto form = open();
        const QVariant before = seen(*form);
        draw(*form);
        const QVariant drawn = seen(*form);
        EXPECT_NE(drawn, before);
        form->refresh();
        EXPECT_EQ(seen(*form), drawn) << "read anew";
        form->close();
        EXPECT_EQ(seen(*open("others")), before);
        EXPECT_EQ(seen(*open()), drawn);
        userSettings().clear();
    }
}

TEST_F(KeptLayouts, ADoubleClickOnItsEdgeGivesAColumnItsOwnWidthAgain)
{
    auto form = open();
    const int fitting = grid(*form, "TDBGrid3").columnWidth(0);
    dragEdge(grid(*form, "TDBGrid3"), 0, 40);
    const QHeaderView &head = *grid(*form, "TDBGrid3").horizontalHeader();
    QTest::mouseDClick(head.viewport(), Qt::LeftButton, {}, {head.sectionSize(0) - 1, 5});
    QApplication::processEvents();
    EXPECT_EQ(grid(*form, "TDBGrid3").columnWidth(0), fitting);
    EXPECT_EQ(grid(*open(), "TDBGrid3").columnWidth(0), fitting);
}

TEST_F(KeptLayouts, NoWindowLeavesItsScreenOrHidesAnother)
{
    for (const QRect place : {QRect(-900, 20, 400, 300), QRect(30, 5000, 400, 300), QRect(0, 0, 5000, 4000)}) {
        userSettings().clear();
        auto form = open();
        form->setGeometry(place);
        form->close();
        form = open();
        const QRect screen = form->screen()->availableGeometry();
        EXPECT_TRUE(screen.contains(form->geometry())) << form->width() << " " << form->height();
        EXPECT_NE(open()->pos(), form->pos()); // which is open still
    }
}

} // namespace tradewick
