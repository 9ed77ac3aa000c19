#include "common/field_panel.h"

#include "common/combo_field.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCompleter>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <stdexcept>

namespace tradewick
{

namespace
{

constexpr int checksInRow = 4;
constexpr int narrowestField = 12; // characters that a field shows on the smallest screen

// "Text1(3)" is element 3 of the array "Text1".
QString arrayOf(const QString &name)
{
    return name.section(u'(', 0, 0);
}
int indexOf(const QString &name)
{
    return name.section(u'(', 1).chopped(1).toInt();
}

} // namespace

QString plainCaption(QString caption)
{
    while (caption.endsWith(u':') || caption.endsWith(u'：') || caption.endsWith(u' '))
        caption.chop(1);
    return caption.startsWith(u'*') ? caption.mid(1) : caption;
}

FieldPanel::FieldPanel(const RecordFormSpec &spec, Recordset &records, QWidget *parent)
    : QWidget(parent), m_spec(spec), m_records(records)
{
    setAccessibleName(QStringLiteral("记录内容"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    const bool hasTabs = spec.pages.size() > 1;
    if (hasTabs) {
        m_tabs = new QTabWidget(this);
        m_tabs->setObjectName("SSTab1");
        m_tabs->setAccessibleName(spec.caption);
        layout->addWidget(m_tabs);
        const bool linesOnTab = std::any_of(spec.lines.grids.cbegin(), spec.lines.grids.cend(),
                                            [](const LineGridSpec &grid) { return grid.page >= 0; });
        m_tabs->setSizePolicy(QSizePolicy::Preferred, linesOnTab ? QSizePolicy::Preferred : QSizePolicy::Maximum);
    }
    for (int index = 0; index < spec.pages.size(); ++index) {
        addPage(index);
        QWidget *page = m_pages[index]->parentWidget();
        if (!hasTabs) {
            layout->addWidget(page);
            continue;
        }
        const QString keys = QStringLiteral("Alt+%1").arg(index + 1);
        m_tabs->addTab(page, spec.pages[index].caption);
        m_tabs->setTabToolTip(index, keys);
        // The keys typed next belong to the tab that is shown.
        connect(addKeys(this, {QKeySequence(keys)}, spec.pages[index].caption), &QShortcut::activated, this,
                [this, index] {
                    const QVector<FieldSpec> &fields = m_spec.pages[index].fields;
                    const auto first =
                        std::find_if(fields.cbegin(), fields.cend(), [](const auto &one) { return !one.hidden; });
                    if (first != fields.cend())
                        focus(first->name);
                });
    }
}

FieldPanel::~FieldPanel() = default;

QBoxLayout *FieldPanel::placeOf(const LineGridSpec &grid) const
{
    return grid.above.isEmpty() ? m_pages.at(grid.page) : m_places.value(grid.name);
}

void FieldPanel::chainGrids()
{
    for (const LineGridSpec &grid : m_spec.lines.grids) {
        const auto below = std::find_if(m_order.cbegin(), m_order.cend(),
                                        [&](const Entry *entry) { return entry->spec->name == grid.above; });
        if (below != m_order.cend() && below != m_order.cbegin())
            setTabOrder((*std::prev(below))->control->widget(), findChild<QWidget *>(grid.name));
    }
}

// What stands around a group of fields, or around those of none, which begins with that field.
QWidget *FieldPanel::addFrame(int index, const FieldSpec &first)
{
    QWidget *page = m_pages[index]->parentWidget();
    auto *around = first.group.isEmpty() ? new QWidget(page) : new QGroupBox(first.group, page);
    for (const LineGridSpec &grid : m_spec.lines.grids)
        if (grid.page == index && grid.above == first.name) {
            m_places[grid.name] = new QVBoxLayout;
            m_pages[index]->addLayout(m_places[grid.name], 1);
        }
    if (first.starts != FrameStart::Beside) {
        m_band = new QHBoxLayout;
        m_pages[index]->addLayout(m_band);
    } else // as high as that
        around->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Ignored);
    m_band->addWidget(around, 1);
    return around;
}

// Fields in rows of label-and-field pairs; fields of a group in a frame of their own below.
void FieldPanel::addPage(int index)
{
    auto *page = new QWidget(this);
    auto *column = new QVBoxLayout(page);
    m_pages.append(column);
    column->setContentsMargins(0, 0, 0, 0);
    QGridLayout *grid = nullptr;
    QHBoxLayout *cell = nullptr; // of the field before
    QString group;
    int row = 0, pair = 0, pairs = 0;
    bool hasLongText = false;
    for (const FieldSpec &field : m_spec.pages[index].fields) {
        QWidget *frame = addField(field, page, index);
        if (field.hidden) {
            frame->hide();
            continue;
        }
        if (field.joined && cell) {
            if (!field.caption.isEmpty())
                cell->addWidget(new QLabel(field.caption, page));
            addTo(cell, field, frame);
            continue;
        }
        const bool isCheck = field.type.kind == FieldKind::Check, isLong = field.type.kind == FieldKind::LongText;
        const bool belowLines = std::any_of(m_spec.lines.grids.cbegin(), m_spec.lines.grids.cend(),
                                            [&](const LineGridSpec &lines) { return lines.above == field.name; });
        if (!grid || field.group != group || field.starts != FrameStart::WithGroup || belowLines) {
            group = field.group;
            grid = new QGridLayout(addFrame(index, field));
            row = pair = 0;
            if (!group.isEmpty() || column->count() > 1)
                grid->setContentsMargins(10, 4, 10, 4); // many groups have to fit a small screen
            pairs = isCheck ? checksInRow : m_spec.pairsInRow;
            for (int i = 0; i < pairs; ++i)
                grid->setColumnStretch(i * 2 + 1, 1);
        }
        if (pair + field.span > pairs) {
            ++row;
            pair = 0;
        }
        cell = new QHBoxLayout;
        addTo(cell, field, frame);
        if (isCheck || field.caption.isEmpty()) {
            grid->addLayout(cell, row, pair * 2, 1, field.span * 2);
        } else {
            auto *label = new QLabel(field.caption, page);
            label->setBuddy(control(field.name).widget());
            for (const RequiredField &required : m_spec.required)
                if (required.name == field.name) {
                    label->setProperty("required", true);
                    label->buddy()->setAccessibleDescription(QStringLiteral("必填"));
                }
            grid->addWidget(label, row, pair * 2, Qt::AlignRight | Qt::AlignVCenter);
            // A field of one line lets its row be as high as a long text beside it.
            grid->addLayout(cell, row, pair * 2 + 1, 1, field.span * 2 - 1,
                            isLong ? Qt::Alignment() : Qt::AlignVCenter);
        }
        if (isLong) {
            grid->setRowStretch(row, 1); // long texts take what height is left
            hasLongText = true;
        }
        pair += field.span;
    }
    const bool hasLines = std::any_of(m_spec.lines.grids.cbegin(), m_spec.lines.grids.cend(),
                                      [index](const LineGridSpec &lines) { return lines.page == index; });
    if (!hasLongText && !hasLines)
        column->addStretch(1);
}

void FieldPanel::addTo(QBoxLayout *cell, const FieldSpec &field, QWidget *frame)
{
    cell->addWidget(frame, 1);
    if (!field.unit.isEmpty())
        cell->addWidget(new QLabel(field.unit, frame->parentWidget()));
}

QWidget *FieldPanel::addField(const FieldSpec &field, QWidget *page, int index)
{
    auto control = FieldControl::make(field, m_spec.picture, page, [this, &field](const QVariant &value) {
        if (m_showing)
            return;
        Q_EMIT aboutToType(field.name);
        write(field, value, &field);
    });
    QWidget *widget = control->widget(), *frame = control->frame();
    widget->setMinimumWidth(widget->fontMetrics().averageCharWidth() * narrowestField);
    QString name = plainCaption(field.caption);
    if (name.isEmpty() && field.joined && !m_order.isEmpty())
        name = m_order.last()->control->widget()->accessibleName();
    if (name.isEmpty() && widget->accessibleName().isEmpty())
        name = m_spec.pages[index].caption;
    if (!name.isEmpty())
        widget->setAccessibleName(name);
    widget->installEventFilter(this);
    if (ComboField *combo = control->combo()) {
        combo->lineEdit()->installEventFilter(this);
        combo->lineEdit()->setAccessibleName(combo->accessibleName());
        if (m_spec.disablesCombos) { // what they hold is read all the same
            QPalette readable = combo->palette();
            readable.setColor(QPalette::Disabled, QPalette::Text, readable.color(QPalette::Active, QPalette::Text));
            combo->setPalette(readable);
        }
        connect(combo, &ComboField::chosen, this, [this, &field] { Q_EMIT chosen(field.name); });
        connect(combo, &ComboField::enterPressed, this, [this] { goOn(); });
    }
    const auto at = m_fields.emplace(field.name, Entry{&field, index, std::move(control)});
    m_order.append(&at.first->second);
    return frame;
}

const FieldSpec &FieldPanel::field(const QString &name) const
{
    const auto found = m_fields.find(name);
    if (found == m_fields.end())
        throw std::logic_error("the form " + m_spec.name.toStdString() + " has no field " + name.toStdString());
    return *found->second.spec;
}

FieldControl &FieldPanel::control(const QString &name) const
{
    field(name);
    return *m_fields.find(name)->second.control;
}

void FieldPanel::setText(const QString &name, const QString &text)
{
    const FieldSpec &spec = field(name);
    if (spec.column.isEmpty())
        control(name).setText(text);
    else
        write(spec, text, nullptr);
}

void FieldPanel::focus(const QString &name)
{
    FieldControl &wanted = control(name);
    if (m_tabs)
        m_tabs->setCurrentIndex(m_fields.find(name)->second.page);
    wanted.widget()->setFocus(Qt::TabFocusReason);
    wanted.selectAll();
}

void FieldPanel::takeTyped()
{
    for (const Entry *entry : std::as_const(m_order))
        if (ComboField *combo = entry->control->combo(); combo && combo->hasFocus() && !combo->isReadOnly())
            combo->takeTyped();
}

void FieldPanel::lock(bool locked)
{
    for (const Entry *entry : std::as_const(m_order)) {
        entry->control->setLocked(locked);
        if (m_spec.disablesCombos && entry->control->combo())
            entry->control->widget()->setEnabled(!locked);
    }
}

void FieldPanel::offer(const QString &combo, const QStringList &items)
{
    const QScopedValueRollback showing(m_showing, true);
    ComboField &box = *control(combo).combo();
    const QString text = box.currentText();
    box.clear();
    box.addItems(items);
    box.showText(text);
}

QString FieldPanel::captionOf(const QString &column) const
{
    QString caption; // joined boxes have that of the field before; papers repeat a column, the first caption names it
    for (const Entry *entry : m_order) {
        if (!entry->spec->joined || !entry->spec->caption.isEmpty())
            caption = plainCaption(entry->spec->caption);
        if (entry->spec->column.compare(column, Qt::CaseInsensitive) == 0 && !caption.isEmpty())
            return caption;
    }
    return column;
}

// ---- fields and the record ----

void FieldPanel::showRecord(int column)
{
    for (const Entry *entry : std::as_const(m_order))
        if (!entry->spec->column.isEmpty() && (column < 0 || m_records.columnIndex(entry->spec->column) == column))
            show(*entry->spec);
}

void FieldPanel::show(const FieldSpec &field)
{
    // What is being typed stays as it is typed: "2026-11-2" is a date, and only half of the one that is meant.
    if (m_writing == &field)
        return;
    const QScopedValueRollback showing(m_showing, true);
    const bool hasValue = !m_records.BOF() && !m_records.EOF_() && !m_isUnread;
    const QString text = hasValue ? m_records.Fields(field.column).text() : QString();
    FieldControl &shown = control(field.name);
    // A combo box is told even of the same text: what it held before is no choice of this record's.
    if (text != shown.text() || shown.combo())
        shown.setText(text);
}

void FieldPanel::write(const FieldSpec &field, const QVariant &value, const FieldSpec *typedInto)
{
    if (!field.column.isEmpty()) {
        if (m_records.BOF() || m_records.EOF_())
            return;
        const QScopedValueRollback writing(m_writing, typedInto);
        m_records.Fields(field.column).setValue(value);
    }
    Q_EMIT typed(field.name);
}

// ---- the keyboard ----

// To the next field; buttons beside a field are Tab's, for Enter there would act.
void FieldPanel::goOn()
{
    focusNextChild();
    for (int buttons = 0; buttons < 2 && isAncestorOf(QApplication::focusWidget()); ++buttons)
        if (qobject_cast<QPushButton *>(QApplication::focusWidget()))
            focusNextChild();
}

bool FieldPanel::key(const QString &name, QWidget *widget, int key)
{
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        // While the list of what fits is open, the focus would move without a word to the field that is left.
        if (ComboField *combo = control(name).combo())
            combo->completer()->popup()->hide();
        goOn();
        return true;
    }
    // A long text keeps the arrows until its first or last line.
    const auto *text = qobject_cast<QPlainTextEdit *>(widget);
    if (text && !text->textCursor().atStart() && key == Qt::Key_Up)
        return false;
    if (text && !text->textCursor().atEnd() && key == Qt::Key_Down)
        return false;
    if (control(name).combo())
        return key == Qt::Key_Up; // down opens its list
    if (!name.contains(u'('))
        return false;
    const QString array = arrayOf(name);
    std::map<int, QString> elements; // of the array that are to be seen here
    for (const Entry *entry : std::as_const(m_order))
        if (!entry->spec->hidden && arrayOf(entry->spec->name) == array)
            elements.emplace(indexOf(entry->spec->name), entry->spec->name);
    const auto at = elements.find(indexOf(name));
    const bool isDown = key == Qt::Key_Down;
    const bool isEnd = isDown ? std::next(at) == elements.end() : at == elements.begin();
    if (!isEnd)
        focus((isDown ? std::next(at) : std::prev(at))->second);
    else if (m_spec.arrowsWrap)
        focus(isDown ? elements.begin()->second : elements.rbegin()->second);
    return true;
}

bool FieldPanel::eventFilter(QObject *watched, QEvent *event)
{
    QString name = watched->objectName();
    if (!m_fields.contains(name) && watched->parent()) // the line of a combo box
        name = watched->parent()->objectName();
    const auto entry = m_fields.find(name);
    if (entry == m_fields.end())
        return QWidget::eventFilter(watched, event);
    QWidget *widget = entry->second.control->widget();
    if (event->type() == QEvent::InputMethod)
        m_composing = !static_cast<QInputMethodEvent *>(event)->preeditString().isEmpty();
    if (event->type() == QEvent::KeyPress && !m_composing) {
        const auto *pressed = static_cast<QKeyEvent *>(event);
        const FieldControl &control = *entry->second.control;
        if (pressed->matches(QKeySequence::Undo) && (!control.canUndo() || control.text() == m_textEntered)) {
            Q_EMIT undoPressed();
            return true;
        }
        const bool plain = pressed->modifiers() == Qt::NoModifier || pressed->modifiers() == Qt::KeypadModifier;
        const bool ours = pressed->key() == Qt::Key_Return || pressed->key() == Qt::Key_Enter ||
                          pressed->key() == Qt::Key_Up || pressed->key() == Qt::Key_Down;
        if (plain && ours && key(name, widget, pressed->key()))
            return true;
    }
    if (event->type() == QEvent::FocusIn) {
        m_textEntered = text(name);
        Q_EMIT entered(name);
    }
    if (event->type() == QEvent::FocusOut) {
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason) {
            if (ComboField *combo = entry->second.control->combo(); combo && !combo->isReadOnly())
                combo->takeTyped();
            // After the focus has moved on; a message from inside the event would take the new focus with it.
            QMetaObject::invokeMethod(
                this, [this, name] { Q_EMIT left(name); }, Qt::QueuedConnection);
        }
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace tradewick
