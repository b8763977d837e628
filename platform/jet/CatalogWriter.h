#pragma once

#include <cstdint>
#include <optional>

#include <QByteArray>
#include <QString>

#include "platform/jet/PageFile.h"
#include "platform/jet/TableDef.h"
#include "platform/jet/TextCodec.h"
#include "platform/storage/Value.h"

namespace jet {

/// Adds and removes rows of the system tables. Only within a write scope.
class CatalogWriter
{
public:
    CatalogWriter(PageFile &file, const TextCodec &codec);

    struct Object {
        std::uint32_t id = 0;
        std::uint32_t parent = 0;
        QString name{};
        std::int16_t type = 0;
        std::uint32_t flags = 0;
        QByteArray owner{};
        QByteArray properties{};
    };
    void addObject(const Object &object);

    struct Permission {
        std::uint32_t object = 0;
        std::uint32_t rights = 0;
        bool inheritable = false;
        QByteArray account{};
    };
    void addPermission(const Permission &permission);
    /// Gives a new table what the container of all tables hands down.
    void inheritPermissions(std::uint32_t table, const QByteArray &owner);

    /// One pair of columns of a relationship.
    struct RelationshipPair {
        QString name{};
        std::uint32_t flags = 0;
        std::int64_t count = 0;
        std::int64_t position = 0;
        QString table{};
        QString column{};
        QString referencedTable{};
        QString referencedColumn{};
    };
    void addRelationshipPair(const RelationshipPair &pair);

    void removeObject(std::uint32_t id);
    void removeRelationship(const QString &name);

    /// The owner of the users' objects; empty if the catalog does not say.
    QByteArray usersOwner() const;
    /// An id that no object has yet, for objects that are no tables.
    std::uint32_t freeId() const;

private:
    struct Column {
        const char16_t *name;
        storage::Value value;
    };
    void insert(const TableDef &def, std::initializer_list<Column> columns);
    void removeWhere(const TableDef &def, const char16_t *column, const storage::Value &value);

    PageFile &m_file;
    const TextCodec &m_codec;
    TableDef m_objects;
    TableDef m_permissions;
    TableDef m_relationships;
};

} // namespace jet
