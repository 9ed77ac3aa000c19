// tradewick-print as its users call it, and what independent readers find in the files.
#include "papers/report_table.h"
#include "support/test_database.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>

namespace tradewick
{

using namespace test;

namespace
{

struct Outcome {
    int status;
    QString out, error;
};

Outcome runProgram(const QString &program, const QStringList &arguments, const QString &scaleFactor = {})
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("DISPLAY");
    if (!scaleFactor.isEmpty())
        environment.insert("QT_SCALE_FACTOR", scaleFactor);
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    process.waitForFinished(60000);
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()), QString::fromUtf8(process.readAllStandardError())};
}

class Print : public testing::Test
{
protected:
    TestDatabase database{TestDatabase::Demonstration};
    QTemporaryDir folder;
    static constexpr const char *contract = "X991200001";

    Outcome print(const QStringList &arguments)
    {
        return runProgram(binFolder() + "/tradewick-print",
                          QStringList{"--database", database.dataSource()} + arguments);
    }
    QStringList files() const { return QDir(folder.path()).entryList(QDir::Files); }
    QString file(const QString &name) const { return folder.filePath(name); }

    void addContract(int lines, const QString &product = "镜框")
    {
        Connection &connection = database.connection();
        connection.Execute("insert into yy_gw_wxht_h(htbh,djrq,khmc,dizh,bizh,e_gsmc,madol,fstk) "
                           "values('{h}','2026-12-01','{c}','{a}','USD','OWN & SONS','N/M','{f}')",
                           {{"h", contract}, {"c", "O'Neill & Söhne"}, {"a", "1 QUAY <B>"}, {"f", "CLAUSE 50% _[a]"}});
        for (int i = 1; i <= lines; ++i)
            connection.Execute(
                "insert into yy_gw_wxht_b(htbh,cpbh,cpmc,gg,dw,sl,jkdj,jmdj,dj,je) values('{h}','{p}','{m}','30x40cm',"
                "'PCS',{n},'1.5','0.25','1.75',{a})",
                {{"h", contract},
                 {"m", product},
                 {"p", QString("P%1").arg(i, 4, 10, QChar('0'))},
                 {"n", i},
                 {"a", 1.75 * i}});
    }
};

} // namespace

TEST_F(Print, ListNamesTheDocuments)
{
    const Outcome listed = runProgram(binFolder() + "/tradewick-print", {"--list"});
    EXPECT_EQ(listed.status, 0);
    const QStringList names = listed.out.split(u'\n', Qt::SkipEmptyParts);
    for (const char *name : {"形式发票", "形式发票2", "采购合同书", "出口专用发票套打", "派车单", "订舱单铁行渣华",
                             "提单铁行渣华", "商品资料明细表"})
        EXPECT_EQ(names.count(name), 1) << name;
    EXPECT_EQ(QSet<QString>(names.cbegin(), names.cend()).size(), names.size()); // a name says which one is printed
}

TEST_F(Print, AContractOf120LinesGivesPagesWithHeadsAndRightTotals)
{
    addContract(120);
    for (const char *document : {"形式发票", "形式发票2"}) {
        const QString pdf = file("out.pdf");
        const Outcome printed = print({"--document", document, "--number", contract, "--pdf", pdf});
        ASSERT_EQ(printed.status, 0) << printed.error.toStdString();
        const int pages =
            QRegularExpression("Pages: +(\\d+)").match(runProgram("pdfinfo", {pdf}).out).captured(1).toInt();
        EXPECT_GT(pages, 2);
        const QString text = runProgram("pdftotext", {"-layout", pdf, "-"}).out;
        EXPECT_EQ(text.count("PROFORMA INVOICE"), pages);
        EXPECT_EQ(text.count("QUANTITY"), pages);
        EXPECT_EQ(text.count("O'Neill & Söhne"), pages);
        for (int page = 1; page <= pages; ++page)
            EXPECT_TRUE(text.contains(QRegularExpression(QString("Page\\s+%1\\s+Of\\s+%2\\b").arg(page).arg(pages))));
        for (int line = 1; line <= 120; ++line)
            EXPECT_EQ(text.count(QString("P%1").arg(line, 4, 10, QChar('0'))), 1) << line;
        // 1 + 2 + ... + 120 pieces at 1.75
        EXPECT_TRUE(text.contains(QRegularExpression("TOTAL:\\s+7260\\s+PCS\\s+USD\\s+12,705\\.00")));
        EXPECT_TRUE(text.simplified().contains("USD TWELVE THOUSAND SEVEN HUNDRED AND FIVE ONLY"));
        EXPECT_TRUE(text.contains("CLAUSE 50% _[a]"));
        EXPECT_TRUE(text.contains("镜框"));
        EXPECT_TRUE(text.contains("December 1, 2026"));
        const QStringList fonts = runProgram("pdffonts", {pdf}).out.split('\n', Qt::SkipEmptyParts).mid(2);
        EXPECT_FALSE(fonts.isEmpty());
        for (const QString &font : fonts)
            EXPECT_TRUE(font.contains(QRegularExpression("yes +(yes|no) +yes"))) << font.toStdString();
    }
}

