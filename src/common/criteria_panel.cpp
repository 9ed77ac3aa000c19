#include "common/criteria_panel.h"

#include "common/combo_field.h"
#include "common/date_field.h"
#include "common/field_panel.h"
#include "common/flow_layout.h"
#include "data/date_text.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

#include <stdexcept>

namespace tradewick
{

namespace
{

constexpr int daysOfRange = 30;

void addPair(QLayout *layout, const QString &caption, QWidget *control)
{
    auto *pair = new QWidget(layout->parentWidget());
    auto *row = new QHBoxLayout(pair);
    row->setContentsMargins(0, 0, 0, 0);
    auto *label = new QLabel(caption, pair);
    label->setBuddy(control);
    row->addWidget(label);
    row->addWidget(control, 1);
    layout->addWidget(pair);
}

} // namespace

CriteriaPanel::CriteriaPanel(const QuerySpec &spec, QWidget *parent) : QWidget(parent), m_spec(spec)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    for (const DateRange &range : spec.dates)
        addDates(range);
    for (const Criterion &criterion : spec.criteria)
        addBox(criterion);
}

QLayout *CriteriaPanel::frame(const QString &caption)
{
    const QString title = caption.isEmpty() ? m_spec.criteriaCaption : caption;
    QLayout *&found = m_frames[title];
    if (!found) {
        auto *around = new QGroupBox(title.trimmed(), this);
        auto *margin = new QVBoxLayout(around);
        margin->setContentsMargins(8, 4, 8, 4);
        auto *boxes = new QWidget(around);
        margin->addWidget(boxes);
        found = new FlowLayout(boxes);
        layout()->addWidget(around);
    }
    return found;
}

// ---- dates ----

void CriteriaPanel::addDates(const DateRange &range)
{
    const QDate today = QDate::currentDate();
    addDate(range.from, range.caption, plainCaption(range.caption), today.addDays(-daysOfRange));
    addDate(range.to, range.toCaption, plainCaption(range.caption) + plainCaption(range.toCaption), today);
    if (range.check.isEmpty())
        return;
    auto *check = new QCheckBox(range.checkCaption, this);
    check->setObjectName(range.check);
    check->setAccessibleName(range.checkCaption + plainCaption(range.caption));
    check->installEventFilter(this);
    frame({})->addWidget(check);
}

DateField *CriteriaPanel::addDate(const QString &name, const QString &caption, const QString &spoken, const QDate &date)
{
    auto *picker = new DateField(date, this);
    picker->setObjectName(name);
    picker->setAccessibleName(spoken);
    picker->installEventFilter(this);
    addPair(frame({}), caption, picker);
    m_dates.insert(name, picker);
    return picker;
}

bool CriteriaPanel::isWithin() const
{
    for (const DateRange &range : m_spec.dates)
        if (!range.check.isEmpty())
            return findChild<QCheckBox *>(range.check)->isChecked();
    return false;
}

bool CriteriaPanel::isReversed(bool anyRange) const
{
    for (const DateRange &range : m_spec.dates)
        if ((anyRange || &range == &m_spec.dates.first()) && m_dates[range.from]->date() > m_dates[range.to]->date())
            return true;
    return false;
}

void CriteriaPanel::takeFocus()
{
    QWidget *first = m_spec.dates.isEmpty() ? static_cast<QWidget *>(box(m_spec.criteria.first().name))
                                            : m_dates[m_spec.dates.first().from];
    first->setFocus(Qt::ShortcutFocusReason);
}

// ---- boxes ----

void CriteriaPanel::addBox(const Criterion &criterion)
{
    QLayout *layout = frame(criterion.frame);
    const QString name = criterion.name;
    QLineEdit *line = nullptr;
    if (criterion.offers) {
        auto *combo = new ComboField(this);
        line = combo->lineEdit();
        combo->setObjectName(name);
        combo->setAccessibleName(plainCaption(criterion.caption));
        combo->setMinimumContentsLength(12);
        addPair(layout, criterion.caption, combo);
        m_combos.insert(name, combo);
        connect(combo, &ComboField::chosen, this, [this, name] { Q_EMIT chosen(name); });
        connect(combo, &ComboField::enterPressed, this, [this] { focusNextChild(); });
        connect(line, &QLineEdit::editingFinished, combo, &ComboField::takeTyped);
        combo->installEventFilter(this); // its keys come there
    } else {
        line = new QLineEdit(this);
        line->setObjectName(name);
        line->installEventFilter(this);
        addPair(layout, criterion.caption, line);
    }
    line->setAccessibleName(plainCaption(criterion.caption));
    m_boxes.insert(name, line);
    connect(line, &QLineEdit::textEdited, this, [this, name] { Q_EMIT typed(name); });
}

QLineEdit *CriteriaPanel::box(const QString &name) const
{
    QLineEdit *found = m_boxes.value(name);
    if (!found)
        throw std::logic_error("no criterion " + name.toStdString());
    return found;
}

QString CriteriaPanel::text(const QString &name) const
{
    return box(name)->text();
}

void CriteriaPanel::empty(const QString &name)
{
    if (ComboField *combo = m_combos.value(name))
        combo->showText({});
    else
        box(name)->clear();
}

void CriteriaPanel::emptyAll()
{
    for (const Criterion &criterion : m_spec.criteria)
        empty(criterion.name);
}

void CriteriaPanel::offer(const QString &name, const QStringList &items)
{
    ComboField *combo = m_combos.value(name);
    const QString shown = text(name);
    combo->clear();
    combo->addItems(items);
    combo->showText(shown);
}

Values CriteriaPanel::values() const
{
    Values all;
    for (auto date = m_dates.cbegin(); date != m_dates.cend(); ++date)
        all.insert(date.key(), dateText(date.value()->date()));
    for (auto one = m_boxes.cbegin(); one != m_boxes.cend(); ++one)
        all.insert(one.key(), m_spec.trimsTexts ? one.value()->text().trimmed() : one.value()->text());
    return all;
}

// Enter goes on to the next criterion and, behind the last, to what finds. The key that writes what was found is none
// of a text's own here.
bool CriteriaPanel::eventFilter(QObject *watched, QEvent *event)
{
    const auto isKey = [event](int key) { return static_cast<QKeyEvent *>(event)->key() == key; };
    if (event->type() == QEvent::ShortcutOverride && isKey(Qt::Key_E) &&
        static_cast<QKeyEvent *>(event)->modifiers() == Qt::ControlModifier) {
        event->ignore();
        return true;
    }
    if (event->type() == QEvent::KeyPress && (isKey(Qt::Key_Return) || isKey(Qt::Key_Enter))) {
        if (auto *combo = qobject_cast<ComboField *>(watched))
            combo->takeTyped();
        focusNextChild();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace tradewick
