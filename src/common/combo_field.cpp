#include "common/combo_field.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QStyleOptionFrame>
#include <QStyledItemDelegate>
#include <QWheelEvent>

namespace tradewick
{

namespace
{

// Its ground shows that it is locked; a palette of its own would have to be made and handed on at each change.
class ComboLine : public QLineEdit
{
public:
    using QLineEdit::QLineEdit;

protected:
    void initStyleOption(QStyleOptionFrame *option) const override
    {
        QLineEdit::initStyleOption(option);
        if (!isReadOnly())
            return;
        if (const QPalette own = palette(); own.cacheKey() != m_madeOf) {
            m_locked = own;
            m_locked.setColor(QPalette::Base, own.color(QPalette::Window));
            m_madeOf = own.cacheKey();
        }
        option->palette = m_locked;
    }

private:
    mutable QPalette m_locked;
    mutable qint64 m_madeOf = 0;
};

constexpr int besideRole = Qt::UserRole + 1; // of an item: its text and what stands beside it

class BesideDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (const QVariant text = index.data(besideRole); text.isValid())
            option->text = text.toString();
    }
};

// Searches in what is shown, and gives the item.
class BesideCompleter : public QCompleter
{
public:
    using QCompleter::QCompleter;
    QString pathFromIndex(const QModelIndex &index) const override { return index.data().toString(); }
};

} // namespace

ComboField::ComboField(QWidget *parent) : QComboBox(parent)
{
    setLineEdit(new ComboLine(this));
    setInsertPolicy(NoInsert);
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(8);
    setCompleter(new BesideCompleter(model(), this));
    completer()->setCompletionMode(QCompleter::PopupCompletion);
    completer()->setFilterMode(Qt::MatchContains);
    completer()->setCaseSensitivity(Qt::CaseInsensitive);
    completer()->popup()->installEventFilter(this);
    // Qt says "activated" of a text that merely stood there, too, when the box is left.
    connect(this, &QComboBox::activated, this, [this](int item) {
        if (m_listCloses)
            choose(item);
    });
    // Who empties the box and types the same text again has typed it in full.
    connect(lineEdit(), &QLineEdit::textEdited, this, [this](const QString &text) {
        if (text.isEmpty())
            forgetChoice();
    });
    connect(completer(), qOverload<const QString &>(&QCompleter::activated), this,
            [this](const QString &text) { choose(findText(text, Qt::MatchFixedString | Qt::MatchCaseSensitive)); });
}

void ComboField::showText(const QString &text)
{
    m_shown = text;
    m_forgotten = false;
    if (currentIndex() >= 0)
        setCurrentIndex(-1);
    setEditText(text);
    lineEdit()->setCursorPosition(0);
}

void ComboField::choose(int item)
{
    if (item < 0 || m_readOnly)
        return;
    setCurrentIndex(item);
    if (currentText() != itemText(item)) // typed over an item that is the current one
        setEditText(itemText(item));
    m_shown = currentText();
    m_forgotten = false;
    Q_EMIT chosen();
}

void ComboField::takeTyped()
{
    if (isTyped())
        choose(findText(currentText(), Qt::MatchFixedString));
}

void ComboField::setBeside(const QHash<QString, QString> &names)
{
    if (m_beside.isEmpty()) {
        connect(model(), &QAbstractItemModel::rowsInserted, this, &ComboField::showBeside);
        completer()->setCompletionRole(besideRole);
        for (QAbstractItemView *list : {view(), completer()->popup()})
            list->setItemDelegate(new BesideDelegate(list));
    }
    m_beside = names;
    showBeside();
}

void ComboField::showBeside()
{
    QFontMetrics metrics = fontMetrics();
    int width = 0;
    for (int item = 0; item < count(); ++item) {
        const QString name = m_beside.value(itemText(item));
        const QString text = name.isEmpty() ? itemText(item) : itemText(item) + QStringLiteral("　") + name;
        setItemData(item, text, besideRole);
        width = qMax(width, metrics.horizontalAdvance(text));
    }
    const int margin = 4 * metrics.averageCharWidth() + view()->verticalScrollBar()->sizeHint().width();
    for (QAbstractItemView *list : {view(), completer()->popup()})
        list->setMinimumWidth(width + margin);
}

int onlyItemBeginningWith(const QAbstractItemModel &items, const QString &text)
{
    const auto textOf = [&](int row) { return items.index(row, 0).data().toString(); };
    int only = -1;
    const auto besideOf = [&](int row) {
        return items.index(row, 0).data(besideRole).toString().mid(textOf(row).size() + 1);
    };
    for (int row = 0; !text.isEmpty() && row < items.rowCount(); ++row) {
        if (!textOf(row).startsWith(text, Qt::CaseInsensitive) && !besideOf(row).startsWith(text, Qt::CaseInsensitive))
            continue;
        if (only >= 0 && textOf(row) != textOf(only))
            return -1;
        only = row;
    }
    return only;
}

void ComboField::setReadOnly(bool readOnly)
{
    m_readOnly = readOnly;
    lineEdit()->setReadOnly(readOnly);
    if (readOnly)
        completer()->popup()->hide();
    update();
}

// The list of what fits stays open when a key of the form saves or begins an Edit, and would go on writing the text.
void ComboField::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::EnabledChange && !isEnabled() && completer())
        completer()->popup()->hide();
    QComboBox::changeEvent(event);
}

void ComboField::showPopup()
{
    if (m_readOnly)
        return;
    view()->installEventFilter(this);
    QComboBox::showPopup();
}

void ComboField::hidePopup()
{
    m_listCloses = true;
    QMetaObject::invokeMethod(
        this, [this] { m_listCloses = false; }, Qt::QueuedConnection);
    QComboBox::hidePopup();
}

// Enter in a list takes what is highlighted there, once, and goes on. In the list of what fits the text typed, where
// nothing is highlighted, it takes the one item that begins so, unless the box is told to leave such a text.
bool ComboField::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        auto *list = qobject_cast<QAbstractItemView *>(watched);
        if (list && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
            QMetaObject::invokeMethod(this, &ComboField::enterPressed, Qt::QueuedConnection); // once the list is closed
            if (completer() && list == completer()->popup() && !list->currentIndex().isValid()) {
                const int exact = findText(currentText(), Qt::MatchFixedString);
                const int item = exact >= 0 || !m_completes ? exact : onlyItemBeginningWith(*model(), currentText());
                list->hide();
                if (item >= 0 && isTyped())
                    choose(item);
                return true;
            }
        }
    }
    return QComboBox::eventFilter(watched, event);
}

void ComboField::keyPressEvent(QKeyEvent *event)
{
    const bool changes = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down || event->key() == Qt::Key_PageUp ||
                         event->key() == Qt::Key_PageDown;
    if (m_readOnly && changes)
        return;
    // Stepping through the items would change the value unseen, and pass over the first one.
    if (event->key() == Qt::Key_Down && !(event->modifiers() & ~Qt::KeypadModifier))
        showPopup();
    else
        QComboBox::keyPressEvent(event);
}

// A locked field has no list to open, and its arrow and its ground say so.
void ComboField::initStyleOption(QStyleOptionComboBox *option) const
{
    QComboBox::initStyleOption(option);
    if (!m_readOnly)
        return;
    option->state &= ~QStyle::State_Enabled;
    option->palette.setCurrentColorGroup(QPalette::Disabled);
    option->palette.setColor(QPalette::Base, palette().color(QPalette::Window));
}

// The wheel scrolls the form; a value must not change because the pointer passed.
void ComboField::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

} // namespace tradewick
