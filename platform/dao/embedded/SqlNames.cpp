// Looks up what the names in a statement stand for.
#include "platform/dao/embedded/SqlNames.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using storage::Type;

namespace dao {

namespace {

Kind ofType(Type type)
{
    switch (type) {
    case Type::Currency:
    case Type::Numeric:
        return Kind::Exact;
    case Type::Text:
    case Type::Memo:
    case Type::Guid:
        return Kind::Text;
    case Type::DateTime:
        return Kind::Date;
    case Type::Binary:
    case Type::LongBinary:
        return Kind::Unknown;
    default:
        return Kind::Number;
    }
}

/// What either of two columns of the same name can give.
Kind combined(std::optional<Kind> known, Kind other)
{
    if (!known || *known == other)
        return other;
    return mayBeExact(*known) || mayBeExact(other) ? Kind::Mixed : Kind::Unknown;
}

} // namespace

SqlNames::SqlNames(const std::vector<Token> &tokens, const std::vector<storage::TableSchema> &schemas,
                   const std::function<bool(const Token &)> &isKeyword)
    : m_schemas(schemas)
{
    const auto isName
        = [&](const Token &token) { return token.isName() && !(token.kind == Token::Word && isKeyword(token)); };
    const auto at = [&](std::size_t index) -> const Token & { return tokens[std::min(index, tokens.size() - 1)]; };
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        for (const storage::TableSchema &schema : schemas) {
            if (!isName(tokens[i]) || schema.name.compare(tokens[i].text, Qt::CaseInsensitive) != 0)
                continue;
            const Token &behind = at(i + (at(i + 1).isWord(u"AS") ? 2 : 1));
            m_tables[schema.name.toCaseFolded()] = &schema;
            if (isName(behind))
                m_tables[behind.text.toCaseFolded()] = &schema;
        }
    }
}

std::vector<Kind> SqlNames::kindsOf(const QString &table) const
{
    std::vector<Kind> kinds;
    if (const auto known = m_tables.find(table.toCaseFolded()); known != m_tables.end()) {
        for (const storage::Column &column : known->second->columns)
            kinds.push_back(ofType(column.type));
    }
    return kinds;
}

Kind SqlNames::kindOf(const QString &column, const QString &table) const
{
    const auto known = m_tables.find(table.toCaseFolded());
    const storage::TableSchema *only = known == m_tables.end() ? nullptr : known->second;
    std::optional<Kind> found;
    for (const storage::TableSchema &schema : m_schemas) {
        const auto position = only == nullptr || only == &schema ? schema.find(column) : std::nullopt;
        if (!position)
            continue;
        const Kind kind = ofType(schema.columns[static_cast<std::size_t>(*position)].type);
        found = combined(found, kind);
    }
    if (const auto given = m_given.find(column.toCaseFolded()); given != m_given.end())
        found = combined(found, given->second);
    const QStringList truths{u"true"_s, u"yes"_s, u"false"_s, u"no"_s};
    return found.value_or(truths.contains(column, Qt::CaseInsensitive) ? Kind::Number : Kind::Unknown);
}

} // namespace dao
