// A form with lines, by its controls, over demonstration data.
#pragma once

#include "common/record_form.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

namespace tradewick::test
{

class DocumentForm : public testing::Test
{
protected:
    TestDatabase database{TestDatabase::Demonstration};
    ScriptedDialogs dialogs;
    std::unique_ptr<RecordForm> form;

    FormDriver open(const RecordFormSpec &spec)
    {
        form = std::make_unique<RecordForm>(spec);
        return FormDriver(*form);
    }
    Grid *lines() { return form->findChild<Grid *>("TDBGrid1"); }
    Grid *pickerGrid() { return form->findChild<Grid *>("TDBGrid2"); }
    static QString cellOf(const Grid *grid, int row, const QString &column)
    {
        for (int i = 0; i < grid->model()->columnCount(); ++i)
            if (grid->recordsetModel()->columns()[i].column == column)
                return grid->model()->index(row, i).data().toString();
        return "no column";
    }
    QString cell(int row, const QString &column) { return cellOf(lines(), row, column); }
    int newRow() { return lines()->model()->rowCount() - 1; }

    // Types into a line's first cell and gives how many rows the search shows.
    int search(int row, const QString &text)
    {
        lines()->setFocus();
        lines()->editCell(row, lines()->recordsetModel()->columns().first().column);
        lines()->cellEditor()->selectAll();
        FormDriver::commit(lines()->cellEditor(), text);
        EXPECT_TRUE(pickerGrid()->isVisible());
        return pickerGrid()->model()->rowCount();
    }
    // Takes the first row that was found, as the keyboard does.
    void takeFirst()
    {
        QTest::keyClick(lines()->cellEditor(), Qt::Key_Down);
        QTest::keyClick(pickerGrid(), Qt::Key_Return);
    }
    // Columns of the head hold those of a row, by "column" or "column from its column".
    void expectCopied(const Row &from, const QStringList &copies)
    {
        for (const QString &copy : copies) {
            const QString original = from[copy.section(u' ', -1)].toString();
            EXPECT_FALSE(original.isEmpty()) << copy.toStdString();
            EXPECT_EQ(form->records().Fields(copy.section(u' ', 0, 0)).text(), original) << copy.toStdString();
        }
    }
    Row row(const QString &statement, const Values &values = {})
    {
        return database.connection().rows(statement, values).at(0);
    }
    QString shownKeys()
    {
        QStringList keys;
        const auto *list = form->findChild<Grid *>("TDBGrid3")->model();
        for (int i = 0; i < list->rowCount(); ++i)
            keys.append(list->index(i, 0).data().toString());
        return keys.join(u' ');
    }
};

} // namespace tradewick::test
