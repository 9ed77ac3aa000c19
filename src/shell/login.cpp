#include "shell/login.h"

#include "common/combo_field.h"
#include "common/dialogs.h"
#include "common/globals.h"
#include "shell/main_window.h"
#include "shell/picture.h"
#include "shell/process.h"
#include "shell/rights.h"

#include <QCloseEvent>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTime>

#include <array>
#include <pwd.h>
#include <unistd.h>

namespace tradewick
{

namespace
{

// Name of the user who is logged in to the operating system; empty when it has none.
QString systemUserName()
{
    std::array<char, 4096> buffer{};
    passwd entry{};
    passwd *found = nullptr;
    if (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found)
        return {};
    return QString::fromLocal8Bit(found->pw_name);
}

} // namespace

frmLogin::frmLogin(main_FRM *mainWindow) : QDialog(mainWindow), m_mainWindow(mainWindow)
{
    setObjectName("frmLogin");
    setWindowTitle(QStringLiteral("用户登录"));
    auto *brandLabel = new QLabel(brand, this);
    brandLabel->setObjectName("brand");

    m_name = new ComboField(this);
    m_name->setObjectName("C_NA");
    m_name->setAccessibleName(QStringLiteral("用户名："));
    m_name->setMinimumContentsLength(20);
    m_name->setCompleter(nullptr); // the name counts as typed, not as the list has it
    m_password = new QLineEdit(this);
    m_password->setObjectName("txtPassword");
    m_password->setAccessibleName(QStringLiteral("密  码："));
    m_password->setEchoMode(QLineEdit::Password);
    m_password->setStyleSheet("lineedit-password-character: 42");
    auto *form = new QFormLayout;
    form->addRow(QStringLiteral("用户名："), m_name);
    form->addRow(QStringLiteral("密  码："), m_password);

    auto *ok = new QPushButton(QStringLiteral("确认"), this);
    ok->setObjectName("cmdOK");
    ok->setAccessibleName(ok->text());
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &frmLogin::logIn);
    auto *cancel = new QPushButton(QStringLiteral("取消"), this);
    cancel->setObjectName("cmdCancel");
    cancel->setAccessibleName(cancel->text());
    connect(cancel, &QPushButton::clicked, this, [] { endProcess(0); });
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(brandLabel);
    layout->addLayout(form);
    layout->addSpacing(12);
    layout->addLayout(buttons);

    suggestNames();
    m_users.setObjectName("Adodc1");
    m_users.ConnectionString = gConnStr;
    m_users.setRecordSource(QStringLiteral("select* FROM qb_pass order by name"));
}

void frmLogin::suggestNames()
{
    Recordset names;
    names.Open(QStringLiteral("select DISTINCT name from qb_pass where name is not null order by name"), {}, gConn);
    for (; !names.EOF_(); names.MoveNext())
        m_name->addItem(names.Fields("name").text());
    m_name->setCurrentIndex(-1);
    m_name->setEditText(systemUserName());
    m_name->lineEdit()->selectAll();
}

void frmLogin::refuse(const QString &text, QWidget *field)
{
    dialogs().message(this, text, QStringLiteral("系统提示"), MessageIcon::Critical);
    field->setFocus();
}

void frmLogin::logIn()
{
    const QString name = m_name->currentText();
    m_users.setRecordSource(QStringLiteral("select* from qb_PASS where name='{name}'"), {{"name", name}});
    m_users.Refresh();
    Recordset &user = m_users.Recordset();
    if (user.RecordCount() < 1) {
        refuse(QStringLiteral("没有此用户名，请重新选择！"), m_name);
        m_name->clearEditText();
        return;
    }
    // The database found the name by its own rules; here both count to the character. A Null password matches nothing.
    const QVariant password = user.Fields("pass").value();
    if (!password.isValid() || m_password->text() != password.toString() ||
        name != user.Fields("Name").value().toString()) {
        refuse(QStringLiteral("密码错误，请重新确认!"), m_password);
        m_password->clear();
        return;
    }
    gOperatorName = name;
    applyRights(user, [this](const QString &tool) { m_mainWindow->switchOff(tool); });
    m_mainWindow->setStatusText(gCompanyName.trimmed() + QStringLiteral("     操作员 :") + gOperatorName +
                                QStringLiteral("          操作时间:") + timeText(QTime::currentTime()));
    accept();
}

void frmLogin::closeEvent(QCloseEvent *event)
{
    event->ignore();
}

} // namespace tradewick
