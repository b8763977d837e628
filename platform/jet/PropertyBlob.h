#pragma once

#include <cstdint>
#include <vector>

#include <QByteArray>
#include <QString>

#include "platform/jet/TextCodec.h"
#include "platform/storage/Bytes.h"

namespace jet {

/// A named property of a table or column, as the file keeps it.
struct Property {
    enum Type : std::uint8_t { Boolean = 1, Text = 10, Memo = 12 };

    QString name;
    std::uint8_t ddl = 1; ///< set by a definition statement
    std::uint8_t type = Text;
    QByteArray data{};

    static Property truth(const QString &name, bool value);
    static Property text(const QString &name, Type type, const QString &value, const TextCodec &codec);
    bool toBool() const { return !data.isEmpty() && data.front() != 0; }
    QString toText(const TextCodec &codec) const;
};

/// The properties of one column, or of the table itself.
struct PropertyBlock {
    enum Kind : std::uint16_t { OfTable = 0, OfColumn = 1 };

    std::uint16_t kind = OfColumn;
    QString owner{}; ///< a column's name
    std::vector<Property> properties{};

    /// nullptr if there is none of that name.
    const Property *find(QStringView name) const;
};

/// Throws StorageError::Damaged for bytes that are no property list.
std::vector<PropertyBlock> parseProperties(storage::Bytes blob, const TextCodec &codec);
QByteArray writeProperties(const std::vector<PropertyBlock> &blocks, const TextCodec &codec);

} // namespace jet
