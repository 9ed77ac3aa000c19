#include "reporting/report.h"

#include "data/connection.h"
#include "data/row_cursor.h"
#include "reporting/preview.h"

#include <map>
#include <stdexcept>

namespace tradewick
{

namespace
{

std::function<void(Report &, QWidget *)> &viewer()
{
    static std::function<void(Report &, QWidget *)> function;
    return function;
}

// Rows of a statement, read as the layout asks for them.
class StatementRows : public RowSource
{
public:
    StatementRows(std::shared_ptr<Connection> connection, const QString &statement, const Values &values)
        : m_connection(std::move(connection)), m_rows(m_connection->cursor(statement, values))
    {
    }

    QStringList columns() const override { return m_rows->columns(); }
    bool next() override { return m_rows->next(); }
    QVariant value(int column) const override { return m_rows->value(column); }

private:
    std::shared_ptr<Connection> m_connection;
    std::unique_ptr<RowCursor> m_rows;
};

} // namespace

Report::Report(const ReportEntry &entry, std::shared_ptr<const ReportTemplate> report)
    : m_entry(entry), m_template(std::move(report))
{
}

void Report::setLabel(const QString &name, const QString &text)
{
    const ReportObject *object = m_template->object(name);
    if (!object || !object->isFree())
        throw std::invalid_argument(QStringLiteral("%1 has no free label %2").arg(this->name(), name).toStdString());
    m_labels[name] = text;
    m_written.insert(name);
}

void Report::setImage(const QString &name, const QString &path)
{
    const ReportObject *object = m_template->object(name);
    if (!object || object->kind != ObjectKind::Image)
        throw std::invalid_argument(QStringLiteral("%1 has no image %2").arg(this->name(), name).toStdString());
    const QImage image = path.isEmpty() ? QImage() : QImage(path);
    if (image.isNull())
        m_images.remove(name);
    else
        m_images[name] = image;
}

QStringList Report::unsetLabels() const
{
    QStringList names;
    for (const Section &section : m_template->sections)
        for (const ReportObject &object : section.objects)
            if (object.isFree() && object.name.startsWith(QLatin1String("L_")) && !m_written.contains(object.name))
                names.append(object.name);
    return names;
}

void Report::show(QWidget *parent)
{
    if (viewer())
        viewer()(*this, parent);
    else
        showPreview(*this, parent);
    m_written.clear();
}

std::unique_ptr<RowSource> Report::rows() const
{
    if (DataControl1.Source.isEmpty())
        return nullptr;
    return std::make_unique<StatementRows>(Connection::shared(DataControl1.ConnectionString), DataControl1.Source,
                                           DataControl1.values);
}

std::unique_ptr<Layout> Report::layout(const Paper &paper) const
{
    return layout(rows(), paper);
}

std::unique_ptr<Layout> Report::layout(std::unique_ptr<RowSource> rows, const Paper &paper) const
{
    return std::make_unique<Layout>(m_template, std::move(rows), m_labels, m_images, paper, m_entry.family.atFormat);
}

Report &report(const QString &name)
{
    static std::map<QString, std::unique_ptr<Report>> reports;
    std::unique_ptr<Report> &found = reports[name];
    if (!found) {
        const ReportEntry *entry = reportEntry(name);
        if (!entry)
            throw std::invalid_argument(QStringLiteral("there is no report %1").arg(name).toStdString());
        QString error;
        auto model = loadTemplate(QStringLiteral(":/templates/%1.xml").arg(name), &error);
        if (!model)
            throw std::runtime_error(error.toStdString());
        for (const QString &family : missingFamilies())
            qWarning("reports: the font family %s is not installed", qUtf8Printable(family));
        found = std::make_unique<Report>(*entry, std::move(model));
    }
    return *found;
}

void setReportViewer(std::function<void(Report &, QWidget *)> function)
{
    viewer() = std::move(function);
}

} // namespace tradewick
