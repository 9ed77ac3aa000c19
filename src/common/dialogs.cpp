#include "common/dialogs.h"

#include "common/stop_box.h"
#include "common/user_settings.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QStandardPaths>

namespace tradewick
{

namespace
{

constexpr int stepsBetweenLooks = 20;

QMessageBox::Icon iconOf(MessageIcon icon)
{
    switch (icon) {
    case MessageIcon::Information:
        return QMessageBox::Information;
    case MessageIcon::Exclamation:
        return QMessageBox::Warning;
    case MessageIcon::Question:
        return QMessageBox::Question;
    case MessageIcon::Critical:
        return QMessageBox::Critical;
    case MessageIcon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

const QString lastFolderKey = QStringLiteral("files/folder");

// Where the user chose a file last, on the first time where documents lie.
QDir lastFolder()
{
    const QString folder = userSettings().value(lastFolderKey).toString();
    for (const QString &place : {folder, QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)})
        if (!place.isEmpty() && QFileInfo(place).isDir())
            return {place};
    return QDir::home();
}

std::optional<QString> chosen(const QString &path)
{
    if (path.isEmpty())
        return std::nullopt;
    userSettings().setValue(lastFolderKey, QFileInfo(path).absolutePath());
    return path;
}

int answerOf(QMessageBox &question)
{
    question.setTextFormat(Qt::PlainText);
    question.button(QMessageBox::Yes)->setText(QStringLiteral("是(&Y)"));
    question.button(QMessageBox::No)->setText(QStringLiteral("否(&N)"));
    return question.exec();
}

class WindowDialogs : public Dialogs
{
public:
    void message(QWidget *parent, const QString &text, const QString &title, MessageIcon icon) override
    {
        // Without any title the program's file name would stand there.
        QMessageBox box(iconOf(icon), title.isEmpty() ? QStringLiteral(" ") : title, text, QMessageBox::Ok, parent);
        box.setTextFormat(Qt::PlainText);
        box.button(QMessageBox::Ok)->setText(QStringLiteral("确定"));
        box.exec();
    }

    bool ask(QWidget *parent, const QString &text, const QString &title, OnEnter onEnter, MessageIcon icon) override
    {
        QMessageBox box(iconOf(icon), title, text, QMessageBox::Yes | QMessageBox::No, parent);
        box.setDefaultButton(onEnter == OnEnter::Yes ? QMessageBox::Yes : QMessageBox::No);
        box.setEscapeButton(QMessageBox::No);
        return answerOf(box) == QMessageBox::Yes;
    }

    std::optional<bool> choose(QWidget *parent, const QString &text, const QString &title, MessageIcon icon) override
    {
        // Escape and the frame's cross need a button that they press.
        QMessageBox box(iconOf(icon), title, text, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, parent);
        box.button(QMessageBox::Cancel)->hide();
        box.setDefaultButton(QMessageBox::Yes);
        box.setEscapeButton(QMessageBox::Cancel);
        const int answer = answerOf(box);
        return answer == QMessageBox::Cancel ? std::nullopt : std::optional(answer == QMessageBox::Yes);
    }

    std::optional<QString> input(QWidget *parent, const QString &prompt, const QString &title,
                                 const QString &proposed) override
    {
        QInputDialog box(parent);
        box.setWindowTitle(title);
        box.setLabelText(prompt);
        box.setTextValue(proposed);
        box.setOkButtonText(QStringLiteral("确定"));
        box.setCancelButtonText(QStringLiteral("取消"));
        return box.exec() == QDialog::Accepted ? std::optional(box.textValue()) : std::nullopt;
    }

    std::optional<QString> openFile(QWidget *parent, const QString &title, const QString &filter) override
    {
        return chosen(QFileDialog::getOpenFileName(parent, title, lastFolder().path(), filter));
    }

    std::optional<QString> saveFile(QWidget *parent, const QString &title, const QString &suggested,
                                    const QString &filter) override
    {
        return chosen(QFileDialog::getSaveFileName(parent, title, lastFolder().filePath(suggested), filter));
    }

    bool steps(QWidget *parent, const QString &text, int count, const std::function<void(int i)> &step) override
    {
        QProgressDialog box(text, QStringLiteral("取消"), 0, count, parent);
        box.setWindowTitle(QStringLiteral("系统提示"));
        box.setWindowModality(Qt::ApplicationModal);
        box.setMinimumDuration(500);
        for (int i = 0; i < count; ++i) {
            if (i % stepsBetweenLooks == 0)
                box.setValue(i); // looks for what the user does, once it is shown
            if (box.wasCanceled())
                return false;
            step(i);
        }
        return true;
    }

    std::function<bool()> stoppable(QWidget *parent, const QString &text) override
    {
        return [box = std::make_shared<StopBox>(parent, text)] { return box->goesOn(); };
    }

    std::optional<ConflictAnswer> conflict(QWidget *parent, const ConflictQuestion &question) override
    {
        return ConflictDialog::ask(question, parent);
    }
};

WindowDialogs windowDialogs;
Dialogs *current = &windowDialogs;

} // namespace

Dialogs &dialogs()
{
    return *current;
}

void setDialogs(Dialogs *dialogs)
{
    current = dialogs ? dialogs : &windowDialogs;
}

} // namespace tradewick
