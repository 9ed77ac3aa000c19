// Into which file a shown report goes as a workbook.
#pragma once

#include <QDialog>

class QComboBox;
class QFileSystemModel;
class QListWidget;
class QTreeView;

namespace tradewick
{

extern QString excelFileName;   // the file's name as it was typed, without extension
extern QString excelTargetFile; // the full path to export to; keeps its value from one export to the next

// Sets both names when a file name is given; a dialog that ends in any other way, close() included, leaves them.
class SJ_EXCEL_ZH : public QDialog
{
    Q_OBJECT

public:
    explicit SJ_EXCEL_ZH(QWidget *parent = nullptr);

private:
    QString pathOf(const QString &name) const;
    void enter(const QString &folder);
    void listFiles();
    void makeFolder();
    void chooseFile();

    QFileSystemModel *m_folders;
    QComboBox *m_drives;
    QTreeView *m_tree;
    QListWidget *m_files;
};

} // namespace tradewick
