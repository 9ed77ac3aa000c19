// Writing a workbook, against an established writer of .xlsx files in its leanest mode with the same cells.
#include "figures.h"
#include "reporting/xls_writer.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <stdexcept>
#include <xlsxwriter.h>

namespace tradewick
{

namespace
{

constexpr int rows = 60000, columns = 10, runs = 5;

// A detail line as reports hold it: even columns texts, some of them all different, odd ones numbers.
QString textAt(int row, int column)
{
    return column == 0 ? QStringLiteral("HT%1").arg(row, 8, 10, QLatin1Char('0'))
                       : QStringLiteral("纯棉印花布 %1").arg((row * 7 + column) % 900);
}

double numberAt(int row, int column)
{
    return (row % 5000) * (column == 1 ? 1 : 1.25) + column / 8.0;
}

void require(bool done)
{
    if (!done)
        throw std::runtime_error("the workbook was not written");
}

void writeXls(const QVector<QString> &texts, const QString &path)
{
    XlsWriter writer;
    const quint16 format = writer.format({});
    for (int row = 0; row < rows; ++row) {
        writer.beginRow();
        for (int column = 0; column < columns; ++column) {
            if (column % 2 == 0)
                writer.text(column, texts[(row * columns + column) / 2], format);
            else
                writer.number(column, numberAt(row, column), format);
        }
    }
    QString error;
    require(writer.save(path, &error));
}

void writeXlsx(const QVector<QString> &texts, const QString &path)
{
    const QByteArray name = path.toUtf8();
    lxw_workbook_options options{};
    options.constant_memory = LXW_TRUE;
    lxw_workbook *book = workbook_new_opt(name.constData(), &options);
    lxw_worksheet *sheet = workbook_add_worksheet(book, nullptr);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            if (column % 2 == 0)
                worksheet_write_string(sheet, lxw_row_t(row), lxw_col_t(column),
                                       texts[(row * columns + column) / 2].toUtf8().constData(), nullptr);
            else
                worksheet_write_number(sheet, lxw_row_t(row), lxw_col_t(column), numberAt(row, column), nullptr);
        }
    }
    require(workbook_close(book) == LXW_NO_ERROR);
}

double median(QVector<double> times)
{
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

} // namespace

QVector<Figure> excelFigures()
{
    const QTemporaryDir folder;
    QVector<QString> texts;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; column += 2)
            texts.append(textAt(row, column));
    }
    QVector<double> own, other;
    for (int run = 0; run < runs; ++run) { // in turn, so that both meet the same machine
        QElapsedTimer timer;
        timer.start();
        writeXls(texts, folder.filePath(QStringLiteral("a.xls")));
        own.append(double(timer.nsecsElapsed()) / 1e6);
        timer.start();
        writeXlsx(texts, folder.filePath(QStringLiteral("b.xlsx")));
        other.append(double(timer.nsecsElapsed()) / 1e6);
    }
    return {{QStringLiteral("Excel file of %1 rows against libxlsxwriter").arg(rows), median(own) / median(other), 0.5,
             QStringLiteral("%1 ms, %2 ms").arg(median(own), 0, 'f', 0).arg(median(other), 0, 'f', 0)}};
}

} // namespace tradewick
