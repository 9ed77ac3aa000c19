#include "data/recordset_model.h"

namespace tradewick
{

RecordsetModel::RecordsetModel(Recordset &recordset, QVector<GridColumn> columns, QObject *parent)
    : QAbstractTableModel(parent), m_recordset(recordset), m_columns(std::move(columns))
{
    connect(&recordset, &Recordset::aboutToReset, this, [this] { beginResetModel(); });
    connect(&recordset, &Recordset::reset, this, [this] {
        m_sourceColumns.clear();
        endResetModel();
    });
    // A record added while the empty row is there takes that row's place, and a further empty row follows: the cursor
    // stays where it is.
    connect(&recordset, &Recordset::rowAboutToBeInserted, this, [this](int row) {
        const int at = row + (m_newRow ? 1 : 0);
        beginInsertRows({}, at, at);
    });
    connect(&recordset, &Recordset::rowInserted, this, [this] { endInsertRows(); });
    connect(&recordset, &Recordset::rowAboutToBeRemoved, this, [this](int row) { beginRemoveRows({}, row, row); });
    connect(&recordset, &Recordset::rowRemoved, this, [this] { endRemoveRows(); });
    connect(&recordset, &Recordset::valueChanged, this, [this](int row) {
        const int first = row < 0 ? 0 : row, last = row < 0 ? rowCount() - 1 : row;
        if (last >= first)
            Q_EMIT dataChanged(index(first, 0), index(last, columnCount() - 1));
    });
}

void RecordsetModel::setEditable(bool editable, std::function<void()> newRow)
{
    m_editable = editable;
    const int end = m_recordset.RecordCount();
    if (newRow && !m_newRow) {
        beginInsertRows({}, end, end);
        m_newRow = std::move(newRow);
        endInsertRows();
    } else if (!newRow && m_newRow) {
        beginRemoveRows({}, end, end);
        m_newRow = {};
        endRemoveRows();
    }
}

int RecordsetModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_recordset.RecordCount() + (m_newRow ? 1 : 0);
}

int RecordsetModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

int RecordsetModel::sourceColumn(int section) const
{
    if (m_sourceColumns.size() != m_columns.size()) {
        m_sourceColumns.clear();
        for (const GridColumn &column : m_columns)
            m_sourceColumns.append(m_recordset.columnIndex(column.column));
    }
    return m_sourceColumns[section];
}

QVariant RecordsetModel::data(const QModelIndex &index, int role) const
{
    const int source = index.isValid() ? sourceColumn(index.column()) : -1;
    if (source < 0)
        return {};
    const bool display = role == Qt::DisplayRole || role == Qt::EditRole;
    const ColumnKind kind = m_recordset.columnKind(source);
    if ((!display && role != Qt::TextAlignmentRole) || index.row() >= m_recordset.RecordCount())
        return {};
    try {
        const QVariant value = m_recordset.valueAt(index.row(), source);
        if (display)
            return Recordset::text(value, kind);
        // Columns that were calculated have no kind; their values tell.
        const bool number = kind == ColumnKind::Number || value.typeId() == QMetaType::Double;
        return static_cast<int>((number ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    } catch (const DataError &) {
        return {}; // painting cannot report; the next action on the record set does
    }
}

QVariant RecordsetModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    return orientation == Qt::Horizontal ? QVariant(m_columns[section].caption) : QVariant(section + 1);
}

Qt::ItemFlags RecordsetModel::flags(const QModelIndex &index) const
{
    return QAbstractTableModel::flags(index) | (m_editable ? Qt::ItemIsEditable : Qt::NoItemFlags);
}

bool RecordsetModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const int source = index.isValid() ? sourceColumn(index.column()) : -1;
    if (role != Qt::EditRole || source < 0)
        return false;
    if (index.row() >= m_recordset.RecordCount()) {
        if (!m_newRow || value.toString().isEmpty())
            return false;
        m_newRow();
    }
    if (Recordset::text(m_recordset.valueAt(index.row(), source), m_recordset.columnKind(source)) == value.toString())
        return true; // only looked at
    m_recordset.setValueAt(index.row(), source, value);
    Q_EMIT cellEdited(index.row(), m_columns[index.column()].column);
    return true;
}

} // namespace tradewick
