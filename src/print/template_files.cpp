#include "print/template_files.h"

#include "papers/report_table.h"

#include <QDir>
#include <QFileInfo>
#include <QPainter>

namespace tradewick
{

namespace
{

constexpr auto tableName = "reports.tsv";

bool readTable(const QString &path, QHash<QString, QStringList> *lines, QString *error)
{
    QFile file(path);
    if (!file.exists())
        return true;
    if (!file.open(QIODevice::ReadOnly)) {
        *error = path + ": " + file.errorString();
        return false;
    }
    const QStringList all = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString &line : all.mid(1)) {
        const QStringList cells = line.split(u'\t');
        QStringList columns;
        if (cells.size() != 4 || !columnsOf(cells.value(3).split(u' ', Qt::SkipEmptyParts), &columns, error)) {
            *error = QStringLiteral("%1: “%2”: %3")
                         .arg(path, line, error->isEmpty() ? QStringLiteral("not four columns") : *error);
            return false;
        }
        lines->insert(cells[0], cells);
    }
    return true;
}

QImage madeUpPicture()
{
    QImage image(300, 200, QImage::Format_RGB32);
    image.fill(QColor(0xdd, 0xe6, 0xee));
    QPainter painter(&image);
    painter.setPen(QPen(QColor(0x4a, 0x6a, 0x8a), 6));
    painter.drawRect(3, 3, 293, 193);
    painter.drawLine(0, 0, 300, 200);
    painter.drawLine(0, 200, 300, 0);
    return image;
}

} // namespace

QVector<TemplateFile> readTemplates(const QString &path, QString *error)
{
    const QFileInfo given(path);
    const QDir folder = given.isDir() ? QDir(path) : given.dir();
    QStringList names{given.fileName()};
    if (given.isDir())
        names = folder.entryList({"*.xml"}, QDir::Files, QDir::Name | QDir::IgnoreCase);
    QHash<QString, QStringList> lines;
    if (!readTable(folder.filePath(tableName), &lines, error))
        return {};
    QVector<TemplateFile> templates;
    for (const QString &name : names) {
        TemplateFile file{folder.filePath(name), loadTemplate(folder.filePath(name), error)};
        if (!file.report)
            return {};
        const QStringList line = lines.value(file.report->name);
        file.listed = !line.isEmpty();
        file.folder = line.value(1);
        file.twin = line.value(2);
        file.sources = line.value(3).split(u' ', Qt::SkipEmptyParts);
        templates.append(file);
    }
    if (templates.isEmpty())
        *error = path + ": no templates";
    return templates;
}

QVector<PagePtr> madeUpPages(const TemplateFile &of, int count, MadeUp how)
{
    QHash<QString, QImage> images;
    for (const Section &section : of.report->sections)
        for (const ReportObject &object : section.objects)
            if (object.kind == ObjectKind::Image)
                images.insert(object.name, madeUpPicture());
    const ReportEntry *entry = reportEntry(of.report->name);
    return Layout(of.report, madeUpRows(*of.report, of.sources, count, how), madeUpLabels(*of.report, how), images,
                  paperFor(*of.report), entry ? entry->family.rule : FormatRule())
        .all();
}

} // namespace tradewick
