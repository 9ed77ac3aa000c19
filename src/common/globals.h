// What the whole program shares: one connection, the company profile, the operator.
#pragma once

#include "data/recordset.h"

#include <QString>

#include <memory>

namespace tradewick
{

extern QString gConnStr;                      // connection string of the shared database, set once at start-up
extern std::shared_ptr<Connection> gConn;     // opened with it, never closed before exit
extern std::unique_ptr<Recordset> gCompanyRs; // "select * from sys_gsmc", read by start-up alone
extern QString gCompanyName;                  // status text; print routines use it as scratch
extern QString gCompanyNameEn;
extern QString gCompanyAddress;
extern QString gCompanyAddressEn;
extern QString gCompanyPhone;
extern QString gCompanyFax;
extern QString gOperatorName; // set by the login

} // namespace tradewick
