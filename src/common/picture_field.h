// A picture that is kept as the path of its file.
#pragma once

#include "common/record_form_spec.h"

#include <QWidget>

class QLabel;
class QLineEdit;

namespace tradewick
{

// Image1 shows the file that the path in Text1 names; Command1 chooses one and Command2 takes it away, both only while
// the path is not locked. A file that cannot be read leaves a word in the picture's place.
class PictureField : public QWidget
{
    Q_OBJECT

public:
    PictureField(const PictureSpec &spec, QWidget *parent);
    QLineEdit *path() const { return m_path; }

protected:
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void choose();
    void load();

    PictureSpec m_spec;
    QLineEdit *m_path;
    QLabel *m_image;
    QString m_shown; // file on display with its time of change
};

} // namespace tradewick
