#ifndef SORVANE_ARCHIVE_DOCUMENTURI_H
#define SORVANE_ARCHIVE_DOCUMENTURI_H

#include <cstdint>
#include <string>

#include "sorvane/core/Export.h"

namespace sorvane::archive {

// A uri that names a place outside any document folder: a root directory
// ("/x", "\x") or a drive ("C:x").
SORVANE_API bool isAbsoluteUri(const std::string& uri);

// A uri with a ".." segment ("/" and "\" both separate): it may climb out of
// the document's folder, so no reader follows it.
SORVANE_API bool climbsOutOfFolder(const std::string& uri);

// "data:<mimeType>;base64," and the standard base64 text of the bytes.
SORVANE_API std::string makeDataUri(const std::string& mimeType, const void* data, int64_t size);

} // namespace sorvane::archive

#endif