TEST_F(Print, APurchaseContractHasItsClausesInTheirOrder)
{
    database.connection().Execute(
        "update yy_gn_cght_h set jhdz='DELIVERY', jgtk='TERM', ysbz='STANDARD', yyqx='6', bzyq='PACKING', jsfs='PAID', "
        "wyj='7.5', qttk='FURTHER', cs_bank='THEIRS', bank_name='OURS', cs_bcode='11', bank_code='22', "
        "cs_swdjh='33', swdjh='44', phone='55', gs_phone='66' where htbh='C260800001'");
    ASSERT_EQ(print({"--document", "采购合同书", "--number", "C260800001", "--pdf", file("o.pdf")}).status, 0);
    const QString text = runProgram("pdftotext", {"-layout", file("o.pdf"), "-"}).out.remove(QRegularExpression("\\s"));
    qsizetype at = 0;
    for (const char *part : {"供方：惠安石桥工艺厂合同编号：№C260800001",
                             "一、产品名称、规格型号、数量、金额及交货期限。",
                             "总计金额CNY",
                             "二、交货地点、运输方式、运费承担价格条款：DELIVERYTERM",
                             "三、验收标准及提出异议期限。验收标准：STANDARD",
                             "收货后6个月内",
                             "四、如需提供担保，另立合同担保书作为本合同附件。",
                             "五、包装标准：PACKING",
                             "六、结算方式：PAID",
                             "七、违约责任：",
                             "7.5％向需方",
                             "7.5％向供方",
                             "八、解决合同纠纷方式：",
                             "九、其它约定事项：FURTHER",
                             "供方需方鉴（公）证意见",
                             "话：55电话：66",
                             "银行：THEIRS开户银行：OURS",
                             "号：11帐号：22",
                             "号：33税号：44",
                             "本合同有效期：从2026-08-08至2026-09-07"}) {
        const qsizetype next = text.indexOf(part, at);
        EXPECT_GE(next, 0) << part;
        at = qMax(at, next);
    }
}

TEST_F(Print, WorkbookAndPicturesComeFromTheSamePages)
{
    addContract(3);
    ASSERT_EQ(
        print({"--document", "形式发票", "--number", contract, "--xls", file("o.xls"), "--png", file("o.png")}).status,
        0);
    const QString cells = runProgram("xls2csv", {"-d", "utf-8", file("o.xls")}).out;
    EXPECT_TRUE(cells.contains("P0003"));
    EXPECT_TRUE(cells.contains("O'Neill & Söhne"));
    EXPECT_TRUE(QFile::exists(file("o-1.png")));
}

TEST_F(Print, WhatIsNotThereIsNamedAndLeavesNoFile)
{
    const QString grouped = "外销合同统计表（按签约公司）";
    const struct {
        QStringList arguments;
        QString named;
    } cases[] = {
        {{"--document", "形式发票", "--number", "X' or '1'='1", "--pdf", file("a.pdf")}, "X' or '1'='1"},
        {{"--document", "不存在", "--number", "X260800001", "--pdf", file("a.pdf")}, "不存在"},
        {{"--document", "形式发票", "--number", "X260800001"}, "--pdf"},
        {{"--document", "形式发票", "--pdf", file("a.pdf")}, "--number"},
        {{"--document", "形式发票", "--number", "X260800001", "--pdf", "/nowhere/a.pdf"}, "/nowhere/a.pdf"},
        {{"--document", "形式发票", "--number", "X260800001", "--pdf", "/dev/full"}, "/dev/full"},
        {{"--document", "形式发票", "--number", "X260800001", "--number", "X0", "--pdf", file("a.pdf")}, "X0"},
        {{"--document", grouped, "--from", "2026-12-31", "--to", "2026-01-01", "--pdf", file("a.pdf")}, "起始日"},
        {{"--document", grouped, "--where", "有效日期=soon", "--pdf", file("a.pdf")}, "soon"},
        {{"--document", grouped, "--where", "厂家=A", "--pdf", file("a.pdf")}, "签约公司"},
    };
    for (const auto &c : cases) {
        const Outcome outcome = print(c.arguments);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_TRUE(outcome.error.contains(c.named)) << outcome.error.toStdString();
        EXPECT_FALSE(QFile::exists(file("a.pdf")));
    }
    const Outcome noDatabase =
        runProgram(binFolder() + "/tradewick-print",
                   {"--database", file("none.db"), "--document", "形式发票", "--number", "X", "--pdf", file("a.pdf")});
    EXPECT_EQ(noDatabase.status, 1);
    EXPECT_TRUE(noDatabase.error.contains("none.db"));
}

