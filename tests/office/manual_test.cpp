// What docs/manual.md tells a clerk, done in the real main window: each window is opened by its command, has the
// captions and keys that are named of it, and the shipment's steps do what they say.
#include "common/window_keys.h"
#include "papers/papers.h"
#include "reporting/layout.h"
#include "reporting/preview.h"
#include "shell/commands.h"
#include "shell/login.h"
#include "shell/main_window.h"
#include "shell/process.h"
#include "shell/startup.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <QFile>
#include <QLabel>
#include <QProcess>
#include <QRegularExpression>

namespace tradewick
{

using namespace test;

namespace
{

QString plain(QString caption)
{
    return caption.remove(QRegularExpression("[\\s:：*№]"));
}

QSet<QString> all(const QString &pattern, const QString &in)
{
    QSet<QString> found;
    for (auto match = QRegularExpression(pattern).globalMatch(in); match.hasNext();)
        found.insert(match.next().captured(1));
    return found;
}

class Manual : public testing::Test
{
protected:
    Manual()
    {
        setReportViewer([this](Report &report, QWidget *) {
            printed = report.name();
            texts.clear();
            for (const auto layout = report.layout(); const PagePtr page = layout->next();)
                for (const PageItem &item : page->items)
                    texts += item.isText() ? page->text(item).toString() + u' ' : QString();
        });
        setApplicationDirectory(folder.path());
        EXPECT_EQ(QProcess::execute(binFolder() + "/tradewick-database",
                                    {"connect", folder.filePath("data_link.mdb"), database.dataSource()}),
                  0);
        EXPECT_TRUE(OpenDataLink());
        QFile file(MANUAL);
        EXPECT_TRUE(file.open(QFile::ReadOnly));
        text = QString::fromUtf8(file.readAll());
        mainWindow.show();
        for (const auto *bands : {&menuBands(), &sideBands()})
            for (const Band &band : *bands)
                for (const Tool &tool : band.tools)
                    commands.insert(band.caption + " → " + tool.caption, tool);
    }
    ~Manual() override
    {
        setApplicationDirectory({});
        setReportViewer({});
    }

    QString chapter(const QString &number) const { return text.section("\n## " + number, 1).section("\n## ", 0, 0); }

