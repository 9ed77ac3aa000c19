#include "common/grid.h"

#include "common/combo_field.h"
#include "common/dialogs.h"

#include <QApplication>
#include <QCompleter>
#include <QHeaderView>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QStyle>
#include <QStyledItemDelegate>

#include <cmath>

namespace tradewick
{

namespace
{

constexpr QRgb markInk = 0xb3261e; // laid thinly over the ground of a cell that bears a mark
constexpr float markStrength = 0.25F;

// The numbers of the rows, of which the last is the widest, or the captions of the columns, which are all as high. The
// view's own way measures a hundred of them after each change of a cell.
class Heads : public QHeaderView
{
public:
    Heads(Qt::Orientation orientation, QWidget *parent) : QHeaderView(orientation, parent)
    {
        setSectionsClickable(true);
        setHighlightSections(orientation == Qt::Vertical);
        if (orientation == Qt::Vertical)
            setSectionResizeMode(QHeaderView::Fixed);
    }
    QSize sizeHint() const override
    {
        if (count() == 0)
            return QHeaderView::sizeHint();
        const int digits = orientation() == Qt::Vertical ? static_cast<int>(std::log10(count())) : 0;
        if (digits != m_digits || m_font != font()) {
            m_hint = sectionSizeFromContents(orientation() == Qt::Vertical ? count() - 1 : 0);
            m_digits = digits;
            m_font = font();
        }
        return m_hint;
    }

private:
    mutable QSize m_hint; // for these:
    mutable int m_digits = -1;
    mutable QFont m_font;
};

// Draws a cell as the style does, but measures and shapes its one line of text once instead of three times.
class CellDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->text = static_cast<const Grid *>(parent())->shownText(index);
    }
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QStyleOptionViewItem cell = option;
        initStyleOption(&cell, index);
        if (!index.data(Qt::ToolTipRole).toString().isEmpty()) {
            QColor ink(markInk);
            ink.setAlphaF(markStrength);
            cell.backgroundBrush = ink;
        }
        const QString text = QString(cell.text).replace(QChar::LineSeparator, u' ');
        cell.text.clear();
        const QStyle *style = cell.widget->style();
        style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
        const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, cell.widget) + 1;
        const QRect place = cell.rect.adjusted(margin, 0, -margin, 0);
        const bool fits = cell.fontMetrics.horizontalAdvance(text) <= place.width();
        const auto group = !(cell.state & QStyle::State_Enabled)  ? QPalette::Disabled
                           : !(cell.state & QStyle::State_Active) ? QPalette::Inactive
                                                                  : QPalette::Normal;
        const bool selected = (cell.state & QStyle::State_Selected) != 0;
        painter->setPen(cell.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text));
        painter->setFont(cell.font);
        painter->drawText(place, static_cast<int>(cell.displayAlignment) | Qt::TextSingleLine,
                          fits ? text : cell.fontMetrics.elidedText(text, cell.textElideMode, place.width()));
    }
};

} // namespace

Grid::Grid(const QString &name, const QString &accessibleName, QWidget *parent) : QTableView(parent)
{
    setObjectName(name);
    setAccessibleName(accessibleName);
    setAlternatingRowColors(true);
    setSelectionMode(ContiguousSelection);
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setItemDelegate(new CellDelegate(this));
    setHorizontalHeader(new Heads(Qt::Horizontal, this));
    setVerticalHeader(new Heads(Qt::Vertical, this));
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 10);
    horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    horizontalHeader()->setSortIndicatorClearable(true);
    horizontalHeader()->setToolTip(QStringLiteral("单击或按 F8 排序"));
    setSortingEnabled(true);
    connect(this, &QTableView::doubleClicked, this, [this] {
        if (!m_editing)
            Q_EMIT rowActivated();
    });
}

