// Page 0: what it says, and the obfuscation and masks around it.
//
// Bytes 0x18 to 0x18+N (N = 126 in Jet 3, 128 in Jet 4) are combined with a key stream of a fixed key. Below that:
//
//   0x14  4  version: 0 Jet 3, 1 Jet 4            0x3C  2  code page
//   0x18  4  row pointer, global free map         0x3E  4  key of the page encryption, 0 = none
//   0x1C  4  row pointer, second global map       0x42  20 (Jet 3) or 40 (Jet 4)  password
//   0x20  16 definitions of the system tables     0x56 / 0x6A  4  build of the creating engine
//   0x38  2  Jet 3: sort version                  0x6E  4  Jet 4: sort LCID, version in the high byte
//   0x3A  2  Jet 3: sort LCID                     0x72  8  Jet 4: creation date
#include "platform/jet/FileHeader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>

#include "platform/jet/Damage.h"
#include "platform/jet/Format.h"
#include "platform/jet/Rc4.h"
#include "platform/jet/SystemTables.h"
#include "platform/jet/TextCodec.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::Bytes;
using storage::MutableBytes;
using storage::readLE;
using storage::StorageError;
using storage::writeLE;

namespace jet {

namespace {

constexpr char magic[] = "Standard Jet DB";
constexpr std::byte headerKey[] = {std::byte{0xC7}, std::byte{0xDA}, std::byte{0x39}, std::byte{0x6B}};
constexpr std::size_t obfuscatedAt = 0x18;
constexpr std::size_t passwordAt = 0x42;
constexpr std::size_t passwordLength = 20; // characters
constexpr std::size_t createdAt = 0x72;
// Build numbers of engines that made such files.
constexpr std::uint32_t jet3Build = 0x251E;
constexpr std::uint32_t jet4Build = 0x21AA;

void toggleObfuscation(MutableBytes page, bool jet4)
{
    rc4(headerKey, page.subspan(obfuscatedAt, jet4 ? 128 : 126));
}

std::array<std::byte, 4> passwordMask(double created)
{
    std::array<std::byte, 4> mask{};
    const bool plausible = std::abs(created) < 2147483647.0;
    const auto days = static_cast<std::int32_t>(plausible ? created : 0);
    writeLE(MutableBytes(mask), 0, static_cast<std::uint32_t>(days));
    return mask;
}

QString readPassword(Bytes page, bool jet4, double created, std::uint16_t codePage)
{
    if (!jet4) {
        const Bytes field = page.subspan(passwordAt, passwordLength);
        const auto end = std::find(field.begin(), field.end(), std::byte{0});
        return TextCodec::jet3(codePage).decode(field.first(static_cast<std::size_t>(end - field.begin())));
    }
    const auto mask = passwordMask(created);
    QString password;
    for (std::size_t i = 0; i < passwordLength; ++i) {
        const auto masked = readLE<std::uint16_t>(page, passwordAt + 2 * i);
        const auto unit = static_cast<char16_t>(masked ^ readLE<std::uint16_t>(mask, 2 * (i % 2)));
        if (unit == 0)
            break;
        password += QChar(unit);
    }
    return password;
}

void writePassword(MutableBytes page, const FileHeader &header)
{
    if (header.password.size() > static_cast<qsizetype>(passwordLength))
        throw StorageError(StorageError::TooLong, u"Das Kennwort hat mehr als %1 Zeichen."_s.arg(passwordLength));
    if (!header.jet4) {
        const QByteArray bytes = TextCodec::jet3(header.codePage).encode(header.password);
        std::memcpy(page.data() + passwordAt, bytes.constData(), static_cast<std::size_t>(bytes.size()));
        return;
    }
    const auto mask = passwordMask(header.created);
    for (std::size_t i = 0; i < passwordLength; ++i) {
        const auto at = static_cast<qsizetype>(i);
        const char16_t unit = at < header.password.size() ? header.password.at(at).unicode() : u'\0';
        writeLE<std::uint16_t>(page, passwordAt + 2 * i,
                               static_cast<std::uint16_t>(unit ^ readLE<std::uint16_t>(mask, 2 * (i % 2))));
    }
}

bool versionOf(Bytes start)
{
    constexpr std::size_t versionAt = 0x14;
    if (start.size() < versionAt + 4 || std::memcmp(start.data() + 4, magic, sizeof magic) != 0)
        throw StorageError(StorageError::NotThisFormat, u"Die Datei ist keine Jet-Datenbank."_s);
    const auto version = readLE<std::uint32_t>(start, versionAt);
    if (version > 1) {
        throw StorageError(StorageError::NotThisFormat,
                           u"Die Datenbank hat ein neueres Format (Kennzahl %1) als Jet 4."_s.arg(version));
    }
    return version == 1;
}

} // namespace

FileHeader FileHeader::parse(Bytes start)
{
    FileHeader header;
    header.jet4 = versionOf(start);
    const std::size_t pageSize = (header.jet4 ? jet4Format : jet3Format).pageSize;
    if (start.size() < pageSize)
        damaged(0, u"abgeschnitten"_s);
    std::vector<std::byte> page(start.begin(), start.begin() + static_cast<std::ptrdiff_t>(pageSize));
    toggleObfuscation(page, header.jet4);

    header.codePage = readLE<std::uint16_t>(page, 0x3C);
    header.pageKey = readLE<std::uint32_t>(page, 0x3E);
    header.sortLcid = readLE<std::uint16_t>(page, header.jet4 ? 0x6E : 0x3A);
    header.sortVersion
        = header.jet4 ? readLE<std::uint16_t>(page, 0x70) >> 8 & 0xFF : readLE<std::uint16_t>(page, 0x38);
    if (header.jet4)
        header.created = std::bit_cast<double>(readLE<std::uint64_t>(page, createdAt));
    header.password = readPassword(page, header.jet4, header.created, header.codePage);
    return header;
}

Page FileHeader::toPage() const
{
    const Format &format = jet4 ? jet4Format : jet3Format;
    Page page(format.pageSize);
    writeLE<std::uint32_t>(page, 0, 0x100);
    std::memcpy(page.data() + 4, magic, sizeof magic);
    writeLE<std::uint32_t>(page, 0x14, jet4 ? 1 : 0);
    writeLE<std::uint32_t>(page, 0x18, globalFreeMap.number());
    writeLE<std::uint32_t>(page, 0x1C, globalSecondMap.number());
    for (std::uint32_t i = 0; i < 4; ++i)
        writeLE<std::uint32_t>(page, 0x20 + 4 * i, objectsPage + i);
    writeLE<std::uint16_t>(page, 0x3C, codePage);
    writeLE<std::uint32_t>(page, 0x3E, pageKey);
    writePassword(page, *this);
    if (jet4) {
        constexpr unsigned char constants[] = {0x54, 0x06, 0x00, 0x00, 0x34, 0x2E, 0x30, 0x00};
        writeLE<std::uint32_t>(page, 0x6A, jet4Build);
        writeLE<std::uint16_t>(page, 0x6E, sortLcid);
        writeLE<std::uint16_t>(page, 0x70, static_cast<std::uint16_t>(sortVersion << 8));
        writeLE<std::uint64_t>(page, createdAt, std::bit_cast<std::uint64_t>(created));
        std::memcpy(page.data() + 0x98, constants, sizeof constants);
    } else {
        writeLE<std::uint16_t>(page, 0x38, sortVersion);
        writeLE<std::uint16_t>(page, 0x3A, sortLcid);
        writeLE<std::uint32_t>(page, 0x56, jet3Build);
    }
    for (std::size_t word = 0; word < 256; ++word)
        writeLE<std::uint16_t>(page, format.commitArea + 2 * word, 0x100);
    toggleObfuscation(page, jet4);
    return page;
}

} // namespace jet
