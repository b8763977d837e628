// What the measurements share.
#include "bench/Messung.h"

#include <fstream>
#include <stdexcept>
#include <string>

namespace {

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

Zaehler aufrufe()
{
    return {wertAus("/proc/self/io", "syscr:"), wertAus("/proc/self/io", "syscw:")};
}

long gipfelSpeicherKiB()
{
    return static_cast<long>(wertAus("/proc/self/status", "VmHWM:"));
}

desktop::Answer Ungestoert::MsgBox(const desktop::Box &box)
{
    throw std::runtime_error(box.text.toStdString());
}
