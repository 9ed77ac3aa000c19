// The first user of a database, made by the program: with all rights, and a password that is nowhere to be seen.
#include "program.h"

#include <gtest/gtest.h>

namespace tradewick
{

namespace
{

using namespace test;

// What stands in the environment of the program for as long as this lives.
class Environment
{
public:
    explicit Environment(const QByteArray &password) { qputenv("TRADEWICK_USER_PASSWORD", password); }
    ~Environment() { qunsetenv("TRADEWICK_USER_PASSWORD"); }
    Environment(const Environment &) = delete;
    Environment &operator=(const Environment &) = delete;
};

Ended toolReading(const QString &input, const QStringList &arguments)
{
    return run(binFolder() + "/tradewick-database", arguments, input);
}

} // namespace

TEST(User, HasAllRightsAndThePasswordAsItWasGiven)
{
    const NewPlace place;
    ASSERT_EQ(tool({"create", place.source()}).status, 0);
    EXPECT_EQ(toolReading("a 'b' \nnext line", {"user", place.source(), "管理员"}).status, 0);
    {
        const Environment environment("密码");
        EXPECT_EQ(toolReading("unread", {"user", place.source(), "O'Neil"}).status, 0);
    }
    QStringList flags;
    for (int flag = 1; flag <= 28; ++flag)
        flags.append(QStringLiteral("t%1").arg(flag));
    EXPECT_EQ(place.answer("select name, pass, " + flags.join(u'+') + " from qb_pass order by name = 'O''Neil'"),
              "管理员\ta 'b' \t28\nO'Neil\t密码\t28");
}

TEST(User, IsRefusedWithoutANamePasswordOrPlace)
{
    const NewPlace place, bare;
    ASSERT_EQ(tool({"create", place.source()}).status, 0);
    ASSERT_EQ(toolReading("pw\n", {"user", place.source(), "Admin"}).status, 0);
    const struct {
        QString name, input, source;
        const char *said;
    } cases[] = {
        {"admin", "pw\n", place.source(), "there is a user admin already"},
        {"", "pw\n", place.source(), "empty or has blanks"},
        {" Li", "pw\n", place.source(), "empty or has blanks"},
        {"Li", "", place.source(), "the password is empty"},
        {"Li", "\n", place.source(), "the password is empty"},
        {"Li", "pw\n", bare.source(), bare.isOnServer() ? "qb_pass" : "does not exist"},
    };
    for (const auto &[name, input, source, said] : cases) {
        const Ended ended = toolReading(input, {"user", source, name});
        EXPECT_EQ(ended.status, 1) << name.toStdString();
        EXPECT_TRUE(ended.err.contains(said)) << ended.err.toStdString();
    }
    EXPECT_EQ(place.answer("select count(*) from qb_pass"), "1");
}

TEST(User, PasswordIsTypedTwiceAndNotShown)
{
    for (const bool isSame : {true, false}) {
        const NewPlace place;
        ASSERT_EQ(tool({"create", place.source()}).status, 0);
        QProcess terminal;
        terminal.setProcessChannelMode(QProcess::MergedChannels);
        terminal.start("script",
                       {"-qec",
                        QStringLiteral("'%1/tradewick-database' user '%2' Admin").arg(binFolder(), place.source()),
                        "/dev/null"});
        QString shown;
        const auto typeAt = [&](const char *prompt, const char *password) {
            while (!shown.contains(prompt) && terminal.waitForReadyRead(30000))
                shown += QString::fromUtf8(terminal.readAll());
            ASSERT_TRUE(shown.contains(prompt)) << shown.toStdString();
            terminal.write(QByteArray(password) + '\n');
        };
        typeAt("Password: ", "hidden");
        typeAt("Once more: ", isSame ? "hidden" : "hidden2");
        ASSERT_TRUE(terminal.waitForFinished(30000));
        shown += QString::fromUtf8(terminal.readAll());
        EXPECT_EQ(terminal.exitCode(), isSame ? 0 : 1);
        EXPECT_FALSE(shown.contains("hidden")) << shown.toStdString();
        EXPECT_EQ(shown.contains("the two passwords differ"), !isSame) << shown.toStdString();
        EXPECT_EQ(place.answer("select pass from qb_pass"), isSame ? "hidden" : "");
    }
}

} // namespace tradewick
