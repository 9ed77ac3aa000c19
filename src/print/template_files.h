// Templates as they stand on disk, and their pages with made-up rows.
#pragma once

#include "print/made_up_rows.h"
#include "reporting/layout.h"

#include <QStringList>

namespace tradewick
{

// A template, and what the table reports.tsv beside it tells of it: one line a report with its name, its folder of the
// business, its twin, which looks alike in the main, and the tables or views whose columns it shows.
struct TemplateFile {
    QString path;
    std::shared_ptr<const ReportTemplate> report;
    QString folder, twin;
    QStringList sources;
    bool listed = false; // whether the table has a line for it
};

// The template at path, or all of a folder by their names. Empty, and error, when one cannot be read, a line of the
// table is wrong, or there is none.
QVector<TemplateFile> readTemplates(const QString &path, QString *error);

// The pages with count made-up rows, labels and a picture, as the program would lay them out.
QVector<PagePtr> madeUpPages(const TemplateFile &of, int count, MadeUp how);

} // namespace tradewick
