#include "common/record_form.h"

#include "common/dialogs.h"
#include "common/globals.h"
#include "common/numbering.h"
#include "data/date_text.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QCompleter>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTabWidget>
#include <QTimer>

namespace tradewick
{

RecordForm::RecordForm(const RecordFormSpec &spec, QWidget *mainWindow) : QWidget(mainWindow, Qt::Window), m_spec(spec)
{
    setObjectName(spec.name);
    setWindowTitle(spec.caption);
    m_primary.setObjectName(spec.control);
    for (DataControl *control : {&m_primary, &m_body, &m_pickerRows})
        control->ConnectionString = gConnStr;
    build();
    setBusy(false);
    lockFields(true);
    connect(&records(), &Recordset::currentChanged, this, &RecordForm::recordMoved);
    connect(&records(), &Recordset::valueChanged, this, [this](int row, int column) {
        if (row >= 0 && column >= 0 && row != records().absolutePosition())
            return;
        for (const FieldSpec &field : std::as_const(m_spec.fields))
            if (column < 0 || records().columnIndex(field.column) == column)
                showField(field);
    });
    load();
    if (m_list)
        m_list->setFocus();
}

RecordForm::~RecordForm()
{
    // The grids look into the record sets, which end before the child widgets do.
    delete m_list;
    delete m_bodyGrid;
    delete m_pickerGrid;
}

bool RecordForm::isBusy() const
{
    return m_busy;
}

void RecordForm::load()
{
    for (const FieldSpec &field : std::as_const(m_spec.fields))
        if (field.list)
            fillCombo(field.name, field.list);
    m_primary.setRecordSource(m_spec.statement);
    m_primary.Refresh();
    rebuildTree();
}

bool RecordForm::run(Failure failure, std::initializer_list<std::function<void()>> steps)
{
    for (const auto &step : steps) {
        try {
            step();
            if (tellLost())
                return false;
        } catch (const DataError &error) {
            m_lost.clear();
            const bool lost = error.number() == DataError::connectionLost;
            if (failure == Failure::Skip && !lost)
                continue;
            if (failure == Failure::None && !lost)
                throw;
            dialogs().message(this, error.text(), {}, MessageIcon::None);
            return !lost;
        }
    }
    return true;
}

// ---- fields and the record ----

// The record set is in the middle of a move and must not be left there by a lost connection: that is told afterwards,
// by the handler that is running, or else soon.
void RecordForm::recordMoved()
{
    try {
        showRecord();
    } catch (const DataError &error) {
        if (error.number() != DataError::connectionLost)
            throw;
        m_lost = error.text();
        QTimer::singleShot(0, this, &RecordForm::tellLost);
    }
}

bool RecordForm::tellLost()
{
    if (m_lost.isEmpty())
        return false;
    const QString text = m_lost;
    m_lost.clear();
    dialogs().message(this, text, {}, MessageIcon::None);
    return true;
}

QString RecordForm::fieldText(const QString &name) const
{
    QWidget *widget = m_fields.value(name);
    if (auto *line = qobject_cast<QLineEdit *>(widget))
        return line->text();
    if (auto *text = qobject_cast<QPlainTextEdit *>(widget))
        return text->toPlainText();
    if (auto *combo = qobject_cast<QComboBox *>(widget))
        return combo->currentText();
    auto *check = qobject_cast<QCheckBox *>(widget);
    return check ? Recordset::text(check->isChecked(), ColumnKind::Flag) : QString();
}

void RecordForm::setFieldText(const QString &name, const QString &text)
{
    for (const FieldSpec &field : std::as_const(m_spec.fields))
        if (field.name == name)
            fieldTyped(field, text);
}

void RecordForm::showField(const FieldSpec &field)
{
    const QScopedValueRollback showing(m_showing, true);
    const bool hasValue = hasRecord() && !m_isUnread && records().columnIndex(field.column) >= 0;
    const QString text = hasValue ? records().Fields(field.column).text() : QString();
    if (text == fieldText(field.name))
        return;
    QWidget *widget = m_fields.value(field.name);
    if (auto *line = qobject_cast<QLineEdit *>(widget)) {
        line->setText(text);
        line->setCursorPosition(0);
    } else if (auto *edit = qobject_cast<QPlainTextEdit *>(widget)) {
        edit->setPlainText(text);
    } else if (auto *combo = qobject_cast<QComboBox *>(widget)) {
        combo->setEditText(text);
        combo->lineEdit()->setCursorPosition(0);
    } else if (auto *check = qobject_cast<QCheckBox *>(widget)) {
        check->setChecked(text == Recordset::text(true, ColumnKind::Flag));
    }
    m_chosen[field.name] = text;
}

bool RecordForm::hasRecord()
{
    return !records().BOF() && !records().EOF_();
}

void RecordForm::showRecord()
{
    const auto show = [this] {
        for (const FieldSpec &field : std::as_const(m_spec.fields))
            showField(field);
    };
    m_isUnread = false;
    try {
        if (hasRecord())
            records().valueAt(records().absolutePosition(), 0);
    } catch (const DataError &) {
        m_isUnread = true; // no field of another record stays beside those of this one
        show();
        throw;
    }
    show();
    keyChanged(false);
}

void RecordForm::fieldTyped(const FieldSpec &field, const QVariant &value)
{
    if (m_showing || records().BOF() || records().EOF_())
        return;
    records().Fields(field.column).setValue(value);
    if (field.name == m_spec.fields.first().name)
        keyChanged(true);
}

void RecordForm::fillCombo(const QString &name, const char *statement)
{
    fillList(qobject_cast<QComboBox *>(m_fields.value(name)), statement, false);
}

// Shows the first column of the rows, or all of them joined; what is taken over is the first.
void RecordForm::fillList(QComboBox *combo, const char *statement, bool wholeRows)
{
    const QScopedValueRollback showing(m_showing, true);
    const QString text = combo->currentText();
    combo->clear();
    Connection::shared(m_primary.ConnectionString)
        ->read(
            QString::fromUtf8(statement), {}, [](const QStringList &) {},
            [combo, wholeRows](const QVariantList &row) {
                QString item = row.first().toString();
                for (qsizetype i = 1; wholeRows && i < row.size(); ++i)
                    item += u'|' + row[i].toString();
                combo->addItem(item, row.first());
                return true;
            });
    combo->setEditText(text);
}

void RecordForm::focusField(const QString &name)
{
    for (const FieldSpec &field : std::as_const(m_spec.fields))
        if (field.name == name && m_tabs)
            m_tabs->setCurrentIndex(field.page);
    QWidget *widget = m_fields.value(name);
    widget->setFocus(Qt::TabFocusReason);
    if (auto *line = qobject_cast<QLineEdit *>(widget))
        line->selectAll();
}

void RecordForm::focusFirstField()
{
    focusField(m_spec.fields.first().name);
}

void RecordForm::lockFields(bool locked)
{
    for (const FieldSpec &field : std::as_const(m_spec.fields))
        lockField(field.name, locked);
}

void RecordForm::lockField(const QString &name, bool locked)
{
    QWidget *widget = m_fields.value(name);
    if (qobject_cast<QCheckBox *>(widget))
        widget->setEnabled(!locked);
    else if (auto *line = qobject_cast<QLineEdit *>(widget))
        line->setReadOnly(locked);
    else
        widget->setProperty("readOnly", locked);
}

// ---- the lines of a document ----

void RecordForm::keyChanged(bool typedOver)
{
    if (!m_spec.body.statement)
        return;
    const QString key = fieldText(m_spec.fields.first().name);
    if (key == m_bodyKey && body().isOpen())
        return;
    m_bodyKey = key;
    if (typedOver && body().isOpen() && body().hasPendingChanges()) {
        // The number is typed over: lines not stored yet go along with it, nothing typed is dropped. Lines typed over
        // those of a stored document, whose number a new one had by mistake, are the new one's own.
        const int column = body().columnIndex(m_spec.body.key);
        if (records().isNew(records().absolutePosition())) {
            body().takeOver(column, key);
            return;
        }
        for (int row = 0; row < body().RecordCount(); ++row)
            if (body().isNew(row))
                body().setValueAt(row, column, key);
        return;
    }
    refreshBody();
}

void RecordForm::refreshBody()
{
    if (!m_spec.body.statement)
        return;
    m_body.setRecordSource(m_spec.body.statement, {{m_spec.body.key, m_bodyKey}});
    m_body.Refresh();
}

void RecordForm::startBodyRow()
{
    body().AddNew();
    body().Fields(m_spec.body.key).setValue(m_bodyKey);
    bodyRowStarted();
}

void RecordForm::deleteBodyRow()
{
    if (!isBusy() || body().RecordCount() == 0 || m_bodyGrid->currentIndex().row() >= body().RecordCount())
        return;
    run(Failure::Report, {[this] {
            const bool deleted = store([this] {
                body().Delete();
                body().UpdateBatch();
            });
            if (deleted)
                refreshBody();
        }});
}

void RecordForm::openPicker(const char *statement, const Values &values)
{
    m_pickerRows.setRecordSource(statement, values);
    run(Failure::Report, {[this] { m_pickerRows.Refresh(); }});
    showPicker();
}

void RecordForm::showPicker()
{
    m_pickerGrid->show();
}

void RecordForm::hidePicker()
{
    if (m_pickerGrid && !m_pickerGrid->isHidden())
        m_pickerGrid->hide();
}

// ---- navigation ----

void RecordForm::first()
{
    run(m_spec.failures.ends, {[this] {
            if (records().RecordCount() > 0)
                records().BOF() ? records().MoveNext() : records().MoveFirst();
        }});
}

void RecordForm::last()
{
    run(m_spec.failures.ends, {[this] {
            if (records().RecordCount() > 0)
                records().EOF_() ? records().MovePrevious() : records().MoveLast();
        }});
}

void RecordForm::next()
{
    run(m_spec.failures.next, {[this] {
                                   if (!records().EOF_())
                                       records().MoveNext();
                               },
                               [this] {
                                   if (records().EOF_() && records().RecordCount() > 0) {
                                       QApplication::beep();
                                       records().MoveLast();
                                   }
                               }});
}

void RecordForm::previous()
{
    run(m_spec.failures.previous, {[this] {
                                       if (!records().BOF())
                                           records().MovePrevious();
                                   },
                                   [this] {
                                       if (records().BOF() && records().RecordCount() > 0) {
                                           QApplication::beep();
                                           records().MoveFirst();
                                       }
                                   }});
}

// ---- add, edit, save, cancel, delete ----

QString RecordForm::proposedKey()
{
    return proposeNumber(m_spec.numberedAs, *Connection::shared(m_primary.ConnectionString), QDate::currentDate());
}

void RecordForm::add()
{
    QString number;
    const bool reached =
        run(m_spec.failures.add,
            {[this] {
                 m_adding = true;
                 setBusy(true, true);
             },
             [&] { number = proposedKey(); },
             [this] {
                 if (records().RecordCount() > 0)
                     records().MoveLast();
             },
             [this] { records().AddNew(); }, [this] { lockFields(false); }, [this] { focusFirstField(); },
             [&] {
                 if (!number.isEmpty())
                     setFieldText(m_spec.fields.first().name, number);
                 // Lines under a number just proposed are another desktop's, which was faster.
                 for (int tries = 0; tries < 10 && !number.isEmpty() && body().RecordCount() > 0; ++tries) {
                     number = proposedKey();
                     setFieldText(m_spec.fields.first().name, number);
                 }
                 for (const DefaultSpec &box : std::as_const(m_spec.tree.defaults))
                     if (const QString text = defaultValue(box); !text.isEmpty())
                         setFieldText(box.field, text);
                 afterAdd();
             }});
    if (reached)
        return;
    // Without the server there is neither a number nor a record to type into.
    m_adding = false;
    setBusy(false);
    lockFields(true);
    if (hasRecord() && records().isNew(records().absolutePosition()))
        records().CancelUpdate();
    m_lost.clear(); // told already
}

void RecordForm::edit()
{
    if (records().BOF() || records().EOF_()) {
        QApplication::beep();
        return;
    }
    run(m_spec.failures.edit, {[this] {
                                   if (m_isUnread || (m_spec.body.statement && !body().isOpen()))
                                       showRecord();
                                   setBusy(true);
                               },
                               [this] { lockFields(false); }, [this] { focusFirstField(); }});
}

bool RecordForm::hasBadDate()
{
    for (const FieldSpec &field : std::as_const(m_spec.fields)) {
        if (field.kind != FieldKind::Date)
            continue;
        const QString text = fieldText(field.name);
        if (text.trimmed().isEmpty() || dateFromText(text).isValid())
            continue;
        dialogs().message(this, QStringLiteral("日期输入有误，请重新核对！"), QStringLiteral("系统提示"),
                          MessageIcon::Critical);
        focusField(field.name);
        return true;
    }
    return false;
}

bool RecordForm::missesRequiredField()
{
    for (const RequiredField &field : std::as_const(m_spec.required)) {
        const qsizetype length = fieldText(field.name).size();
        if (field.length ? length == field.length : length > 0)
            continue;
        if (!field.message.isEmpty()) {
            dialogs().message(this, field.message, m_spec.requiredTitle, MessageIcon::Exclamation);
            focusFirstField();
        }
        return true;
    }
    return false;
}

void RecordForm::fillBlanks()
{
    for (const EmptyField &field : std::as_const(m_spec.whenEmpty))
        if (fieldText(field.name).isEmpty())
            setFieldText(field.name, field.stored);
}

void RecordForm::save()
{
    const bool isDocument = m_spec.body.statement != nullptr;
    if (hasBadDate())
        return;
    checkKey();
    const bool adding = m_adding;
    m_adding = false;
    hidePicker();
    if (isDocument)
        m_bodyGrid->setEditing(false);
    saving();
    if (missesRequiredField())
        return;
    fillBlanks();
    bool isStored = true;
    const auto write = [this, isDocument] {
        return store([this, isDocument] {
            records().UpdateBatch();
            if (isDocument && body().hasPendingChanges()) {
                records().requireCurrent();
                body().UpdateBatch();
            }
            stored();
        });
    };
    run(m_spec.failures.ok, {[this] { lockFields(true); }, [this] { focusFirstField(); }, [this] { setBusy(false); },
                             [&] {
                                 // Whoever goes back, or lost the server, goes on with what was typed.
                                 const auto back = [&] {
                                     isStored = false;
                                     m_adding = adding;
                                     setBusy(true, adding);
                                     lockFields(false);
                                 };
                                 try {
                                     if (!write())
                                         back();
                                 } catch (const DataError &error) {
                                     if (error.number() == DataError::connectionLost)
                                         back();
                                     throw;
                                 }
                             },
                             [&] { // what is stored is shown, as the database keeps it
                                 if (!isStored || (isDocument && body().hasPendingChanges()))
                                     return; // refused lines wait; reading would drop them
                                 if (isDocument && records().EOF_())
                                     records().MovePrevious();
                                 else if (!records().BOF()) {
                                     records().Resync();
                                     refreshBody();
                                 }
                             },
                             [&] {
                                 if (isStored)
                                     finish(Change::Saved);
                             }});
}

void RecordForm::cancel()
{
    hidePicker();
    run(m_spec.failures.deleteAndCancel,
        {[this] { cancelling(); }, [this] { lockFields(true); }, [this] { focusFirstField(); },
         [this] { setBusy(false); }, [this] { records().CancelUpdate(); }, [this] { records().MoveFirst(); },
         [this] { refreshBody(); },
         [this] {
             m_adding = false;
             finish(Change::Cancelled);
         }});
    recordMoved();
}

void RecordForm::deleteRecord()
{
    if (!dialogs().ask(this, QStringLiteral("是否真的删除当前记录 ？"), QStringLiteral("系统提示"), Preset::No))
        return;
    const bool isDocument = m_spec.body.statement != nullptr;
    bool back = false;
    run(m_spec.failures.deleteAndCancel,
        {[&] {
             back = !store([this, isDocument] {
                 if (isDocument) {
                     const auto connection = Connection::shared(m_primary.ConnectionString);
                     connection->Execute(m_spec.body.deletion,
                                         {{m_spec.body.key, fieldText(m_spec.fields.first().name).trimmed()}});
                     body().UpdateBatch();
                 }
                 if (records().RecordCount() > 0)
                     records().Delete();
             });
         },
         [&] {
             if (back)
                 return;
             if (!records().EOF_() || !isDocument) {
                 records().MoveNext();
                 if (records().EOF_())
                     records().MoveFirst();
                 return;
             }
             m_primary.Refresh();
             if (records().RecordCount() > 0)
                 records().MoveLast();
         },
         [this] { refreshBody(); },
         [&] {
             if (!back)
                 finish(Change::Deleted);
         }});
    recordMoved();
}

void RecordForm::finish(Change what)
{
    if (what != Change::Cancelled)
        rebuildTree();
    recordsChanged(what);
}

} // namespace tradewick
