// Foreign customers.
#pragma once

#include "masterdata/trade_partner.h"

namespace tradewick
{

class YY_GWKH_ZL : public TradePartnerForm
{
    Q_OBJECT

public:
    explicit YY_GWKH_ZL(QWidget *mainWindow = nullptr);
};

} // namespace tradewick
