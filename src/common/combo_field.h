// A combo box of a form: it can be locked like a text field, and it tells a choice from a text that merely stands
// there.
#pragma once

#include <QComboBox>
#include <QHash>

namespace tradewick
{

// Of the items in the model's first column the row of the one that begins with the text, whatever its case; -1 where
// none does, or several, or the text is empty.
int onlyItemBeginningWith(const QAbstractItemModel &items, const QString &text);

class ComboField : public QComboBox
{
    Q_OBJECT
    Q_PROPERTY(bool readOnly READ isReadOnly WRITE setReadOnly)

public:
    explicit ComboField(QWidget *parent);

    bool isReadOnly() const { return m_readOnly; }
    // Locked, its text can be read and copied, not changed.
    void setReadOnly(bool readOnly);
    // What is shown beside items in the lists and found there as they are, by item: the names of codes. The text of the
    // box stays the item's. Holds for items that are offered later, too.
    void setBeside(const QHash<QString, QString> &names);
    // Whether Enter makes the only item that begins so out of a text typed; else that text is as good as an item.
    void setCompletes(bool completes) { m_completes = completes; }
    // Shows a text, an item or not; nobody chose it.
    void showText(const QString &text);
    // A text typed since showText or the last choice that is an item in full counts as chosen; one that was merely
    // passed does not.
    void takeTyped();
    // The choice could not be carried out: the same text counts again when the box is left.
    void forgetChoice() { m_forgotten = true; }
    void showPopup() override;
    void hidePopup() override;

Q_SIGNALS:
    // An item was clicked, taken with Enter from a list, or typed in full.
    void chosen();
    // Enter was pressed in a list: whoever moves the focus on does so now.
    void enterPressed();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void initStyleOption(QStyleOptionComboBox *option) const override;
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void choose(int item);
    bool isTyped() const { return m_forgotten || currentText() != m_shown; }
    void showBeside();

    QHash<QString, QString> m_beside;
    QString m_shown;          // what was shown or chosen last
    bool m_forgotten = false; // even the same text would be another choice
    bool m_readOnly = false;
    bool m_completes = true;
    bool m_listCloses = false; // what is told as activated comes from the list
};

} // namespace tradewick
