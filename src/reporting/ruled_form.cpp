#include "reporting/ruled_form.h"

#include <QRect>
#include <QStringList>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>
#include <optional>

namespace tradewick
{

namespace
{

using Attributes = QMap<QString, QString>;

constexpr int maxColumns = 60, maxRows = 100, maxCells = 1000, maxLength = 31680;
constexpr double lineOfSize = 1.15 * 20; // twips of a line for a point of its size
const QStringList textAttributes{"font", "size", "bold", "align", "foreColor", "backColor", "charset"};
const QStringList fieldAttributes{"format", "summary", "running", "summaryGroup", "pageTotal"};
// Those that the form and its rows hand on to their cells.
const QStringList handedOn{"font",    "size",        "bold",        "align",        "foreColor",
                           "charset", "captionFont", "captionSize", "captionBold",  "captionAlign",
                           "pad",     "padY",        "valign",      "captionHeight"};
const QStringList ownOfCell{"span",  "rows", "caption", "captionName", "field",     "label", "name",
                            "lines", "fill", "beside",  "except",      "backColor", "open",  "heavy"};

struct Cell {
    int row = 0, column = 0; // from 0, the column as its row counts them
    int rows = 1;
    int left = 0, right = 0;
    Attributes attributes;
    QVector<ObjectElement> inside;
    QStringList open, heavy; // sides
};

// Rows are read one by one, each cut into columns of its own; lines are drawn on the grid that all of them make.
class RuledForm
{
public:
    explicit RuledForm(QXmlStreamReader &xml) : m_xml(xml) {}

    QVector<ObjectElement> read()
    {
        Attributes own = attributes();
        m_name = own.take("name");
        if (m_name.isEmpty())
            fail(QStringLiteral("a ruled form has a name"));
        if (own.contains("outer"))
            m_outer = own.take("outer");
        if (own.contains("inner"))
            m_inner = own.take("inner");
        m_open = sides(own.take("open"));
        m_light = sides(own.take("light"));
        const auto left = number(own, "left", -maxLength, maxLength), top = number(own, "top", -maxLength, maxLength);
        if (!left || !top)
            fail(QStringLiteral("a ruled form takes left and top"));
        m_y = {top.value_or(0)};
        m_columns = borders(left.value_or(0), own.take("columns"));
        refuseRest(own, handedOn);
        while (m_xml.readNextStartElement())
            readRow(own);
        if (m_taken.size() != m_y.size() - 1)
            fail(QStringLiteral("%1: a cell reaches below the last row").arg(m_name));
        if (!m_xml.hasError())
            draw();
        return m_xml.hasError() ? QVector<ObjectElement>() : m_grounds + m_contents + m_lines;
    }

private:
    void fail(const QString &what)
    {
        if (!m_xml.hasError())
            m_xml.raiseError(what);
    }

    Attributes attributes() const
    {
        Attributes all;
        for (const QXmlStreamAttribute &attribute : m_xml.attributes())
            all.insert(attribute.name().toString(), attribute.value().toString());
        return all;
    }

    void refuseRest(const Attributes &rest, const QStringList &known)
    {
        for (auto at = rest.keyBegin(); at != rest.keyEnd(); ++at)
            if (!known.contains(*at))
                fail(QStringLiteral("<%1> has no attribute %2").arg(m_xml.name(), *at));
    }

    // Takes a whole number; nothing without such an attribute.
    std::optional<int> number(Attributes &of, const char *name, int low, int high)
    {
        if (!of.contains(QLatin1String(name)))
            return {};
        const QString text = of.take(QLatin1String(name));
        bool ok = false;
        const int value = text.toInt(&ok);
        if (!ok || value < low || value > high)
            fail(QStringLiteral("%1=\"%2\": a whole number from %3 to %4 expected")
                     .arg(QLatin1String(name), text)
                     .arg(low)
                     .arg(high));
        return qBound(low, value, high);
    }

    // The borders of columns of these widths, from the left one on.
    QVector<int> borders(int left, const QString &widths)
    {
        QVector<int> places{left};
        bool ok = true;
        for (const QString &width : widths.split(u' ', Qt::SkipEmptyParts)) {
            bool number = false;
            const int value = width.toInt(&number);
            ok &= number && value > 0 && value <= maxLength;
            places.append(places.constLast() + (ok ? value : 0));
        }
        if (!ok || places.size() < 2 || places.size() > maxColumns + 1)
            fail(QStringLiteral("columns=\"%1\": the widths of 1 to %2 columns expected").arg(widths).arg(maxColumns));
        return places;
    }

