// Long values: a header of 12 bytes in the row, and the content there or on pages of the column's own.
//
//   0  4  length (30 bits); bit 31: the content follows; bit 30: one row has it all; neither: a chain of rows
//   4  4  pointer to the (first) row           A row of a chain: pointer to the next or 0, then its piece.
//   8  4  0
#include "platform/jet/LongValue.h"

#include <algorithm>
#include <cstring>
#include <set>
#include <vector>

#include "platform/jet/Damage.h"
#include "platform/jet/DataPage.h"
#include "platform/jet/Format.h"
#include "platform/jet/UsageMap.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::Bytes;
using storage::MutableBytes;
using storage::readLE;
using storage::writeLE;

namespace jet {

namespace {

constexpr std::size_t headerSize = 12;
constexpr std::size_t pointerSize = 4;
constexpr std::uint32_t lengthMask = longestLongValue; // all bits but the flags
constexpr std::uint32_t inRowFlag = 0x80000000;
constexpr std::uint32_t singleFlag = 0x40000000;

struct Header {
    std::uint32_t length;
    bool inRow;
    bool single;
    RowPointer first;
};

Header parseHeader(Bytes field)
{
    if (field.size() < headerSize)
        damaged(u"Ein Verweis auf einen langen Wert ist nur %1 Bytes lang"_s.arg(field.size()));
    const auto word = readLE<std::uint32_t>(field, 0);
    return {word & lengthMask, (word & inRowFlag) != 0, (word & singleFlag) != 0,
            RowPointer::fromNumber(readLE<std::uint32_t>(field, 4))};
}

/// A row on a long-value page, with the page that holds its bytes.
struct Piece {
    DataPage page;
    Bytes bytes;
};

Piece readPiece(PageStore &store, RowPointer where)
{
    DataPage page(store, where.page);
    page.requireOwner(longValueOwner);
    const Bytes bytes = page.row(where.row);
    if (page.kind(where.row) != SlotKind::Row)
        damaged(where.page, u"Zeile %1 ist kein Teil eines langen Wertes"_s.arg(where.row));
    return {std::move(page), bytes};
}

/// The rows of a chain in order. They hold at most `length` bytes in all.
std::vector<RowPointer> chain(PageStore &store, const Header &header)
{
    std::vector<RowPointer> rows;
    std::set<RowPointer> seen;
    std::size_t total = 0;
    for (RowPointer where = header.first; !where.isNull();) {
        if (!seen.insert(where).second)
            damaged(where.page, u"Ein langer Wert läuft über Zeile %1 im Kreis"_s.arg(where.row));
        const Piece piece = readPiece(store, where);
        if (piece.bytes.size() < pointerSize)
            damaged(where.page, u"Zeile %1 ist zu kurz für einen Teil eines langen Wertes"_s.arg(where.row));
        total += piece.bytes.size() - pointerSize;
        if (total > header.length)
            damaged(where.page, u"Ein langer Wert ist länger als die angegebenen %1 Bytes"_s.arg(header.length));
        rows.push_back(where);
        where = RowPointer::fromNumber(readLE<std::uint32_t>(piece.bytes, 0));
    }
    if (total != header.length) {
        damaged(header.first.page,
                u"Ein langer Wert hat %1 statt der angegebenen %2 Bytes"_s.arg(total).arg(header.length));
    }
    return rows;
}

QByteArray toByteArray(Bytes bytes)
{
    return {reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

QByteArray makeField(std::uint32_t lengthWord, RowPointer first)
{
    QByteArray field(headerSize, '\0');
    const MutableBytes bytes = std::as_writable_bytes(std::span(field.data(), headerSize));
    writeLE(bytes, 0, lengthWord);
    writeLE(bytes, 4, first.number());
    return field;
}

/// Puts a row on one of the column's pages, a new one if need be.
RowPointer placePiece(PageStore &store, const ColumnDef &column, Bytes row)
{
    constexpr int attempts = 4; // pages looked at before a new one is taken
    UsageMap free(store, column.longFreeMap);
    PageNo limit = store.pageCount();
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const PageNo page = free.previous(limit);
        if (page == 0)
            break;
        DataPage(store, page).requireOwner(longValueOwner);
        DataPageWriter writer(store, page);
        if (writer.hasRoom(row.size()))
            return {page, writer.append(row)};
        if (writer.freeBytes() < worthwhileRoom || writer.slotCount() >= maxSlots)
            free.remove(page);
        limit = page;
    }
    const PageNo page = store.allocate();
    DataPageWriter writer = DataPageWriter::init(store, page, longValueOwner);
    UsageMap(store, column.longOwnedMap).add(page);
    free.add(page);
    return {page, writer.append(row)};
}

void freePiece(PageStore &store, const ColumnDef &column, RowPointer where)
{
    DataPageWriter(store, where.page).erase(where.row);
    UsageMap free(store, column.longFreeMap);
    if (!DataPage(store, where.page).isVacant()) {
        free.add(where.page);
        return;
    }
    free.remove(where.page);
    UsageMap(store, column.longOwnedMap).remove(where.page);
    store.release(where.page);
}

QByteArray writeChain(PageStore &store, const ColumnDef &column, Bytes content)
{
    const Format &format = formatOf(store);
    const std::size_t pieceSize = format.pageSize - format.dataHeader - slotSize - pointerSize;
    RowPointer next{};
    // From the back, so that each piece knows where the next one is.
    for (std::size_t start = (content.size() - 1) / pieceSize * pieceSize;; start -= pieceSize) {
        const Bytes piece = content.subspan(start, std::min(pieceSize, content.size() - start));
        std::vector<std::byte> row(pointerSize);
        writeLE(MutableBytes(row), 0, next.number());
        row.insert(row.end(), piece.begin(), piece.end());
        next = placePiece(store, column, row);
        if (start == 0)
            break;
    }
    return makeField(static_cast<std::uint32_t>(content.size()), next);
}

} // namespace

bool isInRow(Bytes field)
{
    return parseHeader(field).inRow;
}

QByteArray readLongValue(PageStore &store, Bytes field)
{
    const Header header = parseHeader(field);
    if (header.inRow) {
        if (field.size() - headerSize != header.length)
            damaged(u"Ein langer Wert hat %1 statt %2 Bytes"_s.arg(field.size() - headerSize).arg(header.length));
        return toByteArray(field.subspan(headerSize));
    }
    if (header.single) {
        const Piece piece = readPiece(store, header.first);
        if (piece.bytes.size() != header.length) {
            damaged(header.first.page,
                    u"Ein langer Wert hat %1 statt %2 Bytes"_s.arg(piece.bytes.size()).arg(header.length));
        }
        return toByteArray(piece.bytes);
    }
    QByteArray content;
    for (const RowPointer where : chain(store, header)) {
        const Piece piece = readPiece(store, where);
        content += toByteArray(piece.bytes.subspan(pointerSize));
    }
    return content;
}

QByteArray writeLongValue(PageStore &store, const ColumnDef &column, Bytes content, bool inRow)
{
    const Format &format = formatOf(store);
    Q_ASSERT(content.size() <= longestLongValue); // fitValue sees to it
    const auto length = static_cast<std::uint32_t>(content.size());
    if (content.empty() || (inRow && content.size() <= format.inlineLongLimit))
        return makeField(length | inRowFlag, {}) + toByteArray(content);
    if (column.longOwnedMap.isNull() || column.longFreeMap.isNull()) {
        throw storage::StorageError(storage::StorageError::Unsupported,
                                    u"Die Spalte %1 hat keine Seiten für lange Werte."_s.arg(column.name), column.name);
    }
    if (content.size() > format.pageSize - format.dataHeader - slotSize)
        return writeChain(store, column, content);
    return makeField(length | singleFlag, placePiece(store, column, content));
}

std::vector<RowPointer> longValueRows(PageStore &store, Bytes field)
{
    const Header header = parseHeader(field);
    if (header.inRow)
        return {};
    return header.single ? std::vector{header.first} : chain(store, header);
}

void freeLongValue(PageStore &store, const ColumnDef &column, Bytes field)
{
    for (const RowPointer where : longValueRows(store, field)) {
        readPiece(store, where);
        freePiece(store, column, where);
    }
}

} // namespace jet
