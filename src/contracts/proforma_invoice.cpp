#include "contracts/proforma_invoice.h"

#include "common/amount_words.h"
#include "common/number_text.h"

namespace tradewick
{

Report &proformaInvoice(const QString &reportName, Connection &connection, const QString &contract)
{
    const QVector<Row> heads =
        connection.rows("select bizh,fstk,logo from yy_gw_wxht_h where htbh='{htbh}'", {{"htbh", contract}});
    if (heads.isEmpty())
        throw DataError(0, QStringLiteral("没有编号为“%1”的外销合同").arg(contract));
    const Row &head = heads.first();
    const QVector<Row> totals =
        connection.rows("select sum(isnull(je,0)) as zjje from yy_wxht_rpt where htbh='{htbh}'", {{"htbh", contract}});
    QString amount = numberText(totals.first()["zjje"].toDouble());

    Report &invoice = report(reportName);
    invoice.setLabel("L_ZjjE", head["bizh"].toString().trimmed() + u' ' + AmountInEnglish(amount));
    invoice.setLabel("L_FSTK", head["fstk"].toString());
    invoice.setImage("Image1", head["logo"].toString().trimmed());
    invoice.DataControl1 = {
        connection.connectionString(), "select * from yy_wxht_rpt where HTBH='{htbh}'", {{"htbh", contract}}};
    return invoice;
}

} // namespace tradewick
