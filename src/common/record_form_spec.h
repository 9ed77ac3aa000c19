// What an entry form declares. The engine (record_form, field_panel, lines_panel) reads it; nothing here is a window.
//
// Statements stand in the server's own SQL. Their {placeholders} are the columns of the head's current record, in small
// letters, and what is said beside the part that the statement belongs to.
#pragma once

#include "common/message_icon.h"
#include "common/numbering.h"
#include "data/column_pairs.h"
#include "data/grid_column.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>
#include <optional>
#include <vector>

namespace tradewick
{

class RecordForm;
class Row;

// What a handler does with an error of the database.
enum class Failure {
    None,   // unhandled: the process stops
    Report, // a message with the error's text; the handler ends
    Skip,   // the failing step is passed over, the handler goes on
};

struct FailureGroup {
    Failure next = Failure::Report, previous = Failure::Report, ends = Failure::None, add = Failure::Report,
            edit = Failure::Report, ok = Failure::Report;
};
inline constexpr FailureGroup failuresOfDocuments{.next = Failure::None};

// ---- fields ----

enum class FieldKind { Text, LongText, Date, Combo, Check, Picture };

// What a combo box offers: the first column of a statement's rows, or texts that are fixed.
struct Offer {
    const char *statement = nullptr;
    QStringList items{};
    const char *beside = nullptr; // of texts and what stands beside each in the list: a code and its name
    bool used = false;            // values that the records have: another one is as good, and stays as it is typed
};

struct FieldType {
    FieldKind kind = FieldKind::Text;
    Offer offer{};
};

namespace field
{
inline const FieldType text{}, longText{FieldKind::LongText}, date{FieldKind::Date}, check{FieldKind::Check},
    picture{FieldKind::Picture};
inline FieldType combo(const char *statement = nullptr, const char *beside = nullptr)
{
    return {FieldKind::Combo, {statement, {}, beside}};
}
inline FieldType combo(const QStringList &items)
{
    return {FieldKind::Combo, {nullptr, items}};
}
inline FieldType used(const char *statement)
{
    return {FieldKind::Combo, {.statement = statement, .used = true}};
}
} // namespace field

// Where a field begins a new frame: where its group does, or in any case, below the frame before or beside it.
enum class FrameStart { WithGroup, Below, Beside };

struct FieldSpec {
    QString name;    // of the control: "Text1(0)"
    QString column;  // of the record; empty: what is typed or chosen there is stored nowhere
    QString caption; // as given, colon included
    FieldType type{};
    int span = 1;        // label-and-field pairs it takes in its row
    QString group{};     // caption of the frame around fields that stand together; empty: no frame
    QString unit{};      // text behind the field
    bool joined = false; // behind the field before it, under that one's caption
    bool hidden = false;
    FrameStart starts = FrameStart::WithGroup;
};

struct PageSpec {
    QString caption; // of the tab; a form of one page has none
    QVector<FieldSpec> fields;
};

// A value that a new record or line begins with: a text in which {name} stands for the text of a control, blanks around
// it cut, and {#} for the number of lines; or a date. An empty text is stored as such, not as Null.
struct Preset {
    QString column;
    QString text{};
    std::optional<int> daysFromToday{};
};
inline Preset today(const QString &column, int days = 0)
{
    return {column, {}, days};
}

struct RequiredField {
    QString name, message; // an empty message stops the save without a word
    int length = 0;        // that the text must have; 0: any but none
    QString focus{};       // the field that takes the focus; empty: the one that misses something
    bool movesFocus = true;
};
// The code forms ask for both alike, and go back to the code.
inline QVector<RequiredField> codeAndName()
{
    const QString message = QStringLiteral("编号或名称不能为空");
    return {{"Text(0)", message}, {"Text(1)", message, 0, "Text(0)"}};
}
inline QVector<RequiredField> codeWithoutAWordAndName()
{
    QVector<RequiredField> both = codeAndName();
    both.first().message.clear();
    return both;
}

struct EmptyField {
    QString name, stored = QStringLiteral("  "); // two blanks: later tests for empty fail
};

// What is asked of a field's text when it is left in Add or Edit; where it fails, the message comes and the focus goes
// back. Blank is accepted. Fields of dates and of columns of numbers are checked without a word here, at OK as well.
struct FieldCheck {
    enum Kind { Date, Number, NotTaken };
    QString field;
    Kind kind = Date;
    const char *statement = nullptr; // NotTaken: a row of it, with {text}, refuses the text
    QString message{};               // empty: the system's own for dates and numbers
    bool clears = false;             // what was typed goes
    bool onlyAdding = false;
    QString focus{}; // the field that takes the focus; empty: the one that was left
};
// A key typed for a new record that is there already is told, and taken away again.
inline FieldCheck isNew(const QString &field, const char *statement, const QString &message)
{
    return {field, FieldCheck::NotTaken, statement, message, true, true};
}

// ---- choosing in a combo box ----

enum class WhenNone { GoOn, Stop, Cancel };

// One step of what a choice does. All that the steps write is one transaction, behind all that they read.
//   statement: with {text}, the chosen text, and {key}, the head's key, both without blanks around them, and what the
//     steps before it remembered.
struct PickStep {
    const char *statement = nullptr;
    Copies copies{}; // from the first row into the head
    bool trimmed = false;
    Copies remembers{};           // columns of the first row that are placeholders of the steps behind it
    const char *clear = nullptr;  // removes lines, where the step found a row or inserts
    const char *insert = nullptr; // makes a line of each row; its placeholders are the row's columns too, and {i}, the
                                  // row's number from 1, and {n}, the number behind that of the lines which were there,
                                  // a blank before it: one for all rows
    QString offers{};             // the combo box that offers the rows from now on, keeping its text
    WhenNone none = WhenNone::GoOn;
    QString message{};                                              // told where there is no row
    std::function<void(RecordForm &form, const Row *first)> also{}; // with the first row, null where there is none
};

struct PickSpec {
    QString combo;
    QVector<PickStep> steps;
    QString needs{}, message{}; // the field that must be filled before this one is entered, and what is said otherwise
    QString blank{};            // what is said where a blank is chosen, which is a Cancel; empty: it is as any text
};

// ---- lines ----

// The numbers of a line, by column; a text that is none counts as the digits it begins with.
class LineNumbers
{
public:
    explicit LineNumbers(std::function<double(const char *column)> number) : m_number(std::move(number)) {}
    double operator[](const char *column) const { return m_number(column); }

private:
    std::function<double(const char *column)> m_number;
};

// What follows from an edit of one of the columns. Rules run in their order.
struct LineRule {
    QStringList edited;
    QString column{}; // that gets
    std::optional<double> (*value)(const LineNumbers &line) = nullptr;
    QVector<Preset> presets{};
    const char *statement = nullptr; // with the line's columns; its first row's columns are copied into the line
    Copies copies{};
};

// A list that drops down below the cells of a column.
struct DropDownSpec {
    QString column, name;
    const char *statement = nullptr; // whose first column fills it
};

struct LineGridSpec {
    QString name = QStringLiteral("TDBGrid1");
    QVector<GridColumn> columns;
    QStringList enterColumns{}; // that Enter goes through; none: all
    QVector<DropDownSpec> dropDowns{};
    QVector<LineRule> rules{};
    int page = -1;           // of the tabs, that holds the grid; -1: below the fields
    QString above{};         // a field that begins a frame or a row of its own: the grid stands above that
    bool whileAdding = true; // takes text in Add, else in Edit alone
    // A refused OK locks the grid; the Delete key removes lines then all the same.
    bool deletesWhileLocked = true;
    QString title = QStringLiteral("商品明细"); // what a screen reader says
};

// Typing into a column of the lines searches.
//   statement: with {typed}, the columns of the line beside those of the head, and the text typed under the name of its
//     column.
struct LookupSearch {
    QString column;
    const char *statement = nullptr;
    QString needs{};               // a column of the line without which nothing is searched
    QString ownColumn{}, notOwn{}; // a column that must hold the head's key, and what is said otherwise
};

// The list that is searched, and what a row chosen there does to the line.
struct LookupSpec {
    QVector<GridColumn> columns; // of TDBGrid2
    QVector<LookupSearch> searches;
    Copies copies;
    QVector<Preset> presets{};
    QString asEdited{};             // the column whose rules run then
    QString firstColumn{}, first{}; // rows whose column holds that column of the head come before all others
    QString title = QStringLiteral("商品选择"); // what a screen reader says
};

// The lines of a head are one record set, whatever the number of grids that show it: what is typed in one grid stands
// in the others, and only the rules of its own grid follow from it.
struct LinesSpec {
    const char *statement = nullptr; // with {key}, the text of the head's first field
    const char *deletion = nullptr;  // removes all lines of a head, with {key}
    QString key;                     // the lines' column that holds the head's key
    QVector<LineGridSpec> grids;
    QVector<Preset> starts{}; // of a new line
    bool startsNeedKey = false;
    LookupSpec lookup{};
    bool followsChoices = false; // each choice in a combo box reads them again, unless some wait to be stored
};

// ---- the list of records ----

// A box over the list: each change of its text shows the records of a statement, or each choice among what it offers.
struct FilterSpec {
    QString name, caption;
    const char *statement = nullptr; // with {text}
    const char *via =
        nullptr; // whose first row's columns are placeholders of the statement; without a row nothing changes
    bool trimmed = true;
    // It is a combo box, of the first column of these rows; a choice empties the other ones.
    const char *offers = nullptr;
    const char *whileTyping = nullptr; // of a combo box: with {text}, a text typed that is not blank shows its records
};

struct DateFilterSpec {
    QString name, caption;           // caption empty: there is none
    const char *statement = nullptr; // with {date}
};

// Cmd_find asks for a value and goes to the first record that has it.
struct FindSpec {
    QString column, prompt, title, notFound;
};

// One kind of branch of the tree beside a record: what stands under the root, or under a branch of the kind above.
struct BranchSpec {
    QString tag;
    const char *statement = nullptr; // its placeholders are the columns of the branch above
    QStringList columns;             // whose values, joined by "|", are the text of a branch
    QString find;                    // column of the record set that a click searches; empty: a click finds nothing
    int keyLength = 0;               // characters at the end of the text that are searched for; 0: the column's value
    std::vector<BranchSpec> below{};
};

// A box above the tree that offers a value for the next new record.
struct DefaultSpec {
    QString name, caption;           // of the combo box
    const char *statement = nullptr; // columns are joined by "|" in the list, the first is what is taken over
    QString field;                   // that it is written to
};

struct TreeSpec {
    QString root;                // text of the root, whose key is "ROOT"
    const char *count = nullptr; // number of rows altogether
    std::vector<BranchSpec> branches;
    QString notFound, notFoundTitle;
    MessageIcon notFoundIcon = MessageIcon::None;
    bool firstWhenNotFound = false; // the first record is shown then
    QString chosen;                 // name of the box that shows the chosen branch; empty: there is none
    QVector<DefaultSpec> defaults;
};

// ---- the whole form ----

struct PictureSpec {
    QString cleared = QStringLiteral(" "); // what Command2 leaves as the path
    bool clickChooses = false;             // a click on the picture acts like Command1
};

struct ButtonSpec {
    QString name, caption, shortcut;
    std::function<void(RecordForm &form)> press;
    bool whileAdding = false; // enabled in Browse and in Add, else in Browse alone
    bool ofStored = true;     // acts upon the record as the database has it; one that waits is told instead
};

// A box beside the buttons from which the user chooses what one of them does, which asks RecordForm::choice. It takes
// any other text too.
struct ChoiceSpec {
    QString name, caption;
    QStringList items;
};

// Which record a deletion shows.
enum class AfterDelete {
    Next,             // the one behind; behind the last the first
    LastBehindLast,   // the one behind; behind the last the last one
    SecondBehindLast, // the one behind; behind the last the second one
    Last,
};

// When the form stops to count as adding, and what its Cancel does until then.
enum class Adding {
    UntilOk,     // a refused one too
    UntilStored, // a refused OK leaves it
    UntilCancel, // OK leaves it: a later Cancel in Edit counts as that of an Add
};

// A window of several record sets declares its name, its caption and `tabs`, and nothing else: each of these is a form
// of its own on a tab of that number. They lock and unlock their fields together, and what ends the adding of one ends
// it for all; a field's name is borne by one of them alone.
struct RecordFormSpec {
    QString name;    // of the form
    QString caption; // of its window or tab
    std::vector<RecordFormSpec> tabs{};
    int tab = -1; // its number, which its buttons bear: "CmdOK(1)"; -1: a window of its own
    const char *statement = nullptr;
    QString control = QStringLiteral("Adoprimaryrs");
    QVector<PageSpec> pages;
    QString key;        // the field that a record is known by; empty: the first
    int pairsInRow = 1; // label-and-field pairs side by side
    QVector<GridColumn> list;
    QString listName = QStringLiteral("TDBGrid3");
    bool listBelow = false; // the fields, which are few, else beside them
    QStringList notes;      // texts below the fields
    PictureSpec picture;    // of the one field of that kind
    QStringList captions{"前端", "向前", "向后", "后端", "新增", "删除", "编辑", "确认", "取消", "返回"};
    QVector<ChoiceSpec> choices;
    QVector<ButtonSpec> buttons; // beside those of every form

