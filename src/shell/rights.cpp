#include "shell/rights.h"

namespace tradewick
{

const std::vector<Right> &rights()
{
    static const QString business = QStringLiteral("业务管理");
    static const QString documents = QStringLiteral("单证管理");
    static const QString shipping = QStringLiteral("储运管理");
    static const QString basics = QStringLiteral("基本资料");
    static const QString settings = QStringLiteral("系统设置");
    static const QString statistics = QStringLiteral("综合统计");
    static const std::vector<Right> all{
        {"t1", QStringLiteral("国外客户"), business, "Tool84"},
        {"t2", QStringLiteral("国内厂家"), business, "Tool98"},
        {"t3", QStringLiteral("商品资料 "), business, "Tool94"},
        {"t4", QStringLiteral("采购合同"), business, "Tool95"},
        {"t5", QStringLiteral("外销合同"), business, "Tool96"},
        {"t6", QStringLiteral("信用证"), documents, "Tool93"},
        {"t7", QStringLiteral("制单明细"), documents, "Tool114"},
        {"t8", QStringLiteral("核销单管理"), documents, "Tool107"},
        {"t9", QStringLiteral("船公司资料"), shipping, "Tool103"},
        {"t10", QStringLiteral("订舱单"), shipping, "Tool101"},
        {"t11", QStringLiteral("拖车公司资料"), shipping, "Tool104"},
        {"t12", QStringLiteral("派车单"), shipping, "Tool105"},
        {"t13", QStringLiteral("海运提单"), shipping, "Tool8"},
        {"t14", QStringLiteral("付款方式"), basics, "Tool86"},
        {"t15", QStringLiteral("币制设置"), basics, "Tool88"},
        {"t16", QStringLiteral("结算方式"), basics, "Tool87"},
        {"t17", QStringLiteral("区域设置"), basics, "Tool85"},
        {"t18", QStringLiteral("口岸设置"), basics, "Tool89"},
        {"t19", QStringLiteral("计量设置"), basics, "Tool97"},
        {"t20", QStringLiteral("公司资料"), settings, "Tool54"},
        {"t21", QStringLiteral("权限分配"), settings, "Tool55"},
        {"t22", QStringLiteral("工作人员"), settings, "Tool56"},
        {"t23", QStringLiteral("部门设置"), settings, "Tool57"},
        {"t24", QStringLiteral("外销合同进程"), statistics, {}},
        {"t25", QStringLiteral("订舱统计"), statistics, {}},
        {"t26", QStringLiteral("派车统计"), statistics, {}},
        {"t27", QStringLiteral("明细单统计"), statistics, {}},
        {"t28", QStringLiteral("信用证接收情况"), statistics, {}},
    };
    return all;
}

void applyRights(Recordset &user, const std::function<void(const QString &tool)> &switchOff)
{
    for (const Right &right : rights()) {
        if (right.tool.isEmpty())
            continue;
        const Field flag = user.Fields(right.flag);
        if (flag.value().isValid() && flag.text().trimmed() != u"True")
            switchOff(right.tool);
    }
}

} // namespace tradewick
