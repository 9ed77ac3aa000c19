// The export contract in its window, over demonstration data.
#pragma once

#include "contracts/contracts.h"
#include "document_form.h"

namespace tradewick::test
{

class Contract : public DocumentForm
{
protected:
    FormDriver open() { return DocumentForm::open(YY_WXHT()); }
    int storedLines(const QString &contract)
    {
        return database.value("select count(*) from yy_gw_wxht_b where htbh='{h}'", {{"h", contract}}).toInt();
    }
    static QString thisMonth() { return "X" + QDate::currentDate().toString("yyMM"); }
    void clearMonth()
    {
        database.connection().Execute("delete from yy_gw_wxht_b where htbh like '%{m}%'", {{"m", thisMonth()}});
        database.connection().Execute("delete from yy_gw_wxht_h where year(djrq)='{y}'and month(djrq)='{m}'",
                                      {{"y", QDate::currentDate().year()}, {"m", QDate::currentDate().month()}});
    }
};

} // namespace tradewick::test
