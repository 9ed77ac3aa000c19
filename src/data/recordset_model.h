// The one item model through which grids and lists show a record set: in its own order or sorted by a column, which
// the record set itself knows nothing of.
#pragma once

#include "data/grid_column.h"
#include "data/recordset.h"

#include <QAbstractTableModel>

namespace tradewick
{

class RecordsetModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    // recordset: outlives the model.
    RecordsetModel(Recordset &recordset, QVector<GridColumn> columns, QObject *parent = nullptr);

    // Whether cells can be typed into. With newRow there is an empty row behind the last; a value typed there calls
    // newRow, which adds the record that the value then goes into.
    void setEditable(bool editable, std::function<void()> newRow = {});

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    // Rows with the same value stay in the record set's order; column -1 gives that order back. Holds for what the
    // record set shows later, too; a record added meanwhile stands last until it is stored.
    void sort(int column, Qt::SortOrder order) override;
    // Rows that bear a mark beside them, asked for by record.
    void setMark(std::function<bool(int record)> mark) { m_mark = std::move(mark); }
    // Cells that bear a mark, asked for by record and column of the set: what is to be said of one, else nothing. It is
    // the cell's tool tip.
    void setCellMark(std::function<QString(int record, int column)> mark) { m_cellMark = std::move(mark); }
    // Rows whose column holds the value, regardless of case and blanks at the end, stand before all others from the
    // next opening on; for sets that nobody adds to.
    void setFirst(const QString &column, const QString &value);
    // As a view asks for what is typed on the keyboard; the column is read in one statement.
    QModelIndexList match(const QModelIndex &start, int role, const QVariant &value, int hits,
                          Qt::MatchFlags flags) const override;

    int recordCount() const { return m_recordset.RecordCount(); }
    // Where a row stands in the record set, and where a record stands among the rows.
    int recordAt(int row) const { return m_records.value(row, row); }
    int rowOf(int record) const { return m_rows.value(record, record); }

    const QVector<GridColumn> &columns() const { return m_columns; }

Q_SIGNALS:
    // A cell was typed into; the value stands in the record set already.
    void cellEdited(int row, const QString &column);
    // A column could not be read to sort by it; the rows stand in the record set's order.
    void sortingFailed(const QString &error);

private:
    int sourceColumn(int section) const;
    bool isSorted() const { return m_sortColumn >= 0; }
    void arrange();
    void setRecords(const QVector<int> &records);
    void rearrange();

    Recordset &m_recordset;
    QVector<GridColumn> m_columns;
    mutable QVector<int> m_sourceColumns; // resolved per opening of the record set
    int m_sortColumn = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    QString m_firstColumn, m_firstValue;
    QVector<int> m_records, m_rows; // record of each row and row of each record; both empty while they are the same
    std::function<bool(int record)> m_mark;
    std::function<QString(int record, int column)> m_cellMark;
    bool m_editable = false;
    std::function<void()> m_newRow;
};

} // namespace tradewick
