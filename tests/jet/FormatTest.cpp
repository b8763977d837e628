// Bytes and their meaning: texts, rows, decimals, properties, the key stream. Expected bytes are the format's, not
// ours.
#include "platform/jet/DecimalDigits.h"
#include "platform/jet/FileHeader.h"
#include "platform/jet/PropertyBlob.h"
#include "platform/jet/Rc4.h"
#include "platform/jet/RowBuilder.h"
#include "platform/jet/ValueCodec.h"
#include "platform/storage/FileSystem.h"
#include "tests/jet/JetFileTest.h"

using namespace Qt::StringLiterals;
using jet::ColumnDef;
using jet::ColumnType;
using storage::bytesOf;
using storage::StorageError;
using storage::Value;

namespace {

/// A LONG, a compressible TEXT and a BOOL.
jet::TableDef smallTable(bool jet4)
{
    jet::TableDef def{.columnsEver = 3, .variableSlots = 1};
    constexpr std::uint8_t fixed = ColumnDef::Fixed | ColumnDef::Usual;
    def.columns = {{.name = u"A"_s, .type = ColumnType::Long, .number = 0, .flags = fixed, .length = 4},
                   {.name = u"B"_s,
                    .type = ColumnType::Text,
                    .number = 1,
                    .extendedFlags = ColumnDef::CompressedText,
                    .length = static_cast<std::uint16_t>(jet4 ? 510 : 255)},
                   {.name = u"C"_s, .type = ColumnType::Boolean, .number = 2, .flags = fixed, .length = 1}};
    return def;
}

jet::TextCodec codec(bool jet4)
{
    return jet4 ? jet::TextCodec::jet4() : jet::TextCodec::jet3(1252);
}

} // namespace

TEST(Rc4, GivesTheKeyStreamOfTheHeader)
{
    std::byte stream[12]{};
    jet::rc4(bytesOf(QByteArray::fromHex("C7DA396B")), stream);
    EXPECT_EQ(hex(stream), "b5 6f 03 62 61 08 c2 55 eb a9 67 72");
}

TEST(FileHeader, IsReadAsItWasWritten)
{
    for (const bool jet4 : {false, true}) {
        const jet::FileHeader header{.jet4 = jet4, .pageKey = 77, .password = u"Größe 12"_s, .created = 38142.53};
        const jet::FileHeader read = jet::FileHeader::parse(header.toPage());
        EXPECT_EQ(std::tie(read.password, read.pageKey, read.codePage, read.sortLcid),
                  std::tie(header.password, header.pageKey, header.codePage, header.sortLcid));
    }
}

TEST(Rows, StandAsTheFormatHasThem)
{
    const std::pair<bool, const char *> rows[] = {
        {true, "03 00 07 00 00 00 ff fe 61 62 63 0b 00 06 00 01 00 07"},
        {false, "03 07 00 00 00 61 62 63 08 05 01 07"},
    };
    for (const auto &[jet4, expected] : rows) {
        const jet::TableDef def = smallTable(jet4);
        jet::RowBuilder builder(def, jet4);
        builder.setField(def.columns[0], jet::encodeValue(def.columns[0], std::int64_t{7}, codec(jet4)));
        builder.setField(def.columns[1], jet::encodeValue(def.columns[1], u"abc"_s, codec(jet4)));
        builder.setBoolean(def.columns[2], true);
        const auto bytes = builder.build();
        EXPECT_EQ(hex(bytes), expected);
        const jet::RowView read(bytes, {9, 1}, def, jet4);
        EXPECT_EQ(jet::decodeValue(def.columns[1], *read.field(def.columns[1]), codec(jet4)), Value(u"abc"_s));
        EXPECT_TRUE(read.boolean(def.columns[2]));
    }
}

