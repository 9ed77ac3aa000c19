// What every query screen declares is there, and what it asks stands to the character.
#include "query_driver.h"
#include "shell/dispatch.h"

#include <QGroupBox>
#include <QLabel>

namespace tradewick
{

void PrintTo(const DeclaredQuery &query, std::ostream *out)
{
    *out << query.name.toStdString();
}

namespace test
{

class EveryQuery : public testing::TestWithParam<DeclaredQuery>, protected QueryTest
{
protected:
    EveryQuery() : QueryTest(TestDatabase::Demonstration) {}
    const QuerySpec spec = GetParam().spec();
};

// Columns that stand in a list and in no table.
const QStringList sourceless{"YY_WXHt_cxTjB.qydd", "YY_cgHt_CXtjb.qydd", "YY_XYz_CxTj.htbh"};

TEST_P(EveryQuery, HasItsControlsAndColumns)
{
    const FormDriver drive = open(spec);
    EXPECT_EQ(screen->objectName(), spec.name);
    EXPECT_EQ(spec.name, GetParam().name);
    EXPECT_EQ(screen->windowTitle(), spec.caption);
    drive.expectAccessibleNames();
    QStringList captions, frames;
    for (const QLabel *label : screen->findChildren<QLabel *>())
        captions.append(label->text());
    for (const QGroupBox *frame : screen->findChildren<QGroupBox *>())
        frames.append(frame->title());
    EXPECT_TRUE(frames.contains(spec.criteriaCaption));
    for (const DateRange &range : spec.dates) {
        EXPECT_TRUE(captions.contains(range.caption) && captions.contains(range.toCaption)) << spec.name.toStdString();
        EXPECT_EQ(screen->findChild<QDateEdit *>(range.from)->date(), QDate::currentDate().addDays(-30));
        EXPECT_EQ(screen->findChild<QDateEdit *>(range.to)->date(), QDate::currentDate());
    }
    for (const Criterion &one : spec.criteria) {
        EXPECT_TRUE(captions.contains(one.caption)) << one.caption.toStdString();
        EXPECT_TRUE(!one.offers || drive.find<QComboBox>(one.name)) << one.name.toStdString();
    }
    const auto last = std::find_if(spec.criteria.crbegin(), spec.criteria.crend(),
                                   [](const Criterion &one) { return one.frame.isEmpty(); });
    drive.control(last->name)->setFocus();
    drive.leave(last->name);
    EXPECT_EQ(drive.focused(), "CmdFIND"); // by Enter alone
    for (const QueryButton &button : spec.buttons)
        EXPECT_EQ(drive.find<QAbstractButton>(button.name)->text(), button.caption);
    for (const char *button : {"Command1", "CmdFIND", "CmdEXIT"})
        drive.control(button);
    for (int i = 0; i < spec.lists.size(); ++i) {
        const QueryListSpec &list = spec.lists[i];
        QStringList missing;
        for (const GridColumn &column : list.columns)
            if (const QString name = spec.name + '.' + column.column;
                (screen->records(i).columnIndex(column.column) < 0) != sourceless.contains(name))
                missing.append(name);
        EXPECT_EQ(missing.join(' ').toStdString(), "");
        EXPECT_EQ(drive.find<Grid>(list.grid)->recordsetModel()->rowCount(), screen->records(i).RecordCount());
        EXPECT_GE(screen->records(i).columnIndex(list.key), 0);
        for (const ColumnText &text : list.footers)
            EXPECT_TRUE(std::any_of(list.columns.cbegin(), list.columns.cend(), [&](const GridColumn &column) {
                return column.column == text.column;
            })) << text.column.toStdString();
    }
    QVector<FieldSpec> fields;
    for (const PageSpec &page : spec.entry ? spec.entry().pages : QVector<PageSpec>())
        fields += page.fields;
    for (const FieldSpec &field : fields)
        EXPECT_TRUE(field.hidden || !drive.enabled(field.name) ||
                    drive.control(field.name)->property("readOnly").toBool())
            << field.name.toStdString();
}

// With nothing, each box alone and all of them filled: quotes and wildcards are what they are.
TEST_P(EveryQuery, FindsNothingForHostileTexts)
{
    const FormDriver drive = open(spec);
    if (!spec.dates.isEmpty())
        setDates("1990-01-01", "2030-12-31");
    const int all = database.count(plainTableOf(spec.lists.first().all));
    drive.click("CmdFIND");
    const int found = screen->records().RecordCount();
    for (const QString &text : {QStringLiteral("' or 1=1 --"), QStringLiteral("%"), QStringLiteral("_{Combo1}[a-z]")}) {
        for (int only = -1; only < spec.criteria.size(); ++only) {
            drive.click("Command1");
            int filled = 0;
            for (int i = 0; i < spec.criteria.size(); ++i)
                if (spec.criteria[i].fragment && (only < 0 || only == i)) {
                    drive.type(spec.criteria[i].name, text);
                    ++filled;
                }
            for (QCheckBox *check : screen->findChildren<QCheckBox *>("Check1"))
                check->setChecked(only < 0);
            drive.click("CmdFIND");
            EXPECT_EQ(screen->records().RecordCount(), filled ? 0 : found) << text.toStdString() << only;
            EXPECT_TRUE(dialogs.shown.isEmpty()) << dialogs.take().text.toStdString();
        }
    }
    EXPECT_EQ(database.count(plainTableOf(spec.lists.first().all)), all);
}

// Whenever the user stops it, all lists with what stands below them are those of before, or all those of the find.
TEST_P(EveryQuery, ShowsWhatItShowedWhereAFindIsStopped)
{
    dialogs.looksBeforeStop = 0;
    const FormDriver drive = open(spec);
    const auto lists = [&] {
        QStringList texts;
        for (int i = 0; i < spec.lists.size(); ++i) {
            texts.append(found(spec.lists[i].key, i));
            for (const ColumnText &text : spec.lists[i].footers)
                texts.append(footer(text.column, spec.lists[i].grid));
        }
        return texts.join('/');
    };
    EXPECT_EQ(screen->records().RecordCount(), 0);
    dialogs.looksBeforeStop = -1;
    if (!spec.dates.isEmpty())
        setDates("1990-01-01", "2030-12-31");
    drive.click("CmdFIND");
    const QString before = lists();
    drive.type(spec.criteria.first().name, "nobody");
    for (const int looks : {0, 1, 2, 5, -1}) {
        dialogs.looksBeforeStop = looks;
        drive.click("CmdFIND");
        const bool isFound = screen->records().RecordCount() == 0;
        EXPECT_TRUE(looks == 0 ? !isFound : looks > 0 || isFound) << looks;
        EXPECT_TRUE(isFound || lists() == before) << looks;
    }
    EXPECT_NE(lists(), before);
    EXPECT_EQ(dialogs.stopping, "正在查询");
    EXPECT_TRUE(dialogs.shown.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Queries, EveryQuery, testing::ValuesIn(declaredQueries()),
                         [](const auto &query) { return query.param.name.toStdString(); });

// Criteria that are filled, by their controls; "+" where the second range is in force; what is asked for then, with
// the controls in the place of what stands in them.
TEST(QueryStatements, StandToTheCharacter)
{
    const struct {
        QuerySpec (*spec)();
        const char *filled, *statement;
        int list = 0;
    } cases[] = {
        {YY_WXHt_cxTjB, "",
         "select * from yy_gw_wxht_h where htbh<>'' and djrq>='{DTPicker1}' and djrq<='{DTPicker2}'order by gsmc"},
        {YY_WXHt_cxTjB, "+Combo2 Combo3",
         "select * from yy_gw_wxht_h where htbh<>'' and djrq>='{DTPicker1}' and djrq<='{DTPicker2}'and "
         "yxjzrq>='{DTPicker3}' and yxjzrq<='{DTPicker4}'AND gsmc like '%{Combo2}%'AND khmc like'%{Combo3}%'order by "
         "djrq"},
        {YY_XYz_CxTj, "+",
         "select * from yy_xyz_nh where xyzh<>'' and kzrq>='{DTPicker1}' and kzrq<='{DTPicker2}'and "
         "xyzyxq>='{DTPicker3}' and xyzyxq<='{DTPicker4}'order by kzrq"},
        {YY_HxD_LyHs_TJB, "",
         "select * from cy_hxd_gshs where htbh<>'' and djrq>='{DTPicker1}' and djrq<='{DTPicker2}'order by "
         "htbh,hxdh_st,hxdh_en",
         1},
        {YY_spZl_CXTjB, "Combo1 Combo2 Combo3 Combo4 Combo5",
         "select * from yy_bzdj_rpt where cpbh<>''AND cpbh like '%{Combo1}%'AND cpmc like'%{Combo2}%'AND "
         "cplb='{Combo3}'AND gysbh='{Combo4}'AND gys_mc like '%{Combo5}%'order by cplb,cpbh,cpmc,gys_mc"},
    };
    for (const auto &of : cases) {
        const QuerySpec spec = of.spec();
        QString filled = of.filled;
        const bool isWithin = filled.startsWith('+');
        Values criteria{{"Combo9", "x"}};
        for (const QString &name : filled.remove('+').split(' '))
            criteria.insert(name, "x");
        for (const Criterion &one : spec.criteria) // blanks are nothing
            if (!criteria.contains(one.name))
                criteria.insert(one.name, "  ");
        EXPECT_EQ(findStatement(spec.lists[of.list], fragmentsOf(spec.criteria, criteria), isWithin).toStdString(),
                  of.statement)
            << spec.name.toStdString();
    }
}

} // namespace test

} // namespace tradewick
