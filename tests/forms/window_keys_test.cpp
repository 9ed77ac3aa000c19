// The keys of every window: one that two things claim does neither.
#include "common/query_screen.h"
#include "common/tabbed_form.h"
#include "common/window_keys.h"
#include "shell/dispatch.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

namespace tradewick
{

using namespace test;

TEST(EveryWindow, HasEachOfItsKeysOnce)
{
    const TestDatabase database;
    ScriptedDialogs dialogs;
    QStringList names;
    for (const DeclaredForm &form : declaredForms())
        names.append(form.name);
    for (const DeclaredQuery &query : declaredQueries())
        names.append(query.name);
    for (const QString &name : std::as_const(names)) {
        const std::unique_ptr<QWidget> window(formEntry(name)->make(nullptr, {}));
        const FormDriver drive(*window);
        for (const bool adding : {false, true}) {
            if (adding && window->findChild<QWidget *>("Cmdadd"))
                drive.click("Cmdadd");
            QStringList claimed;
            const QVector<KeyGroup> groups = keysOf(*window);
            for (const KeyText &key : groups.first().keys) {
                EXPECT_FALSE(key.does.isEmpty()) << name.toStdString() << ' ' << key.keys.toStdString();
                claimed.append(key.keys.split(" / "));
            }
            EXPECT_GE(claimed.size(), 3) << name.toStdString();
            EXPECT_EQ(claimed.removeDuplicates(), 0) << name.toStdString() << ' ' << claimed.join(' ').toStdString();
        }
    }
}

} // namespace tradewick
