// Edits of a record form that are taken back, one by one.
#include "common/edit_steps.h"
#include "common/field_panel.h"
#include "common/record_form.h"
#include "common/window_keys.h"

#include <QShortcut>

namespace tradewick
{

void RecordForm::followEdits()
{
    m_steps = std::make_unique<EditSteps>(records(), m_lines.get());
    connect(m_panel, &FieldPanel::aboutToType, this, [this](const QString &name) { beginEdit({name}); });
    connect(m_panel, &FieldPanel::undoPressed, this, &RecordForm::takeBack);
    m_undo = addKeys(this, {QKeySequence(QStringLiteral("Ctrl+Z"))}, QStringLiteral("撤回上一次修改"));
    connect(m_undo, &QShortcut::activated, this, &RecordForm::takeBack);
    connect(&records(), &Recordset::currentChanged, this, [this] { m_steps->forget(); });
}

void RecordForm::beginEdit(const EditPlace &place)
{
    if (m_busy && hasRecord())
        m_steps->begin(place);
}

// What a button fills in is one edit; one that acts upon the record as it is stored asks for that first.
void RecordForm::press(const ButtonSpec &button)
{
    if (!isBusy() && button.ofStored && tellUnstored())
        return;
    beginEdit({});
    button.press(*this);
}

void RecordForm::takeBack()
{
    if (!m_busy)
        return;
    if (m_lines)
        m_lines->hideLookup();
    const auto place = m_steps->takeBack();
    if (!place)
        return;
    if (!place->field.isEmpty())
        focusField(place->field);
    else if (place->grid >= 0)
        m_lines->goTo(*place);
}

} // namespace tradewick
