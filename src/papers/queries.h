// By what records are asked for: the criteria that query screens and statistics share.
#pragma once

#include "common/criteria.h"

namespace tradewick
{

namespace criteria
{
QVector<Criterion> exportContracts();
QVector<Criterion> purchases();
QVector<Criterion> credits();
QVector<Criterion> sheets();
QVector<Criterion> taxes();
QVector<Criterion> verifications();
QVector<Criterion> monthOfReturns(); // of the report to the office
QVector<Criterion> dispatches();
QVector<Criterion> bookings();
QVector<Criterion> products();
} // namespace criteria

} // namespace tradewick
