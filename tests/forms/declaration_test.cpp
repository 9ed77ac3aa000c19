// Every declaration against what was agreed of it, to the character: one text for each form in declared/.
#include "every_form.h"
#include "support/agreed_text.h"

namespace tradewick
{

namespace test
{

namespace
{

QString inWords(Failure failure)
{
    return failure == Failure::None ? "none" : failure == Failure::Report ? "report" : "skip";
}

// Each structure is taken apart into all its members: one more does not compile until it is told here.
class Description : public DeclaredLines
{
public:
    explicit Description(const RecordFormSpec &spec)
    {
        const auto &[name, caption, tabs, tab, statement, control, pages, key, pairsInRow, list, listName, listBelow,
                     notes, picture, captions, choices, buttons, numbering, alsoNumbered, defaults, required,
                     requiredTitle, whenEmpty, checks, picks, lines, filterCaption, filters, dateFilter, find, tree,
                     failures, startsOnLast, hasNavigation, navigationWhileBusy, disablesCombos, arrowsWrap, firstFocus,
                     adding, cancelDropsLines, cancelReturns, afterDelete, deleteQuestion, refilled, onLeft, onAdd,
                     onOk, beforeStore, onStore, onNew, onSaved, onCancel] = spec;
        const auto &[cleared, clickChooses] = picture;
        add("form", {name, caption, statement, control, requiredTitle},
            {{"tab", unless(-1, tab)},
             {"key", key},
             {"pairs", unless(1, pairsInRow)},
             {"list", listName == "TDBGrid3" ? QString() : listName},
             {"list below", when(listBelow)},
             {"cleared", cleared == " " ? QString() : u'“' + cleared + u'”'},
             {"click chooses", when(clickChooses)},
             {"filters", filterCaption},
             {"starts on last", when(startsOnLast)},
             {"no navigation", when(!hasNavigation)},
             {"navigation while busy", when(navigationWhileBusy)},
             {"disables combos", when(disablesCombos)},
             {"arrows stop", when(!arrowsWrap)},
             {"first focus", firstFocus},
             {"adding", unless(Adding::UntilOk, adding)},
             {"cancel drops lines", when(cancelDropsLines)},
             {"cancel returns", when(cancelReturns)},
             {"after delete", unless(AfterDelete::Next, afterDelete)},
             {"refilled", refilled.join('/')}});
        add("handlers", {},
            {{"left", when(bool(onLeft))},
             {"add", when(bool(onAdd))},
             {"ok", when(bool(onOk))},
             {"before store", when(bool(beforeStore))},
             {"store", when(bool(onStore))},
             {"new", when(bool(onNew))},
             {"saved", when(bool(onSaved))},
             {"cancel", when(bool(onCancel))}});
        add("buttons", captions);
        for (const auto &[button, text, shortcut, press, whileAdding, ofStored] : buttons)
            add("button", {button, text, shortcut},
                {{"while adding", when(whileAdding)}, {"of what waits, too", when(!ofStored)}});
        for (const auto &[box, text, items] : choices)
            add("choice", {box, text, items.join('/')});
        for (const auto &[text, fields] : pages) {
            add("page", {text});
            for (const FieldSpec &field : fields)
                addField(field);
        }
        addColumns("list", list);
        for (const QString &note : notes)
            add("note", {note});
        const auto &[prefix, lookup, tail, digits, monthly, keepsTooLong] = numbering;
        add("number", {prefix, lookup, QString::number(tail), alsoNumbered},
            {{"digits", unless(0, digits)}, {"monthly", when(monthly)}, {"drops too long", when(!keepsTooLong)}});
        addPresets("default", defaults);
        for (const auto &[field, message, length, focus, movesFocus] : required)
            add("required", {field, message, QString::number(length), focus}, {{"stays", when(!movesFocus)}});
        for (const auto &[field, stored] : whenEmpty)
            add("empty", {field, stored});
        for (const auto &[field, kind, query, message, clears, onlyAdding, focus] : checks)
            add("check", {field, query, message, focus},
                {{"kind", unless(FieldCheck::Date, kind)}, {"clears", when(clears)}, {"adding", when(onlyAdding)}});
        for (const auto &[combo, steps, needs, message, blank] : picks) {
            add("pick", {combo, needs, message}, {{"blank", blank}});
            for (const PickStep &step : steps)
                addStep(step);
        }
        addLines(lines);
        for (const auto &[box, text, query, via, trimmed, offers, whileTyping] : filters)
            add("filter", {box, text, query, via, when(trimmed, "trimmed"), whileTyping}, {{"offers", offers}});
        const auto &[picker, pickerCaption, dated] = dateFilter;
        add("date filter", {picker, pickerCaption, dated});
        const auto &[column, prompt, title, notFound] = find;
        add("find", {column, prompt, title, notFound});
        addTree(tree);
        const auto &[next, previous, ends, add_, edit, ok] = failures;
        add("failures", {inWords(next), inWords(previous), inWords(ends), inWords(add_), inWords(edit), inWords(ok)});
        add("delete", {deleteQuestion});
        for (const RecordFormSpec &below : tabs)
            add("tab", {below.name});
    }

private:
    void addField(const FieldSpec &spec)
    {
        const auto &[name, column, caption, type, span, group, unit, joined, hidden, starts] = spec;
        const auto &[kind, offer] = type;
        const auto &[statement, items, beside, used] = offer;
        add("field", {name, column, caption, statement, items.join('/'), group, unit},
            {{"kind", unless(FieldKind::Text, kind)},
             {"beside", beside},
             {"used", when(used)},
             {"span", unless(1, span)},
             {"joined", when(joined)},
             {"hidden", when(hidden)},
             {"starts", unless(FrameStart::WithGroup, starts)}});
    }
    void addColumns(const QString &what, const QVector<GridColumn> &columns)
    {
        for (const auto &[column, caption] : columns)
            add(what, {column, caption});
    }
    void addCopies(const Copies &copies, const QString &what = "copy")
    {
        for (const auto &[to, from] : copies)
            add(what, {to, from});
    }
    void addPresets(const QString &what, const QVector<Preset> &presets)
    {
        for (const auto &[column, text, days] : presets)
            add(what, {column, days ? QStringLiteral("today+%1").arg(*days) : text});
    }
    void addStep(const PickStep &spec)
    {
        const auto &[statement, copies, trimmed, remembers, clear, insert, offers, none, message, also] = spec;
        add("step", {statement, clear, insert, offers, message, when(trimmed, "trimmed")},
            {{"none", unless(WhenNone::GoOn, none)}, {"also", when(bool(also))}});
        addCopies(copies);
        addCopies(remembers, "remembers");
    }
    void addLines(const LinesSpec &spec)
    {
        const auto &[statement, deletion, key, grids, starts, startsNeedKey, lookup, followsChoices] = spec;
        add("lines", {statement, deletion},
            {{"key", key}, {"need key", when(startsNeedKey)}, {"follow choices", when(followsChoices)}});
        for (const auto &[name, columns, enterColumns, dropDowns, rules, page, above, whileAdding, deletesWhileLocked,
                          title] : grids) {
            add("grid", {name},
                {{"enter", enterColumns.join('/')},
                 {"page", unless(-1, page)},
                 {"above", above},
                 {"in Edit alone", when(!whileAdding)},
                 {"locked, locked", when(!deletesWhileLocked)},
                 {"title", title == "商品明细" ? QString() : title}});
            addColumns("column", columns);
            for (const auto &[column, box, offered] : dropDowns)
                add("drop-down", {column, box, offered});
            for (const auto &[edited, column, value, presets, query, copies] : rules) {
                QStringList asked; // what the value is made of
                if (value)
                    value(LineNumbers([&asked](const char *of) {
                        asked.append(of);
                        return 1.0;
                    }));
                asked.removeDuplicates();
                asked.sort(); // operands are worked out in any order
                add("rule", {edited.join('/'), column, query}, {{"value", asked.join('/')}});
                addPresets("sets", presets);
                addCopies(copies);
            }
        }
        addPresets("start", starts);
        const auto &[columns, searches, copies, presets, asEdited, firstColumn, first, title] = lookup;
        addColumns("lookup", columns);
        for (const auto &[column, query, needs, ownColumn, notOwn] : searches)
            add("search", {column, query, needs, notOwn}, {{"own", ownColumn}});
        addCopies(copies);
        addPresets("sets", presets);
        add("lookup's", {},
            {{"as edited", asEdited},
             {"first", firstColumn},
             {"of", first},
             {"title", title == "商品选择" ? QString() : title}});
    }
    void addTree(const TreeSpec &spec)
    {
        const auto &[root, count, branches, notFound, notFoundTitle, icon, firstWhenNotFound, chosen, defaults] = spec;
        add("tree", {root, count, notFound, notFoundTitle, chosen},
            {{"icon", unless(MessageIcon::None, icon)}, {"then the first", when(firstWhenNotFound)}});
        addBranches(branches);
        for (const auto &[name, caption, statement, field] : defaults)
            add("takes over", {name, caption, statement, field});
    }
    void addBranches(const std::vector<BranchSpec> &branches)
    {
        for (const auto &[tag, statement, columns, find, keyLength, below] : branches) {
            add("branch", {tag, statement, columns.join('/'), find}, {{"length", unless(0, keyLength)}});
            addBranches(below);
        }
    }
};

} // namespace

class EveryDeclaration : public testing::TestWithParam<WalkedForm>
{
};

TEST_P(EveryDeclaration, IsToTheCharacterWhatWasAgreed)
{
    expectAgreed(QStringLiteral(DECLARED "/") + GetParam().name() + ".txt", Description(GetParam().spec).lines());
}

INSTANTIATE_TEST_SUITE_P(All, EveryDeclaration, testing::ValuesIn(walkedForms()), nameOf);

// What no declaration says any more goes out of the engine, too.
TEST(Declarations, HaveNoMemberThatNoneUses)
{
    for (const WalkedForm &form : walkedForms())
        Description{form.spec};
    expectAllUsed(DeclaredLines::members());
}

} // namespace test

} // namespace tradewick
