#include "common/date_field.h"

#include <QKeyEvent>
#include <QLineEdit>

namespace tradewick
{

DateField::DateField(const QDate &date, QWidget *parent) : QDateEdit(date, parent)
{
    setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    setCalendarPopup(true);
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
    if (event->reason() != Qt::MouseFocusReason && event->reason() != Qt::PopupFocusReason)
        setSelectedSection(YearSection);
}

// Digits over the whole date, or before it, would be dropped without a word, and the old date searched for.
void DateField::keyPressEvent(QKeyEvent *event)
{
    const bool isHome = event->key() == Qt::Key_Home && event->modifiers() == Qt::NoModifier;
    const bool isDigit = !event->text().isEmpty() && event->text().front().isDigit();
    if (isHome || (isDigit && lineEdit()->selectedText() == text()))
        setSelectedSection(YearSection);
    if (!isHome)
        QDateEdit::keyPressEvent(event);
}

} // namespace tradewick