    QStringList sides(const QString &text)
    {
        const QStringList all = text.split(u' ', Qt::SkipEmptyParts);
        for (const QString &side : all)
            if (!QStringList{"left", "top", "right", "bottom"}.contains(side))
                fail(QStringLiteral("\"%1\" is no side").arg(side));
        return all;
    }

    void readRow(Attributes handed)
    {
        if (m_xml.name() != QLatin1String("row"))
            return fail(QStringLiteral("<row> expected, found <%1>").arg(m_xml.name()));
        Attributes own = attributes();
        const int row = static_cast<int>(m_y.size()) - 1;
        const auto height = number(own, "height", 1, maxLength);
        if (!height || row >= maxRows)
            return fail(QStringLiteral("%1: a row without height, or more than %2 rows").arg(m_name).arg(maxRows));
        m_y.append(m_y.constLast() + *height);
        const int left = m_columns.constFirst(), right = m_columns.constLast();
        const QVector<int> places = own.contains("columns") ? borders(left, own.take("columns")) : m_columns;
        if (places.constLast() != right)
            fail(QStringLiteral("%1: row %2 is %3 wide, the form %4")
                     .arg(m_name)
                     .arg(row + 1)
                     .arg(places.constLast() - left)
                     .arg(right - left));
        refuseRest(own, handedOn + QStringList{"open", "heavy"});
        handed.insert(own);
        m_taken.resize(qMax(m_taken.size(), qsizetype(row) + 1));
        int column = 0;
        while (m_xml.readNextStartElement() && !m_xml.hasError())
            column = readCell(handed, places, row, column);
        if (freeColumn(places, row, column) < places.size() - 1)
            fail(QStringLiteral("%1: row %2 does not fill its %3 columns")
                     .arg(m_name)
                     .arg(row + 1)
                     .arg(places.size() - 1));
    }

    bool isTaken(int row, int left, int right) const
    {
        return std::any_of(m_taken[row].cbegin(), m_taken[row].cend(),
                           [&](int cell) { return m_cells[cell].left < right && left < m_cells[cell].right; });
    }

    int freeColumn(const QVector<int> &places, int row, int from) const
    {
        while (from < places.size() - 1 && isTaken(row, places[from], places[from + 1]))
            ++from;
        return from;
    }

    // Gives the column behind it.
    int readCell(const Attributes &handed, const QVector<int> &places, int row, int column)
    {
        if (m_xml.name() != QLatin1String("cell")) {
            fail(QStringLiteral("<cell> expected, found <%1>").arg(m_xml.name()));
            return column;
        }
        Cell cell;
        const Attributes own = attributes();
        refuseRest(own, handedOn + ownOfCell + fieldAttributes);
        cell.attributes = handed;
        cell.attributes.insert(own);
        cell.row = row;
        cell.column = freeColumn(places, row, column);
        const int behind = cell.column + number(cell.attributes, "span", 1, maxColumns).value_or(1);
        cell.rows = number(cell.attributes, "rows", 1, maxRows).value_or(1);
        cell.open = sides(cell.attributes.take("open"));
        cell.heavy = sides(cell.attributes.take("heavy"));
        if (behind >= places.size() || m_cells.size() >= maxCells ||
            isTaken(row, places[cell.column], places[behind])) {
            fail(QStringLiteral("%1: a cell of row %2 has no room").arg(m_name).arg(row + 1));
            return column;
        }
        cell.left = places[cell.column];
        cell.right = places[behind];
        m_taken.resize(qMax(m_taken.size(), qsizetype(row) + cell.rows));
        for (int down = row; down < row + cell.rows; ++down)
            m_taken[down].append(static_cast<int>(m_cells.size()));
        while (m_xml.readNextStartElement()) {
            ObjectElement object{m_xml.name().toString(), attributes(), {}};
            object.text = m_xml.readElementText();
            cell.inside.append(object);
        }
        m_cells.append(cell);
        return behind;
    }

    void draw()
    {
        for (Cell &cell : m_cells) {
            drawCell(cell);
            m_x += {cell.left, cell.right};
        }
        std::sort(m_x.begin(), m_x.end());
        m_x.erase(std::unique(m_x.begin(), m_x.end()), m_x.end());
        for (int border = 0; border < m_y.size(); ++border)
            drawBorder(border, true);
        for (int border = 0; border < m_x.size(); ++border)
            drawBorder(border, false);
    }

