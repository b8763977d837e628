#pragma once

#include "platform/jet/PageFile.h"
#include "platform/jet/TableDef.h"
#include "platform/jet/TextCodec.h"
#include "platform/jet/VerifierFindings.h"

namespace jet {

/// One side of a relationship: a table and its index.
struct RelationSide {
    const QString &tableName;
    const TableDef &table;
    const LogicalIndexDef &index;
};

/// Checks that every row of the referencing side has its row on the referenced one; rows with a Null need none.
void checkReferences(PageFile &file, const TextCodec &codec, const RelationSide &referencing,
                     const RelationSide &referenced, Findings &findings);

} // namespace jet
