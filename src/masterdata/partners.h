// What domestic suppliers and foreign customers share: two registers of one shape. Documents copy from them when a code
// is chosen; nothing changed here reaches a document that stands.
#pragma once

#include "common/record_form_spec.h"

namespace tradewick
{

// What a register calls its own.
struct PartnerNaming {
    QString key, keyCaption;
    FieldSpec name, otherName, address, otherAddress, area; // area: country or province
    QString currencyCaption, rateCaption, dateCaption;
    QString question, one, all; // what the print button asks, and the documents of the record shown and of all
};

// What both are alike in; the rest is the register's.
RecordFormSpec partnerRegister(const PartnerNaming &own);

} // namespace tradewick
