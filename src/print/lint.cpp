#include "print/lint.h"

#include "print/lint_shapes.h"
#include "reporting/fonts.h"

#include <QRectF>
#include <QSet>

#include <cmath>

namespace tradewick
{

namespace
{

constexpr int fewTwips = 60;             // by which a box may fall short of a line without anybody seeing it
constexpr double toleratedOfLine = 0.15; // that the layout lets a line reach below its box
constexpr int belowBand = 15;            // that a box may reach below its band
constexpr double inkedOver = 20;         // twips in both directions from which on two texts touch
constexpr int fewRows = 12, manyRows = 40;

qsizetype letters(QStringView text)
{
    return std::count_if(text.cbegin(), text.cend(), [](QChar letter) { return !letter.isSpace(); });
}

// Whether a text that does not fit its box would have a line more in one a few twips higher.
bool isShort(const Page &page, const PageItem &item)
{
    const TextFont &font = *page.context->fonts[item.object->font];
    const int height = item.y2 - item.y1;
    double line = 0;
    const qsizetype needed = linesOfGrown(page.text(item), font, item.x2 - item.x1, &line).size();
    const double next = std::ceil(height / line);
    const double missing = next * line - height;
    return static_cast<double>(needed) >= next && missing > toleratedOfLine * line && missing <= fewTwips;
}

// Where its letters are, by lines.
QVector<QRectF> ink(const Page &page, const PageItem &item)
{
    const TextLines arranged = arrange(page, item);
    const double size = page.context->report->fonts[item.object->font].points * 20 * arranged.size;
    QVector<QRectF> lines;
    for (const TextLine &line : arranged.lines) {
        if (letters(line.text) == 0)
            continue;
        // the right half of these is blank
        const bool halfBlank = QStringLiteral("：，。；、）】》").contains(line.text.back());
        QRectF box(line.x, line.baseline - 0.72 * size, line.width - (halfBlank ? size / 2 : 0), 0.85 * size);
        lines.append(box);
    }
    return lines;
}

class Lint
{
public:
    explicit Lint(const TemplateFile &file) : m_file(file), m_report(*file.report) {}

    QVector<Finding> run()
    {
        const QVector<PagePtr> none = madeUpPages(m_file, 0, MadeUp::Typical);
        const QVector<PagePtr> one = madeUpPages(m_file, 1, MadeUp::Typical);
        const QVector<PagePtr> few = madeUpPages(m_file, fewRows, MadeUp::Typical);
        const QVector<PagePtr> many = madeUpPages(m_file, manyRows, MadeUp::Typical);
        const QVector<PagePtr> longest = madeUpPages(m_file, 1, MadeUp::Longest);
        if (!m_file.listed)
            add({"table", {}, QStringLiteral("has no line in reports.tsv")});
        if (none.size() > 1 || one.size() > 1)
            add({"pages", {}, QStringLiteral("takes %1 pages for one row or none").arg(qMax(none.size(), one.size()))});
        data();
        bands();
        add(besideTheirHeads(m_report));
        for (const QVector<PagePtr> *pages : {&one, &few, &many, &longest}) {
            for (const PagePtr &page : *pages) {
                overlap(*page);
                sheet(*page);
                add(openCorners(*page));
                texts(*page);
            }
        }
        // where a page ends, its foot may close what its head has closed already
        add(drawnTwice(*few.first()));
        exceptions();
        return m_findings;
    }

private:
    void add(const QVector<Finding> &findings)
    {
        for (const Finding &finding : findings)
            add(finding);
    }

    // Each object once a rule, whichever of the two of a pair is named first.
    void add(const Finding &finding)
    {
        QStringList key = finding.objects;
        key.sort();
        key.prepend(finding.rule);
        if (m_known.contains(key.join(u' ')))
            return;
        m_known.insert(key.join(u' '));
        QStringList owners = finding.objects;
        if (owners.isEmpty())
            owners.append(QString());
        for (const QString &owner : owners) {
            const QString except = owner.isEmpty() ? m_report.except : m_report.object(owner)->except;
            for (const QString &part : except.split(u';', Qt::SkipEmptyParts)) {
                if (part.section(u':', 0, 0).trimmed() == finding.rule) {
                    m_used.insert(owner + u' ' + finding.rule);
                    return;
                }
            }
        }
        m_findings.append(finding);
    }

