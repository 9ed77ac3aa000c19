#include "contracts/credits.h"

#include "contracts/contract_parts.h"

namespace tradewick
{

FieldType allowance()
{
    return field::combo(QStringList{"Allowed", "Not-Allowed"});
}

RecordFormSpec creditRegister(const char *lookup)
{
    return {
        .control = "AdoprimaryRs",
        .pairsInRow = 3,
        .captions = documentCaptions(),
        .numbering = monthly("XY", lookup),
        .defaults = {today("djrq"), {"fpzy", "Allowed"}, {"zhuanchuan", "Allowed"}},
        .required = {{"Text1(0)", "所有名称不能为空"}},
        .failures = failuresOfDocuments,
        .startsOnLast = true,
        // Whoever cancels an Edit after an Add that was saved frees the lines of the record that is shown.
        .adding = Adding::UntilCancel,
        .cancelDropsLines = true,
        .afterDelete = AfterDelete::LastBehindLast,
    };
}

} // namespace tradewick
