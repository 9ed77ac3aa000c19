#include "common/stop_box.h"

#include <QApplication>
#include <QPushButton>

namespace tradewick
{

namespace
{

constexpr qint64 shownAfter = 500, betweenLooks = 50; // ms

} // namespace

StopBox::StopBox(QWidget *parent, const QString &text) : m_parent(parent), m_text(text), m_nextLook(shownAfter)
{
    m_begun.start();
}

StopBox::~StopBox()
{
    for (const QPointer<QWidget> &window : std::as_const(m_still))
        if (window)
            window->setUpdatesEnabled(true);
}

void StopBox::show()
{
    const auto windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows)
        if (window->isVisible() && window->updatesEnabled()) {
            window->setUpdatesEnabled(false);
            m_still.append(window);
        }
    m_box = std::make_unique<QProgressDialog>(m_text, QStringLiteral("停止"), 0, 0,
                                              m_parent); // nobody knows how much there is
    m_box->setWindowTitle(QStringLiteral("系统提示"));
    m_box->setWindowModality(Qt::ApplicationModal);
    // Not the key that began the work, pressed a little too long.
    auto *stop = m_box->findChild<QPushButton *>();
    stop->setAutoDefault(false);
    stop->setFocusPolicy(Qt::NoFocus);
    stop->setToolTip(QStringLiteral("Esc"));
    m_box->show();
    QApplication::changeOverrideCursor(Qt::BusyCursor);
}

bool StopBox::goesOn()
{
    const qint64 now = m_begun.elapsed();
    if (now >= m_nextLook) {
        m_nextLook = now + betweenLooks;
        if (!m_box)
            show();
        m_box->setLabelText(QStringLiteral("%1（已用 %2 秒，按 Esc 停止）").arg(m_text).arg(now / 1000));
        QApplication::processEvents();
    }
    return !m_box || m_box->isVisible(); // it hides itself however it is left
}

} // namespace tradewick