    NumberRule numbering; // without a prefix the user types the key
    QString alsoNumbered; // a second column that gets the number
    QVector<Preset> defaults;
    QVector<RequiredField> required;
    QString requiredTitle = QStringLiteral("提示");
    QVector<EmptyField> whenEmpty; // what is stored for fields with nothing in them
    QVector<FieldCheck> checks;
    QVector<PickSpec> picks;
    LinesSpec lines;

    QString filterCaption; // of the frame around the filters; empty: no frame
    QVector<FilterSpec> filters;
    DateFilterSpec dateFilter;
    FindSpec find;
    TreeSpec tree;

    FailureGroup failures;
    bool startsOnLast = false;
    bool hasNavigation = true; // buttons for the way through the records
    bool navigationWhileBusy = false;
    bool disablesCombos = false; // what locks fields disables combo boxes
    bool arrowsWrap = true;      // from the last field of an array to the first and back
    QString firstFocus;          // where Add and Edit begin; empty: the key
    Adding adding = Adding::UntilOk;
    bool cancelDropsLines = false; // Cancel while adding removes the lines that are shown
    bool cancelReturns = false;    // Cancel of an Add shows the record that it left; else the first
    AfterDelete afterDelete = AfterDelete::Next;
    QString deleteQuestion = QStringLiteral("是否真的删除当前记录 ？"); // empty: nothing is asked
    QStringList refilled; // combo boxes that read what they offer again after OK, Cancel and Delete

    // What no part above can say, each in the course of its handler.
    // A field is left, in whatever state, and passes the checks above; gives whether it passes. At OK it is asked of
    // the field that is typed into.
    std::function<bool(RecordForm &form, const QString &field)> onLeft;
    std::function<void(RecordForm &form)> onAdd;       // the new record stands
    std::function<void(RecordForm &form)> onOk;        // nothing is checked yet
    std::function<void(RecordForm &form)> beforeStore; // nothing of the record is written yet, in its transaction
    std::function<void(RecordForm &form)> onStore;     // the record and its lines are written, in the same transaction
    // The new record in that row is written, in the same transaction; the one that is shown, or one that waited.
    std::function<void(RecordForm &form, int row)> onNew;
    std::function<void(RecordForm &form)> onSaved;  // all is stored
    std::function<void(RecordForm &form)> onCancel; // the record is still there
};

} // namespace tradewick
