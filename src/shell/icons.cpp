#include "shell/icons.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <stdexcept>

namespace tradewick
{

namespace
{

// Drawn when it is first seen: most commands stand in menus and groups that are closed at start.
class DrawnIcon : public QIconEngine
{
public:
    explicit DrawnIcon(const QString &file) : m_file(file) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        QFile file(m_file);
        if (!file.open(QIODevice::ReadOnly))
            return;
        const QByteArray color = inkOf(mode).name().toLatin1();
        QSvgRenderer(file.readAll().replace("currentColor", color)).render(painter, rect);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        const QString key =
            QStringLiteral("%1 %2x%3 %4").arg(m_file).arg(size.width()).arg(size.height()).arg(inkOf(mode).rgba());
        QPixmap pixmap;
        if (QPixmapCache::find(key, &pixmap))
            return pixmap;
        pixmap = QPixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect({}, size), mode, state);
        QPixmapCache::insert(key, pixmap);
        return pixmap;
    }

    QIconEngine *clone() const override { return new DrawnIcon(*this); }

private:
    static QColor inkOf(QIcon::Mode mode)
    {
        const bool isSelected = mode == QIcon::Selected; // in a menu
        return QGuiApplication::palette().color(mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active,
                                                isSelected ? QPalette::HighlightedText : QPalette::WindowText);
    }

    QString m_file;
};

} // namespace

QIcon commandIcon(const QString &name)
{
    const QString file = QStringLiteral(":/icons/%1.svg").arg(name);
    if (!QFile::exists(file))
        throw std::logic_error("no icon " + name.toStdString());
    return QIcon(new DrawnIcon(file));
}

} // namespace tradewick
