// Jet's Like: compiles a pattern into items of one character each and matches with a single point of return.
#include "platform/storage/LikePattern.h"

#include <utility>

namespace storage {

LikePattern::LikePattern(bool caseSensitive, TextOrder order)
    : m_caseSensitive(caseSensitive)
    , m_order(std::move(order))
{ }

std::optional<LikePattern> LikePattern::compile(QStringView pattern, bool caseSensitive, TextOrder order)
{
    LikePattern compiled(caseSensitive, std::move(order));
    std::vector<Item> &items = compiled.m_items;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const char16_t c = pattern[i].unicode();
        if (c == u'[') {
            const auto end = compiled.compileList(pattern, i + 1);
            if (!end)
                return std::nullopt;
            i = *end;
        } else if (c == u'*' && !items.empty() && items.back().kind == Item::Anything)
            continue;
        else if (c == u'*')
            items.push_back({Item::Anything});
        else if (c == u'?')
            items.push_back({Item::AnyCharacter});
        else if (c == u'#')
            items.push_back({Item::Digit});
        else
            items.push_back({Item::Character, compiled.folded(c)});
    }
    compiled.makeTables();
    return compiled;
}

/// Not for ranges, which would ask for the order of texts too often.
void LikePattern::makeTables()
{
    for (Item &item : m_items) {
        if (item.kind == Item::Anything || (item.kind == Item::List && !m_lists[item.list].ranges.empty()))
            continue;
        auto &table = m_tables.emplace_back();
        for (std::size_t c = 0; c < tableSize; ++c)
            table[c] = isAccepted(item, static_cast<char16_t>(c));
        item.table = m_tables.size() - 1;
    }
}

char16_t LikePattern::folded(char16_t c) const
{
    if (m_caseSensitive)
        return c;
    if (c < 0x80)
        return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
    return QChar(c).toCaseFolded().unicode();
}

/// Compiles what follows an opening bracket and returns the position of the closing one.
std::optional<qsizetype> LikePattern::compileList(QStringView pattern, qsizetype start)
{
    const qsizetype end = pattern.indexOf(u']', start);
    if (end < 0)
        return std::nullopt;
    QStringView content = pattern.sliced(start, end - start);
    List list;
    if (content.size() > 1 && content.front() == u'!') {
        list.negated = true;
        content = content.sliced(1);
    }
    for (qsizetype i = 0; i < content.size(); ++i) {
        const bool isRange = i + 2 < content.size() && content[i + 1] == u'-';
        if (!isRange) {
            list.characters += folded(content[i].unicode());
            continue;
        }
        if (m_order(content.sliced(i, 1), content.sliced(i + 2, 1)) > 0)
            return std::nullopt;
        list.ranges += content[i].unicode();
        list.ranges += content[i + 2].unicode();
        i += 2;
    }
    if (!content.isEmpty()) { // an empty list matches no character at all
        m_items.push_back({Item::List, 0, m_lists.size()});
        m_lists.push_back(std::move(list));
    }
    return end;
}

bool LikePattern::accepts(const List &list, char16_t c) const
{
    if (list.characters.find(folded(c)) != std::u16string::npos)
        return !list.negated;
    const QChar character(c);
    for (std::size_t i = 0; i < list.ranges.size(); i += 2) {
        const QStringView first(&list.ranges[i], 1);
        const QStringView last(&list.ranges[i + 1], 1);
        if (m_order(first, QStringView(&character, 1)) <= 0 && m_order(QStringView(&character, 1), last) <= 0)
            return !list.negated;
    }
    return list.negated;
}

bool LikePattern::isAccepted(const Item &item, char16_t c) const
{
    switch (item.kind) {
    case Item::Character:
        return folded(c) == item.character;
    case Item::Digit:
        return c >= u'0' && c <= u'9';
    case Item::List:
        return accepts(m_lists[item.list], c);
    default:
        return true;
    }
}

/// The first place from `from` on whose character the item accepts; the text's end if there is none.
qsizetype LikePattern::findAccepted(const Item &item, QStringView text, qsizetype from) const
{
    while (from < text.size() && !accepts(item, text[from].unicode()))
        ++from;
    return from;
}

bool LikePattern::matches(QStringView text) const
{
    constexpr auto none = static_cast<std::size_t>(-1);
    std::size_t item = 0;
    qsizetype at = 0;
    std::size_t resumeItem = none; // behind the last star
    qsizetype resumeAt = 0;
    while (at < text.size()) {
        if (item < m_items.size() && m_items[item].kind == Item::Anything) {
            resumeItem = ++item;
            if (item == m_items.size())
                return true;
            resumeAt = at = findAccepted(m_items[item], text, at);
        } else if (item < m_items.size() && accepts(m_items[item], text[at].unicode())) {
            ++item;
            ++at;
        } else if (resumeItem != none) {
            item = resumeItem;
            resumeAt = at = findAccepted(m_items[item], text, resumeAt + 1);
        } else {
            return false;
        }
    }
    while (item < m_items.size() && m_items[item].kind == Item::Anything)
        ++item;
    return item == m_items.size();
}

} // namespace storage
