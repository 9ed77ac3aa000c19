#include "data/connection_string.h"

#include <QStringList>

namespace tradewick
{

ConnectionParts connectionParts(const QString &connectionString)
{
    static const QStringList keys{
        "provider=", "persist security info=", "password=", "user id=", "initial catalog=", "data source="};
    QStringList found(keys.size());
    qsizetype open = -1; // key whose value is being read
    qsizetype start = 0;
    const auto keyAt = [&](qsizetype at) -> qsizetype {
        for (qsizetype key = 0; key < keys.size(); ++key)
            if (QStringView(connectionString).mid(at).startsWith(keys[key], Qt::CaseInsensitive))
                return key;
        return -1;
    };
    for (qsizetype at = 0; at <= connectionString.size(); ++at) {
        const bool end = at == connectionString.size();
        const bool boundary = at == 0 || end || connectionString[at - 1] == u';';
        const qsizetype key = boundary && !end ? keyAt(at) : -1;
        if (key < 0 && !end)
            continue;
        if (open >= 0)
            found[open] = connectionString.mid(start, at - start - (end ? 0 : 1));
        if (key < 0)
            break;
        open = key;
        start = at + keys[key].size();
    }
    return {found[0], found[5], found[3], found[2], found[4]};
}

} // namespace tradewick
