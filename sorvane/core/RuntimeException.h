#ifndef SORVANE_CORE_RUNTIMEEXCEPTION_H
#define SORVANE_CORE_RUNTIMEEXCEPTION_H

#include <exception>
#include <string>

#include "sorvane/core/Export.h"

namespace sorvane {

// The exception nearly every failure of the library is. The location form
// prefixes the message with "file:line function(): ".
class SORVANE_API RuntimeException : public std::exception {
public:
    explicit RuntimeException(const std::string& message);
    explicit RuntimeException(const char* format, ...) __attribute__((format(printf, 2, 3)));
    RuntimeException(const char* file, int line, const char* function, const char* format, ...)
        __attribute__((format(printf, 5, 6)));

    const char* what() const noexcept override;

    const char* file = nullptr;
    int line = 0;
    const char* function = nullptr;
    std::string message;
};

} // namespace sorvane

// The one throw site form used throughout the library.
#define SORVANE_THROW(...) throw ::sorvane::RuntimeException(__FILE__, __LINE__, __func__, __VA_ARGS__)

#endif
