// The splash: one picture without a frame, closed by a click on it.
#pragma once

#include <QWidget>

namespace tradewick
{

class frmSplash : public QWidget
{
    Q_OBJECT

public:
    explicit frmSplash(QWidget *parent = nullptr);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override; // Escape, Enter and the space bar close it like a click
};

} // namespace tradewick
