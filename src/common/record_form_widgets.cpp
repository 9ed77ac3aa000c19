// How a record form is laid out from its declaration; what it does stands in record_form.cpp.
#include "common/combo_field.h"
#include "common/flow_layout.h"
#include "common/record_form.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QCompleter>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QSplitter>
#include <QStyle>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace tradewick
{

namespace
{

constexpr int linesOfLongText = 2;
constexpr int checksInRow = 4;
constexpr int narrowestField = 12; // characters that a field shows on the smallest screen

QString withoutColon(QString caption)
{
    while (caption.endsWith(u':') || caption.endsWith(u'：') || caption.endsWith(u' '))
        caption.chop(1);
    return caption.startsWith(u'*') ? caption.mid(1) : caption;
}

// Scrolls the form along with the cell of a grid that has the focus, however the focus came there.
void keepInSight(const Grid *grid, QWidget *form)
{
    const auto follow = [grid, form] {
        if (!grid->hasFocus() && !grid->isAncestorOf(QApplication::focusWidget()))
            return;
        auto *scroll = form->findChild<QScrollArea *>();
        const QRect cell = grid->visualRect(grid->currentIndex());
        const QPoint at = grid->viewport()->mapTo(scroll->widget(), cell.center());
        scroll->ensureVisible(at.x(), at.y(), cell.width() / 2, cell.height());
    };
    QObject::connect(grid->selectionModel(), &QItemSelectionModel::currentChanged, grid, follow, Qt::QueuedConnection);
    QObject::connect(qApp, &QApplication::focusChanged, grid, follow);
}

} // namespace

void RecordForm::build()
{
    auto *outer = new QVBoxLayout(this);
    auto *splitter = new QSplitter(Qt::Horizontal, this);
    auto *left = new QWidget(splitter);
    auto *leftLayout = new QVBoxLayout(left);
    leftLayout->setContentsMargins(0, 0, 0, 0);
    if (m_spec.dateFilterStatement)
        buildDateFilter(leftLayout);
    if (m_spec.filter.statement)
        buildFilter(leftLayout);
    if (!m_spec.tree.branches.empty())
        buildTree(leftLayout);
    m_list = new Grid("TDBGrid3", QStringLiteral("记录列表"), left);
    m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_list->showRecords(records(), m_spec.list);
    m_list->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents); // keys are never cut
    m_list->horizontalHeader()->setStretchLastSection(true);                            // names have what room there is
    leftLayout->addWidget(m_list, 1);
    m_ways.append(m_list);

    auto *scroll = new QScrollArea(splitter);
    auto *content = new QWidget;
    auto *layout = new QVBoxLayout(content);
    if (m_spec.pages.isEmpty()) {
        layout->addWidget(buildPage(0));
    } else {
        m_tabs = new QTabWidget(content);
        m_tabs->setObjectName("SSTab1");
        m_tabs->setAccessibleName(m_spec.caption);
        m_tabs->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum); // the lines take what is left
        for (int page = 0; page < m_spec.pages.size(); ++page) {
            m_tabs->addTab(buildPage(page), m_spec.pages[page]);
            m_tabs->setTabToolTip(page, QStringLiteral("Alt+%1").arg(page + 1));
            auto *shortcut = new QShortcut(QKeySequence(QStringLiteral("Alt+%1").arg(page + 1)), this);
            // The keys typed next belong to the tab that is shown.
            connect(shortcut, &QShortcut::activated, this, [this, page] {
                const auto first = std::find_if(m_spec.fields.cbegin(), m_spec.fields.cend(),
                                                [page](const FieldSpec &field) { return field.page == page; });
                focusField(first->name);
            });
        }
        layout->addWidget(m_tabs);
    }
    for (const QString &note : std::as_const(m_spec.notes)) {
        auto *label = new QLabel(note, content);
        label->setProperty("note", true);
        label->setWordWrap(true);
        layout->addWidget(label);
    }
    if (m_spec.body.statement)
        buildBody(layout);
    else
        layout->addStretch(1);
    scroll->setWidget(content);
    scroll->setWidgetResizable(true);
    scroll->setFocusPolicy(Qt::NoFocus); // it follows the fields; a stop on it would show nowhere
    scroll->setFrameShape(QFrame::NoFrame);
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 3);
    splitter->setChildrenCollapsible(false);
    outer->addWidget(splitter, 1);
    outer->addWidget(buildButtons());
}

