// Text in the file. Compressed text of Jet 4 starts with FF FE; then each byte is a character below U+0100, and a zero
// byte changes to two-byte characters and back.
#include "platform/jet/TextCodec.h"

#include <algorithm>
#include <cstring>

#include <QtEndian>

#include "platform/jet/Damage.h"
#include "platform/storage/Codepage.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::Bytes;
using storage::StorageError;

namespace jet {

namespace {

constexpr std::byte compressedMark[] = {std::byte{0xFF}, std::byte{0xFE}};
constexpr qsizetype shortestCompressed = 3; // characters
constexpr qsizetype longestCompressed = 1024;

bool isCompressed(Bytes bytes)
{
    return bytes.size() >= sizeof compressedMark
        && std::memcmp(bytes.data(), compressedMark, sizeof compressedMark) == 0;
}

void decodeUtf16(Bytes bytes, QString &text)
{
    if (bytes.size() % 2 != 0)
        damaged(u"Ein Text endet mit einem halben Zeichen"_s);
    text.resize(static_cast<qsizetype>(bytes.size() / 2));
    qFromLittleEndian<quint16>(bytes.data(), text.size(), text.data());
}

void expand(Bytes bytes, QString &text)
{
    if (std::memchr(bytes.data(), 0, bytes.size()) == nullptr) { // the usual case: compressed to the end
        text.resize(static_cast<qsizetype>(bytes.size()));
        std::ranges::transform(bytes, text.begin(),
                               [](std::byte byte) { return QChar(std::to_integer<char16_t>(byte)); });
        return;
    }
    text.resize(0);
    text.reserve(static_cast<qsizetype>(bytes.size()));
    bool compressed = true;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        if (bytes[at] == std::byte{0}) {
            compressed = !compressed;
        } else if (compressed) {
            text += QChar(std::to_integer<char16_t>(bytes[at]));
        } else {
            text += QChar(storage::readLE<std::uint16_t>(bytes, at));
            ++at;
        }
    }
}

} // namespace

TextCodec TextCodec::jet3(std::uint16_t codePage)
{
    switch (codePage) {
    case 1252:
        return {&storage::windows1252, codePage};
    case 850:
        return {&storage::dos850, codePage};
    case 437:
        return {&storage::dos437, codePage};
    default:
        throw StorageError(StorageError::Unsupported,
                           u"Die Zeichentabelle %1 der Datenbank ist nicht bekannt."_s.arg(codePage));
    }
}

TextCodec TextCodec::jet4()
{
    return {nullptr, 0};
}

QString TextCodec::decode(Bytes bytes) const
{
    QString text = u""_s;
    decode(bytes, text);
    return text;
}

void TextCodec::decode(Bytes bytes, QString &into) const
{
    if (bytes.empty())
        into.resize(0);
    else if (!isJet4())
        m_codepage->decode(bytes, into);
    else if (isCompressed(bytes))
        expand(bytes.subspan(sizeof compressedMark), into);
    else
        decodeUtf16(bytes, into);
}

QString TextCodec::decodeName(Bytes bytes) const
{
    QString name;
    if (bytes.empty())
        return name;
    if (isJet4())
        decodeUtf16(bytes, name);
    else
        m_codepage->decode(bytes, name);
    return name;
}

QByteArray TextCodec::encode(QStringView text) const
{
    if (text.isEmpty())
        return {};
    if (!isJet4())
        return m_codepage->encode(text);
    constexpr QChar mark(0xFEFF); // would be taken for the mark of compressed text
    if (text.startsWith(mark))
        throw StorageError(StorageError::NotEncodable, u"Ein Text darf nicht mit dem Zeichen U+FEFF beginnen."_s);
    QByteArray bytes(2 * text.size(), Qt::Uninitialized);
    qToLittleEndian<quint16>(text.utf16(), text.size(), bytes.data());
    return bytes;
}

QByteArray TextCodec::encodeCompressed(QStringView text) const
{
    const bool fits = text.size() >= shortestCompressed && text.size() <= longestCompressed
        && std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() > 0 && c.unicode() < 0x100; });
    if (!isJet4() || !fits)
        return encode(text);
    QByteArray bytes(reinterpret_cast<const char *>(compressedMark), sizeof compressedMark);
    return bytes + text.toLatin1();
}

} // namespace jet
