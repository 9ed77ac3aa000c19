#include "common/line_totals.h"

#include "common/number_text.h"

#include <QBoxLayout>

#include <utility>

namespace tradewick
{

QStringList summedColumns(const QVector<GridColumn> &columns)
{
    static const QStringList summed{"sl", "jianshu", "zjz", "zmz", "hjtj", "je", "suie", "sjje"};
    QStringList found;
    for (const GridColumn &column : columns)
        if (summed.contains(column.column, Qt::CaseInsensitive))
            found.append(column.column);
    return found;
}

void LineTotals::addBelow(Grid *grid, QBoxLayout *layout)
{
    if (!summedColumns(grid->recordsetModel()->columns()).isEmpty())
        layout->addWidget(new LineTotals(grid, layout->parentWidget()));
}

LineTotals::LineTotals(Grid *grid, QWidget *parent)
    : ColumnFooter(grid, parent), m_columns(summedColumns(grid->recordsetModel()->columns()))
{
    setTitle(QStringLiteral("总计"));
    const QAbstractItemModel *model = grid->model();
    for (const auto change : {&QAbstractItemModel::rowsRemoved, &QAbstractItemModel::rowsInserted})
        connect(model, change, this, &LineTotals::forget);
    connect(model, &QAbstractItemModel::modelReset, this, &LineTotals::forget);
    connect(model, &QAbstractItemModel::dataChanged, this, &LineTotals::forget);
}

// One edit changes several cells; the lines are gone through once, when the sums are looked at.
void LineTotals::forget()
{
    m_isAdded = false;
    update();
}

QString LineTotals::text(const QString &column)
{
    add();
    return ColumnFooter::text(column);
}

void LineTotals::add()
{
    if (std::exchange(m_isAdded, true))
        return;
    const RecordsetModel &model = *grid()->recordsetModel();
    for (int i = 0; i < model.columnCount(); ++i) {
        const QString &column = model.columns()[i].column;
        if (!m_columns.contains(column))
            continue;
        double sum = 0;
        for (int row = 0; row < model.rowCount(); ++row)
            sum += numberFromText(model.index(row, i).data().toString());
        const QString text = numberText(sum);
        setText(column, text.startsWith(u'.') ? u'0' + text : text);
    }
}

void LineTotals::paintEvent(QPaintEvent *event)
{
    add();
    ColumnFooter::paintEvent(event);
}

} // namespace tradewick
