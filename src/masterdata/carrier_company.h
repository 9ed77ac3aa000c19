// What shipping lines and trucking firms share: two registers of one shape, each with a logo.
#pragma once

#include "common/record_form.h"

namespace tradewick
{

// The declaration of a register.
//   name, caption, statement: of the form.
//   kind: "船" or "拖车", the first word of its captions.
RecordFormSpec carrierSpec(const QString &name, const QString &caption, const char *statement, const QString &kind);

class CarrierCompanyForm : public RecordForm
{
    Q_OBJECT

public:
    using RecordForm::RecordForm;

protected:
    void afterAdd() override;
};

} // namespace tradewick
