// What the code of single reports makes of their records.
#include "papers/report_table.h"
#include "support/test_database.h"

#include <gtest/gtest.h>

namespace tradewick
{

using namespace test;

TEST(FormA, EachRowShowsItsOriginAndItsQuantityOrGrossWeight)
{
    TestDatabase database;
    const struct {
        int quantity, own; // flags
        const char *texts;
    } cases[] = {{1, 1, "P 2400 PCS"}, {1, 0, "W 2400 PCS"}, {0, 1, "P 128.5 KgS"}, {0, 0, "W 128.5 KgS"}};
    Report &form = report("YY_FormA_rpt");
    form.DataControl1.ConnectionString = database.connectionString();
    form.DataControl1.Source = "select * from yy_mxb_rpt where fpbh='{fpbh}'";
    int number = 0;
    for (const auto &of : cases) {
        const QString invoice = QString("F%1").arg(++number);
        database.connection().Execute("insert into yy_mxb_h(fpbh,lysl,qbgc) values('{f}','{q}','{o}')",
                                      {{"f", invoice}, {"q", of.quantity}, {"o", of.own}});
        database.connection().Execute("insert into yy_mxb_b(fpbh,sl,dw,zmz) values('{f}','2400','PCS','128.5')",
                                      {{"f", invoice}});
        form.DataControl1.values = {{"fpbh", invoice}};
        const PagePtr page = form.layout()->next();
        QStringList texts;
        for (const PageItem &item : page->items)
            if (item.band == SectionKind::Detail && item.object->name.startsWith("L_"))
                texts.append(page->text(item).toString());
        EXPECT_EQ(texts.join(' ').toStdString(), of.texts) << number;
    }
}

} // namespace tradewick
