// One entry form, by its declaration, over an empty database or the demonstration.
#pragma once

#include "common/record_form.h"
#include "common/tabbed_form.h"
#include "shell/dispatch.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

namespace tradewick
{

namespace test
{

// A form that a window is, or one on a tab of a window.
struct WalkedForm {
    QString window;
    RecordFormSpec spec;
    QString name() const { return spec.tab < 0 ? window : QStringLiteral("%1_%2").arg(window).arg(spec.tab); }
};
inline void PrintTo(const WalkedForm &form, std::ostream *out)
{
    *out << form.name().toStdString();
}
inline QVector<WalkedForm> walkedForms()
{
    QVector<WalkedForm> forms;
    for (const DeclaredForm &declared : declaredForms()) {
        const RecordFormSpec spec = declared.spec();
        if (spec.tabs.empty())
            forms.append({declared.name, spec});
        for (const RecordFormSpec &tab : spec.tabs)
            forms.append({declared.name, tab});
    }
    return forms;
}
inline std::string nameOf(const testing::TestParamInfo<WalkedForm> &form)
{
    return form.param.name().toStdString();
}

struct OpenForm {
    explicit OpenForm(const WalkedForm &walked)
        : window(formEntry(walked.window)->make(nullptr, {})), form(qobject_cast<RecordForm *>(window.get()))
    {
        if (auto *tabs = qobject_cast<TabbedForm *>(window.get()))
            form = &tabs->tab(walked.spec.tab);
    }
    std::unique_ptr<QWidget> window;
    RecordForm *form;
};

class EveryForm : public testing::TestWithParam<WalkedForm>
{
protected:
    explicit EveryForm(TestDatabase::Content content = TestDatabase::Empty) : database(content)
    {
        for (const PageSpec &page : spec.pages)
            fields += page.fields;
    }

    FormDriver open()
    {
        opened = std::make_unique<OpenForm>(GetParam());
        form = opened->form;
        return FormDriver(*form);
    }
    const QString &key() const { return spec.key.isEmpty() ? fields.first().name : spec.key; }
    // A field beside the key that takes any text: where the form has a rule for its text fields, a combo box.
    const FieldSpec &nameField() const
    {
        const FieldKind kind = spec.onLeft ? FieldKind::Combo : FieldKind::Text;
        for (const FieldSpec &field : fields)
            if (field.name != key() && field.type.kind == kind && !field.hidden && kindOf(field) == ColumnKind::Text)
                return field;
        return fields.first();
    }
    const QString &name() const { return nameField().name; }
    const QString &nameColumn() const { return nameField().column; }
    ColumnKind kindOf(const FieldSpec &field) const
    {
        return database.connection().kindsOf(table).value(field.column.toLower(), ColumnKind::Unknown);
    }
    // Takes dates alone, in whatever kind of column it keeps them.
    bool isDate(const FieldSpec &field) const
    {
        return field.type.kind == FieldKind::Date || kindOf(field) == ColumnKind::Date ||
               std::any_of(spec.checks.cbegin(), spec.checks.cend(), [&](const FieldCheck &check) {
                   return check.field == field.name && check.kind == FieldCheck::Date;
               });
    }
    void typeRequired(const FormDriver &drive, const QString &text) const
    {
        for (const RequiredField &required : spec.required)
            for (const FieldSpec &field : fields)
                if (field.name == required.name)
                    drive.type(field.name,
                               isDate(field) ? "2026-03-05" : text.left(required.length ? required.length : 5));
    }
    static bool isTyped(const FieldSpec &field)
    {
        return !field.column.isEmpty() && !field.hidden && field.type.kind != FieldKind::Check;
    }

    // One row with this text in every column of the fields that takes text, and a date where one is required.
    void insert(const QString &text)
    {
        Values row;
        for (const FieldSpec &field : fields) {
            const bool isRequired = std::any_of(spec.required.cbegin(), spec.required.cend(),
                                                [&](const RequiredField &one) { return one.name == field.name; });
            if (isDate(field) ? isRequired : kindOf(field) == ColumnKind::Text)
                row.insert(field.column.toLower(), isDate(field) ? QStringLiteral("2026-03-05") : text);
        }
        const QStringList columns = row.keys();
        database.connection().Execute(
            "insert into " + table + "(" + columns.join(u',') + ") values('{" + columns.join("}','{") + "}')", row);
    }
    int count() { return database.count(table); }
    int count(const QString &column, const QString &value)
    {
        return database.value("select count(*) from " + table + " where " + column + "='{v}'", {{"v", value}}).toInt();
    }

    // What the form has to have said of an error of the database; forgets it.
    void expectTold(Failure error, const QString &text)
    {
        ASSERT_EQ(dialogs.shown.size(), error == Failure::Report ? 1 : 0);
        for (const Shown &told : std::exchange(dialogs.shown, {})) {
            EXPECT_TRUE(told.text.contains(text, Qt::CaseInsensitive)) << told.text.toStdString();
            EXPECT_EQ(told, (Shown{told.text, "", MessageIcon::None}));
        }
    }

    mutable TestDatabase database;
    ScriptedDialogs dialogs;
    const RecordFormSpec spec = GetParam().spec;
    const QString table = plainTableOf(spec.statement).toLower();
    QVector<FieldSpec> fields;
    std::unique_ptr<OpenForm> opened;
    RecordForm *form = nullptr;
};

} // namespace test

} // namespace tradewick
