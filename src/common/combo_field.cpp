#include "common/combo_field.h"

#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStyleOptionFrame>
#include <QWheelEvent>

namespace tradewick
{

namespace
{

// Its ground shows that it is locked; a palette of its own would have to be made and handed on at each change.
class ComboLine : public QLineEdit
{
public:
    using QLineEdit::QLineEdit;

protected:
    void initStyleOption(QStyleOptionFrame *option) const override
    {
        QLineEdit::initStyleOption(option);
        if (!isReadOnly())
            return;
        if (const QPalette own = palette(); own.cacheKey() != m_madeOf) {
            m_locked = own;
            m_locked.setColor(QPalette::Base, own.color(QPalette::Window));
            m_madeOf = own.cacheKey();
        }
        option->palette = m_locked;
    }

private:
    mutable QPalette m_locked;
    mutable qint64 m_madeOf = 0;
};

} // namespace

ComboField::ComboField(QWidget *parent) : QComboBox(parent)
{
    setLineEdit(new ComboLine(this));
    setInsertPolicy(NoInsert);
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(8);
    completer()->setCompletionMode(QCompleter::PopupCompletion);
    completer()->setFilterMode(Qt::MatchContains);
    completer()->setCaseSensitivity(Qt::CaseInsensitive);
}

void ComboField::setReadOnly(bool readOnly)
{
    m_readOnly = readOnly;
    lineEdit()->setReadOnly(readOnly);
    update();
}

void ComboField::showPopup()
{
    if (!m_readOnly)
        QComboBox::showPopup();
}

void ComboField::keyPressEvent(QKeyEvent *event)
{
    const bool changes = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down || event->key() == Qt::Key_PageUp ||
                         event->key() == Qt::Key_PageDown;
    if (m_readOnly && changes)
        return;
    // Stepping through the items would change the value unseen, and pass over the first one.
    if (event->key() == Qt::Key_Down && !(event->modifiers() & ~Qt::KeypadModifier))
        showPopup();
    else
        QComboBox::keyPressEvent(event);
}

// A locked field has no list to open, and its arrow and its ground say so.
void ComboField::initStyleOption(QStyleOptionComboBox *option) const
{
    QComboBox::initStyleOption(option);
    if (!m_readOnly)
        return;
    option->state &= ~QStyle::State_Enabled;
    option->palette.setCurrentColorGroup(QPalette::Disabled);
    option->palette.setColor(QPalette::Base, palette().color(QPalette::Window));
}

// The wheel scrolls the form; a value must not change because the pointer passed.
void ComboField::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

} // namespace tradewick
