// The way of a record form through its records.
#include "common/dialogs.h"
#include "common/record_form.h"
#include "common/record_list.h"

#include <QApplication>

#include <algorithm>

namespace tradewick
{

void RecordForm::first()
{
    run(m_spec.failures.ends, {[this] {
            if (records().RecordCount() > 0)
                records().BOF() ? records().MoveNext() : records().MoveFirst();
        }});
}

void RecordForm::last()
{
    run(m_spec.failures.ends, {[this] {
            if (records().RecordCount() > 0)
                records().EOF_() ? records().MovePrevious() : records().MoveLast();
        }});
}

void RecordForm::next()
{
    run(m_spec.failures.next, {[this] {
                                   if (!records().EOF_())
                                       records().MoveNext();
                               },
                               [this] {
                                   if (records().EOF_() && records().RecordCount() > 0) {
                                       QApplication::beep();
                                       records().MoveLast();
                                   }
                               }});
}

void RecordForm::previous()
{
    run(m_spec.failures.previous, {[this] {
                                       if (!records().BOF())
                                           records().MovePrevious();
                                   },
                                   [this] {
                                       if (records().BOF() && records().RecordCount() > 0) {
                                           QApplication::beep();
                                           records().MoveFirst();
                                       }
                                   }});
}

void RecordForm::goTo(const QString &column, const QVariant &value)
{
    const QString wanted = value.toString().trimmed();
    if (isBusy()) {
        dialogs().message(this,
                          QStringLiteral("“%1”正在录入，不能转到“%2”。请先%3或%4。")
                              .arg(window()->windowTitle(), wanted, m_spec.captions[7], m_spec.captions[8]),
                          systemTitle(), MessageIcon::Exclamation);
        return;
    }
    run(Failure::Report, {[&] {
            const auto place = [&] {
                const QVariantList values = records().columnValues(records().columnIndex(column));
                const auto isMeant = [&](const QVariant &one) {
                    return one.toString().trimmed().compare(wanted, Qt::CaseInsensitive) == 0;
                };
                return int(std::find_if(values.begin(), values.end(), isMeant) - values.begin());
            };
            int at = place();
            if (at == records().RecordCount() && !tellWaiting()) { // a filter may hide it
                showStatement(m_spec.statement, {});
                at = place();
            }
            if (at < records().RecordCount())
                records().setAbsolutePosition(at);
            else if (!anyWaits()) // what is shown instead is not taken for it
                dialogs().message(this, QStringLiteral("没有找到“%1”，可能已被删除。").arg(wanted), systemTitle(),
                                  MessageIcon::Exclamation);
        }});
}

void RecordForm::find()
{
    const FindSpec &spec = m_spec.find;
    // A box that was cancelled is searched for like an empty answer.
    const QString key = dialogs().input(this, spec.prompt, spec.title).value_or(QString());
    run(Failure::Report, {[&] {
            if (m_list->find(spec.column, key))
                return;
            dialogs().message(this, spec.notFound, spec.title, MessageIcon::Information);
            if (records().RecordCount() > 0)
                records().MoveFirst();
        }});
}

} // namespace tradewick
