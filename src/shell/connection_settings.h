// The settings of the server connection, one row of the local settings file.
#pragma once

#include "data/data_control.h"

#include <QDialog>

class QFormLayout;
class QLineEdit;

namespace tradewick
{

class frmODBCLogon : public QDialog
{
    Q_OBJECT

public:
    // Reads the row, or starts one where the table is empty. Throws DataError without a settings file.
    explicit frmODBCLogon(QWidget *parent);

private:
    QLineEdit *addField(QFormLayout *layout, const QString &name, const QString &caption, const QString &column);
    void tryConnection();
    void save();

    DataControl m_settings;
    QLineEdit *m_server, *m_user, *m_password, *m_database;
};

} // namespace tradewick
