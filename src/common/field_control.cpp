#include "common/field_control.h"

#include "common/combo_field.h"
#include "common/picture_field.h"
#include "data/recordset.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QStyle>

namespace tradewick
{

namespace
{

using Typed = std::function<void(const QVariant &value)>;

constexpr int linesOfLongText = 3, leastLinesOfLongText = 2, charactersOfLongText = 20;
const KeyText newLine{QStringLiteral("Shift+Enter"), QStringLiteral("换行")};

class LineControl : public FieldControl
{
public:
    LineControl(QLineEdit *line, const Typed &typed) : FieldControl(line), m_line(line)
    {
        QObject::connect(line, &QLineEdit::textChanged, line, typed);
    }
    QString text() const override { return m_line->text(); }
    void setText(const QString &text) override
    {
        m_line->setText(text);
        m_line->setCursorPosition(0);
    }
    void setLocked(bool locked) override { m_line->setReadOnly(locked); }
    void selectAll() override { m_line->selectAll(); }
    bool canUndo() const override { return m_line->isUndoAvailable(); }

private:
    QLineEdit *m_line;
};

class PictureControl : public LineControl
{
public:
    PictureControl(PictureField *picture, const Typed &typed) : LineControl(picture->path(), typed), m_picture(picture)
    {
    }
    QWidget *frame() const override { return m_picture; }

private:
    PictureField *m_picture;
};

// Wants to show some lines of a clause, and does with two where a form has no room; it is no wider than other fields
// where the list beside them has a use for the room.
class LongTextEdit : public QPlainTextEdit
{
public:
    using QPlainTextEdit::QPlainTextEdit;
    QSize sizeHint() const override
    {
        return {fontMetrics().averageCharWidth() * charactersOfLongText, heightOf(linesOfLongText)};
    }
    QSize minimumSizeHint() const override { return {0, heightOf(leastLinesOfLongText)}; }

private:
    int heightOf(int lines) const { return fontMetrics().lineSpacing() * lines + 12; }
};

class LongTextControl : public FieldControl
{
public:
    LongTextControl(QPlainTextEdit *edit, const Typed &typed) : FieldControl(edit), m_edit(edit)
    {
        edit->setTabChangesFocus(true);
        edit->setToolTip(newLine.keys + u' ' + newLine.does);
        edit->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        QObject::connect(edit, &QPlainTextEdit::textChanged, edit, [edit, typed] { typed(edit->toPlainText()); });
    }
    QVector<KeyText> keys() const override
    {
        return m_edit->isReadOnly() ? QVector<KeyText>() : QVector<KeyText>{newLine};
    }
    QString text() const override { return m_edit->toPlainText(); }
    void setText(const QString &text) override { m_edit->setPlainText(text); }
    void setLocked(bool locked) override { lock(*m_edit, locked); }
    bool canUndo() const override { return m_edit->document()->isUndoAvailable(); }

private:
    QPlainTextEdit *m_edit;
};

class ComboControl : public FieldControl
{
public:
    ComboControl(ComboField *combo, const Typed &typed) : FieldControl(combo), m_combo(combo)
    {
        QObject::connect(combo, &QComboBox::editTextChanged, combo, typed);
    }
    QString text() const override { return m_combo->currentText(); }
    void setText(const QString &text) override { m_combo->showText(text); }
    void setLocked(bool locked) override { m_combo->setReadOnly(locked); }
    void selectAll() override { m_combo->lineEdit()->selectAll(); }
    bool canUndo() const override { return m_combo->lineEdit()->isUndoAvailable(); }
    ComboField *combo() const override { return m_combo; }
    QVector<KeyText> keys() const override
    {
        return m_combo->isReadOnly() ? QVector<KeyText>()
                                     : QVector<KeyText>{{QStringLiteral("↓"), QStringLiteral("打开可选内容")}};
    }

private:
    ComboField *m_combo;
};

class CheckControl : public FieldControl
{
public:
    CheckControl(QCheckBox *check, const Typed &typed) : FieldControl(check), m_check(check)
    {
        QObject::connect(check, &QCheckBox::toggled, check, typed);
    }
    QString text() const override { return Recordset::text(m_check->isChecked(), ColumnKind::Flag); }
    void setText(const QString &text) override { m_check->setChecked(text == Recordset::text(true, ColumnKind::Flag)); }
    void setLocked(bool locked) override { m_check->setEnabled(!locked); }

private:
    QCheckBox *m_check;
};

} // namespace

void FieldControl::lock(QPlainTextEdit &edit, bool locked)
{
    edit.setReadOnly(locked);
    edit.style()->unpolish(&edit); // or its ground stays that of before
    edit.style()->polish(&edit);
}

std::unique_ptr<FieldControl> FieldControl::make(const FieldSpec &field, const PictureSpec &picture, QWidget *parent,
                                                 const Typed &typed)
{
    std::unique_ptr<FieldControl> control;
    switch (field.type.kind) {
    case FieldKind::Picture:
        control = std::make_unique<PictureControl>(new PictureField(picture, parent), typed);
        break;
    case FieldKind::Combo: {
        auto *combo = new ComboField(parent);
        combo->addItems(field.type.offer.items);
        combo->setCompletes(!field.type.offer.used);
        combo->setCurrentIndex(-1);
        control = std::make_unique<ComboControl>(combo, typed);
        break;
    }
    case FieldKind::Check:
        control = std::make_unique<CheckControl>(new QCheckBox(field.caption, parent), typed);
        break;
    case FieldKind::LongText:
        control = std::make_unique<LongTextControl>(new LongTextEdit(parent), typed);
        break;
    case FieldKind::Text:
    case FieldKind::Date:
        control = std::make_unique<LineControl>(new QLineEdit(parent), typed);
        break;
    }
    control->widget()->setObjectName(field.name);
    return control;
}

} // namespace tradewick
