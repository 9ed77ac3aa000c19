// The sheets and lists of the registers: what the print buttons ask and show, and what stands on the paper.
#include "make_form.h"
#include "masterdata/masterdata.h"
#include "papers/papers.h"
#include "reporting/painter.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <QProcess>
#include <QRegularExpression>

namespace tradewick
{

using namespace test;

namespace
{

QDateTime aFridayMorning()
{
    return {QDate(2026, 11, 27), QTime(9, 5, 7)};
}

class MasterReports : public testing::Test
{
protected:
    TestDatabase database;
    ScriptedDialogs dialogs;
    QTemporaryDir folder;
    QStringList shown; // reports that a form would have shown

    MasterReports()
    {
        reportClock = &aFridayMorning;
        setReportViewer([this](Report &report, QWidget *) { shown.append(report.name()); });
    }
    ~MasterReports() override
    {
        reportClock = &QDateTime::currentDateTime;
        setReportViewer({});
    }

    Report &filled(const QString &name, const QString &key = {})
    {
        return *fill(document(name), database.connection(), key).report;
    }
    // The pages of a report as a reader of its PDF finds them.
    QStringList pagesOf(Report &report)
    {
        const QString path = folder.filePath("out.pdf");
        QString error;
        EXPECT_TRUE(writePdf(report.layout()->all(), "test", path, &error)) << error.toStdString();
        QProcess reader;
        reader.start("pdftotext", {"-layout", path, "-"});
        EXPECT_TRUE(reader.waitForFinished(60000));
        QStringList pages = QString::fromUtf8(reader.readAllStandardOutput()).split('\f');
        pages.removeLast(); // each page ends with a form feed
        return pages;
    }
};

} // namespace

TEST_F(MasterReports, ThreeThousandCustomersStandUnderTheirCountries)
{
    // Sorted by code a country comes again, and opens a group of its own each time.
    constexpr int customers = 3000, run = 250;
    const QStringList countries{"德国", "美国", "Côte d'Ivoire"};
    database.connection().Execute("begin");
    for (int i = customers; i > 0; --i)
        database.connection().Execute("insert into yy_gwkh_zl(khbh,khmc,zwdz,phone,gb,bizh) "
                                      "values('{c}','{n}','5 WEST QUAY','{t}','{g}','EUR')",
                                      {{"c", QString("K%1").arg(i, 5, 10, QChar('0'))},
                                       {"n", QString("BUYER %1 & SONS").arg(i)},
                                       {"t", QString("0049-%1").arg(i)},
                                       {"g", countries[(i - 1) / run % countries.size()]}});
    database.connection().Execute("commit");

    const QStringList pages = pagesOf(filled("国外客户简表"));
    ASSERT_GT(pages.size(), 50);
    const QRegularExpression row("^ *K(\\d{5}) +BUYER (\\d+) & SONS +5 WEST QUAY +0049-(\\d+) +EUR$",
                                 QRegularExpression::MultilineOption);
    const QRegularExpression head("^ *国别 +(.+?)\\s*$", QRegularExpression::MultilineOption);
    int last = 0, groups = 0;
    for (int page = 0; page < pages.size(); ++page) {
        SCOPED_TRACE(page + 1);
        const QString &text = pages[page];
        EXPECT_EQ(text.count("国外客户简明资料统计表"), 1);
        EXPECT_TRUE(text.contains(QRegularExpression("编号 +客户名称 +中文地址 +电话 +传真 +联系人 +币种")));
        EXPECT_TRUE(text.contains(QRegularExpression("打印时间: *2026年 +11月 +27日 +星期五 +9:05:07 +制表: +第 +" +
                                                     QString::number(page + 1) + " +页 +共 +" +
                                                     QString::number(pages.size()) + " +页")))
            << text.toStdString();
        QString country;
        for (const QString &line : text.split('\n')) {
            const auto heading = head.match(line), customer = row.match(line);
            if (heading.hasMatch()) {
                country = heading.captured(1);
                groups += last % run == 0;
            } else if (customer.hasMatch()) {
                ++last;
                for (int part = 1; part <= 3; ++part)
                    EXPECT_EQ(customer.captured(part).toInt(), last);
                EXPECT_EQ(country, countries[(last - 1) / run % countries.size()]) << last;
            }
        }
    }
    EXPECT_EQ(last, customers);
    EXPECT_EQ(groups, customers / run);
}

TEST_F(MasterReports, SheetsShowEachColumnBehindItsLabel)
{
    const struct {
        const char *document, *table, *key, *title;
        QStringList columns; // the two names and addresses
        const char *place;   // pattern of the line of the code, of shown values
        QStringList places;
    } sheets[] = {
        {"国外客户资料",
         "yy_gwkh_zl",
         "khbh",
         "国外客户详细资料表",
         {"khmc", "ywmc", "zwdz", "ywdz"},
         "编号： *O'N 7 +国别： *v-gb",
         {"gb"}},
        {"国内厂家资料",
         "yy_gyszl",
         "gfbh",
         "国内厂家详细资料表",
         {"zwmc", "ywmc", "zwdz", "ywdz"},
         "编号： *O'N 7 +省： *v-sheng +v-shi",
         {"sheng", "shi"}},
    };
    const QStringList common{"phone", "fax",  "dzyx", "yzbm", "wz",  "xydj", "frdb", "lxr",
                             "jyfw",  "bizh", "fkfs", "zffs", "khh", "yhzh", "tysh"};
    for (const auto &sheet : sheets) {
        SCOPED_TRACE(sheet.document);
        const QString table = sheet.table, key = sheet.key;
        Recordset set;
        set.Open("select * from " + table, {}, database.connection().shared(database.connectionString()));
        for (const char *code : {"O'N 7", "O'N 8"}) {
            set.AddNew();
            set.Fields(key).setValue(QString(code));
            for (const QString &column : sheet.columns + sheet.places + common)
                set.Fields(column).setValue(QString(code) == "O'N 7" ? "v-" + column : QString("other"));
            set.Fields("hl").setValue(7.125);
        }
        set.UpdateBatch();

        const QStringList pages = pagesOf(filled(sheet.document, "O'N 7"));
        ASSERT_EQ(pages.size(), 1);
        const QString &text = pages.first();
        for (const QString &pattern :
             {QString(sheet.title), QString(sheet.place),
              QString("v-%1\\s+\\(中文\\)\\s+..名称\\s+v-%2\\s+\\(外文\\)").arg(sheet.columns[0], sheet.columns[1]),
              QString("v-%1\\s+\\(中文\\)\\s+..地址\\s+v-%2\\s+\\(外文\\)").arg(sheet.columns[2], sheet.columns[3]),
              QString("联系电话 +v-phone +传真号码 +v-fax"), QString("电子邮箱 +v-dzyx +邮政编码 +v-yzbm"),
              QString("网 +址 +v-wz +信用等级 +v-xydj"), QString("法人代表 +v-frdb +联 *系 *人 +v-lxr"),
              QString("v-jyfw\\s+经营范围"), QString("币 +种 +v-bizh +汇 *率 +7\\.125"),
              QString("结算方式 +v-fkfs +付款方式 +v-zffs"), QString("开户银行 +v-khh"),
              QString("银行账号 +v-yhzh +统一税号 +v-tysh"),
              QString("制表人： +打印时间： *2026年 +11月 +27日 +星期五 +9:05:07")})
            EXPECT_TRUE(text.contains(QRegularExpression(pattern))) << pattern.toStdString() << text.toStdString();
        EXPECT_FALSE(text.contains("other"));
        EXPECT_THROW(filled(sheet.document, "O'N"), DataError);
    }
}

TEST_F(MasterReports, ThePriceListShowsEachPriceAndTheRemarkBelowTheTariffCode)
{
    Connection &connection = database.connection();
    for (const char *code : {"P2", "P1"})
        connection.Execute("insert into yy_bzdj(cpbh,cplb,cpmc,cpgg,yanse,dw,bacp,beizhu) "
                           "values('{c}','装饰镜','木框镜','50x70','GOLD','PCS','7009920000','易碎')",
                           {{"c", code}});
    for (const char *supplier : {"C2", "C1"})
        connection.Execute("insert into yy_bzdj_b(cpbh,gysbh,gys_mc,gys_dj,gys_bizh) "
                           "values('P1','{s}','厂家{s}',1234.5,'USD')",
                           {{"s", supplier}});
    const QStringList pages = pagesOf(filled("商品资料明细表"));
    ASSERT_EQ(pages.size(), 1);
    const QString &rows = pages.first();
    EXPECT_TRUE(rows.contains(QRegularExpression("統計日期: *2026-11-27")));
    EXPECT_EQ(rows.count(QRegularExpression("^ *装饰镜\\s*$", QRegularExpression::MultilineOption)), 1);
    // first what has no supplier, then supplier by supplier
    EXPECT_TRUE(rows.contains(
        QRegularExpression("P2 +木框镜 +50x70 +GOLD +PCS +7009920000\\s+易碎\\s+"
                           "P1 +木框镜 +50x70 +GOLD +PCS +厂家C1 +1234.50 +USD +7009920000\\s+易碎\\s+P1 .* 厂家C2 ")))
        << rows.toStdString();
}

TEST_F(MasterReports, PrintButtonsAskWhichReportIsMeant)
{
    const struct {
        MakeForm make;
        const char *insert, *refusal, *question, *one, *all;
    } forms[] = {
        {made<YY_GWKH_ZL>, "insert into yy_gwkh_zl(khbh) values('K1')", "没有当前记录，不能打印！",
         "是否打印当前客户资料？否则打印全部客户简表。", "YY_KhZl_XX_Rpt", "khzl_rpt"},
        {made<yy_GYszl>, "insert into yy_gyszl(gfbh) values('K1')", "没有当前记录，不能打印！",
         "是否打印当前厂家资料？否则打印国内厂家简表。", "Yy_Gys_xxZl", "YY_Gys_JMZL"},
        {made<yy_cpbj>, "insert into yy_bzdj(cpbh) values('K1')", "没有记录，不能打印！", nullptr, "Sys_Cpzlb_rpt",
         "Sys_Cpzlb_rpt"},
    };
    for (const auto &form : forms) {
        SCOPED_TRACE(form.one);
        {
            const auto empty = form.make();
            FormDriver(*empty).click("Cmdprint");
            EXPECT_EQ(dialogs.take(), (Shown{form.refusal, "系统提示", MessageIcon::Critical}));
            EXPECT_EQ(shown, QStringList());
        }
        database.connection().Execute(form.insert);
        const auto window = form.make();
        const FormDriver driver(*window);
        QVector<Shown> asked;
        if (form.question)
            asked.append({form.question, "系统提示", MessageIcon::Question});
        for (bool yes : {true, false}) {
            dialogs.answer = yes;
            driver.click("Cmdprint");
            EXPECT_EQ(dialogs.shown, asked);
            dialogs.shown.clear();
            EXPECT_EQ(shown, QStringList{yes ? form.one : form.all});
            shown.clear();
        }
        dialogs.isClosed = true; // neither
        driver.click("Cmdprint");
        EXPECT_EQ(std::exchange(shown, {}).size(), form.question ? 0 : 1);
        EXPECT_EQ(std::exchange(dialogs.shown, {}), asked);
        dialogs.isClosed = false;
        driver.click("Cmdadd");
        EXPECT_FALSE(driver.enabled("Cmdprint"));
        driver.click("Cmdcancel");
    }
}

} // namespace tradewick
