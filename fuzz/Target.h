#pragma once

#include <functional>
#include <memory>

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include "platform/storage/Bytes.h"

/// What the fuzz targets share. A target is one function over the bytes that a fuzzer or a replay gives it.
namespace fuzz {

/// The target; each program defines its own. Faults end the program.
void run(storage::Bytes bytes);

/// Cuts an input into pieces; behind its end come zeros and empty texts.
class Input
{
public:
    explicit Input(storage::Bytes bytes)
        : m_rest(bytes)
    { }

    bool atEnd() const { return m_rest.empty(); }
    std::uint8_t byte();
    std::uint32_t number(int bytes); ///< little-endian, up to 4 bytes
    /// From 0 to `end` - 1; 0 if there is no such number.
    std::uint32_t below(std::size_t end);
    QByteArray bytes(std::size_t most);
    QByteArray rest() { return bytes(m_rest.size()); }
    /// Windows-1252 up to a line break, or all.
    QString line();

private:
    storage::Bytes m_rest;
};

/// Ends the program with a text unless the condition holds.
void require(bool holds, const QString &otherwise);

/// Whether `work` came to its end; an error that users may see (StorageError, RunTimeError) is a proper end as well.
/// Any other exception ends the program.
bool succeeds(const std::function<void()> &work);

/// A folder for one process, in memory where the machine has a place for that; gone at the regular end.
class Folder
{
public:
    Folder();
    QString path(const QString &name) const { return m_folder->filePath(name); }
    void put(const QString &name, const QByteArray &content) const;
    QByteArray get(const QString &name) const;
    void clear() const; ///< removes all files

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

} // namespace fuzz
