// The record form engine: what every entry form is. A form declares its statement, fields, lists and differences; the
// states, buttons, navigation, keys, close rules and failure behaviours are told here once.
#pragma once

#include "common/branch_tree.h"
#include "common/grid.h"
#include "common/picture_field.h"
#include "data/data_control.h"

#include <QDate>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <initializer_list>

class QAbstractButton;
class QBoxLayout;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTabWidget;

namespace tradewick
{

// What a handler does with an error of the database.
enum class Failure {
    None,   // unhandled: the process stops
    Report, // a message with the error's text; the handler ends
    Skip,   // the failing step is passed over, the handler goes on
};

struct FailureGroup {
    Failure next = Failure::Report, previous = Failure::Report, ends = Failure::None, add = Failure::Report,
            edit = Failure::Report, deleteAndCancel = Failure::Skip, ok = Failure::Report;
};

enum class FieldKind { Text, LongText, Date, Combo, Check, Picture };

struct FieldSpec {
    QString name; // of the control: "Text1(0)"
    QString column;
    QString caption; // as given, colon included
    FieldKind kind = FieldKind::Text;
    int page = 0;               // of RecordFormSpec::pages
    int span = 1;               // label-and-field pairs it takes in its row
    const char *list = nullptr; // Combo: statement whose first column fills it
    QString group{};            // caption of the frame around fields that stand together; empty: no frame
};

struct RequiredField {
    QString name, message; // an empty message stops the save without a word
    int length = 0;        // that the text must have; 0: any but none
};

struct EmptyField {
    QString name, stored = QStringLiteral("  "); // two blanks: later tests for empty fail
};

// A key typed for a new record is looked up when its field is left; one that is there already is taken away again.
struct UniqueKeySpec {
    const char *statement = nullptr; // with {key}
    QString message;
};

// A box over the list: each change of its text shows the records of a statement.
struct FilterSpec {
    QString name, caption;
    const char *statement = nullptr; // with {text}
    bool trimmed = true;
};

// Cmd_find asks for a value and goes to the first record that has it.
struct FindSpec {
    QString column, prompt, title, notFound;
};

// A list that drops down below the cells of a column of the body grid.
struct DropDownSpec {
    QString column, name;
    const char *statement = nullptr; // whose first column fills it
};

struct BodySpec {
    const char *statement = nullptr; // with {key}, the text of the head's first field
    const char *deletion = nullptr;  // removes all lines of a head, with {key}
    QString key;                     // the lines' column that holds the head's key
    QVector<GridColumn> columns;     // of TDBGrid1
    QStringList enterColumns;        // that Enter goes through
    QVector<GridColumn> picker;      // of TDBGrid2; none: the form has no picker
    QVector<DropDownSpec> dropDowns;
};

struct ButtonSpec {
    QString name, caption, shortcut;
    bool whileAdding = false; // enabled in Browse and in Add
};

struct RecordFormSpec {
    QString name;    // of the form
    QString caption; // of its window
    const char *statement = nullptr;
    QString control = QStringLiteral("Adoprimaryrs");
    QVector<FieldSpec> fields;
    QStringList pages;        // captions of the tabs; none: no tabs
    int pairsInRow = 1;       // label-and-field pairs side by side
    QVector<GridColumn> list; // of TDBGrid3
    QString numberedAs;       // form name in the table of numbers; empty: the user types the key
    QVector<RequiredField> required;
    QString requiredTitle = QStringLiteral("提示");
    UniqueKeySpec unique;
    QVector<EmptyField> whenEmpty; // what is stored for fields with nothing in them
    QStringList notes;             // texts below the fields
    QStringList captions{"前端", "向前", "向后", "后端", "新增", "删除", "编辑", "确认", "取消", "返回"};
    bool navigationWhileBusy = false;
    bool arrowsWrap = true; // from the last field of an array to the first and back
    FailureGroup failures;
    BodySpec body;
    QVector<ButtonSpec> printButtons;
    QVector<ButtonSpec> actions; // further buttons of the form's own
    FilterSpec filter;
    FindSpec find;
    TreeSpec tree;
    PictureSpec picture;                       // of the one field of that kind
    QString dateFilterCaption;                 // label of the date picker over the list; empty: there is none
    const char *dateFilterStatement = nullptr; // with {date}
};

class RecordForm : public QWidget
{
    Q_OBJECT

public:
    explicit RecordForm(const RecordFormSpec &spec, QWidget *mainWindow = nullptr);
    ~RecordForm() override;

    enum class Change { Saved, Cancelled, Deleted };

