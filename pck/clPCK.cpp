// Clients as files: found in a folder, opened through one workspace, with a password each.
#include "pck/clPCK.h"

#include <utility>

#include "util/Zahlen.h"
#include "util/coding.h"

using namespace Qt::StringLiterals;

namespace {

bool istName(const QVariant &mandant)
{
    return mandant.typeId() == QMetaType::QString;
}

} // namespace

clPCK::clPCK(const Dienste &dienste)
    : m_dienste(dienste)
{ }

clPCK::~clPCK()
{
    try {
        close_Mandant();
    } catch (const RunTimeError &) { // nobody is left to be told; what was written is in the file
    }
}

dao::Workspace &clPCK::Arbeitsbereich()
{
    if (!m_Arbeitsbereich) {
        const auto neuer = m_dienste.engine.CreateWorkspace(u"TEST"_s, coding::benutzer(), coding::kennwort());
        m_dienste.engine.AppendWorkspace(neuer);
        m_Arbeitsbereich = neuer;
    }
    return *m_Arbeitsbereich;
}

bool clPCK::init(const QString &Pfad)
{
    m_PckPfad = Pfad;
    m_PckAnzahl = 0;
    const QStringList dateien = m_dienste.dateien.list(m_PckPfad + u"*.PCK"_s);
    m_PckAnzahl = CInt(static_cast<double>(dateien.size()));
    if (m_PckAnzahl < 1)
        return false;
    m_PckDateien = dateien;
    m_PckPasswoerter = QStringList(dateien.size(), QString());
    return true;
}

QString clPCK::Mandanten(qint16 Index) const
{
    return m_PckDateien[stelle(Index)];
}

// The two forms differ on purpose: only the one by name takes a wrong password for an answer.
bool clPCK::test_Passwort(const QVariant &Mandant, const QString &Passwort)
{
    Arbeitsbereich();
    const bool nachName = istName(Mandant);
    const int keinFehler = nachName ? dao::DaoError::NotAValidPassword : 58;
    const QString datei = nachName ? Mandant.toString() : m_PckDateien[stelle(Mandant)];
    const auto mandant = oeffne(datei, Passwort, keinFehler);
    if (!mandant)
        return false;
    if (nachName)
        m_db = mandant;
    else
        mandant->Close();
    return true;
}

bool clPCK::open_Mandant(QVariant &Mandant)
{
    Arbeitsbereich();
    if (istName(Mandant)) {
        const qsizetype gefunden = m_PckDateien.indexOf(Mandant.toString());
        Mandant = CInt(static_cast<double>(gefunden < 0 ? m_PckDateien.size() : gefunden));
    }
    const qsizetype i = stelle(Mandant);
    const QString &datei = m_PckDateien[i];
    while (!test_Passwort(datei, m_PckPasswoerter[i])) {
        m_dienste.kennwortabfrage.zeige(datei);
        if (m_dienste.kennwortabfrage.flagKennwortAbbruch) {
            close_Mandant();
            return false;
        }
        m_PckPasswoerter[i] = m_dienste.kennwortabfrage.Kennwort();
    }
    m_db = oeffne(datei, m_PckPasswoerter[i], 0);
    return true;
}

void clPCK::close_Mandant()
{
    const auto mandant = std::exchange(m_db, nullptr);
    const auto arbeitsbereich = std::exchange(m_Arbeitsbereich, nullptr);
    if (mandant)
        mandant->Close();
    if (arbeitsbereich)
        arbeitsbereich->Close();
}

/// Nothing if opening fails with the one number that is an answer; any other is shown and ends the program.
std::shared_ptr<dao::Database> clPCK::oeffne(const QString &datei, const QString &passwort, int keinFehler)
{
    try {
        return Arbeitsbereich().OpenDatabase(m_PckPfad + datei, 0, false,
                                             u";DATABASE="_s + datei + u";PWD="_s + passwort);
    } catch (const RunTimeError &fehler) {
        if (fehler.Number() == keinFehler)
            return nullptr;
        m_dienste.programm.MsgBox(
            {u"Fehler !"_s + u"\r\n"_s + QString::number(fehler.Number()) + u":"_s + fehler.Description(),
             desktop::Icon::Exclamation});
        m_dienste.programm.ProgrammEnde();
    }
}

qsizetype clPCK::stelle(const QVariant &Mandant) const
{
    const int index = Mandant.toInt();
    if (index < 0 || index >= m_PckDateien.size())
        throw RunTimeError(RunTimeError::SubscriptOutOfRange);
    return index;
}

bool clPCK::offenOderGemeldet()
{
    if (!istOffen())
        m_dienste.programm.MsgBox({u"Kein Mandant geöffnet!"_s});
    return istOffen();
}

dao::Database &clPCK::db() const
{
    if (!m_db)
        throw RunTimeError(RunTimeError::ObjectNotSet);
    return *m_db;
}