    void exceptions()
    {
        const auto check = [this](const QString &owner, const QString &except) {
            for (const QString &part : except.split(u';', Qt::SkipEmptyParts)) {
                const QString rule = part.section(u':', 0, 0).trimmed();
                if (!m_used.contains(owner + u' ' + rule))
                    m_findings.append({"except", owner.isEmpty() ? QStringList() : QStringList{owner},
                                       QStringLiteral("nothing needs the exception from %1").arg(rule)});
            }
        };
        check({}, m_report.except);
        for (const Section &section : m_report.sections)
            for (const ReportObject &object : section.objects)
                check(object.name, object.except);
    }

    void data()
    {
        QStringList columns;
        QString error;
        if (m_file.sources.isEmpty() || !columnsOf(m_file.sources, &columns, &error))
            return;
        for (const Section &section : m_report.sections)
            for (const ReportObject &object : section.objects)
                if (!object.dataField.isEmpty() && !columns.contains(object.dataField.toLower()))
                    add({"data",
                         {object.name},
                         QStringLiteral("%1 has no column %2").arg(m_file.sources.join(u' '), object.dataField)});
    }

    void bands()
    {
        for (const Section &section : m_report.sections) {
            if (section.height == 0)
                continue;
            for (const ReportObject &object : section.objects) {
                const int top = qMin(object.y1, object.y2), bottom = qMax(object.y1, object.y2);
                const int left = qMin(object.x1, object.x2), right = qMax(object.x1, object.x2);
                if (top < 0 || bottom > section.height + belowBand || left < 0 || right > m_report.printWidth)
                    add({"outside",
                         {object.name},
                         QStringLiteral("%1 to %2 by %3 to %4, beyond its band of %5 by %6")
                             .arg(left)
                             .arg(right)
                             .arg(top)
                             .arg(bottom)
                             .arg(m_report.printWidth)
                             .arg(section.height)});
            }
        }
    }

    void sheet(const Page &page)
    {
        const Paper &paper = page.context->paper;
        for (const PageItem &item : page.items) {
            const QRect box = item.box();
            if (box.x() < 0 || box.y() < 0 || box.x() + box.width() > paper.width ||
                box.y() + box.height() > paper.height)
                add({"outside",
                     {item.object->name},
                     QStringLiteral("beyond the sheet of %1 by %2").arg(paper.width).arg(paper.height)});
        }
    }

    void overlap(const Page &page)
    {
        QVector<std::pair<const PageItem *, QRectF>> lines;
        for (const PageItem &item : page.items)
            if (item.isText())
                for (const QRectF &line : ink(page, item))
                    lines.append({&item, line});
        for (qsizetype a = 0; a < lines.size(); ++a) {
            for (qsizetype b = a + 1; b < lines.size(); ++b) {
                const QRectF both = lines[a].second & lines[b].second;
                if (lines[a].first != lines[b].first && both.width() > inkedOver && both.height() > inkedOver)
                    add({"overlap",
                         {lines[a].first->object->name, lines[b].first->object->name},
                         QStringLiteral("prints over %1 “%2”")
                             .arg(lines[b].first->object->name, page.text(*lines[b].first).left(30))});
            }
        }
    }

    void texts(const Page &page)
    {
        for (const PageItem &item : page.items) {
            if (!item.isText())
                continue;
            const QStringView text = page.text(item);
            const ReportObject &object = *item.object;
            const bool label = object.kind == ObjectKind::Label, fixed = label && !object.isFree();
            const TextLines arranged = arrange(page, item);
            const bool fits = !arranged.overflows && arranged.size == 1.0;
            if (!fits && fixed)
                add({"cut", {object.name}, QStringLiteral("“%1” does not fit").arg(object.text.left(40))});
            else if (!fits && std::isnan(item.number) && isShort(page, item))
                add({"short",
                     {object.name},
                     QStringLiteral("loses a line for want of less than %1 twips").arg(fewTwips)});
            const double width = page.context->fonts[object.font]->width(text);
            if ((!std::isnan(item.number) || (label && showsNumber(object.name))) && width > item.x2 - item.x1 + 1)
                add({"narrow",
                     {object.name},
                     QStringLiteral("%1 takes %2 twips of %3").arg(text).arg(std::ceil(width)).arg(item.x2 - item.x1)});
        }
    }

    const TemplateFile &m_file;
    const ReportTemplate &m_report;
    QVector<Finding> m_findings;
    QSet<QString> m_known, m_used; // findings; exceptions that were needed
};

} // namespace

QVector<Finding> lint(const TemplateFile &file)
{
    return Lint(file).run();
}

} // namespace tradewick
