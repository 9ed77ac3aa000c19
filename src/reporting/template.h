// A report template: bands of absolutely placed objects, read from an XML file. All lengths are twips.
#pragma once

#include <QColor>
#include <QString>
#include <QVector>

#include <memory>
#include <utility>

namespace tradewick
{

enum class SectionKind { PageHeader = 2, PageFooter = 3, GroupHeader = 4, GroupFooter = 5, Detail = 6 };
enum class ObjectKind : quint8 { Label, Field, Line, Shape, Image };
enum class TextAlign : quint8 { Left = 0, Right = 1, Centre = 2 };
// Whether a report is printed onto paper that has its lines and fixed texts already.
enum class Overlay : quint8 { Never, Choice, Always };
enum class Summary : quint8 { None, Sum, Count };

// A face as the template names it; what the machine draws it with is the font table's matter.
struct FontSpec {
    QString face = QStringLiteral("宋体");
    double points = 9.75;
    bool bold = false;
    bool operator==(const FontSpec &) const = default;
};

inline bool isCallersName(const QString &label)
{
    return label.startsWith(QLatin1String("L_")) || label.startsWith(QLatin1String("LzM_"));
}

struct ReportObject {
    ObjectKind kind = ObjectKind::Label;
    QString name;
    int x1 = 0, y1 = 0, x2 = 0, y2 = 0; // of the box, or the ends of a line, from the band's top left
    bool visible = true;

    // texts
    QString text; // fixed text of a label, initial text of a field
    int font = 0; // index of ReportTemplate::fonts
    TextAlign align = TextAlign::Left;
    QRgb foreColor = 0xff000000;
    QRgb backColor = 0xffffffff; // white paints nothing, so that what lies below stays
    int charset = 134;

    // fields
    QString dataField;
    QString format;         // empty, "0.00", "#,##0.00" or "mmmm d, yyyy"
    bool pageTotal = false; // shows the number of pages once it is known
    Summary summary = Summary::None;
    bool overReport = false; // the summary runs on from group to group
    int summaryLevel = 0;    // 1 to 3: the group whose rows it takes

    // lines and shapes
    int style = 1;  // 1 solid, 3 dotted, 4 dash-dot, 5 dash-dot-dot
    int weight = 1; // 1 to 3
    int shape = 1;  // 1 rectangle, 2 ellipse, 3 rounded rectangle

    QString except; // "rule: reason; ...": what the check of layouts passes over

    // A free label has no text of its own: its text comes from the caller or from the report's code.
    bool isFree() const { return kind == ObjectKind::Label && text.isEmpty(); }
    // Callers write labels of these names, with and without a text of their own; other free labels are the report's.
    bool isCallersLabel() const { return kind == ObjectKind::Label && isCallersName(name); }
    bool isWritable() const { return isFree() || isCallersLabel(); }
    bool operator==(const ReportObject &) const = default;
};

struct Section {
    SectionKind kind = SectionKind::Detail;
    int level = 0; // of a group band, 1 the outermost
    int height = 0;
    QString groupField;
    bool canGrow = false;          // becomes higher for texts longer than their boxes
    QVector<ReportObject> objects; // in drawing order
};

struct ReportTemplate {
    QString name, caption, documentName;
    int printWidth = 0;
    int leftMargin = 0, rightMargin = 0, topMargin = 0, bottomMargin = 0;
    QVector<FontSpec> fonts;   // each face, size and weight once
    QVector<Section> sections; // in their order on the page
    QString except;            // of the report as a whole, as of an object

    Overlay overlay = Overlay::Never;

    // From where to where its objects reach across a sheet, the left margin included; nothing for one without.
    std::pair<int, int> extent() const;
    // The band, or nullptr when the template has none such.
    const Section *section(SectionKind kind, int level = 0) const;
    // Number of nested groups, 0 to 3.
    int groups() const;
    // The object of that name, or nullptr.
    const ReportObject *object(const QString &objectName) const;
};

// Reads a template. A file that cannot be read or is no template gives nullptr, and error names file, line and what is
// wrong.
std::shared_ptr<const ReportTemplate> loadTemplate(const QString &path, QString *error);

} // namespace tradewick
