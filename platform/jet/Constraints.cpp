// Checking values before they are written.
#include "platform/jet/Constraints.h"

#include "platform/jet/Expression.h"
#include "platform/jet/Rule.h"
#include "platform/jet/ValueCodec.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::StorageError;
using storage::Value;

namespace jet {

namespace {

void requireRule(const storage::Column &column, const Value &value, bool jet4)
{
    const auto rule = Rule::parse(column.validationRule, column.name, jet4);
    if (!rule) {
        throw StorageError(
            StorageError::Unsupported,
            u"%1: Die Gültigkeitsregel %2 kann nicht geprüft werden."_s.arg(column.name, column.validationRule),
            column.name);
    }
    if (rule->holds(value))
        return;
    const QString violated
        = u"%1: Der Wert verletzt die Gültigkeitsregel %2."_s.arg(column.name, column.validationRule);
    throw StorageError(StorageError::RuleViolated,
                       column.validationText.isEmpty() ? violated : violated + u' ' + column.validationText,
                       column.name);
}

} // namespace

bool countsUp(const storage::Column &column)
{
    return column.autonumber && column.type == storage::Type::Long
        && column.defaultValue.compare(u"GenUniqueID()", Qt::CaseInsensitive) != 0;
}

Constraints::Constraints(const SchemaMap &map, const TextCodec &codec)
    : m_map(map)
    , m_codec(codec)
{
    if (!map.tableRule.isEmpty()) {
        throw StorageError(
            StorageError::Unsupported,
            u"Die Gültigkeitsregel %1 der Tabelle %2 kann nicht geprüft werden."_s.arg(map.tableRule, map.schema.name),
            map.schema.name);
    }
}

std::vector<Value> Constraints::newRow(std::span<const storage::Assignment> given) const
{
    const std::vector<storage::Column> &columns = m_map.schema.columns;
    std::vector<std::optional<Value>> wished(columns.size());
    for (const storage::Assignment &assignment : given)
        wished.at(static_cast<std::size_t>(assignment.column)) = assignment.value;
    std::vector<Value> row;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const bool isGiven = wished[i].has_value();
        Value value = isGiven ? *wished[i] : Value();
        if (!isGiven && !countsUp(columns[i]) && !columns[i].defaultValue.isEmpty())
            value = evaluateDefault(m_map.columns[i], columns[i].defaultValue);
        row.push_back(checked(i, value, isGiven));
    }
    return row;
}

std::vector<storage::Assignment> Constraints::changes(std::span<const storage::Assignment> given) const
{
    std::vector<storage::Assignment> changes;
    for (const storage::Assignment &assignment : given) {
        std::erase_if(changes, [&](const storage::Assignment &other) { return other.column == assignment.column; });
        changes.push_back(
            {assignment.column, checked(static_cast<std::size_t>(assignment.column), assignment.value, true)});
    }
    return changes;
}

Value Constraints::checked(std::size_t column, const Value &wished, bool given) const
{
    const storage::Column &schema = m_map.schema.columns.at(column);
    Value value = fitValue(m_map.columns[column], wished, m_codec);
    const bool null = storage::isNull(value);
    if (null && schema.required && !countsUp(schema)) {
        throw StorageError(StorageError::Required, u"%1: Das Feld darf nicht leer sein."_s.arg(schema.name),
                           schema.name);
    }
    const auto *text = std::get_if<QString>(&value);
    if (text && text->isEmpty() && !schema.zeroLengthAllowed) {
        throw StorageError(StorageError::ZeroLength,
                           u"%1: Eine leere Zeichenfolge ist nicht zulässig."_s.arg(schema.name), schema.name);
    }
    // As with the engine, a column that nobody touches may stay Null whatever its rule says.
    if (!schema.validationRule.isEmpty() && (given || !null))
        requireRule(schema, value, m_codec.isJet4());
    return value;
}

} // namespace jet
