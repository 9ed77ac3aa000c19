// The totals of all reports, worked out again from their rows.
#include "report_helpers.h"

#include <gtest/gtest.h>

#include <QLocale>
#include <QRandomGenerator>

namespace tradewick::test
{

namespace
{

// Columns of a report with the level of the group that breaks with them, 0 for none, and rows for them: outer groups of
// 1, 30 and 200 rows, the inner ones break across the outer.
struct Case {
    QStringList columns;
    QVector<int> levels;
    QVector<QVariantList> rows;

    explicit Case(const ReportTemplate &report, QRandomGenerator &random)
    {
        QSet<QString> summed;
        for (const Section &section : report.sections) {
            if (section.kind == SectionKind::GroupHeader)
                add(section.groupField, section.level);
            for (const ReportObject &object : section.objects) {
                add(object.dataField, 0);
                if (object.summary == Summary::Sum)
                    summed.insert(object.dataField.toLower());
            }
        }
        for (int row = 0; row < 231; ++row) {
            const int outer = row < 1 ? 0 : row < 31 ? 1 : 2;
            QVariantList values;
            for (qsizetype at = 0; at < columns.size(); ++at) {
                const int level = levels[at];
                if (level > 0)
                    values.append(level == 1 ? outer : row / (level == 2 ? 37 : 11));
                else if (summed.contains(columns[at])) // nothing in the first group
                    values.append(outer == 0 ? 0 : random.bounded(9'000'000) / 100.0);
                else
                    values.append("A");
            }
            rows.append(values);
        }
    }

    bool ends(int row, int level) const
    {
        if (row + 1 == rows.size())
            return true;
        for (qsizetype at = 0; at < columns.size(); ++at)
            if (levels[at] > 0 && levels[at] <= level && rows[row][at] != rows[row + 1][at])
                return true;
        return false;
    }

    // What a field of a group footer prints, group by group.
    QStringList totals(const ReportObject &object, int level, bool zeros) const
    {
        const qsizetype column = columns.indexOf(object.dataField.toLower());
        QStringList texts;
        qint64 cents = 0;
        int count = 0;
        for (int row = 0; row < rows.size(); ++row) {
            cents += qRound64(rows[row][column].toDouble() * 100);
            ++count;
            if (!ends(row, level))
                continue;
            const QString text = object.summary == Summary::Count ? QString::number(count)
                                 : object.format.isEmpty()
                                     ? QString::number(static_cast<double>(cents) / 100, 'g', 15)
                                     : QLocale(QLocale::English).toString(static_cast<double>(cents) / 100, 'f', 2);
            if (zeros || text != "0")
                texts.append(object.format == "0.00" ? QString(text).remove(',') : text);
            if (!object.overReport)
                cents = count = 0;
        }
        return texts;
    }

private:
    void add(const QString &column, int level)
    {
        if (column.isEmpty() || columns.contains(column.toLower()))
            return;
        columns.append(column.toLower());
        levels.append(level);
    }
};

} // namespace

TEST(GroupTotals, OfEveryReportAreThoseOfItsRowsWhereverPagesBreak)
{
    const QStringList withoutZeros{"CY_pcd_cxtj_RpT", "Cy_Pcd_Cxtj_rptB"};
    QRandomGenerator random(20261126);
    qsizetype compared = 0;
    for (const ReportEntry &entry : reportEntries()) {
        QString error;
        const auto model = loadTemplate(QStringLiteral(":/templates/%1.xml").arg(entry.name), &error);
        ASSERT_TRUE(model) << error.toStdString();
        const Case of(*model, random);
        QMap<QString, QStringList> printed;
        Layout layout(model, std::make_unique<TestRows>(of.columns, of.rows), {}, {}, paperFor(*model),
                      entry.family.rule);
        for (const PagePtr &page : layout.all())
            for (const PageItem &item : page->items)
                if (item.object->summary != Summary::None)
                    printed[item.object->name].append(page->text(item).toString());
        for (const Section &section : model->sections) {
            for (const ReportObject &object : section.objects) {
                if (object.summary == Summary::None)
                    continue;
                const QStringList expected = of.totals(object, section.level, !withoutZeros.contains(entry.name));
                EXPECT_EQ(printed[object.name].join(' ').toStdString(), expected.join(' ').toStdString())
                    << entry.name.toStdString() << ' ' << object.name.toStdString();
                compared += expected.size();
            }
        }
    }
    EXPECT_GT(compared, 700);
}

} // namespace tradewick::test
