// Messages, questions, input boxes and file choices: the one way to ask the user, so that tests can answer.
#pragma once

#include "common/conflict_dialog.h"
#include "common/message_icon.h"

#include <QString>

#include <functional>
#include <optional>

class QWidget;

namespace tradewick
{

// The button of a question that Enter presses. No where Yes destroys or ends something.
enum class OnEnter { Yes, No };

class Dialogs
{
public:
    virtual ~Dialogs() = default;
    // A message with OK alone. title may be empty.
    virtual void message(QWidget *parent, const QString &text, const QString &title, MessageIcon icon) = 0;
    // A question with Yes and No; gives whether Yes was chosen. Escape is No.
    virtual bool ask(QWidget *parent, const QString &text, const QString &title, OnEnter onEnter,
                     MessageIcon icon = MessageIcon::Question) = 0;
    // The same where either button does something: no value for Escape and where the box is closed otherwise.
    virtual std::optional<bool> choose(QWidget *parent, const QString &text, const QString &title,
                                       MessageIcon icon = MessageIcon::Question) = 0;
    // An input box; no value when it was cancelled. proposed stands there to be taken or typed over.
    virtual std::optional<QString> input(QWidget *parent, const QString &prompt, const QString &title,
                                         const QString &proposed = {}) = 0;
    // The path of a file to open, or no value when cancelled; filter in the form of QFileDialog.
    virtual std::optional<QString> openFile(QWidget *parent, const QString &title, const QString &filter) = 0;
    // The path of a file to write, or no value when cancelled. suggested is a name without a folder: files are looked
    // for and written where this user chose one last, from program to program.
    virtual std::optional<QString> saveFile(QWidget *parent, const QString &title, const QString &suggested,
                                            const QString &filter) = 0;
    // Carries out that many steps, numbered from 0, telling how far they are where they take long; gives false when the
    // user ends them before. What a step throws is let out.
    virtual bool steps(QWidget *parent, const QString &text, int count, const std::function<void(int i)> &step) = 0;
    // What to ask again and again while something takes long that cannot be cut into steps: after half a second it
    // tells of it, and it gives false once the user stops it. What is told goes with the function.
    virtual std::function<bool()> stoppable(QWidget *parent, const QString &text) = 0;
    // What to store where another desktop changed the same row; no value when the user goes back.
    virtual std::optional<ConflictAnswer> conflict(QWidget *parent, const ConflictQuestion &question) = 0;
};

// The dialogs of the running program; real windows unless a test set its own.
Dialogs &dialogs();
// Sets other dialogs, which the caller keeps alive; nullptr restores the real ones.
void setDialogs(Dialogs *dialogs);

} // namespace tradewick
