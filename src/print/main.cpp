// Prints documents into files, without a window and without a display.
#include "common/globals.h"
#include "contracts/proforma_invoice.h"
#include "reporting/painter.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QTextStream>

using namespace tradewick;

namespace
{

struct Document {
    const char *name;
    std::function<Report &(Connection &, const QString &number)> fill;
};

const QVector<Document> documents{
    {"形式发票",
     [](Connection &c, const QString &number) -> Report & { return proformaInvoice("YY_Xsfp_Rpt", c, number); }},
    {"形式发票2",
     [](Connection &c, const QString &number) -> Report & { return proformaInvoice("yy_XsFp_dJRPT", c, number); }},
};

int fail(const QString &text)
{
    QTextStream(stderr) << "tradewick-print: " << text << "\n";
    return 1;
}

const Document *documentOf(const QString &name)
{
    for (const Document &document : documents)
        if (name == QString::fromUtf8(document.name))
            return &document;
    return nullptr;
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
                       {"document", "Name of a document; may be given several times.", "name"},
                       {"number", "Number of a record; may be given several times.", "number"},
                       {"pdf", "The PDF to write.", "file"}});
    parser.process(application);
    if (parser.isSet("list")) {
        QTextStream out(stdout);
        for (const Document &document : documents)
            out << QString::fromUtf8(document.name) << "\n";
        return 0;
    }
    for (const char *option : {"database", "document", "number", "pdf"})
        if (!parser.isSet(option))
            return fail(QStringLiteral("--%1 is missing; see --help").arg(option));

    gConnStr = "Provider=SQLOLEDB.1;Persist Security Info=True;password=;User ID=;Initial Catalog=;Data Source=" +
               QFileInfo(parser.value("database")).absoluteFilePath();
    try {
        gConn = Connection::shared(gConnStr);
        return 0;
    } catch (const DataError &error) {
        return fail(error.text());
    }
}
