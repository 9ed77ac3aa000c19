// Two desktops at one database: what one stored meanwhile is never overwritten unasked, in any form, and nothing that
// was typed is lost.
#include "contracts/contracts.h"
#include "documents/documents.h"
#include "masterdata/masterdata.h"
#include "shell/users.h"
#include "shipping/shipping.h"
#include "support/form_driver.h"
#include "support/scripted_dialogs.h"
#include "support/test_database.h"

#include <gtest/gtest.h>

#include <QTableWidget>
#include <QTimer>

namespace tradewick
{

using namespace test;

namespace
{

class TwoDesktops : public testing::Test
{
protected:
    TestDatabase database{TestDatabase::Demonstration};
    ScriptedDialogs dialogs;

    void answerAll(bool typed)
    {
        dialogs.settle = [typed](const ConflictQuestion &question) {
            return ConflictAnswer(qMax<qsizetype>(question.fields.size(), 1), typed);
        };
    }
};

// The documents whose lines two desktops may have before them at once.
struct WithLines {
    RecordFormSpec (*form)();
    QString key, heads, lines;
    const char *typed; // the column of the lines that this desktop types into; the other's is the colour
    Qt::Key page;      // of the lines, with Alt
    QString number;    // of the record that the form begins with

    // A column of the lines of one document.
    QStringList texts(TestDatabase &database, const QString &column, const QString &of) const
    {
        QStringList texts;
        const QString statement = "select * from " + lines + " where " + key + "='{k}'";
        for (const Row &row : database.connection().rows(statement, {{"k", of}}))
            texts.append(row[column].toString());
        return texts;
    }
    QStringList texts(TestDatabase &database, const QString &column) const { return texts(database, column, number); }
};
const WithLines contract{YY_WXHT, "htbh", "yy_gw_wxht_h", "yy_gw_wxht_b", "beizhu", Qt::Key_1, "X260800001"};
const WithLines documents[] = {contract,
                               {YY_DZ_MXB, "fpbh", "yy_mxb_h", "yy_mxb_b", "shuming", Qt::Key_2, "FP260900001"}};

} // namespace

// One mechanism in every form, those that pass over the database's errors included.
TEST_F(TwoDesktops, EveryFormAsksBeforeItWritesOverAnother)
{
    const struct {
        RecordFormSpec (*form)();
        QString table, key, control, typed, changed; // the columns that this and the other desktop change
    } cases[] = {
        {sys_bzsz, "sys_bzsz", "bzbh", "Text(2)", "bzcode", "bizh"},
        {YY_GWKH_ZL, "yy_gwkh_zl", "khbh", "Text1(9)", "ywmc", "khmc"},
        {yy_cpbj, "yy_bzdj", "cpbh", "Text(3)", "beizhu", "bacp"},
        {YY_WXHT, "yy_gw_wxht_h", "htbh", "Text1(1)", "gb", "qydz"},
        {YY_DZ_MXB, "yy_mxb_h", "fpbh", "Text1(1)", "djbh", "zygk"},
        {CY_Pcd_Djb, "cy_pcd_rpt", "pcdh", "Text(8)", "zgdz", "beizhu"},
        {CY_Dcd_Rpt, "cy_dcd_djb_h", "dcdh", "Text(8)", "mdgk", "shr"},
        {cy_HYtD_DjB, "cy_hytd_djb_h", "tdhm", "Text(10)", "mdgk", "shr"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.table.toStdString());
        const auto form = std::make_unique<RecordForm>(c.form());
        const FormDriver drive(*form);
        const QString key = form->records().Fields(c.key).text();
        const auto stored = [&](const QString &column) {
            return database.value("select " + column + " from " + c.table + " where " + c.key + "='{k}'", {{"k", key}})
                .toString();
        };
        const QString before = stored(c.typed);
        drive.click("Cmdedit");
        drive.type(c.control, "MINE");
        database.elsewhere("update " + c.table + " set " + c.changed + "='THEIRS' where " + c.key + "='{k}'",
                           {{"k", key}});
        // Back: nothing is stored, everything typed is there, and OK can be pressed again.
        dialogs.conflicts.clear();
        dialogs.settle = {};
        drive.click("CmdOK");
        ASSERT_EQ(dialogs.conflicts.size(), 1);
        EXPECT_EQ(dialogs.conflicts[0].kind, ConflictQuestion::Changed);
        EXPECT_TRUE(dialogs.conflicts[0].record.contains(key));
        EXPECT_EQ(stored(c.changed), "THEIRS");
        EXPECT_EQ(stored(c.typed), before);
        EXPECT_TRUE(form->isBusy());
        EXPECT_EQ(drive.text(c.control), "MINE");
        // Field by field: what each of the two changed.
        dialogs.settle = [](const ConflictQuestion &question) {
            ConflictAnswer answer;
            for (const ConflictField &field : question.fields)
                answer.append(field.typed == "MINE");
            return answer;
        };
        drive.click("CmdOK");
        EXPECT_FALSE(form->isBusy());
        EXPECT_EQ(stored(c.changed), "THEIRS");
        EXPECT_EQ(stored(c.typed), "MINE");
        EXPECT_EQ(drive.text(c.control), "MINE");
        EXPECT_EQ(dialogs.shown, QVector<Shown>());
    }
}

TEST_F(TwoDesktops, TheUserTakesTheirsOrTheOwn)
{
    for (const bool own : {false, true}) {
        RecordForm form(sys_bzsz());
        const FormDriver drive(form);
        const QString key = form.records().Fields("bzbh").text();
        drive.click("Cmdedit");
        drive.type("Text(2)", "OWN");
        database.elsewhere("update sys_bzsz set bzcode='theirs' where bzbh='{k}'", {{"k", key}});
        answerAll(own);
        drive.click("CmdOK");
        const QString expected = own ? "OWN" : "theirs";
        EXPECT_EQ(database.value("select bzcode from sys_bzsz where bzbh='{k}'", {{"k", key}}), expected);
        EXPECT_EQ(drive.text("Text(2)"), expected);
        const ConflictField field = dialogs.conflicts.last().fields.first();
        EXPECT_EQ(field.caption, "币制（中文）");
        EXPECT_EQ(field.now, "theirs");
        EXPECT_EQ(field.typed, "OWN");
        database.elsewhere("update sys_bzsz set bzcode='$' where bzbh='{k}'", {{"k", key}});
    }
}

// A change of case or of trailing blanks alone is one too; what both typed alike is none.
TEST_F(TwoDesktops, ComparesToTheLetter)
{
    for (const auto &[theirs, asks] : {std::pair("aB", true), {"ab ", true}, {"MINE", false}}) {
        database.elsewhere("update sys_bzsz set bzcode='ab'");
        RecordForm form(sys_bzsz());
        const FormDriver drive(form);
        drive.click("Cmdedit");
        drive.type("Text(2)", "MINE");
        database.elsewhere("update sys_bzsz set bzcode='{t}'", {{"t", theirs}});
        dialogs.conflicts.clear();
        drive.click("CmdOK");
        EXPECT_EQ(dialogs.conflicts.size(), asks ? 1 : 0) << theirs;
    }
}

TEST_F(TwoDesktops, LinesOfADocumentAreAskedForToo)
{
    for (const WithLines &of : documents) {
        SCOPED_TRACE(of.heads.toStdString());
        RecordForm form(of.form());
        const FormDriver drive(form);
        auto *lines = drive.find<Grid>("TDBGrid1");
        drive.click("Cmdedit");
        QTest::keyClick(&form, of.page, Qt::AltModifier);
        drive.typeCell(lines, 0, of.typed, "mine");
        drive.typeCell(lines, 1, of.typed, "mine too");
        database.elsewhere("update " + of.lines + " set yanse='red' where " + of.key + "='{k}'", {{"k", of.number}});
        dialogs.conflicts.clear();
        dialogs.settle = {};
        drive.click("CmdOK"); // goes back
        EXPECT_EQ(of.texts(database, of.typed).filter("mine"), QStringList());
        EXPECT_TRUE(form.isBusy());
        dialogs.settle = [](const ConflictQuestion &question) {
            ConflictAnswer answer;
            for (const ConflictField &field : question.fields)
                answer.append(field.now == field.read);
            return answer;
        };
        drive.click("CmdOK");
        EXPECT_EQ(of.texts(database, of.typed).filter("mine"), QStringList({"mine", "mine too"}));
        EXPECT_EQ(of.texts(database, "yanse").count("red"), of.texts(database, "yanse").size());
        EXPECT_EQ(dialogs.conflicts.size(), 3);
        EXPECT_FALSE(dialogs.conflicts[0].fields.isEmpty());
    }
}

// Another desktop deleted the document whose lines are typed at this one.
TEST_F(TwoDesktops, ADeletedDocumentIsStoredAnewOrGivenUp)
{
    for (const WithLines &of : documents)
        for (const bool own : {true, false}) {
            SCOPED_TRACE(of.heads.toStdString());
            RecordForm form(of.form());
            const FormDriver drive(form);
            const QString number = form.records().Fields(of.key).text();
            const qsizetype before = of.texts(database, of.typed, number).size();
            auto *lines = drive.find<Grid>("TDBGrid1");
            drive.click("Cmdedit");
            QTest::keyClick(&form, of.page, Qt::AltModifier);
            const QString typed = own ? "mine" : "given up";
            drive.typeCell(lines, 0, of.typed, typed);
            for (const QString &table : {of.lines, of.heads})
                database.elsewhere("delete from " + table + " where " + of.key + "='{k}'", {{"k", number}});
            dialogs.conflicts.clear();
            answerAll(own);
            drive.click("CmdOK");
            ASSERT_FALSE(dialogs.conflicts.isEmpty());
            EXPECT_EQ(dialogs.conflicts[0].kind, ConflictQuestion::Gone);
            EXPECT_EQ(of.texts(database, of.typed, number).size(), own ? before : 0);
            EXPECT_EQ(of.texts(database, of.typed, number).count(typed), own ? 1 : 0);
            EXPECT_EQ(
                database.value("select count(*) from " + of.heads + " where " + of.key + "='{k}'", {{"k", number}}),
                own ? 1 : 0);
            EXPECT_FALSE(form.isBusy());
        }
}

TEST_F(TwoDesktops, DeletingWhatAnotherChangedIsAskedAgain)
{
    database.elsewhere("insert into qb_pass(name,pass) values('新人','1')");
    for (const bool own : {false, true}) {
        RecordForm form(sys_QXSZ());
        const FormDriver drive(form);
        drive.click("cmdxq"); // not the last, which any move would stay on
        const QString name = form.records().Fields("name").text();
        database.elsewhere("update qb_pass set pass='{p}' where name='{n}'", {{"n", name}, {"p", own ? "2" : "3"}});
        dialogs.conflicts.clear();
        answerAll(own);
        drive.click("Cmddelete");
        ASSERT_EQ(dialogs.conflicts.size(), 1);
        EXPECT_EQ(dialogs.conflicts[0].kind, ConflictQuestion::Deleting);
        EXPECT_EQ(database.value("select count(*) from qb_pass where name='{n}'", {{"n", name}}), own ? 0 : 1);
        EXPECT_EQ(form.records().Fields("name").text() == name, !own); // who is kept stays on the screen
    }
}

// A new contract that bears a stored one's number by mistake: what is typed there never ends in the stored one.
TEST_F(TwoDesktops, LinesTypedUnderAnotherContractsNumberLeaveItAlone)
{
    const QStringList before = contract.texts(database, "beizhu");
    RecordForm form(YY_WXHT());
    const FormDriver drive(form);
    auto *lines = drive.find<Grid>("TDBGrid1");
    drive.click("Cmdadd");
    drive.type("Text1(0)", "X260800001");
    drive.typeCell(lines, 0, "beizhu", "new");
    drive.click("CmdOK");
    EXPECT_TRUE(dialogs.take().text.contains("编号重复"));
    EXPECT_EQ(contract.texts(database, "beizhu"), before);
    drive.click("Cmdedit");
    drive.type("Text1(0)", "X260899999");
    drive.click("CmdOK");
    EXPECT_EQ(dialogs.shown, QVector<Shown>());
    EXPECT_EQ(contract.texts(database, "beizhu"), before);
    EXPECT_EQ(contract.texts(database, "beizhu", "X260899999"), QStringList{"new"});
}

TEST(ConflictDialog, IsAnsweredByKeyboard)
{
    const ConflictQuestion question{ConflictQuestion::Changed,
                                    "外销合同 X1",
                                    {{"客户名称", "A", "B", "A"}, {"电话", "1", "1", "2"}, {"传真", "x", "y", "z"}}};
    const struct {
        QList<int> keys; // in the table
        QString button;
        std::optional<ConflictAnswer> answer;
    } cases[] = {
        {{}, "chosen", ConflictAnswer{false, true, false}},
        {{Qt::Key_Down, Qt::Key_Down, Qt::Key_Space}, "chosen", ConflictAnswer{false, true, true}},
        {{}, "mine", ConflictAnswer{true, true, true}},
        {{}, "theirs", ConflictAnswer{false, false, false}},
        {{}, "back", std::nullopt},
    };
    for (const auto &c : cases) {
        QTimer::singleShot(0, qApp, [&c] {
            QWidget *dialog = QApplication::activeModalWidget();
            ASSERT_NE(dialog, nullptr);
            auto *table = dialog->findChild<QTableWidget *>("fields");
            EXPECT_EQ(dialog->focusWidget(), table);
            for (const int key : c.keys)
                QTest::keyClick(table, static_cast<Qt::Key>(key));
            EXPECT_EQ(table->item(2, 2)->text(), "y");
            auto *button = dialog->findChild<QAbstractButton *>(c.button);
            button->setFocus();
            QTest::keyClick(button, Qt::Key_Space);
        });
        EXPECT_EQ(ConflictDialog::ask(question, nullptr), c.answer) << c.button.toStdString();
    }
}

} // namespace tradewick
