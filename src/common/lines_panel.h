// The lines of one head: their grids, the list that is searched while a line is typed, what follows from an edit, and
// what of them waits to be stored. Lines wait with their head: those of a head that is left are put aside until it is
// shown or stored again.
#pragma once

#include "common/grid.h"
#include "common/record_form_spec.h"
#include "data/data_control.h"

#include <QObject>

#include <map>
#include <memory>

class QBoxLayout;

namespace tradewick
{

// Where something is edited: a field, or a cell of one of the grids of the lines; neither for what a button does.
struct EditPlace {
    QString field{};
    int grid = -1, row = 0;
    QString column{};
};

// How the lines stood, to go back to.
struct LinesState {
    std::shared_ptr<const RecordsetRows> rows{};
    QString key{};
};

class LinesPanel : public QObject
{
    Q_OBJECT

public:
    // spec and form: outlive the panel.
    LinesPanel(const LinesSpec &spec, RecordForm &form, const QString &connection);
    ~LinesPanel() override;

    // Makes the grids, each in the layout that place gives for it, and the list that is searched over the window.
    void addTo(const std::function<QBoxLayout *(const LineGridSpec &grid)> &place, QWidget *window);

    Recordset &records() { return m_lines.Recordset(); }
    // The first grid, and the record that a row of the list that is searched gives.
    Grid *grid() const { return m_grids.first(); }

    // Follows the head: its identity in the head's record set and its key. What waits of the lines shown so far is put
    // aside with their head. Throws DataError.
    void showHead(qint64 head, const QString &key);
    // The head that is shown has another key now, typed over. Lines not stored yet go along.
    //   isNew: the head was never stored; then lines of a stored document, whose key it had by mistake, become its own.
    void keyTyped(const QString &key, bool isNew);
    void headKeyChanged(qint64 before, qint64 now);
    // Reads the lines anew; what waits of them goes. Throws DataError.
    void refresh();

    // Lets lines be typed into, in Add or in Edit; without, what stands in an open cell is taken first.
    void setEditing(bool editing, bool adding = false);
    void commitEditors();
    void hideLookup();

    // Whether lines of that head wait to be stored, and of which heads some do.
    bool wait(qint64 head);
    QVector<qint64> headsWaiting();
    // Stores the lines that wait of a head, in the transaction that is running. Throws as UpdateBatch does.
    void store(qint64 head);
    // Forgets what waits of a head's lines.
    void drop(qint64 head);

    // Whether what stands in the place of a line now is a line of the same head.
    bool isOwn(const Conflict &conflict) const;
    // The blank line, or the last where none can be added, of the grid in sight or else of the first.
    void goToNewLine();

    // Goes to where an edit was taken back.
    void goTo(const EditPlace &place);
    // How the lines of the head that is shown stand, whether they still stand so, and back to it; gives whether they
    // look different then. For states since which nothing was stored.
    LinesState state() { return {records().state(), m_key}; }
    bool isAt(const LinesState &state) { return records().isAt(*state.rows); }
    bool goBackTo(const LinesState &state);

    // Tells of the first cell whose text its column cannot take, opens it, and gives whether there was one.
    bool tellBadCell();
    QString captionOf(const QString &column) const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Grid *addGrid(const LineGridSpec &spec, QWidget *parent);
    void addLookup(QWidget *window);
    void startLine();
    void removeLines(Grid *grid);
    void left(int row, const QString &column);
    void edited(const LineGridSpec &spec, const QString &column);
    void runRules(const LineGridSpec &spec, const QString &column);
    void take(const QVector<Preset> &presets);
    void typed(Grid *grid, const QString &column, const QString &text);
    bool isSearched() const;
    void placeLookup(const Grid *grid);
    void pick();
    void followKeys(Grid *grid);
    void beginEdit(const Grid *grid);
    void put(Grid *grid, int row, int section, const QString &text);
    void paste(Grid *grid, const QVector<QStringList> &block);
    void repeatAbove(Grid *grid);
    bool isBad(int row, int column);
    QString badText(int column);
    void tellBad(int row, int column);

    const LinesSpec &m_spec;
    RecordForm &m_form;
    DataControl m_lines, m_found;
    std::map<qint64, std::unique_ptr<Recordset>> m_aside; // by head
    QVector<Grid *> m_grids;
    Grid *m_lookup = nullptr;
    Grid *m_typing = nullptr; // the grid that the list is searched for,
    QString m_searched;       // and its column; empty where the text typed last searched nothing
    qint64 m_head = 0;
    QString m_key;
};

} // namespace tradewick
