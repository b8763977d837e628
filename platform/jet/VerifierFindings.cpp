// The list of what a check finds.
#include "platform/jet/VerifierFindings.h"

using namespace Qt::StringLiterals;

namespace jet {

void Findings::fault(const QString &text)
{
    if (!full())
        m_report.faults.push_back(text);
}

void Findings::fault(PageNo page, const QString &text)
{
    fault(u"Seite %1: %2"_s.arg(page).arg(text));
}

void Findings::note(const QString &text)
{
    if (m_report.notes.size() < VerifyReport::faultLimit)
        m_report.notes.push_back(text);
}

void Findings::note(const Oddities &oddities, const QString &place, const QString &what)
{
    if (oddities.count == 0)
        return;
    const QString row = u"Zeile %1 der Seite %2"_s.arg(oddities.first.row).arg(oddities.first.page);
    const QString times = oddities.count == 1 ? QString() : u" (%1-mal, dies ist die erste)"_s.arg(oddities.count);
    note(u"%1: %2: %3%4"_s.arg(place, row, what, times));
}

} // namespace jet
