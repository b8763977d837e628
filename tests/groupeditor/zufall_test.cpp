// Random users on random groups: whatever they do, the rules of the group hold.
#include <gmock/gmock.h>

#include <map>
#include <random>

#include <QLineEdit>
#include <QSet>

#include "tests/groupeditor/Buehne.h"

using namespace Qt::StringLiterals;

namespace {

/// What holds of the window between two commands, taken from its lists.
struct Stand {
    QString mitglieder;
    QString treffer;
    int hauptkontakte = 0;
    int flagzahl = 0;

    explicit Stand(Buehne &b)
        : mitglieder(Buehne::ids(b.mitglieder()))
        , treffer(Buehne::ids(b.treffer()))
    {
        const KontaktListe &liste = b.mitglieder();
        for (int i = 1; i <= liste.Anzahl(); ++i) {
            const QTreeWidgetItem &item = liste.Item(i);
            const int icon = KontaktListe::icon(item);
            hauptkontakte += icon == KontaktListe::Haupt;
            flagzahl |= icon == KontaktListe::Haupt ? 8 : icon == KontaktListe::Neben ? 4 : 0;
            flagzahl |= !liste.nummer(item).isEmpty() && !liste.mandant(item).isEmpty() ? 1 : 0;
        }
    }

    QStringList alle() const
    {
        QStringList ids = (mitglieder + u' ' + treffer).split(u' ', Qt::SkipEmptyParts);
        ids.sort();
        return ids;
    }
};

/// One user with a will of its own.
class Benutzer
{
public:
    Benutzer(Buehne &buehne, std::mt19937 &zufall)
        : b(buehne)
        , m_zufall(zufall)
    { }

    /// Plays some actions and checks after each; returns how many.
    int spiele(int hoechstens)
    {
        int aktionen = 0;
        while (aktionen < hoechstens && !b.haupt().beendet() && !testing::Test::HasFailure()) {
            ++aktionen;
            const Stand vorher(b);
            const QString knoepfe = b.knoepfe();
            const bool dialogVorher = b.mehrdeutig();
            b.act.calls.clear();
            b.tisch.boxes.clear();
            b.tisch.yields = 0;
            const QString aktion = fuehreAus(vorher);
            SCOPED_TRACE(aktion.toStdString());
            pruefeAufrufe(aktion);
            if (!b.haupt().beendet() && !b.fenster().isHidden())
                pruefe(aktion, vorher, knoepfe, dialogVorher);
        }
        return aktionen;
    }

private:
    int wuerfle(int seiten) { return static_cast<int>(m_zufall() % static_cast<unsigned>(seiten)); }

    QString waehleAus(const QString &ids)
    {
        QStringList auswahl = ids.split(u' ');
        auswahl.removeIf([this](const QString &) { return wuerfle(3) != 0; });
        return auswahl.join(u' ');
    }

    QString fuehreAus(const Stand &vorher)
    {
        static const QStringList begriffe{u"Alph"_s, u"beta"_s, u"Name"_s, u"a"_s, u" "_s, u"M"_s, u"nirgends"_s};
        switch (wuerfle(8)) {
        case 0:
            b.suche(begriffe[wuerfle(static_cast<int>(begriffe.size()))]);
            return u"search"_s;
        case 1:
        case 2:
        case 3:
            b.uebernimm(waehleAus(vorher.treffer));
            return u"adopt"_s;
        case 4:
            m_entfernt = waehleAus(vorher.mitglieder);
            b.entferne(m_entfernt);
            return u"remove"_s;
        case 5:
            b.waehle(b.mitglieder(), waehleAus(vorher.mitglieder));
            if (b.knoepfe()[0] == u'H')
                b.klicke(u"cmdHauptkontakt");
            return u"main contact"_s;
        case 6:
            b.finde<QLineEdit>(u"tbFirma").setText(u"Alpha %1"_s.arg(wuerfle(3)));
            b.klicke(u"cmdFirmaAngleichen");
            return u"align"_s;
        default:
            if (QDialog *dialog = b.mehrdeutig(); dialog && dialog->isVisible())
                dialog->reject();
            else if (b.knoepfe()[2] == u'F' && wuerfle(4) == 0)
                b.klicke(u"cmdFertig");
            return b.haupt().beendet() ? u"finish"_s : u"dialog"_s;
        }
    }

    // ACT! is written to only when members are given back or the group is finished, and only so.
    void pruefeAufrufe(const QString &aktion) const
    {
        const QStringList felder = b.act.callsOf(u"SetField"_s);
        const QStringList kontakte = b.act.callsOf(u"createLookup"_s);
        const auto geleert = felder.count(u"SetField(60, )"_s) + felder.count(u"SetField(61, )"_s);
        if (aktion == u"remove") {
            EXPECT_EQ(felder.size(), 3 * kontakte.size());
            EXPECT_EQ(geleert + felder.count(u"SetField(62, )"_s), felder.size());
            for (const QString &kontakt : kontakte)
                EXPECT_TRUE(m_entfernt.contains(kontakt.mid(13).chopped(1))) << kontakt.toStdString();
        } else {
            EXPECT_EQ(felder.size(), 4 * kontakte.size());
            EXPECT_EQ(geleert, 0);
            EXPECT_TRUE(kontakte.isEmpty() || aktion == u"finish");
        }
    }

