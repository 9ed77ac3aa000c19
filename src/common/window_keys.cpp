#include "common/window_keys.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QHeaderView>
#include <QKeyEvent>
#include <QRegularExpression>
#include <QScreen>
#include <QShortcut>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace tradewick
{

namespace
{

constexpr const char *clicks = "clicks"; // property of a shortcut: the button

QString written(const QList<QKeySequence> &keys)
{
    QStringList texts;
    for (const QKeySequence &one : keys) // the keyboard has two keys of that name
        texts.append(one.toString().replace(QStringLiteral("Return"), QStringLiteral("Enter")));
    texts.removeDuplicates();
    return texts.join(QStringLiteral(" / "));
}

bool canBeReached(const QWidget *widget)
{
    return widget && widget->isVisible() && widget->isEnabled();
}

bool works(const QShortcut &shortcut)
{
    const QVariant button = shortcut.property(clicks);
    return shortcut.isEnabled() && !shortcut.whatsThis().isEmpty() &&
           canBeReached(qobject_cast<const QWidget *>(shortcut.parent())) &&
           (!button.isValid() || canBeReached(button.value<QWidget *>()));
}

bool works(const QAction &action, const QWidget &window)
{
    const QList<QObject *> places = action.associatedObjects();
    return action.isEnabled() && action.isVisible() && !action.shortcuts().isEmpty() &&
           std::any_of(places.cbegin(), places.cend(), [&window](const QObject *place) {
               const auto *widget = qobject_cast<const QWidget *>(place);
               return canBeReached(widget) && widget->window() == &window;
           });
}

QVector<KeyText> keysOfAll(const QWidget &window)
{
    QVector<KeyText> keys;
    const auto addShortcuts = [&keys](const QWidget &of, bool everywhere) {
        for (const auto *shortcut : of.findChildren<QShortcut *>()) {
            const bool isEverywhere = shortcut->context() == Qt::ApplicationShortcut;
            if (isEverywhere == everywhere && (everywhere || shortcut->parent()->isWidgetType()) && works(*shortcut) &&
                static_cast<QWidget *>(shortcut->parent())->window() == &of)
                keys.append({written(shortcut->keys()), shortcut->whatsThis()});
        }
    };
    addShortcuts(window, false);
    for (const auto *action : window.findChildren<QAction *>())
        if (works(*action, window))
            keys.append({written(action->shortcuts()), action->text()});
    for (const auto *button : window.findChildren<QAbstractButton *>()) // 是(&Y)
        if (!button->shortcut().isEmpty() && canBeReached(button) && button->window() == &window)
            keys.append({written({button->shortcut()}),
                         button->text().remove(QRegularExpression(QStringLiteral("\\(&.\\)"))).remove(u'&')});
    if (!QApplication::activeModalWidget()) // over which nothing else hears a key
        for (const QWidget *any : QApplication::topLevelWidgets())
            addShortcuts(*any, true);
    keys.append({QStringLiteral("F1"), QStringLiteral("显示本窗口的按键")});
    return keys;
}

class KeyWindow : public QDialog
{
public:
    explicit KeyWindow(QWidget *of) : QDialog(of)
    {
        setObjectName(QStringLiteral("keys"));
        setWindowTitle(QStringLiteral("按键 - ") + of->windowTitle());
        setAttribute(Qt::WA_DeleteOnClose);
        auto *list = new QTreeWidget(this);
        list->setObjectName(QStringLiteral("keyList"));
        list->setAccessibleName(windowTitle());
        list->setHeaderLabels({QStringLiteral("按键"), QStringLiteral("作用")});
        list->setRootIsDecorated(false);
        list->setItemsExpandable(false);
        list->setUniformRowHeights(true);
        for (const KeyGroup &group : keysOf(*of)) {
            auto *head = new QTreeWidgetItem(list, {group.caption.isEmpty() ? of->windowTitle() : group.caption});
            QFont bold = head->font(0);
            bold.setBold(true);
            head->setFont(0, bold);
            head->setFirstColumnSpanned(true);
            for (const KeyText &key : group.keys)
                new QTreeWidgetItem(head, {key.keys, key.does});
        }
        list->expandAll();
        list->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
        list->setCurrentItem(list->topLevelItem(0));
        auto *layout = new QVBoxLayout(this);
        layout->setContentsMargins({});
        layout->addWidget(list);
        int rows = 3;
        for (int i = 0; i < list->topLevelItemCount(); ++i)
            rows += 1 + list->topLevelItem(i)->childCount();
        const int row = list->sizeHintForRow(0);
        setFixedSize(QSize(row * 24, row * rows + 2 * list->frameWidth()).boundedTo(screen()->availableSize() * 3 / 4));
    }

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
            close();
        else
            QDialog::keyPressEvent(event);
    }
};

} // namespace

void addKeys(QWidget *window, const QString &keys, QAbstractButton *button)
{
    if (keys.isEmpty())
        return;
    QShortcut *shortcut = addKeys(window, {QKeySequence(keys)}, button->text());
    shortcut->setProperty(clicks, QVariant::fromValue<QWidget *>(button));
    button->setToolTip(keys);
    // Not the button's own shortcut, which clicks a moment later: the next key would come before the click.
    QObject::connect(shortcut, &QShortcut::activated, button, &QAbstractButton::click);
}

QShortcut *addKeys(QWidget *window, const QList<QKeySequence> &keys, const QString &does)
{
    auto *shortcut = new QShortcut(window);
    shortcut->setKeys(keys);
    shortcut->setWhatsThis(does);
    return shortcut;
}

QVector<KeyGroup> keysOf(const QWidget &window)
{
    QVector<KeyGroup> groups{{{}, keysOfAll(window)}};
    for (const QWidget *part : window.findChildren<QWidget *>()) {
        const auto *takes = dynamic_cast<const TakesKeys *>(part);
        if (!takes || !canBeReached(part) || part->window() != &window)
            continue;
        const QVector<KeyText> keys = takes->keys();
        const auto same = std::find_if(groups.begin(), groups.end(), [&](const auto &one) { return one.keys == keys; });
        if (same != groups.end() && !same->caption.split(u'、').contains(part->accessibleName()))
            same->caption += u'、' + part->accessibleName();
        else if (same == groups.end() && !keys.isEmpty())
            groups.append({part->accessibleName(), keys});
    }
    return groups;
}

KeyHelp::KeyHelp(QApplication &application) : QObject(&application)
{
    application.installEventFilter(this);
}

bool KeyHelp::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
        return false;
    const auto *pressed = static_cast<QKeyEvent *>(event);
    if (pressed->key() != Qt::Key_F1 || pressed->modifiers() != Qt::NoModifier)
        return false;
    QWidget *window = static_cast<QWidget *>(watched)->window();
    while (window->windowType() == Qt::Popup && window->parentWidget()) { // which keeps the keyboard to itself
        window->close();
        window = window->parentWidget()->window();
    }
    if (auto *shown = dynamic_cast<KeyWindow *>(window)) {
        shown->close();
        return true;
    }
    auto *keys = new KeyWindow(window);
    keys->setWindowModality(Qt::WindowModal);
    keys->show();
    return true;
}

} // namespace tradewick
