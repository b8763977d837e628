#pragma once

#include <deque>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <gmock/gmock.h>

#include "tests/fakes/MitschreibendeEngine.h"
#include "tests/startup/Gestartet.h"
#include "transfer/frmMandantenpasswort.h"
#include "transfer/frmUebertragung.h"

/// The transfer dialog with a group, an ACT! that records, and clients in a folder of their own.
class TransferTest : public testing::Test
{
protected:
    TransferTest();
    ~TransferTest() override;

    /// Puts an unprotected client into the folder.
    void legeMandantAn(const QString &datei);
    QString mandant(const QString &datei = QStringLiteral("Muster.PCK")) const { return m_ordner.filePath(datei); }
    /// A setting of the user, which outlives the run.
    QString &gemerkt(const QString &name) { return m_tisch.settings[QStringLiteral("VELDRAK/Setting/") + name]; }

    /// Makes the group of these people, one with role "H", and loads and shows the dialog.
    void zeige(const std::vector<beispiel::Person> &personen = beispiel::firmengruppe(), int hauptIndex = 1);
    /// zeige() with a remembered client "Muster.PCK", which is then selected.
    void zeigeMitMandant(const std::vector<beispiel::Person> &personen = beispiel::firmengruppe());
    frmÜbertragung &dialog() { return *m_dialog; }

    template <typename Widget> Widget &finde(QStringView name)
    {
        return *m_dialog->findChild<Widget *>(name.toString());
    }
    QComboBox &liste(QStringView name) { return finde<QComboBox>(name); }
    QLineEdit &feld(QStringView name) { return finde<QLineEdit>(name); }
    QString nummer() { return finde<QLabel>(u"lbNummer").text(); }
    void klicke(QStringView knopf) { QTest::mouseClick(&finde<QPushButton>(knopf), Qt::LeftButton); }
    void eintragen() { klicke(u"cmdEintragen"); }
    static QString zeilenVon(const QComboBox &liste); ///< joined by "|"
    /// A query on Muster.PCK.
    QStringList zeilen(const QString &abfrage) { return beispiel::zeilen(*m_engine, mandant(), abfrage); }

    /// What the program has not closed.
    QStringList offen() const { return m_programmEngine->offen; }

    /// What went to the client and to ACT!, in order, as "SQL ..." and "ACT ..."; questions to the mapping left out.
    QStringList m_ablauf;
    /// Called with each line of the course before it happens, and with "OPEN " and the name of each database's file; a
    /// number other than 0 is raised in its place.
    std::function<int(const QString &zeile)> m_stoerung;
    /// Answers to the password dialog, "" gives up; and for which clients it came.
    std::deque<QString> m_kennwoerter;
    QStringList m_gefragt;

    QTemporaryDir m_ordner;
    FakeAct m_act;
    FakeDesktop m_tisch;
    std::unique_ptr<dao::DBEngine> m_engine; ///< the test's own, as another program would have it
    std::unique_ptr<Haupt> m_haupt;

private:
    int stoerung(const QString &zeile) const { return m_stoerung ? m_stoerung(zeile) : 0; }
    void bereiteEngine();
    void beantworteKennwort();

    std::unique_ptr<MitschreibendeEngine> m_programmEngine;
    frmÜbertragung *m_dialog = nullptr;
    QTimer m_kennwortTimer;
};
