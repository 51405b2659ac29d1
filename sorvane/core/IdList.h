#ifndef SORVANE_CORE_IDLIST_H
#define SORVANE_CORE_IDLIST_H

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <vector>

#include "sorvane/core/Export.h"

namespace sorvane {

// The ids of a record's reference list. Up to kInline ids are held inside the
// record, more in a block of their own. Most reference lists are short, and a
// block per list made up about a quarter of reading a document into records
// and of releasing them. Reads like a std::vector<int64_t> and converts to
// one; setters take vectors.
class SORVANE_API IdList {
public:
    using value_type = int64_t;
    using size_type = size_t;
    using difference_type = std::ptrdiff_t;
    using reference = int64_t&;
    using const_reference = const int64_t&;
    using pointer = int64_t*;
    using const_pointer = const int64_t*;
    using iterator = int64_t*;
    using const_iterator = const int64_t*;

    // One cache line with the sizes.
    static constexpr size_t kInline = 7;

    IdList() noexcept {}
    IdList(std::initializer_list<int64_t> values) { assign(values.begin(), values.size()); }
    IdList(const std::vector<int64_t>& values) { assign(values.data(), values.size()); }
    IdList(const IdList& other) { assign(other.data(), other.size()); }
    IdList(IdList&& other) noexcept { take(other); }
    ~IdList() { release(); }

    IdList& operator=(const IdList& other) {
        if (this != &other) assign(other.data(), other.size());
        return *this;
    }
    IdList& operator=(IdList&& other) noexcept {
        if (this != &other) {
            release();
            take(other);
        }
        return *this;
    }
    IdList& operator=(const std::vector<int64_t>& values) {
        assign(values.data(), values.size());
        return *this;
    }

    // Replaces the ids with count ids from values (which may not lie in this list).
    void assign(const int64_t* values, size_t count);

    size_t size() const noexcept { return size_; }
    bool empty() const noexcept { return size_ == 0; }
    size_t capacity() const noexcept { return capacity_; }
    int64_t* data() noexcept { return onHeap() ? heap_ : inline_; }
    const int64_t* data() const noexcept { return onHeap() ? heap_ : inline_; }

    iterator begin() noexcept { return data(); }
    iterator end() noexcept { return data() + size_; }
    const_iterator begin() const noexcept { return data(); }
    const_iterator end() const noexcept { return data() + size_; }
    const_iterator cbegin() const noexcept { return begin(); }
    const_iterator cend() const noexcept { return end(); }

    int64_t& operator[](size_t index) noexcept { return data()[index]; }
    int64_t operator[](size_t index) const noexcept { return data()[index]; }
    int64_t& front() noexcept { return data()[0]; }
    int64_t front() const noexcept { return data()[0]; }
    int64_t& back() noexcept { return data()[size_ - 1]; }
    int64_t back() const noexcept { return data()[size_ - 1]; }

    void push_back(int64_t value);
    // Removes the id at position; returns where the next one now is.
    iterator erase(const_iterator position);
    // Inserts value before position; returns where it now is.
    iterator insert(const_iterator position, int64_t value);
    void reserve(size_t count);
    void clear() noexcept { size_ = 0; }

    std::vector<int64_t> toVector() const { return std::vector<int64_t>(begin(), end()); }
    operator std::vector<int64_t>() const { return toVector(); }

    friend bool operator==(const IdList& a, const IdList& b) noexcept { return equal(a.data(), a.size_, b.data(), b.size_); }
    friend bool operator!=(const IdList& a, const IdList& b) noexcept { return !(a == b); }
    friend bool operator==(const IdList& a, const std::vector<int64_t>& b) noexcept {
        return equal(a.data(), a.size_, b.data(), b.size());
    }
    friend bool operator==(const std::vector<int64_t>& a, const IdList& b) noexcept { return b == a; }
    friend bool operator!=(const IdList& a, const std::vector<int64_t>& b) noexcept { return !(a == b); }
    friend bool operator!=(const std::vector<int64_t>& a, const IdList& b) noexcept { return !(b == a); }

private:
    bool onHeap() const noexcept { return capacity_ > kInline; }
    void release() noexcept;
    void take(IdList& other) noexcept;
    // Room for at least count ids, the ids kept.
    void grow(size_t count);
    static bool equal(const int64_t* a, size_t an, const int64_t* b, size_t bn) noexcept;

    uint32_t size_ = 0;
    uint32_t capacity_ = kInline;
    union {
        int64_t inline_[kInline];
        int64_t* heap_;
    };
};

} // namespace sorvane

#endif
