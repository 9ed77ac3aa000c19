// Prints documents into files, without a window and without a display.
#include "common/field_panel.h"
#include "common/globals.h"
#include "data/date_text.h"
#include "papers/papers.h"
#include "print/bookmarks.h"
#include "print/pictures.h"
#include "print/template_tools.h"
#include "reporting/excel_export.h"
#include "reporting/painter.h"

#include <QApplication>
#include <QBuffer>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QTextStream>

#include <exception>
#include <functional>

using namespace tradewick;

namespace
{

// What the program ends with.
enum Status { Written = 0, Failed = 1, WrittenWithRemarks = 2 };

void tell(const QString &text)
{
    QTextStream(stderr) << "tradewick-print: " << text << "\n";
}

int fail(const QString &text)
{
    tell(text);
    return Failed;
}

QString pathOrServer(const QString &database)
{
    return database.endsWith(".db", Qt::CaseInsensitive) ? QFileInfo(database).absoluteFilePath() : database;
}

// "A..B" of --where, and the days that a statistic is about where none are told.
const QString between = QStringLiteral("..");
constexpr int daysOfPeriod = 30;

// What a statistic is asked for with on the command line. Throws DataError for a criterion that it does not have.
Criteria criteriaOf(const Document &statistic, const QCommandLineParser &options)
{
    const auto date = [](const QString &option, const QString &text) {
        const QDate told = dateFromText(text);
        if (!told.isValid())
            throw DataError(0, option + QStringLiteral(": ") + text);
        return told;
    };
    Criteria criteria;
    const auto range = [&](const QString &from, const QDate &first, const QString &to, const QDate &last) {
        if (first > last)
            throw DataError(nothingToPrint, QStringLiteral("起始日不能晚于截止日，请核对。"));
        criteria.values.insert(from, dateText(first));
        criteria.values.insert(to, dateText(last));
    };
    const QString from = options.value("from"), to = options.value("to");
    const QDate today = QDate::currentDate();
    range(fromDate, from.isEmpty() ? today.addDays(-daysOfPeriod) : date("--from", from), toDate,
          to.isEmpty() ? today : date("--to", to));
    QStringList captions;
    for (const Criterion &one : statistic.statistic.criteria)
        captions.append(plainCaption(one.caption));
    for (const QString &condition : options.values("where")) {
        const QString caption = condition.section(u'=', 0, 0).trimmed(), value = condition.section(u'=', 1);
        const qsizetype index = captions.indexOf(plainCaption(caption));
        if (index >= 0) {
            criteria.values.insert(statistic.statistic.criteria[index].name, value);
        } else if (caption == u"有效日期" && !statistic.statistic.rowsWithin.isEmpty()) {
            criteria.isWithin = true;
            range("DTPicker3", date(condition, value.section(between, 0, 0)), "DTPicker4",
                  date(condition, value.section(between, -1)));
        } else {
            throw DataError(0, statistic.name + QStringLiteral(": --where ") + captions.join(QStringLiteral(", ")));
        }
    }
    return criteria;
}

int print(const QCommandLineParser &options)
{
    const QStringList names = options.values("document"), numbers = options.values("number");
    QVector<const Document *> wanted;
    for (const QString &name : names) {
        const Document &one = document(name);
        if (numbers.isEmpty() && one.takesNumber())
            return fail(QStringLiteral("--number is missing; see --help"));
        wanted.append(&one);
    }
    if (options.isSet("xls") && names.size() > 1) // the columns of a workbook are those of one report
        return fail(QStringLiteral("--xls takes one --document; see --help"));

    gConnStr = "Provider=SQLOLEDB.1;Persist Security Info=True;password=;User ID=;Initial Catalog=;Data Source=" +
               pathOrServer(options.value("database"));
    gConn = Connection::shared(gConnStr);
    QVector<PagePtr> pages;
    QVector<Bookmark> bookmarks;
    Status status = Written;
    for (const Document *one : wanted) {
        for (const QString &number : one->takesNumber() ? numbers : QStringList{QString()}) {
            const QString title = (one->name + u' ' + number).trimmed();
            const FilledReport filled =
                one->isStatistic() ? fill(*one, *gConn, criteriaOf(*one, options)) : fill(*one, *gConn, number);
            for (const QString &remark : filled.messages + filled.passedOver) {
                tell(title + QStringLiteral(": ") + remark);
                status = WrittenWithRemarks;
            }
            bookmarks.append({title, pages.size()});
            const QVector<PagePtr> laidOut = filled.report->layout()->all();
            for (const Overflow &overflow : overflowsOf(laidOut))
                tell(title + QStringLiteral(": ") + wordsFor(overflow));
            pages += laidOut;
        }
    }
    const auto writeBookmarkedPdf = [&](const QString &path, QString *error) {
        QBuffer plain;
        plain.open(QIODevice::WriteOnly);
        writePdf(pages, bookmarks.first().title, plain);
        const QByteArray pdf = withBookmarks(plain.data(), bookmarks);
        return replaceFile(
            path, [&](QIODevice &device) { return device.write(pdf) == pdf.size(); }, error);
    };
    const std::pair<const char *, std::function<bool(const QString &path, QString *error)>> targets[] = {
        {"pdf", writeBookmarkedPdf},
        {"xls", [&](const QString &path, QString *error) { return exportToExcel(pages, path, error); }},
        {"png", [&](const QString &path, QString *error) { return writePictures(pages, path, 150, error); }},
    };
    for (const auto &[option, write] : targets) {
        QString error;
        if (options.isSet(option) && !write(options.value(option), &error))
            return fail(options.value(option) + ": " + error);
    }
    return status;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setApplicationName("tradewick-print");
    QCommandLineParser parser;
    parser.setApplicationDescription(
        "Prints documents of a Tradewick database into files. Ends with 0 when they are "
        "written, 2 when they are but a total was too long for its words or a label stayed "
        "empty, 1 when nothing is. Texts that do not fit are told, with either status.");
    parser.addHelpOption();
    parser.addOptions({{"list", "Names all documents."},
                       {"database", "A file ending in .db, or what the settings take as the server.", "source"},
                       {"document", "Name of a document; may be repeated.", "name"},
                       {"number", "Number of a record; may be repeated. A list of all records takes none.", "number"},
                       {"from", "First day of a statistic; without it 30 days ago.", "date"},
                       {"to", "Last day of a statistic; without it today.", "date"},
                       {"where",
                        "What a statistic is narrowed by, as its query screen calls it: 签约公司=A; may be "
                        "repeated. 有效日期=A..B is its second range of dates.",
                        "caption=text"},
                       {"pdf", "The PDF to write, with a bookmark for each document and number.", "file"},
                       {"xls", "The workbook to write, of one document.", "file"},
                       {"png", "Name of the pictures to write; the page's number is put in.", "file"}});
    parser.addOptions(templateOptions());
    parser.process(application);
    if (parser.isSet("list")) {
        QTextStream out(stdout);
        for (const Document &one : documents())
            out << one.name << "\n";
        return 0;
    }
    if (const auto status = runTemplateTools(parser))
        return *status;
    for (const char *option : {"database", "document"})
        if (!parser.isSet(option))
            return fail(QStringLiteral("--%1 is missing; see --help").arg(option));
    if (!parser.isSet("pdf") && !parser.isSet("xls") && !parser.isSet("png"))
        return fail(QStringLiteral("one of --pdf, --xls and --png is needed; see --help"));
    int status = 0;
    try {
        status = print(parser);
    } catch (const std::exception &error) {
        status = fail(QString::fromUtf8(error.what()));
    }
    gConn.reset(); // while the application that its driver belongs to still lives
    return status;
}
