// A template back as a file, its ruled forms as the lines, labels and fields that they stand for.
#pragma once

#include "reporting/template.h"

namespace tradewick
{

// The template as XML that loadTemplate() reads back as the same. What the check of layouts passes over is left out:
// it is a remark about the drawing, not part of it.
QByteArray templateXml(const ReportTemplate &report);

} // namespace tradewick
