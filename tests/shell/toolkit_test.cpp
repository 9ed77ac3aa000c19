// The program's real dialogs: what Enter and Escape answer, where files go, and that all of it is Chinese.
#include "shell/main_window.h"
#include "shell/toolkit_texts.h"
#include "shell_support.h"

#include <QAbstractButton>
#include <QAction>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QRegularExpression>
#include <QSettings>
#include <QTreeView>

using namespace tradewick;
using namespace tradewick::test;

namespace
{

class Toolkit : public ShellTest
{
protected:
    Toolkit()
    {
        setDialogs(nullptr);
        static const bool once = [] {
            speakChinese();
            return true;
        }();
        EXPECT_TRUE(once);
    }

    // Texts that the window shows, but for what is no word: paths, file patterns, what the user typed.
    static QStringList latinTexts(const QWidget &window)
    {
        QStringList texts;
        for (const auto *button : window.findChildren<QAbstractButton *>())
            texts << button->text() << button->toolTip();
        for (const auto *label : window.findChildren<QLabel *>())
            texts << label->text();
        for (const auto *list : window.findChildren<QTreeView *>())
            for (int i = 0; list->model() && i < list->model()->columnCount(); ++i)
                texts << list->model()->headerData(i, Qt::Horizontal).toString();
        return texts.filter(QRegularExpression("[A-Za-z]{2}")).filter(QRegularExpression("^(?!.*PDF).*$"));
    }
};

} // namespace

TEST_F(Toolkit, NothingIsEndedOrDeletedByEnterOrEscape)
{
    database.connection().Execute("insert into sys_bzsz (bzbh, bizh) values ('$0001', 'USD')");
    main_FRM mainWindow;
    mainWindow.show();
    mainWindow.openForm("sys_bzsz");
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_unknown}) {
        const bool yes = key == Qt::Key_unknown; // by its button
        const auto answer = [&](QWidget &box) {
            EXPECT_EQ(latinTexts(box), QStringList());
            if (yes)
                static_cast<QMessageBox &>(box).button(QMessageBox::Yes)->click();
            else
                QTest::keyClick(&box, key);
        };
        whenModal(answer);
        click(*window("sys_bzsz"), "Cmddelete");
        EXPECT_EQ(database.count("sys_bzsz"), yes ? 0 : 1) << key;
        whenModal(answer);
        find<QAction>(mainWindow, "Tool7").trigger();
        EXPECT_EQ(ends, yes ? QList{0} : QList<int>()) << key;
    }
}

TEST_F(Toolkit, FilesGoWhereTheLastOneWent)
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_folder.path());
    QDir(m_folder.path()).mkdir("papers");
    const QString papers = m_folder.filePath("papers");
    const QString wanted[] = {papers + "/first.pdf", papers + "/形式发票-X1.pdf"};
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    whenModal([&](QWidget &dialog) {
        EXPECT_EQ(latinTexts(dialog), QStringList());
        EXPECT_NE(static_cast<QFileDialog &>(dialog).directory(), QDir(QCoreApplication::applicationDirPath()));
        find<QLineEdit>(dialog, "fileNameEdit").setText(wanted[0]);
        QTest::keyClick(&find<QLineEdit>(dialog, "fileNameEdit"), Qt::Key_Return);
    });
    EXPECT_EQ(tradewick::dialogs().saveFile(nullptr, "a", "a.pdf", "PDF (*.pdf)"), wanted[0]);
    whenModal([&](QWidget &dialog) {
        EXPECT_EQ(find<QLineEdit>(dialog, "fileNameEdit").text(), "形式发票-X1.pdf");
        QTest::keyClick(&find<QLineEdit>(dialog, "fileNameEdit"), Qt::Key_Return);
    });
    EXPECT_EQ(tradewick::dialogs().saveFile(nullptr, "b", "形式发票-X1.pdf", "PDF (*.pdf)"), wanted[1]);
}

TEST_F(Toolkit, PrintDialogAndTextFieldsSpeakChinese)
{
    QPrinter printer;
    QPrintDialog dialog(&printer);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange);
    dialog.show();
    EXPECT_EQ(latinTexts(dialog), QStringList());

    QLineEdit field("text");
    const std::unique_ptr<QMenu> menu(field.createStandardContextMenu());
    for (const QAction *action : menu->actions())
        EXPECT_FALSE(action->text().section('\t', 0, 0).contains(QRegularExpression("[A-Za-z]{2}")))
            << action->text().toStdString();
}
