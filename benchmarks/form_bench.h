// What the figures of forms have in common, and what runs in a process of its own, so that its memory is measured
// alone.
#pragma once

#include "common/record_form.h"
#include "figures.h"

#include <QStringList>

#include <functional>
#include <memory>

namespace tradewick
{

// arguments: "--child-memory" and a database; gives the exit status.
int benchmarkChild(const QStringList &arguments);

// A new SQLite file with all tables, and rows put into one of them, some hundred at once.
void makeTables(const QString &path);
void insertRows(Connection &connection, const QString &into, const QVector<QVariantList> &rows);

// A new SQLite file with that many contracts of three lines, and the same contracts into the tables that the connection
// string leads to.
void makeContracts(const QString &path, int count);
void fillContracts(const QString &connectionString, int count);

double milliseconds(const std::function<void()> &work);
double median(QVector<double> values);

// The data source that forms opened from now on work on.
void useDatabase(const QString &source);
// The contract form, painted.
std::unique_ptr<RecordForm> openContractForm();
// Presses "next" on the contract form over the database in use.
Figure nextRecord(const QString &name);

} // namespace tradewick
