#include "report_helpers.h"
#include "support/test_database.h"

#include <QDir>
#include <QImage>
#include <QRegularExpression>

#include <csignal>
#include <sys/resource.h>

namespace tradewick::test
{

namespace
{

QString pdfOf(Report &of, std::unique_ptr<RowSource> rows, const QString &path)
{
    QString error;
    EXPECT_TRUE(writePdf(of.layout(std::move(rows), paperFor(of.model()))->all(), of.caption(), path, &error))
        << error.toStdString();
    return pdfText(path);
}

TEST(Report, InvoicesComeBackFromTheirPdfToTheCharacter)
{
    QTemporaryDir folder;
    const struct {
        const char *name;
        int lines, pages;
        bool perPart; // a price of its own for the mirror
    } cases[] = {{"YY_Xsfp_Rpt", 1, 1, true},    {"YY_Xsfp_Rpt", 12, 1, true},    {"YY_Xsfp_Rpt", 120, 6, true},
                 {"yy_XsFp_dJRPT", 1, 1, false}, {"yy_XsFp_dJRPT", 12, 1, false}, {"yy_XsFp_dJRPT", 120, 5, false}};
    for (const auto &of : cases) {
        SCOPED_TRACE(of.name);
        Report &invoice = report(QString::fromLatin1(of.name));
        invoice.setLabel("L_ZjjE", "USD SAY ONE THOUSAND ONLY");
        invoice.setLabel("L_FSTK", "PAYMENT BY T/T\n30% 定金");
        const QString path = folder.filePath("invoice.pdf");
        const QString text = pdfOf(invoice, invoiceRows(of.lines), path);
        const QStringList pages = text.split('\f', Qt::SkipEmptyParts);
        ASSERT_EQ(pages.size(), of.pages);
        const QString all = text.simplified();
        const int triangle = of.lines * (of.lines + 1) / 2, quantity = triangle * 10;
        const QString amount = printedText(triangle * 17.5, "#,##0.00");
        for (const QString &part :
             {QStringLiteral("WOODEN FRAMES, MIRRORS AND PICTURES 木制"), QStringLiteral("DATE: March 5, 2006"),
              QStringLiteral("%1 PCS USD %2").arg(quantity).arg(amount), QStringLiteral("USD SAY ONE THOUSAND ONLY"),
              QStringLiteral("PAYMENT BY T/T"), QStringLiteral("30% 定金"),
              QStringLiteral("Page %1 Of %1").arg(of.pages)})
            EXPECT_TRUE(all.contains(part)) << part.toStdString() << " in " << all.toStdString();
        for (const QString &page : pages) {
            EXPECT_TRUE(page.contains("AMOUNT") && page.contains("X060300007")) << page.toStdString();
            EXPECT_EQ(page.contains("MIRROR/PICTURE"), of.perPart);
        }
        for (int line = 1; line <= of.lines; ++line) {
            const QString row =
                QStringLiteral("NB-%1 12X16X2.5CM 木框 PCS %2 1.50 %3%4")
                    .arg(line, 4, 10, QLatin1Char('0'))
                    .arg(line * 10)
                    .arg(of.perPart && line % 2 == 0 ? "0.25 " : "", printedText(line * 17.5, "#,##0.00"));
            EXPECT_EQ(all.count(row), 1) << row.toStdString();
        }
        const QStringList fonts = QString::fromUtf8(output("pdffonts", {path})).split('\n', Qt::SkipEmptyParts).mid(2);
        EXPECT_GE(fonts.size(), 3);       // Latin plain and bold, Chinese
        for (const QString &font : fonts) // embedded, and its glyphs known by their characters
            EXPECT_TRUE(font.contains(QRegularExpression("Identity-H +yes +\\w+ +yes"))) << font.toStdString();
        EXPECT_LT(QFileInfo(path).size(), 300000); // the fonts of the machine take 20 MB
        EXPECT_TRUE(QString::fromUtf8(output("pdfinfo", {path})).contains(invoice.caption()));
    }
}

TEST(Report, PdfThatCannotBeWrittenLeavesWhatWasThere)
{
    Report &invoice = report("YY_Xsfp_Rpt");
    const auto pages = invoice.layout(invoiceRows(300), paperFor(invoice.model()))->all();
    QTemporaryDir folder;
    QString error;
    EXPECT_FALSE(writePdf(pages, "t", folder.filePath("none/a.pdf"), &error));
    EXPECT_FALSE(error.isEmpty());
    ASSERT_TRUE(QDir(folder.path()).mkdir("folder.pdf"));
    EXPECT_FALSE(writePdf(pages, "t", folder.filePath("folder.pdf"), &error));

    const QString path = folder.filePath("old.pdf");
    QFile old(path);
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    // a full disk: no file may grow beyond a few bytes
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{}, full{};
    getrlimit(RLIMIT_FSIZE, &before);
    full = before;
    full.rlim_cur = 4096;
    setrlimit(RLIMIT_FSIZE, &full);
    error.clear();
    EXPECT_FALSE(writePdf(pages, "t", path, &error));
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_FALSE(error.isEmpty());
    ASSERT_TRUE(old.open(QIODevice::ReadOnly));
    EXPECT_EQ(old.readAll().toStdString(), "old");
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList{"old.pdf"});
}

TEST(Report, OneInstanceKeepsWhatItsCallersWrote)
{
    Report &invoice = report("YY_Xsfp_Rpt");
    EXPECT_EQ(&invoice, &report("YY_Xsfp_Rpt"));
    EXPECT_THROW(report("yy_xsfp_rpt"), DataError);
    EXPECT_THROW(invoice.setLabel("L_None", ""), DataError);
    EXPECT_THROW(invoice.setLabel("Label1", ""), DataError);
    EXPECT_THROW(invoice.setImage("L_FSTK", ""), DataError);

    int shown = 0;
    QStringList missing;
    setReportViewer([&](Report &of, QWidget *) {
        ++shown;
        missing = of.unsetLabels();
    });
    invoice.show();
    invoice.setLabel("L_FSTK", "first");
    invoice.show();
    EXPECT_EQ(missing, QStringList{"L_ZjjE"});
    invoice.setLabel("L_ZjjE", "first");
    invoice.setLabel("L_FSTK", "second");
    invoice.show();
    EXPECT_TRUE(missing.isEmpty());
    invoice.show();
    EXPECT_EQ(missing, (QStringList{"L_ZjjE", "L_FSTK"}));
    EXPECT_EQ(shown, 4);
    EXPECT_EQ(invoice.label("L_FSTK"), "second");
    setReportViewer({});
}

TEST(Report, PictureIsEmptyWithoutAReadableFile)
{
    QTemporaryDir folder;
    QImage logo(40, 20, QImage::Format_RGB32);
    logo.fill(Qt::red);
    ASSERT_TRUE(logo.save(folder.filePath("logo.png")));
    QFile broken(folder.filePath("broken.png"));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("no picture");
    broken.close();
    Report &invoice = report("YY_Xsfp_Rpt");
    const struct {
        QString path;
        int pictures;
    } cases[] = {{folder.filePath("logo.png"), 1},
                 {folder.filePath("none.png"), 0},
                 {folder.filePath("logo.png"), 1},
                 {folder.filePath("broken.png"), 0},
                 {"", 0}};
    for (const auto &of : cases) {
        invoice.setImage("Image1", of.path);
        const PagePtr page = invoice.layout(invoiceRows(1), paperFor(invoice.model()))->next();
        const auto pictures = std::count_if(page->items.cbegin(), page->items.cend(), [](const PageItem &item) {
            return item.object->kind == ObjectKind::Image;
        });
        EXPECT_EQ(pictures, of.pictures) << of.path.toStdString();
    }
}

TEST(Report, RowsComeFromTheDataControl)
{
    TestDatabase database(TestDatabase::Demonstration);
    const QVariant contract = database.value("select htbh from yy_wxht_rpt order by htbh");
    ASSERT_TRUE(contract.isValid());
    Report &invoice = report("yy_XsFp_dJRPT");
    invoice.DataControl1.ConnectionString = database.connectionString();
    invoice.DataControl1.Source = "select * from yy_wxht_rpt where HTBH='{htbh}'";
    invoice.DataControl1.values = {{"htbh", contract}};
    QStringList texts;
    for (const PagePtr &page : invoice.layout()->all())
        texts.append(textsOf(*page));
    EXPECT_TRUE(texts.contains(contract.toString())) << texts.join('|').toStdString();
    const auto rows = database.connection().rows(invoice.DataControl1.Source, invoice.DataControl1.values);
    double amount = 0;
    for (const auto &row : rows) {
        EXPECT_TRUE(texts.contains(row["cpbh"].toString()));
        amount += row["je"].toDouble();
    }
    EXPECT_TRUE(texts.contains(printedText(amount, "#,##0.00")));
    invoice.DataControl1.Source = "select * from no_such_table";
    EXPECT_THROW(invoice.layout(), DataError);
    invoice.DataControl1.Source.clear();
}

} // namespace

} // namespace tradewick::test
