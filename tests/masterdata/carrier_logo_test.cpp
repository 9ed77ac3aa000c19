// The logo of the companies that carry the goods.
#include "make_form.h"
#include "masterdata/masterdata.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <QFile>
#include <QImage>
#include <QLabel>

namespace tradewick
{

using namespace test;

namespace
{

QString pictureIn(const QTemporaryDir &folder, const QString &name)
{
    QImage image(20, 10, QImage::Format_RGB32);
    image.fill(Qt::red);
    EXPECT_TRUE(image.save(folder.filePath(name)));
    return folder.filePath(name);
}

bool showsPicture(const FormDriver &drive)
{
    return !drive.find<QLabel>("Image1")->pixmap(Qt::ReturnByValue).isNull();
}

} // namespace

TEST(CarrierLogo, FollowsTheRecordAndChangesOnlyWhileItIsEdited)
{
    TestDatabase database;
    ScriptedDialogs dialogs;
    const QTemporaryDir folder;
    const QString picture = pictureIn(folder, "徽 标.png");
    for (const char *table : {"sys_cwgs", "sys_tcgs"}) {
        const Values values{{"p", picture}, {"q", folder.filePath("gone.jpg")}};
        database.connection().Execute(QString("insert into %1(gsbh,gsmc,logo) values('P0001','a','{p}')").arg(table),
                                      values);
        database.connection().Execute(QString("insert into %1(gsbh,gsmc,logo) values('P0002','b','{q}')").arg(table),
                                      values);
    }
    for (auto make : {made<Sys_CwGs_ZL>, made<Sys_TcGs_Set>}) {
        const auto form = make();
        const FormDriver drive(*form);
        EXPECT_TRUE(showsPicture(drive));
        drive.click("cmdnext");
        EXPECT_FALSE(showsPicture(drive));
        EXPECT_EQ(drive.text("Text(1)"), "b");
        dialogs.typed = picture;
        drive.click("Command1"); // Browse: nothing
        drive.click("Command2");
        QTest::mouseClick(drive.control("Image1"), Qt::LeftButton);
        EXPECT_TRUE(dialogs.shown.isEmpty());
        EXPECT_EQ(drive.text("Text1"), folder.filePath("gone.jpg"));
        drive.click("Cmdedit");
        QTest::mouseClick(drive.control("Image1"), Qt::LeftButton);
        EXPECT_TRUE(dialogs.shown.isEmpty());
        drive.click("Command1");
        EXPECT_EQ(dialogs.take().text, "选取图标对话框");
        EXPECT_TRUE(showsPicture(drive));
        EXPECT_EQ(form->records().Fields("logo").text(), picture);
        drive.click("Cmdcancel");
        EXPECT_EQ(drive.text("Text(0)"), "P0001");
        EXPECT_TRUE(showsPicture(drive));
        drive.click("Cmdedit");
        drive.click("Command2");
        EXPECT_FALSE(showsPicture(drive));
        drive.click("CmdOK");
        EXPECT_EQ(form->records().Fields("logo").value(), " ");
        drive.click("Cmdadd");
        EXPECT_EQ(drive.text("Text1"), "  ");
        drive.click("Cmdcancel");
    }
}

} // namespace tradewick
