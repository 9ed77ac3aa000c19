// The sums of columns, below the lines that they belong to.
#pragma once

#include "common/grid.h"

#include <QWidget>

namespace tradewick
{

class LineTotals : public QWidget
{
    Q_OBJECT

public:
    // grid: whose lines are summed, each column named there below its own cells; outlives the totals.
    LineTotals(Grid *grid, const QStringList &columns, QWidget *parent);

    // The sum that stands below a column, empty for one that is not summed.
    Q_INVOKABLE QString text(const QString &column);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void change();
    void add();

    Grid *m_grid;
    QStringList m_columns;
    QHash<QString, QString> m_sums;
    bool m_changed = true; // since they were added last
};

} // namespace tradewick
