// Prints the figures, one line each: name, ratio, goal, and the absolute times for the reader.
#include "common/globals.h"
#include "figures.h"
#include "form_bench.h"
#include "server_bench.h"

#include <QApplication>
#include <QTextStream>

using namespace tradewick;

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments().mid(1);
    if (arguments.value(0) == "--child-memory")
        return benchmarkChild(arguments);
    if (arguments.value(0).startsWith("--child-"))
        return serverBenchmarkChild(arguments);
    const struct {
        QString name;
        QVector<Figure> (*figures)();
    } groups[] = {{"forms", formFigures},  {"master", masterFigures}, {"reports", reportFigures},
                  {"excel", excelFigures}, {"queries", queryFigures}, {"server", serverFigures}};
    QTextStream out(stdout), err(stderr);
    QStringList unknown = arguments;
    for (const auto &group : groups)
        unknown.removeAll(group.name);
    if (!unknown.isEmpty()) {
        err << "usage: tradewick-bench [forms] [master] [reports] [excel] [queries] [server]\n"
               "Prints the figures of the groups named, of all when none is.\n";
        return 2;
    }
    for (const auto &group : groups) {
        if (!arguments.isEmpty() && !arguments.contains(group.name))
            continue;
        for (const Figure &figure : group.figures()) {
            out << figure.name << ": " << QString::number(figure.ratio, 'f', 3) << " (goal < " << figure.goal
                << "): " << (figure.ratio < figure.goal ? "ok" : "short") << "  [" << figure.detail << "]\n";
            out.flush();
        }
    }
    gConn.reset(); // while the application that its driver belongs to still lives
    return 0;
}
