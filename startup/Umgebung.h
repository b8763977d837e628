#pragma once

#include <QString>

#include "platform/automation/Automation.h"
#include "platform/dao/Dao.h"
#include "platform/desktop/Desktop.h"

/// The world the program runs in: its ports, and its folder. All must outlive the program's state.
struct Umgebung {
    Automation &automation;
    dao::DBEngine &dbEngine;
    desktop::MessageBoxes &boxen;
    desktop::SettingsStore &einstellungen;
    desktop::Clipboard &zwischenablage;
    desktop::TopLevelWindows &fenster;
    desktop::Screen &bildschirm;
    desktop::Clock &uhr;
    desktop::MessageLoop &schleife;
    desktop::Files &dateien;
    QString programmordner; ///< where VELDRAK.ini, veldrak.piz and bilder/icons are; no separator at its end
};
