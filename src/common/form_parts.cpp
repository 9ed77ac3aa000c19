#include "common/form_parts.h"

#include "common/combo_field.h"
#include "common/field_panel.h"
#include "common/window_keys.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace tradewick
{

std::unique_ptr<QWidget> contentOf(QWidget &window)
{
    auto content = std::make_unique<QWidget>(&window);
    auto *whole = new QVBoxLayout(&window);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(content.get());
    return content;
}

QPushButton *addButton(QLayout &layout, const QString &name, const QString &caption, const QString &shortcut,
                       QWidget &form)
{
    auto *push = new QPushButton(caption, layout.parentWidget());
    push->setObjectName(name);
    push->setAccessibleName(caption);
    addKeys(&form, shortcut, push); // that a text field does not take for itself, in any of its states
    push->setAutoDefault(true);     // Enter presses it as the space bar does
    layout.addWidget(push);
    return push;
}

ComboField *addChoice(QLayout &layout, const ChoiceSpec &choice, const std::function<void()> &goOn)
{
    auto *combo = new ComboField(layout.parentWidget());
    combo->setObjectName(choice.name);
    combo->setAccessibleName(plainCaption(choice.caption));
    combo->lineEdit()->setAccessibleName(combo->accessibleName());
    combo->addItems(choice.items);
    combo->setSizeAdjustPolicy(QComboBox::AdjustToContents); // its texts are names, which must be whole
    combo->showText({});
    auto *label = new QLabel(choice.caption, layout.parentWidget());
    label->setBuddy(combo);
    layout.addWidget(label);
    layout.addWidget(combo);
    QObject::connect(combo, &ComboField::enterPressed, combo, goOn);
    QObject::connect(combo->lineEdit(), &QLineEdit::returnPressed, combo, goOn);
    return combo;
}

QScrollArea *scrolled(QWidget *page, QWidget *parent)
{
    auto *scroll = new QScrollArea(parent);
    scroll->setWidget(page);
    scroll->setWidgetResizable(true);
    scroll->setFocusPolicy(Qt::NoFocus); // it follows the fields; a stop on it would show nowhere
    scroll->setFrameShape(QFrame::NoFrame);
    return scroll;
}

} // namespace tradewick
