#include "papers/papers.h"

#include "common/amount_words.h"
#include "common/dialogs.h"
#include "common/globals.h"
#include "common/number_text.h"
#include "papers/areas.h"
#include "papers/report_table.h"

#include <algorithm>

namespace tradewick
{

namespace
{

constexpr int noSuchColumn = 3265, noPicture = 481;
const QString noRows = QStringLiteral("没有可打印的明细数据");
const QString noRecord = QStringLiteral("没有当前记录，不能打印！");

QVariant valueOf(const Values &row, const QString &column)
{
    const auto found = row.constFind(column.toLower());
    if (found == row.constEnd())
        throw DataError(noSuchColumn, QStringLiteral("没有名为“%1”的列").arg(column));
    return *found;
}

QString textOf(const DocumentLabel &label, const DocumentValues &values)
{
    if (const QString *fixed = std::get_if<QString>(&label.text))
        return *fixed;
    return std::get<LabelText>(label.text)(values);
}

// The record's own row, beside what was given.
Values headOf(const DocumentRecord &record, Connection &connection, const Values &given)
{
    Values head;
    for (auto value = given.cbegin(); value != given.cend(); ++value)
        head.insert(value.key().toLower(), value.value());
    if (record.head.isEmpty())
        return head;
    const QVector<Row> rows = connection.rows(record.head, given);
    if (rows.isEmpty() && record.printsWithout && given.value(record.key).toString().isEmpty())
        return head;
    if (rows.isEmpty())
        throw DataError(0, QStringLiteral("没有编号为“%1”的%2").arg(given.value(record.key).toString(), record.name));
    head.insert(rows.first().named());
    return head;
}

} // namespace

QVariant DocumentValues::head(const QString &column) const
{
    return valueOf(m_head, column);
}

double DocumentValues::number(const QString &column) const
{
    return numberFromText(text(column));
}

double DocumentValues::total(const QString &column) const
{
    if (m_totals.isEmpty())
        throw DataError(nothingToPrint, noRows);
    return valueOf(m_totals.first(), column).toDouble();
}

QString DocumentValues::inEnglish(double amount) const
{
    QString figures = numberText(amount);
    bool tooLong = false;
    const QString words = AmountInEnglish(figures, &tooLong);
    if (tooLong)
        m_messages.append(amountTooLong());
    return words;
}

const QVector<Document> &documents()
{
    static const QVector<Document> all =
        contractDocuments() + sheetDocuments() + shippingDocuments() + masterDataDocuments() + queryDocuments();
    return all;
}

const Document &document(const QString &name)
{
    const auto found = std::find_if(documents().cbegin(), documents().cend(),
                                    [&name](const Document &one) { return one.name == name; });
    if (found == documents().cend())
        throw DataError(0, QStringLiteral("没有名为“%1”的单据").arg(name));
    return *found;
}

FilledReport fill(const Document &document, Connection &connection, const Values &given)
{
    const DocumentRecord &record = document.record;
    FilledReport filled{&report(document.report), {}, {}};
    Report &paper = *filled.report;
    Values head = headOf(record, connection, given);
    if (!document.needed.isEmpty() && valueOf(head, document.needed).toString().trimmed().isEmpty())
        throw DataError(nothingToPrint, noRecord);
    paper.startOver();

    if (!document.clause.label.isEmpty()) {
        const bool isShown = valueOf(head, document.clause.flag).toBool();
        paper.setLabel(document.clause.label, isShown ? valueOf(head, record.clause).toString().trimmed() : QString());
    }
    QVector<Values> totals;
    if (!document.totals.isEmpty())
        for (const Row &row : connection.rows(document.totals, given))
            totals.append(row.named());
    const DocumentValues values(std::move(head), std::move(totals));
    if (!document.logo.isEmpty()) {
        const QString path = values.trimmed("logo");
        if (!paper.setImage(document.logo, path) && !path.isEmpty() && !record.goesOn)
            throw DataError(noPicture, QStringLiteral("无法读取图片“%1”").arg(path));
    }
    for (const DocumentLabel &label : document.labels) {
        QString text;
        try {
            text = textOf(label, values);
        } catch (const DataError &error) {
            if (!record.goesOn)
                throw;
            filled.passedOver.append(label.name + QStringLiteral(": ") + error.text());
        }
        paper.setLabel(label.name, text);
    }
    paper.DataControl1 = {connection.connectionString(), record.rows + document.order, given};
    filled.messages = values.messages();
    return filled;
}

FilledReport fill(const Document &document, Connection &connection, const QString &number)
{
    return fill(document, connection, document.takesNumber() ? Values{{document.record.key, number}} : Values());
}

FilledReport fill(const Document &statistic, Connection &connection, const Criteria &criteria)
{
    const QVector<Criterion> &all = statistic.statistic.criteria;
    Values values = criteria.values;
    for (const Criterion &one : all)
        if (!values.contains(one.name))
            values.insert(one.name, QString());
    const QVector<Fragment> fragments = criteria.fragments.value_or(fragmentsOf(all, values, true));
    if (!statistic.statistic.missing.isEmpty() && fragments.first().text.isEmpty())
        throw DataError(nothingToPrint, statistic.statistic.missing);
    for (const Fragment &one : fragments)
        values.insert(one.values);
    Document narrowed = statistic;
    if (criteria.isWithin && !statistic.statistic.rowsWithin.isEmpty())
        narrowed.record.rows = statistic.statistic.rowsWithin;
    narrowed.record.rows += joined(fragments);
    std::optional<int> count = criteria.count;
    if (statistic.statistic.needsRows || (!count && !statistic.statistic.counted.isEmpty())) {
        const QString within = criteria.isWithin ? statistic.statistic.countedWithin : QString();
        const int counted = connection.rows(statistic.statistic.counted + within + joined(fragments), values)
                                .first()
                                .value("n")
                                .toInt();
        if (statistic.statistic.needsRows && (counted == 0 || count == 0))
            throw DataError(nothingToPrint, noRows);
        count = count.value_or(counted);
    }
    if (count)
        values.insert("count", *count);
    return fill(narrowed, connection, values);
}

void showDocument(const Document &document, Connection &connection, const QString &number, QWidget *parent)
{
    const FilledReport filled = fill(document, connection, number);
    for (const QString &message : filled.messages)
        dialogs().message(parent, message, QStringLiteral("系统提示"), MessageIcon::Critical);
    filled.report->show(parent);
}

void tellUnprinted(const DataError &error, QWidget *parent)
{
    const bool nothing = error.number() == nothingToPrint;
    dialogs().message(parent, error.text(), nothing ? QStringLiteral("系统提示") : QString(),
                      nothing ? MessageIcon::Critical : MessageIcon::None);
}

void printRecord(const Document &document, const QString &number, QWidget *parent, const QString &withoutNumber)
{
    try {
        if (number.trimmed().isEmpty() && !document.record.printsWithout)
            dialogs().message(parent, withoutNumber.isEmpty() ? noRecord : withoutNumber, QStringLiteral("系统提示"),
                              MessageIcon::Critical);
        else
            showDocument(document, *gConn, number.trimmed(), parent);
    } catch (const DataError &error) {
        tellUnprinted(error, parent);
    }
}

void printRecord(const QString &name, const QString &number, QWidget *parent, const QString &withoutNumber)
{
    printRecord(document(name), number, parent, withoutNumber);
}

QStringList choicesOf(const QString &record)
{
    QStringList choices;
    for (const Document &one : documents())
        if (one.record.name == record && one.choice)
            choices.append(*one.choice);
    return choices;
}

void printChoice(const QString &record, const QString &choice, const QString &number, QWidget *parent)
{
    for (const Document &one : documents()) {
        // A record that is missing is told whatever is chosen.
        const bool isChosen = one.choice == choice || (number.trimmed().isEmpty() && !one.record.printsWithout);
        if (one.record.name == record && isChosen) {
            printRecord(one, number, parent);
            return;
        }
    }
}

} // namespace tradewick
