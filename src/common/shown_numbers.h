// How the numbers of a grid's columns are shown: all of a column with as many decimal places, so that they stand below
// each other. What is stored, typed, copied and printed is the number as it is.
#pragma once

#include "data/grid_column.h"

#include <QString>
#include <QVector>

namespace tradewick
{

// Amounts have two places; prices as many as the longest of the column that was met, four at most; all other numbers as
// many as the longest. Which column is what its caption tells.
class ShownNumbers
{
public:
    ShownNumbers() = default;
    explicit ShownNumbers(const QVector<GridColumn> &columns);

    // Counts the places of a number as it is stored; gives whether the column has more of them from now on.
    bool meet(int column, const QString &number);
    // The number as its column shows it; a text that is none as it is.
    QString shown(int column, const QString &number) const;
    // No number was met yet.
    void forget();

private:
    struct Places {
        int least, most;
        int now;
    };
    QVector<Places> m_columns;
};

} // namespace tradewick
