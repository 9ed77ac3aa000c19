// The forms of the master data.
#pragma once

#include "common/record_form_spec.h"

namespace tradewick
{

RecordFormSpec sys_bzsz();     // currencies
RecordFormSpec sys_fkfs();     // settlement terms
RecordFormSpec sys_zffs();     // payment methods
RecordFormSpec sys_JLDW();     // units
RecordFormSpec Sys_GKSZ();     // ports
RecordFormSpec Sys_CwGs_ZL();  // shipping lines
RecordFormSpec Sys_TcGs_Set(); // trucking firms
RecordFormSpec sys_gssz();     // the company itself
RecordFormSpec sys_bmsz();     // departments
RecordFormSpec sys_gzry();     // staff
RecordFormSpec sys_qysz();     // regions
RecordFormSpec sys_SSDZ();     // delivery addresses
RecordFormSpec yy_GYszl();     // domestic suppliers
RecordFormSpec YY_GWKH_ZL();   // foreign customers
RecordFormSpec yy_cpbj();      // products and their prices

} // namespace tradewick