    // The window that this brings up is the one that is worked in from then on.
    template <class Act> void bringUp(const Act &act)
    {
        const QWidgetList before = QApplication::topLevelWidgets();
        act();
        QApplication::processEvents();
        for (QWidget *one : QApplication::topLevelWidgets())
            if (!before.contains(one) && one->isVisible() &&
                (one->windowType() == Qt::Window || one->windowType() == Qt::Dialog))
                window = one;
        if (window && window->isVisible())
            FormDriver{*window}; // to the front
    }
    void open(const QString &way)
    {
        window = nullptr;
        ASSERT_TRUE(commands.contains(way)) << way.toStdString();
        bringUp([&] { mainWindow.findChild<QAction *>(commands[way].name)->trigger(); });
        ASSERT_NE(window, nullptr) << way.toStdString();
    }
    void press(const QString &keys)
    {
        const QKeyCombination key = QKeySequence(keys)[0];
        QWidget *focused = window->focusWidget() ? window->focusWidget() : window.data();
        bringUp([&] { QTest::keyClick(focused, key.key(), key.keyboardModifiers()); });
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    // A field by its caption, on the page that is shown; what narrows the list is locked while a record is typed.
    QWidget *field(const QString &caption) const
    {
        for (const bool free : {true, false})
            for (auto *one : window->findChildren<QWidget *>())
                if (plain(one->accessibleName()) == plain(caption) && one->isVisible() && (one->isEnabled() || !free) &&
                    (one->inherits("QComboBox") || one->inherits("QLineEdit") || one->inherits("QPlainTextEdit")))
                    return one;
        throw std::runtime_error("no field " + caption.toStdString());
    }
    // The grid that is typed into, at a column's cell in a row from 1 on.
    Grid *at(const QString &caption, int row) const
    {
        for (auto *grid : window->findChildren<Grid *>())
            for (int i = 0; grid->isVisible() && grid->isEditing() && i < grid->model()->columnCount(); ++i)
                if (grid->model()->headerData(i, Qt::Horizontal).toString() == caption) {
                    grid->setCurrentIndex(grid->model()->index(row - 1, i));
                    return grid;
                }
        throw std::runtime_error("no column " + caption.toStdString());
    }
    QString shown(const QString &caption, int row) const
    {
        return row > 0 ? at(caption, row)->currentIndex().data().toString()
                       : FormDriver(*window).text(field(caption)->objectName());
    }
    void type(const QString &caption, int row, const QString &value) const
    {
        if (const FormDriver drive(*window); row > 0)
            drive.typeCell(at(caption, row), row - 1, at(caption, row)->currentColumn(), value);
        else
            drive.choose(field(caption)->objectName(), value);
        QApplication::processEvents();
    }
    bool isState(const QString &state) const
    {
        const auto labels = window->findChildren<QLabel *>("state");
        return std::any_of(labels.cbegin(), labels.cend(),
                           [&](const QLabel *one) { return one->isVisible() && one->text() == state; });
    }

    // All that stands on the window, with its keys.
    QMultiHash<QString, QString> captions() const
    {
        QMultiHash<QString, QString> found{{plain(window->windowTitle()), {}}};
        for (const QObject *one : window->findChildren<QObject *>())
            for (const char *caption : {"text", "title", "prefix"})
                for (const char *key : {"toolTip", "shortcut"})
                    found.insert(plain(one->property(caption).toString()), one->property(key).toString());
        for (const auto *one : window->findChildren<QTabBar *>())
            for (int i = 0; i < one->count(); ++i)
                found.insert(plain(one->tabText(i)), one->tabToolTip(i));
        for (const auto *one : window->findChildren<Grid *>())
            for (int i = 0; i < one->model()->columnCount(); ++i)
                found.insert(plain(one->model()->headerData(i, Qt::Horizontal).toString()), {});
        return found;
    }

    QTemporaryDir folder;
    TestDatabase database{TestDatabase::Demonstration};
    ScriptedDialogs dialogs;
    main_FRM mainWindow;
    QMap<QString, Tool> commands; // of the menus, by the way there
    QPointer<QWidget> window;
    QString text, printed, texts; // the manual; the report shown last, and what stands on its pages
};

} // namespace

TEST_F(Manual, TheShipmentGoesAsItsStepsSay)
{
    const QRegularExpression act(
        R"(打开 \*\*(?<way>[^*]+)\*\*|按 `(?<key>[^`]+)`)"
        R"(|(?:第(?<row>\d)行)?「(?<caption>[^」]+)」\s*(?<verb>填|选|随即为|为|记作)\s*)"
        R"((?:`(?<value>[^`]+)`|〔(?<name>[^〕]+)〕)|状态为「(?<state>[^」]+)」)"
        R"(|出\s*《(?<document>[^》]+)》|[单表]上有\s*(?:`(?<on>[^`]+)`|〔(?<number>[^〕]+)〕))"
        R"(|“(?<question>[^”]+)”答「是」)");
    QHash<QString, QString> numbers;
    const QStringList steps = chapter("一").split(QRegularExpression("\n+(?=\\d+\\. )")).mid(1);
    EXPECT_EQ(steps.size(), 13);
    for (const QString &step : steps) {
        SCOPED_TRACE(step.section("**", 1, 1).toStdString());
        qsizetype done = 0;
        for (auto match = act.globalMatch(step); match.hasNext();) {
            const QRegularExpressionMatch one = match.next();
            SCOPED_TRACE(one.captured().toStdString());
            const QString name = one.captured("name"), verb = one.captured("verb"), caption = one.captured("caption");
            const QString value = name.isEmpty() ? one.captured("value") : numbers[name];
            const int row = one.captured("row").toInt();
            done += one.hasCaptured("key") + one.hasCaptured("value") + one.hasCaptured("on");
            if (one.hasCaptured("way"))
                ASSERT_NO_FATAL_FAILURE(open(one.captured("way")));
            else if (one.hasCaptured("key"))
                press(one.captured("key"));
            else if (verb == "记作")
                numbers[name] = shown(caption, row);
            else if (verb.endsWith("为"))
                EXPECT_EQ(shown(caption, row).toStdString(), value.toStdString());
            else if (!verb.isEmpty())
                type(caption, row, value);
            else if (one.hasCaptured("state"))
                EXPECT_TRUE(isState(one.captured("state")));
            else if (one.hasCaptured("document"))
                EXPECT_EQ(std::exchange(printed, {}), document(one.captured("document")).report);
            else if (one.hasCaptured("question"))
                EXPECT_EQ(dialogs.take().text.toStdString(), one.captured("question").toStdString());
            else
                EXPECT_TRUE(texts.contains(one.captured("on") + numbers.value(one.captured("number"))));
        }
        EXPECT_EQ(done, step.count('`') / 2) << "something is written in another way";
        for (const Shown &untold : std::exchange(dialogs.shown, {}))
            ADD_FAILURE() << untold.text.toStdString();
    }
    EXPECT_EQ(findingsIn(database.dataSource()).toStdString(), "");
}

TEST_F(Manual, NamesWhatStandsOnEachScreen)
{
    const QString screens = chapter("二");
    for (auto command = commands.cbegin(); command != commands.cend(); ++command)
        EXPECT_TRUE(command->opens == exitCommand ||
                    screens.contains(command->opens.isEmpty() ? command->caption : "打开 **" + command.key() + "**"))
            << command.key().toStdString();
    for (const QString &screen : screens.split("\n### ").mid(1)) {
        SCOPED_TRACE(screen.section(u'\n', 0, 0).toStdString());
        const auto way = QRegularExpression("打开 \\*\\*(.+)\\*\\*，(?:按 `(.+?)`)?").match(screen);
        std::unique_ptr<QWidget> opened;
        if (way.hasMatch()) {
            ASSERT_NO_FATAL_FAILURE(open(way.captured(1)));
            opened.reset(window);
            if (!way.captured(2).isEmpty())
                press(way.captured(2));
        } else {
            if (screen.startsWith("登录"))
                opened = std::make_unique<frmLogin>(&mainWindow);
            else if (screen.startsWith("预览"))
                opened = std::make_unique<ReportPreview>(
                    *fill(document("通用订舱单"), database.connection(), QString()).report);
            window = opened.get();
        }
        if (!window)
            continue;
        const auto there = captions();
        for (const QString &caption : all("「([^」]+)」", screen))
            EXPECT_TRUE(there.contains(plain(caption))) << caption.toStdString();
        for (const QString &pair : all("「([^」]+」（`[^`]+)`）", screen))
            EXPECT_TRUE(there.contains(plain(pair.section("」", 0, 0)), pair.section("`", 1))) << pair.toStdString();
    }
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
}

TEST_F(Manual, NamesKeysThatTheWindowsTellThemselves)
{
    QStringList keys;
    const auto add = [&](const QWidget &of) {
        for (const KeyGroup &group : keysOf(of))
            for (const KeyText &key : group.keys)
                keys += key.keys.split(" / ");
    };
    add(mainWindow);
    open("【业务查询统计】 → 国外销售合同统计");
    add(*window);
    open("单证管理 → 制单明细表");
    add(*window);
    for (const char *key : {"Ctrl+N", "Alt+2"}) {
        press(key);
        add(*window);
    }
    for (const QString &key : all("`([^`]+)`", chapter("三")))
        EXPECT_TRUE(keys.contains(key)) << key.toStdString();
}

TEST_F(Manual, TellsOfEachMessageAndDocument)
{
    QFile program(QApplication::applicationFilePath());
    ASSERT_TRUE(program.open(QFile::ReadOnly));
    const QByteArray code = program.readAll();
    for (const QString &row : chapter("四").split("\n| “").mid(1))
        for (const QString &part : row.section(" | ", 0, 0).split(QRegularExpression("[“”…]"), Qt::SkipEmptyParts))
            EXPECT_TRUE(code.contains(part.toUtf8()) ||
                        code.contains(QByteArray(reinterpret_cast<const char *>(part.utf16()), 2 * part.size())))
                << part.toStdString();
    QSet<QString> known;
    for (const Document &one : documents())
        known.insert(one.name);
    EXPECT_EQ(all("《([^》]+)》", text), known);
    EXPECT_EQ(all("《([^》]+)》", chapter("五")), known);
}

} // namespace tradewick
