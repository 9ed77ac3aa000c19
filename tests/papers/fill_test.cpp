// What stands in a report once its document is filled, and who is told what.
#include "papers/papers.h"
#include "papers/report_table.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QTemporaryDir>

#include <algorithm>

namespace tradewick
{

using namespace test;

namespace
{

constexpr const char *tooLong = "位数超过16位，计算溢出！";

class Fill : public testing::Test
{
protected:
    Fill()
    {
        QImage logo(40, 20, QImage::Format_RGB32);
        logo.fill(Qt::red);
        EXPECT_TRUE(logo.save(logoFile));
    }
    ~Fill() override { setReportViewer({}); }

    void addContract(const QString &number, const QVector<double> &amounts, const QString &clauses, const QString &logo)
    {
        database.connection().Execute("insert into yy_gw_wxht_h(htbh,bizh,fstk,logo) values('{h}',' USD ','{f}','{l}')",
                                      {{"h", number}, {"f", clauses}, {"l", logo}});
        for (const double amount : amounts)
            database.connection().Execute("insert into yy_gw_wxht_b(htbh,cpbh,je) values('{h}','P','{a}')",
                                          {{"h", number}, {"a", amount}});
    }
    static qsizetype picturesOf(const Report &of) { return of.layout()->next()->images.size(); }

    TestDatabase database;
    QTemporaryDir folder;
    const QString logoFile = folder.filePath("logo.png");
    ScriptedDialogs dialogs;
};

} // namespace

TEST_F(Fill, OneInvoiceAfterTheOtherHasNothingOfTheFirst)
{
    const QString broken = folder.filePath("none.png");
    const struct {
        const char *number;
        QVector<double> amounts;
        QString clauses, logo, words;
        QStringList messages;
        bool hasWords;
        qsizetype pictures;
    } cases[] = {
        {"X1",
         {900, 49.95, 1000.1},
         "CLAUSE",
         logoFile,
         "USD ONE THOUSAND NINE HUNDRED AND FIFTY AND CENTS FIVE ONLY",
         {},
         true,
         1},
        {"X2", {7, -12}, "", broken, "", {}, false, 0},
        {"X3", {2000}, " two\nlines ", "", "USD TWO THOUSAND  ONLY", {}, true, 0},
        {"X4",
         {1234567890123.45},
         "",
         "",
         "USD ONE  TWO HUNDRED AND THIRTY FOUR BILLION FIVE HUNDRED AND SIXTY SEVEN MILLION EIGHT HUNDRED AND NINETY "
         "THOUSAND ONE HUNDRED AND TWENTY THREE AND CENTS FORTY FIVE ONLY",
         {tooLong},
         true,
         0},
    };
    for (const auto &of : cases)
        addContract(of.number, of.amounts, of.clauses, of.logo);
    for (const char *name : {"形式发票", "形式发票2"}) {
        for (const auto &of : cases) {
            SCOPED_TRACE(of.number);
            const FilledReport filled = fill(document(name), database.connection(), of.number);
            const Report &invoice = *filled.report;
            EXPECT_EQ(invoice.label("L_ZjjE"), of.words);
            EXPECT_EQ(invoice.label("L_FSTK"), of.clauses);
            EXPECT_EQ(filled.messages, of.messages);
            ASSERT_EQ(filled.passedOver.size(), of.hasWords ? 0 : 1);
            EXPECT_TRUE(of.hasWords || filled.passedOver.first().startsWith("L_ZjjE: "));
            EXPECT_EQ(picturesOf(invoice), of.pictures);
            EXPECT_TRUE(invoice.unsetLabels().isEmpty());
        }
        EXPECT_THROW(fill(document(name), database.connection(), "X5"), DataError);
    }
}

TEST_F(Fill, ClauseLogoAndTotalsAreTheRecordsOrAreRefused)
{
    addContract("X1", {2, 1}, " CLAUSE ", logoFile);
    addContract("X2", {}, "CLAUSE", "");
    addContract("X3", {3}, "CLAUSE", folder.filePath("none.png"));
    Document sheet{
        .name = "sheet",
        .report = "YY_Xsfp_Rpt",
        .record = {.name = "明细单",
                   .key = "htbh",
                   .head = "select logo,fstk,case htbh when 'X1' then 1 else 0 end as shown from yy_gw_wxht_h where "
                           "htbh='{htbh}'",
                   .rows = "select * from yy_wxht_rpt where htbh='{htbh}'",
                   .clause = "fstk"},
        .order = " order by je",
        .totals = "select sum(je) as zjje from yy_wxht_rpt where htbh='{htbh}' and je>0 group by htbh",
        .clause = {"shown", "L_FSTK"},
        .logo = "Image1",
        .labels = {{"L_ZjjE", [](const DocumentValues &values) { return QString::number(values.total("ZJJE")); }}},
    };
    const Report &filled = *fill(sheet, database.connection(), "X1").report;
    EXPECT_EQ(filled.label("L_FSTK"), "CLAUSE");
    EXPECT_EQ(filled.label("L_ZjjE"), "3");
    EXPECT_EQ(picturesOf(filled), 1);
    EXPECT_EQ(filled.DataControl1.Source, "select * from yy_wxht_rpt where htbh='{htbh}' order by je");
    for (const auto &[number, error] : {std::pair("X2", 3021), std::pair("X3", 481)}) {
        try {
            fill(sheet, database.connection(), number);
            ADD_FAILURE() << number;
        } catch (const DataError &refusal) {
            EXPECT_EQ(refusal.number(), error);
        }
        EXPECT_EQ(filled.label("L_FSTK"), "") << number; // whose flag is cleared
    }
    // a text that is always the same, and a label that is not listed and keeps what it held
    sheet.labels = {{"L_ZjjE", "fixed"}};
    sheet.clause = {};
    fill(sheet, database.connection(), "X1").report->setLabel("L_FSTK", "held");
    sheet.labels = {{"L_ZjjE", ""}};
    EXPECT_EQ(fill(sheet, database.connection(), "X1").report->label("L_FSTK"), "held");
    EXPECT_EQ(filled.label("L_ZjjE"), "");
}

TEST_F(Fill, AMessageComesBeforeTheReportAndAWrongLabelInsteadOfIt)
{
    addContract("X1", {1234567890123.45}, "", "");
    QVector<Shown> told;
    QStringList shown;
    setReportViewer([&](Report &of, QWidget *) {
        told = dialogs.shown;
        shown.append(of.name() + ' ' + of.DataControl1.values["htbh"].toString());
    });
    showDocument(document("形式发票2"), database.connection(), "X1", nullptr);
    EXPECT_EQ(told, (QVector<Shown>{{tooLong, "系统提示", MessageIcon::Critical}}));
    EXPECT_EQ(shown, QStringList{"yy_XsFp_dJRPT X1"});
    EXPECT_THROW(showDocument(document("形式发票3"), database.connection(), "X1", nullptr), DataError);
    Document wrong = document("形式发票");
    wrong.labels.append(DocumentLabel{"L_None", "text"});
    EXPECT_THROW(fill(wrong, database.connection(), "X1"), DataError);
}

} // namespace tradewick
