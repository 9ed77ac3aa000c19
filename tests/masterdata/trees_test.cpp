// The forms with a tree beside the record: departments, staff, regions, delivery addresses.
#include "masterdata/masterdata.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <QAbstractItemView>
#include <QElapsedTimer>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QTreeView>

namespace tradewick
{

using namespace test;

namespace
{

class Trees : public testing::Test
{
protected:
    TestDatabase database;
    ScriptedDialogs dialogs;

    void run(const QString &statement) { database.connection().Execute(statement); }
    void department(const QString &key, const QString &name, const QString &above)
    {
        database.connection().Execute("insert into sys_bmsz(bmbh,bmmc,sjbm) values('{k}','{n}','{a}')",
                                      {{"k", key}, {"n", name}, {"a", above}});
    }

    // Texts below a branch, opened as a clerk opens them.
    static QStringList below(QTreeView &tree, const QModelIndex &branch)
    {
        tree.expand(branch);
        QApplication::processEvents();
        QStringList texts;
        for (int row = 0; row < tree.model()->rowCount(branch); ++row)
            texts.append(tree.model()->index(row, 0, branch).data().toString());
        texts.sort();
        return texts;
    }
    // A branch by the texts that lead to it from the root.
    static QModelIndex branch(QTreeView &tree, const QStringList &path)
    {
        QModelIndex at = tree.model()->index(0, 0);
        for (const QString &text : path) {
            tree.expand(at);
            QModelIndex next;
            for (int row = 0; row < tree.model()->rowCount(at); ++row)
                if (tree.model()->index(row, 0, at).data() == text)
                    next = tree.model()->index(row, 0, at);
            EXPECT_TRUE(next.isValid()) << text.toStdString();
            at = next;
        }
        return at;
    }
    static void clickBranch(QTreeView &tree, const QStringList &path)
    {
        const QModelIndex at = branch(tree, path);
        tree.scrollTo(at);
        QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualRect(at).center());
    }
};

} // namespace

TEST_F(Trees, DepartmentsStandInTwoLevels)
{
    department("B0001", "Sales", "无");
    department("B0002", "Export", "Sales");
    department("B0003", "Third level", "Export");
    RecordForm form(sys_bmsz());
    const FormDriver drive(form);
    auto &tree = *drive.find<QTreeView>("TreeView1");
    const QModelIndex root = tree.model()->index(0, 0);
    EXPECT_EQ(root.data(), "部门结构");
    EXPECT_EQ(below(tree, root), QStringList{"Sales|B0001"});
    EXPECT_EQ(below(tree, branch(tree, {"Sales|B0001"})), QStringList{"Export|B0002"});
    EXPECT_EQ(below(tree, branch(tree, {"Sales|B0001", "Export|B0002"})), QStringList());
    clickBranch(tree, {"Sales|B0001", "Export|B0002"});
    EXPECT_EQ(drive.text("Text(1)"), "Export");
    clickBranch(tree, {});
    EXPECT_EQ(drive.text("Text(1)"), "Export");
    database.elsewhere("delete from sys_bmsz where bmbh='B0002'");
    form.records().Fields("bmbh").setValue("B0009");
    clickBranch(tree, {"Sales|B0001", "Export|B0002"});
    EXPECT_EQ(dialogs.take(), (Shown{"没有查询到相应的记录。", "系统提示", MessageIcon::None}));
}

TEST_F(Trees, ADepartmentIsCheckedAndTakesTheChosenParent)
{
    department("B0001", "Sales", "无");
    RecordForm form(sys_bmsz());
    const FormDriver drive(form);
    auto *above = drive.find<QComboBox>("Combo1");
    EXPECT_EQ(above->itemText(0), "Sales|B0001");
    above->setCurrentIndex(0);
    drive.click("Cmdadd");
    EXPECT_EQ(drive.text("Text(0)"), "B0002");
    EXPECT_EQ(drive.text("Text(2)"), "Sales");
    EXPECT_FALSE(drive.enabled("TreeView1"));
    const struct {
        const char *key, *name, *message;
    } cases[] = {{"", "x", "部门编号不能为空"},
                 {"B002", "x", "部门编号约定5位"},
                 {"B00002", "", "部门编号约定5位"},
                 {"B0002", "", "部门名称不能为空."}};
    for (const auto &c : cases) {
        drive.type("Text(0)", c.key);
        drive.type("Text(1)", c.name);
        drive.click("CmdOK");
        EXPECT_EQ(dialogs.take(), (Shown{c.message, "系统提示", MessageIcon::Exclamation})) << c.key;
        EXPECT_TRUE(form.isBusy());
    }
    drive.type("Text(1)", "Export");
    drive.click("CmdOK");
    auto &tree = *drive.find<QTreeView>("TreeView1");
    EXPECT_EQ(below(tree, branch(tree, {"Sales|B0001"})), QStringList{"Export|B0002"});
    // Without a parent it is a top department.
    above->setEditText({});
    drive.click("Cmdadd");
    drive.type("Text(1)", "Finance");
    drive.click("CmdOK");
    EXPECT_EQ(database.value("select sjbm from sys_bmsz where bmmc='Finance'"), "无");
    EXPECT_EQ(below(tree, tree.model()->index(0, 0)), (QStringList{"Finance|B0003", "Sales|B0001"}));
    EXPECT_TRUE(tree.isExpanded(branch(tree, {"Sales|B0001"})));
    EXPECT_EQ(above->count(), 2);
}

