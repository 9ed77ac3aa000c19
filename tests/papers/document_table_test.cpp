// The documents of a shipment against what was agreed of them, to the character: documents.txt, line by line.
#include "papers/papers.h"
#include "papers/report_table.h"
#include "support/agreed_text.h"

#include <utility>

namespace tradewick
{

namespace
{

const QStringList recordsAgreed{"单证明细表", "派车单", "订舱单", "提单"};

QStringList described()
{
    QStringList lines;
    const auto add = [&lines](const QStringList &values) {
        QString line = values.join(u'\t');
        while (line.endsWith(u'\t'))
            line.chop(1);
        lines.append(line);
    };
    for (const QString &name : recordsAgreed) {
        bool isFirst = true;
        for (const Document &one : documents()) {
            if (one.record.name != name)
                continue;
            const DocumentRecord &record = one.record;
            if (std::exchange(isFirst, false))
                add({"record", name, record.key, record.rows, record.printsWithout ? "without a number" : ""});
            add({"document", one.name, one.choice.value_or("-"), one.report, one.totals, one.clause.flag,
                 one.clause.label, one.logo, one.order, one.needed,
                 report(one.report).family().excelTool ? "" : "no workbook"});
            for (const DocumentLabel &label : one.labels) {
                const QString *fixed = std::get_if<QString>(&label.text);
                add({"label", label.name, fixed ? u'“' + *fixed + u'”' : QString()});
            }
        }
    }
    return lines;
}

} // namespace

TEST(DocumentTable, IsToTheCharacterWhatWasAgreed)
{
    test::expectAgreed(QStringLiteral(AGREED_DOCUMENTS), described());
}

} // namespace tradewick
