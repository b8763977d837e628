#pragma once

#include <QStringView>

#include "platform/jet/IndexKey.h"

namespace jet {

/// Appends the key of a text in the General order, without the byte that says "not Null". Capitals and small letters
/// have the same key; so have texts that differ in trailing blanks only, or behind the 255th character.
/// In Jet 3, characters outside code page 1252 sort behind all others; no stored text has them.
void appendTextKey(QStringView text, bool jet4, bool ascending, KeyBytes &key);

/// Whether all programs make the same key of the text, and of no other. Some count letters like "ß" as one instead of
/// two, which misplaces accents and marks behind them; "Müßig" and "Müssig" have equal keys, but not with them.
bool isCertainText(QStringView text, bool jet4);
/// The ends between which all keys of the texts with these letters lie, or begin with one of them.
void appendTextSpan(QStringView text, bool jet4, bool ascending, KeyBytes &first, KeyBytes &last);

/// Whether a letter of the text sorts as several ("ß" as "ss"): some programs get the keys of such texts wrong.
bool hasExpandingLetter(QStringView text, bool jet4);

/// The order of two texts: below, equal to or above 0, as their keys compare.
int compareTexts(bool jet4, QStringView left, QStringView right);

} // namespace jet
