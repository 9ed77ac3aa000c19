#include "shell/toolkit_texts.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace tradewick
{

namespace
{

class MissingTexts : public QTranslator
{
public:
    using QTranslator::QTranslator;

    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *source, const char * /*disambiguation*/,
                      int /*n*/) const override
    {
        static const struct {
            QLatin1StringView context, source;
            QString text;
        } texts[] = {
            // the kinds in a file dialog's list
            {QLatin1StringView("QAbstractFileIconProvider"), QLatin1StringView("Folder"), QStringLiteral("文件夹")},
            {QLatin1StringView("QAbstractFileIconProvider"), QLatin1StringView("Drive"), QStringLiteral("驱动器")},
        };
        for (const auto &text : texts)
            if (text.context == QLatin1StringView(context) && text.source == QLatin1StringView(source))
                return text.text;
        return {};
    }
};

} // namespace

void speakChinese()
{
    const QLocale chinese(QLocale::Chinese, QLocale::China);
    QLocale::setDefault(chinese);
    QCoreApplication *application = QCoreApplication::instance();
    QCoreApplication::installTranslator(new MissingTexts(application)); // asked last
    auto *catalogue = new QTranslator(application);
    if (catalogue->load(chinese, "qtbase", "_", QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(catalogue);
}

} // namespace tradewick
