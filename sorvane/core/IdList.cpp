#include "sorvane/core/IdList.h"

#include <cstring>
#include <new>
#include <stdexcept>

namespace sorvane {

namespace {

// The counts are kept in 32 bits: a list past that is refused like a vector past max_size().
constexpr size_t kMaxIds = UINT32_MAX;

void checkCount(size_t count) {
    if (count > kMaxIds) throw std::length_error("IdList: too many ids");
}

} // namespace

void IdList::assign(const int64_t* values, size_t count) {
    if (count > capacity_) {
        checkCount(count);
        // A new block: the old ids are not kept.
        int64_t* block = static_cast<int64_t*>(::operator new(count * sizeof(int64_t)));
        release();
        heap_ = block;
        capacity_ = static_cast<uint32_t>(count);
    }
    if (count) std::memcpy(data(), values, count * sizeof(int64_t));
    size_ = static_cast<uint32_t>(count);
}

void IdList::release() noexcept {
    if (onHeap()) ::operator delete(heap_);
    capacity_ = kInline;
    size_ = 0;
}

void IdList::take(IdList& other) noexcept {
    size_ = other.size_;
    capacity_ = other.capacity_;
    if (other.onHeap()) {
        heap_ = other.heap_;
        other.capacity_ = kInline;
    } else if (size_) {
        std::memcpy(inline_, other.inline_, size_ * sizeof(int64_t));
    }
    other.size_ = 0;
}

void IdList::grow(size_t count) {
    if (count <= capacity_) return;
    checkCount(count);
    size_t next = static_cast<size_t>(capacity_) * 2;
    if (next < count) next = count;
    if (next > kMaxIds) next = kMaxIds;
    int64_t* block = static_cast<int64_t*>(::operator new(next * sizeof(int64_t)));
    if (size_) std::memcpy(block, data(), size_ * sizeof(int64_t));
    const uint32_t size = size_;
    release();
    heap_ = block;
    capacity_ = static_cast<uint32_t>(next);
    size_ = size;
}

void IdList::reserve(size_t count) { grow(count); }

void IdList::push_back(int64_t value) {
    if (size_ == capacity_) grow(static_cast<size_t>(size_) + 1);
    data()[size_++] = value;
}

IdList::iterator IdList::erase(const_iterator position) {
    const size_t at = static_cast<size_t>(position - data());
    int64_t* ids = data();
    std::memmove(ids + at, ids + at + 1, (size_ - at - 1) * sizeof(int64_t));
    --size_;
    return ids + at;
}

IdList::iterator IdList::insert(const_iterator position, int64_t value) {
    const size_t at = static_cast<size_t>(position - data());
    if (size_ == capacity_) grow(static_cast<size_t>(size_) + 1);
    int64_t* ids = data();
    std::memmove(ids + at + 1, ids + at, (size_ - at) * sizeof(int64_t));
    ids[at] = value;
    ++size_;
    return ids + at;
}

bool IdList::equal(const int64_t* a, size_t an, const int64_t* b, size_t bn) noexcept {
    return an == bn && (an == 0 || std::memcmp(a, b, an * sizeof(int64_t)) == 0);
}

} // namespace sorvane
