#pragma once

#include <cstdint>

#include <QByteArray>
#include <QString>

#include "platform/storage/Bytes.h"

namespace storage {
class Codepage;
}

namespace jet {

/// Texts between QString and the file: bytes of a code page in Jet 3; UTF-16, perhaps compressed, in Jet 4.
class TextCodec
{
public:
    /// Throws StorageError::Unsupported for a code page that we have no table of.
    static TextCodec jet3(std::uint16_t codePage);
    static TextCodec jet4();

    bool isJet4() const { return m_codepage == nullptr; }
    std::uint16_t codePage() const { return m_number; } ///< 0 in Jet 4

    /// A column's text. Throws StorageError::Damaged for half a character.
    QString decode(storage::Bytes bytes) const;
    /// The same into a text whose room is used again.
    void decode(storage::Bytes bytes, QString &into) const;
    /// Throws StorageError::NotEncodable for characters outside the code page.
    QByteArray encode(QStringView text) const;
    /// The compressed form where Jet 4 would choose it, else the plain one.
    QByteArray encodeCompressed(QStringView text) const;

    /// Names: never compressed.
    QString decodeName(storage::Bytes bytes) const;

private:
    TextCodec(const storage::Codepage *codepage, std::uint16_t number)
        : m_codepage(codepage)
        , m_number(number)
    { }

    const storage::Codepage *m_codepage; // nullptr: Jet 4
    std::uint16_t m_number;
};

} // namespace jet
