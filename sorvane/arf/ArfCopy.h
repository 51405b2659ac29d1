#ifndef SORVANE_ARF_ARFCOPY_H
#define SORVANE_ARF_ARFCOPY_H

#include <filesystem>

#include "sorvane/arf/Arf.h"
#include "sorvane/core/Export.h"

namespace sorvane::arf {

// Writes the document again at `path`, in the storage mode its extension
// names (.arf/.json main file with payload files, .arfz/.zip archive,
// "memory:"), and returns the new document. Every payload is read from where
// it lies and stored again where the new storage mode puts it; embedded ones
// stay embedded, a payload in a file of its own keeps the file's name. The
// source document is left as it is.
SORVANE_API Arf saveArfAs(const Arf& source, const std::filesystem::path& path);
// The same, taking the source's tree instead of copying it: the tree is
// pointed at the new storage and every payload moved there one by one, so
// that only one tree is ever held. Every handle of the source sees the new
// document afterwards. After a failure (a payload that cannot be read or
// written) the source's files are untouched but its tree may have given some
// payloads to the new storage already: drop it, do not save it. Items that
// share an id are copied as the form above does.
SORVANE_API Arf saveArfAs(Arf&& source, const std::filesystem::path& path);

} // namespace sorvane::arf

#endif
