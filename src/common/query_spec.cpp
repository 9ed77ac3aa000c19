#include "common/query_spec.h"

namespace tradewick
{

QString findStatement(const QueryListSpec &list, const QVector<Fragment> &fragments, bool isWithin)
{
    const char *order = isWithin && list.orderWithin ? list.orderWithin : list.order;
    return QString::fromUtf8(list.find) + QString::fromUtf8(isWithin ? list.within : "") + joined(fragments) +
           QString::fromUtf8(order);
}

} // namespace tradewick
