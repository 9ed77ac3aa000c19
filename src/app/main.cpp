#include "common/application.h"
#include "common/dialogs.h"
#include "common/kept_layout.h"
#include "common/window_keys.h"
#include "data/data_error.h"
#include "shell/icons.h"
#include "shell/process.h"
#include "shell/startup.h"
#include "shell/style.h"
#include "shell/toolkit_texts.h"

#include <QApplication>

using namespace tradewick;

namespace
{

// An error that no handler of a form took stops the process, but not without a word.
void stopAt(const DataError &error)
{
    dialogs().message(nullptr, error.text(), QStringLiteral("系统提示"), MessageIcon::Critical);
    endProcess(1);
}

class Program : public Application
{
public:
    using Application::Application;

protected:
    void unhandled(const DataError &error) override { stopAt(error); }
};

} // namespace

int main(int argc, char **argv)
{
    Program application(argc, argv);
    speakChinese();
    applyStyle(application);
    new KeptLayout(application);
    new KeyHelp(application);
    Application::setWindowIcon(commandIcon(QStringLiteral("brand")));
    // The exit question ends the process, not the last window that happens to close.
    Application::setQuitOnLastWindowClosed(false);
    try {
        Main();
    } catch (const DataError &error) {
        stopAt(error);
    }
    endProcess(Application::exec());
    return 0;
}
