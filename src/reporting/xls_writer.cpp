#include "reporting/xls_writer.h"

#include "reporting/ole_container.h"

#include <QtEndian>

#include <algorithm>
#include <bit>
#include <cmath>
#include <optional>

namespace tradewick
{

namespace
{

using u8 = quint8;
using u16 = quint16;
using u32 = quint32;

constexpr int rowLimit = 65536, columnLimit = 256, recordLimit = 8224;
constexpr int breakLimit = 1026, mergesOfRecord = 1027, rowsOfBlock = 32;
constexpr u16 firstFormat = 16;  // cell formats behind the fifteen of styles and the default one
constexpr int fontsOfStyles = 4; // no font has number 4, so the fonts of the formats start at 5
constexpr u16 firstOwnNumberFormat = 164;
constexpr int paletteSize = 56;
constexpr u16 endOfPart = 0x000A;

// Appends the values' bytes, lowest first.
template <typename... Values> void put(QByteArray &out, Values... values)
{
    std::array<char, (sizeof(Values) + ... + 0)> bytes{};
    char *at = bytes.data();
    ((qToLittleEndian(values, at), at += sizeof values), ...);
    out.append(bytes.data(), bytes.size());
}

template <typename... Values> void record(QByteArray &out, u16 id, Values... values)
{
    put(out, id, u16((sizeof(Values) + ... + 0)), values...);
}

void record(QByteArray &out, u16 id, const QByteArray &body)
{
    put(out, id, u16(body.size()));
    out += body;
}

u32 lowHalf(double value)
{
    return u32(std::bit_cast<quint64>(value));
}
u32 highHalf(double value)
{
    return u32(std::bit_cast<quint64>(value) >> 32);
}

bool isWide(QStringView text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.unicode() > 0xff; });
}

void putCharacters(QByteArray &out, QStringView text, bool wide)
{
    const qsizetype start = out.size();
    out.resize(start + text.size() * (wide ? 2 : 1));
    char *to = out.data() + start;
    if (wide)
        qToLittleEndian<u16>(text.utf16(), text.size(), to);
    else
        std::transform(text.begin(), text.end(), to, [](QChar c) { return char(c.unicode()); });
}

// A text with its length in a value of type Length, and the mark of its width.
template <typename Length> void putText(QByteArray &out, QStringView text)
{
    const bool wide = isWide(text);
    put(out, Length(text.size()), u8(wide));
    putCharacters(out, text, wide);
}

// The four bytes that hold a number exactly, where there are such: a whole number of 30 bits, hundredths of one, or
// the upper part of a number whose lower part is zero.
std::optional<u32> packed(double value)
{
    const auto whole = [](double number) { return std::abs(number) < (1 << 29) && number == std::trunc(number); };
    if (whole(value))
        return u32(qint32(value)) << 2 | 2;
    const double hundredths = value * 100;
    if (whole(hundredths) && hundredths / 100 == value)
        return u32(qint32(hundredths)) << 2 | 3;
    if (lowHalf(value) == 0 && (highHalf(value) & 3) == 0)
        return highHalf(value);
    return std::nullopt;
}

u16 paperNumber(const XlsPaper &paper)
{
    struct Known {
        int width, height;
        u16 number;
    };
    static constexpr std::array known{Known{12240, 15840, 1}, Known{12240, 20160, 5},  Known{16838, 23811, 8},
                                      Known{8391, 11906, 11}, Known{10319, 14571, 13}, Known{11906, 16838, 9}};
    const int width = std::min(paper.width, paper.height), height = std::max(paper.width, paper.height);
    const auto *found = std::find_if(known.begin(), known.end() - 1, [=](const Known &one) {
        return std::abs(one.width - width) < 60 && std::abs(one.height - height) < 60;
    });
    return found->number;
}

} // namespace

XlsStrings::XlsStrings()
{
    open(0x00FC);
    put(m_records, u32(0), u32(0)); // uses and texts, known at the end
}

qsizetype XlsStrings::room() const
{
    return m_record + 4 + recordLimit - m_records.size();
}

void XlsStrings::open(u16 id)
{
    m_record = m_records.size();
    put(m_records, id, u16(0));
}

quint32 XlsStrings::index(const QString &text)
{
    ++m_uses;
    const auto known = m_indexes.constFind(text);
    if (known != m_indexes.constEnd())
        return *known;
    const auto index = u32(m_indexes.size());
    m_indexes.insert(text, index);
    append(text);
    return index;
}

