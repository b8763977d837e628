#pragma once

#include <QStringView>

#include "platform/jet/IndexKey.h"

namespace jet {

/// Appends the key of a text in the General order, without the byte that says "not Null". Capitals and small letters
/// have the same key; so have texts that differ in trailing blanks only, or behind the 255th character.
/// In Jet 3, characters outside code page 1252 sort behind all others; no stored text has them.
void appendTextKey(QStringView text, bool jet4, bool ascending, KeyBytes &key);

/// The same for the end of a range, but only as much of the key as all programs agree on: some get accents and marks
/// behind letters like "ß" wrong. Returns whether that is the whole key.
bool appendTextBound(QStringView text, bool jet4, bool ascending, KeyBytes &key);

/// Whether a letter of the text sorts as several ("ß" as "ss"): some programs get the keys of such texts wrong.
bool hasExpandingLetter(QStringView text, bool jet4);

/// The order of two texts: below, equal to or above 0, as their keys compare.
int compareTexts(bool jet4, QStringView left, QStringView right);

} // namespace jet
