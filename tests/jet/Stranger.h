#pragma once

#include <vector>

#include <QString>
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/storage/FileSystem.h"

/// Another program that holds ordinary record locks, as a process of its own: until the end of this object, or for a
/// while.
class Stranger
{
public:
    struct Lock {
        QString path;
        storage::ByteRange range;
        short type = F_WRLCK;
    };

    explicit Stranger(const std::vector<Lock> &locks, int milliseconds = 60000)
    {
        int ready[2];
        if (pipe(ready) != 0)
            return;
        m_process = fork();
        if (m_process == 0) {
            bool got = true;
            for (const Lock &lock : locks)
                got = take(lock) && got;
            [[maybe_unused]] const auto told = ::write(ready[1], &got, 1);
            usleep(static_cast<useconds_t>(milliseconds) * 1000);
            _exit(0);
        }
        ::close(ready[1]);
        m_got = ::read(ready[0], &m_got, 1) == 1 && m_got;
        ::close(ready[0]);
    }
    ~Stranger()
    {
        if (m_process <= 0)
            return;
        kill(m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
    }
    Stranger(const Stranger &) = delete;
    Stranger &operator=(const Stranger &) = delete;

    /// Whether it got all of its locks.
    bool got() const { return m_got; }

private:
    static bool take(const Lock &lock)
    {
        const int file = ::open(lock.path.toUtf8().constData(), O_RDWR | O_CREAT, 0666);
        struct flock wanted { };
        wanted.l_type = lock.type;
        wanted.l_start = lock.range.first;
        wanted.l_len = lock.range.size;
        return file >= 0 && fcntl(file, F_SETLK, &wanted) == 0;
    }

    pid_t m_process = -1;
    bool m_got = false;
};
