#pragma once

#include <new>

#include "platform/dao/DaoError.h"
#include "platform/storage/StorageError.h"

namespace dao {

/// Numbers that only this engine raises; DaoError has those that its callers look at.
namespace number {
constexpr int OutOfMemory = 7; // of the run time, as the next one
constexpr int BadPattern = 93;
constexpr int Unmapped = 3000;
constexpr int TableExists = 3010;
constexpr int RelationshipExists = 3012;
constexpr int UnknownIndex = 3015;
constexpr int EditMissing = 3020;
constexpr int NotADatabase = 3049;
constexpr int SelectInExecute = 3065;
constexpr int AmbiguousColumn = 3079;
constexpr int UnknownFunction = 3085;
constexpr int BadBrackets = 3126;
constexpr int UnknownInsertColumn = 3127;
constexpr int NotSql = 3129;
constexpr int SyntaxInFrom = 3131;
constexpr int SyntaxInSelect = 3141;
constexpr int AfterEnd = 3142;
constexpr int NotUpdatableField = 3164;
constexpr int RowDeleted = 3167;
constexpr int UnknownKind = 3170;
constexpr int DatabaseExists = 3204;
constexpr int InvalidOperation = 3219;
constexpr int NotSupported = 3251;
constexpr int IndexExists = 3284;
constexpr int SyntaxInConstraint = 3289;
constexpr int SyntaxInCreateTable = 3290;
constexpr int SyntaxInCreateIndex = 3291;
constexpr int SyntaxInColumn = 3292;
constexpr int SyntaxInAlterTable = 3293;
constexpr int SyntaxInDrop = 3295;
constexpr int ValueCount = 3346;
constexpr int NumberTooLarge = 3349;
constexpr int DuplicateName = 3367;
constexpr int IndexColumnUnknown = 3409;
constexpr int Damaged = 3428;
constexpr int CriterionType = 3464;
} // namespace number

/// What was being done when a driver failed; the same failure has another number when a file is opened.
enum class Doing { Open, CreateDatabase, CreateTable, CreateIndex, CreateRelationship, Work };

/// Jet's number and description for a driver's failure.
DaoError daoError(const storage::StorageError &error, Doing doing);

/// Jet's number with its German description; `item` stands in for its place holder.
DaoError daoError(int number, const QString &item = {});

/// Runs `action`, turning StorageError into DaoError: the one border between the two.
template <typename Action> decltype(auto) translated(Doing doing, Action action)
{
    try {
        return action();
    } catch (const storage::StorageError &error) {
        throw daoError(error, doing);
    } catch (const std::bad_alloc &) {
        throw daoError(number::OutOfMemory);
    }
}

} // namespace dao