TEST_F(Trees, StaffHangUnderTheirDepartmentByItsKey)
{
    department("B0001", "Renamed", "无");
    department("B0002", "Export", "Renamed");
    run("insert into sys_gzry(bmmc,bmbh,zgbh,name,zhwu) values('Old name','B0001','001','Li','单证员')");
    RecordForm form(sys_gzry());
    const FormDriver drive(form);
    auto &tree = *drive.find<QTreeView>("TreeView1");
    EXPECT_EQ(tree.model()->index(0, 0).data(), "部门图示");
    EXPECT_EQ(below(tree, branch(tree, {"Renamed|B0001"})), (QStringList{"Export|B0002", "Li|001"}));
    EXPECT_EQ(drive.text("Text(0)"), "Old name");
    clickBranch(tree, {"Renamed|B0001", "Export|B0002"});
    EXPECT_EQ(drive.text("Text1"), "Export|B0002");
    drive.find<QComboBox>("Combo1")->setCurrentIndex(0);
    for (const char *name : {"Wang", "Zhao"}) { // the department stays chosen
        drive.click("Cmdadd");
        EXPECT_EQ(drive.text("Text(0)"), "Export");
        EXPECT_EQ(drive.text("Text(2)"), "单证员");
        drive.type("Text(3)", name);
        drive.click("CmdOK");
        EXPECT_EQ(dialogs.take(), (Shown{"姓名不能为空", "系统提示", MessageIcon::Exclamation}));
        drive.type("Text(1)", name);
        drive.type("Text(2)", "");
        drive.click("CmdOK");
        EXPECT_EQ(dialogs.take(), (Shown{"职务不能为空", "系统提示", MessageIcon::Exclamation}));
        drive.type("Text(2)", "经理");
        drive.click("CmdOK");
        EXPECT_EQ(database.value("select bmbh from sys_gzry where name='{n}'", {{"n", name}}), "B0002");
    }
    EXPECT_EQ(drive.find<QComboBox>("Combo1")->count(), 2);
    EXPECT_EQ(drive.text("Combo1"), "单证员");
    clickBranch(tree, {"Renamed|B0001", "Li|001"});
    EXPECT_EQ(drive.text("Text(1)"), "Li");
    drive.click("Cmdadd"); // somebody is no department
    EXPECT_EQ(drive.text("Text(0)"), "");
    drive.click("Cmdcancel");
}

TEST_F(Trees, BoxesAndTreeAreReachedByKeys)
{
    department("B0001", "First", "无");
    department("B0002", "Second", "无");
    RecordForm departments(sys_bmsz());
    const FormDriver drive(departments);
    auto *parents = drive.find<QComboBox>("Combo1");
    parents->setFocus();
    drive.press("Combo1", Qt::Key_Down);
    ASSERT_TRUE(parents->view()->isVisible());
    QTest::keyClick(parents->view(), Qt::Key_Return);
    EXPECT_EQ(parents->currentText(), "First|B0001"); // the first is not stepped over
    drive.click("Cmdadd");
    EXPECT_EQ(drive.text("Text(2)"), "First");
    drive.click("Cmdcancel");

    RecordForm staff(sys_gzry());
    const FormDriver keys(staff);
    keys.control("TDBGrid3")->setFocus();
    keys.press("TDBGrid3", Qt::Key_Backtab);
    ASSERT_EQ(keys.focused(), "TreeView1"); // not the box that tells what is chosen there
    keys.press("TreeView1", Qt::Key_Down);
    keys.press("TreeView1", Qt::Key_Return);
    EXPECT_EQ(keys.text("Text1"), "First|B0001");
}

