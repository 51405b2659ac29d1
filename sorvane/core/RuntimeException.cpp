#include "sorvane/core/RuntimeException.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace sorvane {

RuntimeException::RuntimeException(const std::string& message) : message(message) {}

RuntimeException::RuntimeException(const char* format, ...) {
    // Grow until the formatter is satisfied: double on an error, jump to the
    // reported length when it is known.
    std::string text(100, '\0');
    for (;;) {
        va_list args;
        va_start(args, format);
        int n = std::vsnprintf(&text[0], text.size(), format, args);
        va_end(args);
        if (n < 0) {
            text.resize(text.size() * 2);
        } else if (static_cast<size_t>(n) >= text.size()) {
            text.resize(static_cast<size_t>(n) + 1);
        } else {
            text.resize(static_cast<size_t>(n));
            break;
        }
    }
    message = std::move(text);
}

RuntimeException::RuntimeException(const char* file_, int line_, const char* function_, const char* format, ...)
    : file(file_), line(line_), function(function_) {
    if (file) message += file;
    if (line > 0) {
        message += ':';
        message += std::to_string(line);
    }
    if (function) {
        message += ' ';
        message += function;
        message += "(): ";
    }

    // Most messages fit the stack buffer; longer ones are formatted a second
    // time into a block of exactly the right size.
    char buffer[256];
    va_list args;
    va_start(args, format);
    int n = std::vsnprintf(buffer, sizeof buffer, format, args);
    va_end(args);
    if (n < 0) return;
    if (static_cast<size_t>(n) < sizeof buffer) {
        message.append(buffer, static_cast<size_t>(n));
        return;
    }
    std::unique_ptr<char, decltype(&std::free)> big(static_cast<char*>(std::malloc(static_cast<size_t>(n) + 1)),
                                                   &std::free);
    if (!big) return; // out of memory: the text is left out, the exception still stands
    va_start(args, format);
    std::vsnprintf(big.get(), static_cast<size_t>(n) + 1, format, args);
    va_end(args);
    message.append(big.get(), static_cast<size_t>(n));
}

const char* RuntimeException::what() const noexcept { return message.c_str(); }

} // namespace sorvane
