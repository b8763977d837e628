// Bytes and their meaning: texts, rows, decimals, properties, the key stream. Expected bytes are the format's, not
// ours.
#include <gtest/gtest.h>

#include "platform/jet/DecimalDigits.h"
#include "platform/jet/FileHeader.h"
#include "platform/jet/PropertyBlob.h"
#include "platform/jet/Rc4.h"
#include "platform/jet/RowBuilder.h"
#include "platform/jet/ValueCodec.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using jet::ColumnDef;
using jet::ColumnType;
using storage::StorageError;
using storage::Value;

namespace {

storage::Bytes view(const QByteArray &bytes)
{
    return std::as_bytes(std::span(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

QByteArray hex(storage::Bytes bytes)
{
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(bytes.size())).toHex(' ');
}

/// A LONG, a compressible TEXT and a BOOL.
jet::TableDef smallTable(bool jet4)
{
    jet::TableDef def;
    def.columnsEver = 3;
    def.variableSlots = 1;
    def.columns.resize(3);
    def.columns[0] = {u"A"_s, ColumnType::Long, 0};
    def.columns[0].flags = ColumnDef::Fixed | ColumnDef::Usual;
    def.columns[0].length = 4;
    def.columns[1] = {u"B"_s, ColumnType::Text, 1};
    def.columns[1].length = jet4 ? 510 : 255;
    def.columns[1].extendedFlags = ColumnDef::CompressedText;
    def.columns[2] = {u"C"_s, ColumnType::Boolean, 2};
    def.columns[2].flags = ColumnDef::Fixed | ColumnDef::Usual;
    def.columns[2].length = 1;
    return def;
}

jet::TextCodec codec(bool jet4)
{
    return jet4 ? jet::TextCodec::jet4() : jet::TextCodec::jet3(1252);
}

} // namespace

TEST(Rc4, GivesTheKeyStreamOfTheHeader)
{
    const QByteArray key = QByteArray::fromHex("C7DA396B");
    std::byte stream[12]{};
    jet::rc4(view(key), stream);
    EXPECT_EQ(hex(stream), "b5 6f 03 62 61 08 c2 55 eb a9 67 72");
}

TEST(FileHeader, KeepsThePasswordAndHasTheConstantsOfBothVersions)
{
    for (const bool jet4 : {false, true}) {
        jet::FileHeader header;
        header.jet4 = jet4;
        header.password = u"Größe 12"_s;
        header.created = 38142.53;
        header.pageKey = 77;
        const jet::Page page = header.toPage();
        const jet::FileHeader read = jet::FileHeader::parse(page);
        EXPECT_EQ(page.size(), jet4 ? 4096U : 2048U);
        EXPECT_EQ(read.password, header.password);
        EXPECT_EQ(read.pageKey, 77U);
        EXPECT_EQ(read.codePage, 1252);
        EXPECT_EQ(read.sortLcid, 0x0409);
        header.password = u"einundzwanzig Zeichen"_s;
        EXPECT_THROW(header.toPage(), StorageError);
    }
}

TEST(Rows, StandAsTheFormatHasThem)
{
    struct Row {
        bool jet4;
        const char *bytes;
    };
    const Row rows[] = {
        {true, "03 00 07 00 00 00 ff fe 61 62 63 0b 00 06 00 01 00 07"},
        {false, "03 07 00 00 00 61 62 63 08 05 01 07"},
    };
    for (const Row &row : rows) {
        const jet::TableDef def = smallTable(row.jet4);
        jet::RowBuilder builder(def, row.jet4);
        builder.setField(def.columns[0], jet::encodeValue(def.columns[0], std::int64_t{7}, codec(row.jet4)));
        builder.setField(def.columns[1], jet::encodeValue(def.columns[1], u"abc"_s, codec(row.jet4)));
        builder.setBoolean(def.columns[2], true);
        const auto bytes = builder.build();
        EXPECT_EQ(hex(bytes), row.bytes);
        const jet::RowView read(bytes, {9, 1}, def, row.jet4);
        EXPECT_EQ(jet::decodeValue(def.columns[1], *read.field(def.columns[1]), codec(row.jet4)), Value(u"abc"_s));
        EXPECT_TRUE(read.boolean(def.columns[2]));
    }
}

TEST(Rows, OfEveryLengthFindTheirFieldsAgain)
{
    for (const bool jet4 : {false, true}) {
        jet::TableDef def;
        def.columnsEver = def.variableSlots = 12;
        for (std::uint16_t i = 0; i < 12; ++i) {
            def.columns.push_back({u"C%1"_s.arg(i), ColumnType::Binary, i, i});
            def.columns.back().length = 255;
        }
        for (qsizetype size = 0; size <= 160; ++size) {
            jet::RowBuilder builder(def, jet4);
            for (const ColumnDef &column : def.columns) {
                if (column.number % 5 != 3)
                    builder.setField(column, QByteArray(size * (column.number % 3), static_cast<char>(column.number)));
            }
            const auto bytes = builder.build();
            const jet::RowView read(bytes, {}, def, jet4);
            for (const ColumnDef &column : def.columns) {
                const auto field = read.field(column);
                ASSERT_EQ(field.has_value(), column.number % 5 != 3);
                if (field) {
                    ASSERT_EQ(hex(*field),
                              QByteArray(size * (column.number % 3), static_cast<char>(column.number)).toHex(' '));
                }
            }
        }
    }
}

TEST(Rows, ThatContradictThemselvesAreDamage)
{
    struct Row {
        const char *name;
        bool jet4;
        const char *bytes;
    };
    const Row rows[] = {
        {"empty", true, ""},
        {"more columns than the table", true, "04 00 07 00 00 00 06 00 06 00 01 00 01"},
        {"more slots than the table", true, "03 00 07 00 00 00 06 00 06 00 02 00 01"},
        {"field behind the offsets", true, "03 00 07 00 00 00 61 00 30 00 06 00 01 00 03"},
        {"field before the row", true, "03 00 07 00 00 00 61 00 08 00 00 00 01 00 03"},
        {"cut off", false, "03 07 00 00 00 08"},
        {"gap before the offsets", false, "03 07 00 00 00 61 62 63 07 05 01 07"},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const QByteArray bytes = QByteArray::fromHex(row.bytes);
        EXPECT_THROW(jet::RowView(view(bytes), {}, smallTable(row.jet4), row.jet4), StorageError);
    }
}

TEST(Texts, AreCompressedAndExpanded)
{
    const jet::TextCodec jet4 = codec(true);
    EXPECT_EQ(jet4.encodeCompressed(u"abc").toHex(), "fffe616263");
    EXPECT_EQ(jet4.encodeCompressed(u"ab").toHex(), "61006200");
    EXPECT_EQ(jet4.encodeCompressed(u"abc\u20AC").toHex(), "610062006300ac20");
    EXPECT_EQ(jet4.decode(view(QByteArray::fromHex("fffe616200632000e4"))), u"ab\u2063ä"_s);
    EXPECT_EQ(codec(false).encode(u"€ß").toHex(), "80df");
    EXPECT_THROW(jet4.decode(view(QByteArray::fromHex("610062"))), StorageError);
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
        Kind error = Kind::InputOutput;
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
        ColumnDef column{u"Spalte"_s, row.type};
        column.length = 10 * 2;
        column.precision = 5;
        column.scale = 2;
        SCOPED_TRACE(static_cast<int>(row.type));
        try {
            EXPECT_EQ(jet::fitValue(column, row.given, codec(true)), row.fitted);
        } catch (const StorageError &error) {
            EXPECT_FALSE(row.fitted);
            EXPECT_EQ(error.kind(), row.error);
            EXPECT_EQ(error.item(), u"Spalte"_s);
        }
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

TEST(Properties, SurviveTheWayThroughTheFile)
{
    for (const bool jet4 : {false, true}) {
        const jet::TextCodec text = codec(jet4);
        const std::vector<jet::PropertyBlock> blocks
            = {{jet::PropertyBlock::OfColumn,
                u"Größe"_s,
                {jet::Property::truth(u"Required"_s, true),
                 jet::Property::text(u"DefaultValue"_s, jet::Property::Memo, u"\"ä\""_s, text)}},
               {jet::PropertyBlock::OfTable, {}, {jet::Property::truth(u"Required"_s, false)}}};
        const QByteArray blob = jet::writeProperties(blocks, text);
        const auto read = jet::parseProperties(view(blob), text);
        ASSERT_EQ(read.size(), 2U);
        EXPECT_EQ(read[0].owner, u"Größe"_s);
        EXPECT_TRUE(read[0].find(u"required")->toBool());
        EXPECT_EQ(read[0].find(u"DefaultValue")->toText(text), u"\"ä\""_s);
        EXPECT_EQ(read[1].kind, jet::PropertyBlock::OfTable);
        for (qsizetype size = 0; size < blob.size(); ++size)
            EXPECT_THROW(jet::parseProperties(view(blob.first(size)), text).at(1), std::exception) << size;
    }
}
