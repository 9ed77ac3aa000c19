// Texts below the columns of a grid, which move with them.
#pragma once

#include "common/grid.h"

#include <QWidget>

namespace tradewick
{

class ColumnFooter : public QWidget
{
    Q_OBJECT

public:
    // grid: shows its records already, and outlives the footer.
    ColumnFooter(Grid *grid, QWidget *parent);

    // The text that stands below a column, empty for one that has none.
    Q_INVOKABLE virtual QString text(const QString &column) { return m_texts.value(column.toLower()); }
    // Numbers stand below those of the column, as these are shown; other texts at its left.
    void setText(const QString &column, const QString &text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    // At the left of the first column.
    void setTitle(const QString &title) { m_title = title; }
    Grid *grid() const { return m_grid; }

private:
    Grid *m_grid;
    QString m_title;
    QHash<QString, QString> m_texts; // by column in small letters
};

} // namespace tradewick
