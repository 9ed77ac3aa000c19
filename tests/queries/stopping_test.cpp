// The program's own dialogs where something else than Yes and No is answered.
#include "common/dialogs.h"
#include "data/watch.h"
#include "support/test_database.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QTimer>

namespace tradewick::test
{

namespace
{

void pressInDialog(Qt::Key key)
{
    QTimer::singleShot(0, qApp, [key] { QTest::keyClick(QApplication::activeModalWidget(), key); });
}

} // namespace

TEST(Dialogs, AnswersYesNoOrNothing)
{
    for (const auto &[key, answer] :
         {std::pair(Qt::Key_Return, std::optional(true)), {Qt::Key_N, false}, {Qt::Key_Escape, std::nullopt}}) {
        pressInDialog(key);
        EXPECT_EQ(dialogs().choose(nullptr, "?", "t"), answer) << key;
    }
}

// A statement that would run for hours, on the server too, and the connection serves the next one.
TEST(Dialogs, EscapeEndsWhatTakesLong)
{
    TestDatabase database;
    database.connection().transaction([&database] {
        for (int i = 0; i < 400; ++i)
            database.connection().Execute("insert into yy_gw_wxht_b(htbh,sl) values('X',{i})", {{"i", i}});
    });
    QWidget window;
    window.show();
    int error = 0;
    QElapsedTimer clock;
    clock.start();
    {
        const Watch watch(dialogs().stoppable(&window, "正在查询"));
        pressInDialog(Qt::Key_Return); // no key but Escape
        QTimer::singleShot(800, qApp, [&] {
            EXPECT_THROW(database.count("yy_gw_wxht_b"), DataError); // in the middle of another statement
            EXPECT_FALSE(window.updatesEnabled());
            QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape);
        });
        try {
            database.value("select sum(a.sl*b.sl*c.sl*d.sl) as n from yy_gw_wxht_b a, yy_gw_wxht_b b, yy_gw_wxht_b c, "
                           "yy_gw_wxht_b d");
        } catch (const DataError &stopped) {
            error = stopped.number();
        }
    }
    EXPECT_EQ(error, Watch::stopped);
    EXPECT_GE(clock.elapsed(), 800);
    EXPECT_TRUE(window.updatesEnabled());
    EXPECT_EQ(database.count("yy_gw_wxht_b"), 400);
}

} // namespace tradewick::test
