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
        {YY_WXHt_cxTjB, "Combo3",
         "select * from yy_gw_wxht_h where htbh<>'' and djrq>='{DTPicker1}' and djrq<='{DTPicker2}'AND khmc "
         "like'%{Combo3}%'order by gsmc"},
        {YY_WXHt_cxTjB, "+Combo2 Combo3",
         "select * from yy_gw_wxht_h where htbh<>'' and djrq>='{DTPicker1}' and djrq<='{DTPicker2}'and "
         "yxjzrq>='{DTPicker3}' and yxjzrq<='{DTPicker4}'AND gsmc like '%{Combo2}%'AND khmc like'%{Combo3}%'order by "
         "djrq"},
        {YY_cgHt_CXtjb, "Combo2 Combo3",
         "select * from yy_gn_cght_h where htbh<>'' and djrq>='{DTPicker1}' and djrq<='{DTPicker2}'AND gsmc like "
         "'%{Combo2}%'AND csmc like'%{Combo3}%'order by gsmc"},
        {YY_XYz_CxTj, "Combo2 Combo3 Combo4 Combo5",
         "select * from yy_xyz_nh where xyzh<>'' and kzrq>='{DTPicker1}' and kzrq<='{DTPicker2}'AND syr like "
         "'%{Combo2}%'AND khmc like'%{Combo3}%'order by syr"},
        {YY_XYz_CxTj, "+",
         "select * from yy_xyz_nh where xyzh<>'' and kzrq>='{DTPicker1}' and kzrq<='{DTPicker2}'and "
         "xyzyxq>='{DTPicker3}' and xyzyxq<='{DTPicker4}'order by kzrq"},
        {YY_mxd_CxTj, "Combo2 Combo3 Combo4 Combo5",
         "select * from yy_mxb_h where fpbh<>'' and djrq>='{DTPicker1}' and djrq<='{DTPicker2}'AND gsmc ='{Combo2}'AND "
         "khmc ='{Combo3}'AND htbh ='{Combo4}'order by gsmc,fpbh"},
        {YY_ZsQk_TJB, "Combo1 Combo2 Combo3 Combo4 Combo5",
         "select * from yy_sstjb_rpt where htbh<>'' and djrq>='{DTPicker1}' and djrq<='{DTPicker2}'AND gsmc like "
         "'%{Combo1}%'AND csmc like'%{Combo5}%'AND htbh ='{Combo4}'AND  bgdbh ='{Combo2}'AND hxdh ='{Combo3}'\norder "
         "by htbh,fpbh"},
        {YY_HxD_LyHs_TJB, "Combo1 Combo2 Combo3 Combo4 Combo5 Text1 Text2",
         "select * from cy_hxd_gsly where htbh<>'' and djrq>='{DTPicker1}' and djrq<='{DTPicker2}'AND gsmc like "
         "'%{Combo1}%'AND htbh ='{Combo2}'AND  bgdh ='{Combo3}'AND fpbh ='{Combo4}'AND hxdh ='{Combo5}'order by "
         "htbh,hxdh"},
        {YY_HxD_LyHs_TJB, "",
         "select * from cy_hxd_gshs where htbh<>'' and djrq>='{DTPicker1}' and djrq<='{DTPicker2}'order by "
         "htbh,hxdh_st,hxdh_en",
         1},
        {CY_Pcd_CxTj, "Combo1 Combo2",
         "select * from cy_pcd_rpt where pcdh<>'' and djrq>='{DTPicker1}' and djrq<='{DTPicker2}'AND pcgs like "
         "'%{Combo1}%'AND tcgs like'%{Combo2}%'\norder by pcgs"},
        {YY_DcD_CxTj, "Combo2 Combo3 Combo4 Combo5 Combo6",
         "select * from cy_dcd_djb_h where djrq>='{DTPicker1}' and djrq<='{DTPicker2}'AND tygs ='{Combo4}'AND cygs "
         "='{Combo5}'AND htbh ='{Combo2}'AND fpbh ='{Combo3}'AND shr ='{Combo6}'\norder by tygs,fpbh"},
        {YY_spZl_CXTjB, "", "select * from yy_bzdj_rpt where cpbh<>''order by cplb,cpbh,cpmc,gys_mc"},
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

