#include "reporting/excel_dialog.h"
#include "support/scripted_dialogs.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QFileSystemModel>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

namespace tradewick::test
{

using namespace Qt::StringLiterals;

class ExcelDialog : public testing::Test
{
protected:
    ExcelDialog()
    {
        excelFileName = excelTargetFile = u"old"_s;
        form.show();
    }

    ScriptedDialogs answers;
    QTemporaryDir temporary;
    QString folder = temporary.path();
    SJ_EXCEL_ZH form;
    QTreeView *tree = form.findChild<QTreeView *>(u"Dir1"_s);
    QListWidget *files = form.findChild<QListWidget *>(u"File1"_s);
    QComboBox *drives = form.findChild<QComboBox *>(u"Drive1"_s);
    QFileSystemModel *model = qobject_cast<QFileSystemModel *>(tree->model());

    void choose(const QString &path) { tree->setCurrentIndex(model->index(path)); }
    QString chosen() const { return model->filePath(tree->currentIndex()); }
    void press(const char *button, const std::optional<QString> &typed)
    {
        answers.typed = typed;
        auto *control = form.findChild<QPushButton *>(QLatin1String(button));
        control->setFocus();
        QTest::keyClick(control, Qt::Key_Space);
    }
    QStringList fileNames() const
    {
        QStringList names;
        for (int i = 0; i < files->count(); ++i)
            names << files->item(i)->text();
        return names;
    }
    static void touch(const QString &path) { EXPECT_TRUE(QFile(path).open(QIODevice::WriteOnly)); }
};

TEST_F(ExcelDialog, OpensAtTheProgramsFolderAndItsDrive)
{
    const QString program = QCoreApplication::applicationDirPath();
    EXPECT_EQ(form.windowTitle(), u"转为EXCEL文档"_s);
    EXPECT_EQ(chosen(), program);
    EXPECT_FALSE(drives->currentText().isEmpty());
    EXPECT_TRUE(program.startsWith(drives->currentText()));
    EXPECT_GE(drives->findText(u"/"_s), 0);
    EXPECT_TRUE(fileNames().contains(QFileInfo(QCoreApplication::applicationFilePath()).fileName()));
    for (const char *name : {"Drive1", "Dir1", "File1", "Cmd_new", "Cmd_export"}) {
        const auto *control = form.findChild<QWidget *>(QLatin1String(name));
        EXPECT_FALSE(control->accessibleName().isEmpty()) << name;
        EXPECT_TRUE(control->focusPolicy() & Qt::TabFocus) << name;
    }
}

TEST_F(ExcelDialog, ListsFollowDriveAndFolder)
{
    touch(folder + u"/b.xls"_s);
    touch(folder + u"/A.txt"_s);
    choose(folder);
    EXPECT_EQ(fileNames(), (QStringList{u"A.txt"_s, u"b.xls"_s}));

    drives->addItem(folder); // as a drive plugged in elsewhere
    choose(u"/"_s);
    EXPECT_FALSE(fileNames().contains(u"A.txt"_s));
    drives->setCurrentText(folder);
    EXPECT_EQ(chosen(), folder);
    EXPECT_EQ(files->count(), 2);
}

TEST_F(ExcelDialog, TargetIsBuiltFromFolderAndName)
{
    struct Case {
        QString folder;
        std::optional<QString> typed;
        QString name, target;
    };
    const Case cases[] = {{folder, std::nullopt, u"old"_s, u"old"_s},
                          {folder, QString(), u"old"_s, u"old"_s},
                          {folder, u"发票"_s, u"发票"_s, folder + u"/发票.xls"_s},
                          {folder, u"abc.xls"_s, u"abc.xls"_s, folder + u"/abc.xls.xls"_s},
                          {u"/"_s, u"abc"_s, u"abc"_s, u"/abc.xls"_s}};
    for (const Case &one : cases) {
        form.show();
        choose(one.folder);
        press("Cmd_export", one.typed);
        EXPECT_EQ(answers.take().text, u"请输入文件名(默认.xls)"_s);
        EXPECT_EQ(excelFileName, one.name);
        EXPECT_EQ(excelTargetFile, one.target);
        EXPECT_EQ(form.isVisible(), one.target == u"old"_s);
    }
}

TEST_F(ExcelDialog, ClosingKeepsTheOldTarget)
{
    choose(folder);
    form.close();
    EXPECT_FALSE(form.isVisible());
    form.show();
    QTest::keyClick(&form, Qt::Key_Escape);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(excelTargetFile, u"old"_s);
}

TEST_F(ExcelDialog, NewFolderAppearsOrSaysWhyNot)
{
    choose(folder);
    press("Cmd_new", QString());
    EXPECT_EQ(answers.take(), (Shown{u"输入新文件夹名"_s, u"系统提示"_s, MessageIcon::None}));
    EXPECT_TRUE(QDir(folder).isEmpty());

    press("Cmd_new", u"单证 2026"_s);
    answers.take();
    const QString made = folder + u"/单证 2026"_s;
    EXPECT_TRUE(QFileInfo(made).isDir());
    EXPECT_TRUE(QTest::qWaitFor([&] { return model->rowCount(model->index(folder)) == 1; }));
    EXPECT_EQ(chosen(), folder);

    touch(folder + u"/file"_s);
    for (const QString &bad : {u"单证 2026"_s, u"file/x"_s, u"no/such"_s}) {
        press("Cmd_new", bad);
        ASSERT_EQ(answers.shown.size(), 2);
        EXPECT_TRUE(answers.shown[1].text.contains(bad)) << answers.shown[1].text.toStdString();
        EXPECT_EQ(answers.shown[1].icon, MessageIcon::Exclamation);
        EXPECT_TRUE(form.isVisible());
        answers.shown.clear();
    }
    EXPECT_EQ(fileNames(), QStringList{u"file"_s}); // listed anew
}

} // namespace tradewick::test
