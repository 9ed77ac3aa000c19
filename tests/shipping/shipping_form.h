// The forms of shipping over a few detail sheets, companies and lines.
#pragma once

#include "common/record_form.h"
#include "reporting/report.h"
#include "shipping/shipping.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

namespace tradewick::test
{

class ShippingForm : public testing::Test
{
protected:
    ~ShippingForm() override { setReportViewer({}); }

    FormDriver open(const RecordFormSpec &spec)
    {
        form = std::make_unique<RecordForm>(spec);
        return FormDriver(*form);
    }
    void insert(const QString &table, const Values &values)
    {
        const QStringList columns = values.keys();
        database.connection().Execute(
            QStringLiteral("insert into %1(%2) values('{%3}')").arg(table, columns.join(','), columns.join("}','{")),
            values);
    }
    // One row of a table, each value by "|" in the order of the columns; a blank shows as such, Null as "-".
    QString row(const QString &statement)
    {
        QStringList texts;
        for (const Row &one : database.connection().rows(statement))
            for (const QVariant &value : one.values())
                texts.append(value.isNull() ? QStringLiteral("-") : value.toString());
        return texts.join('|');
    }
    QStringList offered(const QString &combo)
    {
        QStringList items;
        const auto *box = form->findChild<QComboBox *>(combo);
        for (int i = 0; i < box->count(); ++i)
            items.append(box->itemText(i));
        return items;
    }

    static Shown stop(const QString &text) { return {text, "系统提示", MessageIcon::Critical}; }

    TestDatabase database;
    ScriptedDialogs dialogs;
    std::unique_ptr<RecordForm> form;
};

} // namespace tradewick::test
