#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include <QByteArray>
#include <QString>

#include "platform/storage/Bytes.h"

namespace storage {

/// An 8-bit code page of the files' texts. Bytes below 0x80 are ASCII in all of them.
class Codepage
{
public:
    /// `upper`: the characters of the bytes 0x80 to 0xFF, in order. `name` is what the user reads.
    constexpr Codepage(std::u16string_view name, std::u16string_view upper)
        : m_name(name)
    {
        std::copy_n(upper.begin(), m_upper.size(), m_upper.begin());
        for (std::size_t i = 0; i < m_upper.size(); ++i)
            m_byCharacter[i] = {m_upper[i], static_cast<std::uint8_t>(0x80 + i)};
        std::ranges::sort(m_byCharacter, {}, &Entry::character);
    }

    QString name() const { return QString::fromUtf16(m_name.data(), static_cast<qsizetype>(m_name.size())); }

    /// Every byte has a character.
    QString decode(Bytes bytes) const;
    /// The same into a text whose room is used again.
    void decode(Bytes bytes, QString &into) const;
    /// Throws StorageError::NotEncodable, naming the first character that the code page lacks.
    QByteArray encode(QStringView text) const;

private:
    struct Entry {
        char16_t character = 0;
        std::uint8_t byte = 0;
    };

    std::u16string_view m_name;
    std::array<char16_t, 128> m_upper{};
    std::array<Entry, 128> m_byCharacter{};
};

/// The five bytes that Windows-1252 leaves undefined are the C1 controls of the same number, as Windows has it.
extern const Codepage windows1252;
extern const Codepage dos437;
extern const Codepage dos850;

} // namespace storage
