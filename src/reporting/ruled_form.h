// A form of boxes, written in a template as rows of cells and drawn as lines, labels and fields.
#pragma once

#include <QMap>
#include <QString>
#include <QVector>

class QXmlStreamReader;

namespace tradewick
{

// An object of a template as its file writes it: element, attributes, text.
struct ObjectElement {
    QString kind;
    QMap<QString, QString> attributes;
    QString text;
};

// Reads the <ruled> whose start the reader stands on, up to its end, and gives the objects that it stands for: grounds,
// then texts and what the cells hold in reading order, then lines, each border of two cells once. What is wrong is
// raised as an error of the reader.
QVector<ObjectElement> ruledForm(QXmlStreamReader &xml);

} // namespace tradewick
