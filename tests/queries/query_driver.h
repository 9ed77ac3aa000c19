// One query screen over the demonstration, or over what a test inserts.
#pragma once

#include "common/column_footer.h"
#include "common/query_screen.h"
#include "queries/queries.h"
#include "reporting/report.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <QCheckBox>
#include <QDateEdit>

namespace tradewick::test
{

class QueryTest
{
protected:
    explicit QueryTest(TestDatabase::Content content = TestDatabase::Empty) : database(content)
    {
        setReportViewer([this](Report &report, QWidget *) {
            printed.append(report.name());
            statement = report.DataControl1.Source;
            rows.clear();
            const QStringList labels{"L_QsRq", "L_JzRq", "L_CS",   "L_gsmc", "L_pCCs",
                                     "L_Fs",   "L_bT",   "L_ZjjE", "L_Zjje"};
            for (const QString &label : labels)
                shown.insert(label, report.label(label));
            if (!statement.isEmpty())
                for (const Row &row : database.connection().rows(statement, report.DataControl1.values))
                    rows.append(row);
        });
    }
    ~QueryTest() { setReportViewer({}); }

    FormDriver open(const QuerySpec &spec, const OpenRecord &openRecord = {})
    {
        screen = std::make_unique<QueryScreen>(spec, nullptr, openRecord);
        return FormDriver(*screen);
    }
    void insert(const QString &table, const Values &values)
    {
        const QStringList columns = values.keys();
        database.connection().Execute(
            QStringLiteral("insert into %1(%2) values('{%3}')").arg(table, columns.join(','), columns.join("}','{")),
            values);
    }
    void setDate(const QString &picker, const QString &date) const
    {
        screen->findChild<QDateEdit *>(picker)->setDate(QDate::fromString(date, Qt::ISODate));
    }
    void setDates(const QString &from, const QString &to) const
    {
        setDate("DTPicker1", from);
        setDate("DTPicker2", to);
    }
    QString footer(const QString &column, const QString &grid = "TDBGrid2") const
    {
        return screen->findChild<ColumnFooter *>(grid + "_totals")->text(column);
    }
    // A column of what is found, and of what was printed, by "|".
    QString found(const QString &column, int list = 0) const
    {
        Recordset &records = screen->records(list);
        QStringList texts;
        for (int row = 0; row < records.RecordCount(); ++row)
            texts.append(records.valueAt(row, records.columnIndex(column)).toString());
        return texts.join('|');
    }
    QString printedColumn(const QString &column) const
    {
        QStringList texts;
        for (const Row &row : rows)
            texts.append(row.value(column).toString());
        return texts.join('|');
    }

    TestDatabase database;
    ScriptedDialogs dialogs;
    std::unique_ptr<QueryScreen> screen;
    QStringList printed;           // reports, in their order
    QString statement;             // of the last one
    QVector<Row> rows;             // its rows
    QHash<QString, QString> shown; // its labels
    const Shown reversed{"起始日期不能晚于截止日期，请核对。", "系统提示", MessageIcon::Critical},
        reversedAtPrint{"起始日不能晚于截止日，请核对。", "系统提示", MessageIcon::Critical};
};

} // namespace tradewick::test
