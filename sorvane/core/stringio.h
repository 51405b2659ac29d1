#ifndef SORVANE_CORE_STRINGIO_H
#define SORVANE_CORE_STRINGIO_H

// Whole text files: as one string, or cut into lines.

#include <filesystem>
#include <string>
#include <vector>

#include "sorvane/core/Export.h"

namespace sorvane {

// The file's bytes as they are (binary read).
SORVANE_API std::string loadStringFile(const char* path);
SORVANE_API std::string loadStringFile(const std::string& path);
SORVANE_API std::string loadStringFile(const std::filesystem::path& path);

// The non-blank lines of a text file; "\n", "\r\n" and "\r" all end a line.
// With skipComments, lines starting with "#" are dropped. No trimming.
SORVANE_API std::vector<std::string> loadStringLines(const std::string& path, bool skipComments);

} // namespace sorvane

#endif
