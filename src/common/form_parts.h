// What entry forms and query screens build alike: their buttons, the boxes beside these, and what their record is
// scrolled in.
#pragma once

#include "common/record_form_spec.h"

#include <memory>

class QLayout;
class QPushButton;
class QScrollArea;

namespace tradewick
{

class ComboField;

// What a window shows, which goes before its record sets where the window declares it behind them.
std::unique_ptr<QWidget> contentOf(QWidget &window);

// A button at the end of the layout, which Enter presses as the space bar does. Its key works in the whole of the form.
//   name: of the control.
QPushButton *addButton(QLayout &layout, const QString &name, const QString &caption, const QString &shortcut,
                       QWidget &form);

// A box with its label, empty, at the end of the layout.
//   goOn: takes the focus to what acts upon it, behind Enter.
ComboField *addChoice(QLayout &layout, const ChoiceSpec &choice, const std::function<void()> &goOn);

// A page of fields that moves up and down with the field that is entered.
QScrollArea *scrolled(QWidget *page, QWidget *parent);

} // namespace tradewick
