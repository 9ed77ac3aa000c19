// A date, picked or typed: the criteria of a query, which always are one, and the filter of a list, which may be none.
#pragma once

#include <QDateEdit>

namespace tradewick
{

// Typed from its year on, however it was entered; the arrows go from part to part, Tab to the next control.
class DateField : public QDateEdit
{
public:
    DateField(const QDate &date, QWidget *parent);

    // Shows words instead of a date, and so it does whenever showNone is called: nobody has chosen one. Typing, an
    // arrow or the calendar begin with today; dateChanged tells of the date that is chosen then, today's as well.
    void allowNone(const QString &words);
    void showNone();

protected:
    bool focusNextPrevChild(bool next) override;
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    bool isNone() const { return !specialValueText().isEmpty() && date() == minimumDate(); }
    void begin();
    void take();

    bool m_opensCalendar = false;
    bool m_hasBegun = false; // a date stands there that nobody was told of
};

} // namespace tradewick
