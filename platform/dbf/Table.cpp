// Records of a .dbf file: found, read, appended, changed and marked as deleted.
#include "platform/dbf/Table.h"

#include <QFileInfo>

#include "platform/dbf/Cursor.h"
#include "platform/storage/LocalPath.h"
#include "platform/storage/Patience.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::Assignment;
using storage::bytesOf;
using storage::RowId;
using storage::StorageError;

namespace dbf {

namespace {

constexpr char endOfFile = 0x1A;

QString withoutSuffix(const QString &path)
{
    return path.first(path.lastIndexOf(u'.'));
}

QString recordPlace(const TableFile &file, RowId id)
{
    return u"%1, Satz %2: "_s.arg(file.path()).arg(id);
}

} // namespace

/// A field's new content, encoded.
struct Table::NewField {
    const Field *field;
    QByteArray bytes;
};

/// The fields that a statement sets, encoded before anything is written.
struct Table::NewContent {
    std::vector<NewField> fields;
    std::vector<NewField> memos;
};

Table::Table(const QString &path, WriteState &state)
    : m_state(state)
    , m_file(state.journal.files(), path, !state.readOnly)
    , m_layout(readLayout(m_file))
{
    m_schema.name = QFileInfo(path).completeBaseName();
    for (const Field &field : m_layout.fields)
        m_schema.columns.push_back(columnOf(field));
    recordCount();
}

/// Whether a record begins behind the last one: there is room for it, and a deletion mark.
bool Table::goesOnBehind(RowId last) const
{
    const qint64 position = m_layout.positionOf(last + 1);
    if (position >= m_file.size())
        return false;
    const char mark = m_file.read(position, 1).front();
    return mark == ' ' || mark == '*';
}

/// A program that ended between adding records and counting them leaves a head that counts too few.
qint64 Table::heldRecords(qint64 counted) const
{
    const qint64 whole = (m_file.size() - m_layout.headerLength) / m_layout.recordLength;
    return whole > counted && goesOnBehind(counted) ? whole : counted;
}

QStringList Table::headFaults()
{
    const qint64 counted = readFacts(m_file).recordCount;
    const qint64 held = recordCount();
    QStringList faults;
    if (held != counted) {
        faults += u"%1: Der Kopf nennt %2 Sätze, die Datei enthält %3"_s.arg(m_file.path()).arg(counted).arg(held);
    }
    if (goesOnBehind(held)) {
        faults += u"%1: Hinter Satz %2 steht der Anfang eines weiteren, %3 von %4 Bytes"_s.arg(m_file.path())
                      .arg(held)
                      .arg(m_file.size() - m_layout.positionOf(held + 1))
                      .arg(m_layout.recordLength);
    }
    return faults;
}

/// The number of records that the file really holds, as of now.
qint64 Table::recordCount()
{
    const auto countIfComplete = [this]() -> std::optional<qint64> {
        const HeaderFacts facts = readFacts(m_file);
        if (facts.version != m_layout.version || facts.headerLength != m_layout.headerLength
            || facts.recordLength != m_layout.recordLength) {
            throw StorageError(StorageError::Damaged,
                               u"%1 wurde inzwischen von einem anderen Programm umgebaut"_s.arg(m_file.path()));
        }
        const bool complete = m_layout.positionOf(facts.recordCount + 1) <= m_file.size();
        return complete ? std::optional(heldRecords(facts.recordCount)) : std::nullopt;
    };
    if (const auto count = countIfComplete())
        return *count;
    // Another program may be between counting a new record and writing it: it holds the head's lock meanwhile.
    const bool ours = m_state.running && m_state.running->holds(m_file, lockBase);
    constexpr storage::ByteRange head{lockBase, 1};
    const bool waited
        = !ours && storage::retryForAWhile([&] { return m_file.file().tryLock(head, storage::LockKind::Shared); });
    const auto count = countIfComplete();
    if (waited)
        m_file.file().unlock(head);
    if (!count) {
        throw StorageError(StorageError::Damaged,
                           u"%1 ist abgeschnitten: Der Kopf nennt %2 Sätze, die Datei hat %3 Bytes"_s.arg(m_file.path())
                               .arg(readFacts(m_file).recordCount)
                               .arg(m_file.size()));
    }
    return *count;
}

std::unique_ptr<storage::Cursor> Table::scan()
{
    m_state.journal.settle();
    return std::make_unique<Cursor>(*this, 1, recordCount());
}

std::unique_ptr<storage::Cursor> Table::range(const storage::KeyRange &)
{
    throw StorageError(StorageError::NoSuchIndex, u"%1 hat keinen benutzbaren Index"_s.arg(m_file.path()));
}

std::unique_ptr<storage::Cursor> Table::row(RowId id)
{
    if (id < 1 || id > recordCount())
        return nullptr;
    auto cursor = std::make_unique<Cursor>(*this, id, id);
    return cursor->next() ? std::move(cursor) : nullptr;
}

storage::Value Table::valueOf(const Field &field, storage::Bytes record, RowId id)
{
    const storage::Bytes bytes = record.subspan(std::size_t(field.offset), std::size_t(field.width));
    const auto undecodable = [&] {
        return StorageError(StorageError::Damaged,
                            recordPlace(m_file, id) + u"Der Inhalt von Feld %1 ist beschädigt"_s.arg(field.name));
    };
    if (field.type != 'M') {
        auto value = decode(field, bytes, *m_layout.codepage);
        if (!value)
            throw undecodable();
        return std::move(*value);
    }
    const std::optional<qint64> block = decodeMemoBlock(bytes);
    if (!block)
        throw undecodable();
    const QByteArray content = *block == 0 ? QByteArray() : memo().read(*block);
    return content.isEmpty() ? storage::Value() : storage::Value(m_layout.codepage->decode(bytesOf(content)));
}

MemoFile &Table::memo()
{
    if (!m_memo)
        m_memo = std::make_unique<MemoFile>(m_state.journal.files(), *memoPath(), m_layout.memo, !m_state.readOnly);
    return *m_memo;
}

std::optional<QString> Table::memoPath() const
{
    if (m_layout.memo == MemoKind::None)
        return std::nullopt;
    return storage::existingPath(withoutSuffix(m_file.path()) + MemoFile::suffix(m_layout.memo));
}

void Table::requireNoIndex() const
{
    if (!readFacts(m_file).structuralIndex)
        return;
    const QString stem = withoutSuffix(m_file.path());
    const QString foxPro = storage::existingPath(stem + u".cdx"_s);
    const QString dBase = storage::existingPath(stem + u".mdx"_s);
    throw StorageError(StorageError::Unsupported,
                       u"%1 hat den Index %2, der nicht mitgeführt werden kann; geschrieben wird daher nicht"_s.arg(
                           m_file.path(), QFileInfo(QFileInfo::exists(dBase) ? dBase : foxPro).fileName()));
}

void Table::requireWritable()
{
    m_file.requireWritable();
    requireNoIndex();
}

Table::NewField Table::encoded(const Assignment &assignment) const
{
    const Field &field = m_layout.fields.at(std::size_t(assignment.column));
    return {&field, (field.type == 'M' ? encodeMemo : encode)(field, assignment.value, *m_layout.codepage)};
}

Table::NewContent Table::encodeAll(std::span<const Assignment> values)
{
    NewContent content;
    for (const Assignment &assignment : values) {
        NewField part = encoded(assignment);
        const bool isMemo = part.field->type == 'M';
        if (isMemo && !part.bytes.isEmpty())
            memo().requireWritable();
        (isMemo ? content.memos : content.fields).push_back(std::move(part));
    }
    return content;
}

/// Brings new content into a record's bytes, and its memos into the memo file.
void Table::put(Transaction &transaction, const NewContent &content, QByteArray &record)
{
    for (const auto &[field, bytes] : content.fields)
        record.replace(field->offset, field->width, bytes);
    for (const auto &[field, bytes] : content.memos) {
        // A reference that is no number is replaced: there is no memo behind it.
        const auto oldBlock = decodeMemoBlock(bytesOf(record.sliced(field->offset, field->width)));
        const qint64 block = bytes.isEmpty() ? 0 : memo().write(transaction, bytes, oldBlock.value_or(0));
        record.replace(field->offset, field->width, encodeMemoBlock(block, field->width));
    }
}

/// Locks a record and reads it then, since it may have been changed before.
QByteArray Table::lockRecord(Transaction &transaction, RowId id)
{
    const auto gone
        = [&] { return StorageError(StorageError::RowGone, recordPlace(m_file, id) + u"Der Satz ist gelöscht"_s); };
    if (id < 1)
        throw gone();
    transaction.lock(m_file, lockBase + m_layout.positionOf(id), u"Satz %1"_s.arg(id));
    if (id > recordCount())
        throw gone();
    QByteArray record = m_file.read(m_layout.positionOf(id), m_layout.recordLength);
    if (isDeleted(*this, bytesOf(record), id))
        throw gone();
    return record;
}

void Table::requireStorable(const Assignment &value) const
{
    encoded(value);
}

RowId Table::insert(std::span<const Assignment> values)
{
    Step step(m_state);
    requireWritable();
    const NewContent content = encodeAll(values);
    QByteArray record(m_layout.recordLength, ' ');
    step.transaction().lock(m_file, lockBase, u"Die Tabelle"_s);
    const RowId id = recordCount() + 1;
    if (m_layout.positionOf(id + 1) >= greatestSize)
        throw StorageError(StorageError::FileFull, u"%1 ist voll"_s.arg(m_file.path()));
    put(step.transaction(), content, record);
    step.transaction().write(m_file, m_layout.positionOf(id), record + endOfFile);
    step.transaction().write(m_file, recordCountPosition, recordCountBytes(id));
    step.done();
    return id;
}

void Table::update(RowId id, std::span<const Assignment> values)
{
    Step step(m_state);
    requireWritable();
    const NewContent content = encodeAll(values);
    QByteArray record = lockRecord(step.transaction(), id);
    put(step.transaction(), content, record);
    step.transaction().write(m_file, m_layout.positionOf(id), record);
    step.done();
}

void Table::remove(RowId id)
{
    Step step(m_state);
    requireWritable();
    lockRecord(step.transaction(), id);
    step.transaction().write(m_file, m_layout.positionOf(id), "*"_ba);
    step.done();
}

} // namespace dbf
