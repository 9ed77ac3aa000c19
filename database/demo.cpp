#include "database/demo.h"

#include "database/description.h"

#include <QFile>
#include <QTextStream>

namespace tradewick
{

namespace
{

// A table's rows stand in demo/<table>.tsv: a line of column names, then a line a row. An empty cell is Null, "\n" in
// one is a new line.
void insertRows(const std::function<void(const QString &, const QVariantList &)> &run, const QString &table,
                QFile &file)
{
    QTextStream lines(&file);
    const QString names = lines.readLine();
    const auto width = names.count(u'\t') + 1;
    const QString statement =
        QStringLiteral("insert into %1 (%2) values (%3)")
            .arg(table, QString(names).replace(u'\t', u','), QStringList(width, QStringLiteral("?")).join(u','));
    for (QString line; lines.readLineInto(&line);) {
        QVariantList values;
        for (QString cell : line.split(u'\t'))
            values.append(cell.isEmpty() ? QVariant()
                                         : QVariant(cell.replace(QLatin1String("\\n"), QLatin1String("\n"))));
        run(statement, values);
    }
}

// What the forms copy when a customer, a company, a supplier or a price is chosen.
constexpr const char *copies[] = {
    "update yy_gwkh_zl set (hl, bzcode) = (select c.hl, c.bzcode from sys_bzsz c where c.bizh = yy_gwkh_zl.bizh)",
    "update yy_gyszl set (hl, bzcode) = (select c.hl, c.bzcode from sys_bzsz c where c.bizh = yy_gyszl.bizh)",
    "update sys_gzry set bmmc = (select d.bmmc from sys_bmsz d where d.bmbh = sys_gzry.bmbh)",

    "update yy_bzdj_b set gys_dj = round(jkdj + jmdj, 2),"
    " (khmc, gys_bizh) = (select k.khmc, k.bizh from yy_gwkh_zl k where k.khbh = yy_bzdj_b.khbh),"
    " (gys_mc, gys_dizhi, gys_phone) ="
    " (select g.zwmc, g.zwdz, g.phone from yy_gyszl g where g.gfbh = yy_bzdj_b.gysbh)",

    "update yy_gw_wxht_h set"
    " (khmc, dizh, phone, fax, gb, e_mail, bizh, hl, jsfs) ="
    " (select k.khmc, k.zwdz, k.phone, k.fax, k.gb, k.dzyx, k.bizh, k.hl, k.zffs"
    " from yy_gwkh_zl k where k.khbh = yy_gw_wxht_h.khbh),"
    " (gsmc, e_gsmc, gsdz, e_gsdz, gs_phone, gs_email, gs_fax, fpzt, logo, bgbm, sjzch, bank_en, bank_code,"
    " bank_name, swdjh) ="
    " (select c.gsmc, c.e_gsmc, c.gsdz, c.e_gsdz, c.gs_phone, c.gs_email, c.gs_fax, c.fpzt, c.logo, c.bgbm, c.sjzch,"
    " c.bank_en, c.bank_code, c.bank_name, c.swdjh from sys_gsmc c),"
    " yxqsrq = djrq, yxjzrq = date(djrq, '+90 days')",

    "update yy_gw_wxht_b set (khbh, gsmc) ="
    " (select h.khbh, h.gsmc from yy_gw_wxht_h h where h.htbh = yy_gw_wxht_b.htbh)",

    "update yy_gw_wxht_b set"
    " (cpmc, yanse, dw, cplb, bacp, yw_cpmc, zzs, zsl) ="
    " (select p.cpmc, p.yanse, p.dw, p.cplb, p.bacp, p.yw_cpmc, p.zzs, p.zsl"
    " from yy_bzdj p where p.cpbh = yy_gw_wxht_b.cpbh),"
    " (jkdj, jmdj, dj) = (select q.jkdj, q.jmdj, q.gys_dj from yy_bzdj_b q"
    " where q.cpbh = yy_gw_wxht_b.cpbh and q.gg = yy_gw_wxht_b.gg and q.khbh = yy_gw_wxht_b.khbh)",

    "update yy_gw_wxht_b set je = (jkdj + jmdj) * sl, sxh = xc",

    "update yy_mxb_h set"
    " (khmc, khdz, mdgk, zygk, jgtk, bizh, qttk, babm, zyqx, sjzch, swdjh, gsmc, hl, e_gsmc, phone, fax,"
    " bank_name, bank_code, gs_phone, gs_fax, logo, gsdz, e_gsdz, gs_email) ="
    " (select c.khmc, c.dizh, c.mdgk, c.zygk, c.jgtk, c.bizh, c.qttk, c.bgbm, c.jhdz, c.sjzch, c.swdjh,"
    " c.gsmc, c.hl, c.e_gsmc, c.phone, c.fax, c.bank_name, c.bank_code, c.gs_phone, c.gs_fax, c.logo, c.gsdz,"
    " c.e_gsdz, c.gs_email from yy_gw_wxht_h c where c.htbh = yy_mxb_h.htbh),"
    " kzje = coalesce(kzje, (select sum(c.je) from yy_gw_wxht_b c where c.htbh = yy_mxb_h.htbh)),"
    " (cg_csmc, cg_csdz, cg_csswdjh, cg_cskhh, cg_csyhzh, cg_csphone, cg_csfax) ="
    " (select g.zwmc, g.zwdz, g.tysh, g.khh, g.yhzh, g.phone, g.fax from yy_gyszl g where g.gfbh = yy_mxb_h.cg_csbh)",

    "update yy_mxb_b set"
    " (cpmc, yw_cpmc, cplb, khlh, dj, dw, gsmc, jhrq, sl, je, bacp, yanse, zzs, zsl, jmdj, jkdj) ="
    " (select c.cpmc, c.yw_cpmc, c.cplb, c.khlh, c.dj, c.dw, c.gsmc, c.jhrq, c.sl, c.je, c.bacp, c.yanse, c.zzs,"
    " c.zsl, c.jmdj, c.jkdj from yy_gw_wxht_b c where c.htbh = yy_mxb_b.htbh and c.xc = yy_mxb_b.xh),"
    " zjz = round(jianshu * djz, 3), zmz = round(jianshu * dmz, 3), hjtj = round(jianshu * djtj, 3)",
};

} // namespace

void insertDemonstration(const std::function<void(const QString &statement, const QVariantList &values)> &run,
                         const QString &logo)
{
    for (const TableDescription &table : tableDescriptions())
        if (QFile file(QStringLiteral(":/demo/%1.tsv").arg(table.name)); file.open(QFile::ReadOnly))
            insertRows(run, table.name, file);
    run(QStringLiteral("update sys_gsmc set logo = ?"), {logo});
    for (const char *copy : copies)
        run(QString::fromLatin1(copy), {});
}

} // namespace tradewick
