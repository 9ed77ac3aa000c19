// The sums of columns, below the lines that they belong to.
#pragma once

#include "common/column_footer.h"

class QBoxLayout;

namespace tradewick
{

// The columns of lines that are summed: quantities, packages, weights, volumes and amounts, by the names that all
// documents give them.
QStringList summedColumns(const QVector<GridColumn> &columns);

class LineTotals : public ColumnFooter
{
    Q_OBJECT

public:
    // grid: whose lines are summed, each summed column below its own cells; outlives the totals.
    LineTotals(Grid *grid, QWidget *parent);
    // Puts the totals below a grid that has columns to sum.
    static void addBelow(Grid *grid, QBoxLayout *layout);

    // The sum that stands below a column, empty for one that is not summed.
    QString text(const QString &column) override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void forget();
    void add();

    QStringList m_columns;
    bool m_isAdded = false; // the sums are those of the lines as they stand
};

} // namespace tradewick
