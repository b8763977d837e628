// Turns a query round, so that its last row is the first one found.
#include "platform/dao/embedded/RowOrder.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using storage::Type;

namespace dao {

namespace {

/// Where a word stands outside of parentheses; at the end if it does not.
std::size_t placeOf(const std::vector<Token> &tokens, QStringView word)
{
    int depth = 0;
    std::size_t place = 0;
    for (; tokens[place].kind != Token::End; ++place) {
        depth += tokens[place].isSymbol(u"(") ? 1 : tokens[place].isSymbol(u")") ? -1 : 0;
        if (depth == 0 && tokens[place].isWord(word))
            break;
    }
    return place;
}

/// Whether only columns are shown, under their own names: ORDER BY would find another name first.
bool showsPlainColumns(const std::vector<Token> &tokens, std::size_t from)
{
    for (std::size_t i = 1; i < from; ++i) {
        const bool separates = QStringList{u","_s, u"."_s, u"!"_s, u"*"_s}.contains(tokens[i].text);
        const bool isColumn = tokens[i].isName() && (i == 1 || !tokens[i - 1].isName());
        if (!isColumn && !(tokens[i].kind == Token::Symbol && separates))
            return false;
    }
    return true;
}

bool usesTheClock(const std::vector<Token> &tokens)
{
    return std::ranges::any_of(tokens,
                               [](const Token &token) { return token.isWord(u"NOW") || token.isWord(u"DATE"); });
}

/// Whether values differ for SQLite whenever their keys do; not so where it computes with double precision.
bool comparesExactly(Type type)
{
    return type == Type::Boolean || type == Type::Byte || type == Type::Integer || type == Type::Long
        || type == Type::Text;
}

bool isTotal(const std::vector<int> &order, const storage::TableSchema &schema)
{
    return std::ranges::any_of(schema.indexes, [&](const storage::Index &index) {
        return index.usable && index.unique && (index.primary || index.required)
            && std::ranges::all_of(index.columns, [&](const storage::IndexColumn &part) {
                   return std::ranges::find(order, part.column) != order.end()
                       && comparesExactly(schema.columns[static_cast<std::size_t>(part.column)].type);
               });
    });
}

} // namespace

std::optional<std::vector<Token>> reversedQuery(const std::vector<Token> &tokens, const storage::TableSchema &schema)
{
    const std::size_t order = placeOf(tokens, u"ORDER");
    if (tokens[order].kind == Token::End || !tokens[order + 1].isWord(u"BY")
        || !showsPlainColumns(tokens, placeOf(tokens, u"FROM")) || usesTheClock(tokens))
        return std::nullopt;
    std::vector<Token> reversed(tokens.begin(), tokens.begin() + static_cast<std::ptrdiff_t>(order) + 1);
    std::vector<int> columns;
    std::size_t next = order + 1; // BY, then each comma
    do {
        reversed.push_back(tokens[next++]);
        if (tokens[next].isName() && (tokens[next + 1].isSymbol(u".") || tokens[next + 1].isSymbol(u"!"))) {
            reversed.insert(reversed.end(), {tokens[next], tokens[next + 1]});
            next += 2;
        }
        const auto column = tokens[next].isName() ? schema.find(tokens[next].text) : std::nullopt;
        if (!column)
            return std::nullopt;
        columns.push_back(*column);
        reversed.push_back(tokens[next++]);
        const bool descends = tokens[next].isWord(u"DESC");
        if (descends || tokens[next].isWord(u"ASC"))
            ++next;
        reversed.push_back({Token::Word, descends ? u"ASC"_s : u"DESC"_s});
    } while (tokens[next].isSymbol(u","));
    reversed.push_back(tokens[next]);
    return tokens[next].kind == Token::End && isTotal(columns, schema) ? std::optional(reversed) : std::nullopt;
}

} // namespace dao
