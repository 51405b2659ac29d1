#ifndef SORVANE_ARCHIVE_BASE64_H
#define SORVANE_ARCHIVE_BASE64_H

#include "sorvane/core/Export.h"

namespace sorvane {

// The two alphabets: 1 ends in "+/", 2 (URL and file name safe) in "-_".
enum Base64Encoding {
    BASE64_ENCODING_STANDARD = 1,
    BASE64_ENCODING_URL = 2,
};

// Six-bit code of one character; both alphabets are accepted at once.
SORVANE_API unsigned char char2code(unsigned char c);

// Both coding functions are called twice: with a null out to learn the size,
// then with a buffer of that size. Neither writes a terminating NUL.
// Returns the number of characters of the text.
SORVANE_API long base64encode(char* out, long outSize, const void* in, long inSize, Base64Encoding encoding,
                              char pad);
// Returns the number of bytes of the message. NUL, "." and "=" end it.
SORVANE_API long base64decode(void* out, long outSize, const char* in, long inSize);

} // namespace sorvane

#endif
