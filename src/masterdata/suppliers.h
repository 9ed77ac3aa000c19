// Domestic factories and suppliers.
#pragma once

#include "masterdata/trade_partner.h"

namespace tradewick
{

class yy_GYszl : public TradePartnerForm
{
    Q_OBJECT

public:
    explicit yy_GYszl(QWidget *mainWindow = nullptr);
};

} // namespace tradewick
