// The tree beside a record: branches read from the database as they are opened.
#pragma once

#include "common/record_form_spec.h"
#include "data/connection.h"

#include <QTreeView>

#include <memory>

class QStandardItem;

namespace tradewick
{

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
