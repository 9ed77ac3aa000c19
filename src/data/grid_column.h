// A column of a grid or list: what it shows and what stands over it.
#pragma once

#include <QString>

namespace tradewick
{

struct GridColumn {
    QString column; // of the record set; a name it lacks shows nothing
    QString caption;
};

} // namespace tradewick
