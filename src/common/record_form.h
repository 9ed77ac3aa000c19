// The record form engine: states, buttons, navigation, storing and failure behaviours of every entry form. What a form
// is stands in its declaration; its fields are a field panel's, its lines a lines panel's.
#pragma once

#include "common/lines_panel.h"
#include "common/record_form_spec.h"
#include "data/data_control.h"
#include "data/row.h"

#include <QWidget>

#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>

class QBoxLayout;
class QLabel;
class QPushButton;
class QShortcut;

namespace tradewick
{

class BranchTree;
class ComboField;
class EditSteps;
class FieldPanel;
class RecordList;

class RecordForm : public QWidget
{
    Q_OBJECT

public:
    // Throws DataError when what the form offers or shows cannot be read.
    explicit RecordForm(const RecordFormSpec &spec, QWidget *mainWindow = nullptr);
    ~RecordForm() override;

    const RecordFormSpec &spec() const { return m_spec; }
    // Add or Edit is under way: Cmdcancel is enabled.
    bool isBusy() const { return m_busy; }
    // Between Add and what ends it: OK or Cancel (RecordFormSpec::adding), on tabs that of any.
    bool isAdding() const { return m_adding; }
    void endAdding() { m_adding = false; }
    Recordset &records() { return m_primary.Recordset(); }
    // The lines of the current record. Ends the program for a form without lines.
    Recordset &lines() { return linesPanel().records(); }
    std::shared_ptr<Connection> connection() const { return Connection::shared(m_primary.ConnectionString); }
    BranchTree *tree() const;
    // The form on the tab of that number in the same window. Ends the program where there is none.
    RecordForm &beside(int tab) const;
    // The window can close: nothing is being typed, and the clerk gives up what waits.
    bool mayClose();
    // Takes the focus to where the next keys belong: into the record that is typed, or into the list.
    void takeFocus();

    // What declared rules and handlers work with. A field that is not there ends the program.
    QString text(const QString &field) const;
    void setText(const QString &field, const QString &text); // writes the record as typing does
    QString choice(const QString &name) const; // what stands in a ChoiceSpec's box, without blanks around it
    void focusField(const QString &field);
    void lockField(const QString &field);
    void lockFields(bool locked);
    void offer(const QString &combo, const char *statement); // throws DataError
    void add();
    void refresh() { m_primary.Refresh(); }
    void refreshLines();
    // The first row of a statement. Throws DataError.
    std::optional<Row> firstRow(const char *statement, const Values &values);
    // Copies columns of that row into a record set; gives whether there was one. Throws DataError.
    bool copyFirst(const char *statement, const Values &values, const Copies &copies, Recordset &to,
                   bool trimmed = false);
    // The first column of a statement's rows; an error of the database is told, and nothing offered.
    QStringList offered(const char *statement);
    // The head's columns as its fields show them, under their names in small letters.
    Values headValues();
    static Values valuesOf(Recordset &set);
    QVariant filled(const Preset &preset);

    // Runs steps as the failure behaviour says: Report stops at the first that fails, with its text; Skip passes over
    // it; None lets the error out. A lost connection is reported whatever the behaviour, and then false is given.
    bool run(Failure failure, std::initializer_list<std::function<void()>> steps);
    // A step of several statements or batches: all of it is stored or nothing. Where another desktop changed or deleted
    // a row since it was read, the user is asked and the work, of which nothing is stored then, is done again. Gives
    // false when the user goes back to what was typed.
    bool store(const std::function<void()> &work);

    // Something is edited there next: how the record and its lines stand is noted, to come back to.
    void beginEdit(const EditPlace &place);
    // Takes back the last edit since Add or Edit that can be seen, and goes to where it was made. Nothing happens where
    // none is left, for what was stored stays, or where nothing is typed.
    void takeBack();

