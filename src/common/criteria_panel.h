// The criteria of a query screen: its dates and boxes, in their frames.
#pragma once

#include "common/query_spec.h"

#include <QDate>
#include <QHash>
#include <QWidget>

class QBoxLayout;
class QLayout;
class QLineEdit;

namespace tradewick
{

class ComboField;
class DateField;

class CriteriaPanel : public QWidget
{
    Q_OBJECT

public:
    // spec: outlives the panel.
    CriteriaPanel(const QuerySpec &spec, QWidget *parent);

    // What stands in all of them by the controls' names: dates in the one form, texts.
    Values values() const;
    // Whether the second range of dates is in force.
    bool isWithin() const;
    // Whether one of the ranges, or the first, begins behind its end.
    bool isReversed(bool anyRange) const;

    // These end the program for a box that is not there: a fault of the declaration.
    QString text(const QString &name) const;
    void empty(const QString &name);
    void emptyAll();
    void offer(const QString &name, const QStringList &items);

    // To the first of them.
    void takeFocus();

    // Where further controls of a frame stand.
    QLayout *frame(const QString &caption);

Q_SIGNALS:
    void typed(const QString &name);  // the user changed the text of a box
    void chosen(const QString &name); // an item of a box

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void addDates(const DateRange &range);
    DateField *addDate(const QString &name, const QString &caption, const QString &spoken, const QDate &date);
    void addBox(const Criterion &criterion);
    QLineEdit *box(const QString &name) const;

    const QuerySpec &m_spec;
    QHash<QString, QLayout *> m_frames; // by caption
    QHash<QString, DateField *> m_dates;
    QHash<QString, QLineEdit *> m_boxes; // those of combo boxes among them
    QHash<QString, ComboField *> m_combos;
};

} // namespace tradewick
