#pragma once

#include <QString>

#include "platform/desktop/Desktop.h"

/// Finds a top-level window by fragments of its class name and title (both as they are spelt).
class API
{
public:
    API(const QString &klasse, const QString &titel);

    /// Whether such a window exists. Where windows cannot be listed, false only if there surely is no program that
    /// offers `progId`, or will.
    bool FensterVorhanden(const desktop::TopLevelWindows &fenster, const QString &progId) const;

private:
    QString m_klasse;
    QString m_titel;
};
