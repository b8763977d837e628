#pragma once

#include <cstdint>
#include <string_view>

#include "util/Programmlauf.h"

/// The process's own counters: calls into the operating system since it started.
struct Zaehler {
    std::int64_t lesen = 0; ///< read calls
    std::int64_t schreiben = 0; ///< write calls
    std::int64_t flushes = 0; ///< calls that wait for the disk: fsync, fdatasync
};
Zaehler aufrufe();

/// The most memory that this process ever had, in KiB.
long gipfelSpeicherKiB();

/// Processor seconds of this process so far: what others do on the machine does not count.
double rechenzeit();

/// The processor seconds for reading a file from its beginning to its end, at best.
double rechenzeitFuerBlossesLesen(const QString &pfad);

/// A course of the program in which nothing may be asked: a box is an error of the measurement.
class Ungestoert : public Programmlauf
{
public:
    void DoEvents() override { }
    desktop::Answer MsgBox(const desktop::Box &box) override;

protected:
    void regulaeresEnde() override { }
    void sofortigesEnde() override { }
};
