// The server that all tests share: "start FILE" leaves it running and writes into FILE how it is reached and stopped,
// "stop FILE" ends it.
#include "support/test_server.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QFile file(arguments.value(2));
    if (arguments.value(1) == "start") {
        tradewick::test::TestServer server({"--innodb-flush-log-at-trx-commit=0", "--max-connections=500"});
        if (!file.open(QIODevice::WriteOnly))
            return 1;
        const QString source = server.source();
        file.write((source + "\n" + server.detach()).toUtf8());
        return 0;
    }
    if (!file.open(QIODevice::ReadOnly))
        return 1;
    const QString text = QString::fromUtf8(file.readAll());
    tradewick::test::TestServer::stop(text.section(u'\n', 1));
    file.close();
    return file.remove() ? 0 : 1;
}
