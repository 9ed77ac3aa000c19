#include "reporting/report.h"

#include "data/connection.h"
#include "data/row_cursor.h"
#include "reporting/preview.h"

#include <utility>

namespace tradewick
{

namespace
{

constexpr int noSuchObject = 3265;

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

Report::Report(ReportFamily family, std::shared_ptr<const ReportTemplate> report)
    : m_family(std::move(family)), m_template(std::move(report))
{
}

void Report::startOver()
{
    m_written.clear();
    m_labels.removeIf(
        [this](const QHash<QString, QString>::iterator &label) { return !m_template->object(label.key())->isFree(); });
}

QString Report::title() const
{
    const Values &values = DataControl1.values;
    const QString number = values.size() == 1 ? values.cbegin()->toString().trimmed() : QString();
    return number.isEmpty() ? caption() : caption() + u'-' + number;
}

void Report::setLabel(const QString &name, const QString &text)
{
    const ReportObject *object = m_template->object(name);
    if (!object || !object->isWritable())
        throw DataError(noSuchObject, QStringLiteral("报表%1没有可填写的标签%2").arg(this->name(), name));
    m_labels[name] = text;
    m_written.insert(name);
}

QString Report::label(const QString &name) const
{
    const ReportObject *object = m_template->object(name);
    return m_labels.value(name, object ? object->text : QString());
}

bool Report::setImage(const QString &name, const QString &path)
{
    const ReportObject *object = m_template->object(name);
    if (!object || object->kind != ObjectKind::Image)
        throw DataError(noSuchObject, QStringLiteral("报表%1没有图片%2").arg(this->name(), name));
    const QImage image = path.isEmpty() ? QImage() : QImage(path);
    if (image.isNull())
        m_images.remove(name);
    else
        m_images[name] = image;
    return !image.isNull();
}

QStringList Report::unsetLabels() const
{
    QStringList names;
    for (const Section &section : m_template->sections)
        for (const ReportObject &object : section.objects)
            if (object.isCallersLabel() && !m_written.contains(object.name) &&
                !m_family.rule.labels.contains(object.name))
                names.append(object.name);
    return names;
}

void Report::show(QWidget *parent)
{
    if (viewer())
        viewer()(*this, parent);
    else
        showPreview(*this, parent);
    startOver();
}

std::unique_ptr<RowSource> Report::rows() const
{
    if (DataControl1.rows)
        return DataControl1.rows();
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
    return std::make_unique<Layout>(m_template, std::move(rows), m_labels, m_images, paper, m_family.rule);
}

void setReportViewer(std::function<void(Report &, QWidget *)> function)
{
    viewer() = std::move(function);
}

} // namespace tradewick
