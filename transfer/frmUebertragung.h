#pragma once

#include <QDialog>

#include "startup/Haupt.h"

class frmÜbertragung : public QDialog
{
public:
    explicit frmÜbertragung(Haupt &haupt);
};
