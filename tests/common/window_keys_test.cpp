// The list that F1 shows holds the keys that work in the window where it is pressed, as its state is.
#include "common/record_form.h"
#include "common/window_keys.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <QTreeWidget>

namespace tradewick
{

using namespace test;

namespace
{

class Keys : public testing::Test
{
protected:
    Keys()
    {
        database.connection().Execute("insert into yy_gw_wxht_h(htbh,khmc) values('C1','A customer')");
        form = std::make_unique<RecordForm>(RecordFormSpec{
            .name = "contracts",
            .caption = "Contracts",
            .statement = "select * from yy_gw_wxht_h order by htbh",
            .pages = {{"Head", {{"Text(0)", "htbh", "Number:"}}},
                      {"Terms", {{"Text(1)", "qttk", "Terms:", field::longText}}}},
            .list = {{"htbh", "Number"}, {"khmc", "Customer"}},
            .lines = {.statement = "select * from yy_gw_wxht_b where htbh='{htbh}'",
                      .key = "htbh",
                      .grids = {{.columns = {{"cpbh", "Product"}, {"sl", "Quantity"}}}}},
        });
        drive = std::make_unique<FormDriver>(*form);
    }
    static QWidget *listWindow()
    {
        for (QWidget *window : QApplication::topLevelWidgets())
            if (window->objectName() == "keys" && window->isVisible())
                return window;
        return nullptr;
    }
    // The keys that F1 tells where the focus is, each with the caption of its group; F1 takes the list away again.
    QStringList told() const
    {
        form->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(form.get()));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_F1);
        QWidget *window = listWindow();
        if (!window)
            return {};
        QStringList keys;
        const auto *list = window->findChild<QTreeWidget *>("keyList");
        for (int i = 0; i < list->topLevelItemCount(); ++i)
            for (int j = 0; j < list->topLevelItem(i)->childCount(); ++j)
                keys.append(list->topLevelItem(i)->text(0) + u' ' + list->topLevelItem(i)->child(j)->text(0) + u' ' +
                            list->topLevelItem(i)->child(j)->text(1));
        QTest::keyClick(window, Qt::Key_F1);
        EXPECT_EQ(listWindow(), nullptr);
        return keys;
    }

    TestDatabase database;
    ScriptedDialogs dialogs;
    KeyHelp help{*qApp};
    std::unique_ptr<RecordForm> form;
    std::unique_ptr<FormDriver> drive;
};

} // namespace

TEST_F(Keys, AreToldAsTheyWorkInBrowseAndInEdit)
{
    const struct {
        const char *key;
        bool browse, edit, editTerms;
    } cases[] = {
        {"Contracts Ctrl+N 新增", true, false, false},
        {"Contracts Ctrl+S 确认", false, true, true},
        {"Contracts Alt+E 编辑", true, false, false},
        {"Contracts Alt+2 Terms", true, true, true},
        {"Contracts Ctrl+Enter 到明细的新行", true, true, true},
        {"商品明细 Delete 删除所选的行", false, true, true},
        {"商品明细 F2 修改单元格", false, true, true},
        {"记录内容 Shift+Enter 换行", false, false, true},
        {"Contracts F1 显示本窗口的按键", true, true, true},
    };
    const QStringList browse = told();
    drive->click("Cmdedit");
    const QStringList edit = told();
    drive->control("Text(1)")->window()->findChild<QTabWidget *>("SSTab1")->setCurrentIndex(1);
    const QStringList editTerms = told();
    for (const auto &[key, inBrowse, inEdit, inEditTerms] : cases) {
        EXPECT_EQ(browse.contains(key), inBrowse) << key << " in Browse\n" << browse.join('\n').toStdString();
        EXPECT_EQ(edit.contains(key), inEdit) << key << " in Edit\n" << edit.join('\n').toStdString();
        EXPECT_EQ(editTerms.contains(key), inEditTerms) << key << " in Edit, on the second tab";
    }
    EXPECT_EQ(browse.filter(" F8 ").size(), 1) << "the list's and the lines' are one group";
    EXPECT_TRUE(browse.filter(" F8 ").filter("记录列表").filter("商品明细").size() == 1);
    EXPECT_TRUE(edit.filter(" F8 ").isEmpty()) << "the list is shut, lines that are typed into never sort";
}

} // namespace tradewick
