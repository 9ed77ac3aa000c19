#include "data/recordset_model.h"

#include "data/value_order.h"

#include <algorithm>
#include <numeric>

namespace tradewick
{

RecordsetModel::RecordsetModel(Recordset &recordset, QVector<GridColumn> columns, QObject *parent)
    : QAbstractTableModel(parent), m_recordset(recordset), m_columns(std::move(columns))
{
    connect(&recordset, &Recordset::aboutToReset, this, [this] { beginResetModel(); });
    connect(&recordset, &Recordset::reset, this, [this] {
        m_sourceColumns.clear();
        arrange();
        endResetModel();
    });
    // A record added while the empty row is there takes that row's place, and a further empty row follows: the cursor
    // stays where it is.
    connect(&recordset, &Recordset::rowAboutToBeInserted, this, [this](int record) {
        const int at = record + (m_newRow ? 1 : 0);
        beginInsertRows({}, at, at);
    });
    connect(&recordset, &Recordset::rowInserted, this, [this](int record) {
        if (isSorted())
            setRecords(m_records + QVector<int>{record});
        endInsertRows();
    });
    connect(&recordset, &Recordset::rowAboutToBeRemoved, this,
            [this](int record) { beginRemoveRows({}, rowOf(record), rowOf(record)); });
    connect(&recordset, &Recordset::rowRemoved, this, [this](int record) {
        if (isSorted()) {
            QVector<int> records = m_records;
            records.removeAt(rowOf(record));
            for (int &later : records)
                later -= later > record ? 1 : 0;
            setRecords(records);
        }
        endRemoveRows();
    });
    connect(&recordset, &Recordset::valueChanged, this, [this](int record, int column) {
        if (record >= 0 && column >= 0) { // a view measures its columns anew for each that is said to have changed
            for (int section = 0; section < columnCount(); ++section)
                if (sourceColumn(section) == column)
                    Q_EMIT dataChanged(index(rowOf(record), section), index(rowOf(record), section));
            return;
        }
        if (isSorted())
            rearrange();
        const int first = record < 0 ? 0 : rowOf(record), last = record < 0 ? rowCount() - 1 : first;
        if (last >= first)
            Q_EMIT dataChanged(index(first, 0), index(last, columnCount() - 1));
    });
    connect(&recordset, &Recordset::storedAsShown, this, [this] { // not while it was typed
        if (isSorted())
            rearrange();
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
    const bool mark = m_cellMark && (role == Qt::ToolTipRole || role == Qt::AccessibleDescriptionRole);
    const ColumnKind kind = m_recordset.columnKind(source);
    if ((!display && !mark && role != Qt::TextAlignmentRole) || index.row() >= m_recordset.RecordCount())
        return {};
    try {
        if (mark)
            return m_cellMark(recordAt(index.row()), source);
        const QVariant value = m_recordset.valueAt(recordAt(index.row()), source);
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
    if (role == Qt::AccessibleDescriptionRole && orientation == Qt::Horizontal && section == m_sortColumn)
        return m_sortOrder == Qt::AscendingOrder ? QStringLiteral("升序排列") : QStringLiteral("降序排列");
    const bool isMarked =
        orientation == Qt::Vertical && m_mark && section < m_recordset.RecordCount() && m_mark(recordAt(section));
    if (isMarked && (role == Qt::ToolTipRole || role == Qt::AccessibleDescriptionRole))
        return QStringLiteral("未保存");
    if (role != Qt::DisplayRole)
        return {};
    if (isMarked)
        return QStringLiteral("●");
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
    const int record = recordAt(index.row());
    if (record >= m_recordset.RecordCount()) {
        if (!m_newRow || value.toString().isEmpty())
            return false;
        m_newRow();
    }
    if (Recordset::text(m_recordset.valueAt(record, source), m_recordset.columnKind(source)) == value.toString())
        return true; // only looked at
    m_recordset.setValueAt(record, source, value);
    Q_EMIT cellEdited(record, m_columns[index.column()].column);
    return true;
}

void RecordsetModel::setRecords(const QVector<int> &records)
{
    m_records = records;
    m_rows.resize(records.size());
    for (int row = 0; row < records.size(); ++row)
        m_rows[records[row]] = row;
}

void RecordsetModel::arrange()
{
    if (!isSorted() && m_firstColumn.isEmpty()) {
        setRecords({});
        return;
    }
    try {
        if (!isSorted()) {
            QVector<int> records(m_recordset.RecordCount());
            std::iota(records.begin(), records.end(), 0);
            const int source = m_recordset.columnIndex(m_firstColumn);
            std::stable_partition(records.begin(), records.end(), [&](int record) {
                const QString value = source < 0 ? QString() : m_recordset.valueAt(record, source).toString();
                return value.trimmed().compare(m_firstValue, Qt::CaseInsensitive) == 0;
            });
            setRecords(records);
            return;
        }
        const int source = m_recordset.RecordCount() > 0 ? sourceColumn(m_sortColumn) : -1;
        setRecords(
            sortedPositions(source < 0 ? QVariantList(m_recordset.RecordCount()) : m_recordset.columnValues(source),
                            m_recordset.columnKind(source), m_sortOrder));
    } catch (const DataError &error) {
        m_sortColumn = -1;
        setRecords({});
        Q_EMIT sortingFailed(error.text());
    }
}

// Cursor and selection go with their records.
void RecordsetModel::rearrange()
{
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    QVector<int> records;
    for (const QModelIndex &at : before)
        records.append(recordAt(at.row()));
    arrange();
    QModelIndexList after;
    for (int i = 0; i < before.size(); ++i)
        after.append(index(rowOf(records[i]), before[i].column()));
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, VerticalSortHint);
    Q_EMIT headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
}

void RecordsetModel::sort(int column, Qt::SortOrder order)
{
    if (column == m_sortColumn && (order == m_sortOrder || column < 0))
        return;
    m_sortColumn = column;
    m_sortOrder = order;
    rearrange();
}

void RecordsetModel::setFirst(const QString &column, const QString &value)
{
    m_firstColumn = column;
    m_firstValue = value.trimmed();
}

QModelIndexList RecordsetModel::match(const QModelIndex &start, int role, const QVariant &value, int hits,
                                      Qt::MatchFlags flags) const
{
    const int source = start.isValid() ? sourceColumn(start.column()) : -1;
    if (source < 0 || role != Qt::DisplayRole || hits != 1 || flags != (Qt::MatchStartsWith | Qt::MatchWrap))
        return QAbstractTableModel::match(start, role, value, hits, flags);
    try {
        const QVariantList values = m_recordset.columnValues(source);
        const ColumnKind kind = m_recordset.columnKind(source);
        const int count = static_cast<int>(values.size());
        for (int i = 0; i < count; ++i) {
            const int row = (start.row() + i) % count;
            if (Recordset::text(values[recordAt(row)], kind).startsWith(value.toString(), Qt::CaseInsensitive))
                return {index(row, start.column())};
        }
    } catch (const DataError &) { // as with painting: the next action on the record set reports
    }
    return {};
}

} // namespace tradewick
