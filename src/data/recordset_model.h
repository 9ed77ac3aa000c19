// The one item model through which grids and lists show a record set.
#pragma once

#include "data/recordset.h"

#include <QAbstractTableModel>

namespace tradewick
{

struct GridColumn {
    QString column; // of the record set; a name it lacks shows nothing
    QString caption;
};

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

    const QVector<GridColumn> &columns() const { return m_columns; }

Q_SIGNALS:
    // A cell was typed into; the value stands in the record set already.
    void cellEdited(int row, const QString &column);

private:
    int sourceColumn(int section) const;

    Recordset &m_recordset;
    QVector<GridColumn> m_columns;
    mutable QVector<int> m_sourceColumns; // resolved per opening of the record set
    bool m_editable = false;
    std::function<void()> m_newRow;
};

} // namespace tradewick
