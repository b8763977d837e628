// The run-time errors that every part of the program may raise, with their standard texts.
#include "platform/errors/RunTimeError.h"

using namespace Qt::StringLiterals;

RunTimeError::RunTimeError(int number)
    : RunTimeError(number, standardText(number))
{ }

RunTimeError::RunTimeError(int number, const QString &description)
    : m_number(number)
    , m_description(description)
    , m_what(u"%1: %2"_s.arg(number).arg(description).toUtf8())
{ }

QString RunTimeError::standardText(int number)
{
    switch (number) {
    case Overflow:
        return u"Überlauf"_s;
    case SubscriptOutOfRange:
        return u"Index außerhalb des gültigen Bereichs"_s;
    case TypeMismatch:
        return u"Typen unverträglich"_s;
    case DeviceFailed:
        return u"Fehler beim Lesen oder Schreiben eines Geräts"_s;
    case PathAccess:
        return u"Fehler beim Zugriff auf Pfad oder Datei"_s;
    case PathNotFound:
        return u"Pfad nicht gefunden"_s;
    case ObjectNotSet:
        return u"Objektvariable nicht festgelegt"_s;
    case InvalidFileFormat:
        return u"Ungültiges Dateiformat"_s;
    case InvalidPropertyValue:
        return u"Ungültiger Eigenschaftswert"_s;
    case CannotCreateObject:
        return u"Objekterstellung nicht möglich"_s;
    case UnknownMember:
        return u"Objekt unterstützt diese Eigenschaft oder Methode nicht"_s;
    case AutomationFailure:
        return u"Automatisierungsfehler"_s;
    case WrongArgumentCount:
        return u"Falsche Anzahl an Argumenten oder ungültige Zuweisung zu einer Eigenschaft"_s;
    case ServerGone:
        return u"Das andere Programm ist nicht mehr da oder antwortet nicht"_s;
    default:
        return u"Anwendungs- oder objektdefinierter Fehler"_s;
    }
}