TEST_F(Trees, ALargeCompanyOpensWithoutAWait)
{
    database.connection().transaction([this] {
        for (int i = 0; i < 2000; ++i)
            department(QStringLiteral("B%1").arg(i, 4, 10, QChar('0')), QStringLiteral("D%1").arg(i / 2),
                       i % 2 ? QStringLiteral("D%1").arg(i / 4 * 2) : QStringLiteral("无"));
        for (int i = 0; i < 20000; ++i)
            database.connection().Execute("insert into sys_gzry(bmbh,zgbh,name,zhwu) values('{d}','{i}','N','经理')",
                                          {{"d", QStringLiteral("B%1").arg(i / 10, 4, 10, QChar('0'))}, {"i", i}});
    });
    QElapsedTimer timer;
    timer.start();
    RecordForm staff(sys_gzry());
    const FormDriver drive(staff);
    const qint64 elapsed = timer.elapsed();
    RecordProperty("milliseconds", static_cast<int>(elapsed));
    EXPECT_LT(elapsed, 1000);
    auto &tree = *drive.find<QTreeView>("TreeView1");
    EXPECT_EQ(tree.model()->rowCount(tree.model()->index(0, 0)), 1000);
    EXPECT_EQ(staff.records().RecordCount(), 20000);
}

TEST_F(Trees, RegionsStandInThreeLevelsAndCitiesFollowTheRegionsNameAlone)
{
    for (const char *row : {"'CN','North','Beijing'", "'US','North','Fargo'", "'US','South','Dallas'"})
        run(QString("insert into sys_qysz(sheng,shi,zheng) values(%1)").arg(row));
    RecordForm form(sys_qysz());
    const FormDriver drive(form);
    auto &tree = *drive.find<QTreeView>("TreeView1");
    EXPECT_EQ(tree.model()->index(0, 0).data(), "区域图示");
    for (const char *country : {"CN", "US"})
        EXPECT_EQ(below(tree, branch(tree, {country, "North"})), (QStringList{"Beijing", "Fargo"})) << country;
    const struct {
        QStringList path;
        const char *city;
    } clicks[] = {{{"US"}, "Fargo"}, {{"US", "South"}, "Dallas"}, {{"CN", "North", "Fargo"}, "Fargo"}, {{}, "Fargo"}};
    for (const auto &c : clicks) {
        clickBranch(tree, c.path);
        EXPECT_EQ(drive.text("Text(2)"), c.city);
    }
    drive.find<QComboBox>("Combo1")->setCurrentText("CN");
    drive.find<QComboBox>("Combo2")->setCurrentText("East");
    drive.click("Cmdadd");
    EXPECT_EQ(drive.text("Text(0)"), "CN");
    EXPECT_EQ(drive.text("Text(1)"), "East");
    drive.click("CmdOK");
    EXPECT_EQ(dialogs.take(), (Shown{"所有名称不能为空", "提示", MessageIcon::Exclamation}));
    drive.type("Text(2)", "Shanghai");
    drive.click("CmdOK");
    EXPECT_EQ(below(tree, branch(tree, {"CN"})), (QStringList{"East", "North"}));
    // A branch whose record is another now.
    branch(tree, {"CN", "East", "Shanghai"});
    database.elsewhere("update sys_qysz set zheng='Suzhou' where zheng='Shanghai'");
    clickBranch(tree, {"CN", "East", "Shanghai"});
    EXPECT_EQ(dialogs.take(), (Shown{"没找到符合项目", "查询", MessageIcon::Exclamation}));
    EXPECT_EQ(form.records().absolutePosition(), 0);
}

