// Drives a form through its controls, found by their own names, as a clerk's keyboard would.
#pragma once

#include "common/grid.h"
#include "common/record_form.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTest>

#include <algorithm>

namespace tradewick::test
{

class FormDriver
{
public:
    // A form on a tab is shown, and its buttons are named without the number of the tab.
    explicit FormDriver(QWidget &form) : m_form(form)
    {
        form.window()->resize(1280, 700);
        form.window()->show();
        form.window()->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(form.window()));
        const auto *record = qobject_cast<RecordForm *>(&form);
        if (auto *tabs = form.window()->findChild<QTabWidget *>("SSTab1"); record && record->spec().tab >= 0) {
            m_number = QStringLiteral("(%1)").arg(record->spec().tab);
            tabs->setCurrentWidget(&form);
            record->findChild<Grid *>(record->spec().listName)->setFocus();
        }
    }

    template <class Control> Control *find(const QString &name) const
    {
        auto *control = m_form.findChild<Control *>(name);
        if (!control && !m_number.isEmpty())
            control = m_form.findChild<Control *>(name + m_number);
        EXPECT_NE(control, nullptr) << name.toStdString();
        return control;
    }
    QWidget *control(const QString &name) const { return find<QWidget>(name); }

    void click(const QString &name) const
    {
        if (const auto *record = qobject_cast<RecordForm *>(&m_form); record && !record->spec().hasNavigation)
            if (const int key = keyOf(name)) { // the list is the way through the records there
                auto *list = find<Grid>(record->spec().listName);
                if (list->isEnabled())
                    QTest::keyClick(list, static_cast<Qt::Key>(key),
                                    key == Qt::Key_Home || key == Qt::Key_End ? Qt::ControlModifier : Qt::NoModifier);
                QApplication::processEvents();
                return;
            }
        QTest::mouseClick(find<QAbstractButton>(name), Qt::LeftButton);
        QApplication::processEvents();
    }
    bool enabled(const QString &name) const { return control(name)->isEnabled(); }

    QString text(const QString &name) const
    {
        QWidget *widget = control(name);
        if (auto *combo = qobject_cast<QComboBox *>(widget))
            return combo->currentText();
        if (auto *edit = qobject_cast<QPlainTextEdit *>(widget))
            return edit->toPlainText();
        return widget->property("text").toString();
    }

    // Types over what the field holds; characters beyond the keyboard come as an input method commits them.
    void type(const QString &name, const QString &value) const
    {
        QWidget *widget = control(name);
        widget->setFocus();
        QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
        const bool byKeys = !qobject_cast<QComboBox *>(widget) &&
                            std::all_of(value.cbegin(), value.cend(), [](QChar c) { return c >= ' ' && c <= '~'; });
        if (value.isEmpty())
            QTest::keyClick(widget, Qt::Key_Delete);
        else if (byKeys)
            QTest::keyClicks(widget, value);
        else
            commit(widget, value);
    }

    static void commit(QWidget *widget, const QString &value)
    {
        QInputMethodEvent event;
        event.setCommitString(value);
        QApplication::sendEvent(widget, &event);
    }
    static void compose(QWidget *widget, const QString &value)
    {
        QInputMethodEvent event(value, {});
        QApplication::sendEvent(widget, &event);
    }

    // Types a combo box's item in full and goes on, as the keyboard does.
    void choose(const QString &name, const QString &item) const
    {
        type(name, item);
        leave(name);
        m_form.window()->activateWindow(); // without a window manager the list that closed has taken that along
        EXPECT_TRUE(QTest::qWaitForWindowActive(m_form.window()));
    }
    // Leaves a field by the keyboard, and what follows from that.
    void leave(const QString &name) const
    {
        press(name, Qt::Key_Return);
        QApplication::processEvents();
    }

    void press(const QString &name, int key) const { QTest::keyClick(control(name), static_cast<Qt::Key>(key)); }

    QString focused() const
    {
        QWidget *widget = m_form.focusWidget();
        while (widget && (widget->objectName().isEmpty() || widget->objectName().startsWith("qt_")))
            widget = widget->parentWidget();
        const QString name = widget ? widget->objectName() : QString();
        return name.startsWith("Cmd") && !m_number.isEmpty() ? QString(name).remove(m_number) : name;
    }

    // Whatever can have the focus says what it is to a screen reader.
    void expectAccessibleNames() const
    {
        for (const QWidget *widget : m_form.findChildren<QWidget *>()) {
            const bool ofQt = widget->objectName().startsWith("qt_") || widget->inherits("QScrollArea") ||
                              widget->inherits("QScrollBar") || widget->inherits("QTabBar") ||
                              widget->inherits("QCompleterPopup") || widget->inherits("QCalendarView") ||
                              widget->window() != m_form.window();
            EXPECT_TRUE(widget->focusPolicy() == Qt::NoFocus || ofQt || !widget->accessibleName().isEmpty())
                << widget->metaObject()->className() << widget->objectName().toStdString();
        }
    }

    // Types into the cell of a grid under the cursor and leaves it with Enter.
    void typeCell(Grid *grid, int row, const QString &column, const QString &value) const
    {
        grid->setFocus();
        grid->editCell(row, column);
        QLineEdit *editor = grid->cellEditor();
        ASSERT_NE(editor, nullptr);
        editor->selectAll();
        if (value.isEmpty())
            QTest::keyClick(editor, Qt::Key_Delete);
        else
            commit(editor, value);
        QTest::keyClick(editor, Qt::Key_Return);
    }

private:
    static int keyOf(const QString &button)
    {
        return button == "cmdqd"     ? Qt::Key_Home
               : button == "cmdxq"   ? Qt::Key_Up
               : button == "cmdnext" ? Qt::Key_Down
               : button == "cmdmd"   ? Qt::Key_End
                                     : 0;
    }

    QWidget &m_form;
    QString m_number; // of the tab
};

} // namespace tradewick::test