// Fields in rows of label-and-field pairs; fields of a group in a frame of their own below.
QWidget *RecordForm::buildPage(int page)
{
    auto *widget = new QWidget(this);
    auto *column = new QVBoxLayout(widget);
    column->setContentsMargins(0, 0, 0, 0);
    QGridLayout *grid = nullptr;
    QString group;
    int row = 0, pair = 0, pairs = 0;
    bool hasLongText = false;
    for (const FieldSpec &field : std::as_const(m_spec.fields)) {
        if (field.page != page)
            continue;
        if (!grid || field.group != group) {
            group = field.group;
            auto *frame = group.isEmpty() ? new QWidget(widget) : new QGroupBox(group, widget);
            column->addWidget(frame);
            grid = new QGridLayout(frame);
            row = pair = 0;
            if (!group.isEmpty())
                grid->setContentsMargins(10, 4, 10, 4); // many groups have to fit a small screen
            pairs = field.kind == FieldKind::Check ? checksInRow : m_spec.pairsInRow;
            for (int i = 0; i < pairs; ++i)
                grid->setColumnStretch(i * 2 + 1, 1);
        }
        if (pair + field.span > pairs) {
            ++row;
            pair = 0;
        }
        QWidget *control = buildField(field);
        if (field.kind == FieldKind::Check || field.caption.isEmpty()) {
            grid->addWidget(control, row, pair * 2, 1, field.span * 2);
        } else {
            auto *label = new QLabel(field.caption, widget);
            label->setBuddy(control);
            grid->addWidget(label, row, pair * 2, Qt::AlignRight | Qt::AlignVCenter);
            // A field of one line lets its row be as high as a long text beside it.
            const auto align = field.kind == FieldKind::LongText ? Qt::Alignment() : Qt::AlignVCenter;
            grid->addWidget(control, row, pair * 2 + 1, 1, field.span * 2 - 1, align);
        }
        if (field.kind == FieldKind::LongText) {
            grid->setRowStretch(row, 1); // long texts take what height is left
            hasLongText = true;
        }
        pair += field.span;
    }
    if (!hasLongText)
        column->addStretch(1);
    return widget;
}

QWidget *RecordForm::buildField(const FieldSpec &field)
{
    QWidget *widget = nullptr, *frame = nullptr;
    switch (field.kind) {
    case FieldKind::Picture: {
        auto *picture = new PictureField(m_spec.picture, this);
        widget = picture->path();
        frame = picture;
        break;
    }
    case FieldKind::Combo:
        widget = new ComboField(this);
        break;
    case FieldKind::Check:
        widget = new QCheckBox(field.caption, this);
        break;
    case FieldKind::LongText: {
        auto *text = new QPlainTextEdit(this);
        text->setTabChangesFocus(true);
        text->setToolTip(QStringLiteral("Shift+Enter 换行"));
        text->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
        text->setMinimumHeight(text->fontMetrics().lineSpacing() * linesOfLongText + 12);
        widget = text;
        break;
    }
    default:
        widget = new QLineEdit(this);
    }
    widget->setObjectName(field.name);
    widget->setMinimumWidth(widget->fontMetrics().averageCharWidth() * narrowestField);
    const QString name = withoutColon(field.caption);
    if (!name.isEmpty() || widget->accessibleName().isEmpty())
        widget->setAccessibleName(name.isEmpty() && !m_spec.pages.isEmpty() ? m_spec.pages[field.page] : name);
    widget->setProperty("isDate", field.kind == FieldKind::Date);
    widget->installEventFilter(this);
    m_fields.insert(field.name, widget);
    bindField(field, widget);
    return frame ? frame : widget;
}

void RecordForm::bindField(const FieldSpec &field, QWidget *widget)
{
    if (auto *line = qobject_cast<QLineEdit *>(widget)) {
        connect(line, &QLineEdit::textChanged, this, [this, field](const QString &text) { fieldTyped(field, text); });
    } else if (auto *edit = qobject_cast<QPlainTextEdit *>(widget)) {
        connect(edit, &QPlainTextEdit::textChanged, this,
                [this, field, edit] { fieldTyped(field, edit->toPlainText()); });
    } else if (auto *check = qobject_cast<QCheckBox *>(widget)) {
        connect(check, &QCheckBox::toggled, this, [this, field](bool on) { fieldTyped(field, on); });
    } else if (auto *combo = qobject_cast<QComboBox *>(widget)) {
        combo->lineEdit()->installEventFilter(this);
        combo->completer()->popup()->setProperty("comboField", field.name);
        combo->completer()->popup()->installEventFilter(this);
        combo->lineEdit()->setAccessibleName(combo->accessibleName());
        connect(combo, &QComboBox::editTextChanged, this,
                [this, field](const QString &text) { fieldTyped(field, text); });
        connect(combo, &QComboBox::activated, this, [this, field, combo] {
            if (!isBusy())
                return;
            m_chosen[field.name] = combo->currentText();
            comboChosen(field.name);
        });
    }
}

