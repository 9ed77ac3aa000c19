#include "common/branch_tree.h"

#include <QSet>
#include <QStandardItemModel>

namespace tradewick
{

namespace
{

// A branch as it was read. Tens of thousands of them are made at once where someone unfolds the whole tree.
class Branch : public QStandardItem
{
public:
    Branch(const QString &text, const BranchSpec *ofKind, const QStringList &ofColumns, const QVariantList &values)
        : kind(ofKind), columns(ofColumns), row(values), m_text(text)
    {
    }

    QVariant data(int role) const override { return role == Qt::DisplayRole ? m_text : QVariant(); }

    Values values() const
    {
        Values byName;
        for (qsizetype i = 0; i < columns.size(); ++i)
            byName.insert(columns[i], row[i]);
        return byName;
    }

    const BranchSpec *kind; // nullptr: the root
    QStringList columns;
    QVariantList row;
    bool isRead = false; // what stands below

private:
    QString m_text;
};

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

    Branch *branchAt(const QModelIndex &index) const { return static_cast<Branch *>(itemFromIndex(index)); }

    Qt::ItemFlags flags(const QModelIndex &index) const override
    {
        return index.isValid() ? Qt::ItemIsSelectable | Qt::ItemIsEnabled : Qt::NoItemFlags;
    }
    bool hasChildren(const QModelIndex &parent) const override
    {
        return canFetchMore(parent) || QStandardItemModel::hasChildren(parent);
    }
    bool canFetchMore(const QModelIndex &parent) const override
    {
        const Branch *branch = branchAt(parent);
        return branch && branch->kind && !branch->kind->below.empty() && !branch->isRead;
    }
    void fetchMore(const QModelIndex &parent) override
    {
        if (!canFetchMore(parent))
            return;
        Branch *branch = branchAt(parent);
        branch->isRead = true; // also when it fails: a view would ask again with every line it draws
        try {
            read(branch, branch->kind->below, branch->values());
        } catch (const DataError &error) {
            Q_EMIT m_tree->failed(error.text());
        }
    }

    void read(Branch *parent, const std::vector<BranchSpec> &kinds, const Values &values)
    {
        for (const BranchSpec &kind : kinds) {
            QStringList columns;
            QVector<qsizetype> shown;
            std::vector<std::unique_ptr<Branch>> branches;
            m_connection()->read(
                kind.statement, values,
                [&](const QStringList &names) {
                    for (const QString &name : names)
                        columns.append(name.toLower());
                    for (const QString &column : kind.columns)
                        shown.append(columns.indexOf(column));
                },
                [&](const QVariantList &row) {
                    QString text;
                    for (const qsizetype column : std::as_const(shown))
                        text += (column == shown.first() ? QString() : QStringLiteral("|")) + row[column].toString();
                    branches.push_back(std::make_unique<Branch>(text, &kind, columns, row));
                    return true;
                });
            QList<QStandardItem *> items; // put in at once: the view reckons with every insertion
            for (auto &branch : branches)
                items.append(branch.release());
            parent->appendRows(items);
        }
    }

    // Rows that the statement counts.
    int count(const char *statement)
    {
        const QVector<Row> rows = m_connection()->rows(statement);
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
    auto *root = new Branch(m_spec.root, nullptr, {}, {});
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
    const Branch *branch = m_model->branchAt(index);
    if (!branch || !branch->kind)
        return;
    // A copy: who hears of it may rebuild the tree.
    const QVariant key = branch->kind->keyLength ? QVariant(branch->text().right(branch->kind->keyLength))
                                                 : branch->values().value(branch->kind->find);
    m_chosenBranch = branch->kind;
    m_chosenText = branch->text();
    Q_EMIT chosen(m_chosenBranch, key);
}

} // namespace tradewick
