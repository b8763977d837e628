#include "platform/storage/Codepage.h"
#include "RawTable.h"
#include "platform/storage/FileSystem.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

TEST(Codepage, KnowsTheCharactersThatDiffer)
{
    // clang-format off
    struct Row { const storage::Codepage *codepage; const char *bytes; const char16_t *text; };
    const Row rows[] = {
        {&storage::windows1252, "\x80\x9F\xE4\xF6\xFC\xDF", u"€Ÿäöüß"},
        {&storage::windows1252, "\x81\x8D\x8F\x90\x9D",     u"\x81\x8D\x8F\x90\x9D"},
        {&storage::dos437,      "\x84\x94\x81\xE1\xE3\xFE", u"äöüßπ■"},
        {&storage::dos850,      "\x84\x94\x81\xE1\xD5\xFE", u"äöüßı■"},
    };
    // clang-format on
    for (const Row &row : rows) {
        const QString text = QString::fromUtf16(row.text);
        SCOPED_TRACE(text.toStdString());
        EXPECT_EQ(row.codepage->decode(storage::bytesOf(row.bytes)), text);
        EXPECT_EQ(row.codepage->encode(text), QByteArray(row.bytes));
    }
}

TEST(Codepage, KeepsEveryByte)
{
    QByteArray all;
    for (int i = 0; i < 256; ++i)
        all.append(static_cast<char>(i));
    for (const auto *codepage : {&storage::windows1252, &storage::dos437, &storage::dos850})
        EXPECT_EQ(codepage->encode(codepage->decode(storage::bytesOf(all))), all) << codepage->name().toStdString();
}

TEST(Codepage, NamesTheCharacterItLacks)
{
    struct Row {
        QString text;
        QString mention;
    };
    const Row rows[]
        = {{u"a☃"_s, u"„☃“ (U+2603)"_s}, {u"😀"_s, u"U+1F600"_s}, {QString(QChar(0xD83D)), {}}, {u"\u0080"_s, {}}};
    for (const Row &row : rows)
        EXPECT_EQ(kindOf([&] { storage::windows1252.encode(row.text); }, row.mention), StorageError::NotEncodable);
}
