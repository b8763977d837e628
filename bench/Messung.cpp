// What the measurements share.
#include "bench/Messung.h"

#include <atomic>
#include <fstream>
#include <stdexcept>
#include <string>

#include <sys/syscall.h>
#include <unistd.h>

namespace {

std::atomic<std::int64_t> flushes = 0;

std::int64_t wertAus(const char *datei, std::string_view name)
{
    std::ifstream zeilen(datei);
    for (std::string zeile; std::getline(zeilen, zeile);) {
        if (zeile.starts_with(name))
            return std::stoll(zeile.substr(name.size()));
    }
    return 0;
}

} // namespace

// In the way of the C library's own: the system keeps no count of these calls.
int fsync(int datei)
{
    ++flushes;
    return static_cast<int>(syscall(SYS_fsync, datei));
}

int fdatasync(int datei)
{
    ++flushes;
    return static_cast<int>(syscall(SYS_fdatasync, datei));
}

Zaehler aufrufe()
{
    return {wertAus("/proc/self/io", "syscr:"), wertAus("/proc/self/io", "syscw:"), flushes};
}

long gipfelSpeicherKiB()
{
    return static_cast<long>(wertAus("/proc/self/status", "VmHWM:"));
}

desktop::Answer Ungestoert::MsgBox(const desktop::Box &box)
{
    throw std::runtime_error(box.text.toStdString());
}
