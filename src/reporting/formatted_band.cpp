#include "data/data_error.h"
#include "reporting/layout.h"

namespace tradewick
{

namespace
{

constexpr int noSuchColumn = 3265;

} // namespace

QString FormattedBand::text(const QString &name) const
{
    for (qsizetype at = 0; at < section.objects.size(); ++at)
        if (section.objects[at].name == name)
            return m_layout.m_contents[at].text;
    return {};
}

void FormattedBand::setText(const QString &name, const QString &text)
{
    if (isCallersName(name) && !m_layout.m_rule.labels.contains(name))
        throw DataError(noSuchColumn,
                        QStringLiteral("报表%1没有声明填写标签%2").arg(m_layout.m_context->report->name, name));
    for (qsizetype at = 0; at < section.objects.size(); ++at)
        if (section.objects[at].name == name)
            m_layout.m_contents[at] = {text};
}

QVariant FormattedBand::value(const QString &column) const
{
    if (!m_layout.m_rule.columns.contains(column, Qt::CaseInsensitive))
        throw DataError(noSuchColumn,
                        QStringLiteral("报表%1没有声明读取列%2").arg(m_layout.m_context->report->name, column));
    return m_layout.m_row.value(m_layout.columnOf(column));
}

void FormattedBand::setPicture(const QString &name, const QString &path)
{
    if (const ReportObject *image = m_layout.m_context->report->object(name);
        !image || image->kind != ObjectKind::Image)
        throw DataError(noSuchColumn, QStringLiteral("报表%1没有图片%2").arg(m_layout.m_context->report->name, name));
    const QImage picture = path.isEmpty() ? QImage() : QImage(path);
    if (picture.isNull())
        m_layout.m_page->images.remove(name);
    else
        m_layout.m_page->images[name] = picture;
}

} // namespace tradewick
