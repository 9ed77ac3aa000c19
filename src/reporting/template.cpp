#include "reporting/template.h"

#include "reporting/ruled_form.h"

#include <QFile>
#include <QMap>
#include <QSet>
#include <QXmlStreamReader>

#include <algorithm>
#include <limits>
#include <optional>

namespace tradewick
{

namespace
{

// A template larger than these is damaged: the largest of the system has some 150 objects.
constexpr qint64 maxBytes = 1 << 20;
constexpr int maxObjects = 2000, maxText = 4000, maxTwips = 100000, maxBand = 31680;

template <class Value> struct Word {
    const char *word;
    Value value;
};

constexpr Word<ObjectKind> objectKinds[] = {{"label", ObjectKind::Label},
                                            {"field", ObjectKind::Field},
                                            {"line", ObjectKind::Line},
                                            {"shape", ObjectKind::Shape},
                                            {"image", ObjectKind::Image}};
constexpr Word<SectionKind> sectionKinds[] = {{"pageHeader", SectionKind::PageHeader},
                                              {"groupHeader", SectionKind::GroupHeader},
                                              {"detail", SectionKind::Detail},
                                              {"groupFooter", SectionKind::GroupFooter},
                                              {"pageFooter", SectionKind::PageFooter}};
constexpr Word<TextAlign> aligns[] = {
    {"left", TextAlign::Left}, {"right", TextAlign::Right}, {"center", TextAlign::Centre}};
constexpr Word<bool> flags[] = {{"true", true}, {"false", false}, {"1", true}, {"0", false}};
constexpr Word<Overlay> overlays[] = {
    {"never", Overlay::Never}, {"choice", Overlay::Choice}, {"always", Overlay::Always}};
constexpr Word<Summary> summaries[] = {{"sum", Summary::Sum}, {"count", Summary::Count}};
constexpr Word<bool> runnings[] = {{"group", false}, {"report", true}};
constexpr Word<int> summaryGroups[] = {{"GroupHeader1", 1}, {"GroupHeader2", 2}, {"GroupHeader3", 3}};

// Place of a band in the order of the page: headers from the outermost in, footers from the innermost out.
int rankOf(const Section &section)
{
    switch (section.kind) {
    case SectionKind::PageHeader:
        return 0;
    case SectionKind::GroupHeader:
        return section.level;
    case SectionKind::Detail:
        return 4;
    case SectionKind::GroupFooter:
        return 8 - section.level;
    case SectionKind::PageFooter:
        break;
    }
    return 8;
}

class Reader
{
public:
    explicit Reader(QIODevice *device) : m_xml(device) {}

    std::shared_ptr<const ReportTemplate> read()
    {
        while (m_xml.readNext() != QXmlStreamReader::StartElement && !m_xml.atEnd())
            if (m_xml.tokenType() == QXmlStreamReader::DTD)
                fail(QStringLiteral("a document type is not allowed"));
        if (!m_xml.hasError()) {
            if (m_xml.name() == QLatin1String("report"))
                readReport();
            else
                fail(QStringLiteral("<report> expected, found <%1>").arg(m_xml.name()));
        }
        while (!m_xml.atEnd())
            m_xml.readNext();
        return m_xml.hasError() ? nullptr : m_report;
    }

    QString error() const { return QStringLiteral("%1: %2").arg(m_xml.lineNumber()).arg(m_xml.errorString()); }

private:
    void fail(const QString &what)
    {
        if (!m_xml.hasError())
            m_xml.raiseError(what);
    }

    // Each attribute is taken once; what is left over is one that the element does not have.
    QString take(const char *name) { return m_attributes.take(QLatin1String(name)); }

    int number(const char *name, int low, int high, std::optional<int> absent = {})
    {
        if (absent && !m_attributes.contains(QLatin1String(name)))
            return *absent;
        const QString text = take(name);
        bool ok = false;
        const int value = text.toInt(&ok);
        if (!ok || value < low || value > high)
            fail(QStringLiteral("%1=\"%2\": a whole number from %3 to %4 expected")
                     .arg(QLatin1String(name), text)
                     .arg(low)
                     .arg(high));
        return value;
    }

    template <class Value, size_t count> Value word(const char *name, const Word<Value> (&words)[count], Value absent)
    {
        if (!m_attributes.contains(QLatin1String(name)))
            return absent;
        const QString text = take(name);
        for (const Word<Value> &known : words)
            if (text == QLatin1String(known.word))
                return known.value;
        fail(QStringLiteral("%1=\"%2\" is not known").arg(QLatin1String(name), text));
        return absent;
    }

    QRgb colour(const char *name, QRgb absent)
    {
        if (!m_attributes.contains(QLatin1String(name)))
            return absent;
        const QString text = take(name);
        bool ok = text.size() == 7 && text.startsWith(u'#');
        const uint value = ok ? text.mid(1).toUInt(&ok, 16) : 0;
        if (!ok)
            fail(QStringLiteral("%1=\"%2\": a colour like #1f3a5f expected").arg(QLatin1String(name), text));
        return 0xff000000 | value;
    }

