// The control of one field, by its kind: what a field panel asks of all of them alike.
#pragma once

#include "common/record_form_spec.h"
#include "common/window_keys.h"

#include <QVariant>
#include <QWidget>

#include <functional>
#include <memory>

class QPlainTextEdit;

namespace tradewick
{

class ComboField;

class FieldControl
{
public:
    // Makes the control of a field, unlocked; it bears the field's name.
    //   typed: called with each change of what stands there, whoever makes it.
    static std::unique_ptr<FieldControl> make(const FieldSpec &field, const PictureSpec &picture, QWidget *parent,
                                              const std::function<void(const QVariant &value)> &typed);
    virtual ~FieldControl() = default;
    // Locks a long text, or unlocks it, and gives it the ground that shows it at once.
    static void lock(QPlainTextEdit &edit, bool locked);

    // What has the focus, and what is laid out: the same but for a picture.
    QWidget *widget() const { return m_widget; }
    virtual QWidget *frame() const { return m_widget; }
    virtual QString text() const = 0;
    // Shows a text, as it stands; nobody chose it.
    virtual void setText(const QString &text) = 0;
    virtual void setLocked(bool locked) = 0;
    virtual void selectAll() {}
    virtual bool canUndo() const { return false; } // what is typed there can be taken back there
    // Keys that only such a control takes, as it stands.
    virtual QVector<KeyText> keys() const { return {}; }
    virtual ComboField *combo() const { return nullptr; }

protected:
    explicit FieldControl(QWidget *widget) : m_widget(widget) {}

private:
    QWidget *m_widget; // belongs to its parent
};

} // namespace tradewick