void XlsStrings::append(QStringView text)
{
    constexpr u16 continuation = 0x003C;
    const bool wide = isWide(text);
    const int unit = wide ? 2 : 1;
    const auto next = [&] {
        qToLittleEndian(u16(m_records.size() - m_record - 4), m_records.data() + m_record + 2);
        open(continuation);
    };
    if (room() < 3 + unit) // a text's head is never torn from its first character
        next();
    if (m_indexes.size() % 8 == 1)
        m_places.append({u32(m_records.size()), u16(m_records.size() - m_record)});
    put(m_records, u16(text.size()), u8(wide));
    for (;;) {
        const qsizetype fitting = std::min(text.size(), room() / unit);
        putCharacters(m_records, text.first(fitting), wide);
        text = text.sliced(fitting);
        if (text.isEmpty())
            return;
        next();
        put(m_records, u8(wide)); // the rest states its width again
    }
}

void XlsStrings::write(QByteArray &out)
{
    qToLittleEndian(u16(m_records.size() - m_record - 4), m_records.data() + m_record + 2);
    qToLittleEndian(m_uses, m_records.data() + 4);
    qToLittleEndian(u32(m_indexes.size()), m_records.data() + 8);
    const auto start = u32(out.size());
    out += m_records;
    const qsizetype step = m_places.size() / 128 + 1; // keeps the lookup to about 128 places
    QByteArray lookup;
    put(lookup, u16(8 * step));
    for (qsizetype i = 0; i < m_places.size(); i += step)
        put(lookup, start + m_places[i].stream, m_places[i].record, u16(0));
    record(out, 0x00FF, lookup);
}

XlsWriter::XlsWriter(const QString &title) : m_title(title), m_sheets(1)
{
    m_title.removeIf([](QChar c) { return QStringLiteral("[]:*?/\\'").contains(c) || c < u' '; });
    m_title.truncate(24); // leaves room for the number of a further sheet in 31 characters
    if (!m_title.isEmpty() && m_title.back().isHighSurrogate())
        m_title.chop(1);
    if (m_title.isEmpty())
        m_title = QStringLiteral("Sheet1");
}

quint16 XlsWriter::format(const XlsFormat &format)
{
    qsizetype index = m_formats.indexOf(format);
    if (index < 0) {
        index = m_formats.size();
        m_formats.append(format);
    }
    return u16(firstFormat + index);
}

void XlsWriter::beginRow(int twips)
{
    endRow();
    startRow(twips);
}

void XlsWriter::startRow(int twips)
{
    if (m_sheets.last().count == rowLimit) {
        flushBlock();
        m_sheets.append(m_titles);
    }
    ++m_sheets.last().count;
    m_inRow = true;
    m_height = std::min(twips, 8190); // 409.5 points, the highest row there is
    m_firstColumn = 0;
    m_lastColumn = -1;
}

void XlsWriter::endRow()
{
    constexpr u32 plain = 0x000F0100, ownHeight = 0x40;
    while (m_inRow) {
        Sheet &sheet = m_sheets.last();
        record(m_blockRows, 0x0208, u16(sheet.count - 1), u16(m_firstColumn), u16(m_lastColumn + 1),
               u16(m_height > 0 ? m_height : 0x80FF), u16(0), u16(0), m_height > 0 ? plain | ownHeight : plain);
        sheet.columns = std::max(sheet.columns, m_lastColumn + 1);
        m_inRow = false;
        if (++m_blockCount == rowsOfBlock)
            flushBlock();
        if (const QVector<Rest> rests = std::exchange(m_rests, {}); !rests.isEmpty()) {
            startRow(m_height);
            for (const Rest &rest : rests)
                text(rest.column, rest.text, rest.format);
        }
    }
}

void XlsWriter::flushBlock()
{
    m_sheets.last().rows += m_blockRows;
    m_sheets.last().rows += m_blockCells;
    m_blockRows.resize(0);
    m_blockCells.resize(0);
    m_blockCount = 0;
}

// Takes note of a cell of the current row and gives the row's number.
quint16 XlsWriter::cell(int column)
{
    m_tooWide = m_tooWide || column < 0 || column >= columnLimit;
    if (m_lastColumn < 0)
        m_firstColumn = column;
    m_lastColumn = std::max(m_lastColumn, column);
    return u16(m_sheets.last().count - 1);
}

void XlsWriter::text(int column, const QString &text, quint16 format)
{
    const u16 row = cell(column);
    if (text.isEmpty())
        return record(m_blockCells, 0x0201, row, u16(column), format);
    if (text.size() <= cellLimit)
        return record(m_blockCells, 0x00FD, row, u16(column), format, m_strings.index(text));
    const int cut = text[cellLimit - 1].isHighSurrogate() ? cellLimit - 1 : cellLimit;
    record(m_blockCells, 0x00FD, row, u16(column), format, m_strings.index(text.first(cut)));
    m_rests.append({column, text.sliced(cut), format});
}

