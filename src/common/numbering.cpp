#include "common/numbering.h"

#include "common/number_text.h"

#include <optional>

namespace tradewick
{

QString gNumYY, gNumMM, gNumDD, gNumSeq, gNumRaw;

namespace
{

constexpr int documentDigits = 5;
constexpr int codeDigits = 4;

struct NumberRule {
    const char *form, *prefix, *lookup;
    int tail; // characters of the last key that are read
    bool monthly = false;
    bool keepsTooLong = true; // a sequence of more digits than there are places is taken as it stands
};

const NumberRule rules[] = {
    {"YY_CGHT", "C",
     "select distinct HTBH from YY_GN_CGHT_H where year(djrq)='{year}'and month(djrq)='{month}' order by HTBH",
     documentDigits, true},
    {"YY_WXHT", "X",
     "select distinct HTBH from YY_gw_wxHT_H where year(djrq)='{year}'and month(djrq)='{month}' order by HTBH",
     documentDigits, true},
    {"YY_Yh_XYZ", "XY",
     "select distinct xyzh from yy_xyz_H where year(djrq)='{year}'and month(djrq)='{month}' order by xyzh",
     documentDigits, true},
    {"YY_XyZ_New_Rpt", "XY",
     "select distinct xyzh from yy_xyz_Nh where year(djrq)='{year}'and month(djrq)='{month}' order by xyzh",
     documentDigits, true},
    {"YY_DZ_MXB", "FP",
     "select distinct fpbh from yy_mxb_H where year(djrq)='{year}'and month(djrq)='{month}' order by fpbh",
     documentDigits, true},
    {"CY_Dcd_Rpt", "DC",
     "select distinct DCDH from CY_DCD_DJB_H where year(djrq)='{year}'and month(djrq)='{month}' order by DCDH",
     documentDigits, true},
    {"cy_HYtD_DjB", "TD",
     "select distinct TDHM from CY_HYTD_DJB_H where year(djrq)='{year}'and month(djrq)='{month}' order by TDHM",
     documentDigits, true},
    {"sys_bzsz", "$", "select bzbh from sys_bzsz order by bzbh", 3},
    {"sys_fkfs", "F", "select fkbh from sys_fkfs order by fkbh", 3},
    {"sys_zffs", "F", "select fkbh from sys_zffs order by fkbh", 3},
    {"sys_JLDW", "J", "select JLBH from SYS_JLDW order by JLBH", 3},
    {"sys_SSDZ", "S", nullptr, 3},
    {"CY_Pcd_Djb", "PC", "select pcdh from cy_pcd_rpt order by pcdh", 3},
    {"sys_bmsz", "B", "select bmbh from sys_BMSZ order by BMbh", 4},
    {"Sys_GKSZ", "P", "select gkbh from sys_gksz order by gkbh ", 4, false, false},
    {"Sys_CwGs_ZL", "P", "select GSBH from SYS_CWGS order by GSBH ", 4, false, false},
    {"Sys_TcGs_Set", "P", "select GSBH from sys_tcgs order by GSBH ", 4, false, false},
};

const NumberRule *ruleOf(const QString &form)
{
    for (const NumberRule &rule : rules)
        if (form == QLatin1StringView(rule.form))
            return &rule;
    return nullptr;
}

QString twoDigits(int number)
{
    return QString::number(number % 100).rightJustified(2, u'0');
}

// key: of the last row; no value for a table without rows.
void setSequence(const NumberRule &rule, const std::optional<QVariant> &key)
{
    const int digits = rule.monthly ? documentDigits : codeDigits;
    const QString sequence =
        key ? nextSequence(*key, rule.tail, digits) : QStringLiteral("1").rightJustified(digits, u'0');
    if (rule.keepsTooLong || sequence.size() <= digits)
        gNumSeq = sequence;
}

} // namespace

QString nextSequence(const QVariant &lastKey, int tail, int digits)
{
    if (!lastKey.isValid())
        throw DataError(DataError::invalidUseOfNull, QStringLiteral("无效使用 Null"));
    gNumRaw = numberText(numberFromText(lastKey.toString().right(tail)) + 1);
    return gNumRaw.rightJustified(digits, u'0');
}

QString proposeNumber(const QString &form, Connection &connection, const QDate &today)
{
    const NumberRule *rule = ruleOf(form);
    if (!rule || !rule->lookup)
        return {};
    const auto look = [&] {
        std::optional<QVariant> last;
        const Values values = rule->monthly ? Values{{"year", today.year()}, {"month", today.month()}} : Values();
        connection.read(
            QString::fromLatin1(rule->lookup), values, [](const QStringList &) {},
            [&](const QVariantList &row) {
                last = row.first();
                return true;
            });
        setSequence(*rule, last);
    };
    const QString prefix = QString::fromLatin1(rule->prefix);
    if (!rule->monthly) {
        look();
        return prefix + gNumSeq;
    }
    gNumYY = twoDigits(today.year());
    gNumMM = twoDigits(today.month());
    gNumDD = twoDigits(today.day());
    try {
        look();
    } catch (const DataError &error) {
        if (error.number() == DataError::connectionLost)
            throw;
        // The clerk types the number when the one of the last document does not do.
    }
    return prefix + gNumYY + gNumMM + gNumSeq;
}

QString proposeCode(const QString &form, const QVariant &lastKey, bool noRows)
{
    const NumberRule *rule = ruleOf(form);
    if (!rule)
        return {};
    setSequence(*rule, noRows ? std::nullopt : std::optional(lastKey));
    return QString::fromLatin1(rule->prefix) + gNumSeq;
}

} // namespace tradewick
