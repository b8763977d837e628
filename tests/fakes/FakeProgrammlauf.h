#pragma once

#include "tests/fakes/FakeDesktop.h"
#include "util/Programmlauf.h"

/// The program's course without windows: boxes are recorded, and an end is written down and thrown.
class FakeProgrammlauf : public Programmlauf
{
public:
    explicit FakeProgrammlauf(FakeDesktop &tisch)
        : m_tisch(tisch)
    { }

    bool regulaerBeendet = false;
    bool sofortBeendet = false;

    void DoEvents() override { m_tisch.yield(); }
    desktop::Answer MsgBox(const desktop::Box &box) override { return m_tisch.show(box); }

protected:
    void regulaeresEnde() override { regulaerBeendet = true; }
    void sofortigesEnde() override { sofortBeendet = true; }

private:
    FakeDesktop &m_tisch;
};