void XlsWriter::number(int column, double value, quint16 format)
{
    if (!std::isfinite(value)) // a cell holds no such number
        return text(column, QString::number(value), format);
    const u16 row = cell(column);
    if (const std::optional<u32> short_ = packed(value))
        record(m_blockCells, 0x027E, row, u16(column), format, *short_);
    else
        record(m_blockCells, 0x0203, row, u16(column), format, lowHalf(value), highHalf(value));
}

void XlsWriter::merge(int first, int last, int below)
{
    cell(first);
    const u16 row = cell(last);
    if (first < last || below > 0)
        m_sheets.last().merges.append({row, u16(std::min(row + below, rowLimit - 1)), u16(first), u16(last)});
}

void XlsWriter::breakPage()
{
    endRow();
    Sheet &sheet = m_sheets.last();
    if (sheet.count > 0 && sheet.count < rowLimit && sheet.breaks.size() < breakLimit &&
        (sheet.breaks.isEmpty() || sheet.breaks.last() != sheet.count))
        sheet.breaks.append(u16(sheet.count));
}

void XlsWriter::markTitles()
{
    endRow();
    flushBlock();
    m_titles = m_sheets.last();
}

QByteArray XlsWriter::globals(const QVector<qsizetype> &sheetSizes)
{
    const auto sheets = u16(m_sheets.size());
    QByteArray out;
    record(out, 0x0809, u16(0x0600), u16(5), u16(0x0DBB), u16(0x07CC), u32(0x41), u32(6));
    record(out, 0x0042, u16(1200)); // texts are UTF-16
    record(out, 0x003D, u16(0), u16(0), u16(0x4000), u16(0x2000), u16(0x38), u16(0), u16(0), u16(1), u16(600));
    record(out, 0x0022, u16(0)); // dates count from 1900

    QVector<u32> colours{0x000000, 0xFFFFFF};
    const auto font = [&](const XlsFormat &format) {
        if (!colours.contains(format.colour) && colours.size() < paletteSize)
            colours.append(format.colour);
        const qsizetype colour = std::max<qsizetype>(0, colours.indexOf(format.colour));
        QByteArray body;
        put(body, u16(format.twips), u16(0), u16(colour == 0 ? 0x7FFF : colour + 8), u16(format.bold ? 700 : 400),
            u16(0), u8(0), u8(0), u8(134), u8(0));
        putText<u8>(body, QStringView(format.face).first(std::min<qsizetype>(format.face.size(), 31)));
        record(out, 0x0031, body);
    };
    for (int i = 0; i < fontsOfStyles; ++i)
        font({});
    for (const XlsFormat &format : m_formats)
        font(format);

    QHash<QString, u16> numbers{{{}, 0},
                                {QStringLiteral("0"), 1},
                                {QStringLiteral("0.00"), 2},
                                {QStringLiteral("#,##0"), 3},
                                {QStringLiteral("#,##0.00"), 4}};
    u16 own = firstOwnNumberFormat;
    for (const XlsFormat &format : m_formats) {
        if (numbers.contains(format.number))
            continue;
        QByteArray body;
        put(body, own);
        putText<u16>(body, format.number);
        record(out, 0x041E, body);
        numbers.insert(format.number, own++);
    }

    const auto look = [&](u16 fontNumber, u16 number, u16 kind, u8 align, u8 used) {
        record(out, 0x00E0, fontNumber, number, kind, align, u8(0), u8(0), used, u32(0), u32(0), u16(0x20C0));
    };
    constexpr u16 style = 0xFFF5, ofCell = 1;
    constexpr u8 bottom = 0x20, middle = 0x10, topWrapped = 0x08;
    for (int i = 0; i < firstFormat - 1; ++i)
        look(0, 0, style, bottom, i == 0 ? 0 : 0xF4);
    look(0, 0, ofCell, bottom, 0);
    for (qsizetype i = 0; i < m_formats.size(); ++i)
        look(u16(fontsOfStyles + 1 + i), numbers.value(m_formats[i].number), ofCell,
             u8(u8(m_formats[i].align) | (m_formats[i].wrap ? topWrapped : middle)), 0x1C);
    record(out, 0x0293, u16(0x8000), u8(0), u8(0xFF)); // the style named Normal

    if (colours.size() > 2) {
        QByteArray body;
        put(body, u16(paletteSize));
        colours.resize(paletteSize);
        for (const u32 colour : std::as_const(colours))
            put(body, u8(colour >> 16), u8(colour >> 8), u8(colour), u8(0));
        record(out, 0x0092, body);
    }
    QVector<qsizetype> places; // where each sheet's place in the stream is to be told
    for (u16 i = 0; i < sheets; ++i) {
        places.append(out.size() + 4);
        QByteArray body;
        put(body, u32(0), u16(0));
        putText<u8>(body, i == 0 ? m_title : QStringLiteral("%1 (%2)").arg(m_title).arg(i + 1));
        record(out, 0x0085, body);
    }
    if (m_titles.count > 0) {
        record(out, 0x01AE, sheets, u16(0x0401)); // references lead into this workbook
        QByteArray body;
        put(body, sheets);
        for (u16 i = 0; i < sheets; ++i)
            put(body, u16(0), i, i);
        record(out, 0x0017, body);
        constexpr u8 titles = 7, area = 0x3B;
        for (u16 i = 0; i < sheets; ++i)
            record(out, 0x0018, u16(0x20), u8(0), u8(1), u16(11), u16(0), u16(i + 1), u32(0), u8(0), titles, area, i,
                   u16(0), u16(m_titles.count - 1), u16(0), u16(columnLimit - 1));
    }
    m_strings.write(out);
    record(out, endOfPart);
    qsizetype start = out.size();
    for (u16 i = 0; i < sheets; start += sheetSizes[i++])
        qToLittleEndian(u32(start), out.data() + places[i]);
    return out;
}

