// A report object: what a form fills and shows.
#pragma once

#include "data/statement.h"
#include "reporting/report_family.h"
#include "reporting/row_source.h"

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
    Report(ReportFamily family, std::shared_ptr<const ReportTemplate> report);

    const QString &name() const { return m_template->name; }
    const QString &caption() const { return m_template->caption; }
    // What a print job and a file are called: the document's name, and the number of the one document that it shows. A
    // list has several values or none, and bears its name alone.
    QString title() const;
    const ReportTemplate &model() const { return *m_template; }
    const ReportFamily &family() const { return m_family; }

    // Begins a new showing: no label counts as written yet, and those with a text of their own have it again. What was
    // written to the others stays until it is written anew.
    void startOver();

    // Text of a label that callers write. Throws DataError for a name that is none of the report.
    void setLabel(const QString &name, const QString &text);
    // What the label shows now; empty for a name that is no label of the report.
    QString label(const QString &name) const;
    // The picture of an image object from a file; one that is missing or unreadable leaves it empty and gives false.
    // Throws DataError for a name that is no image of the report.
    bool setImage(const QString &name, const QString &path);
    // The labels that neither a caller has written since startOver() nor the report's own code writes: a caller that
    // forgets one prints that of the document before.
    QStringList unsetLabels() const;

    struct {
        QString ConnectionString;
        QString Source; // a statement; empty for a report without rows
        Values values;  // of its placeholders
        // Instead of the statement's: rows that are there already, from the first one anew at each call.
        std::function<std::unique_ptr<RowSource>()> rows{};
    } DataControl1;

    // Shows the report modally, returns when its preview closes, and starts over.
    void show(QWidget *parent = nullptr);

    // The pages without a window, of the rows of DataControl1 or of other rows. Throws DataError.
    std::unique_ptr<Layout> layout(const Paper &paper) const;
    std::unique_ptr<Layout> layout() const { return layout(paperFor(*m_template)); }
    std::unique_ptr<Layout> layout(std::unique_ptr<RowSource> rows, const Paper &paper) const;

private:
    std::unique_ptr<RowSource> rows() const;

    const ReportFamily m_family;
    std::shared_ptr<const ReportTemplate> m_template;
    QHash<QString, QString> m_labels;
    QHash<QString, QImage> m_images;
    QSet<QString> m_written; // labels, since startOver()
};

// Sets what show() does instead of opening the preview, so that a test sees what would be shown; an empty function
// restores the preview.
void setReportViewer(std::function<void(Report &report, QWidget *parent)> viewer);

} // namespace tradewick
