// The grid of lists and lines: shows a record set, moves with it in both directions, and is worked by keyboard alone.
// While nothing can be typed into it, a click on a column's head, or F8 in the column, sorts what it shows: upwards,
// downwards, then as the record set has it. Letters typed go to the next row that begins with them.
#pragma once

#include "common/shown_numbers.h"
#include "common/window_keys.h"
#include "data/recordset_model.h"

#include <QLineEdit>
#include <QPointer>
#include <QSet>
#include <QTableView>
#include <QTimer>

#include <optional>

namespace tradewick
{

class Grid : public QTableView, public TakesKeys
{
    Q_OBJECT

public:
    // name: object name; accessibleName: what a screen reader says.
    Grid(const QString &name, const QString &accessibleName, QWidget *parent);

    // Shows the columns of the record set; its current row and the grid's are one from then on.
    void showRecords(Recordset &recordset, const QVector<GridColumn> &columns);
    RecordsetModel *recordsetModel() const { return m_model; }

    // Columns that are never cut, however long their texts are; all others end where a name would.
    void setWhole(int column) { m_whole.insert(column); }
    // A width that the user gave a column: texts change it no more. No width: it follows them again.
    void keepWidth(int column, std::optional<int> width);
    QVector<KeyText> keys() const override;
    // What stands in a cell as it is shown, and a number as it would stand in a column.
    QString shownText(const QModelIndex &cell) const;
    QString shownNumber(int column, const QString &number) const { return m_numbers.shown(column, number); }
    // As wide as the grid with all of its columns is.
    int wantedWidth() const;

    // Lets cells be typed into, in the record set's own order, and, where newRow is given, lines be added in the empty
    // row at the end; newRow makes the record that the typed value then goes into.
    void setEditing(bool editing, std::function<void()> newRow = {});
    bool isEditing() const { return m_editing; }
    // Columns that Enter goes through, the next line's first behind the last, or its second where the first is filled;
    // all columns when empty.
    void setEnterColumns(const QStringList &columns) { m_enterColumns = columns; }

    // A list that drops down below the cells of a column while they are typed into, any other text allowed too.
    //   name: object name of the list; items: read each time a cell is opened.
    void setDropDown(const QString &column, const QString &name, std::function<QStringList()> items);

    // Asked before Enter, the down arrow or Escape leaves an open cell; where it gives true, the key is done with.
    void setKeyHook(std::function<bool(int key)> hook) { m_keyHook = std::move(hook); }

    // Puts what stands in an open cell editor into the record set.
    void commitEditor();
    // The open cell editor, null when none is open.
    QLineEdit *cellEditor() const { return state() == EditingState ? m_editor.data() : nullptr; }
    // Column name under the cursor, empty when there is none.
    QString currentColumn() const;
    // Moves the cursor to the column of a record and opens the cell where it can be typed into.
    void editCell(int record, const QString &column);
    // Goes to a cell without opening it, and selects it alone, whatever modifier key is held for a shortcut.
    void goTo(const QModelIndex &cell);
    void goToCell(int row, const QString &column);
    // The cell that a block begins at: the first of those selected, or the one under the cursor; invalid for none.
    QModelIndex firstSelected() const;
    // Columns of the model from that one on to the right, as they are shown.
    QVector<int> shownColumns(int from) const;
    // Positions of the records selected, each once, upwards; the one under the cursor where nothing is selected.
    QVector<int> selectedRecords() const;

Q_SIGNALS:
    void typed(const QString &column, const QString &text); // each change of the text in a cell editor
    void cellEdited(int row, const QString &column);        // the value stands in the record set
    void cellLeft(int record, const QString &column);       // changed or not, what stood in its editor is taken
    void aboutToTake(); // what stands in the open cell goes into the record set next
    void deletePressed();
    // While cells can be typed into. An open cell is closed: what stood in it is taken before a block, and given up
    // before the others.
    void blockPasted(const QVector<QStringList> &rows);
    void repeatPressed();
    void undoPressed();  // in an open cell that has nothing more to take back
    void rowActivated(); // double click or Enter where nothing can be typed; the row is the current one

protected:
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool edit(const QModelIndex &index, EditTrigger trigger, QEvent *event) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void focusInEvent(QFocusEvent *event) override;
    void commitData(QWidget *editor) override;
    int sizeHintForColumn(int column) const override;
    void scrollContentsBy(int dx, int dy) override;

private:
    bool sheetKey(const QKeyEvent &event);
    void goOn();
    void copySelection() const;
    void sortFurther(int column);
    int textWidth(int column, int firstRow, int rows) const;
    int widest(int column) const;
    int fittingWidth(int column) const;

    RecordsetModel *m_model = nullptr;
    QPointer<QLineEdit> m_editor; // the one opened last
    std::function<bool(int key)> m_keyHook;
    QStringList m_enterColumns;
    mutable QHash<QString, int> m_advances; // of texts, in the font beside
    mutable QFont m_advancesFont;
    QVector<int> m_headWidths;    // that the heads' captions take
    QHash<int, int> m_keptWidths; // by column
    QSet<int> m_whole;
    mutable ShownNumbers m_numbers;
    mutable QTimer m_refit; // a number with more places than its column had came into sight
    struct DropDown {
        QString name;
        std::function<QStringList()> items;
    };
    QHash<QString, DropDown> m_dropDowns; // by column
    bool m_editing = false;
    bool m_composing = false; // an input method holds text that is not committed yet
};

} // namespace tradewick
