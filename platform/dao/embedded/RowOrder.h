#pragma once

#include <optional>
#include <vector>

#include "platform/dao/embedded/SqlTokens.h"
#include "platform/storage/Storage.h"

namespace dao {

/// The SELECT over one table that gives the same rows from the last to the first. Nothing unless that is certain: its
/// ORDER BY must name all columns of an index without equal keys, so that no two rows tie, and it must find the same
/// rows whenever it runs.
std::optional<std::vector<Token>> reversedQuery(const std::vector<Token> &tokens, const storage::TableSchema &schema);

} // namespace dao
