#include "shell/connection_settings.h"

#include "common/dialogs.h"
#include "shell/process.h"

#include <QDir>
#include <QFile>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace tradewick
{

frmODBCLogon::frmODBCLogon(QWidget *parent) : QDialog(parent)
{
    setObjectName("frmODBCLogon");
    setWindowTitle(QStringLiteral("服务器连接设置"));
    m_settings.setObjectName("data_link");
    m_settings.ConnectionString = localConnectionString();
    m_settings.setRecordSource(QStringLiteral("select * from data_link"));
    m_settings.Refresh();
    if (m_settings.Recordset().RecordCount() < 1)
        m_settings.Recordset().AddNew();
    else
        m_settings.Recordset().MoveFirst();

    auto *form = new QFormLayout;
    m_server = addField(form, "txtServer", QStringLiteral("服务器名称："), "datasource");
    const QString servers = QStringLiteral(R"(路径.db，mariadb://主机/数据库，主机\实例)");
    m_server->setPlaceholderText(servers);
    m_server->setToolTip(servers);
    m_user = addField(form, "txtUID", QStringLiteral("用户名称："), "UserID");
    m_password = addField(form, "txtPWD", QStringLiteral("用户密码："), "Password");
    m_password->setEchoMode(QLineEdit::Password);
    m_database = addField(form, "txtDatabase", QStringLiteral("数据库名称："), "Database");

    auto *buttons = new QHBoxLayout;
    const auto addButton = [&](const char *name, const QString &caption, const auto &action) {
        auto *button = new QPushButton(caption, this);
        button->setObjectName(name);
        button->setAccessibleName(caption);
        connect(button, &QPushButton::clicked, this, action);
        buttons->addWidget(button);
        return button;
    };
    addButton("Cmdtry", QStringLiteral("试连"), [this] { tryConnection(); });
    buttons->addStretch();
    addButton("cmdOK", QStringLiteral("确认"), [this] { save(); })->setDefault(true);
    addButton("cmdCancel", QStringLiteral("返回"), [this] { close(); });

    auto *note = new QLabel(QStringLiteral("密码以明文保存在本机的 data_link.mdb 中，只有该文件的所有者可以读写。\n"
                                           "四项中至少留空一项，否则启动时视为连接失败。"),
                            this);
    note->setObjectName("note");
    note->setForegroundRole(QPalette::PlaceholderText);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(note);
    layout->addSpacing(12);
    layout->addLayout(buttons);
}

QLineEdit *frmODBCLogon::addField(QFormLayout *layout, const QString &name, const QString &caption,
                                  const QString &column)
{
    const Field field = m_settings.Recordset().Fields(column);
    auto *edit = new QLineEdit(field.text(), this);
    edit->setObjectName(name);
    edit->setAccessibleName(caption);
    edit->setMinimumWidth(edit->fontMetrics().averageCharWidth() * 40);
    // An empty box is stored as Null: start-up goes on only where one of the four is.
    connect(edit, &QLineEdit::textChanged, this,
            [field](const QString &text) { field.setValue(text.isEmpty() ? QVariant() : QVariant(text)); });
    layout->addRow(caption, edit);
    return edit;
}

void frmODBCLogon::tryConnection()
{
    bool connected = true;
    try {
        Connection().Open(QStringLiteral("Provider=SQLOLEDB.1;Password=") + m_password->text() +
                          QStringLiteral(";User ID=") + m_user->text() + QStringLiteral(";Initial Catalog=") +
                          m_database->text() + QStringLiteral(";Data Source=") + m_server->text());
    } catch (const DataError &) {
        connected = false;
    }
    dialogs().message(this,
                      connected ? QStringLiteral("连接成功 ！") : QStringLiteral("服务器设置有问题，请重新核对。"),
                      QStringLiteral("系统提示"), MessageIcon::Information);
}

void frmODBCLogon::save()
{
    // Before the password is in it; SQLite gives its journal the same rights.
    QFile::setPermissions(localSettingsFile(), QFile::ReadOwner | QFile::WriteOwner);
    try {
        m_settings.Recordset().UpdateBatch();
    } catch (const DataError &) {
        // What was typed waits; the next press tries again.
        dialogs().message(this,
                          QStringLiteral("设置没有保存：不能写入文件 %1，请检查该文件和所在文件夹的权限。")
                              .arg(QDir::toNativeSeparators(localSettingsFile())),
                          QStringLiteral("系统提示"), MessageIcon::Critical);
        return;
    }
    close();
}

} // namespace tradewick