TEST(Rows, OfEveryLengthFindTheirFieldsAgain)
{
    jet::TableDef def{.columnsEver = 12, .variableSlots = 12};
    for (std::uint16_t i = 0; i < 12; ++i)
        def.columns.push_back({.name = {}, .type = ColumnType::Binary, .number = i, .slot = i, .length = 255});
    const auto contentOf = [](const ColumnDef &column, qsizetype size) -> std::optional<QByteArray> {
        if (column.number % 5 == 3)
            return std::nullopt;
        return QByteArray(size * (column.number % 3), static_cast<char>(column.number));
    };
    for (const bool jet4 : {false, true}) {
        for (qsizetype size = 0; size <= 160; ++size) {
            jet::RowBuilder builder(def, jet4);
            for (const ColumnDef &column : def.columns)
                builder.setField(column, contentOf(column, size));
            const auto bytes = builder.build();
            const jet::RowView read(bytes, {}, def, jet4);
            for (const ColumnDef &column : def.columns) {
                const auto field = read.field(column);
                const auto expected = contentOf(column, size);
                ASSERT_EQ(field.has_value(), expected.has_value());
                ASSERT_EQ(hex(field.value_or(storage::Bytes())), expected.value_or(QByteArray()).toHex(' '));
            }
        }
    }
}

TEST(Rows, ThatContradictThemselvesAreDamage)
{
    // clang-format off
    struct Row { const char *name; bool jet4; const char *bytes; };
    const Row rows[] = {
        {"empty", true, ""},
        {"more columns than the table", true, "04 00 07 00 00 00 06 00 06 00 01 00 01"},
        {"more slots than the table", true, "03 00 07 00 00 00 06 00 06 00 02 00 01"},
        {"field behind the offsets", true, "03 00 07 00 00 00 61 00 30 00 06 00 01 00 03"},
        {"field before the row", true, "03 00 07 00 00 00 61 00 08 00 00 00 01 00 03"},
        {"cut off", false, "03 07 00 00 00 08"},
        {"gap before the offsets", false, "03 07 00 00 00 61 62 63 07 05 01 07"},
    };
    // clang-format on
    for (const Row &row : rows) {
        const QByteArray bytes = QByteArray::fromHex(row.bytes);
        EXPECT_THROW(jet::RowView(bytesOf(bytes), {}, smallTable(row.jet4), row.jet4), StorageError) << row.name;
    }
}

TEST(Texts, AreCompressedAndExpanded)
{
    const jet::TextCodec jet4 = codec(true);
    EXPECT_EQ(jet4.encodeCompressed(u"abc").toHex(), "fffe616263");
    EXPECT_EQ(jet4.encodeCompressed(u"ab").toHex(), "61006200");
    EXPECT_EQ(jet4.encodeCompressed(u"abc\u20AC").toHex(), "610062006300ac20");
    EXPECT_EQ(jet4.decode(bytesOf(QByteArray::fromHex("fffe616200632000e4"))), u"ab\u2063ä"_s);
    EXPECT_EQ(codec(false).encode(u"€ß").toHex(), "80df");
    EXPECT_THROW(jet4.decode(bytesOf(QByteArray::fromHex("610062"))), StorageError);
    EXPECT_THROW(jet4.encode(u"\uFEFFx"), StorageError);
    EXPECT_THROW(codec(false).encode(u"\u0416"), StorageError);
    EXPECT_THROW(jet::TextCodec::jet3(932), StorageError);
}

