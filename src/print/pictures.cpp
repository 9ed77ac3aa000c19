#include "print/pictures.h"

#include "papers/report_table.h"
#include "reporting/painter.h"

#include <QFileInfo>
#include <QPainter>

namespace tradewick
{

namespace
{

constexpr double twipsPerInch = 1440;

} // namespace

QImage pictureOf(const Page &page, int dotsPerInch)
{
    const Paper &paper = page.context->paper;
    QImage image((QSizeF(paper.width, paper.height) * paper.scale * dotsPerInch / twipsPerInch).toSize(),
                 QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    paintPage(painter, page, dotsPerInch / twipsPerInch);
    return image;
}

bool writePictures(const QVector<PagePtr> &pages, const QString &path, int dotsPerInch, QString *error)
{
    const QFileInfo file(path);
    for (qsizetype at = 0; at < pages.size(); ++at) {
        const QString name = QStringLiteral("%1/%2-%3.png").arg(file.path(), file.completeBaseName()).arg(at + 1);
        if (!writePicture(pictureOf(*pages[at], dotsPerInch), name, error))
            return false;
    }
    return true;
}

bool writePicture(const QImage &image, const QString &path, QString *error)
{
    return replaceFile(
        path, [&](QIODevice &device) { return image.save(&device, "PNG"); }, error);
}

} // namespace tradewick
