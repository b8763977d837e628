// The one place that knows which number and words belong to which failure.
#include "platform/dao/embedded/Errors.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace dao {

namespace {

struct Description {
    int number;
    const char16_t *text; // %1: the table, field, file or name concerned
};

// clang-format off
constexpr Description descriptions[] = {
    {number::OutOfMemory, u"Nicht genügend Speicher."},
    {number::BadPattern, u"Ungültige Musterzeichenfolge: %1"},
    {number::Unmapped, u"%1"},
    {number::TableExists, u"Die Tabelle '%1' gibt es schon."},
    {number::RelationshipExists, u"Das Objekt '%1' gibt es schon."},
    {number::UnknownIndex, u"Der Index '%1' ist nicht bekannt."},
    {number::EditMissing, u"Es wird geschrieben, ohne dass der Datensatz vorher mit Edit geöffnet wurde."},
    {DaoError::NoCurrentRecord, u"Kein aktueller Datensatz."},
    {DaoError::DuplicateKey, u"Die Änderung würde in einem Index, einem Primärschlüssel oder einer Beziehung doppelte "
                             "Werte ergeben und wurde nicht ausgeführt."},
    {DaoError::FileNotFound, u"Datei '%1' nicht gefunden."},
    {DaoError::DiskFull, u"Auf dem Datenträger ist nicht genug Platz."},
    {DaoError::ReadOnly, u"Aktualisieren nicht möglich. Die Datenbank oder das Objekt ist schreibgeschützt."},
    {DaoError::NotAValidPassword, u"Kein zulässiges Kennwort."},
    {DaoError::FileFull, u"Die Datenbank hat ihre größte Länge erreicht."},
    {DaoError::DiskFailed, u"Fehler beim Lesen oder Schreiben des Datenträgers."},
    {DaoError::ConnectionLost, u"Die Verbindung zum Datenträger oder zur Netzwerkfreigabe ist unterbrochen."},
    {DaoError::FileInUse, u"Die Datei '%1' ist von einem anderen Programm gesperrt."},
    {DaoError::RowTooLong, u"Der Datensatz ist zu groß."},
    {number::NotADatabase, u"Die Datenbank '%1' ist beschädigt und kann nicht geöffnet werden."},
    {DaoError::CannotLock, u"Der Ordner der Datei '%1' ist schreibgeschützt."},
    {DaoError::CannotOpen, u"Die Datei '%1' kann nicht geöffnet werden."},
    {DaoError::TooFewParameters,
     u"1 Parameter wurden erwartet, aber es wurden zu wenig Parameter übergeben. (Unbekannter Name: %1)"},
    {number::SelectInExecute, u"Eine Auswahlabfrage kann nicht ausgeführt werden."},
    {DaoError::SyntaxInExpression, u"Syntaxfehler in Abfrageausdruck '%1'."},
    {DaoError::UnknownTable,
     u"Die Eingangstabelle oder Abfrage '%1' wurde nicht gefunden. Gibt es sie, und ist ihr Name richtig geschrieben?"},
    {number::AmbiguousColumn, u"Das Feld '%1' kommt in mehr als einer Tabelle der FROM-Klausel vor."},
    {number::UnknownFunction, u"Undefinierte Funktion '%1' in Ausdruck."},
    {number::BadBrackets, u"Ungültige Klammern um den Namen '%1'."},
    {number::UnknownInsertColumn, u"Die INSERT INTO-Anweisung enthält den unbekannten Feldnamen '%1'."},
    {number::NotSql, u"Ungültige SQL-Anweisung; SELECT, INSERT, UPDATE, DELETE, CREATE oder DROP erwartet: %1"},
    {number::SyntaxInFrom, u"Syntaxfehler in FROM-Klausel bei '%1'."},
    {DaoError::SyntaxInInsert, u"Syntaxfehler in der INSERT INTO-Anweisung bei '%1'."},
    {number::SyntaxInSelect, u"Syntaxfehler in der SELECT-Anweisung bei '%1'."},
    {number::AfterEnd, u"Nach dem Ende der SQL-Anweisung stehen noch Zeichen: %1"},
    {DaoError::SyntaxInUpdate, u"Syntaxfehler in der UPDATE-Anweisung bei '%1'."},
    {DaoError::TooLong, u"Das Feld '%1' ist zu klein für die Daten."},
    {number::NotUpdatableField, u"Das Feld '%1' kann nicht geändert werden."},
    {number::RowDeleted, u"Der Datensatz ist inzwischen gelöscht."},
    {number::UnknownKind, u"Für Datenbanken der Art '%1' gibt es keinen Treiber."},
    {DaoError::RelatedRowsExist, u"Der Datensatz kann nicht gelöscht oder geändert werden, weil die Tabelle '%1' "
                                 "Datensätze enthält, die zu ihm gehören."},
    {DaoError::RelatedRowMissing,
     u"Der Datensatz kann nicht gespeichert werden, weil in der Tabelle '%1' der Datensatz fehlt, zu dem er gehört."},
    {number::DatabaseExists, u"Die Datenbank '%1' gibt es schon."},
    {number::InvalidOperation, u"Ungültige Operation."},
    {number::NotSupported, u"Diese Operation wird nicht unterstützt."},
    {DaoError::RecordLocked, u"Aktualisieren nicht möglich; ein anderes Programm hält die Datei gesperrt."},
    {DaoError::ItemNotFound, u"Element '%1' in dieser Auflistung nicht gefunden."},
    {number::IndexExists, u"Den Index '%1' gibt es schon."},
    {number::SyntaxInConstraint, u"Syntaxfehler in der CONSTRAINT-Klausel bei '%1'."},
    {number::SyntaxInCreateTable, u"Syntaxfehler in der CREATE TABLE-Anweisung bei '%1'."},
    {number::SyntaxInCreateIndex, u"Syntaxfehler in der CREATE INDEX-Anweisung bei '%1'."},
    {number::SyntaxInColumn, u"Syntaxfehler in der Felddefinition bei '%1'."},
    {number::SyntaxInAlterTable, u"Die ALTER TABLE-Anweisung wird nicht unterstützt."},
    {number::SyntaxInDrop, u"Syntaxfehler in der DROP-Anweisung bei '%1'; unterstützt wird DROP TABLE."},
    {DaoError::Required, u"Das Feld '%1' darf nicht Null sein; es muss einen Wert enthalten."},
    {DaoError::ZeroLength, u"Das Feld '%1' darf keine leere Zeichenfolge enthalten."},
    {DaoError::RuleViolated, u"Eine Gültigkeitsregel des Feldes '%1' lässt den Wert nicht zu."},
    {DaoError::UnrecognisedFormat, u"Unbekanntes Datenbankformat '%1'."},
    {number::ValueCount, u"Die Anzahl der Werte und die Anzahl der Zielfelder sind nicht gleich."},
    {number::NumberTooLarge, u"Numerischer Feldüberlauf im Feld '%1'."},
    {number::DuplicateName, u"Anfügen nicht möglich. In der Auflistung gibt es schon ein Objekt mit dem Namen '%1'."},
    {number::IndexColumnUnknown, u"Index oder Beziehung nennen das unbekannte Feld '%1'."},
    {DaoError::ObjectClosed, u"Das Objekt ist geschlossen oder nicht mehr vorhanden."},
    {DaoError::TypeConversion, u"Fehler bei der Datentypkonvertierung im Feld '%1'."},
    {number::Damaged, u"Die Datenbank ist beschädigt."},
    {number::CriterionType, u"Datentypen in Kriterienausdruck unverträglich (Feld '%1')."},
};

struct Mapping {
    StorageError::Kind kind;
    int opening; // number while a database is being opened or made
    int working; // number at any other time
};

constexpr Mapping mappings[] = {
    {StorageError::Missing, DaoError::FileNotFound, DaoError::FileNotFound},
    {StorageError::NotThisFormat, DaoError::UnrecognisedFormat, DaoError::UnrecognisedFormat},
    {StorageError::WrongPassword, DaoError::NotAValidPassword, DaoError::NotAValidPassword},
    {StorageError::Damaged, number::NotADatabase, number::Damaged},
    {StorageError::ReadOnly, DaoError::ReadOnly, DaoError::ReadOnly},
    {StorageError::FolderReadOnly, DaoError::CannotLock, DaoError::CannotLock},
    {StorageError::NoPermission, DaoError::CannotOpen, DaoError::CannotOpen},
    {StorageError::Locked, DaoError::FileInUse, DaoError::RecordLocked},
    {StorageError::DiskFull, DaoError::DiskFull, DaoError::DiskFull},
    {StorageError::FileFull, DaoError::FileFull, DaoError::FileFull},
    {StorageError::ConnectionLost, DaoError::ConnectionLost, DaoError::ConnectionLost},
    {StorageError::InputOutput, DaoError::DiskFailed, DaoError::DiskFailed},
    {StorageError::NoSuchTable, DaoError::UnknownTable, DaoError::UnknownTable},
    {StorageError::NoSuchColumn, number::IndexColumnUnknown, number::IndexColumnUnknown},
    {StorageError::NoSuchIndex, number::UnknownIndex, number::UnknownIndex},
    {StorageError::AlreadyExists, number::DatabaseExists, number::RelationshipExists},
    {StorageError::Duplicate, DaoError::DuplicateKey, DaoError::DuplicateKey},
    {StorageError::Required, DaoError::Required, DaoError::Required},
    {StorageError::ZeroLength, DaoError::ZeroLength, DaoError::ZeroLength},
    {StorageError::TooLong, DaoError::TooLong, DaoError::TooLong},
    {StorageError::RowTooLong, DaoError::RowTooLong, DaoError::RowTooLong},
    {StorageError::OutOfRange, number::NumberTooLarge, number::NumberTooLarge},
    {StorageError::NotEncodable, DaoError::TypeConversion, DaoError::TypeConversion},
    {StorageError::WrongType, DaoError::TypeConversion, DaoError::TypeConversion},
    {StorageError::RuleViolated, DaoError::RuleViolated, DaoError::RuleViolated},
    {StorageError::ParentMissing, DaoError::RelatedRowMissing, DaoError::RelatedRowMissing},
    {StorageError::ChildrenExist, DaoError::RelatedRowsExist, DaoError::RelatedRowsExist},
    {StorageError::RowGone, number::RowDeleted, number::RowDeleted},
    {StorageError::Unsupported, number::NotSupported, number::NotSupported},
};
// clang-format on

int numberOf(StorageError::Kind kind, Doing doing)
{
    if (kind == StorageError::AlreadyExists && doing == Doing::CreateTable)
        return number::TableExists;
    if (kind == StorageError::AlreadyExists && doing == Doing::CreateIndex)
        return number::IndexExists;
    const auto *mapping = std::ranges::find(mappings, kind, &Mapping::kind);
    Q_ASSERT(mapping != std::end(mappings));
    return doing == Doing::Open || doing == Doing::CreateDatabase ? mapping->opening : mapping->working;
}

} // namespace

DaoError daoError(const StorageError &error, Doing doing)
{
    const DaoError plain = daoError(numberOf(error.kind(), doing), error.item());
    // The driver's words name file and cause; a password is the one thing about which nothing more may be said.
    if (error.kind() == StorageError::WrongPassword || error.text().isEmpty())
        return plain;
    return DaoError(plain.Number(), plain.Description() + u' ' + error.text());
}

DaoError daoError(int number, const QString &item)
{
    const auto *description = std::ranges::find(descriptions, number, &Description::number);
    Q_ASSERT(description != std::end(descriptions));
    QString text = QString::fromUtf16(description->text);
    if (item.isEmpty())
        text.remove(u" '%1'"_s);
    return DaoError(number, text.replace(u"%1"_s, item));
}

} // namespace dao