// Columns of the lists and their heads, captions of the boxes, buttons.
TEST(QueryCaptions, StandToTheCharacter)
{
    const QString contracts =
        "htbh合同编号 djrq签约日期 gsmc签约公司 %1国外买方 qydd签约地点 yxqsrq有效期自 yxjzrq有效期止/";
    const struct {
        QuerySpec (*spec)();
        QString captions;
    } cases[] = {
        {YY_WXHt_cxTjB, contracts.arg("khmc") +
                            "Combo2签约公司： Combo3国外买方：/CmdPRINT查询列印 Cmd_SPtJ商品统计 Cur_prt当前合同 "
                            "Option1当前签约公司 Option2当前国外客户 Option3全部商品"},
        {YY_cgHt_CXtjb, contracts.arg("csmc") + "Combo2签约公司： Combo3国内厂商：/CmdPRINT查询列印 Cur_prt当前合同"},
        {YY_XYz_CxTj,
         "xyzh信用证号 kzrq开证日期 kzyh开证行 kzr开证人 htbh合同编号 syr受益人 xyzyxq有效期/Combo2受益公司： "
         "Combo3国外客户： Combo4合同编号： Combo5信用证号：/CmdPRINT查询列印"},
        {YY_mxd_CxTj, "fpbh发票号码 djrq登记日期/Combo2签约公司： Combo3国外客户： Combo4合同编号： Combo5发票编号： "
                      "Com_Print打印选项：/CmdPRINT2打印 CmdPRINT查询列印"},
        {YY_ZsQk_TJB,
         "htbh外销合同 fpbh销售发票号 djrq登记日期 cpmc商品名称 gg规格 yanse颜色 dw单位 sl计税数量 je计税金额 "
         "suie增值税金额 sjje实缴金额 gsmc签约公司 csmc国内厂家/Combo1签约公司名称： Combo5国内厂家名称： "
         "Combo4外销合同号： Combo2报关单号： Combo3核销单号：/CmdPRINT查询统计表"},
        {YY_HxD_LyHs_TJB,
         "hxdh核销单号 fpbh发票编号 htbh外销合同 djrq核销日期 gsmc公司名称 ldy核销员 hxdh_st起始单号 "
         "hxdh_en终止单号 htbh合同号码 ly_fenshu领用份数 djrq领用日期 hxy领单员 gsmc公司名称/"
         "Combo1签约公司名称： Combo2外销合同号： Combo3报关单号： Combo4销售发票号： Combo5核销单号： "
         "Text1年度： Text2月份：/CmdPRINT查询列印 SB_tjb上报统计表"},
        {CY_Pcd_CxTj,
         "pcdh派车单号 djrq派车日期 pcgs派车公司 tcgs拖车公司 zhdz装货地点 fpbh发票编号 pcfy拖车费用 "
         "ghfth柜号/封条号 escg20'柜数 sscg40'柜数 sscgg40'H柜 sswcg45'柜/Combo1派车公司： Combo2拖车公司：/"
         "CmdPRINT列印查询表 Cur_prt当前派车单"},
        {YY_DcD_CxTj,
         "cw_dcdh订舱单号 cygs船务公司/Combo4托运公司： Combo5承运公司： Combo2合同编号： Combo3发票编号： "
         "Combo6国外客户：/CmdPRINT查询列印 CmdPRINT2打印"},
        {YY_spZl_CXTjB, "cpbh商品编号 cpmc商品名称 gys_lh厂家件号 cpgg规格 yanse颜色 bacpH.S.编码 dw单位 gys_bizh币种 "
                        "gys_dj出厂价 gysbh厂家编号 gys_mc厂家名称/Combo1商品编号： Combo2商品名称： Combo3商品类别： "
                        "Combo4厂家编号： Combo5厂家名称：/CmdPRINT列印查询表"},
    };
    for (const auto &of : cases) {
        const QuerySpec spec = of.spec();
        QStringList columns, boxes, buttons;
        for (const QueryListSpec &list : spec.lists)
            for (const GridColumn &column : list.columns)
                columns.append(column.column + QString(column.caption).remove(' '));
        for (const Criterion &one : spec.criteria)
            boxes.append(one.name + one.caption);
        for (const ChoiceSpec &one : spec.choices)
            boxes.append(one.name + one.caption);
        for (const QueryButton &button : spec.buttons + spec.options.options)
            if (button.name != "Cmd_Excel")
                buttons.append(button.name + button.caption);
        EXPECT_EQ((columns.join(' ') + '/' + boxes.join(' ') + '/' + buttons.join(' ')).toStdString(),
                  of.captions.toStdString());
    }
}

} // namespace test

} // namespace tradewick
