// What a query screen declares. The engine (query_screen) reads it; nothing here is a window.
//
// Statements stand in the server's own SQL. Their {placeholders} are the names of the controls among the criteria. A
// statement is put together from its parts as they are written, blanks or none between them.
#pragma once

#include "common/criteria.h"
#include "common/record_form_spec.h"

namespace tradewick
{

class QueryScreen;

// Opens an entry form at the record whose column has the value.
using OpenRecord = std::function<void(const QString &form, const QString &column, const QVariant &value)>;

// Two dates that begin thirty days ago and today.
struct DateRange {
    QString from, to;           // names of the controls
    QString caption, toCaption; // before each
    QString check{};            // the box that puts the range in force; empty: it always is
    QString checkCaption{};
};

// What a box among the criteria finds at once.
//   typed: with each change of a text that is more than blanks; chosen: with an item that was chosen.
struct QuickSearch {
    QString name;
    const char *typed = nullptr, *chosen = nullptr;
    const char *via = nullptr; // whose first row's columns are placeholders of `chosen`; without a row nothing changes
    QString empties{};         // the box that a choice here empties
};

struct ColumnText {
    enum Written { Always, AtLoad, ByFind, ByFindOfSome };
    QString column;
    QString text; // {count} is the number of records, {name} a column of the row of sums
    Written written = Always;
};

// A list of what was found, and what it was asked for with.
struct QueryListSpec {
    QString control, grid; // names of the record set and of the grid
    QString caption{};     // of its tab
    QVector<GridColumn> columns;
    const char *all = nullptr;                           // at load
    const char *find = nullptr, *within = nullptr;       // within: put behind where the second range is in force
    const char *order = nullptr, *orderWithin = nullptr; // the latter in that case; none: the same
    QVector<ColumnText> footers{};
    const char *sums = nullptr; // select of one row of sums, put together like `find`, without an order
    QString opens{};            // the entry form that a record is opened in
    QString key{};              // column by which it is found there
};

// Head, conditions and order of what a find asks for.
QString findStatement(const QueryListSpec &list, const QVector<Fragment> &fragments, bool isWithin);

struct QueryButton {
    QString name, caption, shortcut;
    std::function<void(QueryScreen &screen)> press;
    bool waits = false; // for the first find
    QString frame{};    // that it stands in among the criteria; empty: beside the other buttons
};

// A frame that a button shows; a choice among its options hides it and acts.
struct QueryOptions {
    QString frame, caption;
    QVector<QueryButton> options;
};

struct QuerySpec {
    QString name;    // of the screen
    QString caption; // of its window
    QString criteriaCaption = QStringLiteral("附属查询条件");
    QVector<DateRange> dates; // the first always in force; the second with its box
    QVector<Criterion> criteria;
    bool trimsTexts = false; // what stands in the boxes counts without blanks around it
    QVector<QuickSearch> quick;
    QVector<QueryListSpec> lists;
    // The entry form whose pages and lines show the record of the first list, locked.
    RecordFormSpec (*entry)() = nullptr;
    QVector<ChoiceSpec> choices;  // beside the buttons
    QVector<QueryButton> buttons; // beside those of every screen
    QueryOptions options;
};

} // namespace tradewick
