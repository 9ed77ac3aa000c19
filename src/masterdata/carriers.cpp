#include "masterdata/carriers.h"

namespace tradewick
{

RecordFormSpec carrierRegister(const QString &name, const QString &caption, const char *statement, const QString &kind,
                               const char *lookup)
{
    const QString number = kind + "公司编号", company = kind + "公司名称";
    return {
        .name = name,
        .caption = caption,
        .statement = statement,
        .pages = {{"",
                   {{"Text(0)", "gsbh", number + ":"},
                    {"Text(1)", "gsmc", company + ":"},
                    {"Text(2)", "ywmc", "英文名称:"},
                    {"Text(3)", "dizhi", "地        址:"},
                    {"Text(4)", "BeiZhu", "备注说明:"},
                    {"Text(5)", "phone", "电       话:"},
                    {"Text(6)", "fax", "传        真:"},
                    {"Text(7)", "dzyx", "电子邮箱:"},
                    {"Text(8)", "lxr", "联  系  人:"},
                    {"Text(9)", "yzbm", "邮政编号:"},
                    {"Text(10)", "dbgh", "电报挂号:"},
                    {"Text1", "logo", "", field::picture, 2}}}},
        .pairsInRow = 2,
        .list = {{"gsbh", number}, {"gsmc", company}},
        .numbering = running("P", 4, lookup, TooLong::IsDropped),
        .defaults = {{"logo", "  "}},
        .required = codeAndName(),
        .whenEmpty = {{"Text(2)"}, {"Text(3)"}, {"Text(4)"}},
        .failures = {.add = Failure::None, .ok = Failure::Skip},
    };
}

} // namespace tradewick