QByteArray XlsWriter::sheetHead(const Sheet &sheet) const
{
    QByteArray out;
    record(out, 0x0809, u16(0x0600), u16(0x10), u16(0x0DBB), u16(0x07CC), u32(0x41), u32(6));
    record(out, 0x0225, u16(0), u16(255)); // rows are as high as their text
    record(out, 0x0081, u16(0x05C1));      // printed as wide as the paper
    if (!sheet.breaks.isEmpty()) {
        QByteArray body;
        put(body, u16(sheet.breaks.size()));
        for (const u16 row : sheet.breaks)
            put(body, row, u16(0), u16(columnLimit - 1));
        record(out, 0x001B, body);
    }
    record(out, 0x0014);
    record(out, 0x0015);
    const std::array margins{m_paper.left, m_paper.right, m_paper.top, m_paper.bottom};
    u16 marginRecord = 0x0026;
    for (const int margin : margins)
        record(out, marginRecord++, std::bit_cast<quint64>(margin / 1440.0));
    record(out, 0x00A1, paperNumber(m_paper), u16(100), u16(1), u16(1), u16(0),
           u16(m_paper.width > m_paper.height ? 0 : 2), u16(600), u16(600), std::bit_cast<quint64>(0.2),
           std::bit_cast<quint64>(0.2), u16(1));
    record(out, 0x0055, u16(8));
    constexpr double twipsOfDigit = 105; // widths are told in 256ths of a digit
    for (u16 i = 0; i < std::min<qsizetype>(m_widths.size(), columnLimit); ++i)
        record(out, 0x007D, i, i, u16(std::clamp(m_widths[i] * 256 / twipsOfDigit, 0.0, 65280.0)), u16(firstFormat - 1),
               u16(0), u16(0));
    record(out, 0x0200, u32(0), u32(sheet.count), u16(0), u16(sheet.columns), u16(0));
    return out;
}

QByteArray XlsWriter::sheetTail(const Sheet &sheet, bool shown)
{
    QByteArray out;
    record(out, 0x023E, u16(shown ? 0x06B6 : 0x00B6), u16(0), u16(0), u32(0x40), u16(0), u16(0), u32(0));
    for (qsizetype i = 0; i < sheet.merges.size(); i += mergesOfRecord) {
        const qsizetype count = std::min<qsizetype>(mergesOfRecord, sheet.merges.size() - i);
        QByteArray body;
        put(body, u16(count));
        for (qsizetype j = i; j < i + count; ++j)
            put(body, sheet.merges[j].top, sheet.merges[j].bottom, sheet.merges[j].first, sheet.merges[j].last);
        record(out, 0x00E5, body);
    }
    record(out, endOfPart);
    return out;
}

bool XlsWriter::save(const QString &path, QString *error)
{
    if (m_tooWide) {
        *error = QStringLiteral("表格超过 256 列，不能写入 .xls 文件。");
        return false;
    }
    endRow();
    flushBlock();
    QVector<QByteArray> parts;
    QVector<qsizetype> sizes;
    for (const Sheet &sheet : std::as_const(m_sheets)) {
        parts << sheetHead(sheet) << sheet.rows << sheetTail(sheet, sizes.isEmpty());
        sizes << parts.end()[-3].size() + parts.end()[-2].size() + parts.end()[-1].size();
    }
    parts.prepend(globals(sizes));
    return writeContainer(path, parts, error);
}

} // namespace tradewick