    void begin()
    {
        m_attributes.clear();
        for (const QXmlStreamAttribute &attribute : m_xml.attributes())
            m_attributes.insert(attribute.name().toString(), attribute.value().toString());
    }

    void end(const QString &element)
    {
        if (!m_attributes.isEmpty())
            fail(QStringLiteral("<%1> has no attribute %2").arg(element, m_attributes.firstKey()));
    }

    void readReport()
    {
        begin();
        m_report->name = take("name");
        m_report->caption = take("caption");
        m_report->documentName = take("documentName");
        m_report->overlay = word("overlay", overlays, Overlay::Never);
        m_report->printWidth = number("printWidth", 1, maxTwips);
        m_report->leftMargin = number("leftMargin", 0, maxBand);
        m_report->rightMargin = number("rightMargin", 0, maxBand);
        m_report->topMargin = number("topMargin", 0, maxBand);
        m_report->bottomMargin = number("bottomMargin", 0, maxBand);
        if (m_report->name.isEmpty())
            fail(QStringLiteral("the report has no name"));
        m_report->except = take("except");
        end(QStringLiteral("report"));
        while (m_xml.readNextStartElement())
            readSection();
        checkBands();
    }

    void readSection()
    {
        Section section;
        const auto *kind = std::find_if(std::begin(sectionKinds), std::end(sectionKinds), [this](const auto &known) {
            return m_xml.name() == QLatin1String(known.word);
        });
        if (kind == std::end(sectionKinds))
            return fail(QStringLiteral("no band is called <%1>").arg(m_xml.name()));
        begin();
        section.kind = kind->value;
        section.height = number("height", 0, maxBand);
        if (section.kind == SectionKind::GroupHeader || section.kind == SectionKind::GroupFooter)
            section.level = number("level", 1, 3);
        if (section.kind == SectionKind::GroupHeader)
            section.groupField = take("groupField").trimmed();
        if (section.kind != SectionKind::PageHeader && section.kind != SectionKind::PageFooter)
            section.canGrow = word("canGrow", flags, false);
        end(m_xml.name().toString());
        if (!m_report->sections.isEmpty() && rankOf(section) <= rankOf(m_report->sections.constLast()))
            fail(QStringLiteral("<%1> does not stand in the order of the bands").arg(m_xml.name()));
        while (m_xml.readNextStartElement()) {
            if (m_xml.name() != QLatin1String("ruled")) {
                readObject(section);
                continue;
            }
            for (const ObjectElement &made : ruledForm(m_xml))
                readObject(section, &made);
        }
        m_report->sections.append(std::move(section));
    }

    // Of the element that the reader stands on, or of one that a ruled form has made.
    void readObject(Section &section, const ObjectElement *made = nullptr)
    {
        ReportObject object;
        const QString element = made ? made->kind : m_xml.name().toString();
        const auto *kind = std::find_if(std::begin(objectKinds), std::end(objectKinds),
                                        [&](const auto &known) { return element == QLatin1String(known.word); });
        if (kind == std::end(objectKinds))
            return fail(QStringLiteral("no object is called <%1>").arg(element));
        if (m_names.size() >= maxObjects)
            return fail(QStringLiteral("more than %1 objects").arg(maxObjects));
        if (made)
            m_attributes = made->attributes;
        else
            begin();
        object.kind = kind->value;
        object.name = take("name");
        if (object.name.isEmpty() || m_names.contains(object.name.toLower()))
            fail(QStringLiteral("name=\"%1\" is empty or stands twice in the report").arg(object.name));
        m_names.insert(object.name.toLower());
        object.visible = word("visible", flags, true);
        if (object.kind == ObjectKind::Line) {
            object.x1 = number("x1", -maxTwips, maxTwips);
            object.y1 = number("y1", -maxTwips, maxTwips);
            object.x2 = number("x2", -maxTwips, maxTwips);
            object.y2 = number("y2", -maxTwips, maxTwips);
            object.style = number("style", 1, 5, 1);
            object.weight = number("weight", 1, 3, 1);
            object.foreColor = colour("foreColor", object.foreColor);
        } else {
            object.x1 = number("left", -maxTwips, maxTwips);
            object.y1 = number("top", -maxTwips, maxTwips);
            object.x2 = object.x1 + number("width", 0, maxTwips);
            object.y2 = object.y1 + number("height", 0, maxTwips);
        }
        if (object.kind == ObjectKind::Shape) {
            object.shape = number("kind", 1, 3, 1);
            object.backColor = colour("backColor", object.backColor);
        }
        if (object.kind == ObjectKind::Field)
            readField(object);
        if (object.kind == ObjectKind::Label || object.kind == ObjectKind::Field)
            readText(object);
        object.except = take("except");
        end(element);
        const QString text = made ? made->text : m_xml.readElementText();
        if (text.size() > maxText)
            fail(QStringLiteral("a text of more than %1 characters").arg(maxText));
        if (!text.trimmed().isEmpty()) { // white space alone is the indentation of the file
            if (object.kind != ObjectKind::Label && object.kind != ObjectKind::Field)
                fail(QStringLiteral("%1 holds no text").arg(object.name));
            object.text = text;
        }
        section.objects.append(std::move(object));
    }

