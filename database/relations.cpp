#include "database/relations.h"

#include "database/description.h"

namespace tradewick
{

namespace
{

// Each number is looked for where it was chosen, not where other documents go on copying it. A blank names nothing.
// further: what else makes a row need the other, which a form that was voided does not.
constexpr struct {
    const char *table, *column, *other, *key;
    const char *further = "";
} references[] = {
    {"yy_gn_cght_h", "wxht", "yy_gw_wxht_h", "htbh"},
    {"yy_xyz_nb", "htbh", "yy_gw_wxht_h", "htbh"},
    {"yy_xyz_h", "htbh", "yy_gw_wxht_h", "htbh"},
    {"yy_mxb_h", "htbh", "yy_gw_wxht_h", "htbh"},
    {"yy_mxb_h", "xyzh", "yy_xyz_nh", "xyzh"},
    {"cy_pcd_rpt", "fpbh", "yy_mxb_h", "fpbh"},
    {"cy_dcd_djb_b", "fpbh", "yy_mxb_h", "fpbh"},
    {"cy_hytd_djb_b", "fpbh", "yy_mxb_h", "fpbh"},
    {"cy_hytd_djb_h", "dcdh", "cy_dcd_djb_h", "cw_dcdh"}, // by the carrier's number, as a bill chooses its note
    {"cy_hxd_gsly", "fpbh", "yy_mxb_h", "fpbh", " and isnull(r.myfs,'')<>'作废'"},
    {"yy_ssdj_h", "fpbh", "yy_mxb_h", "fpbh"},
};

// where: which rows need the other, behind the condition that there is none; all unless it is given.
Relation relation(const QString &table, const QString &column, const QString &other, const QString &key,
                  const QString &where = {})
{
    return {table, column, other, key,
            QStringLiteral("select min(r.%1) as number,count(*) as n from %2 r where not exists (select 1 from %3 o "
                           "where o.%4=r.%1)%5 group by r.%1 order by r.%1")
                .arg(column, table, other, key, where)};
}

QVector<Relation> readRelations()
{
    QVector<Relation> all;
    const auto pair = [&all](const QString &head, const QString &body, const QString &key) {
        all.append(relation(body, key, head, key));
        if (head != u"yy_bzdj") // a product may have no price yet
            all.append(relation(head, key, body, key));
    };
    for (const ViewDescription &view : viewDescriptions())
        pair(view.head, view.body, view.key);
    pair(QStringLiteral("yy_xyz_nh"), QStringLiteral("yy_xyz_nb"), QStringLiteral("xyzh")); // which no view joins
    for (const auto &one : references) {
        const QString column = QString::fromLatin1(one.column);
        all.append(relation(QString::fromLatin1(one.table), column, QString::fromLatin1(one.other),
                            QString::fromLatin1(one.key),
                            " and r." + column + "<>''" + QString::fromUtf8(one.further)));
    }
    return all;
}

} // namespace

const QVector<Relation> &relations()
{
    static const QVector<Relation> all = readRelations();
    return all;
}

} // namespace tradewick
