// How a form writes: all or nothing, never over what another desktop wrote meanwhile without asking.
#include "common/conflict_dialog.h"
#include "common/dialogs.h"
#include "common/record_form.h"

namespace tradewick
{

namespace
{

// A column as the clerk knows it; the ones that no field shows bear their own name.
QString captionOf(const RecordFormSpec &spec, const QString &column, bool isLine)
{
    if (isLine)
        for (const GridColumn &shown : spec.body.columns)
            if (shown.column.compare(column, Qt::CaseInsensitive) == 0)
                return shown.caption;
    for (const FieldSpec &field : spec.fields)
        if (!isLine && field.column.compare(column, Qt::CaseInsensitive) == 0)
            return QString(field.caption).remove(u':').remove(u'：').remove(u'*');
    return column;
}

} // namespace

void RecordForm::inOneTransaction(const std::function<void()> &work)
{
    Connection::shared(m_primary.ConnectionString)->transaction(work);
}

bool RecordForm::store(const std::function<void()> &work)
{
    for (;;) {
        try {
            inOneTransaction(work);
            return true;
        } catch (const ConflictError &error) {
            if (!settle(error.conflict()))
                return false;
        }
    }
}

bool RecordForm::settle(const Conflict &conflict)
{
    const bool isLine = conflict.set != &records();
    ConflictQuestion question;
    question.kind = conflict.now.isEmpty()     ? ConflictQuestion::Gone
                    : conflict.typed.isEmpty() ? ConflictQuestion::Deleting
                                               : ConflictQuestion::Changed;
    const auto text = [&conflict](const QVariantList &row, qsizetype column) {
        return Recordset::text(row.value(column), conflict.kinds[column]);
    };
    question.record = m_spec.caption + u' ' + fieldText(m_spec.fields.first().name).trimmed();
    QVector<qsizetype> asked; // columns of the question's fields
    for (qsizetype i = 0; i < conflict.columns.size(); ++i) {
        const ConflictField field{captionOf(m_spec, conflict.columns[i], isLine), text(conflict.read, i),
                                  text(conflict.now, i), text(conflict.typed, i)};
        const bool changedThere = question.kind != ConflictQuestion::Gone && field.now != field.read;
        const bool changedHere = question.kind != ConflictQuestion::Deleting && field.typed != field.read;
        if (!changedThere && !changedHere)
            continue;
        asked.append(i);
        question.fields.append(field);
    }
    const std::optional<ConflictAnswer> answer = dialogs().conflict(this, question);
    if (!answer)
        return false;
    if (question.kind == ConflictQuestion::Deleting) {
        conflict.set->resolve(conflict, std::nullopt);
        return answer->first();
    }
    if (question.kind == ConflictQuestion::Gone) {
        if (answer->first()) {
            conflict.set->resolve(conflict, conflict.typed);
            if (!isLine && body().isOpen())
                body().renewGone(); // the lines went with the document
            return true;
        }
        if (!isLine && body().isOpen())
            body().Close(); // lines of a document that is no more
        conflict.set->resolve(conflict, std::nullopt);
        return true;
    }
    QVariantList values = conflict.now;
    bool anyTyped = false;
    for (qsizetype i = 0; i < asked.size(); ++i)
        if (answer->value(i)) {
            values[asked[i]] = conflict.typed[asked[i]];
            anyTyped = true;
        }
    conflict.set->resolve(conflict, anyTyped ? std::optional(values) : std::nullopt);
    return true;
}

} // namespace tradewick
