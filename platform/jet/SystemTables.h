#pragma once

#include <cstdint>
#include <vector>

#include "platform/jet/FileHeader.h"
#include "platform/jet/RowPointer.h"
#include "platform/jet/TableDef.h"

/// Fixed places and numbers of the catalog.
namespace jet {

inline constexpr PageNo globalMapPage = 1;
inline constexpr RowPointer globalFreeMap{globalMapPage, 0}; ///< a set bit is a page that is free
inline constexpr RowPointer globalSecondMap{globalMapPage, 1}; ///< empty in all files seen; left alone

// Definitions of the system tables
inline constexpr PageNo objectsPage = 2;
inline constexpr PageNo permissionsPage = 3;
inline constexpr PageNo queriesPage = 4;
inline constexpr PageNo relationshipsPage = 5;

// Ids of the catalog's containers
inline constexpr std::uint32_t rootContainer = 0x0F000000;
inline constexpr std::uint32_t tablesContainer = 0x0F000001;
inline constexpr std::uint32_t databasesContainer = 0x0F000002;
inline constexpr std::uint32_t relationshipsContainer = 0x0F000003;
inline constexpr std::uint32_t databaseObject = 0x10000000;

enum ObjectType : std::int16_t { TableObject = 1, DatabaseObject = 2, ContainerObject = 3, RelationshipObject = 8 };

inline constexpr std::uint32_t systemObjectFlag = 0x80000000;
inline constexpr std::uint32_t hiddenObjectFlags = 0x80000002; ///< none of these: a user's table

/// The four system tables of a new database, without maps and trees, on their fixed pages.
std::vector<TableDef> systemTables(const FileHeader &header);

} // namespace jet
