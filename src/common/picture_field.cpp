#include "common/picture_field.h"

#include "common/dialogs.h"

#include <QDateTime>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QImageReader>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>

namespace tradewick
{

namespace
{

constexpr QSize imageSize(160, 100);

// Changes when the path names another file, or the file itself is another.
QString identity(const QString &path)
{
    const QFileInfo file(path);
    return path + u'\n' + (file.exists() ? file.lastModified().toString(Qt::ISODateWithMs) : QString());
}

} // namespace

PictureField::PictureField(const PictureSpec &spec, QWidget *parent)
    : QWidget(parent), m_spec(spec), m_path(new QLineEdit(this)), m_image(new QLabel(this))
{
    m_image->setObjectName("Image1");
    m_image->setAccessibleName(QStringLiteral("徽标图片"));
    m_image->setFixedSize(imageSize);
    m_image->setAlignment(Qt::AlignCenter);
    m_image->setFrameShape(QFrame::StyledPanel);
    m_image->installEventFilter(this);
    m_path->setAccessibleName(QStringLiteral("徽标文件"));
    m_path->setPlaceholderText(QStringLiteral("徽标文件"));
    m_path->installEventFilter(this);
    auto *buttons = new QHBoxLayout;
    const auto add = [&](const char *name, const QString &caption, const std::function<void()> &action) {
        auto *button = new QPushButton(caption, this);
        button->setObjectName(name);
        button->setAccessibleName(caption);
        button->setAutoDefault(true); // Enter presses it as the space bar does
        connect(button, &QPushButton::clicked, this, action);
        buttons->addWidget(button);
    };
    add("Command1", QStringLiteral("设置徽标"), [this] { choose(); });
    add("Command2", QStringLiteral("删除徽标"), [this] { m_path->setText(m_spec.cleared); });
    buttons->addStretch(1);
    auto *side = new QVBoxLayout;
    side->addWidget(m_path);
    side->addLayout(buttons);
    side->addStretch(1);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_image);
    layout->addLayout(side, 1);
    connect(m_path, &QLineEdit::textChanged, this, &PictureField::load);
}

void PictureField::choose()
{
    const auto path = dialogs().openFile(this, QStringLiteral("选取图标对话框"),
                                         QStringLiteral("图形格式(*.jpg);;所有文件(*.*);;(*.bmp)"));
    if (path)
        m_path->setText(*path);
}

void PictureField::load()
{
    const QString path = m_path->text().trimmed();
    m_shown = identity(path);
    m_image->clear();
    if (path.isEmpty())
        return;
    QImageReader reader(path);
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    if (const QImage image = reader.read(); !image.isNull())
        m_image->setPixmap(
            QPixmap::fromImage(image.scaled(imageSize * 0.95, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
    else
        m_image->setText(QStringLiteral("无法显示图片"));
}

// A file that came or changed since is shown as soon as the form is painted again.
void PictureField::paintEvent(QPaintEvent *event)
{
    if (identity(m_path->text().trimmed()) != m_shown)
        load();
    QWidget::paintEvent(event);
}

bool PictureField::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ReadOnlyChange)
        for (QPushButton *button : findChildren<QPushButton *>())
            button->setEnabled(!m_path->isReadOnly());
    if (watched == m_image && m_spec.clickChooses && event->type() == QEvent::MouseButtonRelease &&
        !m_path->isReadOnly() && static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton)
        choose();
    return QWidget::eventFilter(watched, event);
}

} // namespace tradewick
