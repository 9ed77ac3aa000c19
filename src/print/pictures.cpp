#include "print/pictures.h"

#include "papers/report_table.h"
#include "reporting/painter.h"

#include <QDir>
#include <QFileInfo>
#include <QPainter>

namespace tradewick
{

namespace
{

constexpr double twipsPerInch = 1440;
constexpr int galleryRows = 30, galleryDotsPerInch = 96;

// Rows for any template, by what it does with each field: numbers to add up or format, dates to spell, groups that
// change, and for all else the field's name.
class MadeUpRows : public RowSource
{
public:
    explicit MadeUpRows(const ReportTemplate &report)
    {
        for (const Section &section : report.sections) {
            if (section.kind == SectionKind::GroupHeader)
                add(section.groupField, [level = section.level, name = section.groupField](int row) {
                    return QVariant(QStringLiteral("%1-%2").arg(name).arg(row * (level + 1) / galleryRows + 1));
                });
        }
        const auto fields = [&](bool (*wanted)(const ReportObject &), QVariant (*made)(int row)) {
            for (const Section &section : report.sections)
                for (const ReportObject &object : section.objects)
                    if (wanted(object))
                        add(object.dataField, made);
        };
        fields([](const ReportObject &object) { return object.format.contains(u'y'); },
               [](int row) { return QVariant(QDate(2026, 3, 5).addDays(row)); });
        fields([](const ReportObject &object) { return object.summary == Summary::Sum || !object.format.isEmpty(); },
               [](int row) { return QVariant(row * 37.5); });
        for (const Section &section : report.sections)
            for (const ReportObject &object : section.objects)
                add(object.dataField, [name = object.dataField](int row) {
                    return QVariant(QStringLiteral("%1 %2 木框").arg(name).arg(row));
                });
    }

    QStringList columns() const override { return m_columns; }
    bool next() override { return ++m_row <= galleryRows; }
    QVariant value(int column) const override { return m_made[column](m_row); }

private:
    using Value = std::function<QVariant(int row)>;

    void add(const QString &column, const Value &made)
    {
        if (column.isEmpty() || m_columns.contains(column, Qt::CaseInsensitive))
            return;
        m_columns.append(column);
        m_made.append(made);
    }

    QStringList m_columns;
    QVector<Value> m_made;
    int m_row = 0;
};

} // namespace

bool writePictures(const QVector<PagePtr> &pages, const QString &path, int dotsPerInch, QString *error)
{
    const QFileInfo file(path);
    for (qsizetype at = 0; at < pages.size(); ++at) {
        const Paper &paper = pages[at]->context->paper;
        QImage image((QSizeF(paper.width, paper.height) * paper.scale * dotsPerInch / twipsPerInch).toSize(),
                     QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        paintPage(painter, *pages[at], dotsPerInch / twipsPerInch);
        painter.end();
        const QString name = QStringLiteral("%1/%2-%3.png").arg(file.path(), file.completeBaseName()).arg(at + 1);
        if (!replaceFile(
                name, [&](QIODevice &device) { return image.save(&device, "PNG"); }, error))
            return false;
    }
    return true;
}

bool writeGallery(const QString &folder, QString *error)
{
    QDir().mkpath(folder); // writing fails and tells where it could not be made
    QString html = QStringLiteral("<!DOCTYPE html>\n<meta charset=\"utf-8\">\n<title>Reports</title>\n"
                                  "<style>body{background:#ccc} img{margin:8px; box-shadow:0 0 6px #666}</style>\n");
    for (const QString &name : reportNames()) {
        Report &of = report(name);
        for (const Section &section : of.model().sections)
            for (const ReportObject &object : section.objects)
                if (object.isFree())
                    of.setLabel(object.name, object.name);
        const QVector<PagePtr> pages = of.layout(std::make_unique<MadeUpRows>(of.model()), paperFor(of.model()))->all();
        if (!writePictures(pages, QStringLiteral("%1/%2.png").arg(folder, name), galleryDotsPerInch, error))
            return false;
        html += QStringLiteral("<h2>%1 %2</h2>\n").arg(name, of.caption().toHtmlEscaped());
        for (qsizetype at = 1; at <= pages.size(); ++at)
            html += QStringLiteral("<img src=\"%1-%2.png\" alt=\"\">\n").arg(name).arg(at);
    }
    const QByteArray text = html.toUtf8();
    return replaceFile(
        folder + QStringLiteral("/index.html"), [&](QIODevice &device) { return device.write(text) == text.size(); },
        error);
}

} // namespace tradewick