TEST(Values, AreBroughtIntoTheColumnsForm)
{
    using Kind = StorageError::Kind;
    struct Row {
        ColumnType type;
        Value given;
        std::optional<Value> fitted;
        std::optional<Kind> error{};
    };
    const Row rows[] = {
        {ColumnType::Byte, 255.4, std::int64_t{255}},
        {ColumnType::Byte, std::int64_t{256}, std::nullopt, Kind::OutOfRange},
        {ColumnType::Integer, 2.5, std::int64_t{2}},
        {ColumnType::Integer, 3.5, std::int64_t{4}},
        {ColumnType::Long, true, std::int64_t{-1}},
        {ColumnType::Long, u"7"_s, std::nullopt, Kind::WrongType},
        {ColumnType::Currency, 1.00005, storage::Currency{10000}},
        {ColumnType::Currency, storage::Decimal{u"-0.00015"_s}, storage::Currency{-2}},
        {ColumnType::Currency, 1e15, std::nullopt, Kind::OutOfRange},
        {ColumnType::Single, 1e39, std::nullopt, Kind::OutOfRange},
        {ColumnType::DateTime, storage::DateTime{2958466.0}, std::nullopt, Kind::OutOfRange},
        {ColumnType::Boolean, Value(), false},
        {ColumnType::Boolean, std::int64_t{2}, true},
        {ColumnType::Guid, u"kein Guid"_s, std::nullopt, Kind::WrongType},
        {ColumnType::Text, u"elf Zeichen"_s, std::nullopt, Kind::TooLong},
        {ColumnType::Memo, QString(0x20000000, Qt::Uninitialized), std::nullopt, Kind::TooLong},
        {ColumnType::LongBinary, QByteArray(0x40000000, Qt::Uninitialized), std::nullopt, Kind::TooLong},
        {ColumnType::Numeric, std::int64_t{-12}, storage::Decimal{u"-12.00"_s}},
        {ColumnType::Numeric, 12345.0, std::nullopt, Kind::OutOfRange},
    };
    for (const Row &row : rows) {
        const ColumnDef column{.name = u"Spalte"_s, .type = row.type, .precision = 5, .scale = 2, .length = 10 * 2};
        SCOPED_TRACE(static_cast<int>(row.type));
        QString item = u"Spalte"_s;
        EXPECT_EQ(kindOf([&] { EXPECT_EQ(jet::fitValue(column, row.given, codec(true)), row.fitted); }, &item),
                  row.error);
        EXPECT_EQ(item, u"Spalte"_s);
    }
}

TEST(Decimals, KeepAllTheirDigits)
{
    struct Row {
        const char16_t *text;
        int scale;
        const char16_t *kept;
    };
    const Row rows[] = {
        {u"-12.5", 4, u"-12.5000"},
        {u"0.00005", 4, u"0.0000"},
        {u"0.00015", 4, u"0.0002"},
        {u"9999.99995", 4, u"10000.0000"},
        {u"-0.00001", 4, u"0.0000"},
        {u"340282366920938463463374607431768211455", 0, u"340282366920938463463374607431768211455"},
    };
    for (const Row &row : rows) {
        const auto digits = jet::DecimalDigits::parse(row.text, row.scale);
        ASSERT_TRUE(digits);
        EXPECT_EQ(digits->toText(row.scale), QStringView(row.kept));
        EXPECT_EQ(jet::DecimalDigits::fromMagnitude(digits->negative, *digits->magnitude()).toText(row.scale),
                  QStringView(row.kept));
    }
    EXPECT_FALSE(jet::DecimalDigits::parse(u"1e5", 0));
    EXPECT_FALSE(jet::DecimalDigits::parse(u"", 0));
    EXPECT_FALSE(jet::DecimalDigits::parse(u"340282366920938463463374607431768211456", 0)->magnitude());
}

TEST(Properties, AreFoundInWholeListsOnly)
{
    for (const bool jet4 : {false, true}) {
        const jet::Property required = jet::Property::truth(u"Required"_s, true);
        const QByteArray blob = jet::writeProperties(
            {{jet::PropertyBlock::OfColumn, u"Größe"_s, {required}}, {jet::PropertyBlock::OfTable}}, codec(jet4));
        const auto read = jet::parseProperties(bytesOf(blob), codec(jet4));
        EXPECT_TRUE(read.at(0).find(u"required")->toBool());
        EXPECT_EQ(read.at(1).kind, jet::PropertyBlock::OfTable);
        for (qsizetype size = 0; size < blob.size(); ++size)
            EXPECT_THROW(jet::parseProperties(bytesOf(blob.first(size)), codec(jet4)).at(1), std::exception) << size;
    }
}
