#include "common/lines_first.h"

#include "common/record_form.h"

#include <algorithm>

namespace tradewick
{

bool storesLinesFirst(const RecordFormSpec &spec)
{
    return spec.cancelDropsLines && std::any_of(spec.picks.cbegin(), spec.picks.cend(), [](const PickSpec &pick) {
               return std::any_of(pick.steps.cbegin(), pick.steps.cend(),
                                  [](const PickStep &step) { return step.insert != nullptr; });
           });
}

int storedLines(Recordset &lines)
{
    int stored = 0;
    for (int row = 0; row < lines.RecordCount(); ++row)
        stored += lines.isNew(row) ? 0 : 1;
    return stored;
}

bool hasForeignLines(RecordForm &form, const QString &key)
{
    Recordset &heads = form.records();
    if (!storesLinesFirst(form.spec()) || heads.BOF() || heads.EOF_() || !heads.isNew(heads.absolutePosition()))
        return false;
    const LinesSpec &spec = form.spec().lines;
    return form.connection()->rows(spec.statement, {{spec.key, key.trimmed()}}).size() > storedLines(form.lines());
}

} // namespace tradewick
