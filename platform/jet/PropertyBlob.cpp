// Properties: defaults, rules and the like, in one long value of the catalog.
//
//   "KKD" (Jet 3) or "MR2" (Jet 4), 0; then blocks: length 4 (of the block), kind 2
//   kind 0x80  names: length 2, name
//   kind 0, 1  length 4 of the owner's name with this field, length 2, owner's name; then values:
//              length 2 (of the value), ddl 1, type 1, number of the name 2, length 2, data
#include "platform/jet/PropertyBlob.h"

#include <cstring>

#include <QStringList>

#include "platform/jet/Damage.h"

using namespace Qt::StringLiterals;
using storage::Bytes;
using storage::part;
using storage::readLE;

namespace jet {

namespace {

constexpr std::uint16_t namesKind = 0x80;
constexpr std::size_t blockHeader = 6;
constexpr std::size_t valueHeader = 8;

const char *magicOf(const TextCodec &codec)
{
    return codec.isJet4() ? "MR2" : "KKD"; // with the zero byte behind
}

QStringList parseNames(Bytes block, const TextCodec &codec)
{
    QStringList names;
    for (std::size_t at = 0; at < block.size();) {
        const std::size_t length = readLE<std::uint16_t>(block, at);
        names += codec.decodeName(part(block, at + 2, length));
        at += 2 + length;
    }
    return names;
}

PropertyBlock parseBlock(std::uint16_t kind, Bytes block, const QStringList &names, const TextCodec &codec)
{
    PropertyBlock parsed{kind, codec.decodeName(part(block, 6, readLE<std::uint16_t>(block, 4)))};
    for (std::size_t at = readLE<std::uint32_t>(block, 0); at < block.size();) {
        const std::size_t length = readLE<std::uint16_t>(block, at);
        const auto name = readLE<std::uint16_t>(block, at + 4);
        const std::size_t size = readLE<std::uint16_t>(block, at + 6);
        if (length < valueHeader || name >= names.size())
            damaged(u"Die Eigenschaften von %1 sind keine Liste"_s.arg(parsed.owner));
        const Bytes data = part(block, at + valueHeader, size);
        parsed.properties.push_back(
            {names.at(name), readLE<std::uint8_t>(block, at + 2), readLE<std::uint8_t>(block, at + 3),
             QByteArray(reinterpret_cast<const char *>(data.data()), static_cast<qsizetype>(data.size()))});
        at += length;
    }
    return parsed;
}

template <typename T> void append(QByteArray &bytes, T number)
{
    for (std::size_t i = 0; i < sizeof(T); ++i)
        bytes += static_cast<char>(number >> (8 * i) & 0xFF);
}

void appendBlock(QByteArray &blob, std::uint16_t kind, const QByteArray &content)
{
    append(blob, static_cast<std::uint32_t>(blockHeader + static_cast<std::size_t>(content.size())));
    append(blob, kind);
    blob += content;
}

void appendName(QByteArray &bytes, const QByteArray &name)
{
    append(bytes, static_cast<std::uint16_t>(name.size()));
    bytes += name;
}

QStringList namesIn(const std::vector<PropertyBlock> &blocks)
{
    QStringList names;
    for (const PropertyBlock &block : blocks) {
        for (const Property &property : block.properties) {
            if (!names.contains(property.name))
                names += property.name;
        }
    }
    return names;
}

} // namespace

Property Property::truth(const QString &name, bool value)
{
    return {name, 1, Boolean, QByteArray(1, value ? '\1' : '\0')};
}

Property Property::text(const QString &name, Type type, const QString &value, const TextCodec &codec)
{
    return {name, 1, type, codec.encode(value)};
}

QString Property::toText(const TextCodec &codec) const
{
    return codec.decodeName(std::as_bytes(std::span(data.constData(), static_cast<std::size_t>(data.size()))));
}

const Property *PropertyBlock::find(QStringView name) const
{
    for (const Property &property : properties) {
        if (property.name.compare(name, Qt::CaseInsensitive) == 0)
            return &property;
    }
    return nullptr;
}

std::vector<PropertyBlock> parseProperties(Bytes blob, const TextCodec &codec)
{
    constexpr std::size_t magicSize = 4;
    if (blob.size() < magicSize || std::memcmp(blob.data(), magicOf(codec), magicSize) != 0)
        damaged(u"Die Eigenschaften beginnen nicht mit %1"_s.arg(QLatin1StringView(magicOf(codec))));
    QStringList names;
    std::vector<PropertyBlock> blocks;
    for (std::size_t at = magicSize; at < blob.size();) {
        const std::size_t length = readLE<std::uint32_t>(blob, at);
        const auto kind = readLE<std::uint16_t>(blob, at + 4);
        if (length < blockHeader)
            damaged(u"Die Eigenschaften haben einen Abschnitt von %1 Bytes"_s.arg(length));
        const Bytes content = part(blob, at + blockHeader, length - blockHeader);
        if (kind == namesKind)
            names = parseNames(content, codec);
        else
            blocks.push_back(parseBlock(kind, content, names, codec));
        at += length;
    }
    return blocks;
}

QByteArray writeProperties(const std::vector<PropertyBlock> &blocks, const TextCodec &codec)
{
    const QStringList names = namesIn(blocks);
    QByteArray blob(magicOf(codec), 4);
    QByteArray nameList;
    for (const QString &name : names)
        appendName(nameList, codec.encode(name));
    appendBlock(blob, namesKind, nameList);
    for (const PropertyBlock &block : blocks) {
        const QByteArray owner = codec.encode(block.owner);
        QByteArray content;
        append(content, static_cast<std::uint32_t>(6 + owner.size()));
        appendName(content, owner);
        for (const Property &property : block.properties) {
            append(content, static_cast<std::uint16_t>(valueHeader + static_cast<std::size_t>(property.data.size())));
            append(content, property.ddl);
            append(content, property.type);
            append(content, static_cast<std::uint16_t>(names.indexOf(property.name)));
            appendName(content, property.data);
        }
        appendBlock(blob, block.kind, content);
    }
    return blob;
}

} // namespace jet
