#include "reporting/excel_dialog.h"

#include "common/dialogs.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QStorageInfo>
#include <QTreeView>

#include <filesystem>

namespace tradewick
{

QString excelFileName;
QString excelTargetFile;

namespace
{

const QString notice = QStringLiteral("系统提示");

// The mount that a folder lies on; the root where the system does not tell, as in a changed root.
QString driveOf(const QString &folder)
{
    const QString mount = QStorageInfo(folder).rootPath();
    return mount.isEmpty() ? QDir::rootPath() : mount;
}

// Mounts that can hold a user's file, the one of the given folder among them.
QStringList drives(const QString &folder)
{
    QStringList found{QDir::rootPath(), driveOf(folder)};
    for (const QStorageInfo &volume : QStorageInfo::mountedVolumes()) {
        if (volume.isValid() && volume.isReady() && volume.bytesTotal() > 0 && QFileInfo(volume.rootPath()).isDir())
            found.append(volume.rootPath());
    }
    found.removeDuplicates();
    found.sort();
    return found;
}

} // namespace

SJ_EXCEL_ZH::SJ_EXCEL_ZH(QWidget *parent)
    : QDialog(parent), m_folders(new QFileSystemModel(this)), m_drives(new QComboBox), m_tree(new QTreeView),
      m_files(new QListWidget)
{
    setObjectName(QStringLiteral("SJ_EXCEL_ZH"));
    setWindowTitle(QStringLiteral("转为EXCEL文档"));
    auto *grid = new QGridLayout(this);
    const auto add = [&](QWidget *control, const QString &name, const QString &caption, int row, int column) {
        control->setObjectName(name);
        control->setAccessibleName(caption);
        auto *label = new QLabel(caption + QLatin1Char(':'));
        label->setBuddy(control);
        grid->addWidget(label, row, column);
        grid->addWidget(control, row + 1, column, column == 0 ? 1 : 3, 1);
    };
    add(m_drives, QStringLiteral("Drive1"), QStringLiteral("驱动器"), 0, 0);
    add(m_tree, QStringLiteral("Dir1"), QStringLiteral("文件夹"), 2, 0);
    add(m_files, QStringLiteral("File1"), QStringLiteral("文件"), 0, 1);
    grid->setRowStretch(3, 1);
    grid->setColumnStretch(0, 3);
    grid->setColumnStretch(1, 2);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    const auto addButton = [&](const QString &name, const QString &caption, void (SJ_EXCEL_ZH::*action)()) {
        auto *button = new QPushButton(caption);
        button->setObjectName(name);
        button->setAccessibleName(caption);
        buttons->addWidget(button);
        connect(button, &QPushButton::clicked, this, action);
        return button;
    };
    addButton(QStringLiteral("Cmd_new"), QStringLiteral("新建文件夹"), &SJ_EXCEL_ZH::makeFolder)->setAutoDefault(false);
    addButton(QStringLiteral("Cmd_export"), QStringLiteral("转ExceL"), &SJ_EXCEL_ZH::chooseFile)->setDefault(true);
    grid->addLayout(buttons, 4, 0, 1, 2);

    m_folders->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
    m_folders->setOption(QFileSystemModel::DontUseCustomDirectoryIcons);
    m_folders->setRootPath(QDir::rootPath());
    m_tree->setModel(m_folders);
    m_tree->setHeaderHidden(true);
    for (int column = 1; column < m_folders->columnCount(); ++column)
        m_tree->hideColumn(column);

    const QString start = QCoreApplication::applicationDirPath();
    m_drives->addItems(drives(start));
    m_drives->setCurrentText(driveOf(start));
    connect(m_drives, &QComboBox::currentTextChanged, this, &SJ_EXCEL_ZH::enter);
    connect(m_tree->selectionModel(), &QItemSelectionModel::currentChanged, this, &SJ_EXCEL_ZH::listFiles);
    connect(m_folders, &QFileSystemModel::layoutChanged, this, [this] {
        if (!m_tree->hasFocus()) // folders that came in above have moved the chosen one out of sight
            m_tree->scrollTo(m_tree->currentIndex());
    });
    enter(start);
    resize(640, 420);
}

// The path of a name in the chosen folder. A drive's root ends in a separator already.
QString SJ_EXCEL_ZH::pathOf(const QString &name) const
{
    const QString folder = m_folders->filePath(m_tree->currentIndex());
    return folder.endsWith(QLatin1Char('/')) ? folder + name : folder + QLatin1Char('/') + name;
}

void SJ_EXCEL_ZH::enter(const QString &folder)
{
    const QModelIndex index = m_folders->index(folder);
    m_tree->setCurrentIndex(index);
    m_tree->expand(index);
    m_tree->scrollTo(index);
}

void SJ_EXCEL_ZH::listFiles()
{
    m_files->clear();
    m_files->addItems(QDir(pathOf({})).entryList(QDir::Files, QDir::Name | QDir::IgnoreCase));
}

void SJ_EXCEL_ZH::makeFolder()
{
    const QString name = dialogs().input(this, QStringLiteral("输入新文件夹名"), notice).value_or(QString());
    if (name.isEmpty())
        return;
    const QString path = pathOf(name);
    std::error_code error;
    if (!std::filesystem::create_directory(path.toStdU16String(), error)) {
        const QString reason =
            error ? QString::fromLocal8Bit(error.message().c_str()) : QStringLiteral("文件夹已经存在");
        dialogs().message(this, QStringLiteral("不能新建文件夹 %1：%2").arg(path, reason), notice,
                          MessageIcon::Exclamation);
    }
    m_folders->index(path); // the tree shows it at once, not at the next look at the disk
    listFiles();
}

void SJ_EXCEL_ZH::chooseFile()
{
    const QString name = dialogs().input(this, QStringLiteral("请输入文件名(默认.xls)"), notice).value_or(QString());
    if (name.isEmpty())
        return;
    excelFileName = name;
    excelTargetFile = pathOf(name + QStringLiteral(".xls"));
    accept();
}

} // namespace tradewick
