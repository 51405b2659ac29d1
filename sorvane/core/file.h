#ifndef SORVANE_CORE_FILE_H
#define SORVANE_CORE_FILE_H

// Path strings and whole-file reads and writes. "/" and "\\" both count as
// separators, so paths written on either kind of system pass through.

#include <cstdio>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "sorvane/core/Export.h"

namespace sorvane {

// ".ext" from the last dot after the last separator; a dot that starts a bare
// name (".bashrc") is not an extension, one directly behind a separator is.
SORVANE_API std::string getFileExtension(const std::string& path);
SORVANE_API std::string removeFileExtension(const std::string& path);
// `extension` carries its own dot.
SORVANE_API std::string replaceFileExtension(const std::string& path, const std::string& extension);
// Everything before the last separator; "" for a bare name and for a name
// directly under the root.
SORVANE_API std::string getDirectoryName(const std::string& path);
SORVANE_API std::string getFileName(const std::string& path);
// first: file name, second: directory.
SORVANE_API std::pair<std::string, std::string> splitFilePath(const std::string& path);
// `second` wins when absolute ("/..." or a drive letter "X:...").
SORVANE_API std::string joinFilePaths(const std::string& first, const std::string& second);
SORVANE_API std::string replaceFileName(const std::string& path, const std::string& name);
// Pieces between separators. A leading "" marks an absolute path, a trailing
// "" a trailing separator; other empty pieces are dropped. Paths shorter than
// two characters give no components.
SORVANE_API std::vector<std::string> getPathComponents(const std::string& path);
// `path` seen from the directory `base`, joined with "/"; "" when equal.
SORVANE_API std::string relativizePath(const std::string& path, const std::string& base);
// True when stat succeeds, directories included.
SORVANE_API bool fileExists(const std::string& path);
SORVANE_API bool fileExists(const std::filesystem::path& path);

SORVANE_API std::vector<unsigned char> loadFile(const char* path);
SORVANE_API std::vector<unsigned char> loadFile(const std::string& path);
SORVANE_API std::vector<unsigned char> loadFile(const std::filesystem::path& path);

SORVANE_API void saveFile(const char* path, const unsigned char* data, unsigned long size);
SORVANE_API void saveFile(const std::string& path, const unsigned char* data, unsigned long size);
SORVANE_API void saveFile(const std::filesystem::path& path, const unsigned char* data, unsigned long size);
SORVANE_API void saveFile(const char* path, const std::vector<unsigned char>& data);
SORVANE_API void saveFile(const std::string& path, const std::vector<unsigned char>& data);
SORVANE_API void saveFile(const std::filesystem::path& path, const std::vector<unsigned char>& data);

// Reads the whole file into `buffer` and returns its size; with a null
// buffer only the size is returned.
SORVANE_API long loadDataFile(void* buffer, long bufferSize, const char* path);
SORVANE_API long loadDataFile(void* buffer, long bufferSize, const std::string& path);
SORVANE_API long loadDataFile(void* buffer, long bufferSize, const std::filesystem::path& path);

} // namespace sorvane

#endif
