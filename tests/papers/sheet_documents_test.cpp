// What stands on each document of a detail sheet, read from its PDF.
#include "papers/papers.h"
#include "papers/report_table.h"
#include "reporting/painter.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include <array>
#include <numeric>

namespace tradewick
{

using namespace test;

namespace
{

// Quantity, packages, net and gross weight, volume, amount.
using Line = std::array<double, 6>;

struct Sheet {
    QMap<QString, QString> texts; // {names} of what follows from no figure
    double rate;                  // of commission
    bool flags;
    QVector<Line> lines;

    QString operator[](const char *name) const { return texts[name]; }
    QString stored(const char *name) const { return ' ' + texts[name] + ' '; }
    // A text with its {names} filled in.
    QString with(QString text) const
    {
        QMap<QString, QString> all = texts;
        for (int figure = 0; figure < 6; ++figure) {
            const double sum =
                std::accumulate(lines.begin(), lines.end(), 0.0,
                                [figure](double before, const Line &one) { return before + one[figure]; });
            all[QString("qpngva")[figure]] = QString::number(sum, 'g', 12);
        }
        const double amount = all["a"].toDouble(), commission = amount * rate / 100;
        all["c"] = QString::number(commission, 'g', 12);
        all["r"] = QString::number(amount - commission, 'g', 12);
        if (!flags)
            all["clause"].clear();
        for (const char *unit : {"e", "u", "k"}) // with the blanks around them
            all[QString(unit).toUpper()] = stored(unit);
        for (auto value = all.cbegin(); value != all.cend(); ++value)
            text.replace('{' + value.key() + '}', *value);
        return text;
    }
};

// Two sheets with nothing in common, and flags the other way.
const Sheet sheets[] = {
    {{{"f", "FPA1"},
      {"e", "USD"},
      {"u", "PCS"},
      {"k", "CTNS"},
      {"clause", "ALL OF ALPHA"},
      {"words", "ONE THOUSAND TWO HUNDRED AND THIRTY FOUR AND CENTS FIFTY ONLY"},
      {"net", "ONE THOUSAND ONE HUNDRED AND SEVENTY TWO AND CENTS SEVENTY EIGHT ONLY"},
      {"chinese", "壹仟贰佰叁拾肆圆伍角"}},
     5,
     true,
     {{120, 10, 100.25, 110.5, 1.125, 1000.25}, {60.5, 5, 50, 55.75, 0.75, 234.25}}},
    {{{"f", "FPB2"},
      {"e", "EUR"},
      {"u", "SETS"},
      {"k", "PLTS"},
      {"clause", "NONE OF BETA"},
      {"words", "TWO THOUSAND  AND CENTS FIVE ONLY"},
      {"net", "TWO THOUSAND  AND CENTS FIVE ONLY"},
      {"chinese", "贰仟圆零伍分"}},
     0,
     false,
     {{7, 3, 21, 24, 0.5, 2000}, {1, 1, 0.5, 0.75, 0.25, 0.05}}},
};

// A document, then its labels to the letter; "pdf" is what stands on the paper besides.
constexpr const char *expectations = R"(
单价格发票;L_TalAu={q}{U}  IN{p}{K}  N.W:{n}KgS  G.W:{g}KgS;L_TalAM=SAY {E}  {net};L_TsTK={clause}
发票;L_TalAu={q}{U}  IN{p}{K}  N.W:{n}KgS  G.W:{g}KgS;L_TalAM=SAY {E}  {net};L_TsTK={clause}
英文发票;L_TalAu={q}{U}  IN{p}{K}  N.W:{n}KgS  G.W:{g}KgS;L_TalAM=SAY {E}  {net};L_TsTK={clause}
装箱单;L_TsTK={clause};pdf={v} M
英文装箱单;L_TalAu={q}{U}  IN{p}{K}  N.W:{n}KgS  G.W:{g}KgS  Volume:{v};L_TsTK={clause}
明细单;L_LEss={c};L_SYF={r};L_NYR=2026年11月3日
产地证;L_Tstk={clause}
FormA;L_Tstk={clause}
报关单;L_ZjZ={n};L_ZMZ={g};L_Zjs={p};L_LEss={c};L_SYF={r}
报关委托书;L_zsl={q};L_zmz={g};L_zje={a}
报检单;L_BjRq=2026年11月3日
装船通知;L_ZJZ={n} Kgs;L_ZMZ={g} Kgs;L_ZJJE={e} {a};L_ZJs={p}   {k}
汇票;L_ZJje={e}{r};L_Ywje={e}  {net}
英文汇票;L_ZJje={e}{r};L_Ywje={e}  {net}
产地证申请书;L_Djrq=2026年3月7日;L_SlzJ={q}{u} G.W:{g} Kgs  N.W:{n} Kgs;L_ZjjE={e} {a}
FormA申请书;L_Djrq=2026年3月7日;L_SlzJ={q}{u} G.W:{g} Kgs  N.W:{n} Kgs;L_ZjjE={e} {a}
出口专用发票;L_YwJe={words};L_ZwJe={chinese};pdf={a}
出口专用发票套打;L_YwJe={words};L_ZwJe={chinese};L_zjje={a}
退税专用报关单;L_ZjZ={n};L_ZMZ={g};L_Zjs={p};L_hzje={chinese}
税收票据商业发票;L_YwJe={words};L_ZwJe={chinese};pdf={a}
税收票据报关单;L_ZjZ={n};L_ZMZ={g};L_Zjs={p};L_hzje={chinese}
寄单证明;L_FpBh=Invoice No.{f};L_DjRq=Date:2026-03-07;L_EGSMC2={f}公司;L_gSMC2=CO {f};pdf=TP APPLICANT BY EMS
)";

class SheetDocuments : public testing::Test
{
protected:
    SheetDocuments()
    {
        QImage logo(40, 20, QImage::Format_RGB32);
        logo.fill(Qt::red);
        EXPECT_TRUE(logo.save(folder.filePath("logo.png")));
        reportClock = [] { return QDateTime(QDate(2026, 11, 3), QTime(9, 0)); };
    }
    ~SheetDocuments() override { reportClock = &QDateTime::currentDateTime; }

