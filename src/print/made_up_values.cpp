#include "print/made_up_values.h"

#include <QHash>
#include <QStringList>

namespace tradewick
{

namespace
{

struct Known {
    const char *names;   // of columns and labels, in lower case; "report.label" where reports mean different things
    const char *typical; // "#" before a number
    const char *longest; // empty: the typical one as well
};

constexpr const char *clauses =
    "1. The buyer shall confirm samples in writing before mass production.\n"
    "2. Payment shall be received in full before the original documents are released.\n"
    "3. Any claim for quality shall be supported by a survey report of an inspection body recognised by both "
    "parties.\n"
    "4. Neither party is liable for delay caused by force majeure, provided that the other is informed within 7 days.\n"
    "5. Any dispute shall be settled amicably; failing this, it shall be submitted to arbitration.";
constexpr const char *amountInWords = "SAY US DOLLARS TWELVE THOUSAND SEVEN HUNDRED AND FIVE AND CENTS FIFTY ONLY";
constexpr const char *longAmountInWords =
    "SAY US DOLLARS NINE HUNDRED AND EIGHTY SEVEN MILLION SEVEN HUNDRED AND SEVENTY SEVEN THOUSAND SEVEN HUNDRED AND "
    "SEVENTY SEVEN AND CENTS SEVENTY SEVEN ONLY";

// clang-format off
constexpr Known table[] = {
    // numbers of documents
    {"htbh wxht", "X261100002", ""},
    {"fpbh djbh l_fpbh", "F261100017", ""},
    {"xyzh", "LC26-0458-HAM", "DC-HKG-2026/11-0004581-A"},
    {"dcdh cw_dcdh", "D261100004", "SHEKOU-261100004-B"},
    {"tdhm cw_tdhm cw_dthm thdh", "MSKU26110004", "MSKUSZXHAM261100047B"},
    {"pcdh", "P261100009", ""},
    {"hxdh hxdh_st hxdh_en", "45/1176093", "445361176093"},
    {"cdzh", "G264408800170042", ""},
    {"hgbm", "531620261160042791", ""},
    {"babm bgbm bgdbh", "4403912345", ""},
    {"sjzch", "4700600123", ""},
    {"xkzh", "26-AC-401873", ""},
    {"jzxh guihao xjh gfh", "MSKU 418207-3 / 40'HQ", "MSKU 418207-3, TGHU 603118-0, CAIU 221904-5 / 3X40'HQ"},
    {"swdjh gs_swdjh cs_swdjh cg_csswdjh", "91440300MA5G1X2Y3Z", ""},
    {"bank_code yhzh cs_bcode gs_yhzh cs_yhzh cg_csyhzh", "4000 0223 0920 0123 456", ""},
    {"gs_yzbm yzbm", "518001", ""},
    {"edi_code mchzch zhdh fthm", "SZX2611-0417", ""},
    // parties
    {"khmc syr kzr", "ELBLICHT WOHNKULTUR GMBH", "HAMBURGER BILDERRAHMEN UND SPIEGEL HANDELSGESELLSCHAFT MBH & CO. KG"},
    {"shr tzr", "ELBLICHT WOHNKULTUR GMBH", "HAMBURGER BILDERRAHMEN UND SPIEGEL HANDELSGESELLSCHAFT MBH & CO. KG"},
    {"khdz dizh shr_dz ywdz", "MUSTERWEG 14, 20457 HAMBURG, GERMANY",
     "BUILDING C, UNIT 1408, GROSSE ELBSTRASSE 145, FREIHAFEN SOUTH QUAY, 22767 HAMBURG-ALTONA, GERMANY"},
    {"gsmc zwmc csmc fhr l_gsmc lzm_gsmc l_gsmc2 gxgs gys_mc cg_csmc", "深圳市嘉禾工艺品进出口有限公司",
     "深圳市嘉禾国际工艺品装饰材料进出口贸易（集团）有限公司宝安分公司"},
    {"e_gsmc ywmc lzm_egsmc l_egsmc2", "SHENZHEN JIAHE ARTS & CRAFTS CO., LTD.",
     "SHENZHEN JIAHE INTERNATIONAL ARTS, CRAFTS AND DECORATION MATERIALS IMPORT AND EXPORT (GROUP) CO., LTD."},
    {"gsdz zwdz gs_dz cs_dz gs_dizh cg_csdz gys_dizhi bgdz zgdz zhdz tdlqdd zgxxdd jhdz",
     "深圳市南山区示例大道88号工艺大厦1208室", "广东省深圳市南山区粤海街道科技园中区示例大道1088号国际工艺大厦B座12楼1208-1212室"},
    {"e_gsdz egs_dz", "ROOM 1208, 88 SAMPLE AVENUE, NANSHAN, SHENZHEN, CHINA",
     "ROOM 1208-1212, 12/F, TOWER B, INTERNATIONAL CRAFTS BUILDING, 1088 SAMPLE AVENUE, NANSHAN DISTRICT, SHENZHEN "
     "518057, GUANGDONG, P.R.CHINA"},
    {"tygs cygs tcgs pcgs l_cwgs", "深圳示例国际货运代理有限公司", "深圳市示例环球国际物流货运代理有限公司盐田港分公司"},
    {"tygs_emc cygs_emc e_tcgs", "SAMPLE SHIPPING AGENCY CO., LTD.", "SAMPLE GLOBAL INTERNATIONAL SHIPPING AND FORWARDING AGENCY (SHENZHEN) CO., LTD."},
    {"tygs_edz tygs_dz cygs_dz tcgs_dz l_ywmc", "28/F SAMPLE PLAZA, 1 HARBOUR ROAD, YANTIAN, SHENZHEN",
     "UNITS 2801-2808, 28/F SAMPLE PLAZA, 1 HARBOUR ROAD, YANTIAN DISTRICT, SHENZHEN 518083, P.R.CHINA"},
    {"phone fax gs_phone gs_fax tygs_phone tygs_fax cygs_phone cygs_fax shr_phone shr_fax tcgs_phone tcgs_fax jfr_phone "
     "jfr_fax l_tel l_fax zjsb cs_phone gys_phone", "0755-82934158", "0086-755-82934158-8018"},
    {"gs_email e_mail dzyx", "export@jiahe.example", "documents.export.department@jiahe-crafts.example"},
    {"lxr frdb jflxr zhlxr tcgs_lxr cygs_lxr qyr djy hxy skr kpr", "许晓雯", "ALEXANDER WESTERGAARD"},
    // places, terms
    {"zygk zhgk zkg", "YANTIAN", "YANTIAN, SHENZHEN, CHINA"},
    {"mdgk xhgk shdd", "HAMBURG", "PORT KLANG (WEST PORT), MALAYSIA"},
    {"mygb xfgb gb", "GERMANY", "BOSNIA AND HERZEGOVINA"},
    {"hyd scdd qzdd ffdd l_dd qydd qydz shi", "SHENZHEN", "广东深圳特区"},
    {"ship_name", "MSC LORETO V.646W", "CMA CGM ANTOINE DE SAINT EXUPERY V.0FLE7W1MA"},
    {"jgtk", "FOB YANTIAN", "CIF PORT KLANG (WEST PORT), MALAYSIA, INCOTERMS 2020"},
    {"fkfs zffs jsfs", "L/C AT SIGHT", "L/C 90 DAYS AFTER B/L DATE"},
    {"ysfs ycys", "BY SEA", "BY SEA AND RAIL"},
    {"myxz", "一般贸易", ""}, {"zmxz", "一般征税", ""},
    {"hgmc", "大鹏海关", "深圳海关隶属大鹏海关"}, {"fsdj", "发票、装箱单、合同", "发票、装箱单、合同、核销单、商检证"},
    {"msqk sfts", "照章征税", ""},
    {"bizh gys_bizh", "USD", ""},
    {"kzyh tzyh yfyh bank_name khh cs_bank", "EXAMPLE TRADE BANK", "EXAMPLE TRADE AND INDUSTRY BANK, SHENZHEN NANSHAN SUB-BRANCH"},
    {"zhuanchuan fpzy", "ALLOWED", "NOT ALLOWED"},
    {"myfs", "一般贸易", "进料加工贸易"}, {"shfs", "信用证", "即期信用证及电汇"}, {"ydz", "5", "10"},
    {"bxlb", "ALL RISKS", "ALL RISKS AND WAR RISKS AS PER CIC"},
    // goods
    {"cpbh khlh cslh", "JH-0418", "JH-0418-12X16-GOLD/A"},
    {"cpmc bg_cpmc spmc", "木制相框", "木制仿古金箔雕花相框（带镜）"},
    {"yw_cpmc", "WOODEN PHOTO FRAME", "WOODEN PHOTO FRAME WITH BEVELLED MIRROR, ANTIQUE GOLD"},
    {"cplb", "相框", "木制雕花相框系列"},
    {"gg cpgg", "12X16CM", "120X160X2.5CM, 4PCS/CTN"},
    {"bacp cpbm", "4414009090", ""},
    {"dw", "PCS", ""}, {"b_zdw bzlx", "CTNS", ""},
    {"yanse", "金色", "仿古金"},
    {"jh", "1-25", "1001-1250"},
    {"madol", "EWG\nHAMBURG\nC/NO. 1-UP", "HAMBURGER BILDERRAHMEN\nPO 4500123456\nHAMBURG VIA BREMERHAVEN\nC/NO. 1-1250\nMADE IN CHINA"},
    // clauses
    {"fstk l_fstk", clauses, ""},
    {"qttk tstk l_tstk", "PARTIAL SHIPMENT AND TRANSHIPMENT ARE ALLOWED.",
     "PARTIAL SHIPMENTS ALLOWED, 5% MORE OR LESS IN QUANTITY AND AMOUNT ACCEPTABLE. ALL BANKING CHARGES OUTSIDE CHINA ARE "
     "FOR ACCOUNT OF THE APPLICANT."},
    {"beizhu jyfw jkgx l_nr", "家居装饰品、镜子、装饰画", "家居装饰品、镜子、装饰画、相框及配件的生产与销售；样品须经客户书面确认后方可投产"},
    // amounts in words, and what else forms put into labels
    {"l_talam l_ywje", amountInWords, longAmountInWords},
    {"yy_xsfp_rpt.l_zjje yy_xsfp_djrpt.l_zjje yy_wxht_rpt.l_zjje", amountInWords, longAmountInWords},
    {"l_talau", "TWENTY FOUR THOUSAND PCS ONLY", "NINE HUNDRED AND EIGHTY SEVEN THOUSAND SEVEN HUNDRED AND SEVENTY SEVEN PCS ONLY"},
    {"l_zjje", "USD 12705.5", "USD 98765432.1"},
    {"l_hzje l_zwje jshj_dx sj_sjjedx", "壹万贰仟柒佰零伍元伍角整", "玖亿捌仟柒佰柒拾柒万柒仟柒佰柒拾柒元柒角柒分"},
    {"l_qsrq l_jzrq l_djrq l_nyr l_bjrq l_dcrq lbl_date", "2026-11-24", ""},
    {"qyrq qzrq kzrq bgrq hgfxrq xyzyxq djrq jhrq zyqx yxqsrq yxjzrq htrq zhsj", "2026-11-24", ""},
    {"l_year p_year", "2026", ""}, {"l_month p_month l_day p_day", "11", ""},
    {"p_week", "星期二", ""}, {"p_time", "16:42:09", ""},
    {"l_gc", "P", ""}, {"l_dw", "PCS", ""}, {"l_slzj", "24000 PCS", "987654 PCS / 987654.32 KGS"},
    {"l_cs", "12份", "9876份"}, {"l_fs", "12", "9876"}, {"l_pccs", "12 次", "9876 次"},
    {"l_bt", "2026年度11月份出口情况定期统计报表", ""},
    {"l_title", "寄 单 证 明", ""}, {"l_luokuan", "谨此证明", ""},
    // numbers
    {"xh sxh l_pw", "#1", "#888"},
    {"sl zsl l_zsl l_sl", "#2400", "#987654"},
    {"jianshu l_zjs", "#120", "#98765"},
    {"dj jkdj jmdj gys_dj djtj djz dmz", "#5.25", "#98765.125"},
    {"je bzje suie sjje kzje bxje hxje shje chae fyzj l_less l_syf l_zje", "#12705.5", "#98765432.1"},
    {"zjz zmz l_zjz l_zmz", "#1280.5", "#987654.25"},
    {"hjtj", "#28.75", "#98765.125"},
    {"hl", "#8.2654", "#108.2654"},
    {"zyf bxf qtfy ybf pcfy dklz yjhk tpke jglz", "#860", "#987654.5"},
    {"yjl zjsyjl wyj", "#3", "#12.5"},
    {"zzs", "#17", "#17"},
    {"escg sscg sscgg sschg sswcg ly_fenshu", "#1", "#99"},
    {"p_number l_pages l_ps", "#1", "#888"},
};
// clang-format on

MadeUpValue valueOf(const Known &known)
{
    MadeUpValue value{QString::fromUtf8(known.typical), QString::fromUtf8(known.longest)};
    if (value.longest.isEmpty())
        value.longest = value.typical;
    value.number = value.typical.startsWith(u'#');
    if (value.number) {
        value.typical.remove(0, 1);
        value.longest.remove(0, 1);
    }
    return value;
}

QHash<QString, MadeUpValue> byName()
{
    QHash<QString, MadeUpValue> values;
    for (const Known &known : table)
        for (const QString &name : QString::fromUtf8(known.names).split(u' '))
            values.insert(name, valueOf(known));
    return values;
}

} // namespace

const MadeUpValue *madeUpValue(const QString &name)
{
    static const QHash<QString, MadeUpValue> values = byName();
    const auto found = values.constFind(name.toLower());
    return found == values.cend() ? nullptr : &*found;
}

} // namespace tradewick
