#include "common/cell_block.h"

#include <QRegularExpression>

namespace tradewick
{

QVector<QStringList> cellsOf(const QString &text)
{
    QString rest = text;
    rest.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
    if (rest.endsWith(u'\n'))
        rest.chop(1);
    if (rest.isEmpty())
        return {};
    static const QRegularExpression quoted(QStringLiteral("\\G\"((?:[^\"\\t]|\"\")*)\"(?=[\\t\\n]|\\z)"));
    static const QRegularExpression cellEnd(QStringLiteral("[\\t\\n]"));
    QVector<QStringList> rows{{}};
    for (qsizetype at = 0;;) {
        const QRegularExpressionMatch match = quoted.match(rest, at);
        const bool isQuoted =
            match.hasMatch() && (match.captured(1).contains(u'\n') || match.captured(1).contains(u'"'));
        qsizetype end = isQuoted ? match.capturedEnd() : rest.indexOf(cellEnd, at);
        if (end < 0)
            end = rest.size();
        rows.last().append(isQuoted ? match.captured(1).replace(QStringLiteral("\"\""), QStringLiteral("\""))
                                    : rest.mid(at, end - at));
        if (end == rest.size())
            return rows;
        if (rest[end] == u'\n')
            rows.append(QStringList());
        at = end + 1;
    }
}

QString cellText(const QString &cell)
{
    if (!cell.contains(u'\n'))
        return cell;
    return u'"' + QString(cell).replace(u'"', QStringLiteral("\"\"")) + u'"';
}

} // namespace tradewick
