#pragma once

#include <array>
#include <functional>
#include <optional>
#include <vector>

#include <QString>

namespace storage {

/// Compares two texts in a database's order: below, equal to or above 0.
using TextOrder = std::function<int(QStringView, QStringView)>;

/// A pattern of Jet's `Like`, compiled once and matched often.
///
/// `*` any characters, `?` one character, `#` one digit, `[abc]` one of these, `[a-z]` one in this range of the text
/// order, `[!...]` one that is not listed; `[*]` and the like stand for the character itself. Characters are UTF-16
/// units.
class LikePattern
{
public:
    /// Nothing for a bracket without its end or a range that runs backwards.
    static std::optional<LikePattern> compile(QStringView pattern, bool caseSensitive, TextOrder order);

    bool matches(QStringView text) const;

private:
    struct Item {
        enum Kind { Anything, AnyCharacter, Digit, Character, List };
        Kind kind;
        char16_t character = 0;
        std::size_t list = 0; // position in m_lists
        std::size_t table = noTable; // position in m_tables
    };
    static constexpr std::size_t noTable = static_cast<std::size_t>(-1);
    struct List {
        bool negated = false;
        std::u16string characters{};
        std::u16string ranges{}; // pairs of first and last
    };

    LikePattern(bool caseSensitive, TextOrder order);

    char16_t folded(char16_t c) const;
    std::optional<qsizetype> compileList(QStringView pattern, qsizetype start);
    void makeTables();
    bool accepts(const Item &item, char16_t c) const
    {
        return item.table != noTable && c < tableSize ? m_tables[item.table][c] : isAccepted(item, c);
    }
    bool isAccepted(const Item &item, char16_t c) const;
    qsizetype findAccepted(const Item &item, QStringView text, qsizetype from) const;
    bool accepts(const List &list, char16_t c) const;

    bool m_caseSensitive;
    TextOrder m_order;
    std::vector<Item> m_items;
    std::vector<List> m_lists;
    static constexpr std::size_t tableSize = 256;
    std::vector<std::array<bool, tableSize>> m_tables; // which of the first characters an item accepts
};

} // namespace storage
