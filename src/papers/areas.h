// The documents by the area of business that prints them; documents() is all of them one behind the other. And what two
// areas print alike.
#pragma once

#include "papers/papers.h"

namespace tradewick
{

QVector<Document> contractDocuments();
QVector<Document> sheetDocuments();
QVector<Document> shippingDocuments();
QVector<Document> masterDataDocuments();
QVector<Document> queryDocuments();

// A label of contracts: their currency, and the total zjje in English words. Throws DataError as both do.
QString contractTotalInWords(const DocumentValues &values);

} // namespace tradewick
