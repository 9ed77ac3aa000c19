#include "data/number_of.h"

#include <QRegularExpression>

#include <cmath>

namespace tradewick
{

std::optional<double> numberOf(const QString &text)
{
    static const QRegularExpression number(
        QStringLiteral("^[+-]?([0-9]+|[0-9]{1,3}(,[0-9]{3})+)?(\\.[0-9]*)?(e[+-]?[0-9]+)?$"),
        QRegularExpression::CaseInsensitiveOption);
    QString plain = text.trimmed();
    for (QChar &c : plain) {
        if (c >= u'！' && c <= u'～') // the full-width twins of ASCII stand in its order
            c = QChar(c.unicode() - u'！' + u'!');
        else if (c == u'。')
            c = u'.';
        else if (c == u'−')
            c = u'-';
    }
    if (!number.match(plain).hasMatch())
        return {};
    bool isNumber = false; // not for a sign or a point alone
    const double value = plain.remove(u',').toDouble(&isNumber);
    return isNumber && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

} // namespace tradewick
