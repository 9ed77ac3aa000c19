#include "common/date_field.h"

#include <QCalendarWidget>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QSignalBlocker>

namespace tradewick
{

DateField::DateField(const QDate &date, QWidget *parent) : QDateEdit(date, parent)
{
    setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    setCalendarPopup(true);
}

void DateField::allowNone(const QString &words)
{
    setSpecialValueText(words); // stands in place of the first date that there is
    showNone();
    connect(this, &QDateEdit::dateChanged, this, [this] { m_hasBegun = false; });
    connect(this, &QDateEdit::editingFinished, this, [this] {
        if (!m_opensCalendar) // which takes the focus along
            take();
    });
    for (const auto picked : {&QCalendarWidget::clicked, &QCalendarWidget::activated})
        connect(calendarWidget(), picked, this, &DateField::take); // the same date stands there already
}

void DateField::showNone()
{
    const QSignalBlocker quiet(this);
    setDate(minimumDate());
    m_hasBegun = false;
}

void DateField::begin()
{
    if (!isNone())
        return;
    const QSignalBlocker quiet(this);
    setDate(QDate::currentDate());
    m_hasBegun = true;
}

void DateField::take()
{
    if (m_hasBegun)
        Q_EMIT dateChanged(date());
}

void DateField::mousePressEvent(QMouseEvent *event)
{
    const bool wasNone = isNone();
    const QScopedValueRollback opens(m_opensCalendar, true);
    begin(); // the calendar opens on the month of what stands here
    QDateEdit::mousePressEvent(event);
    if (wasNone && !calendarWidget()->isVisible()) // a click beside the arrow chooses nothing
        showNone();
}

void DateField::wheelEvent(QWheelEvent *event)
{
    if (isNone())
        event->ignore();
    else
        QDateEdit::wheelEvent(event);
}

// Qt's way stops at each part, but for the last one: twelve times in two ranges.
bool DateField::focusNextPrevChild(bool next)
{
    setCurrentSectionIndex(next ? sectionCount() - 1 : 0);
    return QDateEdit::focusNextPrevChild(next);
}

void DateField::focusInEvent(QFocusEvent *event)
{
    QDateEdit::focusInEvent(event);
    // The calendar was left without a choice, unless one is just being told.
    if (event->reason() == Qt::PopupFocusReason)
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (m_hasBegun)
                    showNone();
            },
            Qt::QueuedConnection);
    if (event->reason() != Qt::MouseFocusReason && event->reason() != Qt::PopupFocusReason)
        setSelectedSection(YearSection);
}

// Digits over the whole date, or before it, would be dropped without a word, and the old date searched for.
void DateField::keyPressEvent(QKeyEvent *event)
{
    const bool isStep = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down || event->key() == Qt::Key_PageUp ||
                        event->key() == Qt::Key_PageDown;
    const bool isTyped = !event->text().isEmpty() && event->text().front().isDigit();
    if (isNone() && (isStep || isTyped)) {
        begin();
        setSelectedSection(YearSection);
        if (isStep) {
            take();
            return;
        }
    }
    const bool isHome = event->key() == Qt::Key_Home && event->modifiers() == Qt::NoModifier;
    if (isHome || (isTyped && lineEdit()->selectedText() == text()))
        setSelectedSection(YearSection);
    if (!isHome)
        QDateEdit::keyPressEvent(event);
}

} // namespace tradewick
