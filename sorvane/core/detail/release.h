#ifndef SORVANE_CORE_DETAIL_RELEASE_H
#define SORVANE_CORE_DETAIL_RELEASE_H

// Internal: frees what members hold now, in the order given, instead of in
// the reverse order C++ destroys members. A record read from a document
// allocates its members in key order; glibc frees a large tree of such
// small blocks markedly faster in that order than in reverse.

#include <type_traits>
#include <utility>

namespace sorvane::detail {

template <class T>
void releaseMember(T& member) {
    if constexpr (!std::is_trivially_destructible_v<T>) {
        // A swap with an empty value, not an assignment: a string moved onto
        // keeps its own block when the source is short.
        T empty{};
        using std::swap;
        swap(member, empty);
    }
}

template <class... T>
void releaseInOrder(T&... members) {
    (releaseMember(members), ...);
}

} // namespace sorvane::detail

#endif
