#include "walk.h"

#include "papers/report_table.h"

#include <QSet>

namespace tradewick::test
{

namespace
{

constexpr int noCurrentRow = 3021;
// Groups over all rows, by a column that no row has.
const QSet<QString> groupsOfAllRows{"YY_Xsfp_Rpt.fpbh"};

class Walk
{
public:
    Walk(const Document &document, Connection &connection) : m_document(document), m_connection(connection) {}

    QStringList faults()
    {
        attempt([this] { m_report = &report(m_document.report); });
        if (!m_report)
            return m_faults;
        const DocumentRecord &record = m_document.record;
        m_given = m_document.takesNumber() ? Values{{record.key, "0"}} : Values();
        const QStringList head = m_given.keys() + columnsOf(record.head), totals = columnsOf(m_document.totals);
        needColumn(head, m_document.clause.flag);
        needColumn(head, m_document.clause.label.isEmpty() ? QString() : record.clause);
        needColumn(head, m_document.logo.isEmpty() ? QString() : "logo");
        attempt([this] { m_document.logo.isEmpty() || m_report->setImage(m_document.logo, {}); });
        labels(head, totals);
        rows();
        return m_faults;
    }

private:
    template <typename Action> void attempt(Action action)
    {
        try {
            action();
        } catch (const DataError &error) {
            m_faults.append(error.text());
        }
    }

    QStringList columnsOf(const QString &statement)
    {
        QStringList columns;
        if (!statement.isEmpty())
            attempt([&] {
                m_connection.read(
                    statement, m_given, [&](const QStringList &names) { columns = names; },
                    [](const QVariantList &) { return false; });
            });
        return columns;
    }

    void needColumn(const QStringList &columns, const QString &name)
    {
        if (!name.isEmpty() && !columns.contains(name, Qt::CaseInsensitive))
            m_faults.append("no column " + name);
    }

    static Values valuesOf(const QStringList &columns)
    {
        Values values;
        for (const QString &column : columns)
            values.insert(column.toLower(), 1);
        return values;
    }

    // Every text is worked out once, from a row that has all columns; one without totals at most finds no row.
    void labels(const QStringList &head, const QStringList &totals)
    {
        attempt(
            [this] { m_document.clause.label.isEmpty() || (m_report->setLabel(m_document.clause.label, {}), true); });
        for (const DocumentLabel &label : m_document.labels) {
            attempt([&] { m_report->setLabel(label.name, {}); });
            const LabelText *text = std::get_if<LabelText>(&label.text);
            if (!text)
                continue;
            const DocumentValues full(valuesOf(head), {valuesOf(totals)}), empty(valuesOf(head), {});
            attempt([&] { (*text)(full); });
            attempt([&] {
                try {
                    (*text)(empty);
                } catch (const DataError &error) {
                    if (error.number() != noCurrentRow)
                        throw;
                }
            });
        }
    }

    void rows()
    {
        const QStringList columns = columnsOf(m_document.record.rows + m_document.order);
        for (const Section &section : m_report->model().sections) {
            if (!groupsOfAllRows.contains(m_document.report + u'.' + section.groupField))
                needColumn(columns, section.groupField);
            for (const ReportObject &object : section.objects)
                needColumn(columns, object.dataField);
        }
        const FormatRule &rule = m_report->family().rule;
        for (const QString &column : rule.columns)
            needColumn(columns, column);
        for (const QString &label : rule.labels)
            attempt([&] { m_report->setLabel(label, {}); });
        attempt([&] { m_report->layout(std::make_unique<OneRow>(columns), {})->all(); });
    }

    const Document &m_document;
    Connection &m_connection;
    Report *m_report = nullptr;
    Values m_given;
    QStringList m_faults;
};

} // namespace

QStringList faultsOf(const Document &document, Connection &connection)
{
    return Walk(document, connection).faults();
}

} // namespace tradewick::test
