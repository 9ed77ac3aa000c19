// What the program's style has to show.
#include "common/field_control.h"
#include "documents/mailing_certificate.h"
#include "shell/style.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QTableView>
#include <QTest>
#include <QTreeView>
#include <QVBoxLayout>

using namespace tradewick;

TEST(Style, TheFocusShowsOnLockedFieldsAndListsToo)
{
    applyStyle(*qApp);
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    auto *locked = new QLineEdit("locked", &window);
    locked->setReadOnly(true);
    for (QWidget *control :
         {static_cast<QWidget *>(new QLineEdit("open", &window)), static_cast<QWidget *>(locked),
          static_cast<QWidget *>(new QTableView(&window)), static_cast<QWidget *>(new QTreeView(&window))})
        layout->addWidget(control);
    window.show();
    QApplication::setActiveWindow(&window);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const QColor highlight = window.palette().color(QPalette::Highlight);
    for (int i = 0; i < layout->count(); ++i) {
        QWidget *control = layout->itemAt(i)->widget();
        const auto edge = [control] { return control->grab().toImage().pixelColor(control->width() / 2, 0); };
        for (int other = 0; other < layout->count(); ++other) {
            layout->itemAt(other)->widget()->setFocus();
            EXPECT_EQ(edge() == highlight, other == i) << control->metaObject()->className();
        }
    }
    qApp->setStyleSheet({});
}

TEST(Style, TextsThatAreUnlockedTogetherAllShowIt)
{
    applyStyle(*qApp);
    YY_JdZm_rpt editor(document("寄单证明"), "FP1", nullptr);
    editor.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&editor));
    editor.findChild<QPushButton *>("Cmdedit")->click();
    for (const QPlainTextEdit *field : editor.findChildren<QPlainTextEdit *>()) {
        const QColor open = editor.palette().color(QPalette::Base);
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                const QImage screen = editor.screen()->grabWindow(editor.winId()).toImage();
                return screen.pixelColor(field->geometry().bottomRight() - QPoint(20, 5)) == open;
            },
            1000))
            << field->objectName().toStdString();
    }
    qApp->setStyleSheet({});
}

// Whether a long text can be typed into is seen at once, before it has the focus. Looked at is what stands on the
// screen: a picture made of the widget would paint it anew.
TEST(Style, ALockedLongTextHasTheGroundOfTheWindow)
{
    applyStyle(*qApp);
    QWidget window;
    const FieldSpec spec{"Text(0)", "beizhu", "", field::longText};
    const auto control = FieldControl::make(spec, {}, &window, [](const QVariant &) {});
    control->setLocked(true);
    (new QVBoxLayout(&window))->addWidget(control->widget());
    window.resize(300, 100);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    const auto ground = [&] {
        const QImage screen = window.screen()->grabWindow(window.winId()).toImage();
        return screen.pixelColor(control->widget()->geometry().center());
    };
    for (const bool locked : {true, false, true}) {
        control->setLocked(locked);
        const QColor wanted = window.palette().color(locked ? QPalette::Window : QPalette::Base);
        EXPECT_TRUE(QTest::qWaitFor([&] { return ground() == wanted; }, 1000)) << locked;
    }
    qApp->setStyleSheet({});
}
