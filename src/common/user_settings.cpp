#include "common/user_settings.h"

namespace tradewick
{

QSettings userSettings()
{
    return QSettings(QStringLiteral("tradewick"), QStringLiteral("tradewick"));
}

} // namespace tradewick
