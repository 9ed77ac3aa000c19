// The tree beside a record: branches read from the database as they are opened.
#pragma once

#include "common/dialogs.h"
#include "data/connection.h"

#include <QTreeView>

#include <vector>

class QStandardItem;

namespace tradewick
{

// One kind of branch: what stands under the root, or under a branch of the kind above.
struct BranchSpec {
    QString tag;
    const char *statement = nullptr; // its placeholders are the columns of the branch above
    QStringList columns;             // whose values, joined by "|", are the text of a branch
    QString find;                    // column of the record set that a click searches; empty: a click finds nothing
    int keyLength = 0;               // characters at the end of the text that are searched for; 0: the column's value
    std::vector<BranchSpec> below{};
};

// A box above the tree that offers a value for the next new record.
struct DefaultSpec {
    QString name, caption;           // of the combo box
    const char *statement = nullptr; // columns are joined by "|" in the list, the first is what is taken over
    QString field;                   // that it is written to
};

struct TreeSpec {
    QString root;                // text of the root, whose key is "ROOT"
    const char *count = nullptr; // number of rows altogether
    std::vector<BranchSpec> branches;
    QString notFound, notFoundTitle;
    MessageIcon notFoundIcon = MessageIcon::None;
    bool firstWhenNotFound = false; // the first record is shown then
    QString chosen;                 // name of the box that shows the chosen branch; empty: there is none
    QVector<DefaultSpec> defaults;
};

class BranchTree : public QTreeView
{
    Q_OBJECT

public:
    // spec: outlives the tree.
    BranchTree(const TreeSpec &spec, const std::function<std::shared_ptr<Connection>()> &connection, QWidget *parent);

    // Reads the branches under the root anew; those that stood open are opened again. Throws DataError.
    void rebuild();
    // Kind and text of the branch that was chosen last, by a click or Enter; nullptr when none was yet. They outlast
    // a rebuilding.
    const BranchSpec *chosenBranch() const { return m_chosenBranch; }
    const QString &chosenText() const { return m_chosenText; }

Q_SIGNALS:
    // A branch, never the root, with what its record is found by.
    void chosen(const tradewick::BranchSpec *branch, const QVariant &key);
    void failed(const QString &error); // a branch could not be read

private:
    class Model;
    void choose(const QModelIndex &index);

    const TreeSpec &m_spec;
    Model *m_model;
    const BranchSpec *m_chosenBranch = nullptr;
    QString m_chosenText;
};

} // namespace tradewick
