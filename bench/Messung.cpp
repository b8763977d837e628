// What the measurements share.
#include "bench/Messung.h"

#include <algorithm>
#include <atomic>
#include <ctime>
#include <fstream>
#include <stdexcept>
#include <string>

#include <sys/syscall.h>
#include <unistd.h>

#include <QFile>
#include <benchmark/benchmark.h>

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

double rechenzeit()
{
    timespec zeit{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &zeit);
    return static_cast<double>(zeit.tv_sec) + static_cast<double>(zeit.tv_nsec) * 1e-9;
}

double rechenzeitFuerBlossesLesen(const QString &pfad)
{
    double beste = 1e9;
    for (int versuch = 0; versuch < 5; ++versuch) {
        const double beginn = rechenzeit();
        QFile datei(pfad);
        if (!datei.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
            throw std::runtime_error("file cannot be read");
        QByteArray block(256 * 1024, Qt::Uninitialized);
        while (datei.read(block.data(), block.size()) > 0)
            benchmark::DoNotOptimize(block.data());
        beste = std::min(beste, rechenzeit() - beginn);
    }
    return beste;
}

desktop::Answer Ungestoert::MsgBox(const desktop::Box &box)
{
    throw std::runtime_error(box.text.toStdString());
}
