// The sums of columns, below the lines that they belong to.
#pragma once

#include "common/column_footer.h"

namespace tradewick
{

class LineTotals : public ColumnFooter
{
    Q_OBJECT

public:
    // grid: whose lines are summed, each column named there below its own cells; outlives the totals.
    LineTotals(Grid *grid, const QStringList &columns, QWidget *parent);

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
