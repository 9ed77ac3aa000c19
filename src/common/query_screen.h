// The query screen engine: criteria, the lists of what was found, the record of the first list with its lines, locked.
// What a screen is stands in its declaration. It writes no table.
#pragma once

#include "common/query_spec.h"
#include "data/data_control.h"

#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

class QBoxLayout;
class QGroupBox;
class QPushButton;
class QTabWidget;

namespace tradewick
{

class ColumnFooter;
class ComboField;
class CriteriaPanel;
class FieldPanel;
class Grid;

class QueryScreen : public QWidget
{
    Q_OBJECT

public:
    // openRecord: what a double click on a found record does. Throws DataError when the lists or what the criteria
    // offer cannot be read.
    explicit QueryScreen(const QuerySpec &spec, QWidget *mainWindow = nullptr, OpenRecord openRecord = {});
    ~QueryScreen() override;

    const QuerySpec &spec() const { return m_spec; }
    // The list that is shown, and one with its records.
    int shownList() const;
    Grid *grid(int list) const { return m_lists[list]->grid; }
    Recordset &records(int list = 0) { return m_lists[list]->control.Recordset(); }

    // What stands in the criteria, by the controls' names, and whether the second range of dates is in force.
    Values criteria() const;
    bool isWithin() const;
    // The number of the record that is shown, without blanks around it; empty without one.
    QString number() const;
    QString choice(const QString &name) const; // what stands in a ChoiceSpec's box, without blanks around it

    // The conditions that were put together last, one for each criterion. A find leaves them empty, a print does not.
    QVector<Fragment> &fragments() { return m_fragments; }

    // Shows what the criteria find. Gives false where the user stopped it, which leaves what was shown, and, having
    // told why, where a range of dates is turned round or the database fails.
    bool find();
    // Tell that a range of dates begins behind its end, in the words of each; give whether one does. A find asks of the
    // first range alone.
    bool tellReversedAtFind() { return tellReversed(QStringLiteral("起始日期不能晚于截止日期，请核对。"), false); }
    bool tellReversedAtPrint() { return tellReversed(reversedAtPrint(), true); }
    void tell(const QString &message);
    // Yes or No, or no value where the question is closed.
    std::optional<bool> ask(const QString &question, MessageIcon icon);
    // Does something, telling an error of the database; gives whether there was none.
    bool run(const std::function<void()> &action);
    void showOptions();

private:
    struct List {
        const QueryListSpec *spec;
        DataControl control;
        Grid *grid = nullptr;
        ColumnFooter *footer = nullptr;
    };

    void build();
    QWidget *buildLists();
    Grid *buildList(List &list, QWidget *page);
    QWidget *buildRecord();
    void buildButtons(QBoxLayout *layout);
    QPushButton *addButton(QLayout *layout, const QueryButton &button, const std::function<void()> &press);
    void addOptions(QBoxLayout *layout);
    void load();
    bool read(const std::function<void()> &action);
    static std::unique_ptr<Recordset> opened(const QString &statement, const Values &values);
    static void showRecords(List &list, std::unique_ptr<Recordset> records);
    bool showFound(const Values &values);
    static void writeFooters(List &list, ColumnText::Written when, Values row);
    void quickFind(const QString &box, bool isChosen);
    void recordMoved();
    void showRecord();
    void openEntry(List &list);
    Connection &connection() const;
    bool tellReversed(const QString &message, bool anyRange);

    const QuerySpec m_spec;
    const OpenRecord m_openRecord;
    std::unique_ptr<RecordFormSpec> m_entry;
    std::vector<std::unique_ptr<List>> m_lists;
    DataControl m_lines;
    QVector<Fragment> m_fragments;
    std::unique_ptr<QWidget> m_content; // looks into the record sets above, which outlive it
    CriteriaPanel *m_criteria = nullptr;
    FieldPanel *m_panel = nullptr;
    QTabWidget *m_tabs = nullptr; // of several lists
    QGroupBox *m_options = nullptr;
    QVector<QPushButton *> m_waiting; // buttons that wait for the first find
    QHash<QString, ComboField *> m_choices;
};

} // namespace tradewick
