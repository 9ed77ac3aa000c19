#include "print/template_tools.h"

#include "print/gallery.h"
#include "print/lint.h"
#include "print/pictures.h"
#include "print/template_files.h"
#include "reporting/painter.h"
#include "reporting/template_writer.h"

#include <QDir>
#include <QFileInfo>
#include <QTextStream>

namespace tradewick
{

namespace
{

constexpr int dotsPerInch = 150, usualRows = 5, mostRows = 10000;

int fail(const QString &text)
{
    QTextStream(stderr) << "tradewick-print: " << text << "\n";
    return 1;
}

struct RowChoice {
    int count = usualRows;
    MadeUp how = MadeUp::Typical;
};

std::optional<RowChoice> rowChoice(const QString &text)
{
    if (text.isEmpty() || text == QLatin1String("typical"))
        return RowChoice();
    if (text == QLatin1String("empty"))
        return RowChoice{0};
    if (text == QLatin1String("longest"))
        return RowChoice{usualRows, MadeUp::Longest};
    bool ok = false;
    const int count = text.toInt(&ok);
    return ok && count >= 0 && count <= mostRows ? std::optional(RowChoice{count}) : std::nullopt;
}

bool writeText(const QByteArray &text, const QString &path, QString *error)
{
    return replaceFile(
        path, [&](QIODevice &device) { return device.write(text) == text.size(); }, error);
}

// What is written of one template goes to the path given; what is written of a folder, into the folder given.
int draw(const QCommandLineParser &options)
{
    const QString from = options.value("template");
    const bool many = QFileInfo(from).isDir();
    const auto choice = rowChoice(options.value("rows"));
    if (!choice)
        return fail(QStringLiteral("--rows takes empty, typical, longest or a number; see --help"));
    const bool toScreen = options.isSet("expand") && !options.isSet("into");
    if (toScreen && many)
        return fail(QStringLiteral("--expand of a folder needs --into; see --help"));
    if (!options.isSet("pdf") && !options.isSet("png") && !options.isSet("expand"))
        return fail(QStringLiteral("one of --pdf, --png and --expand is needed; see --help"));
    QString error;
    const QVector<TemplateFile> files = readTemplates(from, &error);
    if (files.isEmpty())
        return fail(error);
    const bool pdf = options.isSet("pdf"), png = options.isSet("png"), into = options.isSet("into");
    for (const QString &folder : QStringList{many ? options.value("pdf") : QString(),
                                             many ? options.value("png") : QString(), options.value("into")})
        if (!folder.isEmpty())
            QDir().mkpath(folder); // writing fails and tells where it could not be made
    for (const TemplateFile &of : files) {
        const QString name = of.report->name;
        const auto target = [&](const char *option, const char *ending) {
            return options.value(option) + u'/' + name + QLatin1String(ending);
        };
        if (toScreen)
            QTextStream(stdout) << QString::fromUtf8(templateXml(*of.report));
        const QString xmlPath = target("into", ".xml");
        if (options.isSet("expand") && into && !writeText(templateXml(*of.report), xmlPath, &error))
            return fail(xmlPath + ": " + error);
        if (!pdf && !png)
            continue;
        const QVector<PagePtr> pages = madeUpPages(of, choice->count, choice->how);
        const QString pdfPath = many ? target("pdf", ".pdf") : options.value("pdf");
        const QString pngPath = many ? target("png", ".png") : options.value("png");
        if (pdf && !writePdf(pages, of.report->caption, pdfPath, &error))
            return fail(pdfPath + ": " + error);
        if (png && !writePictures(pages, pngPath, dotsPerInch, &error))
            return fail(pngPath + ": " + error);
    }
    return 0;
}

int lintAll(const QString &path)
{
    QString error;
    const QVector<TemplateFile> files = readTemplates(path, &error);
    if (files.isEmpty())
        return fail(error);
    QTextStream out(stdout);
    qsizetype count = 0;
    for (const TemplateFile &of : files) {
        const QVector<Finding> findings = lint(of);
        count += findings.size();
        for (const Finding &finding : findings)
            out << of.report->name << ": " << finding.rule << ": "
                << (finding.objects.isEmpty() ? QString() : finding.objects.first() + u' ') << finding.text << "\n";
    }
    out << count << " findings in " << files.size() << " templates\n";
    return count == 0 ? 0 : 1;
}

} // namespace

QList<QCommandLineOption> templateOptions()
{
    return {{"template", "Draws a template, or all of a folder, as they are on disk, with made-up rows.", "path"},
            {"rows", "How many of them: empty, typical, longest, or a number of typical ones.", "kind"},
            {"expand", "Prints the template with its ruled forms drawn out."},
            {"into", "Writes what --expand would print into this folder.", "folder"},
            {"lint", "Names what is wrong with a template, or all of a folder, as they lie on their pages.", "path"},
            {"gallery", "Writes all reports with made-up rows as a page of pictures.", "folder"},
            {"before", "An earlier gallery, whose differences the new one marks.", "folder"}};
}

std::optional<int> runTemplateTools(const QCommandLineParser &options)
{
    if (options.isSet("gallery")) {
        QString error;
        const QString templates = options.isSet("template") ? options.value("template") : QStringLiteral(":/templates");
        if (writeGallery(templates, options.value("before"), options.value("gallery"), &error))
            return 0;
        return fail(options.value("gallery") + ": " + error);
    }
    if (options.isSet("lint"))
        return lintAll(options.value("lint"));
    if (options.isSet("template"))
        return draw(options);
    return {};
}

} // namespace tradewick