    // The border of that number from the top or the left, in runs of one weight.
    void drawBorder(int border, bool across)
    {
        const QVector<int> &along = across ? m_x : m_y;
        const int segments = static_cast<int>(along.size()) - 1;
        const QString place = QString::number((across ? m_y : m_x)[border]);
        QString weight;
        int start = 0;
        for (int segment = 0; segment <= segments; ++segment) {
            const QString next = segment < segments ? weightOf(border, segment, across) : QString();
            if (next == weight)
                continue;
            if (!weight.isEmpty()) {
                const QString from = QString::number(along[start]), to = QString::number(along[segment]);
                const QString name = QStringLiteral("%1_%2%3").arg(m_name, across ? "H" : "V").arg(border);
                m_lines.append({"line",
                                {{"name", start > 0 ? name + QStringLiteral("_%1").arg(start) : name},
                                 {"x1", across ? from : place},
                                 {"y1", across ? place : from},
                                 {"x2", across ? to : place},
                                 {"y2", across ? place : to},
                                 {"weight", weight}},
                                {}});
            }
            weight = next;
            start = segment;
        }
    }

    const Cell *cellAt(int row, int column) const
    {
        if (row < 0 || row >= m_taken.size() || column < 0 || column >= m_x.size() - 1)
            return nullptr;
        for (int cell : m_taken[row])
            if (m_cells[cell].left <= m_x[column] && m_x[column] < m_cells[cell].right)
                return &m_cells[cell];
        return nullptr;
    }

    // Weight of a border between two neighbours of the grid; empty where no line is drawn.
    QString weightOf(int border, int segment, bool across) const
    {
        const Cell *before = across ? cellAt(border - 1, segment) : cellAt(segment, border - 1);
        const Cell *behind = across ? cellAt(border, segment) : cellAt(segment, border);
        if (before == behind)
            return {};
        const QString endOfBefore = across ? "bottom" : "right", startOfBehind = across ? "top" : "left";
        const auto cellSays = [&](QStringList Cell::*which) {
            return (before && (before->*which).contains(endOfBefore)) ||
                   (behind && (behind->*which).contains(startOfBehind));
        };
        const auto formSays = [&](const QStringList &which) {
            return (!before && which.contains(startOfBehind)) || (!behind && which.contains(endOfBefore));
        };
        if (cellSays(&Cell::heavy))
            return m_outer;
        if (cellSays(&Cell::open) || formSays(m_open))
            return {};
        return (before && behind) || formSays(m_light) ? m_inner : m_outer;
    }

    void drawCell(Cell &cell)
    {
        Attributes &own = cell.attributes;
        const QRect box(QPoint(cell.left, m_y[cell.row]),
                        QSize(cell.right - cell.left, m_y[cell.row + cell.rows] - m_y[cell.row]));
        const int pad = number(own, "pad", 0, 1000).value_or(60), padY = number(own, "padY", 0, 1000).value_or(15);
        const QRect inner(box.left() + pad, box.top() + padY, qMax(0, box.width() - 2 * pad),
                          qMax(0, box.height() - 2 * padY));
        const QString place = QStringLiteral("%1_R%2C%3").arg(m_name).arg(cell.row + 1).arg(cell.column + 1);
        if (own.contains("fill"))
            m_grounds.append(boxed("shape", place + u'S', box, {{"backColor", own.take("fill")}}));

        const bool value = own.contains("field") || own.contains("label");
        QRect captionBox = inner, valueBox = inner;
        if (own.contains("caption") && value) {
            if (const auto beside = number(own, "beside", 0, maxLength)) {
                captionBox.setWidth(*beside);
                valueBox.setLeft(inner.left() + *beside);
                captionBox = upright(captionBox, own, "captionSize");
                valueBox = upright(valueBox, own, "size");
            } else {
                captionBox.setHeight(
                    number(own, "captionHeight", 0, maxLength).value_or(lineHeight(own, "captionSize")));
                valueBox.setTop(captionBox.top() + captionBox.height());
            }
        } else {
            captionBox = upright(inner, own, "captionSize");
            valueBox = upright(inner, own, "size");
        }
        if (own.contains("caption"))
            m_contents.append(caption(own, place, captionBox, !value));
        if (value)
            m_contents.append(valueOf(own, place + u'V', valueBox));
        for (ObjectElement &object : cell.inside)
            m_contents.append(placed(object, box, inner));
    }

    static int lineHeight(const Attributes &own, const char *size)
    {
        const double points = own.value(QLatin1String(size), own.value("size", "9.75")).toDouble();
        return static_cast<int>(std::ceil(qBound(1.0, points, 200.0) * lineOfSize));
    }

