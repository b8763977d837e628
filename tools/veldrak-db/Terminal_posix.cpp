// The terminal of POSIX systems.
#include "tools/veldrak-db/Terminal.h"

#include <termios.h>
#include <unistd.h>

#include <QFile>

#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace terminal {

namespace {

/// Keeps what is typed from showing, as long as it lives.
class Silence
{
public:
    explicit Silence(int handle)
        : m_handle(handle)
    {
        if (tcgetattr(m_handle, &m_before) != 0)
            throw StorageError(StorageError::InputOutput, u"Das Kennwort lässt sich nicht verdeckt eingeben."_s);
        termios silent = m_before;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(m_handle, TCSAFLUSH, &silent);
    }
    ~Silence() { tcsetattr(m_handle, TCSAFLUSH, &m_before); }
    Silence(const Silence &) = delete;
    Silence &operator=(const Silence &) = delete;

private:
    int m_handle;
    termios m_before{};
};

} // namespace

bool showsMessages()
{
    return isatty(STDERR_FILENO) == 1;
}

bool hasInput()
{
    return isatty(STDIN_FILENO) == 1;
}

QString askPassword(const QString &question)
{
    QFile line(u"/dev/tty"_s);
    if (!line.open(QIODevice::ReadWrite | QIODevice::Unbuffered))
        throw StorageError(StorageError::InputOutput, u"Für die Frage nach dem Kennwort fehlt ein Terminal."_s);
    line.write(question.toLocal8Bit());
    const Silence silence(line.handle());
    QByteArray typed = line.readLine();
    line.write("\n");
    if (typed.endsWith('\n'))
        typed.chop(1);
    return QString::fromLocal8Bit(typed);
}

} // namespace terminal
