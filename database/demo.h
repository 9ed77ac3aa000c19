// Demonstration data: an exporter of framed mirrors and pictures with its customers, suppliers, prices and contracts.
#pragma once

#include <QString>
#include <QVariant>

#include <functional>

namespace tradewick
{

// Runs the statements that fill an empty SQLite database through `run`, values for their question marks.
//   logo: path of the company's logo as the database shall hold it.
void insertDemonstration(const std::function<void(const QString &statement, const QVariantList &values)> &run,
                         const QString &logo);

} // namespace tradewick