    void add(const Sheet &sheet, const QString &logo, const QString &contract = "X1")
    {
        database.connection().Execute(
            "insert into yy_mxb_h(fpbh,htbh,djrq,gsmc,e_gsmc,logo,bizh,dw,b_zdw,yjl,tstk,xsfp,xszxd,xsforma) "
            "values('{f}','{h}','2026-03-07',' {f}公司','CO {f} "
            "','{l}','{e}','{u}','{k}','{y}','{t}','{s}','{s}','{s}')",
            {{"f", sheet["f"]},
             {"h", contract},
             {"l", logo},
             {"e", sheet.stored("e")},
             {"u", sheet.stored("u")},
             {"k", sheet.stored("k")},
             {"y", sheet.rate},
             {"t", sheet.stored("clause")},
             {"s", int(sheet.flags)}});
        for (const auto &[quantity, packages, net, gross, volume, amount] : sheet.lines)
            database.connection().Execute("insert into yy_mxb_b(fpbh,cplb,sl,jianshu,zjz,zmz,hjtj,je) "
                                          "values('{f}','C','{q}','{p}','{n}','{g}','{v}','{a}')",
                                          {{"f", sheet["f"]},
                                           {"q", quantity},
                                           {"p", packages},
                                           {"n", net},
                                           {"g", gross},
                                           {"v", volume},
                                           {"a", amount}});
    }
    // In the order of what was drawn, with one blank between the words.
    QString textOf(const QVector<PagePtr> &pages) const
    {
        const QString path = folder.filePath("out.pdf");
        QString error;
        EXPECT_TRUE(writePdf(pages, "test", path, &error)) << error.toStdString();
        QProcess reader;
        reader.start("pdftotext", {"-raw", path, "-"});
        EXPECT_TRUE(reader.waitForFinished(60000));
        return QString::fromUtf8(reader.readAllStandardOutput()).simplified();
    }

    TestDatabase database;
    QTemporaryDir folder;
};

} // namespace

