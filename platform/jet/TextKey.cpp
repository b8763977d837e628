// Sort keys of texts in the General order: letters first, then accents, then the marks that hardly count.
#include "platform/jet/TextKey.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "platform/jet/Format.h"
#include "platform/jet/TextKeyTables.h"

namespace jet {

namespace {

constexpr std::byte byteOf(std::uint32_t number)
{
    return static_cast<std::byte>(number & 0xFF);
}

/// What of a text counts: trailing blanks do not, nor does what stands behind the 255th character.
QStringView significant(QStringView text)
{
    if (text.size() > static_cast<qsizetype>(maxTextLength))
        text = text.first(static_cast<qsizetype>(maxTextLength));
    while (text.endsWith(u' '))
        text.chop(1);
    return text;
}

/// nullptr for a character outside the code page.
const TextWeight3 *weight3(char16_t unit)
{
    if (unit <= 0xFF && textWeights3[unit].unicode == unit)
        return &textWeights3[unit];
    const auto found = std::find_if(textWeights3.begin() + 0x80, textWeights3.begin() + 0xA0,
                                    [unit](const TextWeight3 &weight) { return weight.unicode == unit; });
    return found == textWeights3.begin() + 0xA0 ? nullptr : &*found;
}

/// Two accents to a byte, closed by at least one zero.
void appendAccents(const std::vector<std::uint8_t> &accents, KeyBytes &key)
{
    for (std::size_t i = 0; i <= accents.size(); i += 2) {
        const std::uint32_t high = i < accents.size() ? accents[i] : 0;
        const std::uint32_t low = i + 1 < accents.size() ? accents[i + 1] : 0;
        key.push_back(byteOf(high << 4 | low));
    }
}

/// Returns the size of `key` where the letters end. No letter has a byte below 0x10, no accents begin with more.
std::size_t appendKey3(QStringView text, KeyBytes &key)
{
    constexpr std::uint8_t noAccent = 2;
    std::vector<std::uint8_t> accents;
    std::size_t places = 0; // since the last accent
    for (const QChar character : text) {
        const char16_t unit = character.unicode();
        const TextWeight3 *weight = weight3(unit);
        if (weight == nullptr) {
            key.insert(key.end(), {byteOf(0xFF), byteOf(static_cast<std::uint32_t>(unit >> 8)), byteOf(unit)});
            continue;
        }
        key.push_back(byteOf(weight->first));
        if (weight->second != 0)
            key.push_back(byteOf(weight->second));
        places += weight->accentPlaces;
        if (weight->accent != 0) {
            if (accents.empty())
                accents.push_back(0);
            accents.insert(accents.end(), std::exchange(places, 0), noAccent);
            accents.push_back(weight->accent);
        }
    }
    const std::size_t lettersEnd = key.size();
    appendAccents(accents, key);
    return lettersEnd;
}

/// What one unit contributes to a key of Jet 4.
struct Weight4 {
    const TextKind4 *kind = nullptr; ///< nullptr: the unit is ignored
    std::uint32_t value = 0;
};

constexpr TextKind4 surrogateKind{TextKind4::Sorting, 1, 2, 0, 1, {0x3F, 0}, 0, 0};

std::uint32_t surrogateValue(char16_t unit)
{
    constexpr std::uint32_t highDistance = 10238;
    if (QChar::isHighSurrogate(unit))
        return unit - highDistance;
    const std::uint32_t low = unit - 0xDC00U;
    constexpr std::pair<std::uint32_t, std::uint32_t> distances[] = {{8, 9992}, {262, 9990}, {516, 9988}, {770, 9986}};
    for (const auto &[end, distance] : distances) {
        if (low < end)
            return unit - distance;
    }
    return unit - 9984U;
}

Weight4 findWeight4(char16_t unit)
{
    if (QChar::isSurrogate(unit))
        return {&surrogateKind, surrogateValue(unit)};
    const auto firstOf = [](std::uint64_t run) { return static_cast<char16_t>(run >> 40); };
    auto run = std::ranges::upper_bound(textRuns4, unit, {}, firstOf);
    if (run == textRuns4.begin())
        return {};
    --run;
    const std::uint32_t distance = unit - std::uint32_t{firstOf(*run)};
    if (distance >= ((*run >> 28) & 0xFFF))
        return {};
    const TextKind4 &kind = textKinds4[*run & 0xFFF];
    return {&kind, static_cast<std::uint32_t>((*run >> 12) & 0xFFFF) + distance * kind.step};
}

Weight4 weight4(char16_t unit)
{
    static const auto latin = [] {
        std::array<Weight4, 0x100> weights{};
        for (std::size_t i = 0; i < weights.size(); ++i)
            weights[i] = findWeight4(static_cast<char16_t>(i));
        return weights;
    }();
    return unit < latin.size() ? latin[unit] : findWeight4(unit);
}

void appendLetters(const Weight4 &weight, KeyBytes &key)
{
    const TextKind4 &kind = *weight.kind;
    if (kind.form == TextKind4::Counted) {
        key.push_back(byteOf(weight.value / 254));
        key.push_back(byteOf(weight.value % 254 + 2));
        return;
    }
    const std::uint32_t bytes = std::uint32_t{kind.prefix} << 16 | weight.value;
    for (std::uint32_t i = kind.form; i-- > 0;)
        key.push_back(byteOf(bytes >> (8 * i)));
}

/// The parts of a Jet 4 key behind the letters.
class Afterthoughts4
{
public:
    void add(const Weight4 &weight);
    bool needed();
    void append(KeyBytes &key) const;

private:
    void pad();
    void addUnprintable(std::uint32_t code);
    void appendFlags(KeyBytes &key) const;

