#pragma once

#include <QFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>

#include "startup/Haupt.h"
#include "tests/fakes/FakeAct.h"
#include "tests/fakes/FakeDesktop.h"

/// An engine whose files cannot be opened, for whatever reason a test wants.
class FailingEngine : public dao::DBEngine
{
public:
    int error = dao::DaoError::NotAValidPassword;
    QString openedWith;

    std::shared_ptr<dao::Workspace> CreateWorkspace(const QString &, const QString &, const QString &) override
    {
        return nullptr;
    }
    void AppendWorkspace(std::shared_ptr<dao::Workspace>) override { }
    std::shared_ptr<dao::Database> OpenDatabase(const QString &, int, bool, const QString &connect) override
    {
        openedWith = connect;
        throw dao::DaoError(error, QStringLiteral("geht nicht"));
    }
    std::shared_ptr<dao::Database> CreateDatabase(const QString &, const QString &, Version) override
    {
        return nullptr;
    }
};

/// A program folder with a good ini file and something in place of the mapping, beside an ACT! with one contact.
class HauptTest : public testing::Test
{
protected:
    HauptTest()
    {
        m_act.contacts = {{{1, QStringLiteral("KONTAKT00001")}}};
        schreibe(QStringLiteral("veldrak.piz"), "keine Datenbank");
        schreibe(QStringLiteral("VELDRAK.ini"),
                 "[VELDRAK]\n"
                 "ID_Nummer=60|PCK_NUMMER\nID_Mandant=61|PCK_MAND\nID_Typ=62|PCK_TYP\n"
                 "PCKpfad=/pck/\nID_SuchFeld1=2|COMPANY\nID_SuchFeld2=26|CONTACT\n"
                 "DATEVNr=1\nAutoSuche=1\n");
    }

    void schreibe(const QString &name, const QByteArray &inhalt) const
    {
        QFile datei(m_ordner.filePath(name));
        ASSERT_TRUE(datei.open(QIODevice::WriteOnly));
        datei.write(inhalt);
    }

    /// Runs start-up; true if it ended the program.
    bool startEndet()
    {
        try {
            m_haupt.Main([](Haupt &) -> std::unique_ptr<QWidget> { return std::make_unique<QWidget>(); });
        } catch (const ProgrammBeendet &) {
            return true;
        }
        return false;
    }

    QTemporaryDir m_ordner;
    FakeDesktop m_desktop;
    FakeAct m_act;
    FailingEngine m_engine;
    Haupt m_haupt{Umgebung{m_act, m_engine, m_desktop, m_desktop, m_desktop, m_desktop, m_desktop, m_desktop, m_desktop,
                           m_desktop, m_ordner.path()}};
};