    void readText(ReportObject &object)
    {
        FontSpec font;
        if (m_attributes.contains(QLatin1String("font")))
            font.face = take("font");
        if (m_attributes.contains(QLatin1String("size"))) {
            bool ok = false;
            const QString size = take("size");
            font.points = size.toDouble(&ok);
            if (!ok || !(font.points >= 1 && font.points <= 200))
                fail(QStringLiteral("size=\"%1\": points from 1 to 200 expected").arg(size));
        }
        font.bold = word("bold", flags, false);
        object.align = word("align", aligns, TextAlign::Left);
        object.foreColor = colour("foreColor", object.foreColor);
        object.backColor = colour("backColor", object.backColor);
        object.charset = number("charset", 0, 255, 134);
        object.font = static_cast<int>(m_report->fonts.indexOf(font));
        if (object.font < 0) {
            object.font = static_cast<int>(m_report->fonts.size());
            m_report->fonts.append(font);
        }
    }

    void readField(ReportObject &object)
    {
        object.dataField = take("dataField").trimmed();
        object.format = take("format");
        if (!QStringList{QString(), "0.00", "#,##0.00", "mmmm d, yyyy"}.contains(object.format))
            fail(QStringLiteral("format=\"%1\" is not known").arg(object.format));
        object.pageTotal = word("pageTotal", flags, false);
        object.summary = word("summary", summaries, Summary::None);
        object.overReport = word("running", runnings, false);
        object.summaryLevel = word("summaryGroup", summaryGroups, 0);
        if ((object.summary == Summary::None) != (object.summaryLevel == 0) ||
            (object.summary != Summary::None && object.dataField.isEmpty()))
            fail(QStringLiteral("%1: a summary takes a dataField and a summaryGroup").arg(object.name));
    }

    void checkBands()
    {
        if (m_xml.hasError())
            return;
        if (!m_report->section(SectionKind::Detail))
            return fail(QStringLiteral("the report has no <detail>"));
        for (int level = 1; level <= 3; ++level) {
            const bool header = m_report->section(SectionKind::GroupHeader, level);
            const bool outer = level == 1 || m_report->section(SectionKind::GroupHeader, level - 1);
            if (header != bool(m_report->section(SectionKind::GroupFooter, level)) || (header && !outer))
                return fail(QStringLiteral("group level %1 has no header, no footer or no outer group").arg(level));
        }
        for (const Section &section : m_report->sections)
            for (const ReportObject &object : section.objects)
                if (object.summaryLevel > m_report->groups())
                    return fail(QStringLiteral("%1: there is no such summaryGroup").arg(object.name));
    }

    QXmlStreamReader m_xml;
    QMap<QString, QString> m_attributes; // of the current element, not yet taken
    QSet<QString> m_names;
    std::shared_ptr<ReportTemplate> m_report = std::make_shared<ReportTemplate>();
};

} // namespace

const Section *ReportTemplate::section(SectionKind kind, int level) const
{
    for (const Section &section : sections)
        if (section.kind == kind && section.level == level)
            return &section;
    return nullptr;
}

int ReportTemplate::groups() const
{
    int count = 0;
    while (section(SectionKind::GroupHeader, count + 1))
        ++count;
    return count;
}

std::pair<int, int> ReportTemplate::extent() const
{
    int left = std::numeric_limits<int>::max(), right = std::numeric_limits<int>::min();
    for (const Section &section : sections) {
        for (const ReportObject &object : section.objects) {
            if (section.height == 0 || !object.visible)
                continue;
            left = std::min({left, object.x1, object.x2});
            right = std::max({right, object.x1, object.x2});
        }
    }
    return right < left ? std::pair(0, 0) : std::pair(leftMargin + left, leftMargin + right);
}

const ReportObject *ReportTemplate::object(const QString &objectName) const
{
    for (const Section &section : sections)
        for (const ReportObject &object : section.objects)
            if (object.name == objectName)
                return &object;
    return nullptr;
}

std::shared_ptr<const ReportTemplate> loadTemplate(const QString &path, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return nullptr;
    }
    if (file.size() > maxBytes) {
        *error = QStringLiteral("%1: larger than any template").arg(path);
        return nullptr;
    }
    Reader reader(&file);
    std::shared_ptr<const ReportTemplate> report = reader.read();
    if (!report)
        *error = QStringLiteral("%1:%2").arg(path, reader.error());
    return report;
}

} // namespace tradewick
