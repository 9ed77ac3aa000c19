#include "documents/mailing_certificate.h"

#include "common/field_control.h"
#include "common/window_keys.h"

#include <QFormLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

namespace tradewick
{

namespace
{

const QString title = "L_TItLE", body = "L_nR";

} // namespace

YY_JdZm_rpt::YY_JdZm_rpt(const Document &certificate, const QString &number, QWidget *parent)
    : QDialog(parent), m_certificate(certificate), m_number(number)
{
    setObjectName("YY_JdZm_rpt");
    setWindowTitle(QStringLiteral("寄单证明编辑器"));
    auto *fields = new QFormLayout;
    addField(fields, "Text2", QStringLiteral("证明标题："), title);
    addField(fields, "Text1", QStringLiteral("证明正文："), body);
    addField(fields, "Text3", QStringLiteral("证明祝语："), "L_LUOKUAN");

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    const auto addButton = [&](const char *name, const QString &caption, const char *key, const auto &action) {
        auto *button = new QPushButton(caption, this);
        button->setObjectName(name);
        button->setAccessibleName(caption);
        addKeys(this, key, button);
        connect(button, &QPushButton::clicked, this, action);
        buttons->addWidget(button);
        return button;
    };
    addButton("Cmdedit", QStringLiteral("编辑"), "Alt+E", [this] { edit(); });
    addButton("CmdPrn", QStringLiteral("打印"), "Ctrl+P", [this] { print(); })->setFocus();
    addButton("CmdExt", QStringLiteral("退出"), "Ctrl+W", [this] { close(); });

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addLayout(buttons);
}

void YY_JdZm_rpt::addField(QFormLayout *layout, const QString &name, const QString &caption, const QString &label)
{
    auto *field = new QPlainTextEdit(this);
    field->setObjectName(name);
    field->setAccessibleName(QString(caption).remove(u'：'));
    field->setTabChangesFocus(true);
    field->setReadOnly(true);
    const int lines = label == body ? 8 : 2;
    field->setFixedHeight(lines * field->fontMetrics().lineSpacing() + 12);
    field->setMinimumWidth(field->fontMetrics().averageCharWidth() * 80);
    for (const DocumentLabel &one : std::as_const(m_certificate.labels))
        if (one.name == label)
            field->setPlainText(std::get<QString>(one.text));
    auto *text = new QLabel(caption, this);
    text->setBuddy(field);
    layout->addRow(text, field);
    m_fields.insert(label, field);
}

void YY_JdZm_rpt::edit()
{
    for (QPlainTextEdit *field : std::as_const(m_fields))
        FieldControl::lock(*field, false);
    m_fields[title]->setFocus();
    m_fields[title]->selectAll();
}

void YY_JdZm_rpt::print()
{
    for (DocumentLabel &label : m_certificate.labels)
        if (const QPlainTextEdit *field = m_fields.value(label.name))
            label.text = field->toPlainText();
    printRecord(m_certificate, m_number, this);
}

} // namespace tradewick
