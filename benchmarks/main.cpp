// Prints the figures, one line each: name, ratio, goal, and the absolute times for the reader.
#include "common/globals.h"
#include "figures.h"
#include "form_bench.h"

#include <QApplication>
#include <QTextStream>

using namespace tradewick;

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments().mid(1);
    if (!arguments.isEmpty() && arguments.first().startsWith("--child-"))
        return benchmarkChild(arguments);
    QTextStream out(stdout);
    for (const auto figures : {formFigures, reportFigures, excelFigures})
        for (const Figure &figure : figures()) {
            out << figure.name << ": " << QString::number(figure.ratio, 'f', 3) << " (goal < " << figure.goal
                << "): " << (figure.ratio < figure.goal ? "ok" : "short") << "  [" << figure.detail << "]\n";
            out.flush();
        }
    gConn.reset(); // while the application that its driver belongs to still lives
    return 0;
}