TEST_F(SheetDocuments, EachBearsTheSumsOfItsSheetAndNothingOfTheOneBefore)
{
    for (const Sheet &sheet : sheets)
        add(sheet, sheet.flags ? folder.filePath("logo.png") : QString());
    QMap<QString, QStringList> expected;
    for (const QString &line : QString(expectations).split('\n', Qt::SkipEmptyParts))
        expected[line.section(';', 0, 0)] = line.section(';', 1).split(';');
    for (const Document &one : documents()) {
        if (one.record.key != "fpbh")
            continue;
        EXPECT_TRUE(expected.contains(one.name)) << one.name.toStdString();
        for (const Sheet &sheet : sheets) {
            SCOPED_TRACE((one.name + ' ' + sheet["f"]).toStdString());
            const Report &paper = *fill(one, database.connection(), sheet["f"]).report;
            const auto pages = paper.layout()->all();
            const QString text = textOf(pages);
            for (const QString &of : expected[one.name]) {
                const QString label = of.section('=', 0, 0), wanted = sheet.with(of.section('=', 1));
                EXPECT_TRUE(text.contains(wanted.simplified())) << of.toStdString() << "\n" << text.toStdString();
                EXPECT_TRUE(label == "pdf" || paper.label(label) == wanted) << of.toStdString();
            }
            EXPECT_TRUE(paper.unsetLabels().isEmpty());
            EXPECT_EQ(pages.first()->images.isEmpty(), !sheet.flags || paper.model().object("Image1") == nullptr);
            const Sheet &other = sheets[sheet.flags ? 1 : 0];
            for (const char *strange : {"f", "e", "clause", "chinese"})
                EXPECT_FALSE(text.contains(other[strange])) << strange;
        }
    }
}

TEST_F(SheetDocuments, InvoicesTakeRowsAsTheyAreOrByCategory)
{
    Sheet sheet = sheets[0];
    sheet.lines = {sheet.lines[0], sheet.lines[1], sheet.lines[0]};
    add(sheet, {});
    database.connection().Execute("update yy_mxb_b set cplb='D' where fpbh='FPA1' and sl=60.5");
    for (const auto &[name, groups] : {std::pair("单价格发票", 2), {"发票", 3}, {"英文发票", 3}}) {
        const QString text = textOf(fill(document(name), database.connection(), "FPA1").report->layout()->all());
        EXPECT_EQ(text.count("SAY USD"), groups) << name;
    }
}

TEST_F(SheetDocuments, WithoutGoodsContractOrLogoSomeAreRefusedInWords)
{
    Sheet empty = sheets[0];
    empty.lines.clear();
    add(empty, {});
    add(sheets[1], folder.filePath("none.png"), " ");
    const struct {
        const char *name, *number;
        int error; // 0: is shown
    } cases[] = {
        {"发票", "FPA1", 3021},
        {"装船通知", "FPA1", 3021},
        {"退税专用报关单", "FPA1", 3021},
        {"装箱单", "FPA1", 0},
        {"产地证", "FPA1", 0},
        {"出口专用发票", "FPA1", 0},
        {"出口专用发票套打", "FPA1", 0},
        {"出口专用发票套打", "FPB2", 3021},
        {"出口专用发票", "FPB2", 3021},
        {"退税专用报关单", "FPB2", 3021},
        {"发票", "FPB2", 481},
        {"寄单证明", "FPB2", 481},
        {"汇票", "FPB2", 0},
        {"税收票据报关单", "FPB2", 0},
        {"税收票据报关单", "no sheet", 3021},
        {"税收票据商业发票", "no sheet", 0},
    };
    for (const auto &of : cases) {
        int error = 0;
        try {
            const Report &paper = *fill(document(of.name), database.connection(), of.number).report;
            EXPECT_FALSE(paper.model().object("L_YwJe") && paper.label("L_YwJe") != " ") << of.name;
        } catch (const DataError &refusal) {
            error = refusal.number();
        }
        EXPECT_EQ(error, of.error) << of.name << ' ' << of.number;
    }
    ScriptedDialogs dialogs;
    printRecord("出口专用发票", "FPB2", nullptr);
    EXPECT_EQ(dialogs.shown, (QVector<Shown>{{"没有当前记录，不能打印！", "系统提示", MessageIcon::Critical}}));
}

} // namespace tradewick
