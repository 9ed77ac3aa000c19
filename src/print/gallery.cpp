#include "print/gallery.h"

#include "papers/report_table.h"
#include "print/pictures.h"
#include "print/template_files.h"
#include "reporting/painter.h"

#include <QDir>
#include <QMap>
#include <QPainter>

namespace tradewick
{

namespace
{

constexpr int dotsPerInch = 96, rows = 12;
constexpr int thumbWidth = 260, thumbHeight = 300, thumbText = 24, thumbsAcross = 5;
constexpr int sameInk = 24; // of 255, by which smoothed edges may differ

constexpr auto head = "<!DOCTYPE html>\n<meta charset=\"utf-8\">\n<title>Reports</title>\n"
                      "<style>body{background:#ccc;font-family:sans-serif} img{margin:8px;box-shadow:0 0 6px #666}"
                      " .row{display:flex;overflow-x:auto} figure{margin:0} figcaption{padding-left:8px}"
                      " .changed{background:#fc6}</style>\n";

// Stamps of date and time would differ from run to run.
QDateTime galleryClock()
{
    return {QDate(2026, 11, 24), QTime(16, 42, 9)};
}

QString figure(const QString &source, const QString &caption)
{
    return QStringLiteral("<figure><figcaption>%2</figcaption><img src=\"%1\" alt=\"\"></figure>\n")
        .arg(source.toHtmlEscaped(), caption.toHtmlEscaped());
}

struct Shown {
    QString name;
    QString html;
    QImage first; // page
    bool changed = false;
};

QImage contactSheet(const QVector<Shown> &reports)
{
    const int across = qMin(thumbsAcross, int(reports.size()));
    const int down = (int(reports.size()) + thumbsAcross - 1) / thumbsAcross;
    QImage sheet(across * thumbWidth, down * thumbHeight, QImage::Format_RGB32);
    sheet.fill(QColor(0xcc, 0xcc, 0xcc));
    QPainter painter(&sheet);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (int at = 0; at < reports.size(); ++at) {
        const QRect cell(at % thumbsAcross * thumbWidth, at / thumbsAcross * thumbHeight, thumbWidth, thumbHeight);
        const QImage thumb = reports[at].first.scaled(thumbWidth - 16, thumbHeight - thumbText - 12,
                                                      Qt::KeepAspectRatio, Qt::SmoothTransformation);
        painter.drawImage(cell.left() + (thumbWidth - thumb.width()) / 2, cell.top() + 6, thumb);
        painter.setPen(reports[at].changed ? Qt::red : Qt::black);
        painter.drawText(cell.adjusted(2, thumbHeight - thumbText, -2, 0), Qt::AlignCenter, reports[at].name);
    }
    return sheet;
}

// One report: its pictures written, its part of the page made.
bool showReport(const TemplateFile &of, const QString &before, const QString &folder, Shown *shown, QString *error)
{
    const QVector<PagePtr> pages = madeUpPages(of, rows, MadeUp::Typical);
    const QString name = of.report->name;
    shown->name = name;
    int page = 0;
    for (const PagePtr &one : pages) {
        const QImage picture = pictureOf(*one, dotsPerInch);
        const QString file = QStringLiteral("%1-%2.png").arg(name).arg(++page);
        if (!writePicture(picture, folder + u'/' + file, error))
            return false;
        if (page == 1)
            shown->first = picture;
        shown->html += figure(file, QStringLiteral("page %1").arg(page));
        const QString earlier = QDir(before).filePath(file);
        if (before.isEmpty() || !QFile::exists(earlier))
            continue;
        const QImage difference = differenceOf(QImage(earlier), picture);
        if (difference.isNull())
            continue;
        shown->changed = true;
        const QString marked = QStringLiteral("%1-%2.difference.png").arg(name).arg(page);
        if (!writePicture(difference, folder + u'/' + marked, error))
            return false;
        shown->html += figure(QDir(folder).relativeFilePath(earlier), QStringLiteral("page %1 before").arg(page)) +
                       figure(marked, QStringLiteral("what differs: new green, gone red"));
    }
    // pages that are no more, or a report that was not there
    const bool was = !before.isEmpty() && QFile::exists(QDir(before).filePath(name + "-1.png"));
    shown->changed |= was && QFile::exists(QDir(before).filePath(QStringLiteral("%1-%2.png").arg(name).arg(page + 1)));
    shown->changed |= was && !QFile::exists(QDir(before).filePath(QStringLiteral("%1-%2.png").arg(name).arg(page)));
    if (!of.twin.isEmpty())
        shown->html += figure(of.twin + "-1.png", "twin " + of.twin);
    shown->html = QStringLiteral("<h3%1>%2 %3%4</h3>\n<div class=\"row\">%5</div>\n")
                      .arg(shown->changed ? QStringLiteral(" class=\"changed\"") : QString(), name,
                           of.report->caption.toHtmlEscaped(),
                           shown->changed            ? QStringLiteral(" — changed")
                           : was || before.isEmpty() ? QString()
                                                     : QStringLiteral(" — new"),
                           shown->html);
    return true;
}

} // namespace

QImage differenceOf(const QImage &before, const QImage &after)
{
    const QSize size = before.size().expandedTo(after.size());
    QImage marked(size, QImage::Format_RGB32);
    bool any = before.size() != after.size();
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const int was = before.valid(x, y) ? qGray(before.pixel(x, y)) : 255;
            const int is = after.valid(x, y) ? qGray(after.pixel(x, y)) : 255;
            const int pale = 200 + qMin(was, is) * 55 / 255;
            const bool differs = qAbs(was - is) > sameInk;
            any |= differs;
            marked.setPixel(x, y, !differs ? qRgb(pale, pale, pale) : is < was ? qRgb(0, 150, 0) : qRgb(220, 0, 0));
        }
    }
    return any ? marked : QImage();
}

bool writeGallery(const QString &templates, const QString &before, const QString &folder, QString *error)
{
    reportClock = &galleryClock;
    const QVector<TemplateFile> files = readTemplates(templates, error);
    if (files.isEmpty())
        return false;
    QDir().mkpath(folder); // writing fails and tells where it could not be made
    QMap<QString, QVector<Shown>> folders;
    for (const TemplateFile &of : files) {
        Shown shown;
        if (!showReport(of, before, folder, &shown, error))
            return false;
        folders[of.folder].append(shown);
    }
    QString html = QString::fromUtf8(head), changed;
    for (auto at = folders.cbegin(); at != folders.cend(); ++at) {
        const QString sheet = QStringLiteral("contact %1.png").arg(at.key());
        if (!writePicture(contactSheet(at.value()), folder + u'/' + sheet, error))
            return false;
        html += QStringLiteral("<h2>%1</h2>\n").arg(at.key()) + figure(sheet, {});
        for (const Shown &shown : at.value()) {
            html += shown.html;
            if (shown.changed)
                changed += u' ' + shown.name;
        }
    }
    if (!before.isEmpty())
        html += QStringLiteral("<p>changed:%1</p>\n").arg(changed.isEmpty() ? QStringLiteral(" none") : changed);
    const QByteArray text = html.toUtf8();
    return replaceFile(
        folder + QStringLiteral("/index.html"), [&](QIODevice &device) { return device.write(text) == text.size(); },
        error);
}

} // namespace tradewick
