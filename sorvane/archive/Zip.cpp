#include "sorvane/archive/Zip.h"

#include <zip.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <errno.h>
#include <fcntl.h>
#include <unistd.h>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/core/detail/ReadFile.h"

namespace fs = std::filesystem;

namespace sorvane::archive {

namespace {

// libzip's text for one of its error codes.
std::string codeText(int code) {
    zip_error_t error;
    zip_error_init_with_code(&error, code);
    std::string text = zip_error_strerror(&error);
    zip_error_fini(&error);
    return text;
}

struct zip* openArchive(const fs::path& path, bool creating, bool forChanges = false) {
    int code = 0;
    // An archive opened for changes must exist; libzip writes its changes to
    // a temporary file and renames it over the archive when it is closed.
    const int flags = creating ? ZIP_CREATE : forChanges ? 0 : ZIP_RDONLY;
    struct zip* archive = zip_open(path.c_str(), flags, &code);
    if (!archive)
        SORVANE_THROW(creating ? "Error creating file %s: %s" : "Error opening file %s: %s", path.c_str(),
                      codeText(code).c_str());
    return archive;
}

// Deflate cannot expand beyond about 1032:1; a larger claim is a broken or
// hostile directory, refused before anything is allocated for it.
constexpr uint64_t kDeflateRatio = 1032;
constexpr uint64_t kDeflateSlack = 1024;
// Other methods have no useful bound (bzip2 reaches millions to one): a
// larger claim than this is checked by inflating once, into a small buffer.
constexpr uint64_t kVerifyAbove = 16u << 20;
// Larger compressed entries are not kept inflated: a part of one is read by
// inflating up to it.
constexpr int64_t kCacheLimit = int64_t(256) << 20;
constexpr int64_t kShortRead = 64 << 10;
// From this size on, an added entry waits for the close in a file beside the
// archive rather than in memory: an archive of large payloads is then written
// without holding all of them at once.
constexpr int64_t kSpillSize = int64_t(1) << 20;

// Whether the entry really holds `size` bytes, counted without keeping them.
bool holdsSize(struct zip* archive, const char* name, uint64_t size) {
    zip_file_t* file = zip_fopen(archive, name, 0);
    if (!file) return false;
    char scratch[16384];
    uint64_t total = 0;
    zip_int64_t got = 0;
    while (total <= size && (got = zip_fread(file, scratch, sizeof scratch)) > 0) total += static_cast<uint64_t>(got);
    zip_fclose(file);
    return got == 0 && total == size;
}

} // namespace

// One file beside the archive that large added entries are appended to; it
// goes when the last entry in it is written or dropped.
struct Zip::Spill {
    std::string path;
    int fd = -1;
    int64_t size = 0;
    Spill() = default;
    Spill(const Spill&) = delete;
    Spill& operator=(const Spill&) = delete;
    ~Spill() {
        if (fd >= 0) ::close(fd);
        if (!path.empty()) ::unlink(path.c_str());
    }
    bool open(const std::string& base) {
        path = base + ".XXXXXX";
        // Not inherited by programs the caller starts meanwhile.
        fd = ::mkostemp(&path[0], O_CLOEXEC);
        if (fd < 0) path.clear();
        return fd >= 0;
    }
    // Appends the blocks; false (and the file's end unchanged) on a failed write.
    bool append(const FileProvider::Block* blocks, size_t count) {
        int64_t at = size;
        for (size_t i = 0; i < count; ++i) {
            const char* bytes = static_cast<const char*>(blocks[i].data);
            size_t left = static_cast<size_t>(blocks[i].size);
            while (left > 0) {
                const ssize_t n = ::pwrite(fd, bytes, std::min(left, size_t(1) << 30), static_cast<off_t>(at));
                if (n < 0 && errno == EINTR) continue;
                if (n <= 0) return false;
                bytes += n;
                at += n;
                left -= static_cast<size_t>(n);
            }
        }
        size = at;
        return true;
    }
};

struct Zip::Entry {
    std::string zipName;      // the name libzip knows it by (after the backslash retry)
    int64_t size = 0;
    bool seekable = false;    // stored and not encrypted: zip_fseek works
    const Pending* pending = nullptr;
};

Zip::Zip(struct zip* handle, const fs::path& path) : archive_(handle), path_(path) {
    std::error_code error;
    const auto size = fs::file_size(path_, error);
    archiveSize_ = error ? 0 : static_cast<int64_t>(size);
}

Zip::Zip(struct zip* handle, const std::string& path) : Zip(handle, fs::path(path)) {}

Zip::Zip(struct zip* handle, const char* path) : Zip(handle, fs::path(path)) {}

Zip::Zip(Zip&& other) noexcept
    : archive_(other.archive_),
      path_(std::move(other.path_)),
      compressionMethod_(other.compressionMethod_),
      compressionLevel_(other.compressionLevel_),
      archiveSize_(other.archiveSize_),
      pending_(std::move(other.pending_)),
      spill_(std::move(other.spill_)) {
    other.archive_ = nullptr;
}

Zip::~Zip() {
    finish(false);
}

Zip Zip::create(const fs::path& path) {
    return Zip(openArchive(path, true), path);
}

Zip* Zip::createPtr(const fs::path& path) {
    return new Zip(openArchive(path, true), path);
}

std::shared_ptr<Zip> Zip::createShared(const fs::path& path) {
    return std::make_shared<Zip>(openArchive(path, true), path);
}

Zip Zip::open(const fs::path& path) {
    return Zip(openArchive(path, false), path);
}

Zip* Zip::openPtr(const fs::path& path) {
    return new Zip(openArchive(path, false), path);
}

std::shared_ptr<Zip> Zip::openShared(const fs::path& path) {
    return std::make_shared<Zip>(openArchive(path, false), path);
}

std::shared_ptr<Zip> Zip::openForChangesShared(const fs::path& path) {
    return std::make_shared<Zip>(openArchive(path, false, true), path);
}

const char* Zip::className() const {
    return "Zip";
}

std::string Zip::getMainDir() const {
    return path_.string();
}

void Zip::close() { finish(true); }

void Zip::finish(bool report) {
    if (!archive_) return;
    std::string failure;
    if (zip_close(archive_) != 0) {
        // The archive on disk stays as it was (libzip writes a temporary file
        // and renames it only when everything was written).
        failure = zip_strerror(archive_);
        zip_discard(archive_);
    }
    archive_ = nullptr;
    pending_.clear();  // libzip is done with the lent bytes
    spill_.reset();
    cached_.reset();
    cachedName_.clear();
    if (failure.empty()) return;
    // A save must not report success over a lost write; a destructor cannot throw, so it says so instead.
    if (report) SORVANE_THROW("Error writing zip %s: %s", path_.c_str(), failure.c_str());
    std::fprintf(stderr, "Warning: writing zip %s failed: %s\n", path_.c_str(), failure.c_str());
}

void Zip::setCompression(int32_t method, uint32_t level) {
    compressionMethod_ = method;
    compressionLevel_ = level;
}

void Zip::guard() const {
    if (!archive_) SORVANE_THROW("Zip file %s is not opened", path_.c_str());
}

bool Zip::exists(const std::string& name) const {
    guard();
    const std::string canonical = canonizeName(name);
    if (pending_.count(canonical)) return true;
    zip_stat_t info;
    return zip_stat(archive_, canonical.c_str(), 0, &info) == 0;
}

std::vector<std::string> Zip::getAllNames() const {
    guard();
    const zip_int64_t count = zip_get_num_entries(archive_, 0);
    if (count < 0) SORVANE_THROW("Error getting item count in zip %s: %s", path_.c_str(), zip_strerror(archive_));
    std::vector<std::string> names;
    names.reserve(static_cast<size_t>(count));
    for (zip_int64_t index = 0; index < count; ++index) {
        const char* name = zip_get_name(archive_, static_cast<zip_uint64_t>(index), 0);
        if (!name) {
            // An entry deleted in this session (a failed add) is no item:
            // libzip reports a deleted old entry as deleted, a deleted new
            // one as an invalid index.
            const int code = zip_error_code_zip(zip_get_error(archive_));
            if (code == ZIP_ER_DELETED || code == ZIP_ER_INVAL) continue;
            SORVANE_THROW("Error getting item %ld in zip %s: %s", static_cast<long>(index), path_.c_str(),
                          zip_strerror(archive_));
        }
        names.emplace_back(name);
    }
    return names;
}

bool Zip::stat(const std::string& canonical, Entry& entry) const {
    zip_stat_t info;
    zip_stat_init(&info);
    entry.zipName = canonical;
    if (zip_stat(archive_, entry.zipName.c_str(), 0, &info) != 0) {
        // Archives written on some systems use "\" between folders.
        std::replace(entry.zipName.begin(), entry.zipName.end(), '/', '\\');
        if (zip_stat(archive_, entry.zipName.c_str(), 0, &info) != 0) return false;
    }
    if (!(info.valid & ZIP_STAT_SIZE)) return false;
    // The recorded sizes are checked before anything is allocated for them.
    int problem = info.size <= static_cast<uint64_t>(INT64_MAX / 2) ? ZIP_ER_OK : ZIP_ER_INCONS;
    if (!problem && (info.valid & ZIP_STAT_COMP_SIZE) && (info.valid & ZIP_STAT_COMP_METHOD)) {
        const uint16_t method = info.comp_method;
        if (info.comp_size > static_cast<uint64_t>(archiveSize_)) {
            problem = ZIP_ER_INCONS;
        } else if (method == ZIP_CM_STORE) {
            if (info.size > info.comp_size) problem = ZIP_ER_INCONS;
        } else if (method == ZIP_CM_DEFLATE) {
            if (info.size > info.comp_size * kDeflateRatio + kDeflateSlack) problem = ZIP_ER_INCONS;
        } else if (!zip_compression_method_supported(method, 0)) {
            problem = ZIP_ER_COMPNOTSUPP;
        } else if (info.size > kVerifyAbove && !holdsSize(archive_, entry.zipName.c_str(), info.size)) {
            problem = ZIP_ER_INCONS;
        }
    }
    if (problem)
        SORVANE_THROW("Error reading %s from zip %s: %s", canonical.c_str(), path_.c_str(), codeText(problem).c_str());
    entry.size = static_cast<int64_t>(info.size);
    entry.seekable = (info.valid & ZIP_STAT_COMP_METHOD) && info.comp_method == ZIP_CM_STORE &&
                     (!(info.valid & ZIP_STAT_ENCRYPTION_METHOD) || info.encryption_method == ZIP_EM_NONE);
    return true;
}

void Zip::findEntry(const std::string& canonical, Entry& entry) const {
    const auto found = pending_.find(canonical);
    if (found != pending_.end()) {
        entry.pending = &found->second;
        entry.zipName = canonical;
        if (found->second.block || found->second.spill) {
            entry.size = found->second.size;
        } else {
            detail::ReadFile file(found->second.file.c_str());
            entry.size = file.size();
        }
        return;
    }
    if (!stat(canonical, entry))
        SORVANE_THROW("Error reading %s from zip %s: %s", canonical.c_str(), path_.c_str(), zip_strerror(archive_));
}

void Zip::readEntry(const Entry& entry, void* out, int64_t count, int64_t offset) const {
    const char* name = entry.zipName.c_str();
    if (entry.pending) {
        // Not written yet: libzip cannot read it back, the kept bytes can.
        if (offset > entry.size)
            SORVANE_THROW("Error reading %s from zip %s: error seeking to offset %ld", name, path_.c_str(),
                          static_cast<long>(offset));
        if (count > entry.size - offset)
            SORVANE_THROW("Error reading %s from zip %s: %s", name, path_.c_str(), codeText(ZIP_ER_EOF).c_str());
        if (entry.pending->block) {
            if (count > 0) std::memcpy(out, static_cast<const char*>(entry.pending->block.get()) + offset,
                                       static_cast<size_t>(count));
        } else {
            detail::ReadFile file(entry.pending->file.c_str());
            file.seek(entry.pending->offset + offset);
            file.read(out, count);
        }
        return;
    }

    // A part of a compressed entry comes from the kept entry, or makes it
    // the kept one; a short read near the start (a header) is inflated on
    // its own rather than the whole entry.
    const bool kept = cached_ && cachedName_ == entry.zipName;
    const bool part = offset > 0 || count < entry.size;
    const bool nearStart = offset + count <= kShortRead;
    if (!entry.seekable && (kept || (part && !nearStart && entry.size <= kCacheLimit))) {
        if (!kept) {
            cached_.reset();
            cachedName_.clear();
            std::unique_ptr<uint8_t[]> whole(new uint8_t[static_cast<size_t>(entry.size > 0 ? entry.size : 1)]);
            Entry all = entry;
            readEntry(all, whole.get(), entry.size, 0);
            cached_ = std::move(whole);
            cachedSize_ = entry.size;
            cachedName_ = entry.zipName;
        }
        if (offset > cachedSize_ || count > cachedSize_ - offset)
            SORVANE_THROW("Error reading %s from zip %s: %s", name, path_.c_str(), codeText(ZIP_ER_EOF).c_str());
        if (count > 0) std::memcpy(out, cached_.get() + offset, static_cast<size_t>(count));
        return;
    }

    zip_file_t* file = zip_fopen(archive_, name, 0);
    if (!file) SORVANE_THROW("Error reading %s from zip %s: %s", name, path_.c_str(), zip_strerror(archive_));
    std::string failure;
    if (offset > 0) {
        bool sought = false;
        if (entry.seekable) {
            sought = zip_fseek(file, offset, SEEK_SET) == 0;
        } else {
            // A compressed entry cannot seek: inflate up to the offset.
            char scratch[16384];
            int64_t left = offset;
            while (left > 0) {
                const zip_int64_t got =
                    zip_fread(file, scratch, static_cast<zip_uint64_t>(std::min<int64_t>(left, sizeof scratch)));
                if (got <= 0) break;
                left -= got;
            }
            sought = left == 0;
        }
        if (!sought) {
            zip_fclose(file);
            SORVANE_THROW("Error reading %s from zip %s: error seeking to offset %ld", name, path_.c_str(),
                          static_cast<long>(offset));
        }
    }
    int64_t done = 0;
    zip_int64_t got = 0;
    while (done < count) {
        got = zip_fread(file, static_cast<char*>(out) + done, static_cast<zip_uint64_t>(count - done));
        if (got <= 0) break;
        done += got;
    }
    if (done < count) failure = got < 0 ? zip_file_strerror(file) : codeText(ZIP_ER_EOF);
    zip_fclose(file);
    if (!failure.empty()) SORVANE_THROW("Error reading %s from zip %s: %s", name, path_.c_str(), failure.c_str());
}

int64_t Zip::getData(void* out, int64_t outSize, const std::string& name, int64_t offset) const {
    guard();
    const std::string canonical = canonizeName(name);
    if (offset < 0) SORVANE_THROW("Invalid offset for '%s'", canonical.c_str());
    Entry entry;
    findEntry(canonical, entry);
    if (offset > entry.size)
        SORVANE_THROW("Error reading %s from zip %s: invalid offset %ld > %ld", canonical.c_str(), path_.c_str(),
                      static_cast<long>(offset), static_cast<long>(entry.size));
    const int64_t count = entry.size - offset;
    if (!out) return count;
    if (outSize < count) SORVANE_THROW("Error reading %s from zip %s: buffer too small", canonical.c_str(), path_.c_str());
    readEntry(entry, out, count, offset);
    return count;
}

void Zip::getRange(void* out, int64_t size, const std::string& name, int64_t offset) const {
    guard();
    const std::string canonical = canonizeName(name);
    Entry entry;
    findEntry(canonical, entry);
    if (offset < 0 || size < 0 || offset > entry.size || size > entry.size - offset)
        SORVANE_THROW("Invalid range for '%s'", canonical.c_str());
    if (size > 0) readEntry(entry, out, size, offset);
}

int64_t Zip::getDataSize(const std::string& name) const {
    return getData(nullptr, 0, name, 0);
}

std::string Zip::getString(const std::string& name, int64_t offset) const {
    guard();
    const std::string canonical = canonizeName(name);
    if (offset < 0) SORVANE_THROW("Invalid offset for '%s'", canonical.c_str());
    Entry entry;
    findEntry(canonical, entry);
    // The full size is asked for whatever the offset: only offset 0 succeeds.
    std::string text(static_cast<size_t>(entry.size), '\0');
    readEntry(entry, &text[0], entry.size, offset);
    return text;
}

void Zip::addSource(const std::string& canonical, void* sourcePtr, bool overwrite, bool fromFile,
                    Pending pending) {
    zip_source_t* source = static_cast<zip_source_t*>(sourcePtr);
    const zip_flags_t flags = ZIP_FL_ENC_UTF_8 | (overwrite ? ZIP_FL_OVERWRITE : 0);
    const zip_int64_t index = zip_file_add(archive_, canonical.c_str(), source, flags);
    if (index < 0) {
        zip_source_free(source);
        SORVANE_THROW(fromFile ? "Error adding file to zip %s: %s" : "Error adding buffer to zip %s: %s", path_.c_str(),
                      zip_strerror(archive_));
    }
    // A replaced entry's source is gone now: its kept bytes may go too.
    pending_.erase(canonical);
    cached_.reset();
    cachedName_.clear();
    if (zip_set_file_compression(archive_, static_cast<zip_uint64_t>(index), compressionMethod_,
                                 compressionLevel_) != 0) {
        const std::string text = zip_strerror(archive_);
        zip_delete(archive_, static_cast<zip_uint64_t>(index));
        SORVANE_THROW("Error adding file to zip %s: %s", path_.c_str(), text.c_str());
    }
    pending_[canonical] = std::move(pending);
}

void Zip::create(const std::string& name, const void* data, int64_t size) {
    const Block block{data, size};
    createBlocks(name, &block, 1);
}

void Zip::createBlocks(const std::string& name, const Block* blocks, size_t count) {
    guard();
    int64_t size = 0;
    for (size_t i = 0; i < count; ++i)
        if (blocks[i].size < 0 || (blocks[i].size > 0 && !blocks[i].data) ||
            __builtin_add_overflow(size, blocks[i].size, &size))
            SORVANE_THROW("Error adding buffer to zip %s: %s", path_.c_str(), codeText(ZIP_ER_INVAL).c_str());
    if (size >= kSpillSize) {
        if (!spill_) {
            auto spill = std::make_shared<Spill>();
            if (spill->open(path_.string())) spill_ = std::move(spill);
        }
        const int64_t start = spill_ ? spill_->size : 0;
        if (spill_ && spill_->append(blocks, count)) {
            Pending pending;
            pending.spill = spill_;
            pending.file = spill_->path;
            pending.offset = start;
            pending.size = size;
            zip_source_t* source = zip_source_file(archive_, pending.file.c_str(), static_cast<zip_uint64_t>(start),
                                                   static_cast<zip_int64_t>(size));
            if (!source) SORVANE_THROW("Error adding buffer to zip %s: %s", path_.c_str(), zip_strerror(archive_));
            addSource(canonizeName(name), source, true, false, std::move(pending));
            return;
        }
        // Where no file can be written, the bytes wait in memory as small ones do.
    }
    void* block = std::malloc(size > 0 ? static_cast<size_t>(size) : 1);
    if (!block) SORVANE_THROW("Error adding buffer to zip %s: not enough memory", path_.c_str());
    char* at = static_cast<char*>(block);
    for (size_t i = 0; i < count; ++i) {
        if (blocks[i].size > 0) std::memcpy(at, blocks[i].data, static_cast<size_t>(blocks[i].size));
        at += blocks[i].size;
    }
    Pending pending;
    pending.block = std::shared_ptr<void>(block, &std::free);
    pending.size = size;
    // The bytes stay ours (and readable) until the archive is written.
    zip_source_t* source = zip_source_buffer(archive_, block, static_cast<zip_uint64_t>(size), 0);
    if (!source) SORVANE_THROW("Error adding buffer to zip %s: %s", path_.c_str(), zip_strerror(archive_));
    addSource(canonizeName(name), source, true, false, std::move(pending));
}

void Zip::createFromFile(const std::string& name, const std::string& path, bool overwrite) {
    guard();
    zip_source_t* source = zip_source_file(archive_, path.c_str(), 0, 0);
    if (!source) SORVANE_THROW("Error adding file to zip %s: %s", path_.c_str(), zip_strerror(archive_));
    Pending pending;
    pending.file = path;
    addSource(canonizeName(name), source, overwrite, true, std::move(pending));
}

} // namespace sorvane::archive
