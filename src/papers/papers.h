// What each printed document is: its report, where its rows come from, and what stands in its labels. A document is one
// row of one table, which forms, queries, tradewick-print and tests read.
#pragma once

#include "common/criteria.h"
#include "data/connection.h"
#include "reporting/report.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>
#include <variant>

namespace tradewick
{

// The number of the error of a record that has nothing to print: no row of totals, or not what the document needs.
constexpr int nothingToPrint = 3021;

// What the labels of one document are worked out from: the record's own row and one row of totals. Columns in any case
// of their letters. A column that the row lacks throws DataError 3265, which names it.
class DocumentValues
{
public:
    // head: the record's columns by lower-case name. totals: the same of the totals; no row and no statement look
    // alike.
    DocumentValues(Values head, QVector<Values> totals) : m_head(std::move(head)), m_totals(std::move(totals)) {}

    // The record's column as it is stored, and as text and number: empty and 0 for Null.
    QVariant head(const QString &column) const;
    QString text(const QString &column) const { return head(column).toString(); }
    QString trimmed(const QString &column) const { return text(column).trimmed(); }
    double number(const QString &column) const;

    // Whether the totals have a row, and a figure of it, 0 for Null. Throws DataError nothingToPrint without a row.
    bool hasTotals() const { return !m_totals.isEmpty(); }
    double total(const QString &column) const;

    // An amount in English words. One that is too long for them is told to whoever prints, and its words are given all
    // the same. Throws DataError 13 for a negative amount.
    QString inEnglish(double amount) const;
    // What is to be told before the document is shown, in the words for the user.
    const QStringList &messages() const { return m_messages; }

private:
    Values m_head;
    QVector<Values> m_totals;
    mutable QStringList m_messages;
};

// The text of a label, worked out for a record. Throws DataError where that cannot be done.
using LabelText = QString (*)(const DocumentValues &values);

struct DocumentLabel {
    QString name;
    std::variant<QString, LabelText> text; // always the same, or worked out
};

// What the documents of one kind have in common: the kind of record that they are printed from.
struct DocumentRecord {
    QString name{}; // what a number is one of, for the user: "外销合同"; empty for lists, which take no number
    QString key{};  // the placeholder of the number in all statements
    // Select of the record's own row, for labels, clause and logo. It is also how a number that is not there is found.
    QString head{};
    QString rows{};   // select of the report's rows; empty for a report without
    QString clause{}; // the head's column with a special clause, which some of the documents show
    // A label that fails is left empty and a logo that cannot be read is left out, and the report is shown all the
    // same; otherwise either ends the printing with its error.
    bool goesOn = false;
    bool printsWithout = false; // without a number it is shown all the same, with nothing filled in
};

struct DocumentClause {
    QString flag, label; // the head's column that says whether the clause is shown, and the label that shows it
};

// What narrows the rows of a statistic, and what it counts.
struct Statistic {
    QVector<Criterion> criteria{}; // whose conditions stand behind the record's rows, in their order
    QString rowsWithin{};          // the record's rows where a second range of dates is in force
    QString counted{};             // select of the number that is stated as n, narrowed like the rows
    QString countedWithin{};       // put behind `counted` where a second range is in force
    QString missing{};             // what is said where the first criterion is empty; empty: it may be
    bool needsRows = false;        // without rows, which `counted` then tells, it has nothing to print
};

struct Document {
    QString name;   // what it is chosen by
    QString report; // of reportEntries()
    DocumentRecord record;
    QString needed{}; // the head's column without which a record counts as none
    QString order{};  // put behind the record's rows
    QString totals{}; // select of one row of sums
    DocumentClause clause{};
    QString logo{}; // the image that takes the picture of the head's column logo
    QVector<DocumentLabel> labels{};
    std::optional<QString> choice{}; // what a form's box of choices calls it, among the documents of its record

    Statistic statistic{};

    bool takesNumber() const { return !record.key.isEmpty(); }
    bool isStatistic() const { return !statistic.criteria.isEmpty(); }
};

// All documents, in the order in which they are named.
const QVector<Document> &documents();
// The document of that name, to the letter. Throws DataError when there is none.
const Document &document(const QString &name);

// A report that is ready to be shown or laid out, and what came up on the way.
struct FilledReport {
    Report *report;         // the shared one
    QStringList messages;   // for the user, before it is shown
    QStringList passedOver; // errors of labels that were left empty, each behind its label's name
};

// Fills a document's report in the order that every report is filled in: clause, totals, logo, labels, source.
// given: values of the statements' placeholders, which labels see beside the record's columns. Throws DataError, for a
// record that is not there too.
FilledReport fill(const Document &document, Connection &connection, const Values &given);
// The same for the record of a number.
FilledReport fill(const Document &document, Connection &connection, const QString &number = {});

// What a statistic is asked for with.
struct Criteria {
    Values values; // dates and texts, by the names of the criteria; blanks narrow nothing
    bool isWithin = false;
    // Instead of those that the texts make: conditions that were put together before.
    std::optional<QVector<Fragment>> fragments{};
    std::optional<int> count{}; // instead of counting
};

// The placeholders of the first range of dates, which every statistic over a period has.
inline const QString fromDate = QStringLiteral("DTPicker1"), toDate = QStringLiteral("DTPicker2");

// Fills a statistic's report. Throws DataError as fill() does, and nothingToPrint where a criterion that is needed is
// empty or rows that are needed are missing, found or printed ones.
FilledReport fill(const Document &statistic, Connection &connection, const Criteria &criteria);

// Fills the document's report, tells what is to be told, shows it, and returns when the preview closes. Throws
// DataError as fill() does; nothing is shown then.
void showDocument(const Document &document, Connection &connection, const QString &number, QWidget *parent);

// Tells why nothing is printed.
void tellUnprinted(const DataError &error, QWidget *parent);

// What the print button of a form does: the document of the record that is shown. Without a number it says so, in the
// words of withoutNumber where there are any; what goes wrong is told.
void printRecord(const Document &document, const QString &number, QWidget *parent, const QString &withoutNumber = {});
// The same for the document of that name. Throws DataError when there is none.
void printRecord(const QString &name, const QString &number, QWidget *parent, const QString &withoutNumber = {});

// What the documents of a kind of record (DocumentRecord::name) are chosen by, in their order.
QStringList choicesOf(const QString &record);
// The same for the document of that kind and choice, to the letter. Any other choice prints nothing.
void printChoice(const QString &record, const QString &choice, const QString &number, QWidget *parent);

} // namespace tradewick
