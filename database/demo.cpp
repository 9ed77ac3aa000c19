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

#define LETTERHEAD_OF(CONTRACTS)                                                                                       \
    "update " CONTRACTS " set (gsmc, e_gsmc, gsdz, e_gsdz, gs_phone, gs_fax, fpzt, logo, bgbm, sjzch, bank_en,"        \
    " bank_code, bank_name, swdjh) = (select c.gsmc, c.e_gsmc, c.gsdz, c.e_gsdz, c.gs_phone, c.gs_fax, c.fpzt,"        \
    " c.logo, c.bgbm, c.sjzch, c.bank_en, c.bank_code, c.bank_name, c.swdjh from sys_gsmc c)"

// What the forms copy when a customer, a company, a supplier or a price is chosen.
constexpr const char *copies[] = {
    "update yy_gwkh_zl set (hl, bzcode) = (select c.hl, c.bzcode from sys_bzsz c where c.bizh = yy_gwkh_zl.bizh)",
    "update yy_gyszl set (hl, bzcode) = (select c.hl, c.bzcode from sys_bzsz c where c.bizh = yy_gyszl.bizh)",
    "update sys_gzry set bmmc = (select d.bmmc from sys_bmsz d where d.bmbh = sys_gzry.bmbh)",

    "update yy_bzdj_b set gys_dj = round(jkdj + jmdj, 2), gys_lh = gysbh || '-' || replace(cpbh, '-', ''),"
    " (khmc, gys_bizh) = (select k.khmc, k.bizh from yy_gwkh_zl k where k.khbh = yy_bzdj_b.khbh),"
    " (gys_mc, gys_dizhi, gys_phone) ="
    " (select g.zwmc, g.zwdz, g.phone from yy_gyszl g where g.gfbh = yy_bzdj_b.gysbh)",

    LETTERHEAD_OF("yy_gw_wxht_h"),
    LETTERHEAD_OF("yy_gn_cght_h"),

    "update yy_gw_wxht_h set"
    " (khmc, dizh, phone, fax, gb, e_mail, bizh, hl, jsfs) ="
    " (select k.khmc, k.zwdz, k.phone, k.fax, k.gb, k.dzyx, k.bizh, k.hl, k.zffs"
    " from yy_gwkh_zl k where k.khbh = yy_gw_wxht_h.khbh),"
    " gs_email = (select c.gs_email from sys_gsmc c),"
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

    "update yy_gn_cght_h set"
    " (csmc, dizh, phone, fax, e_mail, shi, zheng, bizh, hl, jsfs, cs_bank, cs_bcode, cs_swdjh) ="
    " (select g.zwmc, g.zwdz, g.phone, g.fax, g.dzyx, g.shi, g.zheng, g.bizh, g.hl, g.zffs, g.khh, g.yhzh, g.tysh"
    " from yy_gyszl g where g.gfbh = yy_gn_cght_h.csbh),"
    " yxqsrq = djrq, yxjzrq = date(djrq, '+30 days')",

    "update yy_gn_cght_b set wanch = '未完成', je = sl * dj,"
    " (csbh, gsmc) = (select h.csbh, h.gsmc from yy_gn_cght_h h where h.htbh = yy_gn_cght_b.htbh),"
    " (cpmc, yanse, dw, cplb, yw_cpmc, zzs, zsl) ="
    " (select p.cpmc, p.yanse, p.dw, p.cplb, p.yw_cpmc, p.zzs, p.zsl from yy_bzdj p where p.cpbh = yy_gn_cght_b.cpbh),"
    " cslh = (select q.gys_lh from yy_bzdj_b q where q.cpbh = yy_gn_cght_b.cpbh)",

    "update yy_xyz_nh set kzr = khmc, syr = (select c.gsmc from sys_gsmc c),"
    " (bizh, hl) = (select coalesce(nullif(yy_xyz_nh.bizh, ''), k.bizh), k.hl"
    " from yy_gwkh_zl k where k.khmc = yy_xyz_nh.khmc)",

    "update yy_xyz_nb set"
    " (htrq, qydd, yxqsrq, yxjzrq) ="
    " (select h.djrq, h.qydz, h.yxqsrq, h.yxjzrq from yy_gw_wxht_h h where h.htbh = yy_xyz_nb.htbh),"
    " (sl, je) = (select sum(b.sl), sum(b.je) from yy_gw_wxht_b b"
    " where b.htbh = yy_xyz_nb.htbh and b.dw = yy_xyz_nb.dw)",

    "update yy_xyz_h set"
    " (khmc, khdz, syr, mdgk, zygk, jgtk, bizh, qttk, khbh) ="
    " (select h.khmc, h.dizh, h.gsmc, h.mdgk, h.zygk, h.jgtk, h.bizh, h.qttk, h.khbh"
    " from yy_gw_wxht_h h where h.htbh = yy_xyz_h.htbh),"
    " kzje = (select sum(b.je) from yy_gw_wxht_b b where b.htbh = yy_xyz_h.htbh)",

    "insert into yy_xyz_b (xyzh, cpbh, cpmc, cplb, khlh, gg, dj, dw, htbh, gsmc, jhrq, sl, je, bacp, yanse, zzs, zsl,"
    " yw_cpmc) select h.xyzh, b.cpbh, b.cpmc, b.cplb, b.khlh, b.gg, b.dj, b.dw, b.htbh, b.gsmc, b.jhrq, b.sl, b.je,"
    " b.bacp, b.yanse, b.zzs, b.zsl, b.yw_cpmc from yy_gw_wxht_b b join yy_xyz_h h on h.htbh = b.htbh order by b.xc",

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
    " (cpmc, yw_cpmc, cplb, khlh, dj, dw, gsmc, jhrq, sl, bacp, yanse, zzs, zsl, jmdj, jkdj) ="
    " (select c.cpmc, c.yw_cpmc, c.cplb, c.khlh, c.dj, c.dw, c.gsmc, c.jhrq, coalesce(yy_mxb_b.sl, c.sl), c.bacp,"
    " c.yanse, c.zzs, c.zsl, c.jmdj, c.jkdj from yy_gw_wxht_b c"
    " where c.htbh = yy_mxb_b.htbh and c.cpbh = yy_mxb_b.cpbh and c.gg = yy_mxb_b.gg),"
    " zjz = round(jianshu * djz, 3), zmz = round(jianshu * dmz, 3), hjtj = round(jianshu * djtj, 3)",

    "update yy_mxb_b set je = round(sl * dj, 2)",

    "update cy_pcd_rpt set"
    " (e_gsmc, gs_dizh, egs_dz, gs_phone, gs_fax) ="
    " (select c.e_gsmc, c.gsdz, c.e_gsdz, c.gs_phone, c.gs_fax from sys_gsmc c where c.gsmc = cy_pcd_rpt.pcgs),"
    " (e_tcgs, tcgs_dz, tcgs_phone, tcgs_fax, tcgs_lxr) ="
    " (select t.ywmc, t.dizhi, t.phone, t.fax, t.lxr from sys_tcgs t where t.gsmc = cy_pcd_rpt.tcgs),"
    " (htbh, ghfth) = (select m.htbh, m.jzxh from yy_mxb_h m where m.fpbh = cy_pcd_rpt.fpbh)",

    "update cy_dcd_djb_h set"
    " (tygs_emc, tygs_edz, tygs_dz, tygs_phone, tygs_fax) ="
    " (select c.e_gsmc, c.e_gsdz, c.gsdz, c.gs_phone, c.gs_fax from sys_gsmc c where c.gsmc = cy_dcd_djb_h.tygs),"
    " (cygs_emc, cygs_dz, cygs_phone, cygs_fax, cygs_logo, cygs_lxr) ="
    " (select l.ywmc, l.dizhi, l.phone, l.fax, l.logo, l.lxr from sys_cwgs l where l.gsmc = cy_dcd_djb_h.cygs),"
    " (mdgk, ship_name, hyd, zhgk, shr, shr_dz, shr_phone, shr_fax, htbh) ="
    " (select m.mdgk, m.ship_name, m.hyd, m.zygk, m.khmc, m.khdz, m.phone, m.fax, m.htbh from yy_mxb_h m"
    " where m.fpbh = (select min(b.fpbh) from cy_dcd_djb_b b where b.dcdh = cy_dcd_djb_h.dcdh))",

    // A line for each kind of goods, the first with the marks. Where all of a kind is in one container, the line names
    // it.
    "update cy_dcd_djb_b set"
    " (htbh, madol) = (select m.htbh, case when cy_dcd_djb_b.rowid = (select min(f.rowid) from cy_dcd_djb_b f"
    " where f.dcdh = cy_dcd_djb_b.dcdh) then m.madol end from yy_mxb_h m where m.fpbh = cy_dcd_djb_b.fpbh),"
    " (gfh, xjh, jianshu, b_zdw, zmz, hjtj) ="
    " (select case when min(g.guihao) = max(g.guihao) then min(g.guihao) || '/' || min(g.fth) end,"
    " min(cast(g.jh as integer)) || '-' || max(cast(substr(g.jh, instr(g.jh, '-') + 1) as integer)),"
    " sum(g.jianshu), min(g.b_zdw), round(sum(g.zmz), 3), round(sum(g.hjtj), 3) from yy_mxb_b g"
    " where g.fpbh = cy_dcd_djb_b.fpbh and g.cplb = cy_dcd_djb_b.cpmc)",

    "update cy_dcd_djb_b set cpmc = case cpmc when '画框' then 'PICTURE FRAMES' when '装饰镜' then 'FRAMED MIRRORS'"
    " when '相框' then 'PHOTO FRAMES' when '油画' then 'OIL PAINTINGS' else 'FRAMED PRINTS' end",

    "update cy_hytd_djb_h set"
    " (tygs, shr, tzr, ship_name, zhgk, xhgk, mdgk, ycys, hyd, zyqx, shr_dz, shr_phone, shr_fax, tygs_emc, tygs_edz,"
    " tygs_dz, tygs_phone, tygs_fax, cygs, cygs_emc, cygs_dz, cygs_phone, cygs_fax, cygs_lxr) ="
    " (select n.tygs, n.shr, n.tzr, n.ship_name, n.zhgk, n.xhgk, n.mdgk, n.ycys, n.hyd, n.zyqx, n.shr_dz, n.shr_phone,"
    " n.shr_fax, n.tygs_emc, n.tygs_edz, n.tygs_dz, n.tygs_phone, n.tygs_fax, n.cygs, n.cygs_emc, n.cygs_dz,"
    " n.cygs_phone, n.cygs_fax, n.cygs_lxr from cy_dcd_djb_h n where n.cw_dcdh = cy_hytd_djb_h.dcdh)",

    "insert into cy_hytd_djb_b (tdhm, dcdh, fpbh, htbh, madol, gfh, xjh, cpmc, jianshu, b_zdw, zmz, hjtj, xh)"
    " select h.tdhm, b.dcdh, b.fpbh, b.htbh, b.madol, b.gfh, b.xjh, b.cpmc, b.jianshu, b.b_zdw, b.zmz, b.hjtj, b.xh"
    " from cy_hytd_djb_h h join cy_dcd_djb_h n on n.cw_dcdh = h.dcdh join cy_dcd_djb_b b on b.dcdh = n.dcdh"
    " order by h.tdhm, b.rowid",

    "update yy_ssdj_h set"
    " (htbh, djbh, gsmc, gs_babm, gs_dz, gs_khh, gs_yhzh, gs_phone, gs_swdjh, fprq, csmc, cs_dz, cs_khh, cs_yhzh,"
    " cs_swdjh, cs_phone, bizh, hl, bgdbh, hxdh, spmc, hsbm, bzlx) ="
    " (select h.htbh, h.djbh, h.gsmc, h.babm, h.gsdz, h.bank_name, h.bank_code, h.gs_phone, h.swdjh, h.djrq,"
    " h.cg_csmc, h.cg_csdz, h.cg_cskhh, h.cg_csyhzh, h.cg_csswdjh, h.cg_csphone, h.bizh, h.hl, h.hgbm, h.hxdh,"
    " h.cpmc, h.cpbm, h.b_zdw from yy_mxb_h h where h.fpbh = yy_ssdj_h.fpbh),"
    " (hx_zjje, jianshu) = (select ' ' || printf('%.15g', sum(b.je)), sum(b.jianshu) from yy_mxb_b b"
    " where b.fpbh = yy_ssdj_h.fpbh)",

    "insert into yy_ssdj_b (xh, fpbh, htbh, cpmc, gg, yanse, dw, b_zdw, dj, je, sl, zsl, zzs, suie, sjje, sjze, djbh,"
    " jianshu, zzsfph, sj_jksh) select b.xh, b.fpbh, b.htbh, b.cpmc, b.gg, b.yanse, b.dw, b.b_zdw, b.dj * h.hl,"
    " b.je * h.hl, b.sl, b.zsl, b.zzs, b.je * h.hl * b.zzs / 100, b.je * h.hl * b.zsl / 100,"
    " b.je * h.hl * b.zzs / 100 + b.je * h.hl, h.djbh, b.jianshu, h.zzsfph, h.sj_jksh"
    " from yy_mxb_b b join yy_ssdj_h h on h.fpbh = b.fpbh order by b.fpbh, b.xh",

    "update yy_ssdj_h set (jshj_xx, sj_sjjexx) = (select sum(b.je) + sum(b.suie), sum(b.sjje) from yy_ssdj_b b"
    " where b.fpbh = yy_ssdj_h.fpbh)",
};
#undef LETTERHEAD_OF

} // namespace

void insertDemonstration(const std::function<void(const QString &statement, const QVariantList &values)> &run,
                         const QString &logo)
{
    for (const TableDescription &table : tableDescriptions())
        if (QFile file(QStringLiteral(":/demo/%1.tsv").arg(table.name)); file.open(QFile::ReadOnly))
            insertRows(run, table.name, file);
    run(QStringLiteral("update sys_gsmc set logo = ?"), {logo});
    for (const char *copy : copies)
        run(QString::fromUtf8(copy), {});
}

} // namespace tradewick