    static constexpr std::byte noAccent{2};
    std::size_t m_position = 0; // letters so far
    KeyBytes m_accents{};
    std::size_t m_covered = 0; // letters that m_accents speaks of
    std::size_t m_modifierInFront = 0;
    KeyBytes m_unprintable{};
    std::vector<std::uint8_t> m_flags{};
};

void Afterthoughts4::pad()
{
    if (m_covered < m_position) {
        m_accents.insert(m_accents.end(), m_position - m_covered, noAccent);
        m_covered = m_position;
    }
}

void Afterthoughts4::addUnprintable(std::uint32_t code)
{
    const std::size_t offset
        = m_accents.empty() ? m_position : m_accents.size() + (m_position - m_covered) - m_modifierInFront;
    const std::uint32_t place = static_cast<std::uint32_t>(7 + 4 * offset) | 0x8000;
    m_unprintable.insert(m_unprintable.end(), {byteOf(place >> 8), byteOf(place), std::byte{6}, byteOf(code)});
}

void Afterthoughts4::add(const Weight4 &weight)
{
    const TextKind4 &kind = *weight.kind;
    if (kind.what == TextKind4::Unprintable)
        return addUnprintable(weight.value);
    if (kind.what == TextKind4::Modifier) {
        pad();
        if (!m_accents.empty()) {
            m_accents.back() = byteOf(std::to_integer<std::uint32_t>(m_accents.back()) + weight.value);
            return;
        }
        m_accents.push_back(byteOf(weight.value));
        m_modifierInFront = 1;
        return;
    }
    if (kind.extraCount > 0) {
        pad();
        for (std::size_t i = 0; i < kind.extraCount; ++i)
            m_accents.push_back(byteOf(kind.extra[i]));
        m_covered += kind.weight;
    }
    m_position += kind.weight;
    if (kind.flag != 0)
        m_flags.push_back(kind.flag);
}

bool Afterthoughts4::needed()
{
    while (!m_accents.empty() && m_accents.back() <= noAccent)
        m_accents.pop_back();
    return !m_accents.empty() || !m_unprintable.empty() || !m_flags.empty();
}

void Afterthoughts4::appendFlags(KeyBytes &key) const
{
    std::size_t count = m_flags.size();
    while (count > 0 && m_flags[count - 1] == 3)
        --count;
    const auto flag = [&](std::size_t i) { return i < count ? std::uint32_t{m_flags[i]} : 0U; };
    for (std::size_t i = 0; i < count; i += 3)
        key.push_back(byteOf(0x80 | flag(i) << 4 | flag(i + 1) << 2 | flag(i + 2)));
    for (const std::uint32_t end : {0xFFU, 0x02U, 0x80U, 0xFFU, 0x80U})
        key.push_back(byteOf(end));
}

void Afterthoughts4::append(KeyBytes &key) const
{
    constexpr std::byte separator{1};
    key.insert(key.end(), m_accents.begin(), m_accents.end());
    if (m_flags.empty() && m_unprintable.empty())
        return;
    key.insert(key.end(), {separator, separator});
    if (!m_flags.empty()) {
        appendFlags(key);
        if (!m_unprintable.empty())
            key.push_back(std::byte{0xFF});
    }
    if (!m_unprintable.empty()) {
        key.push_back(separator);
        key.insert(key.end(), m_unprintable.begin(), m_unprintable.end());
    }
}

/// Returns the size of `key` where the letters end: what follows says 0 if there is nothing but letters.
std::size_t appendKey4(QStringView text, KeyBytes &key)
{
    Afterthoughts4 rest;
    for (const QChar character : text) {
        const Weight4 weight = weight4(character.unicode());
        if (weight.kind == nullptr)
            continue;
        if (weight.kind->what == TextKind4::Sorting)
            appendLetters(weight, key);
        rest.add(weight);
    }
    key.push_back(std::byte{1});
    const std::size_t lettersEnd = key.size();
    if (rest.needed())
        rest.append(key);
    key.push_back(std::byte{0});
    return lettersEnd;
}

std::size_t appendKey(QStringView text, bool jet4, KeyBytes &key)
{
    return jet4 ? appendKey4(significant(text), key) : appendKey3(significant(text), key);
}

/// The key bytes of the letters that sort as several.
const std::vector<KeyBytes> &expansions(bool jet4)
{
    static const auto collected = [](bool four) {
        std::vector<KeyBytes> all;
        for (const TextWeight3 &weight : textWeights3) {
            if (!four && weight.second != 0)
                all.push_back({byteOf(weight.first), byteOf(weight.second)});
        }
        for (const std::uint64_t run : four ? textRuns4 : std::span<const std::uint64_t>()) {
            const auto first = static_cast<std::uint32_t>(run >> 40);
            for (std::uint32_t i = 0; i < ((run >> 28) & 0xFFF); ++i) {
                const Weight4 weight = findWeight4(static_cast<char16_t>(first + i));
                if (weight.kind->weight > 1)
                    appendLetters(weight, all.emplace_back());
            }
        }
        return all;
    };
    static const std::vector<KeyBytes> known[] = {collected(false), collected(true)};
    return known[jet4 ? 1 : 0];
}

/// The first key byte of an ASCII character that contributes nothing but letters; 0 for all others.
std::array<std::uint8_t, 128> plainWeights(bool jet4)
{
    std::array<std::uint8_t, 128> weights{};
    for (char16_t i = 0; i < weights.size(); ++i) {
        if (!jet4) {
            weights[i] = textWeights3[i].first;
            continue;
        }
        const Weight4 weight = weight4(i);
        if (weight.kind != nullptr && weight.kind->what == TextKind4::Sorting && weight.kind->form == 1)
            weights[i] = static_cast<std::uint8_t>(weight.value);
    }
    return weights;
}

/// The first key byte if the character is one of those; else 0.
int plainWeight(QChar character, bool jet4)
{
    static const std::array<std::uint8_t, 128> weights[] = {plainWeights(false), plainWeights(true)};
    return character.unicode() < weights[0].size() ? weights[jet4 ? 1 : 0][character.unicode()] : 0;
}

/// The order of two significant texts where it shows in plain ASCII characters; nothing if more has to be looked at.
std::optional<int> comparePlain(bool jet4, QStringView left, QStringView right)
{
    const qsizetype common = std::min(left.size(), right.size());
    for (qsizetype i = 0; i < common; ++i) {
        const int first = plainWeight(left[i], jet4);
        const int second = plainWeight(right[i], jet4);
        if (first == 0 || second == 0)
            return std::nullopt;
        if (first != second)
            return first < second ? -1 : 1;
    }
    if (left.size() == right.size())
        return 0;
    const QStringView rest = (left.size() > right.size() ? left : right).sliced(common);
    // Whatever follows must not be one of those that count less than the end of the letters does
    if (plainWeight(rest.front(), jet4) == 0)
        return std::nullopt;
    return left.size() < right.size() ? -1 : 1;
}

} // namespace

void appendTextKey(QStringView text, bool jet4, bool ascending, KeyBytes &key)
{
    const std::size_t start = key.size();
    appendKey(text, jet4, key);
    if (ascending)
        return;
    invertFrom(start, key);
    if (jet4)
        key.push_back(std::byte{0});
}

bool isCertainText(QStringView text, bool jet4)
{
    if (std::ranges::all_of(text, [jet4](QChar character) { return plainWeight(character, jet4) != 0; }))
        return true;
    KeyBytes key;
    const std::size_t lettersEnd = appendKey(text, jet4, key);
    if (key.size() == lettersEnd + 1) // nothing behind them
        return true;
    key.resize(lettersEnd);
    return std::ranges::none_of(expansions(jet4), [&key](const KeyBytes &expansion) {
        return std::search(key.begin(), key.end(), expansion.begin(), expansion.end()) != key.end();
    });
}

void appendTextSpan(QStringView text, bool jet4, bool ascending, KeyBytes &first, KeyBytes &last)
{
    KeyBytes key;
    key.resize(appendKey(text, jet4, key));
    for (KeyBytes *end : {&first, &last}) {
        const std::size_t start = end->size();
        end->insert(end->end(), key.begin(), key.end());
        if (!jet4) // nothing says where the letters end but what follows: 00 to 0F
            end->push_back((end == &first) == ascending ? std::byte{0x00} : std::byte{0x0F});
        if (!ascending)
            invertFrom(start, *end);
    }
}

bool hasExpandingLetter(QStringView text, bool jet4)
{
    return std::any_of(text.begin(), text.end(), [jet4](QChar character) {
        if (jet4) {
            const Weight4 weight = weight4(character.unicode());
            return weight.kind != nullptr && weight.kind->weight > 1;
        }
        const TextWeight3 *weight = weight3(character.unicode());
        return weight != nullptr && weight->second != 0;
    });
}

int compareTexts(bool jet4, QStringView left, QStringView right)
{
    left = significant(left);
    right = significant(right);
    if (const std::optional<int> order = comparePlain(jet4, left, right))
        return *order;
    KeyBytes leftKey;
    KeyBytes rightKey;
    appendTextKey(left, jet4, true, leftKey);
    appendTextKey(right, jet4, true, rightKey);
    return compareKeys(leftKey, rightKey);
}

} // namespace jet
