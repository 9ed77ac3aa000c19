// What a record form's declared rules do: values that new records begin with, choices in combo boxes, checks of fields
// that are left.
#include "common/combo_field.h"
#include "common/dialogs.h"
#include "common/edit_steps.h"
#include "common/field_panel.h"
#include "common/lines_first.h"
#include "common/record_form.h"
#include "common/record_list.h"
#include "data/copies.h"
#include "data/date_text.h"
#include "data/number_of.h"

#include <QPushButton>

#include <algorithm>
#include <stdexcept>

namespace tradewick
{

LinesPanel &RecordForm::linesPanel() const
{
    if (!m_lines)
        throw std::logic_error("the form " + m_spec.name.toStdString() + " has no lines");
    return *m_lines;
}

BranchTree *RecordForm::tree() const
{
    return m_list->tree();
}

QString RecordForm::text(const QString &field) const
{
    return m_panel->text(field);
}

QString RecordForm::choice(const QString &name) const
{
    const ComboField *combo = m_choices.value(name);
    if (!combo)
        throw std::logic_error("the form " + m_spec.name.toStdString() + " has no choice " + name.toStdString());
    return combo->currentText().trimmed();
}

void RecordForm::setText(const QString &field, const QString &text)
{
    m_panel->setText(field, text);
}

void RecordForm::focusField(const QString &field)
{
    m_panel->focus(field);
}

void RecordForm::lockField(const QString &field)
{
    m_panel->control(field).setLocked(true);
}

void RecordForm::lockFields(bool locked)
{
    m_panel->lock(locked);
}

void RecordForm::refreshLines()
{
    if (m_lines)
        m_lines->refresh();
}

// ---- values ----

Values RecordForm::valuesOf(Recordset &set)
{
    Values values;
    if (!set.isOpen() || set.BOF() || set.EOF_())
        return values;
    const QStringList columns = set.columns();
    for (const QString &column : columns)
        values.insert(column, set.Fields(column).text());
    return values;
}

Values RecordForm::headValues()
{
    return valuesOf(records());
}

QVariant RecordForm::filled(const Preset &preset)
{
    if (preset.daysFromToday)
        return dateText(QDate::currentDate().addDays(*preset.daysFromToday));
    if (preset.text.isEmpty())
        return QStringLiteral(""); // which is no Null
    QString whole;
    for (qsizetype at = 0; at < preset.text.size();) {
        const qsizetype close = preset.text[at] == u'{' ? preset.text.indexOf(u'}', at) : -1;
        if (close < 0) {
            whole += preset.text[at++];
            continue;
        }
        const QString name = preset.text.mid(at + 1, close - at - 1);
        whole += name == u'#' ? QString::number(lines().RecordCount()) : text(name).trimmed();
        at = close + 1;
    }
    return whole;
}

std::optional<Row> RecordForm::firstRow(const char *statement, const Values &values)
{
    const auto rows = connection()->rows(QString::fromUtf8(statement), values);
    return rows.isEmpty() ? std::nullopt : std::optional(rows.first());
}

bool RecordForm::copyFirst(const char *statement, const Values &values, const Copies &copies, Recordset &to,
                           bool trimmed)
{
    const std::optional<Row> row = firstRow(statement, values);
    if (row)
        copyColumns(*row, to, copies, trimmed);
    return row.has_value();
}

QStringList RecordForm::firstColumn(const char *statement, const Values &values)
{
    QStringList items;
    connection()->read(
        QString::fromUtf8(statement), values, [](const QStringList &) {},
        [&](const QVariantList &row) {
            if (!row.first().isNull()) // which nobody can choose
                items.append(row.first().toString());
            return true;
        });
    return items;
}

QStringList RecordForm::offered(const char *statement)
{
    QStringList items;
    run(Failure::Report, {[&] { items = firstColumn(statement, {}); }});
    return items;
}

void RecordForm::offer(const QString &combo, const char *statement)
{
    m_panel->offer(combo, firstColumn(statement, {}));
    const char *beside = m_panel->field(combo).type.offer.beside;
    if (!beside)
        return;
    QHash<QString, QString> names;
    for (const Row &row : connection()->rows(QString::fromUtf8(beside), {}))
        names.insert(row.values().first().toString(), row.values().last().toString());
    m_panel->control(combo).combo()->setBeside(names);
}

// A country typed for the first time is offered from the next record on.
void RecordForm::refill()
{
    for (const PageSpec &page : std::as_const(m_spec.pages))
        for (const FieldSpec &field : page.fields)
            if (m_spec.refilled.contains(field.name))
                offer(field.name, field.type.offer.statement);
}

// ---- choices ----

bool RecordForm::isKey(const QString &field) const
{
    return m_panel->field(field).column == m_panel->field(keyField()).column;
}

void RecordForm::fieldTyped(const QString &field)
{
    if (isKey(field) && m_lines && hasRecord())
        m_lines->keyTyped(text(keyField()), records().isNew(records().absolutePosition()));
}

void RecordForm::fieldEntered(const QString &field)
{
    m_entered = field;
    m_textEntered = text(field);
    m_steps->enter(field);
    for (const PickSpec &pick : std::as_const(m_spec.picks)) {
        if (pick.combo != field || !isBusy() || pick.needs.isEmpty() || !text(pick.needs).trimmed().isEmpty())
            continue;
        // Behind the move of the focus, which a message would take along.
        QMetaObject::invokeMethod(
            this,
            [this, &pick] {
                dialogs().message(this, pick.message, systemTitle(), MessageIcon::Critical);
                focusField(pick.needs);
            },
            Qt::QueuedConnection);
    }
}

void RecordForm::fieldChosen(const QString &field)
{
    if (!isBusy() || !hasRecord())
        return;
    beginEdit({field});
    run(Failure::Report, {[this] { takeFreeNumber(); }});
    const auto pick = std::find_if(m_spec.picks.cbegin(), m_spec.picks.cend(),
                                   [&](const PickSpec &one) { return one.combo == field; });
    if (pick != m_spec.picks.cend())
        fillFrom(*pick);
    if (m_spec.lines.followsChoices && !lines().hasPendingChanges())
        run(Failure::Report, {[this] { refreshLines(); }});
}

void RecordForm::fillFrom(const PickSpec &pick)
{
    const QString &field = pick.combo;
    if (!pick.blank.isEmpty() && text(field).trimmed().isEmpty()) {
        dialogs().message(this, pick.blank, systemTitle(), MessageIcon::Critical);
        cancel();
        return;
    }
    const bool writes = std::any_of(pick.steps.cbegin(), pick.steps.cend(),
                                    [](const PickStep &step) { return step.clear || step.insert; });
    if (writes && tellTakenKey()) {
        m_panel->control(field).combo()->forgetChoice();
        return;
    }
    struct Write {
        const char *statement;
        Values values;
    };
    QVector<Write> writing;
    Values remembered;
    bool clears = false, cancelled = false;
    const auto take = [&](const PickStep &step) {
        Values values = headValues();
        values.insert(remembered);
        values.insert("text", text(field).trimmed());
        values.insert("key", text(keyField()).trimmed());
        const QStringList offers = step.offers.isEmpty() ? QStringList() : firstColumn(step.statement, values);
        const auto rows = connection()->rows(QString::fromUtf8(step.statement), values);
        if (rows.isEmpty() && !step.message.isEmpty())
            dialogs().message(this, step.message, systemTitle(), MessageIcon::Critical);
        cancelled = rows.isEmpty() && step.none == WhenNone::Cancel;
        if (rows.isEmpty() && step.none != WhenNone::GoOn)
            return false;
        if (!rows.isEmpty() && !step.copies.isEmpty())
            copyColumns(rows.first(), records(), step.copies, step.trimmed);
        for (const ColumnPair &pair : step.remembers)
            remembered.insert(pair.to, rows.isEmpty() ? QVariant() : rows.first()[pair.from]);
        if (!step.offers.isEmpty())
            m_panel->offer(step.offers, offers);
        if (step.clear && (step.insert || !rows.isEmpty())) {
            writing.append({step.clear, values});
            clears = true;
        }
        int number = 0;
        for (const Row &row : rows) {
            if (!step.insert)
                break;
            Values line = values;
            line.insert(row.named());
            line.insert("i", QString::number(++number));
            line.insert("n", u' ' + QString::number(lines().RecordCount() + 1));
            writing.append({step.insert, line});
        }
        if (step.also)
            step.also(*this, rows.isEmpty() ? nullptr : &rows.first());
        return true;
    };
    run(Failure::Report, {[&] {
            for (const PickStep &step : pick.steps)
                if (!take(step))
                    break;
            if (writing.isEmpty())
                return;
            const bool stored = store([&] {
                if (!clears) // lines typed before go the way of those that come in
                    lines().UpdateBatch();
                for (const Write &write : writing)
                    connection()->Execute(QString::fromUtf8(write.statement), write.values);
            });
            if (stored)
                m_lines->refresh();
        }});
    if (cancelled)
        cancel();
}

// ---- checks ----

FieldCheck RecordForm::checkOf(const FieldSpec &field)
{
    const auto declared = std::find_if(m_spec.checks.cbegin(), m_spec.checks.cend(), [&](const FieldCheck &check) {
        return check.field == field.name && check.kind != FieldCheck::NotTaken;
    });
    if (declared != m_spec.checks.cend())
        return *declared;
    if (field.type.kind == FieldKind::Date)
        return {field.name, FieldCheck::Date};
    const int column = field.column.isEmpty() ? -1 : records().columnIndex(field.column);
    if (column >= 0 && records().columnKind(column) == ColumnKind::Number)
        return {field.name, FieldCheck::Number};
    return {};
}

// Tells of a text that does not pass, and goes where it is to be mended.
bool RecordForm::passes(const FieldCheck &check)
{
    if (check.field.isEmpty() || (check.onlyAdding && !m_adding))
        return true;
    const QString typed = text(check.field);
    if (typed.trimmed().isEmpty())
        return true;
    QString message = check.message;
    switch (check.kind) {
    case FieldCheck::Date: {
        const QDate date = dateFromText(typed);
        if (date.isValid()) {
            // A date that is kept as a text stays as it was typed.
            if (m_panel->field(check.field).type.kind == FieldKind::Date && dateText(date) != typed)
                setText(check.field, dateText(date));
            return true;
        }
        message = message.isEmpty() ? badDate() : message;
        break;
    }
    case FieldCheck::Number: {
        if (const auto number = numberOf(typed)) {
            // People write "1,234.50"; what stands in the record is the number.
            if (Recordset::text(*number, ColumnKind::Number) != typed)
                setText(check.field, Recordset::text(*number, ColumnKind::Number));
            return true;
        }
        message = message.isEmpty() ? badNumber() : message;
        break;
    }
    case FieldCheck::NotTaken: {
        bool isTaken = false;
        run(Failure::Report, {[&] { isTaken = firstRow(check.statement, {{"text", typed}}).has_value(); }});
        if (!isTaken)
            return true;
        break;
    }
    }
    dialogs().message(this, message, systemTitle(), MessageIcon::Critical);
    if (check.clears)
        setText(check.field, {});
    focusField(check.focus.isEmpty() ? check.field : check.focus);
    return false;
}

void RecordForm::fieldLeft(const QString &field)
{
    const QWidget *control = m_panel->control(field).widget();
    if (control->hasFocus() || m_buttons["Cmdcancel"]->hasFocus())
        return;
    if (m_entered == field)
        m_entered.clear();
    if (isBusy() && !passesWhenLeft(field))
        return;
    if (m_spec.onLeft && field != m_asked)
        m_spec.onLeft(*this, field);
}

// A shortcut key leaves no field, and a click on OK comes before the field is told that it was left: that is passed
// over then, for the record may be stored by that time.
bool RecordForm::passesWhatIsTyped()
{
    if (!m_spec.onLeft || m_entered.isEmpty() || text(m_entered) == m_textEntered)
        return true;
    m_asked = m_entered;
    return m_spec.onLeft(*this, m_asked);
}

bool RecordForm::passesWhenLeft(const QString &field)
{
    if (isKey(field) && m_lines && hasRecord()) {
        // Lines bear the key without blanks around it; one before it would part them from their head.
        if (QString key = text(field); key.startsWith(u' ')) {
            while (key.startsWith(u' '))
                key.remove(0, 1);
            setText(field, key);
        }
        const bool ownCheck = std::any_of(m_spec.checks.cbegin(), m_spec.checks.cend(),
                                          [](const FieldCheck &check) { return check.kind == FieldCheck::NotTaken; });
        if (!ownCheck && tellTakenKey())
            return false;
    }
    return passes(checkOf(m_panel->field(field))) &&
           std::all_of(m_spec.checks.cbegin(), m_spec.checks.cend(), [&](const FieldCheck &check) {
               return check.field != field || check.kind != FieldCheck::NotTaken || passes(check);
           });
}

// At OK, so that a shortcut key carries nothing past the checks.
bool RecordForm::passesOwnChecks()
{
    for (const PageSpec &page : std::as_const(m_spec.pages))
        for (const FieldSpec &field : page.fields)
            if (!passes(checkOf(field)))
                return false;
    for (const FieldCheck &check : std::as_const(m_spec.checks))
        if (check.kind == FieldCheck::NotTaken && !passes(check))
            return false;
    return true;
}

bool RecordForm::isStored(const QString &key)
{
    const QString &column = m_panel->field(keyField()).column;
    const QString statement =
        "select " + column + " from " + plainTableOf(m_spec.statement) + " where " + column + "='{key}'";
    return !connection()->rows(statement, {{"key", key}}).isEmpty();
}

bool RecordForm::isKeyTaken()
{
    const QString typed = text(keyField());
    return !typed.trimmed().isEmpty() && !isHeadStored() && isStored(typed);
}

// A number that the clerk never sees is not his to mend: where another desktop was offered the same one and was faster,
// with its record or with lines, this record takes the next. One whose own lines are stored already stays.
void RecordForm::takeFreeNumber()
{
    const QString borne = text(keyField());
    if (!m_panel->field(keyField()).hidden || !m_lines || !hasRecord() ||
        !records().isNew(records().absolutePosition()))
        return;
    if (storedLines(lines()) > 0)
        return;
    const auto isFree = [this](const QString &number) {
        return !isStored(number) && !firstRow(m_spec.lines.statement, {{m_spec.lines.key, number}});
    };
    QString number = borne;
    for (QStringList taken; !isFree(number); number = proposedKey(taken)) {
        if (taken.contains(number))
            return;
        taken.append(number);
    }
    if (number == borne)
        return;
    if (!m_spec.alsoNumbered.isEmpty() && records().Fields(m_spec.alsoNumbered).text() == borne)
        records().Fields(m_spec.alsoNumbered).setValue(number);
    setText(keyField(), number);
}

bool RecordForm::tellTakenKey()
{
    bool isTaken = false;
    run(Failure::Report, {[&] { isTaken = m_lines && (isKeyTaken() || hasForeignLines(*this, text(keyField()))); }});
    if (!isTaken)
        return false;
    const FieldSpec &key = m_panel->field(keyField());
    dialogs().message(this,
                      QStringLiteral("%1“%2”已被另一记录使用，请核对！").arg(plainCaption(key.caption), text(key.name)),
                      systemTitle(), MessageIcon::Critical);
    focusFirst();
    return true;
}

// The lines that are shown go, one by one; not those of another document, whose number the clerk typed by mistake or
// was offered as well, nor those of all that have no number.
void RecordForm::dropLines()
{
    if (text(keyField()).trimmed().isEmpty() || isKeyTaken() || hasForeignLines(*this, text(keyField())))
        return;
    store([this] {
        m_lines->refresh();
        while (lines().RecordCount() > 0) {
            lines().MoveFirst();
            lines().Delete();
        }
    });
}

bool RecordForm::missesRequiredField()
{
    for (const RequiredField &field : std::as_const(m_spec.required)) {
        const qsizetype length = text(field.name).size();
        if (field.length ? length == field.length : length > 0)
            continue;
        if (!field.message.isEmpty()) {
            dialogs().message(this, field.message, m_spec.requiredTitle, MessageIcon::Exclamation);
            if (field.movesFocus)
                focusField(field.focus.isEmpty() ? field.name : field.focus);
        }
        return true;
    }
    return false;
}

} // namespace tradewick
