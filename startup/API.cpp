// The search for ACT!'s main window.
#include "startup/API.h"

#include <algorithm>

#include "util/Zeichenketten.h"

API::API(const QString &klasse, const QString &titel)
    : m_klasse(klasse)
    , m_titel(titel)
{ }

bool API::FensterVorhanden(const desktop::TopLevelWindows &fenster, const QString &progId) const
{
    const auto alle = fenster.list();
    if (!alle)
        return fenster.programSeen(progId, m_klasse).value_or(true); // the connection will tell, and ask
    return std::any_of(alle->begin(), alle->end(), [this](const desktop::Window &eines) {
        return eines.className.contains(m_klasse) && Trim(eines.title).contains(m_titel);
    });
}
