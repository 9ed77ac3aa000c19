// A date that is always one, picked or typed: the criteria of a query, the filter of a list.
#pragma once

#include <QDateEdit>

namespace tradewick
{

// Typed from its year on, however it was entered; the arrows go from part to part, Tab to the next control.
class DateField : public QDateEdit
{
public:
    DateField(const QDate &date, QWidget *parent);

protected:
    bool focusNextPrevChild(bool next) override;
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
};

} // namespace tradewick
