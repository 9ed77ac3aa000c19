// Prints documents into files, without a window and without a display.
#include "common/globals.h"
#include "contracts/proforma_invoice.h"
#include "reporting/excel_export.h"
#include "reporting/painter.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QTextStream>

#include <algorithm>

using namespace tradewick;

namespace
{

constexpr double twipsPerInch = 1440, pngDotsPerInch = 150;

struct Document {
    const char *name;
    const char *report;
    // Fills the report for one record. Throws DataError for a number that is not there.
    Report &(*fill)(const QString &report, Connection &connection, const QString &number);
};

const QVector<Document> documents{
    {"形式发票", "YY_Xsfp_Rpt", proformaInvoice},
    {"形式发票2", "yy_XsFp_dJRPT", proformaInvoice},
};

int fail(const QString &text)
{
    QTextStream(stderr) << "tradewick-print: " << text << "\n";
    return 1;
}

// out.png becomes out-1.png, out-2.png and so on.
bool writePng(const QVector<PagePtr> &pages, const QString &path, QString *error)
{
    const QFileInfo file(path);
    for (const PagePtr &page : pages) {
        const Paper &paper = page->context->paper;
        QImage image(qRound(paper.width / twipsPerInch * pngDotsPerInch),
                     qRound(paper.height / twipsPerInch * pngDotsPerInch), QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        paintPage(painter, *page, pngDotsPerInch / twipsPerInch);
        painter.end();
        const QString name = QStringLiteral("%1/%2-%3.png").arg(file.path(), file.completeBaseName()).arg(page->number);
        if (!image.save(name)) {
            *error = QStringLiteral("cannot write %1").arg(name);
            return false;
        }
    }
    return true;
}

int print(const QCommandLineParser &options)
{
    const QString name = options.value("document");
    const auto document = std::find_if(documents.begin(), documents.end(),
                                       [&](const Document &one) { return name == QString::fromUtf8(one.name); });
    if (document == documents.end())
        return fail(QStringLiteral("no document is named %1; --list names them").arg(name));
    QString source = options.value("database");
    if (source.endsWith(".db", Qt::CaseInsensitive))
        source = QFileInfo(source).absoluteFilePath();
    gConnStr =
        "Provider=SQLOLEDB.1;Persist Security Info=True;password=;User ID=;Initial Catalog=;Data Source=" + source;
    gConn = Connection::shared(gConnStr);
    Report &report = document->fill(QString::fromUtf8(document->report), *gConn, options.value("number"));
    const QVector<PagePtr> pages = report.layout()->all();
    const QString title = name + u' ' + options.value("number");
    const std::pair<const char *, std::function<bool(const QString &path, QString *error)>> targets[] = {
        {"pdf", [&](const QString &path, QString *error) { return writePdf(pages, title, path, error); }},
        {"xls", [&](const QString &path, QString *error) { return exportToExcel(pages, path, error); }},
        {"png", [&](const QString &path, QString *error) { return writePng(pages, path, error); }},
    };
    for (const auto &[option, write] : targets) {
        QString error;
        if (options.isSet(option) && !write(options.value(option), &error))
            return fail(options.value(option) + ": " + error);
    }
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setApplicationName("tradewick-print");
    QCommandLineParser parser;
    parser.setApplicationDescription("Prints documents of a Tradewick database into files.");
    parser.addHelpOption();
    parser.addOptions({{"list", "Names all documents."},
                       {"database", "A file ending in .db, or what the settings take as the server.", "source"},
                       {"document", "Name of the document.", "name"},
                       {"number", "Number of the record.", "number"},
                       {"pdf", "The PDF to write.", "file"},
                       {"xls", "The workbook to write.", "file"},
                       {"png", "Name of the pictures to write; the page's number is put in.", "file"}});
    parser.process(application);
    if (parser.isSet("list")) {
        QTextStream out(stdout);
        for (const Document &document : documents)
            out << QString::fromUtf8(document.name) << "\n";
        return 0;
    }
    for (const char *option : {"database", "document", "number"})
        if (!parser.isSet(option))
            return fail(QStringLiteral("--%1 is missing; see --help").arg(option));
    if (!parser.isSet("pdf") && !parser.isSet("xls") && !parser.isSet("png"))
        return fail(QStringLiteral("one of --pdf, --xls and --png is needed; see --help"));
    int status = 0;
    try {
        status = print(parser);
    } catch (const DataError &error) {
        status = fail(error.text());
    }
    gConn.reset(); // while the application that its driver belongs to still lives
    return status;
}
