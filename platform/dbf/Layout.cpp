// The head of a .dbf file, read and checked:
//
//   0  1  version and memo kind         8  2  length of the head
//   1  3  date of last change (YMD)    10  2  length of a record, deletion mark included
//   4  4  number of records            28  1  bit 0: structural index
//                                      29  1  code page
//  32 32  per field: 0 11 name, 11 1 type, 16 1 width, 17 1 decimals; closed by a byte 0x0D
//
// Numbers are little-endian. Bytes 12 to 27 and 30, 31 hold leavings of other programs and are not looked at, except
// 15: dBASE IV marks encrypted tables there. A field's bytes 12 to 15 are its offset or a memory address, by program.
#include "platform/dbf/Layout.h"

#include <QDate>
#include <QSet>

#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::bytesOf;
using storage::StorageError;

namespace dbf {

namespace {

constexpr int headSize = 32; // also the size of a field's description
constexpr std::byte endOfFields{0x0D};

[[noreturn]] void damaged(const TableFile &file, const QString &what)
{
    throw StorageError(StorageError::Damaged, u"%1 ist beschädigt: %2"_s.arg(file.path(), what));
}

[[noreturn]] void unsupported(const TableFile &file, const QString &what)
{
    throw StorageError(StorageError::Unsupported, u"%1: %2"_s.arg(file.path(), what));
}

QByteArray readHead(const TableFile &file)
{
    const qint64 size = file.size();
    if (size < headSize)
        damaged(file, u"Die Datei hat nur %1 Bytes, der Kopf allein braucht %2"_s.arg(size).arg(headSize));
    return file.read(0, headSize);
}

MemoKind memoKindOf(const TableFile &file, std::uint8_t version)
{
    switch (version) {
    case 0x03:
        return MemoKind::None;
    case 0x83:
        return MemoKind::DBase3;
    case 0x8B:
        return MemoKind::DBase4;
    case 0xF5:
        return MemoKind::FoxPro;
    case 0x30:
    case 0x31:
    case 0x32:
        throw StorageError(StorageError::NotThisFormat,
                           u"%1 ist eine Tabelle von Visual FoxPro; gelesen werden dBASE III, dBASE IV und "
                           "FoxPro 2.x"_s.arg(file.path()));
    default:
        throw StorageError(StorageError::NotThisFormat,
                           u"%1 ist keine Tabelle von dBASE III, dBASE IV oder FoxPro 2.x (Kennbyte %2)"_s.arg(
                               file.path(), QString::number(version, 16).toUpper().rightJustified(2, u'0')));
    }
}

const storage::Codepage *codepageOf(const TableFile &file, std::uint8_t mark)
{
    switch (mark) {
    case 0x00:
    case 0x03:
        return &storage::windows1252;
    case 0x01:
        return &storage::dos437;
    case 0x02:
        return &storage::dos850;
    default:
        unsupported(file, u"Der Zeichensatz mit der Kennung %1 wird nicht unterstützt"_s.arg(mark));
    }
}

void checkField(const TableFile &file, const Layout &layout, const Field &field)
{
    const auto width = [&](int least, int most) {
        if (field.width < least || field.width > most)
            damaged(file, u"Feld %1 hat die unmögliche Breite %2"_s.arg(field.name).arg(field.width));
    };
    switch (field.type) {
    case 'C':
        return width(1, 255);
    case 'N':
    case 'F':
        width(1, 20);
        if (field.decimals > 0 && field.decimals >= field.width)
            damaged(file, u"Feld %1 hat mehr Nachkommastellen als Stellen"_s.arg(field.name));
        return;
    case 'D':
        return width(8, 8);
    case 'L':
        return width(1, 1);
    case 'M':
        if (layout.memo == MemoKind::None)
            damaged(file, u"Feld %1 ist ein Memo, die Tabelle hat aber keine Memodatei"_s.arg(field.name));
        return width(10, 10);
    default:
        unsupported(file,
                    u"Feld %1 ist von der Art „%2“, die nicht unterstützt wird"_s.arg(field.name,
                                                                                      QChar::fromLatin1(field.type)));
    }
}

Field readField(const TableFile &file, const Layout &layout, storage::Bytes description)
{
    Field field;
    const auto name = description.first(11);
    field.name = layout.codepage->decode(name.first(std::size_t(std::ranges::find(name, std::byte{}) - name.begin())))
                     .trimmed();
    field.type = std::to_integer<char>(description[11]);
    field.width = std::to_integer<int>(description[16]);
    const bool numeric = field.type == 'N' || field.type == 'F';
    field.decimals = numeric ? std::to_integer<int>(description[17]) : 0;
    if (field.name.isEmpty())
        damaged(file, u"Feld %1 hat keinen Namen"_s.arg(layout.fields.size() + 1));
    checkField(file, layout, field);
    return field;
}

void readFields(const TableFile &file, Layout &layout)
{
    const QByteArray head = file.read(0, layout.headerLength);
    const storage::Bytes bytes = bytesOf(head);
    QSet<QString> names;
    int offset = 1;
    std::size_t place = headSize;
    for (; place < bytes.size() && bytes[place] != endOfFields; place += headSize) {
        if (bytes.size() - place < headSize)
            damaged(file, u"Die Feldliste reicht über den Kopf hinaus"_s);
        Field field = readField(file, layout, bytes.subspan(place, headSize));
        if (names.contains(field.name.toUpper()))
            damaged(file, u"Feld %1 kommt zweimal vor"_s.arg(field.name));
        names.insert(field.name.toUpper());
        field.offset = offset;
        offset += field.width;
        layout.fields.push_back(field);
    }
    if (place >= bytes.size())
        damaged(file, u"Das Ende der Feldliste fehlt"_s);
    if (layout.fields.empty())
        damaged(file, u"Die Tabelle hat kein Feld"_s);
    if (offset != layout.recordLength) {
        damaged(file,
                u"Die Felder sind zusammen %1 Bytes lang, ein Satz aber %2"_s.arg(offset).arg(layout.recordLength));
    }
}

} // namespace

HeaderFacts readFacts(const TableFile &file)
{
    const QByteArray head = readHead(file);
    const storage::Bytes bytes = bytesOf(head);
    return {.version = storage::readLE<std::uint8_t>(bytes, 0),
            .recordCount = storage::readLE<std::uint32_t>(bytes, 4),
            .headerLength = storage::readLE<std::uint16_t>(bytes, 8),
            .recordLength = storage::readLE<std::uint16_t>(bytes, 10),
            .structuralIndex = (storage::readLE<std::uint8_t>(bytes, 28) & 0x01) != 0};
}

Layout readLayout(const TableFile &file)
{
    const QByteArray head = readHead(file);
    const storage::Bytes bytes = bytesOf(head);
    Layout layout;
    layout.version = storage::readLE<std::uint8_t>(bytes, 0);
    layout.memo = memoKindOf(file, layout.version);
    layout.headerLength = storage::readLE<std::uint16_t>(bytes, 8);
    layout.recordLength = storage::readLE<std::uint16_t>(bytes, 10);
    layout.codepage = codepageOf(file, storage::readLE<std::uint8_t>(bytes, 29));
    if (layout.memo == MemoKind::DBase4 && storage::readLE<std::uint8_t>(bytes, 15) != 0)
        unsupported(file, u"Die Tabelle ist verschlüsselt"_s);
    if (layout.headerLength <= headSize || layout.headerLength > file.size())
        damaged(file,
                u"Der Kopf soll %1 Bytes lang sein, die Datei hat %2"_s.arg(layout.headerLength).arg(file.size()));
    readFields(file, layout);
    return layout;
}

QByteArray recordCountBytes(qint64 count)
{
    QByteArray bytes(4, Qt::Uninitialized);
    storage::writeLE(std::as_writable_bytes(std::span(bytes.data(), 4)), 0, static_cast<std::uint32_t>(count));
    return bytes;
}

QByteArray todayBytes()
{
    const QDate today = QDate::currentDate();
    QByteArray bytes;
    bytes.append(static_cast<char>((today.year() - 1900) % 256));
    bytes.append(static_cast<char>(today.month()));
    bytes.append(static_cast<char>(today.day()));
    return bytes;
}

} // namespace dbf
