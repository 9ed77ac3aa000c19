// A window of several record forms, each on a tab of its own, and the one way from a declaration to its window.
#pragma once

#include "common/record_form_spec.h"

#include <QWidget>

class QTabWidget;

namespace tradewick
{

class RecordForm;

class TabbedForm : public QWidget
{
    Q_OBJECT

public:
    // Throws DataError when what the tabs offer or show cannot be read.
    explicit TabbedForm(const RecordFormSpec &spec, QWidget *mainWindow = nullptr);

    // The form on the tab of that number, from 0.
    RecordForm &tab(int index) const { return *m_forms.at(index); }
    // Shows that tab and takes the focus there.
    void goTo(int index);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    QTabWidget *m_tabs;
    QVector<RecordForm *> m_forms;
};

// The window of a declared form. Throws DataError when it cannot be loaded.
QWidget *makeForm(const RecordFormSpec &spec, QWidget *mainWindow);

} // namespace tradewick
