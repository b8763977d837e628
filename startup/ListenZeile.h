#pragma once

#include <QListWidget>

/// Appends a line to a list, high enough for the dots of capital umlauts, which some fonts draw above their own height.
inline void fuegeZeileAn(QListWidget &liste, const QString &text)
{
    auto *zeile = new QListWidgetItem(text, &liste);
    zeile->setSizeHint(QSize(0, liste.fontMetrics().height() + 6));
}
