// How a record form finds and chooses records beside its buttons: date and text filters, find by key, the tree.
#include "common/combo_field.h"
#include "common/dialogs.h"
#include "common/record_form.h"

#include <QDateEdit>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace tradewick
{

namespace
{

void addRow(QBoxLayout *layout, const QString &caption, QWidget *control)
{
    auto *row = new QHBoxLayout;
    auto *label = new QLabel(caption, control->parentWidget());
    label->setBuddy(control);
    row->addWidget(label);
    row->addWidget(control, 1);
    layout->addLayout(row);
}

} // namespace

void RecordForm::showStatement(const char *statement, const Values &values)
{
    m_primary.setRecordSource(statement, values);
    run(Failure::Report, {[this] { m_primary.Refresh(); }});
}

void RecordForm::buildDateFilter(QBoxLayout *layout)
{
    auto *row = new QHBoxLayout;
    auto *label = new QLabel(m_spec.dateFilterCaption, this);
    auto *picker = new QDateEdit(QDate::currentDate(), this);
    picker->setObjectName("DTPicker3");
    picker->setAccessibleName(m_spec.dateFilterCaption);
    picker->setDisplayFormat("yyyy-MM-dd");
    picker->setCalendarPopup(true);
    label->setBuddy(picker);
    auto *all = new QPushButton(QStringLiteral("全部"), this);
    all->setObjectName("Cmd_all");
    all->setAutoDefault(true);
    all->setAccessibleName(QStringLiteral("显示全部记录"));
    row->addWidget(label);
    row->addWidget(picker, 1);
    row->addWidget(all);
    layout->addLayout(row);
    m_ways.append({picker, all});
    connect(picker, &QDateEdit::dateChanged, this, [this](QDate date) {
        showStatement(m_spec.dateFilterStatement, {{"date", date.toString(Qt::ISODate)}});
    });
    connect(all, &QPushButton::clicked, this, [this] { showStatement(m_spec.statement, {}); });
}

void RecordForm::buildFilter(QBoxLayout *layout)
{
    auto *box = new QLineEdit(this);
    box->setObjectName(m_spec.filter.name);
    box->setAccessibleName(m_spec.filter.caption.chopped(m_spec.filter.caption.endsWith(u':') ? 1 : 0));
    box->setClearButtonEnabled(true);
    addRow(layout, m_spec.filter.caption, box);
    m_ways.append(box);
    connect(box, &QLineEdit::textChanged, this, [this](const QString &text) {
        showStatement(m_spec.filter.statement, {{"text", m_spec.filter.trimmed ? text.trimmed() : text}});
    });
}

void RecordForm::find()
{
    const FindSpec &spec = m_spec.find;
    // A box that was cancelled is searched for like an empty answer.
    const QString key = dialogs().input(this, spec.prompt, spec.title).value_or(QString());
    run(Failure::Report, {[&] {
            if (records().RecordCount() > 0) {
                records().MoveFirst();
                records().Find(spec.column, key);
            }
            if (!records().EOF_())
                return;
            dialogs().message(this, spec.notFound, spec.title, MessageIcon::Information);
            if (records().RecordCount() > 0)
                records().MoveFirst();
        }});
}

// ---- the tree ----

void RecordForm::buildTree(QBoxLayout *layout)
{
    for (const DefaultSpec &box : std::as_const(m_spec.tree.defaults)) {
        auto *combo = new ComboField(this);
        combo->setObjectName(box.name);
        combo->setAccessibleName(QStringLiteral("新记录的") + box.caption);
        combo->lineEdit()->setAccessibleName(combo->accessibleName());
        addRow(layout, box.caption, combo);
    }
    m_tree = new BranchTree(
        m_spec.tree, [this] { return Connection::shared(m_primary.ConnectionString); }, this);
    if (!m_spec.tree.chosen.isEmpty()) {
        auto *box = new QLineEdit(this);
        box->setObjectName(m_spec.tree.chosen);
        box->setAccessibleName(m_spec.tree.root);
        box->setReadOnly(true);
        box->setFocusPolicy(Qt::ClickFocus);
        layout->addWidget(box);
        connect(m_tree, &BranchTree::chosen, box, [this, box] { box->setText(m_tree->chosenText()); });
    }
    layout->addWidget(m_tree, 2);
    m_ways.append(m_tree);
    connect(m_tree, &BranchTree::chosen, this,
            [this](const BranchSpec *branch, const QVariant &key) { branchChosen(*branch, key); });
    connect(
        m_tree, &BranchTree::failed, this,
        [this](const QString &error) { dialogs().message(this, error, {}, MessageIcon::None); }, Qt::QueuedConnection);
}

void RecordForm::branchChosen(const BranchSpec &branch, const QVariant &key)
{
    if (branch.find.isEmpty())
        return;
    const TreeSpec &spec = m_spec.tree;
    run(Failure::Report, {[&] {
            if (records().RecordCount() > 0) {
                records().MoveFirst();
                records().Find(branch.find, key);
            }
            if (!records().EOF_())
                return;
            dialogs().message(this, spec.notFound, spec.notFoundTitle, spec.notFoundIcon);
            if (spec.firstWhenNotFound && records().RecordCount() > 0)
                records().MoveFirst();
        }});
}

void RecordForm::rebuildTree()
{
    if (!m_tree)
        return;
    m_tree->rebuild();
    for (const DefaultSpec &box : std::as_const(m_spec.tree.defaults))
        fillList(findChild<QComboBox *>(box.name), box.statement, true);
}

QString RecordForm::defaultValue(const DefaultSpec &box) const
{
    const auto *combo = findChild<QComboBox *>(box.name);
    const int item = combo->findText(combo->currentText(), Qt::MatchFixedString);
    return item < 0 ? combo->currentText() : combo->itemData(item).toString();
}

} // namespace tradewick
