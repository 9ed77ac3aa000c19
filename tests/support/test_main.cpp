// One application object for all tests of a program, without a display.
#include "common/application.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir settings; // whoever runs the tests keeps what is theirs
    qputenv("XDG_CONFIG_HOME", settings.path().toUtf8());
    tradewick::Application application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
