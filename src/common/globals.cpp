#include "common/globals.h"

namespace tradewick
{

QString gConnStr;
std::shared_ptr<Connection> gConn;
std::unique_ptr<Recordset> gCompanyRs;
QString gCompanyName;
QString gCompanyNameEn;
QString gCompanyAddress;
QString gCompanyAddressEn;
QString gCompanyPhone;
QString gCompanyFax;
QString gOperatorName;

} // namespace tradewick
