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

} // namespace jet
