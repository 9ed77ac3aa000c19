// Dialogs that answer by themselves and remember what they were asked.
#pragma once

#include "common/dialogs.h"

#include <QStringList>
#include <QVector>

#include <functional>

namespace tradewick::test
{

struct Shown {
    QString text, title;
    MessageIcon icon = MessageIcon::None;
    bool operator==(const Shown &) const = default;
};

class ScriptedDialogs : public Dialogs
{
public:
    ScriptedDialogs() { setDialogs(this); }
    ~ScriptedDialogs() override { setDialogs(nullptr); }

    QVector<Shown> shown;         // messages and questions in their order
    bool answer = true;           // to every question
    bool isClosed = false;        // without an answer, where a question can be
    QString suggested;            // name of the last file to write, or what an input box proposed
    std::optional<QString> typed; // into every input box and file choice
    QVector<ConflictQuestion> conflicts;
    std::function<std::optional<ConflictAnswer>(const ConflictQuestion &question)> settle; // none: goes back

    int stepsBeforeCancel = -1; // after how many steps the user ends them; negative: never

    int looksBeforeStop = -1; // after how many looks the user stops what takes long; negative: never
    QString stopping;         // what was looked at last

    bool steps(QWidget *, const QString &, int count, const std::function<void(int i)> &step) override
    {
        for (int i = 0; i < count; ++i) {
            if (i == stepsBeforeCancel)
                return false;
            step(i);
        }
        return true;
    }
    std::function<bool()> stoppable(QWidget *, const QString &text) override
    {
        return [this, text] {
            stopping = text;
            return looksBeforeStop < 0 || looksBeforeStop-- > 0;
        };
    }
    void message(QWidget *, const QString &text, const QString &title, MessageIcon icon) override
    {
        shown.append({text, title, icon});
    }
    bool ask(QWidget *, const QString &text, const QString &title, OnEnter, MessageIcon icon) override
    {
        shown.append({text, title, icon});
        return answer;
    }
    std::optional<bool> choose(QWidget *, const QString &text, const QString &title, MessageIcon icon) override
    {
        shown.append({text, title, icon});
        return isClosed ? std::nullopt : std::optional(answer);
    }
    std::optional<QString> input(QWidget *, const QString &prompt, const QString &title,
                                 const QString &proposed) override
    {
        suggested = proposed;
        shown.append({prompt, title, MessageIcon::None});
        return typed;
    }
    std::optional<QString> openFile(QWidget *, const QString &title, const QString &) override
    {
        shown.append({title, {}, MessageIcon::None});
        return typed;
    }
    std::optional<QString> saveFile(QWidget *, const QString &title, const QString &name, const QString &) override
    {
        suggested = name;
        shown.append({title, {}, MessageIcon::None});
        return typed;
    }

    std::optional<ConflictAnswer> conflict(QWidget *, const ConflictQuestion &question) override
    {
        conflicts.append(question);
        return settle ? settle(question) : std::nullopt;
    }

    // The only message shown so far, and forgets it.
    Shown take()
    {
        Shown only = shown.size() == 1 ? shown.first() : Shown{QString::number(shown.size()) + " messages", {}, {}};
        shown.clear();
        return only;
    }
};

} // namespace tradewick::test
