#ifndef SORVANE_CORE_ERRORSLOT_H
#define SORVANE_CORE_ERRORSLOT_H

#include <string>

#include "sorvane/core/Export.h"

// The one process-wide error slot of the flat interface: the text of the last
// failure reported by a flat function, or empty. Not per thread.
extern "C" SORVANE_API std::string sorvane_errorMessage;

#endif
