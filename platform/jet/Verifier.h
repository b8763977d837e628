#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include <QString>

#include "platform/jet/PageFile.h"

namespace jet {

/// What a check of a whole file has found.
struct VerifyReport {
    std::vector<QString> faults{}; ///< contradictions, in German; at most `faultLimit`
    std::vector<QString> notes{}; ///< oddities that good files have, too
    std::uint64_t tables = 0;
    std::uint64_t rows = 0;
    std::uint64_t indexes = 0;
    std::uint64_t entries = 0; ///< of indexes
    std::uint64_t equalEntries = 0; ///< those whose key, made anew from the row, has the same bytes

    static constexpr std::size_t faultLimit = 1000;
};

/// Called with what is looked at now, in German.
using VerifyProgress = std::function<void(const QString &)>;

/// Checks everything in the file that has to agree: pages and the maps that list them, rows, long values, indexes,
/// counters, properties and relationships. Reads the whole file and writes nothing.
/// Throws StorageError only for what prevents any look at the catalog; all else is in the report.
VerifyReport verify(PageFile &file, const VerifyProgress &progress = {});

} // namespace jet
