// What declarations say, in lines of text, held against a file of what was agreed of them. A change of either shows in
// the other. TRADEWICK_DECLARATIONS=FOLDER writes the program's own lines there: they are held against the business's
// tables before they are kept.
#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QStringList>
#include <QVector>

#include <utility>

namespace tradewick::test
{

// A member beside the first ones of a line: its name, and its text where it is not what it is for most.
using Besides = QVector<std::pair<QString, QString>>;

inline QString when(bool is, const char *word = "yes")
{
    return is ? word : "";
}
template <typename Value> QString unless(Value usual, Value value)
{
    return value == usual ? QString() : QString::number(static_cast<int>(value));
}

class DeclaredLines
{
public:
    const QStringList &lines() const { return m_lines; }
    // All members that were ever told of, and whether any declaration says something of them.
    static QMap<QString, bool> &members()
    {
        static QMap<QString, bool> told;
        return told;
    }

protected:
    void add(const QString &what, const QStringList &values, const Besides &besides = {})
    {
        QStringList texts = values;
        for (int i = 0; i < values.size(); ++i)
            members()[what + u' ' + QString::number(i)] |= !values[i].isEmpty();
        for (const auto &[name, text] : besides) {
            members()[what + u' ' + name] |= !text.isEmpty();
            if (!text.isEmpty())
                texts.append(name + u'=' + text);
        }
        QString line = what + u'\t' + texts.join(u'\t');
        while (line.endsWith(u'\t'))
            line.chop(1);
        if (line != what)
            m_lines.append(line.replace(u'\n', u' '));
    }

private:
    QStringList m_lines;
};

inline void expectAllUsed(const QMap<QString, bool> &members)
{
    for (auto member = members.cbegin(); member != members.cend(); ++member)
        EXPECT_TRUE(*member) << member.key().toStdString();
}

inline void expectAgreed(const QString &path, const QStringList &lines)
{
    if (const QString folder = qEnvironmentVariable("TRADEWICK_DECLARATIONS"); !folder.isEmpty()) {
        QFile out(QDir(folder).filePath(QFileInfo(path).fileName()));
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(lines.join(u'\n').toUtf8() + '\n');
    }
    QFile agreed(path);
    ASSERT_TRUE(agreed.open(QIODevice::ReadOnly)) << path.toStdString();
    const QStringList wanted = QString::fromUtf8(agreed.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (int line = 0; line < qMax(wanted.size(), lines.size()); ++line)
        EXPECT_EQ(lines.value(line).toStdString(), wanted.value(line).toStdString()) << "line " << line + 1;
}

} // namespace tradewick::test
