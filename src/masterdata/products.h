// The goods register and its price list: a head for each product, and under it a price row for each size, of all
// customers or of one.
#pragma once

#include "common/record_form.h"

namespace tradewick
{

class yy_cpbj : public RecordForm
{
    Q_OBJECT

public:
    explicit yy_cpbj(QWidget *mainWindow = nullptr);

protected:
    void bodyRowStarted() override;
    void bodyCellEdited(const QString &column) override;
    void print(const QString &button) override;
    void action(const QString &button) override;
    void saving() override;
    void stored() override;
    void cancelling() override;
    void recordsChanged(Change change) override;

private:
    void copyPrices();

    bool m_copying = false; // copied price rows wait under the empty code for the OK that names the new product
};

} // namespace tradewick
