// The pane beside a record: the list of records, and the ways to others of them: filters, find and a tree.
#pragma once

#include "common/branch_tree.h"
#include "common/grid.h"

#include <QDate>
#include <QWidget>

#include <functional>

class QBoxLayout;

namespace tradewick
{

class ComboField;
class DateField;
class RecordForm;

class RecordList : public QWidget
{
    Q_OBJECT

public:
    // spec and form: outlive the list.
    RecordList(const RecordFormSpec &spec, RecordForm &form, QWidget *parent);

    Grid *grid() const { return m_grid; }
    BranchTree *tree() const { return m_tree; }
    // Other records bear a mark than before.
    void showMarks();
    // Whether the clerk can go to other records.
    void setWaysOpen(bool open);
    // Reads the tree and what the boxes above it offer anew. Throws DataError.
    void rebuildTree();
    // Text of one of the boxes above the tree, or what it stands for.
    QString defaultValue(const DefaultSpec &box) const;
    // Goes to the first record whose column has the value; gives whether there was one. Throws DataError.
    bool find(const QString &column, const QVariant &value);

private:
    void addDateFilter(QBoxLayout *layout);
    void forgetDate();
    void addAll(QBoxLayout *row);
    void addChoosingFilter(QBoxLayout *layout, const FilterSpec &filter);
    void addFilter(QBoxLayout *layout, const FilterSpec &filter);
    void addTree(QBoxLayout *layout);
    void branchChosen(const BranchSpec &branch, const QVariant &key);

    const RecordFormSpec &m_spec;
    RecordForm &m_form;
    Grid *m_grid;
    BranchTree *m_tree = nullptr;
    QVector<QWidget *> m_ways;
    DateField *m_date = nullptr;
    QDate m_shownDate;                // whose records are shown; none: those of any date
    QVector<ComboField *> m_choosing; // the filters that are combo boxes
};

} // namespace tradewick
