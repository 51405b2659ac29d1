#ifndef SORVANE_ARF_ANIMATION_BUILTINFRAMEWORKS_H
#define SORVANE_ARF_ANIMATION_BUILTINFRAMEWORKS_H

// The built-in frameworks' tables, generated at build time from
// codegen/data/animation_frameworks.json. Internal to the library.

#include "sorvane/arf/animation/data/AnimationValue.h"

namespace sorvane::arf::detail {

struct BuiltinRow {
    const char* name;
    float min; // weight rows only
    float max;
};

struct BuiltinFramework {
    const char* urn;
    const char* type;
    AnimationValueType valueType;
    bool known;             // what AnimationFramework::knows answers
    const BuiltinRow* rows; // null when the rows are named by their index
    long rowCount;
    bool numberedRows;
};

// The frameworks in the order create compares URNs.
const BuiltinFramework* builtinFrameworks(long* count);

} // namespace sorvane::arf::detail

#endif