TEST_F(Trees, AddressesAreReachedFromTheRegionsAndNumberedFromTheirLastRow)
{
    run("insert into sys_ssdz(dzbh,sslb,ssdz) values('S0007','收货','Dock 1')");
    RecordForm regions(sys_qysz());
    FormDriver(regions).click("Cmd_ssdz");
    auto *form = regions.findChild<RecordForm *>("sys_SSDZ");
    ASSERT_NE(form, nullptr);
    FormDriver(regions).click("Cmd_ssdz");
    EXPECT_EQ(regions.findChildren<RecordForm *>("sys_SSDZ").size(), 1);
    const FormDriver drive(*form);
    auto &tree = *drive.find<QTreeView>("TreeView1");
    EXPECT_EQ(tree.model()->index(0, 0).data(), "收送地址");
    EXPECT_EQ(below(tree, branch(tree, {"收货"})), QStringList{"Dock 1"});
    drive.find<QComboBox>("Combo(0)")->setCurrentIndex(0);
    drive.click("Cmdadd");
    EXPECT_EQ(drive.text("Text(0)"), "S0008");
    EXPECT_EQ(drive.text("Text(1)"), "收货");
    drive.type("Text(1)", "");
    drive.click("CmdOK");
    EXPECT_EQ(dialogs.take(), (Shown{"编号或名称不能为空", "提示", MessageIcon::Exclamation}));
    drive.type("Text(1)", "送货");
    drive.type("Text(2)", "Gate 2");
    drive.click("CmdOK");
    clickBranch(tree, {"收货", "Dock 1"});
    EXPECT_EQ(drive.text("Text(0)"), "S0007");
    clickBranch(tree, {"送货"});
    EXPECT_EQ(drive.text("Text(0)"), "S0008");
    // The tail is of three digits and wraps.
    run("update sys_ssdz set dzbh='S1000' where dzbh='S0008'");
    RecordForm later(sys_SSDZ());
    const FormDriver driveLater(later);
    driveLater.click("Cmdadd");
    EXPECT_EQ(driveLater.text("Text(0)"), "S0001");
}

TEST_F(Trees, TheCompanysLogoIsChosenByAClickAndEmptiedForGood)
{
    const QTemporaryDir folder;
    run("insert into sys_gsmc(gsbh,gsmc,e_gsmc) values('1','公司','Company')");
    RecordForm form(sys_gssz());
    const FormDriver drive(form);
    const auto groupOf = [&](const char *name) {
        const auto *group = qobject_cast<QGroupBox *>(drive.control(name)->parentWidget());
        return group ? group->title() : QString();
    };
    EXPECT_EQ(groupOf("Text(16)"), "银行资料"); // two fields are called 英文名称
    EXPECT_EQ(groupOf("Text(2)"), "");
    const auto arrow = [kind = drive.find<QComboBox>("Combo1")] {
        return kind->grab(QRect(kind->width() - 20, 0, 20, kind->height())).toImage();
    };
    const QImage locked = arrow();
    EXPECT_FALSE(drive.enabled("Command1") || drive.enabled("Command2"));
    const QString path = folder.filePath("logo.jpg");
    dialogs.typed = path;
    QTest::mouseClick(drive.control("Image1"), Qt::LeftButton);
    EXPECT_TRUE(dialogs.shown.isEmpty());
    drive.click("Cmdedit");
    EXPECT_NE(arrow(), locked);
    drive.press("Command1", Qt::Key_Return);
    EXPECT_EQ(dialogs.take().text, "选取图标对话框");
    QTest::mouseClick(drive.control("Image1"), Qt::LeftButton);
    EXPECT_EQ(dialogs.take().text, "选取图标对话框");
    EXPECT_EQ(drive.text("Text1"), path);
    auto *image = drive.find<QLabel>("Image1");
    EXPECT_TRUE(image->pixmap(Qt::ReturnByValue).isNull());
    QImage picture(8, 8, QImage::Format_RGB32);
    picture.fill(Qt::blue);
    ASSERT_TRUE(picture.save(path)); // the file comes later and is seen with the next painting
    form.repaint();
    image->parentWidget()->repaint();
    EXPECT_FALSE(image->pixmap(Qt::ReturnByValue).isNull());
    drive.click("CmdOK");
    EXPECT_EQ(database.value("select logo from sys_gsmc"), path);
    EXPECT_EQ(database.value("select gs_phone from sys_gsmc"), "  ");
    EXPECT_EQ(database.value("select e_gsmc from sys_gsmc"), "Company");
    drive.click("Cmdedit");
    drive.click("Command2");
    EXPECT_EQ(drive.text("Text1"), "");
    drive.click("Cmdcancel");
    drive.click("Cmdadd");
    EXPECT_EQ(drive.text("Text1"), "  ");
    EXPECT_EQ(drive.text("Text(0)"), "");
    drive.click("CmdOK");
    EXPECT_EQ(dialogs.take(), (Shown{"编号或名称不能为空", "提示", MessageIcon::Exclamation}));
    drive.click("Cmdcancel");
}

} // namespace tradewick