void RecordForm::buildBody(QBoxLayout *layout)
{
    m_bodyGrid = new Grid("TDBGrid1", QStringLiteral("商品明细"), this);
    m_bodyGrid->showRecords(body(), m_spec.body.columns);
    m_bodyGrid->horizontalHeader()->setStretchLastSection(true);
    m_bodyGrid->setEnterColumns(m_spec.body.enterColumns);
    keepInSight(m_bodyGrid, this);
    m_bodyGrid->setMinimumHeight(m_bodyGrid->verticalHeader()->defaultSectionSize() * 5);
    layout->addWidget(m_bodyGrid, 1);
    connect(m_bodyGrid, &Grid::cellEdited, this,
            [this](int, const QString &column) { run(Failure::Report, {[this, column] { bodyCellEdited(column); }}); });
    connect(m_bodyGrid, &Grid::typed, this, &RecordForm::bodyTyped);
    connect(m_bodyGrid, &Grid::deletePressed, this, &RecordForm::deleteBodyRow);

    for (const DropDownSpec &drop : std::as_const(m_spec.body.dropDowns))
        m_bodyGrid->setDropDown(drop.column, drop.name, [this, drop] {
            QStringList items;
            run(Failure::Report, {[&] {
                    Connection::shared(m_primary.ConnectionString)
                        ->read(
                            QString::fromUtf8(drop.statement), {}, [](const QStringList &) {},
                            [&](const QVariantList &row) {
                                items.append(row.first().toString());
                                return true;
                            });
                }});
            return items;
        });
    if (m_spec.body.picker.isEmpty())
        return;
    m_pickerGrid = new Grid("TDBGrid2", QStringLiteral("商品选择"), this);
    m_pickerGrid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_pickerGrid->showRecords(picker(), m_spec.body.picker);
    keepInSight(m_pickerGrid, this);
    // The rows that fit stand below the lines; on a small screen the lines make room.
    m_pickerGrid->setMinimumHeight(m_pickerGrid->verticalHeader()->defaultSectionSize() * 5);
    m_pickerGrid->setMaximumHeight(m_pickerGrid->verticalHeader()->defaultSectionSize() * 8);
    m_pickerGrid->setFocusPolicy(Qt::ClickFocus); // down goes into it; Tab goes on, and Enter then picks nothing
    m_pickerGrid->installEventFilter(this);
    m_pickerGrid->hide();
    layout->addWidget(m_pickerGrid, 1);
    connect(m_bodyGrid, &Grid::downInEditor, this, [this] {
        if (!m_pickerGrid->isVisible() || picker().RecordCount() == 0)
            return;
        m_bodyGrid->commitEditor();
        m_pickerGrid->show();
        m_pickerGrid->setFocus();
    });
    connect(m_pickerGrid, &Grid::rowActivated, this, [this] {
        if (!isBusy())
            return;
        run(Failure::Report,
            {[this] {
                 if (m_bodyGrid->currentIndex().row() >= body().RecordCount() || body().RecordCount() == 0)
                     startBodyRow();
                 picked();
             },
             [this] {
                 hidePicker();
                 m_bodyGrid->setFocus();
                 m_bodyGrid->editCell(body().absolutePosition(), m_spec.body.enterColumns.value(1));
             }});
    });
}

QPushButton *RecordForm::addButton(QBoxLayout *layout, const ButtonSpec &button, const std::function<void()> &action)
{
    auto *push = new QPushButton(button.caption, this);
    push->setObjectName(button.name);
    push->setAccessibleName(button.caption);
    // Keys that a text field does not take for itself, in any of its states.
    // Not the button's own shortcut, which clicks a moment later: the next key would come before the click.
    connect(new QShortcut(QKeySequence(button.shortcut), this), &QShortcut::activated, push, &QPushButton::click);
    push->setToolTip(button.shortcut);
    push->setAutoDefault(true); // Enter presses it as the space bar does
    connect(push, &QPushButton::clicked, this, action);
    layout->addWidget(push);
    m_buttons.insert(button.name, push);
    return push;
}

