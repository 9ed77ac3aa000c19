// The login: names the operator and switches off what he has no right to.
#pragma once

#include "data/data_control.h"

#include <QDialog>

class QLineEdit;

namespace tradewick
{

class ComboField;
class main_FRM;

class frmLogin : public QDialog
{
    Q_OBJECT

public:
    // mainWindow: whose commands and status text a login sets. Throws DataError when the users cannot be read.
    explicit frmLogin(main_FRM *mainWindow);

    // Neither Escape nor the window frame closes the login.
    void reject() override {}

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void suggestNames();
    void logIn();
    void refuse(const QString &text, QWidget *field);

    main_FRM *m_mainWindow;
    DataControl m_users;
    ComboField *m_name;
    QLineEdit *m_password;
};

} // namespace tradewick
