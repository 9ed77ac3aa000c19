#include "common/conflict_dialog.h"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace tradewick
{

namespace
{

struct Wording {
    const char *sentence, *theirs, *mine;
};

Wording wordingOf(ConflictQuestion::Kind kind)
{
    switch (kind) {
    case ConflictQuestion::Changed:
        return {"在您编辑期间，其他用户修改了“%1”，尚未保存。打勾的栏目保存您录入的内容，其余保留现有的：",
                "全部保留现有的(&T)", "全部用我录入的(&M)"};
    case ConflictQuestion::Gone:
        return {"在您编辑期间，其他用户删除了“%1”，尚未保存。您录入的内容：", "放弃我录入的(&T)", "重新保存(&M)"};
    case ConflictQuestion::Deleting:
        break;
    }
    return {"您读取之后，其他用户修改了“%1”，尚未删除。", "保留该记录(&T)", "仍然删除(&M)"};
}

enum Column { Caption, Read, Now, Typed };

} // namespace

ConflictDialog::ConflictDialog(const ConflictQuestion &question, QWidget *parent)
    : QDialog(parent), m_table(new QTableWidget(this))
{
    setObjectName("conflict");
    setWindowTitle(QStringLiteral("系统提示"));
    const Wording wording = wordingOf(question.kind);
    auto *sentence = new QLabel(QString::fromUtf8(wording.sentence).arg(question.record), this);
    sentence->setWordWrap(true);
    sentence->setTextFormat(Qt::PlainText);
    buildTable(question);

    auto *buttons = new QHBoxLayout;
    const auto addButton = [&](const char *name, const QString &caption, const auto &action) {
        auto *button = new QPushButton(caption, this);
        button->setObjectName(name);
        button->setAccessibleName(QString(caption).section(u'(', 0, 0));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, action);
        buttons->addWidget(button);
        return button;
    };
    const auto answerAll = [this, count = question.fields.size()](bool typed) {
        m_answer.fill(typed, qMax<qsizetype>(count, 1));
        accept();
    };
    addButton("theirs", QString::fromUtf8(wording.theirs), [answerAll] { answerAll(false); });
    addButton("mine", QString::fromUtf8(wording.mine), [answerAll] { answerAll(true); });
    if (question.kind == ConflictQuestion::Changed)
        addButton("chosen", QStringLiteral("按所选保存(&S)"), [this] {
            m_answer.clear();
            for (int row = 0; row < m_table->rowCount(); ++row)
                m_answer.append(m_table->item(row, Typed)->checkState() == Qt::Checked);
            accept();
        });
    buttons->addStretch();
    addButton("back", QStringLiteral("返回(&B)"), [this] { reject(); });

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(sentence);
    layout->addWidget(m_table);
    layout->addLayout(buttons);
    resize(820, 420);
    m_table->setFocus();
}

// A field that one side alone changed is decided beforehand for that side; where both did, for what stands there.
void ConflictDialog::buildTable(const ConflictQuestion &question)
{
    const bool choose = question.kind == ConflictQuestion::Changed;
    m_table->setObjectName("fields");
    m_table->setAccessibleName(QStringLiteral("不同的栏目"));
    m_table->setColumnCount(4);
    m_table->setHorizontalHeaderLabels({QStringLiteral("栏目"), QStringLiteral("读取时"),
                                        QStringLiteral("现有（其他用户）"), QStringLiteral("我录入的")});
    m_table->setColumnHidden(Now, question.kind == ConflictQuestion::Gone);
    m_table->setColumnHidden(Typed, question.kind == ConflictQuestion::Deleting);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setTabKeyNavigation(false);
    m_table->verticalHeader()->hide();
    m_table->setRowCount(static_cast<int>(question.fields.size()));
    for (int row = 0; row < m_table->rowCount(); ++row) {
        const ConflictField &field = question.fields[row];
        int column = 0;
        for (const QString &text : {field.caption, field.read, field.now, field.typed}) {
            auto *item = new QTableWidgetItem(text);
            item->setToolTip(text);
            item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled |
                           (choose && column == Typed ? Qt::ItemIsUserCheckable : Qt::NoItemFlags));
            if (choose && column == Typed)
                item->setCheckState(field.now == field.read ? Qt::Checked : Qt::Unchecked);
            m_table->setItem(row, column++, item);
        }
    }
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_table->horizontalHeader()->setSectionResizeMode(Caption, QHeaderView::ResizeToContents);
    // The space bar chooses in the current line, whichever of its cells has the cursor.
    m_table->setCurrentCell(0, Typed);
}

std::optional<ConflictAnswer> ConflictDialog::ask(const ConflictQuestion &question, QWidget *parent)
{
    ConflictDialog dialog(question, parent);
    return dialog.exec() == Accepted ? std::optional(dialog.m_answer) : std::nullopt;
}

} // namespace tradewick
