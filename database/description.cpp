#include "database/description.h"

namespace tradewick
{

namespace
{

// A column is "name" for text, "name:l" for long text, ":n" for a number, ":d" for a date, ":f" for a flag.
// "= table" takes the columns of that table, which stands above: rows are copied whole between such twins, so number
// and order of the columns are one.
struct TableText {
    const char *name, *unique, *indexed, *columns;
};

// clang-format off
constexpr TableText tableTexts[] = {
    {"qb_pass", "", "name",
     "name pass t1:f t2:f t3:f t4:f t5:f t6:f t7:f t8:f t9:f t10:f t11:f t12:f t13:f t14:f t15:f t16:f t17:f "
     "t18:f t19:f t20:f t21:f t22:f t23:f t24:f t25:f t26:f t27:f t28:f"},
    {"sys_bzsz", "bzbh", "bizh",
     "bzbh bizh bzcode hl:n"},
    {"sys_zffs", "fkbh", "",
     "fkbh zffs beizhu:l"},
    {"sys_fkfs", "fkbh", "",
     "fkbh fkfs beizhu:l"},
    {"sys_jldw", "jlbh", "",
     "jlbh jldw beizhu:l"},
    {"sys_gksz", "gkbh", "",
     "gkbh gkmc gkmc_en gkxz beizhu:l"},
    {"sys_cwgs", "gsbh", "gsmc",
     "gsbh gsmc ywmc dizhi:l beizhu:l phone fax dzyx lxr yzbm dbgh logo:l"},
    {"sys_tcgs", "gsbh", "gsmc",
     "gsbh gsmc ywmc dizhi:l beizhu:l phone fax dzyx lxr yzbm dbgh logo:l"},
    {"sys_gsmc", "gsbh", "gsmc",
     "gsbh gsmc e_gsmc gsdz:l e_gsdz:l gs_phone gs_fax fpzt bgbm edi_code mchzch sjzch swdjh gs_email gsxz "
     "logo:l bank_name bank_dz:l bank_en bank_de:l swift_code bank_code bank_fax bank_phone"},
    {"sys_bmsz", "bmbh", "bmmc",
     "bmbh bmmc sjbm"},
    {"sys_gzry", "zgbh", "bmbh",
     "bmmc bmbh zgbh name zhwu"},
    {"sys_qysz", "", "sheng",
     "sheng shi zheng"},
    {"sys_ssdz", "dzbh", "",
     "dzbh sslb ssdz:l"},
    {"yy_gyszl", "gfbh", "",
     "gfbh zwmc ywmc zwdz:l ywdz:l sheng shi zheng frdb khh xydj yhzh lxr tysh phone fax dzyx wz yzbm jyfw:l "
     "bizh hl:n bzcode fkfs zffs djrq:d djy gfmc"},
    {"yy_gwkh_zl", "khbh", "khmc",
     "khbh khmc ywmc zwdz:l ywdz:l gb frdb khh xydj yhzh lxr tysh phone fax dzyx wz yzbm jyfw:l shi bizh hl:n "
     "bzcode fkfs zffs djrq:d djy"},
    {"yy_bzdj", "cpbh", "",
     "cpbh cplb cpmc dw bacp beizhu:l yw_cpmc yanse cpgg zzs:n zsl:n"},
    {"yy_bzdj_b", "", "cpbh khbh",
     "gg gys_bizh jkdj:n jmdj:n gys_dj:n cpbh khbh khmc gysbh gys_mc gys_dizhi:l gys_phone gys_lh"},
    {"yy_gw_wxht_h", "htbh", "khbh djrq",
     "htbh gb khbh khmc dizh:l phone fax e_mail djrq:d gsmc bmmc qyr qydz yxqsrq:d yxjzrq:d bizh hl:n ysbz:l "
     "ydz yyqx jgtk:l wyj qttk:l zygk mdgk madol:l jsfs bzyq:l jhdz:l fstk:l e_gsmc gsdz:l e_gsdz:l gs_phone "
     "gs_email gs_fax fpzt logo:l bgbm sjzch bank_en bank_code bank_name swdjh sheng shi"},
    {"yy_gw_wxht_b", "", "htbh cpbh",
     "cpbh cpmc gg yanse dw sl:n jkdj:n jmdj:n dj:n jhrq:d khlh beizhu:l je:n htbh khbh gsmc cplb bacp "
     "yw_cpmc zzs:n zsl:n sxh:n xc:n wanch"},
    {"yy_gn_cght_h", "htbh", "wxht csbh djrq",
     "htbh wxht csbh csmc shi zheng dizh:l phone fax e_mail djrq:d gsmc bmmc qyr qydz yxqsrq:d yxjzrq:d bizh "
     "hl:n jgtk:l qttk:l madol:l ydz ysbz:l jsfs bzyq:l yyqx wyj jhdz:l zygk mdgk cs_bank cs_bcode cs_swdjh "
     "e_gsmc gsdz:l e_gsdz:l gs_phone gs_fax fpzt logo:l bgbm sjzch bank_en bank_code bank_name swdjh"},
    {"yy_gn_cght_b", "", "htbh",
     "cpbh cpmc gg yanse dw dj:n sl:n jhrq:d je:n beizhu:l cslh htbh csbh gsmc cplb yw_cpmc zzs:n zsl:n wanch"},
    {"yy_xyz_nh", "xyzh", "djrq",
     "xyzh kzrq:d xyzlb kzhbm xyzyxq:d fpzy zhuanchuan kzje:n bizh hl:n yfdz:l syr khmc kzr kzyh tzyh yfyh "
     "beizhu:l djrq:d"},
    {"yy_xyz_nb", "", "xyzh htbh",
     "htbh htrq:d qydd sl:n dw je:n yxqsrq:d yxjzrq:d xyzh beizhu:l"},
    {"yy_xyz_h", "xyzh", "htbh djrq",
     "xyzh htbh kzrq:d xyzlb kzhbm xyzyxq:d jgtk:l qttk:l zyqx:d zygk mdgk kzyh tzyh yfyh khmc syr fpzy "
     "zhuanchuan kzje:n bizh yfdz:l djrq:d khdz:l khbh"},
    {"yy_xyz_b", "", "xyzh htbh",
     "cpbh cpmc gg yanse dw dj:n sl:n jhrq:d khlh beizhu:l je:n htbh khbh gsmc cplb bacp xyzh zzs:n zsl:n "
     "yw_cpmc sxh:n gfbh ddbh"},
    {"sc_kldt", "", "ddbh",
     "ddbh klbh"},
    {"yy_mxb_h", "fpbh", "htbh xyzh djrq",
     "fpbh djbh djrq:d htbh xyzh fkfs xyzlb kzje:n bizh xyzyxq zygk zkg mdgk yfzffs fpzy zhuanchuan jgtk:l "
     "qttk:l zyqx:l kzhbm kzrq kzyh tzyh yfyh khmc gsmc madol:l dw b_zdw yjl:n tstk:l xsfp:f xszxd:f "
     "xsforma:f hgmc hgbm bgrq hgfxrq mygb xfgb myxz ysfs babm xkzh hxdh fsdj hyd zmxz sfts msqk cg_csbh "
     "cg_csmc cg_csdz:l cg_csphone cg_csfax cg_csswdjh cg_cskhh cg_csyhzh cdzh qzdd qzrq cpbm cpmc scdd jkgx "
     "lymz:f lysl:f qbgc:f hjkcf:f dcsm:l ship_name jzxh fthm zhdh thdh qyrq zyf:n qtfy:n bxdh bxlb pkdd "
     "bxf:n bxje:n zjsmc zjsyjl:n khdz:l hl:n e_gsmc e_gsdz:l phone fax bank_name bank_code gs_phone gs_fax "
     "logo:l gsdz:l sjzch gs_email swdjh"},
    {"yy_mxb_b", "", "fpbh htbh",
     "cpbh cpmc guihao fth gg dw dj:n sl:n fpbh jianshu:n b_zdw jh djz:n dmz:n zjz:n zmz:n je:n djtj:n hjtj:n "
     "shuming:l xh:n jmdj:n jkdj:n yw_cpmc cplb khlh htbh gsmc jhrq:d bacp yanse zzs:n zsl:n"},
    {"yy_mxb_h_tm", "", "fpbh",
     "= yy_mxb_h"},
    {"yy_mxb_b_tm", "", "fpbh",
     "= yy_mxb_b"},
    {"cy_pcd_rpt", "", "pcdh fpbh djrq",
     "pcdh djrq:d pcgs tcgs fpbh sjb ghfth escg:n sscgg:n sscg:n sswcg:n zhdz:l zgdz:l zhsj:d zgzjf zhdh "
     "jfrdh jflxr zhlxr pcfy:n beizhu:l e_gsmc gs_dizh:l egs_dz:l gs_phone gs_fax e_tcgs tcgs_dz:l tcgs_phone "
     "tcgs_fax tcgs_lxr htbh"},
    {"cy_dcd_djb_h", "dcdh", "cw_dcdh fpbh djrq",
     "dcdh cw_dcdh djrq:d tygs cygs shr tzr ship_name zhgk xhgk mdgk ycys zyqx:l sfzt sfzb hyf mtf sc_code "
     "ffdd zjsb zgxzf beizhu:l escg:n sscg:n sschg:n sswcg:n tcfzfz jfr jfr_phone jfr_fax tdlqdd:l tygs_phone "
     "gxgs zgxxdd:l bgdz:l fyzj:n tygs_emc tygs_edz:l tygs_dz:l tygs_fax cygs_emc cygs_dz:l cygs_phone "
     "cygs_fax cygs_logo:l cygs_lxr hyd shr_dz:l shr_phone shr_fax htbh fpbh shdd"},
    {"cy_dcd_djb_b", "", "dcdh fpbh",
     "madol:l gfh xjh cpmc jianshu:n b_zdw zmz:n hjtj:n cw_dcdh dcdh fpbh htbh xh sxh cpgg"},
    {"cy_hytd_djb_h", "tdhm", "dcdh djrq",
     "tdhm cw_tdhm djrq:d dcdh tygs shr tzr ship_name zhgk xhgk mdgk ycys hyd zyqx:l shr_dz:l shr_phone "
     "shr_fax tygs_emc tygs_edz:l tygs_dz:l tygs_phone tygs_fax cygs cygs_emc cygs_dz:l cygs_phone cygs_fax "
     "cygs_lxr shdd"},
    {"cy_hytd_djb_b", "", "tdhm dcdh",
     "madol:l gfh xjh cpmc cpgg jianshu:n b_zdw zmz:n hjtj:n fpbh dcdh tdhm htbh xh"},
    {"cy_hxd_wgj_ld", "", "djrq",
     "djrq:d start endh gsmc lqr gl_fenshu:n yy_fenshu:n sy_fenshu:n hs_fenshu:n"},
    {"cy_hxd_gshs", "", "djrq htbh",
     "djrq:d hxdh_st hxdh_en gsmc hxy htbh ly_fenshu:n hxdh bgdh fpbh"},
    {"cy_hxd_gsly", "", "hxdh fpbh djrq",
     "djrq:d hxdh fpbh myfs shfs htbh bizh hxje:n zyqx:l gsmc ldy bgdh cpmc jianshu:n b_zdw shje:n dklz:n "
     "ybf:n yjhk:n tpke:n jglz:n qtfy:n chae:n"},
    {"yy_ssdj_h", "fpbh", "htbh djrq",
     "fpbh djrq:d htbh fprq:d hl:n hsbm djbh zzsfph zzs_kprq:d gsmc gs_swdjh gs_dz:l gs_phone gs_khh gs_yhzh "
     "gs_babm zzs_mmb jshj_dx jshj_xx:n csmc cs_swdjh cs_dz:l cs_phone cs_khh cs_yhzh zzs_beizhu:l skr fhr "
     "kpr sj_jksh sj_zclx sj_tfrq:d sj_zsjg sj_ysbm sj_ysmc sj_ysjc sj_skgk sj_qsrq:d sj_jzrq:d sj_xjrq:d "
     "sj_sjjedx sj_sjjexx:n sj_beizhu:l hxdh gs_wgdm spmc jianshu:n bzlx bizh hx_zjje bgdbh wgjpz hx_qsrq:d"},
    {"yy_ssdj_b", "", "fpbh",
     "xh:n fpbh htbh cpmc gg yanse dw b_zdw dj:n je:n sl:n zsl:n zzs:n suie:n sjje:n sjze:n djbh jianshu:n "
     "zzsfph sj_jksh"},
};

// head, body: the columns shown of each, "*" for all, "-name" for all but that one. A column that both have is the
// head's, because lines taken from a quote leave the copies of the head's values empty.
// further: columns under another name, "name=expression" with the kind behind the name.
struct ViewText {
    const char *name, *headTable, *bodyTable, *key;
    bool headsAlone;
    const char *head, *body, *further;
};

constexpr ViewText viewTexts[] = {
    // Products without a price belong in the whole price list; a contract without lines prints its head.
    {"yy_bzdj_rpt", "yy_bzdj", "yy_bzdj_b", "cpbh", true, "*", "*", ""},
    {"yy_wxht_rpt", "yy_gw_wxht_h", "yy_gw_wxht_b", "htbh", true, "*", "*", ""},
    {"yy_cght_rpt", "yy_gn_cght_h", "yy_gn_cght_b", "htbh", true, "*", "*", ""},
    {"yy_xyz_bd_rpt", "yy_xyz_h", "yy_xyz_b", "xyzh", false, "*", "*", ""},
    // The goods and units of the lines; the head's goods in general under a name of its own. There is no post code of
    // the company anywhere, documents leave its place empty.
    {"yy_mxb_rpt", "yy_mxb_h", "yy_mxb_b", "fpbh", false, "* -cpmc -dw -b_zdw", "*",
     "bg_cpmc=h.cpmc bzzl=b.b_zdw gs_yzbm='' dizh:l=h.khdz bzje:n=b.je*h.hl"},
    {"cy_dcddj_rpt", "cy_dcd_djb_h", "cy_dcd_djb_b", "dcdh", false, "*", "madol gfh xjh cpmc jianshu b_zdw zmz hjtj",
     "phone=h.tygs_phone"},
    // One carrier's form asks for its number with two letters changed over.
    {"cy_hytd_rpt", "cy_hytd_djb_h", "cy_hytd_djb_b", "tdhm", false, "*",
     "madol gfh xjh cpmc cpgg jianshu b_zdw zmz hjtj", "cw_dthm=h.cw_tdhm"},
    {"yy_sstjb_rpt", "yy_ssdj_h", "yy_ssdj_b", "fpbh", false, "gsmc csmc htbh fpbh djrq hxdh bgdbh",
     "cpmc gg yanse dw sl je suie sjje", ""},
};
// clang-format on

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(u' ', Qt::SkipEmptyParts);
}

ColumnDescription column(const QString &text)
{
    const QString name = text.section(u':', 0, 0), kind = text.section(u':', 1);
    return {name,
            kind == u"n"   ? ColumnKind::Number
            : kind == u"d" ? ColumnKind::Date
            : kind == u"f" ? ColumnKind::Flag
                           : ColumnKind::Text,
            kind == u"l",
            {}};
}

const TableDescription &described(const QVector<TableDescription> &tables, QStringView name)
{
    const auto found =
        std::find_if(tables.begin(), tables.end(), [&](const auto &table) { return table.name == name; });
    Q_ASSERT(found != tables.end());
    return *found;
}

QVector<TableDescription> readTables()
{
    QVector<TableDescription> tables;
    for (const TableText &text : tableTexts) {
        TableDescription table{
            QString::fromLatin1(text.name), QString::fromLatin1(text.unique), words(text.indexed), {}};
        const QStringList columns = words(text.columns);
        if (columns.first() == u"=")
            table.columns = described(tables, columns.last()).columns;
        else
            std::transform(columns.begin(), columns.end(), std::back_inserter(table.columns), column);
        tables.append(table);
    }
    return tables;
}

// Adds the columns of a table that `shown` names and the view does not have yet.
void showColumns(ViewDescription &view, const QString &table, const QString &alias, const QStringList &shown)
{
    const auto &all = described(tableDescriptions(), table).columns;
    for (ColumnDescription column : all) {
        const bool asked = shown.first() == u"*" ? !shown.contains(u'-' + column.name) : shown.contains(column.name);
        const bool taken = std::any_of(view.columns.begin(), view.columns.end(),
                                       [&](const auto &other) { return other.name == column.name; });
        if (!asked || taken)
            continue;
        column.expression = alias + u'.' + column.name;
        view.columns.append(column);
    }
}

QVector<ViewDescription> readViews()
{
    QVector<ViewDescription> views;
    for (const ViewText &text : viewTexts) {
        ViewDescription view{QString::fromLatin1(text.name),
                             QString::fromLatin1(text.headTable),
                             QString::fromLatin1(text.bodyTable),
                             QString::fromLatin1(text.key),
                             text.headsAlone,
                             {}};
        showColumns(view, view.head, QStringLiteral("h"), words(text.head));
        showColumns(view, view.body, QStringLiteral("b"), words(text.body));
        for (const QString &further : words(text.further)) {
            ColumnDescription renamed = column(further.section(u'=', 0, 0));
            renamed.expression = further.section(u'=', 1);
            view.columns.append(renamed);
        }
        views.append(view);
    }
    return views;
}

} // namespace

const QVector<TableDescription> &tableDescriptions()
{
    static const QVector<TableDescription> tables = readTables();
    return tables;
}

const QVector<ViewDescription> &viewDescriptions()
{
    static const QVector<ViewDescription> views = readViews();
    return views;
}

} // namespace tradewick
