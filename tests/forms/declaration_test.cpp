// Every declaration against what was agreed of it, to the character: one text for each form in declared/, read here
// line by line. A change of either shows in the other. TRADEWICK_DECLARATIONS=FOLDER writes the texts of the program's
// declarations there: for a new form they are held against the business's own tables before they are kept.
#include "every_form.h"

#include <QDir>
#include <QFile>

#include <memory>

namespace tradewick
{

namespace
{

QString inWords(Failure failure)
{
    return failure == Failure::None ? "none" : failure == Failure::Report ? "report" : "skip";
}

class Description
{
public:
    explicit Description(const RecordFormSpec &spec) : m_spec(spec)
    {
        add("form", {spec.name, spec.caption, spec.statement, spec.control, spec.requiredTitle});
        add("buttons", spec.captions);
        for (const ButtonSpec &button : spec.buttons)
            add("button", {button.name, button.caption, button.shortcut});
        for (const PageSpec &page : spec.pages) {
            add("page", {page.caption});
            for (const FieldSpec &field : page.fields)
                add("field", {field.name, field.column, field.caption, field.type.offer.statement,
                              field.type.offer.items.join('/'), field.group, field.unit});
        }
        for (const GridColumn &column : spec.list)
            add("list", {column.column, column.caption});
        for (const QString &note : spec.notes)
            add("note", {note});
        add("number",
            {spec.numbering.prefix, spec.numbering.lookup, QString::number(spec.numbering.tail), spec.alsoNumbered});
        addPresets("default", spec.defaults);
        for (const RequiredField &field : spec.required)
            add("required", {field.name, field.message, QString::number(field.length), field.focus});
        for (const EmptyField &field : spec.whenEmpty)
            add("empty", {field.name, field.stored});
        for (const FieldCheck &check : spec.checks)
            add("check", {check.field, check.statement, check.message, check.focus});
        for (const PickSpec &pick : spec.picks) {
            add("pick", {pick.combo, pick.needs, pick.message});
            for (const PickStep &step : pick.steps) {
                add("step", {step.statement, step.clear, step.insert, step.offers, step.message,
                             step.trimmed ? "trimmed" : ""});
                addCopies(step.copies);
            }
        }
        addLines();
        for (const FilterSpec &filter : spec.filters)
            add("filter", {filter.name, filter.caption, filter.statement, filter.via, filter.trimmed ? "trimmed" : "",
                           filter.whileTyping});
        add("date filter", {spec.dateFilter.name, spec.dateFilter.caption, spec.dateFilter.statement});
        add("find", {spec.find.column, spec.find.prompt, spec.find.title, spec.find.notFound});
        const FailureGroup &group = spec.failures;
        add("failures", {inWords(group.next), inWords(group.previous), inWords(group.ends), inWords(group.add),
                         inWords(group.edit), inWords(group.deleteAndCancel), inWords(group.ok)});
        add("delete", {spec.deleteQuestion});
    }

    const QStringList &lines() const { return m_lines; }

private:
    void add(const QString &what, const QStringList &values)
    {
        QString line = what + u'\t' + values.join(u'\t');
        while (line.endsWith(u'\t'))
            line.chop(1);
        if (line != what)
            m_lines.append(line.replace(u'\n', u' '));
    }
    void addCopies(const Copies &copies)
    {
        for (const ColumnPair &pair : copies)
            add("copy", {pair.to, pair.from});
    }
    void addPresets(const QString &what, const QVector<Preset> &presets)
    {
        for (const Preset &preset : presets)
            add(what, {preset.column,
                       preset.daysFromToday ? QStringLiteral("today+%1").arg(*preset.daysFromToday) : preset.text});
    }
    void addLines()
    {
        const LinesSpec &lines = m_spec.lines;
        add("lines", {lines.statement, lines.deletion});
        for (const LineGridSpec &grid : lines.grids) {
            add("grid", {grid.name});
            for (const GridColumn &column : grid.columns)
                add("column", {column.column, column.caption});
            for (const DropDownSpec &drop : grid.dropDowns)
                add("drop-down", {drop.column, drop.name, drop.statement});
            for (const LineRule &rule : grid.rules) {
                add("rule", {rule.edited.join('/'), rule.column, rule.statement});
                addPresets("sets", rule.presets);
                addCopies(rule.copies);
            }
        }
        addPresets("start", lines.starts);
        for (const GridColumn &column : lines.lookup.columns)
            add("lookup", {column.column, column.caption});
        for (const LookupSearch &search : lines.lookup.searches)
            add("search", {search.column, search.statement, search.needs, search.notOwn});
        addCopies(lines.lookup.copies);
        addPresets("sets", lines.lookup.presets);
    }

    const RecordFormSpec &m_spec;
    QStringList m_lines;
};

} // namespace

class EveryDeclaration : public testing::TestWithParam<test::WalkedForm>
{
};

TEST_P(EveryDeclaration, IsToTheCharacterWhatWasAgreed)
{
    const RecordFormSpec &spec = GetParam().spec;
    const QString name = GetParam().name() + ".txt";
    const QStringList lines = Description(spec).lines();
    if (const QString folder = qEnvironmentVariable("TRADEWICK_DECLARATIONS"); !folder.isEmpty()) {
        QFile out(QDir(folder).filePath(name));
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(lines.join(u'\n').toUtf8() + '\n');
    }
    QFile agreed(QDir(QStringLiteral(DECLARED)).filePath(name));
    ASSERT_TRUE(agreed.open(QIODevice::ReadOnly)) << agreed.fileName().toStdString();
    const QStringList wanted = QString::fromUtf8(agreed.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (int line = 0; line < qMax(wanted.size(), lines.size()); ++line)
        EXPECT_EQ(lines.value(line).toStdString(), wanted.value(line).toStdString()) << "line " << line + 1;
}

INSTANTIATE_TEST_SUITE_P(All, EveryDeclaration, testing::ValuesIn(test::walkedForms()), test::nameOf);

} // namespace tradewick
