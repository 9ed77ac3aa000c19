// The documents by the area of business that prints them; documents() is all of them one behind the other.
#pragma once

#include "papers/papers.h"

namespace tradewick
{

QVector<Document> contractDocuments();
QVector<Document> sheetDocuments();
QVector<Document> shippingDocuments();
QVector<Document> masterDataDocuments();
QVector<Document> queryDocuments();

} // namespace tradewick
