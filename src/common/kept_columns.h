// The columns of one grid as the user has drawn them.
#pragma once

#include "common/grid.h"

#include <QObject>

namespace tradewick
{

// Gives a grid back the columns that were kept, and keeps what is done to them from then on: a width that was drawn,
// the order of a list's columns. A double click on the edge of a column gives it the width of what it holds again, from
// then on as well. Where a column that was kept is gone, the others keep what they have.
class KeptColumns : public QObject
{
    Q_OBJECT

public:
    // key: of the settings, under which no other grid's columns stand. A part of the grid.
    KeptColumns(const QString &key, Grid &grid);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void takeBack();
    void keepWidths(const QVector<int> &before);
    void keepOrder();
    QVector<int> widths() const;

    const QString m_key;
    Grid &m_grid;
    QVector<int> m_pressed; // the widths when the mouse was pressed
};

} // namespace tradewick
