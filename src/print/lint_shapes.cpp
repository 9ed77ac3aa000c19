#include "print/lint_shapes.h"

#include <QLineF>
#include <QMap>

#include <algorithm>
#include <cmath>
#include <tuple>

namespace tradewick
{

namespace
{

constexpr double openFrom = 0.5, openTo = 60;
constexpr double doubleRule = 30; // parallel lines so far apart are two lines on purpose
constexpr double underHead = 0.7; // of the narrower of text and head
constexpr int leastHeads = 3;     // fewer are no table

struct Stroke {
    QLineF line;
    const ReportObject *object;
};

double distance(QPointF from, const QLineF &to)
{
    const QPointF along = to.p2() - to.p1(), off = from - to.p1();
    const double square = QPointF::dotProduct(along, along);
    const double at = square > 0 ? qBound(0.0, QPointF::dotProduct(off, along) / square, 1.0) : 0;
    return QLineF(from, to.p1() + at * along).length();
}

// Two lines side by side, such as the two of a rule under a sum.
bool isDoubleRule(const QLineF &a, const QLineF &b, double apart)
{
    const QPointF along = a.p2() - a.p1();
    const double cross = along.x() * b.dy() - along.y() * b.dx();
    if (apart < doubleRule || std::abs(cross) > 1e-6 * a.length() * b.length() || a.length() < 1)
        return false;
    const auto place = [&](QPointF point) { return QPointF::dotProduct(point - a.p1(), along) / a.length(); };
    const double low = qMin(place(b.p1()), place(b.p2())), high = qMax(place(b.p1()), place(b.p2()));
    return qMin(high, a.length()) - qMax(low, 0.0) > openTo;
}

QVector<Stroke> strokesOf(const Page &page)
{
    QVector<Stroke> strokes;
    for (const PageItem &item : page.items) {
        if (item.object->kind == ObjectKind::Line) {
            strokes.append({QLineF(item.x1, item.y1, item.x2, item.y2), item.object});
        } else if (item.object->kind == ObjectKind::Shape && item.object->shape == 1) {
            const QPointF corners[] = {{double(item.x1), double(item.y1)},
                                       {double(item.x2), double(item.y1)},
                                       {double(item.x2), double(item.y2)},
                                       {double(item.x1), double(item.y2)}};
            for (int side = 0; side < 4; ++side)
                strokes.append({QLineF(corners[side], corners[(side + 1) % 4]), item.object});
        }
    }
    return strokes;
}

int shared(int low1, int high1, int low2, int high2)
{
    return qMax(0, qMin(high1, high2) - qMax(low1, low2));
}

bool standsUnder(const ReportObject &text, const ReportObject &head)
{
    const int narrower = qMin(text.x2 - text.x1, head.x2 - head.x1);
    return shared(text.x1, text.x2, head.x1, head.x2) >= underHead * narrower;
}

bool isText(const ReportObject &object)
{
    return object.visible && (object.kind == ObjectKind::Label || object.kind == ObjectKind::Field);
}

bool isHead(const ReportObject &object)
{
    return object.visible && object.kind == ObjectKind::Label && !object.isFree();
}

// The lowest line of fixed texts of a band, with those that reach into it from above.
QVector<ReportObject> headsOf(const Section &section)
{
    QVector<ReportObject> labels;
    std::copy_if(section.objects.cbegin(), section.objects.cend(), std::back_inserter(labels), isHead);
    std::sort(labels.begin(), labels.end(), [](const auto &a, const auto &b) { return a.y2 > b.y2; });
    QVector<ReportObject> heads;
    int top = INT_MAX;
    for (const ReportObject &label : labels) {
        if (!heads.isEmpty() && label.y2 <= top)
            break;
        heads.append(label);
        top = qMin(top, label.y1);
    }
    return heads;
}

} // namespace

QVector<Finding> openCorners(const Page &page)
{
    const QVector<Stroke> strokes = strokesOf(page);
    QVector<Finding> findings;
    for (qsizetype at = 0; at < strokes.size(); ++at) {
        if (strokes[at].object->kind != ObjectKind::Line)
            continue;
        for (const QPointF end : {strokes[at].line.p1(), strokes[at].line.p2()}) {
            double nearest = openTo + 1;
            const ReportObject *other = nullptr;
            for (qsizetype with = 0; with < strokes.size(); ++with) {
                const double apart = with == at ? openTo + 1 : distance(end, strokes[with].line);
                if (apart < nearest && !isDoubleRule(strokes[at].line, strokes[with].line, apart)) {
                    nearest = apart;
                    other = strokes[with].object;
                }
            }
            if (other && nearest > openFrom && nearest <= openTo)
                findings.append({"gap",
                                 {strokes[at].object->name, other->name},
                                 QStringLiteral("ends %1 twips from %2").arg(qRound(nearest)).arg(other->name)});
        }
    }
    return findings;
}

QVector<Finding> drawnTwice(const Page &page)
{
    using Place = std::tuple<int, int, int, int, int>;
    QMap<Place, const ReportObject *> seen;
    QVector<Finding> findings;
    for (const PageItem &item : page.items) {
        if (item.object->name.isEmpty()) // the line that closes a table at a page's end, over the row's own
            continue;
        const ObjectKind kind = item.object->kind;
        const bool turned = std::tie(item.x1, item.y1) > std::tie(item.x2, item.y2);
        const Place place{item.isText() ? 0 : int(kind), turned ? item.x2 : item.x1, turned ? item.y2 : item.y1,
                          turned ? item.x1 : item.x2, turned ? item.y1 : item.y2};
        if (const ReportObject *other = seen.value(place))
            findings.append(
                {"twice", {item.object->name, other->name}, QStringLiteral("lies exactly over %1").arg(other->name)});
        seen.insert(place, item.object);
    }
    return findings;
}

QVector<Finding> besideTheirHeads(const ReportTemplate &report)
{
    const Section *detail = report.section(SectionKind::Detail);
    QVector<Finding> findings;
    const auto check = [&](const ReportObject &text, const QVector<ReportObject> &heads, const QString &what) {
        if (!heads.isEmpty() && std::none_of(heads.cbegin(), heads.cend(),
                                             [&](const ReportObject &head) { return standsUnder(text, head); }))
            findings.append({"column", {text.name}, what});
    };

    QVector<ReportObject> texts;
    std::copy_if(detail->objects.cbegin(), detail->objects.cend(), std::back_inserter(texts), isText);
    // Heads are those under which most of the rows' texts stand, the nearest of several; between them and the rows
    // there may be a line of captions, a contract's say.
    QVector<ReportObject> heads;
    qsizetype most = 0;
    for (const Section &section : report.sections) {
        if (section.kind == SectionKind::Detail)
            break;
        const QVector<ReportObject> lowest = section.height > 0 ? headsOf(section) : QVector<ReportObject>();
        const qsizetype under = std::count_if(texts.cbegin(), texts.cend(), [&lowest](const ReportObject &text) {
            return std::any_of(lowest.cbegin(), lowest.cend(),
                               [&text](const ReportObject &head) { return standsUnder(text, head); });
        });
        if (lowest.size() >= leastHeads && under >= most) {
            heads = lowest;
            most = under;
        }
    }
    const bool captions = std::count_if(texts.cbegin(), texts.cend(), isHead) >= leastHeads; // a card, not a table
    if (!captions && texts.size() >= leastHeads && detail->height > 0)
        for (const ReportObject &text : texts)
            check(text, heads, QStringLiteral("does not stand under a head of its table"));

    for (const Section &section : report.sections) {
        for (const ReportObject &object : section.objects) {
            if (object.summary != Summary::Sum)
                continue;
            QVector<ReportObject> columns;
            std::copy_if(texts.cbegin(), texts.cend(), std::back_inserter(columns), [&](const ReportObject &text) {
                return text.dataField.compare(object.dataField, Qt::CaseInsensitive) == 0;
            });
            check(object, columns, QStringLiteral("does not stand under the column that it adds up"));
        }
    }
    return findings;
}

} // namespace tradewick
