// The transfer dialog.
#include "transfer/frmUebertragung.h"

frmÜbertragung::frmÜbertragung(Haupt &)
{
}
