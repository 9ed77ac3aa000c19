// The fields of one record, on one page or on tabs: shows them, writes what is typed into the record, and tells what
// the clerk does with them. Whether that is allowed, and what follows from it, is the form's.
#pragma once

#include "common/field_control.h"
#include "common/window_keys.h"
#include "data/recordset.h"

#include <QWidget>

#include <map>
#include <memory>

class QBoxLayout;
class QLabel;
class QTabWidget;

namespace tradewick
{

class FieldPanel : public QWidget, public TakesKeys
{
    Q_OBJECT

public:
    // spec and records: outlive the panel.
    FieldPanel(const RecordFormSpec &spec, Recordset &records, QWidget *parent);
    ~FieldPanel() override;

    // Shows the current record in all fields, or in those of one column. Without a record, or while it is unread, they
    // are empty.
    void showRecord(int column = -1);
    // The record could not be read: the fields are empty, not the record. Ends with false.
    void setUnread(bool unread) { m_isUnread = unread; }
    void lock(bool locked);

    // All of these end the program for a field that the form does not have: a fault of its declaration.
    const FieldSpec &field(const QString &name) const;
    FieldControl &control(const QString &name) const;
    QString text(const QString &name) const { return control(name).text(); }
    // Writes the record as typing does.
    void setText(const QString &name, const QString &text);
    void focus(const QString &name);
    // An item typed in full into the combo box that has the focus counts as chosen, as when it is left.
    void takeTyped();

    // Puts other items into a combo box; the text that it holds stays.
    void offer(const QString &combo, const QStringList &items);

    // The column as the clerk knows it; its own name where no field shows it.
    QString captionOf(const QString &column) const;
    // Where a grid of lines stands that belongs to a tab.
    QBoxLayout *placeOf(const LineGridSpec &grid) const;
    // The keyboard comes to a grid that stands above a field behind the field before that. Once the grids are there.
    void chainGrids();
    QVector<KeyText> keys() const override; // of the fields of the tab that is shown
    // The tabs, null for a form of one page.
    QTabWidget *tabs() const { return m_tabs; }

Q_SIGNALS:
    void aboutToType(const QString &name); // the next text of a field goes into the record
    void undoPressed();                    // in a field that has nothing of its own to take back
    void typed(const QString &name);       // stands in the record already
    void chosen(const QString &name);      // an item of a combo box
    void entered(const QString &name);     // has the focus now
    void left(const QString &name);        // the focus has gone on

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void addPage(int index);
    QWidget *addFrame(int index, const FieldSpec &first);
    QWidget *addField(const FieldSpec &field, QWidget *page, int index);
    void addTo(QBoxLayout *cell, const FieldSpec &field, QWidget *frame);
    void show(const FieldSpec &field);
    void write(const FieldSpec &field, const QVariant &value, const FieldSpec *typedInto);
    bool key(const QString &name, QWidget *widget, int key);
    void goOn();

    struct Entry {
        const FieldSpec *spec;
        int page;
        std::unique_ptr<FieldControl> control;
    };
    const RecordFormSpec &m_spec;
    Recordset &m_records;
    std::map<QString, Entry> m_fields;
    QVector<const Entry *> m_order; // as declared
    QVector<QBoxLayout *> m_pages;
    QBoxLayout *m_band = nullptr;          // the frames side by side that were begun last
    QHash<QString, QBoxLayout *> m_places; // of the grids that stand above a field
    QTabWidget *m_tabs = nullptr;
    bool m_isUnread = false;
    QString m_textEntered;                // that stood in the field when the focus came there
    const FieldSpec *m_writing = nullptr; // the field that is typed into, while its text goes into the record
    bool m_showing = false;               // fields are being filled from the record
    bool m_composing = false;             // an input method holds text that is not committed yet
};

// A caption without colon, blanks and mark.
QString plainCaption(QString caption);

} // namespace tradewick
