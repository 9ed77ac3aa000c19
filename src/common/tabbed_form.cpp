#include "common/tabbed_form.h"

#include "common/record_form.h"
#include "common/window_keys.h"

#include <QCloseEvent>
#include <QShortcut>
#include <QTabWidget>
#include <QVBoxLayout>

namespace tradewick
{

TabbedForm::TabbedForm(const RecordFormSpec &spec, QWidget *mainWindow)
    : QWidget(mainWindow, Qt::Window), m_tabs(new QTabWidget(this))
{
    setObjectName(spec.name);
    setWindowTitle(spec.caption);
    m_tabs->setObjectName("SSTab1");
    m_tabs->setAccessibleName(spec.caption);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs);
    for (const RecordFormSpec &tab : spec.tabs) {
        auto *form = new RecordForm(tab, this);
        const auto index = static_cast<int>(m_forms.size());
        const QString keys = QStringLiteral("Alt+%1").arg(index + 1);
        m_tabs->addTab(form, tab.caption);
        m_tabs->setTabToolTip(index, keys);
        m_forms.append(form);
        connect(addKeys(this, {QKeySequence(keys)}, tab.caption), &QShortcut::activated, this,
                [this, index] { goTo(index); });
    }
    for (const RecordForm *one : std::as_const(m_forms))
        for (RecordForm *other : std::as_const(m_forms))
            if (other != one) {
                connect(one, &RecordForm::fieldsLocked, other, &RecordForm::lockFields);
                connect(one, &RecordForm::addingEnded, other, &RecordForm::endAdding);
            }
    goTo(0);
}

void TabbedForm::goTo(int index)
{
    m_tabs->setCurrentIndex(index);
    m_forms[index]->takeFocus();
}

// What stands in the way is shown.
void TabbedForm::closeEvent(QCloseEvent *event)
{
    for (RecordForm *form : std::as_const(m_forms)) {
        if (form->mayClose())
            continue;
        m_tabs->setCurrentWidget(form);
        event->ignore();
        return;
    }
    event->accept();
}

QWidget *makeForm(const RecordFormSpec &spec, QWidget *mainWindow)
{
    if (spec.tabs.empty())
        return new RecordForm(spec, mainWindow);
    return new TabbedForm(spec, mainWindow);
}

} // namespace tradewick
