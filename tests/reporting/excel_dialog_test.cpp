#include "reporting/excel_dialog.h"
#include "support/scripted_dialogs.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QFileSystemModel>
#include <QListWidget>
#include <QPushButton>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

namespace tradewick::test
{

class ExcelDialog : public testing::Test
{
protected:
    ExcelDialog()
    {
        excelFileName = excelTargetFile = QStringLiteral("old");
        form.show();
    }

    ScriptedDialogs answers;
    QTemporaryDir temporary;
    QString folder = temporary.path();
    SJ_EXCEL_ZH form;
    QTreeView *tree = form.findChild<QTreeView *>(QStringLiteral("Dir1"));
    QListWidget *files = form.findChild<QListWidget *>(QStringLiteral("File1"));
    QComboBox *drives = form.findChild<QComboBox *>(QStringLiteral("Drive1"));
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
    EXPECT_EQ(form.windowTitle(), QStringLiteral("转为EXCEL文档"));
    EXPECT_EQ(chosen(), program);
    EXPECT_EQ(drives->currentText(), QStorageInfo(program).rootPath());
    EXPECT_GE(drives->findText(QStringLiteral("/")), 0);
    EXPECT_TRUE(fileNames().contains(QFileInfo(QCoreApplication::applicationFilePath()).fileName()));
    for (const char *name : {"Drive1", "Dir1", "File1", "Cmd_new", "Cmd_export"}) {
        const auto *control = form.findChild<QWidget *>(QLatin1String(name));
        EXPECT_FALSE(control->accessibleName().isEmpty()) << name;
        EXPECT_TRUE(control->focusPolicy() & Qt::TabFocus) << name;
    }
}

TEST_F(ExcelDialog, ListsFollowDriveAndFolder)
{
    touch(folder + QStringLiteral("/b.xls"));
    touch(folder + QStringLiteral("/A.txt"));
    choose(folder);
    EXPECT_EQ(fileNames(), (QStringList{QStringLiteral("A.txt"), QStringLiteral("b.xls")}));

    drives->addItem(folder); // as a drive plugged in elsewhere
    choose(QStringLiteral("/"));
    EXPECT_FALSE(fileNames().contains(QStringLiteral("A.txt")));
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
    const Case cases[] = {
        {folder, std::nullopt, QStringLiteral("old"), QStringLiteral("old")},
        {folder, QString(), QStringLiteral("old"), QStringLiteral("old")},
        {folder, QStringLiteral("发票"), QStringLiteral("发票"), folder + QStringLiteral("/发票.xls")},
        {folder, QStringLiteral("abc.xls"), QStringLiteral("abc.xls"), folder + QStringLiteral("/abc.xls.xls")},
        {QStringLiteral("/"), QStringLiteral("abc"), QStringLiteral("abc"), QStringLiteral("/abc.xls")}};
    for (const Case &one : cases) {
        form.show();
        choose(one.folder);
        press("Cmd_export", one.typed);
        EXPECT_EQ(answers.take().text, QStringLiteral("请输入文件名(默认.xls)"));
        EXPECT_EQ(excelFileName, one.name);
        EXPECT_EQ(excelTargetFile, one.target);
        EXPECT_EQ(form.isVisible(), one.target == QStringLiteral("old"));
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
    EXPECT_EQ(excelTargetFile, QStringLiteral("old"));
}

TEST_F(ExcelDialog, NewFolderAppearsOrSaysWhyNot)
{
    choose(folder);
    press("Cmd_new", QString());
    EXPECT_EQ(answers.take(), (Shown{QStringLiteral("输入新文件夹名"), QStringLiteral("系统提示"), MessageIcon::None}));
    EXPECT_TRUE(QDir(folder).isEmpty());

    press("Cmd_new", QStringLiteral("单证 2026"));
    answers.take();
    const QString made = folder + QStringLiteral("/单证 2026");
    EXPECT_TRUE(QFileInfo(made).isDir());
    EXPECT_TRUE(QTest::qWaitFor([&] { return model->rowCount(model->index(folder)) == 1; }));
    EXPECT_EQ(chosen(), folder);

    touch(folder + QStringLiteral("/file"));
    for (const QString &bad : {QStringLiteral("单证 2026"), QStringLiteral("file/x"), QStringLiteral("no/such")}) {
        press("Cmd_new", bad);
        ASSERT_EQ(answers.shown.size(), 2);
        EXPECT_TRUE(answers.shown[1].text.contains(bad)) << answers.shown[1].text.toStdString();
        EXPECT_EQ(answers.shown[1].icon, MessageIcon::Exclamation);
        EXPECT_TRUE(form.isVisible());
        answers.shown.clear();
    }
    EXPECT_EQ(fileNames(), QStringList{QStringLiteral("file")}); // listed anew
}

} // namespace tradewick::test
