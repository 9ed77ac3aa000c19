// What "verify" finds in a database, and that it finds nothing in a sound one.
#include "program.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

namespace tradewick
{

namespace
{

using namespace test;

TEST(Verify, NamesWhatDoesNotFitTogether)
{
    struct Case {
        const char *statements;
        QStringList findings;
    };
    QVector<Case> cases{
        {"select 1", {}},
        {"insert into yy_gw_wxht_b (htbh, xc) values ('X9', 1), ('x9 ', 2), ('X260800001 ', 31);"
         "insert into yy_gw_wxht_b (xc) values (1)",
         {"yy_gw_wxht_b: no row of yy_gw_wxht_h for 1 row(s) of htbh Null",
          "yy_gw_wxht_b: no row of yy_gw_wxht_h for 2 row(s) of htbh \"X9\""}},
        {"insert into yy_xyz_nb (xyzh) values ('LC1'); insert into yy_xyz_nh (xyzh) values ('LC2')",
         {"yy_xyz_nb: no row of yy_xyz_nh for 1 row(s) of xyzh \"LC1\"",
          "yy_xyz_nh: no row of yy_xyz_nb for 1 row(s) of xyzh \"LC2\""}},
        {"delete from yy_bzdj where cpbh = 'JM-1001'",
         {"yy_bzdj_b: no row of yy_bzdj for 3 row(s) of cpbh \"JM-1001\""}},
        {"insert into qb_pass (name) values ('Anna'), ('anna '), ('')", {"qb_pass: 2 rows of name \"Anna\""}},
        {"insert into cy_pcd_rpt (pcdh) values ('PC0901'), ('PC0902'), ('PC0901'), ('pc0901'), (null), (null)",
         {"cy_pcd_rpt: 3 rows of pcdh \"PC0901\""}},
        // A lot of which 11 are issued and 2 are back, as the forms count them.
        {"insert into cy_hxd_wgj_ld (start, endh, gl_fenshu, yy_fenshu, sy_fenshu, hs_fenshu) values"
         " ('ABC000100', 'ABC000199', 100, 11, 89, 2);"
         "insert into cy_hxd_gshs (hxdh_st, hxdh_en) values ('ABC000150', 'ABC000159'), ('abc000090', 'ABC000100'),"
         " ('ABD000100', 'ABD000199'), ('ABC000200', 'ABC000300'), (null, null);"
         "insert into cy_hxd_gsly (hxdh) values ('ABC000150'), ('ABC000199 '), ('ABC000200'), (''), (''), (null)",
         {}},
        // Ranges that were issued at two desktops at once, one of them within another.
        {"insert into cy_hxd_gshs (hxdh_st, hxdh_en) values ('TWO000100', 'TWO000109'), ('TWO000102', 'TWO000103'),"
         " ('two000109', 'TWO000112'), ('TWO000113', 'TWO000114')",
         {"cy_hxd_gshs: TWO000100 to TWO000109 and TWO000102 to TWO000103 issue 2 number(s) twice",
          "cy_hxd_gshs: TWO000100 to TWO000109 and two000109 to TWO000112 issue 1 number(s) twice"}},
        // Two series count nothing.
        {"insert into cy_hxd_wgj_ld (start, endh, gl_fenshu, yy_fenshu, sy_fenshu, hs_fenshu) values"
         " ('ABC000100', 'ABD000199', 0, 0, 0, 0)",
         {}},
        {"insert into cy_hxd_wgj_ld (start, endh, gl_fenshu, yy_fenshu, sy_fenshu, hs_fenshu) values"
         " ('XYZ000100', 'XYZ000199', 99, 5, 95, null);"
         "insert into cy_hxd_gsly (hxdh) values ('XYZ000150'), ('XYZ000150')",
         {"cy_hxd_gsly: 2 rows of hxdh \"XYZ000150\"",
          "cy_hxd_wgj_ld: lot XYZ000100 to XYZ000199 has sy_fenshu 95, gl_fenshu less yy_fenshu is 94",
          "cy_hxd_wgj_ld: lot XYZ000100 to XYZ000199 has gl_fenshu 99, the range is 100",
          "cy_hxd_wgj_ld: lot XYZ000100 to XYZ000199 has yy_fenshu 5, the number issued by cy_hxd_gshs is 0",
          "cy_hxd_wgj_ld: lot XYZ000100 to XYZ000199 has hs_fenshu 0, the number returned by cy_hxd_gsly is 2"}},
    };
    const NewPlace place;
    if (place.isOnServer())
        cases.append(
            {"alter table sys_jldw engine = Aria; alter table sys_jldw default character set latin1;"
             "alter table sc_kldt modify ddbh int",
             {"column sc_kldt.ddbh: its type is another", "table sys_jldw: it is of Aria and latin1_swedish_ci"}});
    const QTemporaryDir folder; // for the logo
    ASSERT_EQ(tool({"demo", place.source()}, folder.path()).status, 0);
    QStringList expected; // of all faults so far
    for (const Case &fault : cases) {
        SCOPED_TRACE(fault.statements);
        const Ended made = place.shell(QString(fault.statements) + ';');
        ASSERT_EQ(made.status, 0) << made.err.toStdString();
        expected += fault.findings;
        expected.sort();
        const Ended verified = tool({"verify", place.source()});
        EXPECT_EQ(verified.status, expected.isEmpty() ? 0 : 1) << verified.err.toStdString();
        QStringList lines = verified.lines();
        lines.sort();
        EXPECT_EQ(lines, expected) << verified.out.toStdString();
    }
    ASSERT_EQ(place.shell("drop view yy_cght_rpt; drop table sc_kldt;").status, 0);
    const QString missing = tool({"verify", place.source()}).out;
    EXPECT_TRUE(missing.startsWith("table sc_kldt: missing\ncolumn sc_kldt.ddbh: missing\n")) << missing.toStdString();
    EXPECT_TRUE(missing.contains("view yy_cght_rpt: missing\n"));
}

// Each way in which documents hang together, broken once: one line for it, and none for what a clerk may do.
TEST(Verify, TellsOnceOfEverythingThatIsGone)
{
    const struct {
        const char *head, *body, *key;
    } pairs[] = {{"yy_gw_wxht_h", "yy_gw_wxht_b", "htbh"},   {"yy_gn_cght_h", "yy_gn_cght_b", "htbh"},
                 {"yy_xyz_nh", "yy_xyz_nb", "xyzh"},         {"yy_xyz_h", "yy_xyz_b", "xyzh"},
                 {"yy_mxb_h", "yy_mxb_b", "fpbh"},           {"cy_dcd_djb_h", "cy_dcd_djb_b", "dcdh"},
                 {"cy_hytd_djb_h", "cy_hytd_djb_b", "tdhm"}, {"yy_ssdj_h", "yy_ssdj_b", "fpbh"}};
    // The number of one row, or of the rows of one note, becomes that of no record.
    const struct {
        const char *row, *column, *other;
        int rows = 1;
    } links[] = {{"yy_gn_cght_h htbh C260800001", "wxht", "yy_gw_wxht_h"},
                 {"yy_xyz_nb htbh X260900001", "htbh", "yy_gw_wxht_h", 2},
                 {"yy_xyz_h xyzh XY260900001", "htbh", "yy_gw_wxht_h"},
                 {"yy_mxb_h fpbh FP260900001", "htbh", "yy_gw_wxht_h"},
                 {"yy_mxb_h fpbh FP260900001", "xyzh", "yy_xyz_nh"},
                 {"cy_pcd_rpt fpbh FP260900001", "fpbh", "yy_mxb_h"},
                 {"cy_dcd_djb_b fpbh FP260900001", "fpbh", "yy_mxb_h", 5},
                 {"cy_hytd_djb_b fpbh FP260900001", "fpbh", "yy_mxb_h", 5},
                 {"cy_hytd_djb_h tdhm TD261000001", "dcdh", "cy_dcd_djb_h"},
                 {"cy_hxd_gsly fpbh FP260900001", "fpbh", "yy_mxb_h"}};
    QString breaking = "insert into yy_bzdj (cpbh) values ('no price yet');"
                       "insert into cy_hxd_gsly (hxdh, fpbh, myfs) values ('35A260011', 'voided', '作废');"
                       "insert into cy_pcd_rpt (pcdh, fpbh) values ('PC9999', ' ');"
                       "insert into cy_dcd_djb_b (dcdh) values ('N1'), ('N2');"
                       "insert into cy_dcd_djb_h (dcdh, cw_dcdh) values ('N1', 'SZX 7'), ('N2', 'szx 7 ');"
                       "update cy_hxd_wgj_ld set hs_fenshu = 3 where hs_fenshu = 2;";
    QStringList expected{"yy_ssdj_h: no row of yy_mxb_h for 1 row(s) of fpbh \"yy_ssdj_h\"",
                         "cy_dcd_djb_h: 2 rows of cw_dcdh \"SZX 7\""};
    for (const auto &[head, body, key] : pairs)
        for (const auto &[table, other] : {std::pair(head, body), {body, head}}) {
            breaking += QString("insert into %1 (%2) values ('%1');").arg(table, key);
            expected += QString("%1: no row of %2 for 1 row(s) of %3 \"%1\"").arg(table, other, key);
        }
    for (const auto &[row, column, other, rows] : links) {
        const QStringList one = QString(row).split(u' ');
        breaking += QString("update %1 set %2='gone %1' where %3='%4';").arg(one[0], column, one[1], one[2]);
        expected +=
            QString("%1: no row of %2 for %3 row(s) of %4 \"gone %1\"").arg(one[0], other).arg(rows).arg(column);
    }
    const NewPlace place;
    const QTemporaryDir folder; // for the logo
    ASSERT_EQ(tool({"demo", place.source()}, folder.path()).status, 0);
    const Ended broken = place.shell(breaking);
    ASSERT_EQ(broken.status, 0) << broken.err.toStdString();
    QStringList found = tool({"verify", place.source()}).lines();
    expected.sort();
    found.sort();
    EXPECT_EQ(found.join(u'\n').toStdString(), expected.join(u'\n').toStdString());
}

// A file that other programs have written into, past its rules.
TEST(Verify, FindsWhatAFileMustNotHold)
{
    const struct {
        const char *statements;
        QStringList findings;
    } cases[] = {
        {"update yy_gw_wxht_h set djrq = '2026-02-30', hl = 'seven' where htbh = 'X260800001'",
         {"yy_gw_wxht_h: row 1 has \"2026-02-30\" in djrq", "yy_gw_wxht_h: row 1 has \"seven\" in hl"}},
        {"update yy_gw_wxht_h set djrq = '2026-02-28 14:30', hl = null where htbh = 'X260800001'", {}},
        {"update sys_bzsz set hl = 9e999 where bzbh = (select min(bzbh) from sys_bzsz)",
         {"sys_bzsz: row 1 has \"inf\" in hl"}},
        {"update qb_pass set t3 = 'True', t4 = null, name = x'4142' where rowid = 2",
         {"qb_pass: row 2 has \"AB\" in name", "qb_pass: row 2 has \"True\" in t3"}},
        {"drop index ix_yy_gw_wxht_h_htbh; insert into yy_gw_wxht_h (htbh) values ('x260800001 '), ('Ö1'), ('ö1')",
         {"yy_gw_wxht_h: no row of yy_gw_wxht_b for 2 row(s) of htbh \"Ö1\"",
          "yy_gw_wxht_h: 2 rows of htbh \"X260800001\"", "yy_gw_wxht_h: 2 rows of htbh \"Ö1\""}},
    };
    for (const auto &fault : cases) {
        SCOPED_TRACE(fault.statements);
        const QTemporaryDir folder;
        const QString file = folder.filePath("office.db");
        ASSERT_EQ(tool({"demo", file}).status, 0);
        ASSERT_EQ(sqlite(file, "pragma ignore_check_constraints = on; " + QString(fault.statements) + ';').status, 0);
        const Ended verified = tool({"verify", file});
        EXPECT_EQ(verified.status, fault.findings.isEmpty() ? 0 : 1) << verified.err.toStdString();
        EXPECT_EQ(verified.lines(), fault.findings);
    }
}

} // namespace

} // namespace tradewick
