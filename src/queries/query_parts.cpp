#include "queries/query_parts.h"

#include "common/dialogs.h"
#include "common/globals.h"
#include "common/grid.h"
#include "common/query_screen.h"
#include "reporting/xls_writer.h"

#include <QHeaderView>

namespace tradewick
{

namespace
{

constexpr int twipsPerPixel = 15;

class ShownRows : public RowSource
{
public:
    ShownRows(Recordset &records, const RecordsetModel &shown) : m_records(records), m_shown(shown) {}
    QStringList columns() const override { return m_records.columns(); }
    bool next() override { return ++m_row < m_shown.rowCount(); }
    QVariant value(int column) const override { return m_records.valueAt(m_shown.recordAt(m_row), column); }

private:
    Recordset &m_records;
    const RecordsetModel &m_shown;
    int m_row = -1;
};

void writeWorkbook(QueryScreen &screen)
{
    const QString title = screen.spec().caption;
    const auto path = dialogs().saveFile(&screen, QStringLiteral("导出到 Excel"), title + ".xls",
                                         QStringLiteral("Excel 文档 (*.xls)"));
    if (!path || path->isEmpty())
        return;
    const Grid &grid = *screen.grid(screen.shownList());
    const RecordsetModel &shown = *grid.recordsetModel();
    const Recordset &records = screen.records(screen.shownList());
    XlsWriter writer(title);
    const quint16 head = writer.format({.bold = true}), text = writer.format({});
    QVector<int> widths, kinds;
    writer.beginRow();
    for (int i = 0; i < shown.columnCount(); ++i) {
        const GridColumn &column = shown.columns()[i];
        widths.append(grid.horizontalHeader()->sectionSize(i) * twipsPerPixel);
        const int source = records.columnIndex(column.column);
        kinds.append(source >= 0 && records.columnKind(source) == ColumnKind::Number);
        writer.text(i, column.caption, head);
    }
    writer.setColumnWidths(widths);
    writer.markTitles();
    for (int row = 0; row < shown.rowCount(); ++row) {
        writer.beginRow();
        for (int i = 0; i < shown.columnCount(); ++i) {
            const QString cell = shown.index(row, i).data().toString();
            bool isNumber = kinds[i];
            const double number = isNumber ? cell.toDouble(&isNumber) : 0;
            if (isNumber)
                writer.number(i, number, text);
            else if (!cell.isEmpty())
                writer.text(i, cell, text);
        }
    }
    QString error;
    if (!writer.save(*path, &error))
        dialogs().message(&screen, error, QStringLiteral("系统提示"), MessageIcon::Exclamation);
}

} // namespace

std::function<std::unique_ptr<RowSource>()> shownRows(QueryScreen &screen)
{
    return [&screen] {
        const int list = screen.shownList();
        return std::make_unique<ShownRows>(screen.records(list), *screen.grid(list)->recordsetModel());
    };
}

void showStatistic(QueryScreen &screen, const QString &name, const Criteria &criteria)
{
    try {
        fill(document(name), *gConn, criteria).report->show(&screen);
    } catch (const DataError &error) {
        tellUnprinted(error, &screen);
    }
}

void printStatistic(QueryScreen &screen, const QString &name)
{
    const Values values = screen.criteria();
    screen.fragments() = fragmentsOf(document(name).statistic.criteria, values, true);
    const int found = screen.records().RecordCount();
    showStatistic(screen, name, {values, screen.isWithin() || found == 0, screen.fragments(), found});
}

QueryButton groupedPrint(const QString &caption, const GroupedPrint &print, bool waits)
{
    return {"CmdPRINT", caption, "Ctrl+P",
            [print](QueryScreen &screen) {
                if (print.isRefused && print.isRefused(screen))
                    return;
                const std::optional<bool> isYes = screen.ask(QString::fromUtf8(print.question), print.icon);
                if (!isYes || (!print.isRefused && screen.tellReversedAtPrint()))
                    return;
                printStatistic(screen, QString::fromUtf8(*isYes ? print.yes : print.no));
            },
            waits};
}

QueryButton recordPrint(const QString &name, const QString &caption, const QString &document)
{
    return {name, caption, "Ctrl+Shift+P",
            [document](QueryScreen &screen) { printRecord(document, screen.number(), &screen); }};
}

QueryButton workbook()
{
    return {"Cmd_Excel", "导出", "Ctrl+E", writeWorkbook};
}

QVector<DateRange> period(const QString &caption, const QString &toCaption)
{
    return {{"DTPicker1", "DTPicker2", caption, toCaption}};
}

QVector<DateRange> periodAndValidity(const QString &caption)
{
    return {{"DTPicker1", "DTPicker2", caption, "至"},
            {"DTPicker3", "DTPicker4", "有效日期：", "至", "Check1", "选择"}};
}

} // namespace tradewick
