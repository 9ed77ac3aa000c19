// A list and, beside or below it, the record that it stands on.
#pragma once

#include <QSplitter>

namespace tradewick
{

// Side by side, the list is as wide as its columns, as far as the record keeps the width that its fields want. A handle
// that the user has moved stays where it is.
class PaneSplitter : public QSplitter
{
    Q_OBJECT

public:
    PaneSplitter(Qt::Orientation orientation, QWidget *parent);

    // Whether the user has moved the handle, here or in an earlier program, whose saveState is given back.
    bool isMoved() const { return m_isMoved; }
    void takeBack(const QByteArray &state);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void fit();

    bool m_isMoved = false;
};

} // namespace tradewick
