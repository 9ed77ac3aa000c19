// The editor of the certificate that the documents were mailed.
#pragma once

#include "papers/papers.h"

#include <QDialog>
#include <QHash>

class QFormLayout;
class QPlainTextEdit;

namespace tradewick
{

// Shows title, body and closing of the certificate, which the clerk may write anew, and prints it with what stands
// there. The texts are gone when it closes.
class YY_JdZm_rpt : public QDialog
{
    Q_OBJECT

public:
    // certificate: the document whose texts are edited, each of them a label with a fixed text. number: of the sheet.
    YY_JdZm_rpt(const Document &certificate, const QString &number, QWidget *parent);

private:
    void addField(QFormLayout *layout, const QString &name, const QString &caption, const QString &label);
    void edit();
    void print();

    Document m_certificate;
    QString m_number;
    QHash<QString, QPlainTextEdit *> m_fields; // by the label that each is printed in
};

} // namespace tradewick