    // The number that Add would give a new record now, were these numbers given too. Throws DataError.
    QString proposedKey(const QStringList &passedOver = {});
    // Whether any of its records or their lines wait to be stored.
    bool anyWaits();
    // Tells that records wait to be stored, which reading anew would lose; gives whether some do.
    bool tellWaiting();
    // Goes to the first record whose column has the value, among all records where those that are shown have it not.
    // Stays, and tells why, during Add and Edit, where records wait that are hidden with it, and where no record has
    // it.
    void goTo(const QString &column, const QVariant &value);
    // Shows the records of another statement, unless some wait to be stored, which is told. Gives whether it does.
    bool showStatement(const char *statement, const Values &values);
    // Whether a record or its lines wait to be stored.
    bool waits(int record);
    // The record is in the database under the key that it bears now.
    bool isHeadStored();
    // The record is not stored under the key that it bears, and another one is. Throws DataError.
    bool isKeyTaken();
    // Tells so, and goes to the key; gives whether it is taken.
    bool tellTakenKey();
    void showLines(int grid = 0); // the tab that holds the grid
    // Opens another form in this one's place, or brings it to the front.
    void openBeside(const RecordFormSpec &other);

    static QString systemTitle() { return QStringLiteral("系统提示"); }
    static QString badDate() { return QStringLiteral("日期输入有误，请重新核对！"); }
    static QString badNumber() { return QStringLiteral("数值输入有误，请重新核对！"); }

Q_SIGNALS:
    void fieldsLocked(bool locked); // by a button
    void addingEnded();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    QString named(const QString &name) const; // with the number of the tab
    void build();
    void buildButtons(QBoxLayout *layout);
    QPushButton *addButton(QBoxLayout *layout, const ButtonSpec &button, const std::function<void()> &press);
    LinesPanel &linesPanel() const;
    void load();
    void followEdits();
    void press(const ButtonSpec &button);
    void setBusy(bool busy, bool adding = false); // buttons, locks and grids of Browse, or of Add and Edit
    void showState();
    void focusFirst();
    void lock(bool locked);
    const QString &keyField() const
    {
        return m_spec.key.isEmpty() ? m_spec.pages.first().fields.first().name : m_spec.key;
    }
    bool isKey(const QString &field) const; // papers on several tabs repeat it

    bool hasRecord();
    void recordMoved();
    void showRecord();
    bool tellLost();
    void fieldTyped(const QString &field);
    void fieldChosen(const QString &field);
    void fillFrom(const PickSpec &pick);
    void fieldEntered(const QString &field);
    void fieldLeft(const QString &field);
    bool passesWhenLeft(const QString &field);
    bool passesWhatIsTyped();
    bool passes(const FieldCheck &check);
    FieldCheck checkOf(const FieldSpec &field);
    bool passesOwnChecks();

    void first();
    void last();
    void next();
    void previous();
    void edit();
    void save();
    void cancel();
    void deleteRecord();
    void dropLines();
    void stepAfterDelete();
    void find();
    void refill();
    QStringList firstColumn(const char *statement, const Values &values);

    bool isStored(const QString &key);
    void takeFreeNumber(); // throws DataError
    bool missesRequiredField();
    bool tellUnstored();
    void askForLines();
    bool storeWaiting();            // gives false when the clerk goes back
    bool settle(Conflict conflict); // asks; gives whether to go on storing
    QString worded(const DataError &error);

    RecordFormSpec m_spec;
    DataControl m_primary;
    std::unique_ptr<LinesPanel> m_lines;
    std::unique_ptr<EditSteps> m_steps;
    std::unique_ptr<QWidget> m_content; // looks into the record sets above, which outlive it
    FieldPanel *m_panel = nullptr;
    RecordList *m_list = nullptr;
    QHash<QString, QPushButton *> m_buttons;
    QHash<QString, ComboField *> m_choices;
    QShortcut *m_undo = nullptr;
    QLabel *m_state = nullptr;
    QString m_entered, m_textEntered;   // the field that has the focus, until it is left, and what stood there
    QString m_asked;                    // the field that OK asked of, until the handler is through
    QString m_lost;                     // what is to be told of a connection that was lost while the record was shown
    QHash<qint64, QString> m_linesFrom; // by head: the number whose lines go along to another one
    qint64 m_added = 0;                 // the record that Add began, until it is stored or dropped
    qint64 m_left = 0;                  // the record that was shown when that Add began
    bool m_busy = false, m_adding = false;
    bool m_inAdd = false;    // whether the state is the one that Add began; m_adding may outlast it
    bool m_isUnread = false; // the record could not be read: the fields are empty, not the record
};

} // namespace tradewick
