// What is wrong with a template as it lies on its pages.
#pragma once

#include "print/template_files.h"

namespace tradewick
{

struct Finding {
    QString rule;
    QStringList objects; // that it concerns; none of the report as a whole
    QString text;
};

// Lays the template out with no, few, many and the longest rows and gives all that breaks a rule, each object once a
// rule:
//   overlap  text over text
//   outside  text or box beyond its band, its width or the sheet
//   cut      fixed text that does not fit its box
//   short    a box a few twips short of a line, where a line is lost
//   narrow   a number of the largest kind that does not fit
//   gap      line ends 1 to 60 twips apart
//   column   what stands in a table's rows or totals not under its head or column
//   pages    more than one page for one row, or for none
//   twice    objects exactly over each other
//   data     a field of no column of its source
//   table    a report without a line in the table of reports
// What an object's `except` names with a reason is left out; an exception that nothing needs is a finding itself, of
// the rule `except`.
QVector<Finding> lint(const TemplateFile &file);

} // namespace tradewick