    void pruefe(const QString &aktion, const Stand &vorher, const QString &knoepfe, bool dialogVorher) const
    {
        const Stand jetzt(b);
        // The dialog demotes only when it is loaded: from its second showing on two main contacts can stay.
        EXPECT_TRUE(jetzt.hauptkontakte <= 1 || dialogVorher);
        EXPECT_TRUE(jetzt.hauptkontakte == 0 || dialogVorher || !b.mehrdeutig());

        const QStringList alle = jetzt.alle();
        EXPECT_EQ(QSet<QString>(alle.begin(), alle.end()).size(), alle.size()) << "someone is there twice";
        EXPECT_FALSE(jetzt.mitglieder.isEmpty());
        const bool gesucht = !b.act.callsOf(u"GetCount"_s).isEmpty();
        EXPECT_TRUE(gesucht || alle == vorher.alle()) << "someone is lost";
        if (aktion == u"search" || aktion == u"adopt") {
            EXPECT_TRUE((jetzt.mitglieder + u' ').startsWith(vorher.mitglieder + u' '));
        }

        static const std::map<int, QString> tabelle{{0, u"H--"_s}, {4, u"H--"_s},  {5, u"H--"_s}, {8, u"-T-"_s},
                                                    {9, u"---"_s}, {12, u"-T-"_s}, {13, u"--F"_s}};
        if (jetzt.flagzahl != 1) {
            EXPECT_EQ(b.knoepfe(), tabelle.at(jetzt.flagzahl)) << jetzt.flagzahl;
        } else if (vorher.flagzahl == 1 || jetzt.mitglieder == vorher.mitglieder) {
            EXPECT_EQ(b.knoepfe(), knoepfe);
        }
        EXPECT_TRUE(b.haupt().Status().isHidden());
    }

    Buehne &b;
    std::mt19937 &m_zufall;
    QString m_entfernt;
};

QString zufallsgruppe(std::mt19937 &zufall)
{
    const auto eines = [&zufall](const QStringList &aus) {
        return aus[static_cast<qsizetype>(zufall() % static_cast<std::size_t>(aus.size()))];
    };
    QStringList personen;
    const auto anzahl = 2 + zufall() % 5;
    for (std::size_t i = 0; i < anzahl; ++i)
        personen
            += QStringList{u"P%1"_s.arg(i), eines({u"-"_s, u"-"_s, u"N"_s, u"H"_s, u"H"_s, u"h"_s}),
                           eines({u"-"_s, u"D1/M"_s, u"D1/M"_s, u"D1/M"_s, u"D2/M"_s, u"-/M"_s, u"M/M"_s, u"D1/"_s}),
                           eines({u"Alpha"_s, u"Alpha"_s, u"Alpha Nord"_s, u"Beta"_s, u"-"_s})}
                   .join(u' ');
    return personen.join(u"; "_s);
}

} // namespace

TEST(Zufall, KeepsTheRulesOfTheGroup)
{
    constexpr unsigned gruppen = 250;
    constexpr int laeufeJeGruppe = 8;
    int aktionen = 0;
    int mehrdeutig = 0;
    for (unsigned saat = 1; saat <= gruppen && !HasFailure(); ++saat) {
        SCOPED_TRACE(saat);
        std::mt19937 zufall(saat);
        Buehne b(zufallsgruppe(zufall));
        // Whoever comes upon an endless repetition deselects everything after a while.
        b.tisch.onYield = [&b] {
            if (b.tisch.yields > 20)
                b.treffer().clearSelection();
        };
        const QByteArray tabelle = beispiel::lies(b.tabelle());
        const auto kontakte = b.act.contacts;
        for (int lauf = 0; lauf < laeufeJeGruppe && !HasFailure(); ++lauf) {
            SCOPED_TRACE(lauf);
            b.act.contacts = kontakte;
            b.tisch.yields = 0;
            b.zeige(zufall() % b.act.contacts.size(), zufall() % 2 == 0);
            aktionen += Benutzer(b, zufall).spiele(6);
            mehrdeutig += b.mehrdeutig() != nullptr;
        }
        EXPECT_EQ(beispiel::lies(b.tabelle()), tabelle) << "the search only reads";
    }
    EXPECT_GT(aktionen, 8000);
    EXPECT_GT(mehrdeutig, 20) << "the dialog has to come up often enough to count";
}
