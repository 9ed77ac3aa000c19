// What domestic suppliers and foreign customers share: two registers of one shape. Documents copy from them when a code
// is chosen; nothing changed here reaches a document that stands.
#pragma once

#include "common/record_form.h"

namespace tradewick
{

// What a register calls its own; the rest of the fields is one.
struct PartnerNaming {
    QString key, keyCaption;
    FieldSpec name, otherName, address, otherAddress, area;
    QString currencyCaption, rateCaption, dateCaption;
};

// The fields of a register, in the order they are gone through.
QVector<FieldSpec> partnerFields(const PartnerNaming &own);
// What the print button asks, and the document it shows for each answer: the record shown or all of them.
struct PartnerPrinting {
    QString question, one, all;
};

// Captions of the buttons.
QStringList partnerCaptions();
// The search by key; both registers ask for a customer.
FindSpec findPartner(const QString &key);

class TradePartnerForm : public RecordForm
{
    Q_OBJECT

protected:
    // areas: statement of the countries or provinces that Combo1(0) offers.
    TradePartnerForm(const RecordFormSpec &spec, const char *areas, const PartnerPrinting &printing,
                     QWidget *mainWindow);

    void afterAdd() override;
    void comboChosen(const QString &name) override;
    void print(const QString &button) override;
    void recordsChanged(Change change) override;

private:
    const char *m_areas;
    PartnerPrinting m_printing;
};

} // namespace tradewick
