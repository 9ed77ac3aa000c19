// An office at work: eight desktops fill every document form of one shipment after the other, from the contract to the
// tax register, and draw, issue and take back verification forms on one server, which is killed in the middle and
// started again. What was reported as saved is there, whole, once; what was refused stays on its screen.
#include "common/globals.h"
#include "common/tabbed_form.h"
#include "contracts/contracts.h"
#include "database/description.h"
#include "documents/documents.h"
#include "settlement/settlement.h"
#include "shipping/shipping.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"
#include "support/test_server.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QSet>

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tradewick
{

using namespace test;

namespace
{

constexpr int desktops = 8, linesOfDocument = 3, formsOfIssue = 3;

// A document form and where its records are: its number, and a field, and a column of its lines, that take the mark of
// the desktop and the shipment. typed: what else is, with that {mark} and the numbers of the shipment's other
// documents.
struct Paper {
    RecordFormSpec (*spec)();
    const char *name, *table, *number, *numberField, *mark, *markField, *lines, *lineMark, *typed;
};
// clang-format off
const Paper papers[] = {
    {YY_WXHT, "contract", "yy_gw_wxht_h", "htbh", "Text1(0)", "gb", "Text1(1)", "yy_gw_wxht_b", "beizhu", ""},
    {YY_CGHT, "purchase", "yy_gn_cght_h", "htbh", "Text1(0)", "csmc", "Text1(1)", "yy_gn_cght_b", "beizhu",
     "Combo1(0)={contract}"},
    {YY_XyZ_New_Rpt, "credit", "yy_xyz_nh", "xyzh", "Text1(0)", "kzr", "Text1(2)", "yy_xyz_nb", "beizhu", ""},
    {YY_Yh_XYZ, "older credit", "yy_xyz_h", "xyzh", "Text1(0)", "khmc", "Text1(7)", "yy_xyz_b", "beizhu",
     "Combo1(0)={contract}"},
    {YY_DZ_MXB, "sheet", "yy_mxb_h", "fpbh", "Text1(0)", "djbh", "Text1(1)", "yy_mxb_b", "shuming",
     "Combo1(0)={contract};Combo1(1)={credit};Text1(27)={form}"},
    // Offered to two desktops at once, a dispatch's number is stored by both: each types its own.
    {CY_Pcd_Djb, "dispatch", "cy_pcd_rpt", "pcdh", "Text(0)", "zgdz", "Text(8)", nullptr, nullptr,
     "Text(0)=P{mark};Combo1(0)=company;Combo1(3)={sheet}"},
    {CY_Dcd_Rpt, "booking", "cy_dcd_djb_h", "dcdh", "Text(0)", "shr", "Text(3)", "cy_dcd_djb_b", "gfh",
     "Text(22)=N{mark}"},
    {cy_HYtD_DjB, "bill", "cy_hytd_djb_h", "tdhm", "Text(0)", "shr", "Text(3)", "cy_hytd_djb_b", "gfh",
     "Text(11)=B{mark};Combo1(0)=N{mark}"},
    {YY_SsPj_DJB, "tax", "yy_ssdj_h", "fpbh", "FP_id", "zzsfph", "Text1(0)", "yy_ssdj_b", "cpmc", "Combo1(0)={sheet}"},
};
// clang-format on

// How long they work; script/soak lets them go on for minutes.
int seconds()
{
    const int given = qEnvironmentVariableIntValue("TRADEWICK_SOAK_SECONDS");
    return given > 0 ? given : 12;
}

class Desktop
{
public:
    Desktop(const QString &source, int number, int pipe) : m_number(number), m_pipe(pipe)
    {
        gConnStr = connectionStringOf(source);
        gConn = Connection::shared(gConnStr);
    }

    void work()
    {
        std::vector<std::unique_ptr<RecordForm>> forms;
        for (const Paper &paper : papers)
            forms.push_back(std::make_unique<RecordForm>(paper.spec()));
        const TabbedForm registered(CY_HXD_Djb());
        QElapsedTimer clock;
        clock.start();
        for (int i = 0; clock.elapsed() < seconds() * 1000; ++i) {
            const auto number = [&](const QString &series, int which) {
                return series +
                       QStringLiteral("%1").arg(m_number * 10000 + i * formsOfIssue + which, 6, 10, QChar('0'));
            };
            m_names = {{"mark", QStringLiteral("%1-%2").arg(m_number).arg(i)}, {"form", number("ABC", 1)}};
            for (std::size_t paper = 0; paper < forms.size(); ++paper)
                fill(papers[paper], *forms[paper]);
            enter(registered.tab(0), {{"Text1(1)", number("LOT", 1)}, {"Text1(2)", number("LOT", formsOfIssue)}});
            enter(registered.tab(2), {{"Text1(15)", number("ABC", 1)}, {"Text1(16)", number("ABC", formsOfIssue)}});
            enter(registered.tab(1), {{"Combo1(2)", m_names["sheet"]}, {"Text1(4)", m_names["form"]}});
        }
    }

private:
    // One more document, sent until it is stored.
    void fill(const Paper &paper, RecordForm &form)
    {
        const FormDriver drive(form);
        const QString mark = m_names["mark"];
        for (drive.click("Cmdadd"); !form.isBusy() || form.records().EOF_(); drive.click("Cmdadd"))
            give(drive, form, "?no entry begun");
        QString typed = paper.typed;
        for (auto name = m_names.cbegin(); name != m_names.cend(); ++name)
            typed.replace(u'{' + name.key() + u'}', *name);
        for (const QString &field : typed.split(u';', Qt::SkipEmptyParts))
            drive.type(field.section(u'=', 0, 0), field.section(u'=', 1));
        drive.type(paper.markField, mark);
        if (paper.lines)
            for (int line = 0; line < linesOfDocument; ++line)
                drive.typeCell(drive.find<Grid>("TDBGrid1"), line, paper.lineMark, mark);
        for (int attempt = 0; attempt < 2000 && !save(paper, drive, form); ++attempt) {
        }
    }

    // True once the document is stored. A number that another desktop was faster with is typed over.
    bool save(const Paper &paper, const FormDriver &drive, RecordForm &form)
    {
        const QString mark = m_names["mark"];
        if (!form.isBusy()) {
            drive.click("Cmdedit");
            drive.type(paper.numberField, QStringLiteral("M%1").arg(mark));
        }
        m_dialogs.shown.clear();
        drive.click("CmdOK");
        if (!form.records().hasPendingChanges() && !form.isBusy()) {
            m_names[paper.name] = drive.text(paper.numberField);
            tell(QStringLiteral("+%1 %2 %3").arg(paper.table, m_names[paper.name], mark));
            return true;
        }
        const QString told = m_dialogs.shown.isEmpty() ? QString("nothing") : m_dialogs.shown.first().text;
        const bool expected = told.contains("编号重复") || told.startsWith("与数据库服务器的连接已中断") ||
                              told.startsWith("其他用户正在保存");
        if (!expected)
            tell(QStringLiteral("?%1: ").arg(paper.name) + told + conflictText());
        if (drive.text(paper.markField) != mark)
            tell("?typed text is gone: " + drive.text(paper.markField));
        tell(told.contains("编号重复") ? "twin" : "refused");
        ::usleep(20000);
        return false;
    }

    // One more record of a tab, sent until it is stored: its row and its counters, together.
    void enter(RecordForm &form, const QVector<std::pair<QString, QString>> &fields)
    {
        const FormDriver drive(form);
        drive.click("Cmdadd");
        for (const auto &[field, text] : fields)
            drive.type(field, text);
        for (int attempt = 0; attempt < 2000; ++attempt) {
            if (!form.isBusy())
                drive.click("Cmdedit");
            m_dialogs.shown.clear();
            drive.click("CmdOK");
            if (!form.records().hasPendingChanges() && !form.isBusy())
                return;
            tell("refused");
            ::usleep(20000);
        }
        tell("?never stored: " + fields.first().second);
    }

    void give(const FormDriver &drive, RecordForm &form, const QString &word)
    {
        if (m_dialogs.shown.isEmpty())
            tell(word);
        m_dialogs.shown.clear();
        if (form.isBusy())
            drive.click("Cmdcancel");
        ::usleep(20000);
    }

    QString conflictText() const
    {
        QString text = QStringLiteral("; %1 conflicts").arg(m_dialogs.conflicts.size());
        if (!m_dialogs.conflicts.isEmpty())
            for (const ConflictField &field : m_dialogs.conflicts.last().fields)
                text += QStringLiteral("; %1: %2, %3, %4").arg(field.caption, field.read, field.now, field.typed);
        return text;
    }

    void tell(const QString &line) const
    {
        const QByteArray bytes = line.simplified().toUtf8() + '\n';
        [[maybe_unused]] const auto written = ::write(m_pipe, bytes.constData(), bytes.size());
    }

    ScriptedDialogs m_dialogs;
    QHash<QString, QString> m_names; // of this shipment
    int m_number, m_pipe;
};

} // namespace

// Suites of this ending run first, while the process is still without threads and can be forked.
TEST(OfficeDeathTest, EightDesktopsLoseNothingWhileTheServerIsKilled)
{
    TestServer server({"--max-connections=200"});
    server.run({"create database office"});
    {
        Connection connection;
        connection.Open(connectionStringOf(server.source("office")));
        for (const QString &statement : ddl(Engine::MariaDb))
            connection.executeBound({statement, {}});
        connection.Execute("insert into cy_hxd_wgj_ld(start,endh,gl_fenshu,yy_fenshu,sy_fenshu,hs_fenshu) "
                           "values('ABC000001','ABC999999',999999,0,999999,0)");
    }
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    QList<pid_t> children;
    for (int number = 0; number < desktops; ++number) {
        children.append(::fork());
        if (children.last() == 0) {
            Desktop(server.source("office"), number, ends[1]).work();
            ::_exit(0);
        }
    }
    ::close(ends[1]);
    QByteArray told;
    bool isKilled = false;
    QElapsedTimer clock;
    clock.start();
    char buffer[65536];
    for (pollfd wait{ends[0], POLLIN, 0};;) {
        if (::poll(&wait, 1, 100) > 0) {
            const ssize_t got = ::read(ends[0], buffer, sizeof buffer);
            if (got <= 0)
                break;
            told.append(buffer, got);
        }
        if (!isKilled && clock.elapsed() > seconds() * 400) {
            isKilled = true;
            server.kill();
            server.start();
        }
    }
    ::close(ends[0]);
    for (const pid_t child : std::as_const(children)) {
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    }

    QHash<QString, QString> reported; // marks, by table and number
    int twins = 0, refused = 0;
    for (const QByteArray &line : told.split('\n')) {
        const QString text = QString::fromUtf8(line);
        EXPECT_FALSE(text.startsWith(u'?')) << line.constData();
        if (text.startsWith(u'+')) {
            const QString document = text.mid(1).section(u' ', 0, 1);
            EXPECT_FALSE(reported.contains(document)) << line.constData();
            reported.insert(document, text.section(u' ', 2));
        }
        twins += text == "twin" ? 1 : 0;
        refused += text == "refused" ? 1 : 0;
    }
    Connection connection;
    connection.Open(connectionStringOf(server.source("office")));
    int shipments = 0;
    for (const Paper &paper : papers) {
        int documents = 0;
        for (const Row &head : connection.rows(
                 QStringLiteral("select %1 as number,%2 as mark from %3").arg(paper.number, paper.mark, paper.table))) {
            const QString document = QStringLiteral("%1 %2").arg(paper.table, head["number"].toString());
            EXPECT_EQ(reported.take(document), head["mark"].toString()) << document.toStdString();
            ++documents;
        }
        if (!paper.lines)
            continue;
        const auto linesOfEach =
            connection.rows(QStringLiteral("select %1 as number,count(*) as n from %2 where %3<>'' group by %1")
                                .arg(paper.number, paper.lines, paper.lineMark));
        EXPECT_EQ(linesOfEach.size(), documents) << paper.lines;
        for (const Row &lines : linesOfEach)
            EXPECT_EQ(lines["n"].toInt(), linesOfDocument) << paper.lines << lines["number"].toString().toStdString();
        shipments = documents;
    }
    EXPECT_EQ(reported.keys().join(u' ').toStdString(), "") << "were reported and are not there";
    EXPECT_GE(shipments, desktops); // each ends the one it began
    EXPECT_GT(refused, 0);
    EXPECT_EQ(findingsIn(server.source("office")).toStdString(), "");
    const auto sum = [&](const QString &what) { return connection.rows("select " + what).first()["n"].toInt(); };
    for (const char *rows : {"cy_hxd_wgj_ld where start like 'LOT%'", "cy_hxd_gshs where ly_fenshu=3",
                             "cy_hxd_gsly where hxdh like 'ABC%' and fpbh<>''"})
        EXPECT_EQ(sum(QStringLiteral("count(*) as n from ") + rows), shipments) << rows;
    RecordProperty("shipments", shipments);
    printf("%d shipments of %d desktops in %d s, %d numbers offered twice, %d saves refused and kept\n", shipments,
           desktops, seconds(), twins, refused);
}

} // namespace tradewick
