// Workbooks read back by programs that share nothing with the one that wrote them.
#pragma once

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

namespace tradewick::test
{

using namespace Qt::StringLiterals;

inline QByteArray output(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(-1)) << program.toStdString();
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_EQ(process.readAllStandardError().toStdString(), "");
    return process.readAllStandardOutput();
}

// The workbook as xlrd sees it: a list of sheets {name, rows, merged, breaks, widths, heights}; a cell is a text or a
// number, an empty one null. titles: the rows printed on top of every page, [sheet, first, behind last].
inline QJsonObject readWorkbook(const QString &path)
{
    static const QString script = uR"(
import json, sys, xlrd
log = sys.stderr
book = xlrd.open_workbook(sys.argv[1], formatting_info=True, logfile=log, verbosity=0)
def cell(c): return None if c.ctype in (xlrd.XL_CELL_EMPTY, xlrd.XL_CELL_BLANK) else c.value
def look(c):
    xf = book.xf_list[c.xf_index]; font = book.font_list[xf.font_index]
    return [font.name, font.height, font.weight, book.format_map[xf.format_key].format_str, xf.alignment.hor_align,
            book.colour_map.get(font.colour_index)]
sheets = [{'name': s.name, 'rows': [[cell(c) for c in s.row(i)] for i in range(s.nrows)],
           'looks': [[look(c) for c in s.row(i)] for i in range(min(s.nrows, 50))],
           'merged': sorted(s.merged_cells), 'breaks': [b[0] for b in s.horizontal_page_breaks],
           'widths': [s.colinfo_map[c].width for c in sorted(s.colinfo_map)],
           'heights': [s.rowinfo_map[r].height for r in sorted(s.rowinfo_map)][:50]} for s in book.sheets()]
titles = [list(n.result.value[0].coords[0:4]) for n in book.name_obj_list if n.builtin and n.name == 'Print_Titles']
json.dump({'sheets': sheets, 'titles': titles}, sys.stdout)
)"_s;
    return QJsonDocument::fromJson(output(u"/usr/bin/python3"_s, {u"-c"_s, script, path})).object();
}

inline QJsonObject readSheet(const QString &path, int sheet = 0)
{
    return readWorkbook(path)[u"sheets"_s].toArray().at(sheet).toObject();
}

inline QJsonArray cells(const QJsonObject &sheet)
{
    return sheet[u"rows"_s].toArray();
}

} // namespace tradewick::test
