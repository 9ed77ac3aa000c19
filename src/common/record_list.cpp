#include "common/record_list.h"

#include "common/combo_field.h"
#include "common/date_field.h"
#include "common/dialogs.h"
#include "common/field_panel.h"
#include "common/record_form.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>

#include <utility>

namespace tradewick
{

namespace
{

QBoxLayout *addRow(QBoxLayout *layout, const QString &caption, QWidget *control)
{
    auto *row = new QHBoxLayout;
    auto *label = new QLabel(caption, control->parentWidget());
    label->setBuddy(control);
    row->addWidget(label);
    row->addWidget(control, 1);
    layout->addLayout(row);
    return row;
}

Values textOf(const FilterSpec &filter, const QString &text)
{
    return {{"text", filter.trimmed ? text.trimmed() : text}};
}

} // namespace

RecordList::RecordList(const RecordFormSpec &spec, RecordForm &form, QWidget *parent)
    : QWidget(parent), m_spec(spec), m_form(form), m_grid(new Grid(spec.listName, QStringLiteral("记录列表"), this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    if (spec.dateFilter.statement)
        addDateFilter(layout);
    QBoxLayout *filters = layout;
    if (!spec.filterCaption.isEmpty()) {
        auto *frame = new QGroupBox(spec.filterCaption, this);
        layout->addWidget(frame);
        filters = new QVBoxLayout(frame);
    }
    for (const FilterSpec &filter : spec.filters)
        filter.offers ? addChoosingFilter(filters, filter) : addFilter(filters, filter);
    if (!spec.tree.branches.empty())
        addTree(layout);
    m_grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_grid->showRecords(form.records(), spec.list);
    m_grid->setWhole(0);                                     // keys are never cut
    m_grid->horizontalHeader()->setStretchLastSection(true); // names have what room there is
    m_grid->recordsetModel()->setMark([this](int record) { return m_form.waits(record); });
    layout->addWidget(m_grid, 1);
    m_ways.append(m_grid);
    if (m_tree)
        setTabOrder(m_tree, m_grid);
}

// By the view: a header told of its sections looks at every one of them.
void RecordList::showMarks()
{
    m_grid->verticalHeader()->viewport()->update();
}

void RecordList::setWaysOpen(bool open)
{
    for (QWidget *way : std::as_const(m_ways))
        way->setEnabled(open);
}

void RecordList::addDateFilter(QBoxLayout *layout)
{
    const DateFilterSpec &spec = m_spec.dateFilter;
    auto *row = new QHBoxLayout;
    auto *label = new QLabel(spec.caption, this);
    auto *picker = new DateField(QDate::currentDate(), this);
    picker->setObjectName(spec.name);
    picker->setAccessibleName(spec.caption);
    picker->allowNone(QStringLiteral("不限"));
    m_date = picker;
    label->setBuddy(picker);
    row->addWidget(label);
    row->addWidget(picker, 1);
    addAll(row);
    layout->addLayout(row);
    m_ways.append(picker);
    connect(picker, &QDateEdit::dateChanged, this, [this, picker](QDate date) {
        const QDate shown = std::exchange(m_shownDate, date);
        if (m_form.showStatement(m_spec.dateFilter.statement, {{"date", date.toString(Qt::ISODate)}}))
            return;
        m_shownDate = shown;
        const QSignalBlocker quiet(picker); // the old records stand there still
        shown.isValid() ? picker->setDate(shown) : picker->showNone();
    });
}

// The way back from a choice that cannot be emptied.
void RecordList::addAll(QBoxLayout *row)
{
    auto *all = new QPushButton(QStringLiteral("全部"), this);
    all->setObjectName("Cmd_all");
    all->setAutoDefault(true);
    all->setAccessibleName(QStringLiteral("显示全部记录"));
    row->addWidget(all);
    m_ways.append(all);
    connect(all, &QPushButton::clicked, this, [this] {
        if (m_form.showStatement(m_spec.statement, {}))
            forgetDate();
    });
}

// Other records are shown than those of a date.
void RecordList::forgetDate()
{
    m_shownDate = {};
    if (m_date)
        m_date->showNone();
}

void RecordList::addChoosingFilter(QBoxLayout *layout, const FilterSpec &filter)
{
    auto *box = new ComboField(this);
    box->setObjectName(filter.name);
    box->setAccessibleName(plainCaption(filter.caption));
    box->lineEdit()->setAccessibleName(box->accessibleName());
    box->addItems(m_form.offered(filter.offers));
    box->setCurrentIndex(-1);
    QBoxLayout *row = addRow(layout, filter.caption, box);
    if (!filter.whileTyping) // other records come with another text
        addAll(row);
    m_ways.append(box);
    m_choosing.append(box);
    if (filter.whileTyping)
        connect(box->lineEdit(), &QLineEdit::textEdited, this, [this, box, &filter](const QString &typed) {
            if (!typed.trimmed().isEmpty() && !m_form.showStatement(filter.whileTyping, textOf(filter, typed)))
                box->showText({}); // the old records stand there still
        });
    connect(box->lineEdit(), &QLineEdit::returnPressed, box, &ComboField::takeTyped);
    connect(box, &ComboField::chosen, this, [this, box, &filter, shown = QString()]() mutable {
        const QString chosen = box->currentText();
        if (chosen.trimmed().isEmpty())
            return;
        if (!m_form.showStatement(filter.statement, textOf(filter, chosen))) {
            box->showText(shown);
            return;
        }
        shown = chosen;
        forgetDate();
        for (ComboField *other : std::as_const(m_choosing))
            if (other != box)
                other->showText({});
    });
}

void RecordList::addFilter(QBoxLayout *layout, const FilterSpec &filter)
{
    auto *box = new QLineEdit(this);
    box->setObjectName(filter.name);
    box->setAccessibleName(plainCaption(filter.caption));
    box->setClearButtonEnabled(true);
    addRow(layout, filter.caption, box);
    m_ways.append(box);
    connect(box, &QLineEdit::textChanged, this, [this, box, &filter, shown = QString()](const QString &typed) mutable {
        const Values values = textOf(filter, typed);
        bool shows = true;
        if (!filter.via)
            shows = m_form.showStatement(filter.statement, values);
        else
            m_form.run(Failure::Report, {[&] {
                           if (const auto found = m_form.firstRow(filter.via, values))
                               shows = m_form.showStatement(filter.statement, found->named());
                       }});
        if (shows) {
            shown = typed;
            forgetDate();
            return;
        }
        const QSignalBlocker quiet(box); // the old records stand there still
        box->setText(shown);
    });
}

bool RecordList::find(const QString &column, const QVariant &value)
{
    Recordset &records = m_form.records();
    if (records.RecordCount() > 0) {
        records.MoveFirst();
        records.Find(column, value);
    }
    return !records.EOF_();
}

// ---- the tree ----

void RecordList::addTree(QBoxLayout *layout)
{
    for (const DefaultSpec &box : m_spec.tree.defaults) {
        auto *combo = new ComboField(this);
        combo->setObjectName(box.name);
        combo->setAccessibleName(QStringLiteral("新记录的") + box.caption);
        combo->lineEdit()->setAccessibleName(combo->accessibleName());
        addRow(layout, box.caption, combo);
    }
    m_tree = new BranchTree(
        m_spec.tree, [this] { return m_form.connection(); }, this);
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

void RecordList::branchChosen(const BranchSpec &branch, const QVariant &key)
{
    if (branch.find.isEmpty())
        return;
    const TreeSpec &spec = m_spec.tree;
    m_form.run(Failure::Report, {[&] {
                   if (find(branch.find, key))
                       return;
                   dialogs().message(this, spec.notFound, spec.notFoundTitle, spec.notFoundIcon);
                   if (spec.firstWhenNotFound && m_form.records().RecordCount() > 0)
                       m_form.records().MoveFirst();
               }});
}

void RecordList::rebuildTree()
{
    if (!m_tree)
        return;
    m_tree->rebuild();
    for (const DefaultSpec &box : m_spec.tree.defaults) {
        auto *combo = findChild<ComboField *>(box.name);
        const QString text = combo->currentText();
        combo->clear();
        m_form.connection()->read(
            QString::fromUtf8(box.statement), {}, [](const QStringList &) {},
            [combo](const QVariantList &row) {
                QStringList parts; // all are shown, the first is taken over
                for (const QVariant &part : row)
                    parts.append(part.toString());
                combo->addItem(parts.join(u'|'), row.first());
                return true;
            });
        combo->showText(text);
    }
}

QString RecordList::defaultValue(const DefaultSpec &box) const
{
    const auto *combo = findChild<QComboBox *>(box.name);
    const int item = combo->findText(combo->currentText(), Qt::MatchFixedString);
    return item < 0 ? combo->currentText() : combo->itemData(item).toString();
}

} // namespace tradewick
