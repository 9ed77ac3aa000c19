// The question that a save asks when another desktop changed or deleted the same row meanwhile.
#pragma once

#include <QDialog>
#include <QString>
#include <QVector>

#include <optional>

class QTableWidget;

namespace tradewick
{

struct ConflictField {
    QString caption, read, now, typed;
};

struct ConflictQuestion {
    enum Kind {
        Changed,  // another desktop changed the row that is to be saved
        Gone,     // another desktop deleted it
        Deleting, // another desktop changed the row that is to be deleted
    };
    Kind kind = Changed;
    QString record; // what the row is, for the sentence: the key of a document, say
    QVector<ConflictField> fields;
};

// For each field whether what was typed is to be stored (true) or what stands there now. Where the row is gone or to be
// deleted it is all or nothing: all true stores it anew, or deletes it in spite of all.
using ConflictAnswer = QVector<bool>;

class ConflictDialog : public QDialog
{
    Q_OBJECT

public:
    ConflictDialog(const ConflictQuestion &question, QWidget *parent);

    // Runs it modally; no value when the user goes back to what was typed, to decide later.
    static std::optional<ConflictAnswer> ask(const ConflictQuestion &question, QWidget *parent);

private:
    void buildTable(const ConflictQuestion &question);

    QTableWidget *m_table;
    ConflictAnswer m_answer;
};

} // namespace tradewick