QWidget *RecordForm::buildButtons()
{
    auto *bar = new QWidget(this);
    auto *flow = new FlowLayout(bar);
    const auto group = [&] {
        auto *buttons = new QWidget(bar);
        flow->addWidget(buttons);
        auto *row = new QHBoxLayout(buttons);
        row->setContentsMargins(0, 0, 0, 0);
        return row;
    };
    const QStringList &captions = m_spec.captions;
    QBoxLayout *layout = group();
    addButton(layout, {"cmdqd", captions[0], "Alt+Home"}, [this] { first(); });
    addButton(layout, {"cmdxq", captions[1], "Alt+PgUp"}, [this] { previous(); });
    addButton(layout, {"cmdnext", captions[2], "Alt+PgDown"}, [this] { next(); });
    addButton(layout, {"cmdmd", captions[3], "Alt+End"}, [this] { last(); });
    if (!m_spec.find.column.isEmpty())
        m_ways.append(addButton(layout, {"Cmd_find", "查询", "Ctrl+F"}, [this] { find(); }));
    layout = group();
    m_state = new QLabel(bar); // beside what changes it, and never scrolled out of sight
    m_state->setObjectName("state");
    layout->addWidget(m_state);
    addButton(layout, {"Cmdadd", captions[4], "Ctrl+N"}, [this] { add(); });
    addButton(layout, {"Cmddelete", captions[5], "Alt+D"}, [this] { deleteRecord(); });
    addButton(layout, {"Cmdedit", captions[6], "Alt+E"}, [this] { edit(); });
    addButton(layout, {"CmdOK", captions[7], "Ctrl+S"}, [this] { save(); });
    addButton(layout, {"Cmdcancel", captions[8], "Alt+C"}, [this] { cancel(); });
    layout = group();
    for (const ButtonSpec &button : std::as_const(m_spec.actions))
        addButton(layout, button, [this, name = button.name] { action(name); });
    for (const ButtonSpec &button : std::as_const(m_spec.printButtons))
        addButton(layout, button, [this, name = button.name] { print(name); });
    addButton(layout, {"Cmdreturn", captions[9], "Ctrl+W"}, [this] { close(); });
    // Behind the last field comes what ends an Add or Edit, not what would leave the record.
    QWidget *before = m_buttons["CmdOK"];
    for (const char *name :
         {"Cmdcancel", "cmdqd", "cmdxq", "cmdnext", "cmdmd", "Cmd_find", "Cmdadd", "Cmddelete", "Cmdedit"})
        if (QWidget *button = m_buttons.value(name)) {
            setTabOrder(before, button);
            before = button;
        }
    return bar;
}

void RecordForm::setBusy(bool busy, bool adding)
{
    m_busy = busy;
    for (const char *name : {"CmdOK", "Cmdcancel"})
        m_buttons[name]->setEnabled(busy);
    for (const char *name : {"Cmdadd", "Cmdedit", "Cmddelete", "Cmdreturn"})
        m_buttons[name]->setEnabled(!busy);
    for (const char *name : {"cmdqd", "cmdxq", "cmdnext", "cmdmd"})
        m_buttons[name]->setEnabled(!busy || m_spec.navigationWhileBusy);
    for (const ButtonSpec &button : std::as_const(m_spec.printButtons))
        m_buttons[button.name]->setEnabled(!busy);
    for (const ButtonSpec &button : std::as_const(m_spec.actions))
        m_buttons[button.name]->setEnabled(!busy || (adding && button.whileAdding));
    for (QWidget *way : std::as_const(m_ways))
        way->setEnabled(!busy);
    if (m_bodyGrid) {
        if (busy)
            m_bodyGrid->setEditing(true, [this] { startBodyRow(); });
        else
            m_bodyGrid->setEditing(false);
    }
    m_state->setText(!busy ? QStringLiteral("浏览") : adding ? QStringLiteral("新增") : QStringLiteral("编辑"));
    m_state->setProperty("busy", busy);
    m_state->style()->unpolish(m_state);
    m_state->style()->polish(m_state);
}

} // namespace tradewick
