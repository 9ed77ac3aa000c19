#include "reporting/template_writer.h"

#include <QXmlStreamWriter>

namespace tradewick
{

namespace
{

QString bandElement(SectionKind kind)
{
    switch (kind) {
    case SectionKind::PageHeader:
        return QStringLiteral("pageHeader");
    case SectionKind::GroupHeader:
        return QStringLiteral("groupHeader");
    case SectionKind::Detail:
        return QStringLiteral("detail");
    case SectionKind::GroupFooter:
        return QStringLiteral("groupFooter");
    case SectionKind::PageFooter:
        break;
    }
    return QStringLiteral("pageFooter");
}

class Writer
{
public:
    Writer(const ReportTemplate &report, QByteArray *to) : m_report(report), m_xml(to)
    {
        m_xml.setAutoFormatting(true);
        m_xml.setAutoFormattingIndent(2);
    }

    void write()
    {
        m_xml.writeStartDocument();
        m_xml.writeStartElement("report");
        text("name", m_report.name);
        text("caption", m_report.caption);
        number("printWidth", m_report.printWidth);
        number("leftMargin", m_report.leftMargin);
        number("rightMargin", m_report.rightMargin);
        number("topMargin", m_report.topMargin);
        number("bottomMargin", m_report.bottomMargin);
        text("documentName", m_report.documentName);
        static constexpr const char *overlays[] = {"never", "choice", "always"};
        textUnless("overlay", overlays[int(m_report.overlay)], overlays[0]);
        for (const Section &section : m_report.sections) {
            m_xml.writeStartElement(bandElement(section.kind));
            if (section.level > 0)
                number("level", section.level);
            number("height", section.height);
            if (section.kind == SectionKind::GroupHeader)
                text("groupField", section.groupField);
            if (section.canGrow)
                text("canGrow", "true");
            for (const ReportObject &object : section.objects)
                write(object);
            m_xml.writeEndElement();
        }
        m_xml.writeEndDocument();
    }

private:
    void text(const char *name, const QString &value) { m_xml.writeAttribute(QLatin1String(name), value); }
    void number(const char *name, int value) { text(name, QString::number(value)); }
    void textUnless(const char *name, const QString &value, const QString &absent)
    {
        if (value != absent)
            text(name, value);
    }
    void colour(const char *name, QRgb value, QRgb absent)
    {
        textUnless(name, QColor(value).name(), QColor(absent).name());
    }

    void write(const ReportObject &object)
    {
        static constexpr const char *elements[] = {"label", "field", "line", "shape", "image"};
        static const ReportObject plain;
        m_xml.writeStartElement(QLatin1String(elements[int(object.kind)]));
        text("name", object.name);
        if (object.kind == ObjectKind::Field && !object.dataField.isEmpty())
            text("dataField", object.dataField);
        if (object.kind == ObjectKind::Line) {
            number("x1", object.x1);
            number("y1", object.y1);
            number("x2", object.x2);
            number("y2", object.y2);
            number("style", object.style);
            number("weight", object.weight);
            colour("foreColor", object.foreColor, plain.foreColor);
        } else {
            number("left", object.x1);
            number("top", object.y1);
            number("width", object.x2 - object.x1);
            number("height", object.y2 - object.y1);
        }
        if (object.kind == ObjectKind::Shape) {
            number("kind", object.shape);
            colour("backColor", object.backColor, plain.backColor);
        }
        if (object.kind == ObjectKind::Label || object.kind == ObjectKind::Field)
            writeText(object, plain);
        if (!object.visible)
            text("visible", "false");
        if (!object.text.isEmpty())
            m_xml.writeCharacters(object.text);
        m_xml.writeEndElement();
    }

    void writeText(const ReportObject &object, const ReportObject &plain)
    {
        const FontSpec &font = m_report.fonts[object.font], absent;
        static constexpr const char *aligns[] = {"left", "right", "center"};
        textUnless("font", font.face, absent.face);
        textUnless("size", QString::number(font.points), QString::number(absent.points));
        textUnless("bold", font.bold ? "true" : "false", "false");
        textUnless("align", aligns[int(object.align)], aligns[0]);
        colour("foreColor", object.foreColor, plain.foreColor);
        colour("backColor", object.backColor, plain.backColor);
        textUnless("charset", QString::number(object.charset), QString::number(plain.charset));
        textUnless("format", object.format, {});
        if (object.pageTotal)
            text("pageTotal", "true");
        if (object.summary != Summary::None) {
            text("summary", object.summary == Summary::Sum ? "sum" : "count");
            text("running", object.overReport ? "report" : "group");
            text("summaryGroup", QStringLiteral("GroupHeader%1").arg(object.summaryLevel));
        }
    }

    const ReportTemplate &m_report;
    QXmlStreamWriter m_xml;
};

} // namespace

QByteArray templateXml(const ReportTemplate &report)
{
    QByteArray xml;
    Writer(report, &xml).write();
    return xml;
}

} // namespace tradewick
