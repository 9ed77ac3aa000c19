#include "common/edit_steps.h"

namespace tradewick
{

void EditSteps::begin(const EditPlace &place)
{
    if (!place.field.isEmpty() && place.field == m_field)
        return;
    m_field = place.field;
    const bool isNoEdit =
        !m_steps.isEmpty() && m_head.isAt(*m_steps.last().head) && (!m_lines || m_lines->isAt(m_steps.last().lines));
    if (isNoEdit) // a cell was only looked at
        m_steps.removeLast();
    m_steps.append({place, m_head.state(), m_lines ? m_lines->state() : LinesState()});
}

void EditSteps::enter(const QString &field)
{
    if (field != m_field)
        m_field.clear();
}

void EditSteps::forget()
{
    m_steps.clear();
    m_field.clear();
}

std::optional<EditPlace> EditSteps::takeBack()
{
    m_field.clear();
    while (!m_steps.isEmpty()) {
        const Step step = m_steps.takeLast();
        // Fields follow the record of themselves, the lines' key does not.
        const bool headDiffers = m_head.goBackTo(*step.head);
        const bool linesDiffer = m_lines && m_lines->goBackTo(step.lines);
        if (headDiffers || linesDiffer)
            return step.place;
    }
    return std::nullopt;
}

} // namespace tradewick