    // Where a text goes that has its box for itself: as high as its lines, in the middle unless told otherwise. A box
    // for more than one line of a value is taken whole, for nobody knows how many it will be.
    QRect upright(const QRect &inner, const Attributes &own, const char *size)
    {
        const bool caption = qstrcmp(size, "captionSize") == 0;
        const int line = lineHeight(own, size), room = qMax(1, inner.height() / line);
        const int lines = own.contains("lines") ? own.value("lines").toInt()
                          : caption             ? int(own.value("caption").count(u'\n')) + 1
                                                : room;
        const int height =
            qBound(0, lines > 1 && !caption && !own.contains("lines") ? inner.height() : lines * line, inner.height());
        const QString valign = own.value("valign", "middle");
        const int spare = inner.height() - height;
        const int down = valign == QLatin1String("top")      ? 0
                         : valign == QLatin1String("bottom") ? spare
                         : valign == QLatin1String("middle") ? spare / 2
                                                             : -1;
        if (down < 0)
            fail(QStringLiteral("valign=\"%1\" is not known").arg(valign));
        return {inner.left(), inner.top() + qMax(0, down), inner.width(), height};
    }

    static ObjectElement boxed(const QString &kind, const QString &name, const QRect &box, Attributes further)
    {
        further.insert("name", name);
        further.insert("left", QString::number(box.left()));
        further.insert("top", QString::number(box.top()));
        further.insert("width", QString::number(box.width()));
        further.insert("height", QString::number(box.height()));
        return {kind, further, {}};
    }

    // A caption alone is the text of its cell; above a value it is neither bold nor set as that is.
    static ObjectElement caption(const Attributes &own, const QString &place, const QRect &box, bool alone)
    {
        Attributes text;
        for (const QString &name : textAttributes) {
            const QString ofCaption = "caption" + name.left(1).toUpper() + name.mid(1);
            const bool ofValue = !alone && (name == QLatin1String("bold") || name == QLatin1String("align"));
            if (own.contains(ofCaption))
                text.insert(name, own.value(ofCaption));
            else if (own.contains(name) && !ofValue)
                text.insert(name, own.value(name));
        }
        if (own.contains("except"))
            text.insert("except", own.value("except"));
        ObjectElement made = boxed("label", own.value("captionName", place), box, text);
        made.text = own.value("caption");
        return made;
    }

    static ObjectElement valueOf(const Attributes &own, const QString &place, const QRect &box)
    {
        const bool label = own.contains("label");
        Attributes text;
        for (const QString &name : textAttributes + QStringList{"except"} + (label ? QStringList() : fieldAttributes))
            if (own.contains(name))
                text.insert(name, own.value(name));
        if (!label)
            text.insert("dataField", own.value("field"));
        return boxed(label ? "label" : "field", own.value("name", label ? own.value("label") : place), box, text);
    }

    // An object written inside a cell counts from the cell's top left; what it does not tell of its box is the cell's.
    static ObjectElement placed(ObjectElement object, const QRect &box, const QRect &inner)
    {
        Attributes &own = object.attributes;
        const auto move = [&](const char *name, int by) {
            const QString key = QLatin1String(name);
            bool ok = false;
            const int value = own.value(key).toInt(&ok);
            if (ok)
                own.insert(key, QString::number(value + by));
        };
        if (object.kind == QLatin1String("line")) {
            for (const char *name : {"x1", "x2"})
                move(name, box.left());
            for (const char *name : {"y1", "y2"})
                move(name, box.top());
            return object;
        }
        const bool left = own.contains("left"), top = own.contains("top");
        move("left", box.left());
        move("top", box.top());
        if (!left)
            own.insert("left", QString::number(inner.left()));
        if (!top)
            own.insert("top", QString::number(inner.top()));
        if (!own.contains("width"))
            own.insert("width", QString::number(inner.left() + inner.width() - own.value("left").toInt()));
        if (!own.contains("height"))
            own.insert("height", QString::number(inner.top() + inner.height() - own.value("top").toInt()));
        return object;
    }

    QXmlStreamReader &m_xml;
    QString m_name, m_outer = "3", m_inner = "1";
    QStringList m_open, m_light; // sides of the form without a line, and with one as inside
    QVector<int> m_columns;      // borders of rows that have none of their own
    QVector<int> m_x, m_y;       // borders of the grid
    QVector<Cell> m_cells;
    QVector<QVector<int>> m_taken; // the cells of each row
    QVector<ObjectElement> m_grounds, m_contents, m_lines;
};

} // namespace

QVector<ObjectElement> ruledForm(QXmlStreamReader &xml)
{
    return RuledForm(xml).read();
}

} // namespace tradewick
