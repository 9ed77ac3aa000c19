#include "shell/about.h"

#include "common/dialogs.h"
#include "shell/icons.h"
#include "shell/picture.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace tradewick
{

frmAbout::frmAbout(QWidget *parent) : QDialog(parent)
{
    setObjectName("frmAbout");
    setWindowTitle(QStringLiteral("关于.... "));
    auto *icon = new QLabel(this);
    icon->setPixmap(commandIcon(QStringLiteral("brand")).pixmap(40));
    auto *title = new QLabel(productTitle, this);
    title->setObjectName("lblTitle");
    auto *text = new QVBoxLayout;
    text->addWidget(title);
    text->addWidget(new QLabel(brand, this));
    auto *head = new QHBoxLayout;
    head->addWidget(icon, 0, Qt::AlignTop);
    head->addLayout(text, 1);

    auto *information = new QPushButton(QStringLiteral("系统信息"), this);
    information->setObjectName("cmdSysInfo");
    information->setAutoDefault(false);
    // The tool that would be started belongs to another platform.
    connect(information, &QPushButton::clicked, this,
            [this] { dialogs().message(this, QStringLiteral("此时系统信息不可用"), {}, MessageIcon::None); });
    auto *ok = new QPushButton(QStringLiteral("确定"), this);
    ok->setObjectName("cmdOK");
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QWidget::close);
    for (QPushButton *button : {information, ok})
        button->setAccessibleName(button->text());
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(information);
    buttons->addWidget(ok);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(head);
    layout->addSpacing(16);
    layout->addLayout(buttons);
}

} // namespace tradewick
