// Pages one below the other, as they become known: zoom, movement and found texts.
#pragma once

#include "common/window_keys.h"
#include "reporting/page.h"

#include <QAbstractScrollArea>

namespace tradewick
{

class PageView : public QAbstractScrollArea, public TakesKeys
{
    Q_OBJECT

public:
    explicit PageView(QWidget *parent = nullptr);

    void addPage(const PagePtr &page);
    void clear();
    const QVector<PagePtr> &pages() const { return m_pages; }

    // The page that takes most of the view, from 0; -1 without pages.
    int currentPage() const;
    void goTo(int page);

    // 1 is the paper's own size. Stays between 0.1 and 8; the place in the middle of the view stays where it is,
    // at the top the top.
    double zoom() const { return m_zoom; }
    void setZoom(double zoom);
    void zoomBy(int steps);
    // Keeps the page as wide as the view, or the whole of it in view, when the view's size changes too.
    void fitWidth();
    void fitPage();

    // Goes to the next place behind the last one found whose text holds `text`, regardless of case, and again from the
    // first page on behind the last. Gives whether there is one. The empty text takes all marks away.
    bool findNext(const QString &text);

    // How many texts do not fit their boxes on the pages so far; each is marked. Goes to the one a step before or
    // behind the one gone to last, round at the ends.
    qsizetype overflows() const { return m_overflows.size(); }
    void goToOverflow(int step);

    // Zooms with + - 0, moves with the page keys, Home and End; false for any other key.
    bool handleKey(int key);
    QVector<KeyText> keys() const override;

Q_SIGNALS:
    void currentPageChanged(int page);
    void zoomChanged(double zoom);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    enum class Fit { None, Width, Page };
    struct Place {
        int page = 0;
        qsizetype item = -1;
        bool operator==(const Place &) const = default;
    };
    double pixelsPerTwip() const;
    QSizeF pageSize() const; // on the screen
    QRectF pageRect(int page) const;
    void refit();
    void applyZoom(double zoom);
    void updateBars();
    void markFound(QPainter &painter, int page) const;
    void markOverflows(QPainter &painter, int page) const;
    void showPlace(const Place &place);

    QVector<PagePtr> m_pages;
    double m_zoom = 1;
    Fit m_fit = Fit::Width;
    int m_current = -1;
    QString m_sought;
    Place m_found;
    QVector<Place> m_overflows;
    qsizetype m_overflow = -1; // of them, gone to last
};

} // namespace tradewick
