// The about box.
#pragma once

#include <QDialog>

namespace tradewick
{

class frmAbout : public QDialog
{
    Q_OBJECT

public:
    explicit frmAbout(QWidget *parent);
};

} // namespace tradewick
