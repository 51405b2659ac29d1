#ifndef SORVANE_ARCHIVE_DOCUMENTURI_H
#define SORVANE_ARCHIVE_DOCUMENTURI_H

#include <cstdint>
#include <string>

#include "sorvane/core/Export.h"

namespace sorvane::archive {
class FileProvider;
}

namespace sorvane::archive {

// A uri that names a place outside any document folder: a root directory
// ("/x", "\x") or a drive ("C:x").
SORVANE_API bool isAbsoluteUri(const std::string& uri);

// A uri with a ".." segment ("/" and "\" both separate): it may climb out of
// the document's folder, so no reader follows it.
SORVANE_API bool climbsOutOfFolder(const std::string& uri);

// The one check before a reader opens a file a document names: true when the
// uri climbs out lexically, or when, with the folder and the file both
// resolved on disk (symbolic links followed), the file lies outside the
// folder. Providers that are not a disk folder (archives, memory) hold no
// links, so only the lexical test applies to them.
SORVANE_API bool leavesFolder(const FileProvider* provider, const std::string& uri);
// The same for a file named from another file on disk (a material library
// named by a mesh, a texture named by a material): the folder is `from`'s.
SORVANE_API bool leavesFolderOf(const std::string& from, const std::string& uri);

// "data:<mimeType>;base64," and the standard base64 text of the bytes.
SORVANE_API std::string makeDataUri(const std::string& mimeType, const void* data, int64_t size);

// The name a document gives a new payload file: the uri when it is free (an
// absolute one is refused), else mainBase, the kept characters of name and
// number joined by "_", then up to ten random numbers. provider may be null
// and overwrite takes any name; mainBase is empty where the storage mode
// names payloads without the main file.
SORVANE_API std::string findFreeFileName(const FileProvider* provider, bool overwrite, const char* uri,
                                         const char* name, int64_t number, const std::string& extension,
                                         const std::string& mainBase);

} // namespace sorvane::archive

#endif
