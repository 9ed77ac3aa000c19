// Currencies and their rates; the base currency is the one with rate 1.
#include "masterdata/masterdata.h"

namespace tradewick
{

RecordFormSpec sys_bzsz()
{
    return {
        .name = "sys_bzsz",
        .caption = "币制设置 ",
        .statement = "select * FROM SYS_Bzsz",
        .pages = {{"",
                   {{"Text(0)", "bzbh", "币制编号:"},
                    {"Text(1)", "bizh", "币制符号:"},
                    {"Text(2)", "bzcode", "币制（中文）:"},
                    {"Text(3)", "hl", "汇    率:"}}}},
        .list = {{"bzbh", "币制编号"}, {"bizh", "币制名称"}},
        .notes = {"注：请在币制符号中，正确地录入货币符号，如“USD”、“CNY”。", "设置基准币，汇率为1。即1：1。"},
        .numbering = running("$", 3, "select bzbh from sys_bzsz order by bzbh"),
        .required = codeAndName(),
        .failures = {.ok = Failure::Skip},
        .navigationWhileBusy = true,
    };
}

} // namespace tradewick
