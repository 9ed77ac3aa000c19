// What a benchmark measured: a ratio of two things timed in turn in one run, against its goal.
#pragma once

#include <QString>
#include <QVector>

namespace tradewick
{

struct Figure {
    QString name;
    double ratio;
    double goal;    // the ratio stays below it
    QString detail; // the absolute times, for the reader
};

QVector<Figure> formFigures();
QVector<Figure> masterFigures();
QVector<Figure> reportFigures();
QVector<Figure> excelFigures();
QVector<Figure> queryFigures();
QVector<Figure> serverFigures();

} // namespace tradewick
