// Turns the values of a row into the bytes by which an index orders it.
#include "platform/jet/IndexKey.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <optional>
#include <type_traits>

#include <QUuid>

#include "platform/jet/Damage.h"
#include "platform/jet/DecimalDigits.h"
#include "platform/jet/TableSchema.h"
#include "platform/jet/TextKey.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::StorageError;
using storage::Value;

namespace jet {

namespace {

constexpr std::byte nullAscending{0x00};
constexpr std::byte nullDescending{0xFF};
constexpr std::byte startAscending{0x7F};
constexpr std::byte startDescending{0x80};
constexpr std::size_t groupSize = 8;
constexpr std::byte groupGoesOn{9};

template <typename T> const T &as(const Value &value)
{
    if (const T *held = std::get_if<T>(&value))
        return *held;
    throw StorageError(StorageError::WrongType, u"Der Wert hat nicht den Typ der Indexspalte"_s);
}

template <std::unsigned_integral T> void appendBigEndian(T number, KeyBytes &key)
{
    for (std::size_t i = sizeof(T); i-- > 0;)
        key.push_back(static_cast<std::byte>((number >> (8 * i)) & 0xFF));
}

/// A signed number with its top bit flipped, so that it sorts as an unsigned one.
template <std::unsigned_integral T> void appendSigned(std::int64_t number, KeyBytes &key)
{
    using Signed = std::make_signed_t<T>;
    if (number < std::numeric_limits<Signed>::min() || number > std::numeric_limits<Signed>::max())
        throw StorageError(StorageError::OutOfRange, u"Die Zahl %1 ist zu groß für die Indexspalte"_s.arg(number));
    constexpr T topBit = T{1} << (8 * sizeof(T) - 1);
    appendBigEndian<T>(static_cast<T>(static_cast<T>(number) ^ topBit), key);
}

template <typename Float> void appendFloat(Float number, KeyBytes &key)
{
    using Bits = std::conditional_t<sizeof(Float) == 4, std::uint32_t, std::uint64_t>;
    constexpr Bits topBit = Bits{1} << (8 * sizeof(Bits) - 1);
    const Bits bits = std::bit_cast<Bits>(number);
    appendBigEndian<Bits>((bits & topBit) != 0 ? ~bits : bits ^ topBit, key);
}

/// Groups of eight bytes, each with a count behind it. Descending, the counts in the middle stay as they are.
void appendBinary(storage::Bytes bytes, bool ascending, KeyBytes &key)
{
    for (std::size_t at = 0; at < bytes.size(); at += groupSize) {
        const std::size_t start = key.size();
        const std::size_t size = std::min(groupSize, bytes.size() - at);
        const bool last = at + groupSize >= bytes.size();
        const storage::Bytes group = bytes.subspan(at, size);
        key.insert(key.end(), group.begin(), group.end());
        key.resize(start + groupSize);
        if (last)
            key.push_back(static_cast<std::byte>(size));
        if (!ascending)
            invertFrom(start, key);
        if (!last)
            key.push_back(groupGoesOn);
    }
}

void appendGuid(const QString &text, bool ascending, KeyBytes &key)
{
    const QUuid guid = QUuid::fromString(text);
    if (guid.isNull() && text != QUuid().toString())
        throw StorageError(StorageError::WrongType, u"„%1“ ist keine GUID"_s.arg(text));
    const QByteArray printed = guid.toRfc4122();
    appendBinary(std::as_bytes(std::span(printed)), ascending, key);
}

/// The sign byte is the same in both directions, so that a descending index sorts negative numbers first: Jet's way.
void appendNumeric(const QString &text, int scale, bool ascending, KeyBytes &key)
{
    const std::optional<DecimalDigits> digits = DecimalDigits::parse(text, scale);
    if (!digits)
        throw StorageError(StorageError::WrongType, u"„%1“ ist keine Dezimalzahl"_s.arg(text));
    const std::optional<DecimalDigits::Magnitude> magnitude = digits->magnitude();
    if (!magnitude)
        throw StorageError(StorageError::OutOfRange, u"Die Zahl %1 ist zu groß für die Indexspalte"_s.arg(text));
    key.push_back(digits->negative ? std::byte{0x00} : std::byte{0xFF});
    const std::size_t start = key.size();
    for (const std::uint32_t part : *magnitude)
        appendBigEndian(part, key);
    if (digits->negative == ascending)
        invertFrom(start, key);
}

/// Types whose descending key is the complement of the ascending one.
void appendPlain(ColumnType type, const Value &value, KeyBytes &key)
{
    switch (type) {
    case ColumnType::Boolean:
        return key.push_back(as<bool>(value) ? std::byte{0x00} : std::byte{0xFF});
    case ColumnType::Byte: {
        const std::int64_t number = as<std::int64_t>(value);
        if (number < 0 || number > 0xFF)
            throw StorageError(StorageError::OutOfRange, u"Die Zahl %1 passt nicht in ein Byte"_s.arg(number));
        return key.push_back(static_cast<std::byte>(number));
    }
    case ColumnType::Integer:
        return appendSigned<std::uint16_t>(as<std::int64_t>(value), key);
    case ColumnType::Long:
        return appendSigned<std::uint32_t>(as<std::int64_t>(value), key);
    case ColumnType::Currency:
        return appendSigned<std::uint64_t>(as<storage::Currency>(value).tenThousandths, key);
    case ColumnType::Single:
        return appendFloat(static_cast<float>(as<double>(value)), key);
    case ColumnType::Double:
        return appendFloat(as<double>(value), key);
    case ColumnType::DateTime:
        return appendFloat(as<storage::DateTime>(value).days, key);
    default:
        throw StorageError(StorageError::Unsupported, u"Spalten dieses Typs können nicht in einen Index"_s);
    }
}

} // namespace

int compareKeys(storage::Bytes left, storage::Bytes right)
{
    const std::size_t common = std::min(left.size(), right.size());
    const int order = common == 0 ? 0 : std::memcmp(left.data(), right.data(), common);
    if (order != 0 || left.size() == right.size())
        return order;
    return left.size() < right.size() ? -1 : 1;
}

int compareWithStart(storage::Bytes key, storage::Bytes start)
{
    return compareKeys(key.first(std::min(key.size(), start.size())), start);
}

bool KeySpan::contains(storage::Bytes key) const
{
    return compareWithStart(key, first) >= 0 && compareWithStart(key, last) <= 0;
}

void invertFrom(std::size_t start, KeyBytes &key)
{
    for (std::size_t i = start; i < key.size(); ++i)
        key[i] = ~key[i];
}

KeySupport keySupport(const TableDef &table, const IndexDef &index, bool jet4, std::uint16_t codePage)
{
    constexpr std::uint16_t western = 1252;
    KeySupport support = KeySupport::Full;
    for (const IndexColumnDef &part : index.columns) {
        const ColumnDef *column = table.column(part.column);
        if (column == nullptr)
            return KeySupport::None;
        switch (column->type) {
        case ColumnType::LongBinary:
        case ColumnType::FixedBinary:
            return KeySupport::None;
        case ColumnType::Text:
        case ColumnType::Memo:
            if (!hasKnownOrder(*column, jet4) || (!jet4 && codePage != western))
                return KeySupport::None;
            if (column->type == ColumnType::Memo) // its key ends before the text does
                support = KeySupport::KeptOnly;
            break;
        case ColumnType::Binary: // the key of an empty value has no end
            support = KeySupport::KeptOnly;
            break;
        case ColumnType::Numeric:
            if (!part.ascending)
                support = KeySupport::KeptOnly;
            break;
        default:
            break;
        }
    }
    return support;
}

IndexKeyMaker::IndexKeyMaker(const TableDef &table, const IndexDef &index, bool jet4)
    : m_jet4(jet4)
{
    for (const IndexColumnDef &part : index.columns) {
        const ColumnDef *column = table.column(part.column);
        if (column == nullptr)
            damaged(table.page, u"ein Index nennt die Spalte Nr. %1, die es nicht gibt"_s.arg(part.column));
        m_columns.push_back({column->type, part.ascending, column->scale});
    }
}

KeyBytes IndexKeyMaker::make(std::span<const Value> values) const
{
    Q_ASSERT(values.size() <= m_columns.size());
    KeyBytes key;
    for (std::size_t i = 0; i < values.size(); ++i)
        append(m_columns[i], values[i], key);
    return key;
}

bool IndexKeyMaker::isCertain(std::span<const Value> values) const
{
    for (std::size_t i = 0; i < values.size(); ++i) {
        const auto *text = m_columns[i].isText() ? std::get_if<QString>(&values[i]) : nullptr;
        if (text != nullptr && !isCertainText(*text, m_jet4))
            return false;
    }
    return true;
}

KeySpan IndexKeyMaker::span(std::span<const Value> values) const
{
    Q_ASSERT(values.size() <= m_columns.size());
    KeyBytes key;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const Part &part = m_columns[i];
        const auto *text = part.isText() ? std::get_if<QString>(&values[i]) : nullptr;
        if (text == nullptr || isCertainText(*text, m_jet4)) {
            append(part, values[i], key);
            continue;
        }
        key.push_back(part.ascending ? startAscending : startDescending);
        KeySpan span{key, key};
        appendTextSpan(*text, m_jet4, part.ascending, span.first, span.last);
        return span;
    }
    return {key, key};
}

