// Pieces of inputs, a place for files, and the one way in which a target reports a fault.
#include "fuzz/Target.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include <QDir>
#include <QFile>

#include "platform/errors/RunTimeError.h"
#include "platform/storage/Codepage.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;

namespace fuzz {

std::uint8_t Input::byte()
{
    return static_cast<std::uint8_t>(number(1));
}

std::uint32_t Input::number(int bytes)
{
    std::uint32_t number = 0;
    for (int i = 0; i < bytes && !m_rest.empty(); ++i, m_rest = m_rest.subspan(1))
        number |= std::to_integer<std::uint32_t>(m_rest.front()) << (8 * i);
    return number;
}

std::uint32_t Input::below(std::size_t end)
{
    const std::uint32_t drawn = number(end > 0x10000 ? 4 : end > 0x100 ? 2 : 1);
    return end == 0 ? 0 : static_cast<std::uint32_t>(drawn % end);
}

QByteArray Input::bytes(std::size_t most)
{
    const storage::Bytes taken = m_rest.first(std::min(most, m_rest.size()));
    m_rest = m_rest.subspan(taken.size());
    return {reinterpret_cast<const char *>(taken.data()), static_cast<qsizetype>(taken.size())};
}

QString Input::line()
{
    const auto end = std::ranges::find(m_rest, std::byte{'\n'});
    const QString text = storage::windows1252.decode({m_rest.begin(), end});
    m_rest = m_rest.subspan(static_cast<std::size_t>(end - m_rest.begin()) + (end == m_rest.end() ? 0 : 1));
    return text;
}

void require(bool holds, const QString &otherwise)
{
    if (holds)
        return;
    std::fprintf(stderr, "FAULT: %s\n", qPrintable(otherwise));
    std::abort();
}

bool succeeds(const std::function<void()> &work)
{
    try {
        work();
        return true;
    } catch (const storage::StorageError &error) {
        require(!error.text().isEmpty(), u"an error without a text"_s);
    } catch (const RunTimeError &error) {
        require(!error.Description().isEmpty(), u"error %1 has no text"_s.arg(error.Number()));
    }
    return false;
}

Folder::Folder()
{
    // who names a place gets it; otherwise memory, since every input is written as a file
    const QString inMemory = u"/dev/shm"_s;
    const bool asNamed = qEnvironmentVariableIsSet("TMPDIR") || !QDir(inMemory).exists();
    m_folder = std::make_unique<QTemporaryDir>((asNamed ? QDir::tempPath() : inMemory) + u"/veldrak-fuzz-XXXXXX"_s);
    require(m_folder->isValid(), m_folder->errorString());
}

void Folder::put(const QString &name, const QByteArray &content) const
{
    QFile file(path(name));
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(), file.errorString());
}

QByteArray Folder::get(const QString &name) const
{
    QFile file(path(name));
    require(file.open(QIODevice::ReadOnly), file.errorString());
    return file.readAll();
}

void Folder::clear() const
{
    QDir folder(m_folder->path());
    for (const QString &name : folder.entryList(QDir::Files | QDir::Hidden))
        require(folder.remove(name), u"%1 cannot be removed"_s.arg(name));
}

} // namespace fuzz
