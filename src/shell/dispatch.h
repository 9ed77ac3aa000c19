// The forms that commands open, by their names.
#pragma once

#include "common/query_spec.h"
#include "common/record_form_spec.h"

#include <QString>
#include <QVector>

#include <functional>

class QWidget;

namespace tradewick
{

// Where a form stands when it appears, seen from the main window.
enum class Placement {
    Centre,      // over the middle of the free area, as large as it wants to be
    FreeArea,    // fills the free area
    ScreenWidth, // below the tool bar, as wide as the screen
};

struct FormEntry {
    // Makes the form, a window that belongs to the main window. Throws DataError when it cannot be loaded.
    //   openRecord: how a query screen opens the entry form of what it found.
    std::function<QWidget *(QWidget *mainWindow, const OpenRecord &openRecord)> make;
    Placement placement = Placement::FreeArea;
};

// An entry form, which is nothing but its declaration.
struct DeclaredForm {
    QString name;
    RecordFormSpec (*spec)();
    Placement placement;
};

// All entry forms; some are opened by others, not by a command.
const QVector<DeclaredForm> &declaredForms();

// A query screen, the same.
struct DeclaredQuery {
    QString name;
    QuerySpec (*spec)();
};

const QVector<DeclaredQuery> &declaredQueries();

// The entry of a form, or nullptr for a name that has none.
const FormEntry *formEntry(const QString &form);

} // namespace tradewick
