// What the shell's tests stand on: a settings file in a folder of its own, an end of the process that is only noted.
#pragma once

#include "common/globals.h"
#include "shell/process.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QTest>
#include <QTimer>

namespace tradewick::test
{

using Rows = QList<QVariantList>;

class ShellTest : public testing::Test
{
protected:
    ShellTest()
    {
        setApplicationDirectory(m_folder.path());
        setEndProcess([this](int code) { ends.append(code); });
    }
    ~ShellTest() override
    {
        closeAll();
        setEndProcess({});
        setApplicationDirectory({});
        gCompanyRs.reset();
        gCompanyName = gCompanyNameEn = gCompanyAddress = gCompanyAddressEn = gCompanyPhone = gCompanyFax =
            gOperatorName = QString();
    }

    QTemporaryDir m_folder;
    TestDatabase database;
    ScriptedDialogs dialogs;
    QList<int> ends; // exit codes of the ends of the process

    // The settings file with these rows: password, user, server, database.
    void writeSettings(const Rows &rows)
    {
        const QString path = m_folder.filePath("data_link.mdb");
        ASSERT_TRUE(QFile(path).open(QIODevice::WriteOnly));
        Connection local;
        local.Open(localConnectionString());
        local.Execute(R"(create table data_link (datasource text, "UserID" text, "Password" text, "Database" text))");
        for (const QVariantList &row : rows)
            local.Execute("insert into data_link values ('{s}', '{u}', '{p}', '{d}')",
                          {{"p", row[0]}, {"u", row[1]}, {"s", row[2]}, {"d", row[3]}});
    }
    Rows settings() const
    {
        Rows rows;
        Connection local;
        local.Open(localConnectionString());
        local.read(R"(select "Password", "UserID", datasource, "Database" from data_link)", {},
                   [](const QStringList &) {},
                   [&](const QVariantList &row) {
                       rows.append(row);
                       return true;
                   });
        return rows;
    }

    static void closeAll()
    {
        QWidgetList windows = QApplication::topLevelWidgets();
        windows.removeIf([](const QWidget *window) { return window->parentWidget() != nullptr; });
        qDeleteAll(windows);
    }

    // Window of that object name on the screen, or nullptr.
    static QWidget *window(const QString &name)
    {
        for (QWidget *widget : QApplication::topLevelWidgets())
            if (widget->objectName() == name && widget->isVisible())
                return widget;
        return nullptr;
    }

    // Once the next modal window is up, lets `act` work on it.
    static void whenModal(const std::function<void(QWidget &window)> &act)
    {
        QTimer::singleShot(0, qApp, [act] {
            if (QWidget *modal = QApplication::activeModalWidget())
                act(*modal);
            else
                whenModal(act);
        });
    }

    template <class Control> static Control &find(const QWidget &window, const QString &name)
    {
        auto *control = window.findChild<Control *>(name);
        if (!control)
            throw std::runtime_error("no control " + name.toStdString());
        return *control;
    }
    static void click(const QWidget &window, const QString &name)
    {
        QTest::mouseClick(&find<QWidget>(window, name), Qt::LeftButton);
    }
};

} // namespace tradewick::test
