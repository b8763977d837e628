#pragma once

#include <vector>

#include "platform/jet/PageStore.h"
#include "platform/jet/TextCodec.h"
#include "platform/storage/Storage.h"

namespace jet {

/// The relationships that MSysRelationships lists, in its order.
/// Throws StorageError::Damaged when a relationship's column pairs are not complete.
std::vector<storage::Relationship> readRelationships(PageStore &store, const TextCodec &codec);

/// What the flags of a relationship's rows say.
enum RelationshipFlag : std::uint32_t { NotEnforced = 0x2, CascadeUpdates = 0x100, CascadeDeletes = 0x1000 };

} // namespace jet
