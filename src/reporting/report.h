// A report object: what a form fills and shows.
#pragma once

#include "data/statement.h"
#include "reporting/layout.h"
#include "reporting/report_table.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <functional>
#include <memory>

class QWidget;

namespace tradewick
{

class Report
{
public:
    Report(const ReportEntry &entry, std::shared_ptr<const ReportTemplate> report);

    const QString &name() const { return m_template->name; }
    const QString &caption() const { return m_template->caption; }
    const ReportTemplate &model() const { return *m_template; }
    const ReportFamily &family() const { return m_entry.family; }

    // Text of a free label; it stays from showing to showing until it is written again. Throws std::invalid_argument
    // for a name that is no free label of the report.
    void setLabel(const QString &name, const QString &text);
    QString label(const QString &name) const { return m_labels.value(name); }
    // The picture of an image object from a file; one that is missing or unreadable leaves it empty. Throws
    // std::invalid_argument for a name that is no image of the report.
    void setImage(const QString &name, const QString &path);
    // The free labels L_... that nobody has written since the last show: a caller that forgets one prints that of the
    // document before.
    QStringList unsetLabels() const;

    struct {
        QString ConnectionString;
        QString Source; // a statement; empty for a report without rows
        Values values;  // of its placeholders
    } DataControl1;

    // Shows the report modally and returns when its preview closes.
    void show(QWidget *parent = nullptr);

    // The pages without a window, of the rows of DataControl1 or of other rows. Throws DataError.
    std::unique_ptr<Layout> layout(const Paper &paper) const;
    std::unique_ptr<Layout> layout() const { return layout(paperFor(*m_template)); }
    std::unique_ptr<Layout> layout(std::unique_ptr<RowSource> rows, const Paper &paper) const;

private:
    std::unique_ptr<RowSource> rows() const;

    const ReportEntry &m_entry;
    std::shared_ptr<const ReportTemplate> m_template;
    QHash<QString, QString> m_labels;
    QHash<QString, QImage> m_images;
    QSet<QString> m_written; // labels, since the last show
};

// The one report object of that name, made at first use. Throws std::invalid_argument when there is no such report,
// std::runtime_error when its template is damaged.
Report &report(const QString &name);

// Sets what show() does instead of opening the preview, so that a test sees what would be shown; an empty function
// restores the preview.
void setReportViewer(std::function<void(Report &report, QWidget *parent)> viewer);

} // namespace tradewick
