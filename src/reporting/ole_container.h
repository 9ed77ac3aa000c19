// The container of the old office formats: a file system within a file.
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

namespace tradewick
{

// Writes the parts one behind the other as the stream named Workbook. The file takes its name when all is written;
// until then, and when that fails, what was there stays, and error says why.
bool writeContainer(const QString &path, const QVector<QByteArray> &parts, QString *error);

} // namespace tradewick
