#include "common/branch_tree.h"

#include <QSet>
#include <QStandardItemModel>

namespace tradewick
{

namespace
{

enum Role { BranchRole = Qt::UserRole, ValuesRole, ReadRole };

const BranchSpec *branchOf(const QModelIndex &index)
{
    return static_cast<const BranchSpec *>(index.data(BranchRole).value<const void *>());
}

QString pathOf(const QModelIndex &index)
{
    return index.isValid() ? pathOf(index.parent()) + u'\n' + index.data().toString() : QString();
}

} // namespace

// Thousands of branches are read only where someone looks.
class BranchTree::Model : public QStandardItemModel
{
public:
    Model(BranchTree *tree, std::function<std::shared_ptr<Connection>()> connection)
        : QStandardItemModel(tree), m_tree(tree), m_connection(std::move(connection))
    {
    }

    bool hasChildren(const QModelIndex &parent) const override
    {
        return canFetchMore(parent) || QStandardItemModel::hasChildren(parent);
    }
    bool canFetchMore(const QModelIndex &parent) const override
    {
        const BranchSpec *branch = branchOf(parent);
        return branch && !branch->below.empty() && !parent.data(ReadRole).toBool();
    }
    void fetchMore(const QModelIndex &parent) override
    {
        if (!canFetchMore(parent))
            return;
        QStandardItem *item = itemFromIndex(parent);
        item->setData(true, ReadRole); // also when it fails: a view would ask again with every line it draws
        try {
            read(item, branchOf(parent)->below, item->data(ValuesRole).value<Values>());
        } catch (const DataError &error) {
            Q_EMIT m_tree->failed(error.text());
        }
    }

    void read(QStandardItem *parent, const std::vector<BranchSpec> &branches, const Values &values)
    {
        for (const BranchSpec &branch : branches)
            for (const Values &row : m_connection()->rows(branch.statement, values)) {
                QStringList texts;
                for (const QString &column : branch.columns)
                    texts.append(row[column].toString());
                auto *item = new QStandardItem(texts.join(u'|'));
                item->setEditable(false);
                item->setData(QVariant::fromValue(static_cast<const void *>(&branch)), BranchRole);
                item->setData(QVariant::fromValue(row), ValuesRole);
                parent->appendRow(item);
            }
    }

    // Rows that the statement counts.
    int count(const char *statement)
    {
        const QVector<Values> rows = m_connection()->rows(statement);
        return rows.isEmpty() ? 0 : rows.first()["ccc"].toInt();
    }

private:
    BranchTree *m_tree;
    std::function<std::shared_ptr<Connection>()> m_connection;
};

BranchTree::BranchTree(const TreeSpec &spec, const std::function<std::shared_ptr<Connection>()> &connection,
                       QWidget *parent)
    : QTreeView(parent), m_spec(spec), m_model(new Model(this, connection))
{
    setObjectName("TreeView1");
    setAccessibleName(spec.root);
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setModel(m_model);
    connect(this, &QTreeView::clicked, this, &BranchTree::choose);
    connect(this, &QTreeView::activated, this, &BranchTree::choose);
}

void BranchTree::rebuild()
{
    QSet<QString> open;
    const std::function<void(const QModelIndex &)> remember = [&](const QModelIndex &index) {
        if (!isExpanded(index))
            return;
        open.insert(pathOf(index));
        for (int row = 0; row < m_model->rowCount(index); ++row)
            remember(m_model->index(row, 0, index));
    };
    remember(m_model->index(0, 0));

    m_model->clear();
    auto *root = new QStandardItem(m_spec.root);
    root->setEditable(false);
    m_model->appendRow(root);
    if (!m_spec.count || m_model->count(m_spec.count) > 0)
        m_model->read(root, m_spec.branches, {});

    const std::function<void(const QModelIndex &)> restore = [&](const QModelIndex &index) {
        if (index.parent().isValid() && !open.contains(pathOf(index)))
            return;
        m_model->fetchMore(index);
        expand(index);
        for (int row = 0; row < m_model->rowCount(index); ++row)
            restore(m_model->index(row, 0, index));
    };
    restore(root->index());
}

void BranchTree::choose(const QModelIndex &index)
{
    const BranchSpec *branch = branchOf(index);
    if (!branch)
        return;
    m_chosenBranch = branch;
    m_chosenText = index.data().toString();
    Q_EMIT chosen(branch, branch->keyLength ? m_chosenText.right(branch->keyLength)
                                            : index.data(ValuesRole).value<Values>().value(branch->find));
}

} // namespace tradewick
