// Memo files:
//
//   .fpt (FoxPro, big-endian)   head: 0 4 next free block, 6 2 block size; 512 bytes in all
//                               memo: 0 4 kind (0 picture, 1 text, 2 object), 4 4 length, then the content
//   .dbt (dBASE III)            blocks of 512 bytes; a memo ends with 0x1A
//   .dbt (dBASE IV)             head: 20 2 block size, little-endian
//                               memo: 0 4 FF FF 08 00, 4 4 length with these 8 bytes, little-endian
#include "platform/dbf/MemoFile.h"

#include <QtEndian>

#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace dbf {

namespace {

constexpr qint64 headSize = 512;
constexpr qint64 entryHeadSize = 8;
constexpr qint64 newBlockSize = 64; // FoxPro's own default
constexpr quint32 textKind = 1;

quint32 bigEndian32(const QByteArray &bytes, qsizetype offset)
{
    return qFromBigEndian<quint32>(bytes.constData() + offset);
}

QByteArray bigEndian32(qint64 number)
{
    QByteArray bytes(4, Qt::Uninitialized);
    qToBigEndian(static_cast<quint32>(number), bytes.data());
    return bytes;
}

qint64 blocksFor(qint64 bytes, qint64 blockSize)
{
    return (bytes + blockSize - 1) / blockSize;
}

} // namespace

MemoFile::MemoFile(storage::FileSystem &files, const QString &path, MemoKind kind, bool forWriting)
    : m_file(files, path, forWriting)
    , m_kind(kind)
{
    if (m_file.size() < headSize) {
        throw StorageError(StorageError::Damaged,
                           u"%1 ist beschädigt: Die Datei hat nur %2 Bytes, der Kopf allein braucht %3"_s.arg(path)
                               .arg(m_file.size())
                               .arg(headSize));
    }
}

QString MemoFile::suffix(MemoKind kind)
{
    return kind == MemoKind::FoxPro ? u".fpt"_s : u".dbt"_s;
}

QByteArray MemoFile::newFile()
{
    QByteArray head(headSize, '\0');
    head.replace(0, 4, bigEndian32(headSize / newBlockSize));
    qToBigEndian(static_cast<quint16>(newBlockSize), head.data() + 6);
    return head;
}

void MemoFile::damaged(qint64 block, const QString &what) const
{
    throw StorageError(StorageError::Damaged, u"%1, Block %2: %3"_s.arg(m_file.path()).arg(block).arg(what));
}

qint64 MemoFile::blockSize() const
{
    if (m_kind == MemoKind::DBase3)
        return 512;
    if (m_kind == MemoKind::FoxPro) {
        const quint16 size = qFromBigEndian<quint16>(m_file.read(6, 2).constData());
        if (size == 0)
            damaged(0, u"Die Blockgröße ist 0"_s);
        return size;
    }
    const quint16 size = qFromLittleEndian<quint16>(m_file.read(20, 2).constData());
    return size == 0 ? 512 : size;
}

qint64 MemoFile::positionOf(qint64 block) const
{
    const qint64 size = m_file.size();
    const qint64 unit = blockSize();
    // Compared before multiplying: a block number has up to ten digits, but a lying one may not overflow.
    if (block < 1 || block > size / unit || block * unit >= size)
        damaged(block, u"Der Verweis zeigt hinter das Ende der Datei"_s);
    if (m_kind == MemoKind::FoxPro && block * unit < headSize)
        damaged(block, u"Der Verweis zeigt in den Kopf der Datei"_s);
    return block * unit;
}

/// The length of the text at a block, which lies wholly within the file.
qint64 MemoFile::foxProLength(qint64 block) const
{
    const qint64 position = positionOf(block);
    const QByteArray head = m_file.read(position, entryHeadSize);
    const quint32 kind = bigEndian32(head, 0);
    const qint64 length = bigEndian32(head, 4);
    if (kind > 2)
        damaged(block, u"Hier beginnt kein Memo"_s);
    if (kind != textKind) {
        throw StorageError(
            StorageError::Unsupported,
            u"%1, Block %2: Bilder und Objekte werden nicht unterstützt"_s.arg(m_file.path()).arg(block));
    }
    if (length > m_file.size() - position - entryHeadSize)
        damaged(block, u"Das Memo soll %1 Bytes lang sein, so weit reicht die Datei nicht"_s.arg(length));
    return length;
}

QByteArray MemoFile::read(qint64 block) const
{
    switch (m_kind) {
    case MemoKind::DBase3:
        return readDBase3(block);
    case MemoKind::DBase4:
        return readDBase4(block);
    default:
        const qint64 length = foxProLength(block);
        return m_file.read(positionOf(block) + entryHeadSize, length);
    }
}

QByteArray MemoFile::readDBase3(qint64 block) const
{
    QByteArray content;
    const qint64 size = m_file.size();
    for (qint64 position = positionOf(block); position < size; position += 512) {
        const QByteArray piece = m_file.read(position, std::min<qint64>(512, size - position));
        const qsizetype end = piece.indexOf('\x1A');
        content += piece.first(end < 0 ? piece.size() : end);
        if (end >= 0)
            return content;
    }
    damaged(block, u"Das Memo hat kein Ende"_s);
}

QByteArray MemoFile::readDBase4(qint64 block) const
{
    const qint64 position = positionOf(block);
    const QByteArray head = m_file.read(position, entryHeadSize);
    const qint64 length = qFromLittleEndian<quint32>(head.constData() + 4);
    if (!head.startsWith("\xFF\xFF\x08") || length < entryHeadSize)
        damaged(block, u"Hier beginnt kein Memo"_s);
    if (length > m_file.size() - position)
        damaged(block, u"Das Memo soll %1 Bytes lang sein, so weit reicht die Datei nicht"_s.arg(length));
    return m_file.read(position + entryHeadSize, length - entryHeadSize);
}

void MemoFile::requireWritable() const
{
    if (m_kind != MemoKind::FoxPro) {
        throw StorageError(StorageError::Unsupported,
                           u"%1: Memos von dBASE können nur gelesen werden"_s.arg(m_file.path()));
    }
    m_file.requireWritable();
}

qint64 MemoFile::firstFreeBlock(qint64 size) const
{
    // Behind everything that is there, whatever the head says; a head beyond that is a damaged one.
    const qint64 next = bigEndian32(m_file.read(0, 4), 0);
    const qint64 free = blocksFor(m_file.size(), blockSize());
    if (next > free)
        damaged(next, u"Der nächste freie Block soll hinter dem Ende der Datei liegen"_s);
    if (free * blockSize() + size > greatestSize)
        throw StorageError(StorageError::FileFull, u"%1 ist voll"_s.arg(m_file.path()));
    return free;
}

qint64 MemoFile::write(Transaction &transaction, const QByteArray &content, qint64 oldBlock)
{
    requireWritable();
    transaction.lock(m_file, lockBase, u"Die Memodatei"_s);
    const qint64 unit = blockSize();
    const qint64 needed = blocksFor(entryHeadSize + content.size(), unit);
    const bool fits = oldBlock != 0 && needed <= blocksFor(entryHeadSize + foxProLength(oldBlock), unit);
    const qint64 block = fits ? oldBlock : firstFreeBlock(needed * unit);
    const QByteArray entry = (bigEndian32(textKind) + bigEndian32(content.size()) + content)
                                 .leftJustified(fits ? entryHeadSize + content.size() : needed * unit, '\0');
    transaction.write(m_file, block * unit, entry);
    if (!fits)
        transaction.write(m_file, 0, bigEndian32(block + needed));
    return block;
}

} // namespace dbf