bool IndexKeyMaker::isOthersKey(std::span<const Value> values, storage::Bytes key) const
{
    return span(values).contains(key) && std::ranges::any_of(values, [this](const Value &value) {
               const auto *text = std::get_if<QString>(&value);
               return text != nullptr && hasExpandingLetter(*text, m_jet4);
           });
}

void IndexKeyMaker::append(const Part &part, const Value &value, KeyBytes &key) const
{
    if (storage::isNull(value)) {
        key.push_back(part.ascending ? nullAscending : nullDescending);
        return;
    }
    key.push_back(part.ascending ? startAscending : startDescending);
    const std::size_t start = key.size();
    switch (part.type) {
    case ColumnType::Text:
    case ColumnType::Memo:
        return appendTextKey(as<QString>(value), m_jet4, part.ascending, key);
    case ColumnType::Binary:
        return appendBinary(std::as_bytes(std::span(as<QByteArray>(value))), part.ascending, key);
    case ColumnType::Guid:
        return appendGuid(as<QString>(value), part.ascending, key);
    case ColumnType::Numeric:
        return appendNumeric(as<storage::Decimal>(value).text, part.scale, part.ascending, key);
    default:
        appendPlain(part.type, value, key);
        if (!part.ascending)
            invertFrom(start, key);
    }
}

} // namespace jet
