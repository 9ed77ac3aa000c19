#include "print/made_up_rows.h"

#include "database/description.h"
#include "print/made_up_values.h"

#include <QDate>

#include <algorithm>

namespace tradewick
{

namespace
{

constexpr int rowsOfAGroup = 4;

struct Column {
    QString name;
    ColumnKind kind = ColumnKind::Text;
    int groupLevel = 0; // that changes with it
};

// The columns of one table or view; key: the column by which one document is read from it.
QVector<ColumnDescription> described(const QString &name, QString *key)
{
    for (const ViewDescription &view : viewDescriptions()) {
        if (view.name.compare(name, Qt::CaseInsensitive) == 0) {
            *key = view.key;
            return view.columns;
        }
    }
    for (const TableDescription &of : tableDescriptions()) {
        if (of.name.compare(name, Qt::CaseInsensitive) == 0) {
            *key = of.unique;
            return of.columns;
        }
    }
    return {};
}

QString longTextFor(const QString &name, MadeUp how)
{
    return how == MadeUp::Typical ? name : name + QStringLiteral(" WWWW 木制相框 0123456789 MAHOGANY FRAME");
}

class MadeUpRows : public RowSource
{
public:
    MadeUpRows(QVector<Column> columns, int count, MadeUp how)
        : m_columns(std::move(columns)), m_count(count), m_how(how)
    {
    }

    QStringList columns() const override
    {
        QStringList names;
        for (const Column &column : m_columns)
            names.append(column.name);
        return names;
    }
    bool next() override { return ++m_row <= m_count; }

    QVariant value(int at) const override
    {
        const Column &column = m_columns[at];
        const MadeUpValue *known = madeUpValue(column.name);
        const QString text =
            known ? (m_how == MadeUp::Typical ? known->typical : known->longest) : longTextFor(column.name, m_how);
        const int group = column.groupLevel > 0 ? (m_row - 1) / (rowsOfAGroup * (4 - column.groupLevel)) + 1 : 0;
        switch (column.kind) {
        case ColumnKind::Number:
            if (column.name == QLatin1String("xh") && m_how == MadeUp::Typical)
                return m_row;
            return known && known->number ? text.toDouble() : m_how == MadeUp::Typical ? 1234.5 : 98765432.1;
        case ColumnKind::Date:
            return QDate(2026, 9, 24).addDays(group);
        case ColumnKind::Flag:
            return true;
        default:
            break;
        }
        if (group > 0)
            return QStringLiteral("%1 %2").arg(text).arg(group);
        if (m_how == MadeUp::Typical && (column.name == QLatin1String("cpbh") || column.name == QLatin1String("gg")))
            return QStringLiteral("%1-%2").arg(text).arg(m_row, 2, 10, QLatin1Char('0'));
        return text;
    }

private:
    QVector<Column> m_columns;
    int m_count;
    MadeUp m_how;
    int m_row = 0;
};

} // namespace

bool columnsOf(const QStringList &sources, QStringList *columns, QString *error)
{
    for (const QString &source : sources) {
        QString key;
        const QVector<ColumnDescription> of = described(source, &key);
        if (of.isEmpty()) {
            *error = QStringLiteral("there is no table or view %1").arg(source);
            return false;
        }
        for (const ColumnDescription &column : of)
            columns->append(column.name.toLower());
    }
    return true;
}

std::unique_ptr<RowSource> madeUpRows(const ReportTemplate &report, const QStringList &sources, int count, MadeUp how)
{
    QVector<Column> columns;
    const auto find = [&columns](const QString &name) {
        return std::find_if(columns.begin(), columns.end(),
                            [&](const Column &one) { return one.name == name.toLower(); });
    };
    QStringList keys;
    for (const QString &source : sources) {
        QString key;
        for (const ColumnDescription &of : described(source, &key))
            if (find(of.name) == columns.end())
                columns.append({of.name.toLower(), of.kind, 0});
        keys.append(key);
    }
    // without a source the fields tell their columns: what is summed or formatted is a number, or a date
    for (const Section &section : report.sections) {
        for (const ReportObject &object : section.objects) {
            if (object.dataField.isEmpty() || !sources.isEmpty())
                continue;
            const MadeUpValue *known = madeUpValue(object.dataField);
            const bool number = object.summary == Summary::Sum || object.format.startsWith(u'0') ||
                                object.format.startsWith(u'#') || (known && known->number);
            const ColumnKind kind = object.format.contains(u'y') ? ColumnKind::Date
                                    : number                     ? ColumnKind::Number
                                                                 : ColumnKind::Text;
            auto at = find(object.dataField);
            if (at == columns.end())
                columns.append({object.dataField.toLower(), kind, 0});
            else if (at->kind == ColumnKind::Text)
                at->kind = kind;
        }
    }
    for (const Section &section : report.sections) {
        const auto at = find(section.groupField);
        if (section.kind == SectionKind::GroupHeader && at != columns.end() &&
            (report.groups() > 1 || !keys.contains(section.groupField, Qt::CaseInsensitive)))
            at->groupLevel = section.level;
    }
    return std::make_unique<MadeUpRows>(std::move(columns), count, how);
}

QHash<QString, QString> madeUpLabels(const ReportTemplate &report, MadeUp how)
{
    QHash<QString, QString> texts;
    for (const Section &section : report.sections) {
        for (const ReportObject &object : section.objects) {
            const bool named = object.name.startsWith(QLatin1String("L_")); // with a text until it is filled
            if (object.kind != ObjectKind::Label || (!object.isFree() && !named))
                continue;
            const MadeUpValue *own = madeUpValue(report.name + u'.' + object.name);
            const MadeUpValue *known = own ? own : madeUpValue(object.name);
            texts.insert(object.name, !known ? object.name : how == MadeUp::Typical ? known->typical : known->longest);
        }
    }
    return texts;
}

bool showsNumber(const QString &label)
{
    const MadeUpValue *known = madeUpValue(label);
    return known && known->number;
}

} // namespace tradewick
