#pragma once

#include <span>

#include "platform/jet/IndexKey.h"
#include "platform/jet/PageStore.h"
#include "platform/jet/TableDef.h"

namespace jet {

/// Fills the tree of an index whose only page is its root. `entries` are keys with row addresses behind them, in
/// order; each must fit (IndexNode::entryLimit).
void buildIndexTree(PageStore &store, const IndexDef &index, PageNo owner, std::span<const KeyBytes> entries);

} // namespace jet
