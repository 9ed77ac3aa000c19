#include "contracts/proforma_invoice.h"

#include "common/amount_words.h"
#include "common/number_text.h"

namespace tradewick
{

void fillProformaInvoice(Report &report, Connection &connection, const QString &contract, const ProformaHead &head)
{
    const QVector<Values> totals =
        connection.rows("select sum(isnull(je,0)) as zjje from yy_wxht_rpt where htbh='{htbh}'", {{"htbh", contract}});
    QString words;
    if (!totals.isEmpty()) {
        QString amount = numberText(totals.first()["zjje"].toDouble());
        words = head.currency.trimmed() + u' ' + AmountInEnglish(amount);
    }
    report.setLabel("L_ZjjE", words);
    report.setLabel("L_FSTK", head.clauses);
    report.setImage("Image1", head.logo.trimmed());
    report.DataControl1.ConnectionString = connection.connectionString();
    report.DataControl1.Source = "select * from yy_wxht_rpt where HTBH='{htbh}'";
    report.DataControl1.values = {{"htbh", contract}};
}

} // namespace tradewick