TEST_F(Print, SeveralDocumentsShareAPdfWithABookmarkEach)
{
    addContract(120);
    const QString pdf = file("all.pdf");
    const Outcome printed = print({"--document", "形式发票", "--document", "形式发票2", "--number", "X260800001",
                                   "--number", contract, "--pdf", pdf});
    ASSERT_EQ(printed.status, 0) << printed.error.toStdString();
    const QStringList pages = runProgram("pdftotext", {"-layout", pdf, "-"}).out.split('\f', Qt::SkipEmptyParts);
    const QString outline = runProgram("pdftohtml", {"-xml", "-i", "-stdout", pdf}).out;
    auto bookmarks = QRegularExpression("<item page=\"(\\d+)\">([^<]*)</item>").globalMatch(outline);
    int page = 1;
    for (const QString title :
         {"形式发票 X260800001", "形式发票 X991200001", "形式发票2 X260800001", "形式发票2 X991200001"}) {
        ASSERT_TRUE(bookmarks.hasNext()) << title.toStdString();
        const QRegularExpressionMatch bookmark = bookmarks.next();
        EXPECT_EQ(bookmark.captured(2), title);
        ASSERT_EQ(bookmark.captured(1).toInt(), page) << title.toStdString();
        // its pages, numbered within it, up to the next bookmark
        int of = 1;
        for (int at = 1; at <= of; ++at, ++page) {
            ASSERT_LE(page, pages.size());
            const QString &text = pages[page - 1];
            EXPECT_TRUE(text.contains(title.section(' ', 1))) << title.toStdString();
            const auto number = QRegularExpression("Page\\s+(\\d+)\\s+Of\\s+(\\d+)").match(text);
            EXPECT_EQ(number.captured(1).toInt(), at) << title.toStdString();
            of = number.captured(2).toInt();
        }
    }
    EXPECT_FALSE(bookmarks.hasNext());
    EXPECT_EQ(page - 1, pages.size());
}

TEST_F(Print, AWorkbookTakesSeveralNumbersButOneDocument)
{
    addContract(3);
    ASSERT_EQ(print({"--document", "形式发票", "--number", "X260800001", "--number", contract, "--xls", file("o.xls")})
                  .status,
              0);
    const QString cells = runProgram("xls2csv", {"-d", "utf-8", file("o.xls")}).out;
    EXPECT_TRUE(cells.contains("X260800001") && cells.contains("P0003"));
    const Outcome refused = print({"--document", "形式发票", "--document", "形式发票2", "--number", contract, "--pdf",
                                   file("a.pdf"), "--xls", file("a.xls")});
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(refused.error.contains("--xls takes one --document"));
    EXPECT_EQ(files(), QStringList{"o.xls"});
}

TEST_F(Print, TextsStandWhereTheyStandWhateverTheScreensScale)
{
    QString first;
    for (const char *scale : {"1", "1.25", "1.5", "2"}) {
        const Outcome printed = runProgram(binFolder() + "/tradewick-print",
                                           {"--database", database.dataSource(), "--document", "形式发票", "--number",
                                            "X260800001", "--pdf", file("o.pdf")},
                                           scale);
        ASSERT_EQ(printed.status, 0) << printed.error.toStdString();
        const QString words = runProgram("pdftotext", {"-bbox", file("o.pdf"), "-"}).out.section("<body>", 1);
        EXPECT_GT(words.count("<word "), 50);
        if (first.isEmpty())
            first = words;
        EXPECT_EQ(words, first) << scale;
    }
}

