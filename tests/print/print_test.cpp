// tradewick-print as its users call it, and what independent readers find in the files.
#include "support/test_database.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
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

Outcome runProgram(const QString &program, const QStringList &arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("DISPLAY");
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
        return runProgram(binFolder() + "/tradewick-print", QStringList{"--database", database.path()} + arguments);
    }
    QString file(const QString &name) const { return folder.filePath(name); }

    void addContract(int lines)
    {
        Connection &connection = database.connection();
        connection.Execute("insert into yy_gw_wxht_h(htbh,djrq,khmc,dizh,bizh,e_gsmc,madol,fstk) "
                           "values('{h}','2026-12-01','{c}','{a}','USD','OWN & SONS','N/M','{f}')",
                           {{"h", contract}, {"c", "O'Neill & Söhne"}, {"a", "1 QUAY <B>"}, {"f", "CLAUSE 50% _[a]"}});
        for (int i = 1; i <= lines; ++i)
            connection.Execute(
                "insert into yy_gw_wxht_b(htbh,cpbh,cpmc,gg,dw,sl,jkdj,jmdj,dj,je) values('{h}','{p}','镜框','30x40cm',"
                "'PCS',{n},'1.5','0.25','1.75',{a})",
                {{"h", contract}, {"p", QString("P%1").arg(i, 4, 10, QChar('0'))}, {"n", i}, {"a", 1.75 * i}});
    }
};

} // namespace

TEST_F(Print, ListNamesTheDocuments)
{
    const Outcome listed = runProgram(binFolder() + "/tradewick-print", {"--list"});
    EXPECT_EQ(listed.status, 0);
    EXPECT_EQ(listed.out, "形式发票\n形式发票2\n");
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
    const struct {
        QStringList arguments;
        QString named;
    } cases[] = {
        {{"--document", "形式发票", "--number", "X' or '1'='1", "--pdf", file("a.pdf")}, "X' or '1'='1"},
        {{"--document", "不存在", "--number", "X260800001", "--pdf", file("a.pdf")}, "不存在"},
        {{"--document", "形式发票", "--number", "X260800001"}, "--pdf"},
        {{"--document", "形式发票", "--pdf", file("a.pdf")}, "--number"},
        {{"--document", "形式发票", "--number", "X260800001", "--pdf", "/nowhere/a.pdf"}, "/nowhere/a.pdf"},
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

} // namespace tradewick
