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
#include <QTest>

#include <algorithm>

namespace tradewick::test
{

class FormDriver
{
public:
    explicit FormDriver(QWidget &form) : m_form(form)
    {
        form.resize(1280, 700);
        form.show();
        form.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&form));
    }

    template <class Control> Control *find(const QString &name) const
    {
        auto *control = m_form.findChild<Control *>(name);
        EXPECT_NE(control, nullptr) << name.toStdString();
        return control;
    }
    QWidget *control(const QString &name) const { return find<QWidget>(name); }

    void click(const QString &name) const
    {
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
        m_form.activateWindow(); // without a window manager the list that closed has taken that along
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_form));
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
        return widget ? widget->objectName() : QString();
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
    QWidget &m_form;
};

} // namespace tradewick::test