TEST_F(Print, AnyTextPrintsAndSpoilsNothingBesideIt)
{
    const QString texts[] = {QString(),
                             "a\tb\r\nc\x01\x1b[31m\x7f",
                             "مرحبا بالعالم שלום",
                             "👍🏽 👨‍👩‍👧 🇨🇳",
                             QString(40000, u'木'),
                             QString(40000, u'W')};
    for (const QString &text : texts) {
        database.connection().Execute("delete from yy_gw_wxht_b where htbh='{h}'", {{"h", contract}});
        database.connection().Execute("delete from yy_gw_wxht_h where htbh='{h}'", {{"h", contract}});
        addContract(1, text);
        const Outcome printed = print({"--document", "形式发票", "--number", contract, "--pdf", file("o.pdf")});
        ASSERT_EQ(printed.status, 0) << text.left(40).toStdString() << printed.error.toStdString();
        const Outcome read = runProgram("pdftotext", {"-layout", file("o.pdf"), "-"});
        EXPECT_EQ(read.error, "") << text.left(40).toStdString();
        EXPECT_EQ(read.out.count("P0001"), 1);
        // the name of the goods stands in the page's head, which does not grow
        EXPECT_EQ(printed.error.contains(QString("形式发票 %1: page 1: Field12 does not fit: “").arg(contract)),
                  text.size() == 40000)
            << printed.error.toStdString();
        EXPECT_TRUE(read.out.contains(QRegularExpression("TOTAL:\\s+1\\s+PCS\\s+USD\\s+1\\.75")))
            << text.left(40).toStdString();
    }
}

TEST_F(Print, AFullDiskIsToldAndLeavesNoFile)
{
    for (const char *option : {"--pdf", "--xls", "--png"}) {
        const Outcome full =
            runProgram("bash", {"-c", "trap '' XFSZ; ulimit -f 1; exec \"$@\"", "bash",
                                binFolder() + "/tradewick-print", "--database", database.dataSource(), "--document",
                                "形式发票", "--number", "X260800001", option, file("a.out")});
        EXPECT_EQ(full.status, 1) << option;
        EXPECT_TRUE(full.error.contains("a.out: ")) << option << full.error.toStdString();
        EXPECT_EQ(files(), QStringList()) << option;
    }
}

// A total that the words refuse, and one they cannot say: told, without a window that nobody could answer.
TEST_F(Print, WhatIsToldOfADocumentGoesToStderrWithAStatusOfItsOwn)
{
    addContract(1);
    for (const auto &[amount, told] :
         {std::pair("1234567890123.45", "位数超过16位，计算溢出！"), std::pair("-5", "L_ZjjE: ")}) {
        database.connection().Execute("update yy_gw_wxht_b set je={a} where htbh='{h}'",
                                      {{"a", QString(amount).toDouble()}, {"h", contract}});
        QFile::remove(file("o.pdf"));
        const Outcome printed = print({"--document", "形式发票", "--number", "X260800001", "--document", "形式发票2",
                                       "--number", contract, "--pdf", file("o.pdf")});
        EXPECT_EQ(printed.status, 2);
        for (const char *document : {"形式发票", "形式发票2"})
            EXPECT_TRUE(printed.error.contains(QString("%1 %2: %3").arg(document, contract, told)))
                << printed.error.toStdString();
        EXPECT_FALSE(printed.error.contains("X260800001"));
        EXPECT_EQ(runProgram("pdftotext", {"-layout", file("o.pdf"), "-"}).out.count("P0001"), 2) << amount;
    }
}

TEST_F(Print, TheGalleryHasPicturesOfAllReportsThatAreNotBlank)
{
    ASSERT_EQ(runProgram(binFolder() + "/tradewick-print", {"--gallery", file("new/gallery")}).status, 0);
    QFile html(file("new/gallery/index.html"));
    ASSERT_TRUE(html.open(QIODevice::ReadOnly));
    auto shown = QRegularExpression("src=\"(([^\"]+)-\\d+\\.png)\"").globalMatch(QString::fromUtf8(html.readAll()));
    QSet<QString> names;
    while (shown.hasNext()) {
        const QRegularExpressionMatch picture = shown.next();
        const QImage image(file("new/gallery/") + picture.captured(1));
        int ink = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                ink += qGray(image.pixel(x, y)) < 128;
        EXPECT_GT(ink, 1000) << picture.captured(1).toStdString();
        names.insert(picture.captured(2));
    }
    const QStringList reports = reportNames();
    EXPECT_EQ(names, QSet<QString>(reports.begin(), reports.end()));
    EXPECT_EQ(runProgram(binFolder() + "/tradewick-print", {"--gallery", "/dev/null/x"}).status, 1);
}

} // namespace tradewick
