// Writes real .xls workbooks: BIFF8 records in an OLE2 container, row by row.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVector>

namespace tradewick
{

enum class XlsAlign : quint8 { General = 0, Left = 1, Centre = 2, Right = 3 };

// How a cell looks. Equal formats become one.
struct XlsFormat {
    QString face = QStringLiteral("宋体");
    int twips = 200; // size of the font, a twentieth of a point
    bool bold = false;
    quint32 colour = 0; // of the text, 0xRRGGBB
    XlsAlign align = XlsAlign::General;
    bool wrap = false;
    QString number{}; // number format such as "#,##0.00"; empty for General
    bool operator==(const XlsFormat &) const = default;
};

// Paper and margins in twips. A paper that office programs do not know by a number becomes A4 of the same direction.
struct XlsPaper {
    int width = 11906, height = 16838;
    int left = 567, right = 567, top = 567, bottom = 567;
};

// The shared string table in its stored form: a text is encoded once, when it is met first.
class XlsStrings
{
public:
    XlsStrings();
    // The index of a text of at most 32,767 UTF-16 units.
    quint32 index(const QString &text);
    // Appends the table and its lookup record to the workbook stream out.
    void write(QByteArray &out);

private:
    struct Place {
        quint32 stream; // from the table's first byte
        quint16 record; // from the first byte of the record that holds it
    };
    qsizetype room() const;
    void open(quint16 id);
    void append(QStringView text);

    QHash<QString, quint32> m_indexes;
    QByteArray m_records;
    qsizetype m_record = 0; // where the record being filled starts
    quint32 m_uses = 0;
    QVector<Place> m_places; // of every eighth text
};

// Rows are given from the top, the cells of a row from the left. A sheet holds 65,536 rows, then a further sheet goes
// on. A text longer than cellLimit goes on in the same column of rows of its own directly below.
class XlsWriter
{
public:
    static constexpr int cellLimit = 32767; // characters of a cell

    // title: name of the sheet; what a sheet's name cannot hold is left out.
    explicit XlsWriter(const QString &title = {});

    // The number of a format, to be given with a cell.
    quint16 format(const XlsFormat &format);
    // Widths of the columns from the first on, in twips.
    void setColumnWidths(const QVector<int> &twips) { m_widths = twips; }
    void setPaper(const XlsPaper &paper) { m_paper = paper; }

    // Starts the next row; a height of 0 twips leaves it to the office program.
    void beginRow(int twips = 0);
    // A text in the current row. Columns count from 0 to 255: one beyond makes save() fail.
    void text(int column, const QString &text, quint16 format);
    void number(int column, double value, quint16 format);
    // Joins the cells first to last of the current row, and of as many rows below, into one.
    void merge(int first, int last, int below = 0);
    // The next row starts a printed page. Office programs know 1,026 such breaks in a sheet: later ones are left out.
    void breakPage();
    // The rows so far are printed on top of every page and stand on top of every further sheet.
    void markTitles();

    // Writes the workbook, replacing a file at path; on failure the old file stays, no other is left behind and error
    // says why. The writer is used up.
    bool save(const QString &path, QString *error);

private:
    struct Merge {
        quint16 top, bottom, first, last;
    };
    struct Sheet {
        QByteArray rows; // finished blocks of row and cell records
        QVector<Merge> merges;
        QVector<quint16> breaks;
        int count = 0; // of rows
        int columns = 0;
    };
    struct Rest {
        int column;
        QString text;
        quint16 format;
    };
    void startRow(int twips);
    void endRow();
    void flushBlock();
    quint16 cell(int column);
    QByteArray globals(const QVector<qsizetype> &sheetSizes);
    QByteArray sheetHead(const Sheet &sheet) const;
    static QByteArray sheetTail(const Sheet &sheet, bool shown);

    QString m_title;
    QVector<XlsFormat> m_formats;
    QVector<int> m_widths;
    XlsPaper m_paper;
    XlsStrings m_strings;
    QVector<Sheet> m_sheets;
    Sheet m_titles;
    QByteArray m_blockRows, m_blockCells; // of up to 32 rows, which are stored together
    int m_blockCount = 0;
    bool m_inRow = false;
    int m_height = 0, m_firstColumn = 0, m_lastColumn = -1; // of the current row
    QVector<Rest> m_rests;
    bool m_tooWide = false;
};

} // namespace tradewick
