// A combo box that can be locked like a text field: its text can be read and copied, not changed.
#pragma once

#include <QComboBox>

namespace tradewick
{

class ComboField : public QComboBox
{
    Q_OBJECT
    Q_PROPERTY(bool readOnly READ isReadOnly WRITE setReadOnly)

public:
    explicit ComboField(QWidget *parent);

    bool isReadOnly() const { return m_readOnly; }
    void setReadOnly(bool readOnly);
    void showPopup() override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void initStyleOption(QStyleOptionComboBox *option) const override;

private:
    bool m_readOnly = false;
};

} // namespace tradewick
