#include "masterdata/currencies.h"

namespace tradewick
{

const RecordFormSpec Sys_bzsz = {
    .name = "sys_bzsz",
    .caption = "币制设置 ",
    .statement = "select * FROM SYS_Bzsz",
    .fields = {{"Text(0)", "bzbh", "币制编号:"},
               {"Text(1)", "bizh", "币制符号:"},
               {"Text(2)", "bzcode", "币制（中文）:"},
               {"Text(3)", "hl", "汇    率:"}},
    .list = {{"bzbh", "币制编号"}, {"bizh", "币制名称"}},
    .numberedAs = "sys_bzsz",
    .required = {{"Text(0)", "编号或名称不能为空"}, {"Text(1)", "编号或名称不能为空"}},
    .notes = {"注：请在币制符号中，正确地录入货币符号，如“USD”、“CNY”。", "设置基准币，汇率为1。即1：1。"},
    .navigationWhileBusy = true,
    .failures = {.ok = Failure::Skip},
};

} // namespace tradewick
