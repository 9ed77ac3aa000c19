// Reports over rows of the test's own, and their pages as text.
#pragma once

#include "papers/report_table.h"
#include "reporting/painter.h"
#include "support/xls_readers.h"

#include <QFile>
#include <QTemporaryDir>

#include <functional>

namespace tradewick::test
{

// Rows made one by one, so that a test can have any number of them.
class TestRows : public RowSource
{
public:
    using Make = std::function<QVariantList(int row)>;
    TestRows(QStringList columns, int count, Make make)
        : m_columns(std::move(columns)), m_count(count), m_make(std::move(make))
    {
    }
    TestRows(QStringList columns, const QVector<QVariantList> &rows)
        : TestRows(std::move(columns), static_cast<int>(rows.size()), [rows](int row) { return rows[row]; })
    {
    }

    QStringList columns() const override { return m_columns; }
    bool next() override
    {
        if (++m_row < m_count)
            m_values = m_make(m_row);
        return m_row < m_count;
    }
    QVariant value(int column) const override { return m_values[column]; }

private:
    QStringList m_columns;
    int m_count;
    Make m_make;
    int m_row = -1;
    QVariantList m_values;
};

// The lines of a proforma invoice.
inline std::unique_ptr<RowSource> invoiceRows(int count)
{
    const QStringList columns{"e_gsmc", "e_gsdz", "gs_phone", "gs_fax", "khmc", "htbh", "dizh", "djrq",
                              "phone",  "fax",    "bizh",     "cpmc",   "jgtk", "cpbh", "gg",   "dw",
                              "sl",     "jkdj",   "jmdj",     "je",     "qttk", "madol"};
    return std::make_unique<TestRows>(columns, count, [](int row) {
        return QVariantList{"NINGBO EASTERN HARBOUR ARTS & CRAFTS IMPORT AND EXPORT CO., LTD.",
                            "ROOM 1208, 88 WEST ZHONGSHAN ROAD, HAISHU DISTRICT, NINGBO 315010, ZHEJIANG, P.R.CHINA",
                            "0086-574-87654321",
                            "0086-574-87654322",
                            "HAMBURGER BILDERRAHMEN UND SPIEGEL HANDELSGESELLSCHAFT MBH & CO. KG",
                            "X060300007",
                            "GROSSE ELBSTRASSE 145, 22767 HAMBURG, GERMANY",
                            "2006-03-05",
                            "0049-40-123456",
                            "0049-40-123457",
                            "USD",
                            "WOODEN FRAMES, MIRRORS AND PICTURES 木制相框",
                            "FOB NINGBO",
                            QStringLiteral("NB-%1").arg(row + 1, 4, 10, QLatin1Char('0')),
                            "12X16X2.5CM 木框",
                            "PCS",
                            (row + 1) * 10,
                            1.5,
                            row % 2 ? QVariant(0.25) : QVariant(),
                            (row + 1) * 17.5,
                            "PARTIAL SHIPMENTS ALLOWED, 5% MORE OR LESS IN QUANTITY AND AMOUNT ACCEPTABLE.",
                            "N/M\nHAMBURG\nC/NO. 1-UP"};
    });
}

// A template given as text. more: further attributes of the report.
inline std::shared_ptr<const ReportTemplate> templateOf(const QString &bands, const QString &more = {},
                                                        int margin = 200)
{
    QTemporaryDir folder;
    QFile file(folder.filePath("t.xml"));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QStringLiteral("<report name=\"t\" printWidth=\"26805\" leftMargin=\"100\" rightMargin=\"100\" "
                              "topMargin=\"%1\" bottomMargin=\"%1\" %2>%3</report>")
                   .arg(margin)
                   .arg(more, bands)
                   .toUtf8());
    file.close();
    QString error;
    auto report = loadTemplate(file.fileName(), &error);
    EXPECT_TRUE(report) << error.toStdString();
    return report;
}

// The texts of a page from the top down, those of one height from the left.
inline QStringList textsOf(const Page &page)
{
    QVector<PageItem> items = page.items;
    std::stable_sort(items.begin(), items.end(),
                     [](const PageItem &a, const PageItem &b) { return a.y1 != b.y1 ? a.y1 < b.y1 : a.x1 < b.x1; });
    QStringList texts;
    for (const PageItem &item : items)
        if (item.isText())
            texts.append(page.text(item).toString());
    return texts;
}

inline QString pdfText(const QString &path)
{
    return QString::fromUtf8(output("pdftotext", {"-layout", path, "-"}));
}

} // namespace tradewick::test
