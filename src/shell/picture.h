// The company picture of the splash and the main window.
#pragma once

#include <QWidget>

namespace tradewick
{

inline const QString productTitle = QStringLiteral("青柏外贸单证系统");
inline const QString brand = QStringLiteral("青柏软件");

// The picture at any size: everything in it is scaled with it.
class Picture : public QWidget
{
    Q_OBJECT

public:
    Picture(const QString &name, QWidget *parent);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace tradewick
