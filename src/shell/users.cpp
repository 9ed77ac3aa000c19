#include "shell/users.h"

#include "shell/rights.h"

namespace tradewick
{

// Users, their passwords and their rights. A user is deleted at once and without a question, unlike everywhere else.
RecordFormSpec sys_QXSZ()
{
    RecordFormSpec spec{
        .name = "sys_QXSZ",
        .caption = "系统权限分配管理",
        .statement = "select * FROM qb_pass order by name asc",
        .pages = {{"", {{"Text1(0)", "name", "用户名称:"}, {"Text1(1)", "pass", "用户口令:"}}}},
        .list = {{"name", "用户名称"}},
        .captions = {"首端", "向前", "向后", "末端", "新增", "删除", "修改", "确认", "取消", "返回"},
        .failures = {.add = Failure::Skip, .ok = Failure::Skip},
        .afterDelete = AfterDelete::SecondBehindLast,
        .deleteQuestion = {},
    };
    for (int index = 0; index < static_cast<int>(rights().size()); ++index) {
        // The check boxes stand in the order of the flags but for three of "基本资料".
        const int flag = index == 15 ? 17 : index == 16 ? 18 : index == 17 ? 16 : index + 1;
        const Right &right = rights()[flag - 1];
        spec.pages.first().fields.append({.name = QStringLiteral("Check1(%1)").arg(index),
                                          .column = right.flag,
                                          .caption = right.caption,
                                          .type = field::check,
                                          .group = right.group});
        // All rights of a new user start off, and off is stored: a flag that is Null would leave its command on.
        spec.defaults.append({right.flag, "False"});
    }
    return spec;
}

} // namespace tradewick