void Grid::showRecords(Recordset &recordset, const QVector<GridColumn> &columns)
{
    m_model = new RecordsetModel(recordset, columns, this);
    m_numbers = ShownNumbers(columns);
    setModel(m_model);
    ensurePolished();
    for (int i = 0; i < m_model->columnCount(); ++i)
        m_headWidths.append(horizontalHeader()->sectionSizeHint(i));
    connect(m_model, &RecordsetModel::cellEdited, this, &Grid::cellEdited);
    const auto follow = [this, &recordset] {
        const int record = recordset.absolutePosition(), row = m_model->rowOf(record);
        if (record < 0 || record >= recordset.RecordCount())
            return;
        // Where the last row goes, the view takes the one before as its current row without selecting it.
        const bool isMarked = selectionBehavior() != SelectRows || selectionModel()->isRowSelected(row);
        if (currentIndex().row() == row && isMarked)
            return;
        // Not the view's own way, which extends the selection while a modifier key is held for a shortcut.
        selectionModel()->setCurrentIndex(
            m_model->index(row, qMax(0, currentIndex().column())),
            QItemSelectionModel::ClearAndSelect |
                (selectionBehavior() == SelectRows ? QItemSelectionModel::Rows : QItemSelectionModel::NoUpdate));
    };
    connect(&recordset, &Recordset::currentChanged, this, follow);
    m_refit.setSingleShot(true);
    connect(&m_refit, &QTimer::timeout, this, [this] {
        for (int i = 0; i < m_model->columnCount(); ++i)
            setColumnWidth(i, qMax(columnWidth(i), fittingWidth(i)));
        viewport()->update();
    });
    connect(&recordset, &Recordset::reset, this, [this, follow] {
        m_numbers.forget();
        for (int i = 0; i < m_model->columnCount(); ++i)
            setColumnWidth(i, fittingWidth(i));
        m_refit.stop();
        follow();
    });
    connect(&recordset, &Recordset::valueChanged, this, [this, &recordset](int record, int column) {
        for (int i = 0; record >= 0 && column >= 0 && i < m_model->columnCount(); ++i) {
            if (recordset.columnIndex(m_model->columns()[i].column) != column)
                continue;
            const int width = qMin(textWidth(i, m_model->rowOf(record), 1), widest(i));
            if (width > columnWidth(i) && !m_keptWidths.contains(i)) // what is typed stands there whole
                setColumnWidth(i, width);
        }
    });
    connect(selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this, &recordset](const QModelIndex &current) {
                if (current.isValid() && current.row() < recordset.RecordCount())
                    recordset.setAbsolutePosition(m_model->recordAt(current.row()));
            });
    connect(m_model, &RecordsetModel::layoutChanged, this, [this] { scrollTo(currentIndex()); });
    connect(
        m_model, &RecordsetModel::sortingFailed, this,
        [this](const QString &error) {
            horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
            dialogs().message(this, error, {}, MessageIcon::None);
        },
        Qt::QueuedConnection);
}

void Grid::setEditing(bool editing, std::function<void()> newRow)
{
    if (!editing)
        commitEditor();
    if (editing != m_editing) {
        horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
        horizontalHeader()->setSectionsClickable(!editing);
    }
    m_editing = editing;
    setEditTriggers(editing ? AnyKeyPressed | DoubleClicked | EditKeyPressed : NoEditTriggers);
    m_model->setEditable(editing, std::move(newRow));
}

void Grid::setDropDown(const QString &column, const QString &name, std::function<QStringList()> items)
{
    m_dropDowns.insert(column, {name, std::move(items)});
}

void Grid::commitEditor()
{
    if (QLineEdit *editor = cellEditor()) {
        commitData(editor);
        closeEditor(editor, QAbstractItemDelegate::NoHint);
    }
}

QString Grid::currentColumn() const
{
    return currentIndex().isValid() ? m_model->columns()[currentIndex().column()].column : QString();
}

void Grid::editCell(int record, const QString &column)
{
    commitEditor();
    for (int i = 0; i < m_model->columns().size(); ++i)
        if (m_model->columns()[i].column == column) {
            setCurrentIndex(m_model->index(m_model->rowOf(record), i));
            scrollTo(currentIndex());
            if (m_editing)
                QTableView::edit(currentIndex());
            return;
        }
}

QVector<int> Grid::selectedRecords() const
{
    QModelIndexList cells = selectionModel()->selectedIndexes();
    if (cells.isEmpty() && currentIndex().isValid())
        cells.append(currentIndex());
    QVector<int> records;
    for (const QModelIndex &cell : std::as_const(cells))
        if (const int record = m_model->recordAt(cell.row()); !records.contains(record))
            records.append(record);
    std::sort(records.begin(), records.end());
    return records;
}

// Opens the cell's editor and listens to what is typed there.
bool Grid::edit(const QModelIndex &index, EditTrigger trigger, QEvent *event)
{
    const bool opened = QTableView::edit(index, trigger, event);
    if (!opened || state() != EditingState)
        return opened;
    // A closed editor lives on until the event loop comes round; the new one is the one not met yet.
    for (QLineEdit *editor : viewport()->findChildren<QLineEdit *>()) {
        if (editor->property("met").toBool())
            continue;
        editor->setProperty("met", true);
        editor->setAccessibleName(m_model->columns()[index.column()].caption);
        editor->installEventFilter(this);
        m_editor = editor;
        const QString column = m_model->columns()[index.column()].column;
        if (const auto drop = m_dropDowns.constFind(column); drop != m_dropDowns.constEnd()) {
            auto *completer = new QCompleter(drop->items(), editor);
            completer->setFilterMode(Qt::MatchContains);
            completer->setCaseSensitivity(Qt::CaseInsensitive);
            completer->popup()->setObjectName(drop->name);
            completer->popup()->setAccessibleName(m_model->columns()[index.column()].caption);
            completer->popup()->installEventFilter(this);
            editor->setCompleter(completer);
        }
        connect(editor, &QLineEdit::textEdited, this, [this, column](const QString &text) {
            if (!m_composing) // the first letter composed has removed what was selected
                Q_EMIT typed(column, text);
        });
        // The key that opened the editor is typed into it before anyone listened.
        if (trigger != AnyKeyPressed)
            continue;
        if (QCompleter *list = editor->completer()) {
            list->setCompletionPrefix(editor->text());
            list->complete();
        }
        Q_EMIT typed(column, editor->text());
    }
    return opened;
}

