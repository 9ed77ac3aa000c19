// Export sales contracts: the head of the document chain.
#pragma once

#include "common/record_form.h"

namespace tradewick
{

class YY_WXHT : public RecordForm
{
    Q_OBJECT

public:
    explicit YY_WXHT(QWidget *mainWindow = nullptr);

protected:
    void afterAdd() override;
    void comboChosen(const QString &name) override;
    void bodyRowStarted() override;
    void bodyCellEdited(const QString &column) override;
    void bodyTyped(const QString &column, const QString &text) override;
    void picked() override;
    void print(const QString &button) override;

private:
    void setLineOwner();
};

// Copies a customer's columns into the contract head that is current and replaces the contract's lines by the
// customer's prices, at once and whatever becomes of the head. Without a customer of that code, or one without a name,
// nothing changes. Gives whether the lines were replaced. Throws DataError.
bool takeCustomer(Connection &connection, Recordset &head, const QString &customer, const QString &contract);

// Copies a company's columns into the contract head that is current. Throws DataError.
void takeCompany(Connection &connection, Recordset &head, const QString &company);

// What a line derives: unit price and amount from the frame's and the mirror's or picture's price, unrounded.
struct LineAmounts {
    double unitPrice, amount;
};
LineAmounts lineAmounts(double framePrice, double mirrorPrice, double quantity);

} // namespace tradewick
