// What every document and every report declares is there, whatever the table holds.
#include "papers/report_table.h"
#include "support/test_database.h"
#include "walk.h"

#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFileInfo>
#include <QHash>
#include <QProcess>
#include <QSet>

namespace tradewick::test
{

namespace
{

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
