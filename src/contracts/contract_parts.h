// What the contracts and credits have in common: what their fields offer, the price list that they search, and what
// they copy of the own company that signs.
#pragma once

#include "common/record_form_spec.h"

namespace tradewick
{

namespace offers
{
inline constexpr const char *companies = "select DISTINCT gsmc from sys_gsmc where not gsmc is null order by gsmc";
inline constexpr const char *departments = "select DISTINCT bmmc from sys_bmsz where not bmmc is null";
inline constexpr const char *signers = "select DISTINCT name from sys_gzry where not name is null order by name";
inline constexpr const char *ports = "select DISTINCT gkmc from sys_gksz where not gkmc is null order by gkmc";
inline constexpr const char *portNames = "select gkmc,gkmc_en from sys_gksz where not gkmc is null";
// Export contracts that have lines, unless these are marked as done.
inline constexpr const char *openContracts =
    "select DISTINCT htbh from yy_gw_wxht_b where not htbh is null and (wanch is null or wanch='未完成') order by htbh";
} // namespace offers

// Products with their prices, a row for each price. The size is that of the price, but in a purchase, which has a price
// for a product as it stands in the register.
namespace prices
{
extern const char *const ofCustomer; // with {text}, the customer's code
extern const char *const byCode;     // with {typed}
extern const char *const bySize;     // with {cpbh}, {gg} and {khbh}
extern const char *const ofPurchase; // with {typed}
} // namespace prices

// What the buttons of these forms say.
QStringList documentCaptions();

// The choice of the company: its columns go into those of the same names. Only the export contract takes the company's
// own mail address along.
PickSpec companyPick(const QString &combo, bool withMail);

// The amount of a line with one price follows from price and quantity; what was typed over it is derived again.
LineRule amountOfOnePrice();

// The button that prints a document of the record shown.
ButtonSpec printing(const QString &name, const QString &caption, const QString &document,
                    const QString &shortcut = QStringLiteral("Ctrl+P"));

} // namespace tradewick
