// Keeps the error class in one place; its numbers are in the header.
#include "platform/dao/DaoError.h"
