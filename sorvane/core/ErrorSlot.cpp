#include "sorvane/core/ErrorSlot.h"

#include <cstdint>
#include <cstring>

#include "sorvane/flat/Frame.h"
#include "sorvane/sorvane.h"

std::string sorvane_errorMessage;

int32_t sorvane_getErrorMessage(char* out, int64_t* outSize) {
    if (!outSize) return sorvane::flat::fail("outSize is NULL");
    // Unsigned on purpose: a negative capacity counts as large here, unlike
    // every other text result.
    const uint64_t length = sorvane_errorMessage.size();
    if (static_cast<uint64_t>(*outSize) <= length) {
        *outSize = static_cast<int64_t>(length + 1);
        return -1;
    }
    if (!out) return sorvane::flat::fail("out is NULL");
    std::memcpy(out, sorvane_errorMessage.c_str(), length + 1);
    return 0;
}

void sorvane_setErrorMessage(const char* str) { sorvane_errorMessage = str ? str : ""; }

void sorvane_clearErrorMessage(void) { sorvane_errorMessage.clear(); }
