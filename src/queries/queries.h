// The query screens.
#pragma once

#include "common/query_spec.h"

namespace tradewick
{

QuerySpec YY_WXHt_cxTjB();   // export contracts
QuerySpec YY_cgHt_CXtjb();   // purchase contracts
QuerySpec YY_XYz_CxTj();     // letters of credit
QuerySpec YY_mxd_CxTj();     // detail sheets
QuerySpec YY_ZsQk_TJB();     // tax
QuerySpec YY_HxD_LyHs_TJB(); // verification forms
QuerySpec CY_Pcd_CxTj();     // truck dispatches
QuerySpec YY_DcD_CxTj();     // booking notes
QuerySpec YY_spZl_CXTjB();   // products

} // namespace tradewick
