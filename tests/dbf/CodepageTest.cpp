#include "platform/storage/Codepage.h"
#include "RawTable.h"
#include "platform/storage/FileSystem.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

TEST(Codepage, KnowsTheCharactersThatDifferAndKeepsEveryByte)
{
    QByteArray all;
    for (int i = 0; i < 256; ++i)
        all.append(static_cast<char>(i));
    // clang-format off
    struct Row { const storage::Codepage *codepage; const char *bytes; QString text; };
    const Row rows[] = {
        {&storage::windows1252, "\x80\x9F\xE4\xF6\xFC\xDF", u"€Ÿäöüß"_s},
        {&storage::windows1252, "\x81\x8D\x8F\x90\x9D",     u"\x81\x8D\x8F\x90\x9D"_s},
        {&storage::dos437,      "\x84\x94\x81\xE1\xE3\xFE", u"äöüßπ■"_s},
        {&storage::dos850,      "\x84\x94\x81\xE1\xD5\xFE", u"äöüßı■"_s},
    };
    // clang-format on
    for (const auto &[codepage, bytes, text] : rows) {
        EXPECT_EQ(codepage->decode(storage::bytesOf(bytes)), text);
        EXPECT_EQ(codepage->encode(text), QByteArray(bytes)) << qPrintable(text);
        EXPECT_EQ(codepage->encode(codepage->decode(storage::bytesOf(all))), all) << qPrintable(codepage->name());
    }
}

TEST(Codepage, NamesTheCharacterItLacks)
{
    const std::pair<QString, QString> rows[]
        = {{u"a☃"_s, u"„☃“ (U+2603)"_s}, {u"😀"_s, u"U+1F600"_s}, {QString(QChar(0xD83D)), {}}, {u"\u0080"_s, {}}};
    for (const auto &[text, mention] : rows)
        EXPECT_EQ(kindOf([&] { storage::windows1252.encode(text); }, mention), StorageError::NotEncodable);
}
