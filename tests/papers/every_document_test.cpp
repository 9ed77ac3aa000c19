// What every document and every report declares is there, whatever the table holds.
#include "papers/papers.h"
#include "papers/report_table.h"
#include "support/test_database.h"

#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFileInfo>
#include <QHash>
#include <QProcess>
#include <QSet>

#include <utility>

namespace tradewick::test
{

namespace
{

// One row with a 1 in every column.
class OneRow : public RowSource
{
public:
    explicit OneRow(QStringList columns) : m_columns(std::move(columns)) {}
    QStringList columns() const override { return m_columns; }
    bool next() override { return !std::exchange(m_isRead, true); }
    QVariant value(int) const override { return 1; }

private:
    QStringList m_columns;
    bool m_isRead = false;
};

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
        if (m_document.isStatistic())
            for (const QString &box : {fromDate, toDate, QStringLiteral("DTPicker3"), QStringLiteral("DTPicker4")})
                m_given.insert(box, "2026-01-01");
        for (const Criterion &one : m_document.statistic.criteria)
            m_given.insert(one.name, "1");
        statistic();
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

    // What a statistic counts, and its rows in all their forms, narrowed by all criteria.
    void statistic()
    {
        const Statistic &of = m_document.statistic;
        const QString all = joined(fragmentsOf(of.criteria, m_given, true));
        if (!of.counted.isEmpty())
            needColumn(columnsOf(of.counted + of.countedWithin + all), "n");
        columnsOf(of.rowsWithin.isEmpty() ? QString() : of.rowsWithin + all + m_document.order);
        columnsOf(all.isEmpty() ? QString() : m_document.record.rows + all + m_document.order);
        if (m_document.isStatistic())
            m_given.insert("count", "1");
    }

    // Every text is worked out once, from a row that has all columns.
    void labels(const QStringList &head, const QStringList &totals)
    {
        const DocumentValues values(valuesOf(head), {valuesOf(totals)});
        QVector<DocumentLabel> labels = m_document.labels;
        if (!m_document.clause.label.isEmpty())
            labels.append(DocumentLabel{m_document.clause.label, QString()});
        for (const DocumentLabel &label : std::as_const(labels)) {
            attempt([&] { m_report->setLabel(label.name, {}); });
            if (const LabelText *text = std::get_if<LabelText>(&label.text))
                attempt([&] { (*text)(values); });
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

// What is wrong with a document on a database of the whole schema, each fault with the name of what is wrong; empty
// when everything is there.
QStringList faultsOf(const Document &document, Connection &connection)
{
    return Walk(document, connection).faults();
}

TEST(EveryDocument, NamesWhatIsThere)
{
    TestDatabase database;
    QHash<QString, QSet<QString>> written; // labels by report
    QSet<QString> names;
    for (const Document &one : documents()) {
        EXPECT_EQ(faultsOf(one, database.connection()).join('\n').toStdString(), "") << one.name.toStdString();
        EXPECT_FALSE(names.contains(one.name)) << one.name.toStdString();
        names.insert(one.name);
        QSet<QString> &labels = written[one.report];
        labels.insert(one.clause.label);
        for (const DocumentLabel &label : one.labels)
            labels.insert(label.name);
    }
    // no label waits for a text that nobody writes
    for (auto of = written.cbegin(); of != written.cend(); ++of)
        for (const Section &section : report(of.key()).model().sections)
            for (const ReportObject &object : section.objects)
                EXPECT_TRUE(!object.isCallersLabel() || of->contains(object.name) ||
                            report(of.key()).family().rule.labels.contains(object.name))
                    << of.key().toStdString() << ' ' << object.name.toStdString();
}

TEST(EveryDocument, AWrongNameIsFoundWhereverItStands)
{
    TestDatabase database;
    const Document right = document("形式发票");
    const struct {
        const char *named;
        void (*spoil)(Document &one);
    } cases[] = {
        {"No_Rpt", [](Document &one) { one.report = "No_Rpt"; }},
        {"no_table", [](Document &one) { one.record.rows = "select * from no_table where htbh='{htbh}'"; }},
        {"no_head", [](Document &one) { one.record.head = "select no_head from yy_gw_wxht_h where htbh='{htbh}'"; }},
        {"logo", [](Document &one) { one.record.head = "select bizh,fstk from yy_gw_wxht_h where htbh='{htbh}'"; }},
        {"bizh", [](Document &one) { one.record.head = "select fstk,logo from yy_gw_wxht_h where htbh='{htbh}'"; }},
        {"no_sum", [](Document &one) { one.totals = "select sum(no_sum) as zjje from yy_wxht_rpt"; }},
        {"zjje", [](Document &one) { one.totals = "select sum(je) as zje from yy_wxht_rpt"; }},
        {"e_gsmc", [](Document &one) { one.record.rows = "select htbh from yy_wxht_rpt where htbh='{htbh}'"; }},
        {"no_order", [](Document &one) { one.order = " order by no_order"; }},
        {"no_value", [](Document &one) { one.order = " and htbh='{no_value}'"; }},
        {"Image9", [](Document &one) { one.logo = "Image9"; }},
        {"L_None",
         [](Document &one) {
             one.labels.append(DocumentLabel{"L_None", "text"});
         }},
        {"xsfp",
         [](Document &one) {
             one.clause = {"xsfp", "L_FSTK"};
         }},
        {"L_TsTK",
         [](Document &one) {
             one.clause = {"fstk", "L_TsTK"};
         }},
        {"no_clause",
         [](Document &one) {
             one.record.clause = "no_clause";
             one.clause = {"fstk", "L_FSTK"};
         }},
    };
    for (const auto &of : cases) {
        Document wrong = right;
        of.spoil(wrong);
        EXPECT_TRUE(faultsOf(wrong, database.connection()).join('\n').contains(of.named)) << of.named;
    }
}

TEST(EveryReport, HasATemplateThatTheSchemaAndTheReaderTake)
{
    const QString folder = TEMPLATE_FOLDER;
    for (const QString &name : reportNames()) {
        QProcess xmllint;
        xmllint.start("xmllint", {"--noout", "--schema", folder + "report.xsd", folder + name + ".xml"});
        ASSERT_TRUE(xmllint.waitForFinished());
        EXPECT_EQ(xmllint.exitCode(), 0) << xmllint.readAllStandardError().toStdString();
        EXPECT_EQ(report(name).name(), name);
    }
    for (QDirIterator files(":/templates"); files.hasNext();) {
        files.next();
        EXPECT_TRUE(reportNames().contains(files.fileInfo().completeBaseName())) << files.filePath().toStdString();
    }
}

} // namespace

} // namespace tradewick::test
