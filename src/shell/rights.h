// The 28 right flags of a user and the commands that they govern.
#pragma once

#include "data/recordset.h"

#include <functional>
#include <vector>

namespace tradewick
{

struct Right {
    QString flag;    // column of qb_pass
    QString caption; // of its check box
    QString group;   // frame of the check box
    QString tool;    // command that the flag switches off; empty for a flag that nothing heeds
};

// In the order of the flags, t1 first.
const std::vector<Right> &rights();

// Calls switchOff with each command that the user in the current row of qb_pass has no right to. A Null flag leaves its
// command on.
void applyRights(Recordset &user, const std::function<void(const QString &tool)> &switchOff);

} // namespace tradewick
