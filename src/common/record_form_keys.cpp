// The keyboard in a record form's fields, what is checked when a field is left, and when the window may close.
#include "common/dialogs.h"
#include "common/record_form.h"
#include "data/date_text.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QCompleter>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>

namespace tradewick
{

namespace
{

// "Text1(3)" is element 3 of the array "Text1".
QString arrayOf(const QString &name)
{
    return name.section(u'(', 0, 0);
}
int indexOf(const QString &name)
{
    return name.section(u'(', 1).chopped(1).toInt();
}

} // namespace

bool RecordForm::keyInField(QWidget *field, int key)
{
    const QString name = field->objectName();
    const auto *text = qobject_cast<QPlainTextEdit *>(field);
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        // While the list of what fits is open, the focus would move without a word to the field that is left.
        if (auto *combo = qobject_cast<QComboBox *>(field))
            combo->completer()->popup()->hide();
        focusNextChild();
        return true;
    }
    // A long text keeps the arrows until its first or last line.
    if (text && !text->textCursor().atStart() && key == Qt::Key_Up)
        return false;
    if (text && !text->textCursor().atEnd() && key == Qt::Key_Down)
        return false;
    if (qobject_cast<QComboBox *>(field))
        return key == Qt::Key_Up; // down opens its list
    if (!name.contains(u'('))
        return false;
    const QString array = arrayOf(name);
    int elements = 0;
    for (const QString &other : m_fields.keys())
        elements += arrayOf(other) == array ? 1 : 0;
    const int next = indexOf(name) + (key == Qt::Key_Down ? 1 : -1);
    if (!m_spec.arrowsWrap && (next < 0 || next == elements))
        return true;
    const int target = (next + elements) % elements;
    focusField(QStringLiteral("%1(%2)").arg(array).arg(target));
    return true;
}

void RecordForm::leftDateField(QWidget *field)
{
    const QString text = fieldText(field->objectName());
    if (!isBusy() || text.trimmed().isEmpty() || field->hasFocus() || m_buttons["Cmdcancel"]->hasFocus())
        return;
    if (const QDate date = dateFromText(text); date.isValid()) {
        if (dateText(date) != text)
            setFieldText(field->objectName(), dateText(date));
        return;
    }
    dialogs().message(this, QStringLiteral("日期输入有误，请重新核对！"), QStringLiteral("系统提示"),
                      MessageIcon::Critical);
    focusField(field->objectName());
}

bool RecordForm::eventFilter(QObject *watched, QEvent *event)
{
    auto *widget = qobject_cast<QWidget *>(watched);
    QWidget *field = m_fields.value(watched->objectName());
    if (!field && widget && widget->parentWidget())
        field = m_fields.value(widget->parentWidget()->objectName()); // the line of a combo box
    if (auto *popup = qobject_cast<QAbstractItemView *>(watched); popup && event->type() == QEvent::KeyPress) {
        QWidget *combo = m_fields.value(popup->property("comboField").toString());
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (combo && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
            if (!popup->currentIndex().isValid())
                return keyInField(combo, key);
            // The completer takes the item, then Enter goes on as everywhere.
            QMetaObject::invokeMethod(
                this, [this] { focusNextChild(); }, Qt::QueuedConnection);
        }
    }
    if (event->type() == QEvent::InputMethod)
        m_composing = !static_cast<QInputMethodEvent *>(event)->preeditString().isEmpty();
    if (m_pickerGrid && watched == m_pickerGrid && event->type() == QEvent::Show)
        // The lines have made room for it; the cell that is typed into stays in sight.
        QMetaObject::invokeMethod(
            this, [this] { m_bodyGrid->scrollTo(m_bodyGrid->currentIndex()); }, Qt::QueuedConnection);
    if (m_pickerGrid && watched == m_pickerGrid && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
        hidePicker();
        m_bodyGrid->setFocus();
        return true;
    }
    if (field && event->type() == QEvent::KeyPress && !m_composing) {
        const auto *key = static_cast<QKeyEvent *>(event);
        const bool plain = key->modifiers() == Qt::NoModifier || key->modifiers() == Qt::KeypadModifier;
        const bool ours = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter || key->key() == Qt::Key_Up ||
                          key->key() == Qt::Key_Down;
        if (plain && ours && keyInField(field, key->key()))
            return true;
    }
    if (field && event->type() == QEvent::FocusIn)
        findChild<QScrollArea *>()->ensureWidgetVisible(field);
    if (field && event->type() == QEvent::FocusOut) {
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        const bool left = reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason;
        const QString name = field->objectName();
        if (auto *combo = qobject_cast<QComboBox *>(field); combo && left && isBusy()) {
            // A code typed in full counts as chosen, as from the list.
            const QString text = combo->currentText();
            const int item = combo->findText(text, Qt::MatchFixedString);
            if (item >= 0 && m_chosen.value(name) != text) {
                combo->setCurrentIndex(item);
                m_chosen[name] = combo->currentText();
                comboChosen(name);
            }
        } else if (left && field->property("isDate").toBool()) {
            // After the focus has moved on; a message from inside the event would take the new focus with it.
            QMetaObject::invokeMethod(
                this, [this, field] { leftDateField(field); }, Qt::QueuedConnection);
        } else if (left && m_spec.unique.statement && name == m_spec.fields.first().name) {
            QMetaObject::invokeMethod(this, &RecordForm::leftKeyField, Qt::QueuedConnection);
        }
    }
    return QWidget::eventFilter(watched, event);
}

void RecordForm::closeEvent(QCloseEvent *event)
{
    if (isBusy()) {
        QApplication::beep();
        event->ignore();
    } else {
        event->accept();
    }
}

// ---- a key that must be new ----

bool RecordForm::keyIsTaken()
{
    const QString key = fieldText(m_spec.fields.first().name);
    return !key.isEmpty() && !Connection::shared(m_primary.ConnectionString)
                                  ->rows(QString::fromUtf8(m_spec.unique.statement), {{"key", key}})
                                  .isEmpty();
}

void RecordForm::checkKey()
{
    if (!m_adding || !m_spec.unique.statement)
        return;
    run(Failure::Report, {[this] {
            if (!keyIsTaken())
                return;
            dialogs().message(this, m_spec.unique.message, QStringLiteral("系统提示"), MessageIcon::Critical);
            setFieldText(m_spec.fields.first().name, {});
        }});
}

void RecordForm::leftKeyField()
{
    if (!m_fields[m_spec.fields.first().name]->hasFocus() && !m_buttons["Cmdcancel"]->hasFocus())
        checkKey();
}

} // namespace tradewick
