#include "shell/commands.h"

namespace tradewick
{

const std::vector<Band> &menuBands()
{
    static const std::vector<Band> bands{
        {"Band2",
         QStringLiteral("【业务查询统计】"),
         {{"Tool109", QStringLiteral("商品资料查询统计"), "YY_spZl_CXTjB", "goods"},
          {"Tool112", QStringLiteral("国内采购合同统计"), "YY_cgHt_CXtjb", "purchase"},
          {"Tool118", {}, {}},
          {"Tool121", QStringLiteral("国外销售合同统计"), "YY_WXHt_cxTjB", "export"}},
         "Tool0"},
        {"Band3",
         QStringLiteral("【单证查询统计】"),
         {{"Tool108", QStringLiteral("信用证接收统计"), "YY_XYz_CxTj", "credit"},
          {"Tool110", QStringLiteral("明细单查询统计"), "YY_mxd_CxTj", "sheet"},
          {"Tool119", {}, {}},
          {"Tool120", QStringLiteral("核销单领用回收"), "YY_HxD_LyHs_TJB", "verification"}},
         "Tool3"},
        {"Band10",
         QStringLiteral("【储运分析统计】"),
         {{"Tool130", QStringLiteral("订舱查询统计"), "YY_DcD_CxTj", "booking"},
          {"Tool131", QStringLiteral("派车查询统计"), "CY_Pcd_CxTj", "dispatch"},
          {"Tool133", {}, {}},
          {"Tool132", QStringLiteral("海运提单查询"), {}, "bill"}},
         "Tool4"},
        {"Band11",
         QStringLiteral("【综合预算统计】"),
         {{"Tool138", QStringLiteral("货物装柜测算"), {}, "loading"},
          {"Tool139", QStringLiteral("出口成本预算"), {}, "budget"},
          {"Tool140", {}, {}},
          {"Tool141", QStringLiteral("外销缴税统计"), "YY_ZsQk_TJB", "tax"},
          {"Tool142", QStringLiteral("外销合同综合统计"), {}, "chart"}},
         "Tool136"},
        {"Band6",
         QStringLiteral("【系统帮助信息】"),
         {{"Tool59", QStringLiteral("关于本系统..."), "frmAbout", "about"},
          {"Tool64", QStringLiteral("系统使用说明"), {}, "manual"},
          {"Tool62", {}, {}},
          {"Tool61", QStringLiteral("服务器连接设置"), "frmODBCLogon", "server"},
          {"Tool60", QStringLiteral("数据备份与恢复"), {}, "backup"},
          {"Tool65", {}, {}},
          {"Tool129", QStringLiteral("退出系统"), exitCommand, "exit"}},
         "Tool92"},
    };
    return bands;
}

const std::vector<Band> &sideBands()
{
    static const std::vector<Band> bands{
        {"ChildBand1",
         QStringLiteral("业务管理"),
         {{"Tool84", QStringLiteral("国外客户"), "YY_GWKH_ZL", "customer"},
          {"Tool98", QStringLiteral("国内厂家"), "yy_GYszl", "supplier"},
          {"Tool94", QStringLiteral("商品资料"), "yy_cpbj", "goods"},
          {"Tool95", QStringLiteral("采购合同"), "YY_CGHT", "purchase"},
          {"Tool96", QStringLiteral("外销合同"), "YY_WXHT", "export"}},
         {}},
        {"ChildBand3",
         QStringLiteral("单证管理"),
         {{"Tool93", QStringLiteral("信用证"), "YY_XyZ_New_Rpt", "credit"},
          {"Tool114", QStringLiteral("制单明细表"), "YY_DZ_MXB", "sheet"},
          {"Tool115", QStringLiteral("税收票据"), "YY_SsPj_DJB", "tax"},
          {"Tool107", QStringLiteral("核销单管理"), "CY_HXD_Djb", "verification"},
          {"Tool106", QStringLiteral("议付交单结汇"), {}, "settlement"}},
         {}},
        {"ChildBand4",
         QStringLiteral("储运管理"),
         {{"Tool103", QStringLiteral("船务公司"), "Sys_CwGs_ZL", "carrier"},
          {"Tool101", QStringLiteral("订舱单"), "CY_Dcd_Rpt", "booking"},
          {"Tool104", QStringLiteral("拖车公司"), "Sys_TcGs_Set", "trucker"},
          {"Tool105", QStringLiteral("派车单"), "CY_Pcd_Djb", "dispatch"},
          {"Tool8", QStringLiteral("海运提单"), "cy_HYtD_DjB", "bill"}},
         {}},
        {"ChildBand2",
         QStringLiteral("基本资料"),
         {{"Tool86", QStringLiteral("付款方式"), "sys_zffs", "payment"},
          {"Tool88", QStringLiteral("币制设置"), "sys_bzsz", "currency"},
          {"Tool87", QStringLiteral("结算方式"), "sys_fkfs", "terms"},
          {"Tool85", QStringLiteral("区域设置"), "sys_qysz", "region"},
          {"Tool89", QStringLiteral("口岸设置"), "Sys_GKSZ", "port"},
          {"Tool97", QStringLiteral("计量单位"), "sys_JLDW", "unit"}},
         {}},
        {"ChildBand6",
         QStringLiteral("系统设置"),
         {{"Tool54", QStringLiteral("公司注册"), "sys_gssz", "company"},
          {"Tool55", QStringLiteral("权限分配"), "sys_QXSZ", "rights"},
          {"Tool56", QStringLiteral("工作人员"), "sys_gzry", "person"},
          {"Tool57", QStringLiteral("部门名称"), "sys_bmsz", "department"}},
         {}},
    };
    return bands;
}

const Band &toolBand()
{
    static const Band band{"Band7",
                           QStringLiteral("工具栏"),
                           {{"Tool6", QStringLiteral("系统优化"), {}, "tune"},
                            {{}, {}, {}},
                            {"Tool19", QStringLiteral("版本信息"), "frmAbout", "about"},
                            {{}, {}, {}},
                            {"Tool5", QStringLiteral("帮助信息"), "frmSplash", "help"},
                            {{}, {}, {}},
                            {"Tool7", QStringLiteral("退出系统"), exitCommand, "exit"}},
                           {}};
    return band;
}

const Band &statusBand()
{
    static const Band band{"Band9",
                           QStringLiteral("状态栏"),
                           {{"Tool28", QStringLiteral("青柏软件"), {}},
                            {"Tool29", {}, {}},
                            {statusTextTool, {}, {}},
                            {"Tool17", {}, {}},
                            {"Tool16", QStringLiteral("Num Lock"), {}},
                            {"Tool18", QStringLiteral("2004-03-22"), {}}},
                           {}};
    return band;
}

} // namespace tradewick
