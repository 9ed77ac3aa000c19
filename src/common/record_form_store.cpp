// How a record begins and ends: Add, Edit, OK, Cancel, Delete. A record and its lines are one unit, stored or waiting
// by itself: all or nothing, and never over what another desktop wrote meanwhile without asking.
#include "common/conflict_dialog.h"
#include "common/dialogs.h"
#include "common/edit_steps.h"
#include "common/field_panel.h"
#include "common/lines_first.h"
#include "common/record_form.h"
#include "common/record_list.h"

#include <QApplication>
#include <QLabel>
#include <QScopeGuard>

namespace tradewick
{

// ---- Add and Edit ----

QString RecordForm::proposedKey(const QStringList &passedOver)
{
    const int column = records().columnIndex(m_panel->field(keyField()).column);
    QStringList waiting = passedOver;
    for (const int row : records().waitingRows())
        if (records().keyAt(row) != m_added) // the record that the number is for
            waiting.append(records().valueAt(row, column).toString());
    std::optional<QVariant> last;
    if (!m_spec.numbering.lookup && records().RecordCount() > 0)
        last = records().valueAt(records().RecordCount() - 1, column);
    return proposeNumber(m_spec.numbering, *connection(), last, QDate::currentDate(), waiting);
}

void RecordForm::add()
{
    QString number;
    const bool reached =
        run(m_spec.failures.add, {[this] {
                                      m_adding = true;
                                      m_added = 0;
                                      m_left = hasRecord() ? records().keyAt(records().absolutePosition()) : 0;
                                      setBusy(true, true);
                                  },
                                  [&] { number = proposedKey(); },
                                  [this] {
                                      if (records().RecordCount() > 0)
                                          records().MoveLast();
                                  },
                                  [this] {
                                      records().AddNew();
                                      m_added = records().keyAt(records().absolutePosition());
                                  },
                                  [this] { lock(false); }, [this] { focusFirst(); },
                                  [&] {
                                      const auto take = [&] {
                                          setText(keyField(), number);
                                          if (!m_spec.alsoNumbered.isEmpty())
                                              records().Fields(m_spec.alsoNumbered).setValue(number);
                                      };
                                      if (!number.isEmpty())
                                          take();
                                      // Lines under a number just proposed are another desktop's, which was faster,
                                      // or is at its Add still.
                                      QStringList taken;
                                      while (!number.isEmpty() && m_lines && lines().RecordCount() > 0) {
                                          if (storesLinesFirst(m_spec))
                                              taken.append(number);
                                          const QString next = proposedKey(taken);
                                          if (next == number)
                                              break;
                                          number = next;
                                          take();
                                      }
                                      for (const Preset &preset : std::as_const(m_spec.defaults))
                                          records().Fields(preset.column).setValue(filled(preset));
                                      for (const DefaultSpec &box : std::as_const(m_spec.tree.defaults))
                                          if (const QString offered = m_list->defaultValue(box); !offered.isEmpty())
                                              setText(box.field, offered);
                                      if (m_spec.onAdd)
                                          m_spec.onAdd(*this);
                                      focusFirst(); // what was proposed is selected, to be typed over
                                  }});
    if (reached)
        return;
    // Without the server there is neither a number nor a record to type into.
    m_adding = false;
    setBusy(false);
    lock(true);
    if (hasRecord() && records().isNew(records().absolutePosition()))
        records().CancelUpdate();
    m_lost.clear(); // told already
}

void RecordForm::edit()
{
    if (!hasRecord()) {
        QApplication::beep();
        return;
    }
    run(m_spec.failures.edit, {[this] {
                                   if (m_isUnread || (m_lines && !lines().isOpen()))
                                       showRecord();
                                   m_added = 0;
                                   setBusy(true);
                               },
                               [this] { lock(false); }, [this] { focusFirst(); }});
}

// ---- OK ----

void RecordForm::save()
{
    const auto forget = qScopeGuard([this] { // behind what is queued of the fields that were left
        QMetaObject::invokeMethod(
            this, [this] { m_asked.clear(); }, Qt::QueuedConnection);
    });
    m_panel->takeTyped(); // a shortcut key leaves no field
    if (m_lines)
        m_lines->commitEditors();
    if (!passesOwnChecks() || !passesWhatIsTyped() || (m_lines && m_lines->tellBadCell()))
        return;
    const bool adding = m_adding, inAdd = m_inAdd;
    if (m_spec.adding == Adding::UntilOk)
        m_adding = false;
    if (m_lines) {
        m_lines->hideLookup();
        m_lines->setEditing(false);
    }
    if (m_spec.onOk)
        m_spec.onOk(*this);
    if (missesRequiredField())
        return;
    for (const EmptyField &field : std::as_const(m_spec.whenEmpty))
        if (text(field.name).isEmpty())
            setText(field.name, field.stored);
    askForLines();
    bool isStored = true;
    run(m_spec.failures.ok, {[this] { lock(true); }, [this] { focusFirst(); }, [this] { setBusy(false); },
                             [&] {
                                 // Whoever goes back, or lost the server, goes on with what was typed.
                                 const auto back = [&] {
                                     isStored = false;
                                     m_adding = adding;
                                     setBusy(true, inAdd);
                                     lock(false);
                                 };
                                 try {
                                     takeFreeNumber();
                                     if (!storeWaiting())
                                         back();
                                 } catch (const DataError &error) {
                                     isStored = false;
                                     if (error.number() == DataError::connectionLost)
                                         back();
                                     throw;
                                 }
                             },
                             [&] { // what is stored is shown, as the database keeps it
                                 if (!isStored || (hasRecord() && waits(records().absolutePosition())))
                                     return;
                                 m_added = m_left = 0;
                                 if (m_lines && records().EOF_())
                                     records().MovePrevious();
                                 else if (!records().BOF()) {
                                     records().Resync();
                                     refreshLines();
                                 }
                             },
                             [&] {
                                 if (!isStored)
                                     return;
                                 if (m_spec.adding == Adding::UntilStored) {
                                     endAdding();
                                     Q_EMIT addingEnded();
                                 }
                                 m_list->rebuildTree();
                                 refill();
                                 if (m_spec.onSaved)
                                     m_spec.onSaved(*this);
                             }});
    showState();
}

bool RecordForm::anyWaits()
{
    return records().hasPendingChanges() || (m_lines && !m_lines->headsWaiting().isEmpty());
}

bool RecordForm::tellWaiting()
{
    const bool anyWaits = this->anyWaits();
    if (anyWaits)
        dialogs().message(this, QStringLiteral("尚有未保存的记录，请先保存或取消。"), systemTitle(),
                          MessageIcon::Exclamation);
    return anyWaits;
}

// The database, and what is printed of it, has another record under its number, or none.
bool RecordForm::tellUnstored()
{
    return hasRecord() && waits(records().absolutePosition()) && tellWaiting();
}

// The record shown first; what it meets is the clerk's to know. One that the database refused earlier holds nothing
// back, and goes on waiting when it is refused again.
bool RecordForm::storeWaiting()
{
    const qint64 shown = hasRecord() ? records().keyAt(records().absolutePosition()) : 0;
    QVector<qint64> others;
    for (const int row : records().waitingRows())
        others.append(records().keyAt(row));
    if (m_lines)
        for (const qint64 head : m_lines->headsWaiting())
            if (!others.contains(head))
                others.append(head);
    others.removeAll(shown);
    const auto unit = [this](qint64 head) {
        const int row = records().rowOfKey(head);
        if (records().isWaiting(row)) {
            const bool isNew = records().isNew(row);
            if (records().UpdateRow(row) && isNew && m_spec.onNew)
                m_spec.onNew(*this, row);
        }
        if (m_lines && m_lines->wait(head)) {
            records().requireRow(row);
            m_lines->store(head);
        }
        if (const auto from = m_linesFrom.constFind(head); from != m_linesFrom.cend()) {
            const int key = records().columnIndex(m_panel->field(keyField()).column);
            connection()->Execute("update " + plainTableOf(m_spec.lines.statement) + " set " + m_spec.lines.key +
                                      "='{now}' where " + m_spec.lines.key + "='{before}'",
                                  {{"before", *from}, {"now", records().valueAt(row, key).toString().trimmed()}});
            connection()->onCommit([this, head] { m_linesFrom.remove(head); });
        }
    };
    const auto storeOthers = [&] {
        for (const qint64 head : std::as_const(others)) {
            try {
                connection()->transaction([&] { unit(head); });
            } catch (const DataError &error) {
                if (error.number() == DataError::connectionLost)
                    throw;
            }
        }
    };
    try {
        const bool stored = store([&] {
            if (m_spec.beforeStore && hasRecord())
                m_spec.beforeStore(*this);
            if (hasRecord()) // under another identity where it is stored anew
                unit(records().keyAt(records().absolutePosition()));
            if (m_spec.onStore)
                m_spec.onStore(*this);
        });
        if (!stored)
            return false;
    } catch (const DataError &error) {
        if (error.number() != DataError::connectionLost)
            storeOthers();
        throw;
    }
    storeOthers();
    return true;
}

// Stored lines bear the number that their head was stored under. Where that is typed over they stay behind, and come
// back under the next document of that number, unless the clerk takes them along.
void RecordForm::askForLines()
{
    if (!m_lines || !hasRecord())
        return;
    const int row = records().absolutePosition(), key = records().columnIndex(m_panel->field(keyField()).column);
    const qint64 head = records().keyAt(row);
    m_linesFrom.remove(head);
    if (records().isNew(row) || isHeadStored())
        return;
    const QString before = records().storedValueAt(row, key).toString().trimmed(),
                  now = records().valueAt(row, key).toString().trimmed();
    if (before.isEmpty() || before.compare(now, Qt::CaseInsensitive) == 0)
        return;
    run(Failure::Report, {[&] {
            const QString count = "select count(*) as n from " + plainTableOf(m_spec.lines.statement) + " where " +
                                  m_spec.lines.key + "='{before}'";
            const int lines = connection()->rows(count, {{"before", before}}).first()["n"].toInt();
            if (lines > 0 &&
                dialogs().ask(this,
                              QStringLiteral("编号由“%1”改为“%2”，原编号下有%3行%4。是否一并改到新编号？")
                                  .arg(before, now, QString::number(lines), m_lines->grid()->accessibleName()),
                              systemTitle(), OnEnter::Yes))
                m_linesFrom.insert(head, before);
        }});
}

bool RecordForm::store(const std::function<void()> &work)
{
    for (;;) {
        try {
            connection()->transaction(work);
            m_steps->forget();
            return true;
        } catch (const ConflictError &error) {
            if (!settle(error.conflict()))
                return false;
        }
    }
}

bool RecordForm::settle(Conflict conflict)
{
    const bool isLine = conflict.set != &records();
    if (isLine &&
        !m_lines->isOwn(conflict)) // another document's line, which was given the identity of one that is gone
        conflict.now.clear();
    ConflictQuestion question;
    question.kind = conflict.now.isEmpty()     ? ConflictQuestion::Gone
                    : conflict.typed.isEmpty() ? ConflictQuestion::Deleting
                                               : ConflictQuestion::Changed;
    const auto inWords = [&conflict](const QVariantList &row, qsizetype column) {
        return Recordset::text(row.value(column), conflict.kinds[column]);
    };
    question.record = m_spec.caption + u' ' + text(keyField()).trimmed();
    if (isLine && conflict.set->rowOfKey(conflict.key) >= 0)
        question.record += QStringLiteral("，第%1行").arg(conflict.set->rowOfKey(conflict.key) + 1);
    QVector<qsizetype> asked; // columns of the question's fields
    for (qsizetype i = 0; i < conflict.columns.size(); ++i) {
        const QString &column = conflict.columns[i];
        const ConflictField field{isLine ? m_lines->captionOf(column) : m_panel->captionOf(column),
                                  inWords(conflict.read, i), inWords(conflict.now, i), inWords(conflict.typed, i)};
        const bool changedThere = question.kind != ConflictQuestion::Gone && field.now != field.read;
        const bool changedHere = question.kind != ConflictQuestion::Deleting && field.typed != field.read;
        if (!changedThere && !changedHere)
            continue;
        asked.append(i);
        question.fields.append(field);
    }
    const std::optional<ConflictAnswer> answer = dialogs().conflict(this, question);
    if (!answer)
        return false;
    if (question.kind == ConflictQuestion::Deleting) {
        conflict.set->resolve(conflict, std::nullopt);
        return answer->first();
    }
    if (question.kind == ConflictQuestion::Gone) {
        const bool withLines = !isLine && m_lines && lines().isOpen();
        if (answer->first()) {
            conflict.set->resolve(conflict, conflict.typed);
            if (withLines)
                lines().renewGone(); // the lines went with the document
            return true;
        }
        if (withLines)
            lines().Close(); // lines of a document that is no more
        conflict.set->resolve(conflict, std::nullopt);
        return true;
    }
    QVariantList values = conflict.now;
    bool anyTyped = false;
    for (qsizetype i = 0; i < asked.size(); ++i)
        if (answer->value(i)) {
            values[asked[i]] = conflict.typed[asked[i]];
            anyTyped = true;
        }
    conflict.set->resolve(conflict, anyTyped ? std::optional(values) : std::nullopt);
    return true;
}

// What the database refuses, by record, line and column as the clerk knows them.
QString RecordForm::worded(const DataError &error)
{
    if (error.refusal() == Refusal::None || !error.set())
        return error.text();
    const bool isLine = error.set() != &records();
    QString place = m_spec.caption;
    if (!isLine && error.row() >= 0 && error.row() < records().RecordCount())
        place += u' ' + records()
                            .valueAt(error.row(), records().columnIndex(m_panel->field(keyField()).column))
                            .toString()
                            .trimmed();
    else
        place += u' ' + text(keyField()).trimmed();
    if (isLine && error.row() >= 0)
        place += QStringLiteral("，第%1行").arg(error.row() + 1);
    if (!error.column().isEmpty())
        place += QStringLiteral("“%1”").arg(isLine ? m_lines->captionOf(error.column())
                                                   : m_panel->captionOf(error.column()));
    switch (error.refusal()) {
    case Refusal::Duplicate:
        return place + QStringLiteral("：编号重复，数据库中已有同样的记录，请核对！");
    case Refusal::NotANumber: {
        const int column = error.set()->columnIndex(error.column());
        const bool isDate = column >= 0 && error.set()->columnKind(column) == ColumnKind::Date;
        return place + QStringLiteral("：") + (isDate ? badDate() : badNumber());
    }
    case Refusal::TooLong:
        return place + QStringLiteral("：内容过长，请核对！");
    case Refusal::Missing:
        return place + QStringLiteral("：不能为空，请核对！");
    default:
        return place + QStringLiteral("：") + error.text();
    }
}

// ---- Cancel and Delete ----

void RecordForm::cancel()
{
    if (m_lines)
        m_lines->hideLookup();
    run(Failure::Skip, {[this] {
                            if (m_spec.onCancel)
                                m_spec.onCancel(*this);
                        },
                        [this] {
                            if (m_adding && m_spec.cancelDropsLines)
                                dropLines();
                        },
                        [this] { lock(true); }, [this] { focusFirst(); }, [this] { setBusy(false); },
                        [this] {
                            // What Add began, wherever the clerk stands by now; a record that merely waits is not this
                            // Cancel's.
                            int row = m_added ? records().rowOfKey(m_added) : records().absolutePosition();
                            if (m_added && (row < 0 || !records().isNew(row)))
                                row = records().absolutePosition();
                            m_added = 0;
                            if (row < 0 || row >= records().RecordCount())
                                return;
                            m_linesFrom.remove(records().keyAt(row));
                            if (m_lines)
                                m_lines->drop(records().keyAt(row));
                            records().CancelUpdate(row);
                        },
                        [this] {
                            const int left = m_spec.cancelReturns && m_left ? records().rowOfKey(m_left) : -1;
                            m_left = 0;
                            left < 0 ? records().MoveFirst() : records().setAbsolutePosition(left);
                        },
                        [this] {
                            endAdding();
                            Q_EMIT addingEnded();
                            refill();
                        }});
    recordMoved();
}

void RecordForm::deleteRecord()
{
    if (!m_spec.deleteQuestion.isEmpty() && !dialogs().ask(this, m_spec.deleteQuestion, systemTitle(), OnEnter::No))
        return;
    bool back = false;
    run(Failure::Skip,
        {[&] {
             const int row = records().absolutePosition();
             const bool isThere = hasRecord(), isNew = isThere && records().isNew(row);
             const qint64 head = isThere ? records().keyAt(row) : 0;
             // Of a record whose number was typed over the lines of the stored one go, not those of the number's owner.
             const QVariant key =
                 isThere && !isNew
                     ? records().storedValueAt(row, records().columnIndex(m_panel->field(keyField()).column))
                     : QVariant(text(keyField()));
             const bool ownLines = m_lines && (!isNew || !isKeyTaken());
             back = !store([&] {
                 if (ownLines)
                     connection()->Execute(m_spec.lines.deletion, {{m_spec.lines.key, key.toString().trimmed()}});
                 if (records().RecordCount() > 0)
                     records().Delete();
             });
             if (!back && m_lines)
                 m_lines->drop(head);
         },
         [&] {
             if (!back)
                 stepAfterDelete();
         },
         [this] { refreshLines(); },
         [&] {
             if (back)
                 return;
             m_list->rebuildTree();
             refill();
         }});
    recordMoved();
}

void RecordForm::stepAfterDelete()
{
    const AfterDelete step = m_spec.afterDelete;
    const bool ranOff = records().EOF_();
    if (ranOff && step != AfterDelete::Next && !records().hasPendingChanges())
        m_primary.Refresh();
    if (records().RecordCount() == 0)
        return;
    if (step == AfterDelete::Last || (ranOff && step == AfterDelete::LastBehindLast)) {
        records().MoveLast();
        return;
    }
    records().MoveNext();
    if (records().EOF_())
        step == AfterDelete::Next ? records().MoveFirst() : records().MovePrevious();
}

} // namespace tradewick