bool Grid::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::InputMethod)
        m_composing = !static_cast<QInputMethodEvent *>(event)->preeditString().isEmpty();
    if (const auto *list = qobject_cast<QAbstractItemView *>(watched);
        list && list != this && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) { // once the item is taken, if there is one
            const QAbstractItemModel *offered = m_editor && m_editor->completer() && !list->currentIndex().isValid()
                                                    ? m_editor->completer()->model()
                                                    : nullptr;
            if (const int only = offered ? onlyItemBeginningWith(*offered, m_editor->text()) : -1; only >= 0)
                m_editor->setText(offered->index(only, 0).data().toString());
            QMetaObject::invokeMethod(
                this,
                [this] {
                    commitEditor();
                    goOn();
                },
                Qt::QueuedConnection);
        }
    }
    if (event->type() == QEvent::KeyPress && qobject_cast<QLineEdit *>(watched)) {
        if (m_composing)
            return true; // the keys are the input method's; the cell must not close over its text
        if (sheetKey(*static_cast<QKeyEvent *>(event)))
            return true;
        const int key = static_cast<QKeyEvent *>(event)->key();
        const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
        if (m_keyHook && (isEnter || key == Qt::Key_Down || key == Qt::Key_Escape) && m_keyHook(key))
            return true;
        if (isEnter) {
            commitEditor();
            goOn();
            return true;
        }
        if (key == Qt::Key_Down) {
            if (QCompleter *list = m_editor ? m_editor->completer() : nullptr) {
                list->setCompletionPrefix({});
                list->complete();
                return true;
            }
            commitEditor();
            const int row = qMin(currentIndex().row() + 1, m_model->rowCount() - 1);
            setCurrentIndex(m_model->index(row, currentIndex().column()));
            scrollTo(currentIndex());
            return true;
        }
    }
    return QTableView::eventFilter(watched, event);
}

void Grid::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy)) {
        copySelection();
        return;
    }
    if (m_editing && sheetKey(*event))
        return;
    switch (event->key()) {
    case Qt::Key_Escape:
        if (!m_keyHook || !m_keyHook(event->key()))
            QTableView::keyPressEvent(event);
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_editing && m_model->recordAt(currentIndex().row()) >= m_model->recordCount())
            focusNextChild(); // nothing is begun in the blank line: the lines are done
        else if (m_editing)
            goOn();
        else if (currentIndex().isValid())
            Q_EMIT rowActivated();
        return;
    case Qt::Key_F8:
        if (!m_editing && currentIndex().isValid())
            sortFurther(currentIndex().column());
        return;
    case Qt::Key_Delete:
        Q_EMIT deletePressed();
        return;
    default:
        QTableView::keyPressEvent(event);
    }
}

// What a click on the column's head does.
void Grid::sortFurther(int column)
{
    QHeaderView &head = *horizontalHeader();
    if (head.sortIndicatorSection() != column)
        head.setSortIndicator(column, Qt::AscendingOrder);
    else if (head.sortIndicatorOrder() == Qt::AscendingOrder)
        head.setSortIndicator(column, Qt::DescendingOrder);
    else
        head.setSortIndicator(-1, Qt::AscendingOrder);
}

void Grid::commitData(QWidget *editor)
{
    const QModelIndex cell = currentIndex();
    Q_EMIT aboutToTake();
    QTableView::commitData(editor);
    if (cell.isValid())
        Q_EMIT cellLeft(m_model->recordAt(cell.row()), m_model->columns()[cell.column()].column);
}

// The view itself wants an input method only for cells that can be typed into; here Chinese finds a row, too.
void Grid::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTableView::currentChanged(current, previous);
    setAttribute(Qt::WA_InputMethodEnabled);
}

void Grid::focusInEvent(QFocusEvent *event)
{
    QTableView::focusInEvent(event);
    setAttribute(Qt::WA_InputMethodEnabled);
}

// The next column of those that Enter goes through; behind the last the next line, as long as there is one. A line that
// stands already is gone on with behind its first column: the number typed next would take the place of its code.
void Grid::goOn()
{
    const QModelIndex at = currentIndex();
    const int columns = m_model->columnCount();
    if (!at.isValid() || columns == 0)
        return;
    const auto stopFrom = [&](int column) {
        while (column < columns && !m_enterColumns.isEmpty() &&
               !m_enterColumns.contains(m_model->columns()[column].column))
            ++column;
        return column;
    };
    int row = at.row(), column = stopFrom(at.column() + 1);
    if (column == columns) {
        row = qMin(row + 1, m_model->rowCount() - 1);
        column = qMin(stopFrom(0), columns - 1);
        const int second = stopFrom(column + 1);
        if (!m_enterColumns.isEmpty() && second < columns && !m_model->index(row, column).data().toString().isEmpty())
            column = second;
    }
    setCurrentIndex(m_model->index(row, column));
    scrollTo(currentIndex());
}

} // namespace tradewick
