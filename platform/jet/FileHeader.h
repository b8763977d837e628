#pragma once

#include <cstdint>

#include <QByteArray>
#include <QString>

#include "platform/jet/PageStore.h"
#include "platform/storage/Bytes.h"

namespace jet {

/// What page 0 says about the file.
struct FileHeader {
    bool jet4 = true;
    std::uint16_t codePage = 1252;
    std::uint16_t sortLcid = 0x0409;
    std::uint16_t sortVersion = 0;
    std::uint32_t pageKey = 0; ///< 0: the pages are in clear
    QString password{}; ///< empty: none
    double created = 0; ///< Jet 4: a date; it also masks the password

    /// Reads page 0 from a file's first bytes (at least `bytesNeeded`, or as many as the file has).
    /// Throws StorageError: NotThisFormat with the reason, Damaged when the page is cut off.
    static FileHeader parse(storage::Bytes start);
    static constexpr std::size_t bytesNeeded = 4096;

    /// Page 0 of a new file. The password must fit: 20 characters, in Jet 3 those of the code page; throws
    /// StorageError::TooLong or NotEncodable.
    Page toPage() const;
};

} // namespace jet
