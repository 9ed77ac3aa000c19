// What Add or Edit has changed so far, edit by edit, to be taken back: each step is how the record and its lines stood
// before the edit. A step shares with the record sets what both hold alike, so it costs no more than what waits.
#pragma once

#include "common/lines_panel.h"
#include "data/recordset.h"

#include <QVector>

#include <memory>
#include <optional>

namespace tradewick
{

class EditSteps
{
public:
    // head, and lines, which may be null: outlive it.
    EditSteps(Recordset &head, LinesPanel *lines) : m_head(head), m_lines(lines) {}

    // Something is edited next. What is typed into one field until another is entered is one step.
    void begin(const EditPlace &place);
    // A field has the focus now.
    void enter(const QString &field);
    // Something was stored, or another record is shown: there is no way back.
    void forget();
    // Goes back to how it stood before the last edit that can be seen, and gives where that was; nothing where there
    // is none.
    std::optional<EditPlace> takeBack();

private:
    struct Step {
        EditPlace place;
        std::shared_ptr<const RecordsetRows> head;
        LinesState lines;
    };
    Recordset &m_head;
    LinesPanel *m_lines;
    QVector<Step> m_steps;
    QString m_field; // that is typed into; its step is the last one
};

} // namespace tradewick
