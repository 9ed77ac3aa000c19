// Every query screen against what was agreed of it, to the character: one text for each in declared/.
#include "queries/queries.h"
#include "shell/dispatch.h"
#include "support/agreed_text.h"

namespace tradewick::test
{

namespace
{

// Each structure is taken apart into all its members: one more does not compile until it is told here.
class Description : public DeclaredLines
{
public:
    explicit Description(const QuerySpec &spec)
    {
        const auto &[name, caption, criteriaCaption, dates, criteria, trimsTexts, quick, lists, entry, choices, buttons,
                     options] = spec;
        add("query", {name, caption, criteriaCaption, entry ? entry().name : QString()},
            {{"trims texts", when(trimsTexts)}});
        for (const auto &[from, to, fromCaption, toCaption, check, checkCaption] : dates)
            add("dates", {from, to, fromCaption, toCaption, check, checkCaption});
        for (const auto &[box, text, offers, fragment, printed, frame] : criteria)
            add("criterion", {box, text, offers, fragment, frame}, {{"printed", printed}});
        for (const auto &[box, typed, chosen, via, empties] : quick)
            add("quick", {box, typed, chosen, via, empties});
        for (const QueryListSpec &list : lists)
            addList(list);
        for (const auto &[box, text, items] : choices)
            add("choice", {box, text, items.join('/')});
        for (const auto &[button, text, shortcut, press, waits, frame] : buttons)
            add("button", {button, text, shortcut}, {{"waits", when(waits)}, {"frame", frame}});
        const auto &[optionsFrame, optionsCaption, optionButtons] = options;
        add("options", {optionsFrame, optionsCaption});
        for (const QueryButton &option : optionButtons) // says nothing else
            add("option", {option.name, option.caption});
    }

private:
    void addList(const QueryListSpec &spec)
    {
        const auto &[control, grid, caption, columns, all, find, within, order, orderWithin, footers, sums, opens,
                     key] = spec;
        add("list", {control, grid, caption, all, find, within, order, orderWithin, sums, opens, key});
        for (const auto &[column, text] : columns)
            add("column", {column, text});
        for (const auto &[column, text, written] : footers)
            add("footer", {column, text}, {{"written", unless(ColumnText::Always, written)}});
    }
};

} // namespace

TEST(QueryDeclarations, AreToTheCharacterWhatWasAgreed)
{
    for (const DeclaredQuery &query : declaredQueries())
        expectAgreed(QStringLiteral(DECLARED "/") + query.name + ".txt", Description(query.spec()).lines());
    // What no screen says any more goes out of the engine, too.
    expectAllUsed(DeclaredLines::members());
}

} // namespace tradewick::test