    // Add or Edit is under way: Cmdcancel is enabled.
    bool isBusy() const;
    Recordset &records() { return m_primary.Recordset(); }

protected:
    // What a form adds to the steps of the engine.
    virtual QString proposedKey();                             // of a new record; read before the row is there
    virtual void afterAdd() {}                                 // the new row stands, its number is written
    virtual void comboChosen(const QString & /*name*/) {}      // an item was chosen in a combo box
    virtual void bodyRowStarted() {}                           // a line was added and wants its head's values
    virtual void bodyCellEdited(const QString & /*column*/) {} // of the current line
    virtual void bodyTyped(const QString & /*column*/, const QString & /*text*/) {}
    virtual void picked() {} // a row of the picker was chosen
    virtual void print(const QString & /*button*/) {}
    virtual void action(const QString & /*button*/) {}
    virtual void saving() {}                        // OK was pressed; nothing is checked yet
    virtual void stored() {}                        // all rows are written, in the same transaction
    virtual void cancelling() {}                    // the record is still there
    virtual void recordsChanged(Change /*what*/) {} // the last step of OK, Cancel and Delete
    virtual void deleteRecord();

    // Runs steps as the failure behaviour says: Report stops at the first that fails, with its text; Skip passes over
    // it; None lets the error out. A lost connection is reported whatever the behaviour, and then false is given.
    bool run(Failure failure, std::initializer_list<std::function<void()>> steps);

    QString fieldText(const QString &name) const;
    void setFieldText(const QString &name, const QString &text); // writes the record as typing does
    void focusField(const QString &name);
    // Between Add and the OK or Cancel that follows; an OK that is refused ends it too.
    bool isAdding() const { return m_adding; }
    // Whether the key in the key field is stored already.
    bool keyIsTaken();
    void fillCombo(const QString &name, const char *statement);
    Recordset &body() { return m_body.Recordset(); }
    Recordset &picker() { return m_pickerRows.Recordset(); }
    void refreshBody();
    // Shows the picker's rows for a statement; over the lines below the cell that is typed into.
    void openPicker(const char *statement, const Values &values);
    void showPicker();
    void hidePicker();
    Grid *bodyGrid() const { return m_bodyGrid; }
    const RecordFormSpec &spec() const { return m_spec; }
    // A step of several statements or batches: all of it is stored or nothing.
    void inOneTransaction(const std::function<void()> &work);
    // The same, and where another desktop changed or deleted a row since it was read, the user is asked and the work,
    // of which nothing is stored then, is done again. Gives false when the user goes back to what was typed.
    bool store(const std::function<void()> &work);

    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

    void setBusy(bool busy, bool adding = false); // buttons, locks and grids of Browse, or of Add and Edit
    void lockFields(bool locked);
    void lockField(const QString &name, bool locked);
    void focusFirstField();
    void refresh() { m_primary.Refresh(); }
    void add();
    BranchTree *tree() const { return m_tree; }
    // Text of one of the boxes above the tree, or what it stands for.
    QString defaultValue(const DefaultSpec &box) const;
    void showRecord();

private:
    void build();
    QWidget *buildField(const FieldSpec &field);
    QWidget *buildPage(int page);
    QWidget *buildButtons();
    void buildBody(QBoxLayout *layout);
    void buildDateFilter(QBoxLayout *layout);
    void buildFilter(QBoxLayout *layout);
    void buildTree(QBoxLayout *layout);
    void showStatement(const char *statement, const Values &values);
    QPushButton *addButton(QBoxLayout *layout, const ButtonSpec &button, const std::function<void()> &action);
    void bindField(const FieldSpec &field, QWidget *widget);
    void load();
    void showField(const FieldSpec &field);
    void fieldTyped(const FieldSpec &field, const QVariant &value);
    void keyChanged(bool typedOver);
    void startBodyRow();
    void deleteBodyRow();
    bool keyInField(QWidget *field, int key);
    void leftDateField(QWidget *field);
    void leftKeyField();
    void checkKey();
    void find();
    void branchChosen(const BranchSpec &branch, const QVariant &key);
    void rebuildTree();
    void fillList(QComboBox *combo, const char *statement, bool wholeRows);
    void finish(Change what);
    bool settle(const Conflict &conflict); // asks; gives whether to go on storing
    void recordMoved();
    bool tellLost();
    bool hasRecord();
    bool hasBadDate();
    bool missesRequiredField();
    void fillBlanks();

    void first();
    void last();
    void next();
    void previous();
    void edit();
    void save();
    void cancel();

    RecordFormSpec m_spec;
    DataControl m_primary, m_body, m_pickerRows;
    QHash<QString, QWidget *> m_fields;
    QHash<QString, QString> m_chosen; // what each combo held when it was entered
    QHash<QString, QPushButton *> m_buttons;
    Grid *m_list = nullptr, *m_bodyGrid = nullptr, *m_pickerGrid = nullptr;
    BranchTree *m_tree = nullptr;
    QVector<QWidget *> m_ways; // to other records; they wait until this one is done
    QTabWidget *m_tabs = nullptr;
    QLabel *m_state = nullptr;
    QString m_lost;    // what is to be told of a connection that was lost while the record was shown
    QString m_bodyKey; // whose lines the body shows
    bool m_busy = false;
    bool m_adding = false;
    bool m_isUnread = false;  // the record could not be read: the fields are empty, not the record
    bool m_showing = false;   // fields are being filled from the record
    bool m_composing = false; // an input method holds text that is not committed yet
};

} // namespace tradewick
