#ifndef SORVANE_ARCHIVE_JSONIMPORTER_H
#define SORVANE_ARCHIVE_JSONIMPORTER_H

#include <cstdint>
#include <deque>
#include <istream>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "sorvane/core/Export.h"
#include "sorvane/core/IdList.h"

namespace sorvane::archive {

// How the cursor finds the end of a run of blanks, of plain string bytes or
// of digits: byte by byte, 16 bytes at a time, or 32 at a time. All give the
// same results; the wider ones are only faster.
enum class JsonScan : int32_t { Scalar = 0, Sse2 = 1, Avx2 = 2 };

// A JSON cursor with look-ahead, driven by the reader of each node: no value
// tree, the caller asks for what it expects next. peekX looks ahead without
// consuming; nextX is peekX followed by flush() on success. On failure the
// look-ahead is put back where it was. Nothing throws on bad input.
class SORVANE_API JsonImporter {
public:
    struct Item {
        int32_t type;  // 0 object, 1 array
        bool first;
    };
    using IntegerMap = std::unordered_map<std::string, int64_t>;

    explicit JsonImporter(std::istream& stream);
    // Reads `size` bytes at `text` in place, without a copy; they must stay
    // unchanged while the importer is in use.
    JsonImporter(const char* text, size_t size);
    JsonImporter(const JsonImporter&) = delete;
    JsonImporter& operator=(const JsonImporter&) = delete;

    // Line of the last committed character, starting at 1.
    int32_t getLine() const;

    // The widest scan the processor has; new importers use it.
    static JsonScan getBestScan();
    JsonScan getScan() const { return scan_; }
    // A scan the processor lacks falls back to the best it has.
    void setScan(JsonScan scan);

    // Low layer.
    char next();
    char peek();
    void rollback();
    void flush();
    void peekSpaces();
    void skipSpaces();
    bool peekChar(char c);
    bool nextChar(char c);

    // Value layer.
    std::optional<std::string> peekString();
    std::optional<std::string> nextString();
    bool peekNull();
    bool nextNull();
    std::optional<bool> peekBoolean();
    std::optional<bool> nextBoolean();
    std::optional<int64_t> peekInteger();
    std::optional<int64_t> nextInteger();
    std::optional<double> peekNumber();
    std::optional<double> nextNumber();
    std::optional<std::vector<std::string>> peekStringList();
    std::optional<std::vector<std::string>> nextStringList();
    std::optional<std::vector<int64_t>> peekIntegerList();
    std::optional<std::vector<int64_t>> nextIntegerList();
    std::optional<std::vector<double>> peekNumberList();
    std::optional<std::vector<double>> nextNumberList();
    std::optional<IntegerMap> peekIntegerMap();
    std::optional<IntegerMap> nextIntegerMap();
    std::optional<std::vector<IntegerMap>> peekIntegerMapList();
    std::optional<std::vector<IntegerMap>> nextIntegerMapList();

    // Same as the nextX above, filling the caller's storage so that hot
    // readers reuse their buffers. False (and `out` unspecified) on failure.
    bool nextString(std::string& out);
    bool nextStringList(std::vector<std::string>& out);
    bool nextIntegerList(std::vector<int64_t>& out);
    bool nextIntegerList(IdList& out);
    bool nextNumberList(std::vector<double>& out);

    // Structure layer.
    bool peekBeginObject();
    bool peekBeginArray();
    bool nextBeginObject();
    bool nextBeginArray();
    std::optional<std::string> nextObjectItem();
    bool nextObjectItem(std::string& key);  // same, into the caller's key
    // Same again, the key given as `length` bytes at `key` without a copy when
    // it has no escapes. The bytes stay valid until the next call of this
    // function on the importer (for ever when the text is read in place).
    bool nextObjectKey(const char*& key, size_t& length);
    bool nextArrayItem();
    bool nextEndObject();
    bool nextEndArray();
    bool skipContent(int64_t objects, int64_t arrays);

private:
    // The cursor works on one contiguous buffer: [begin_, end_) holds the
    // characters read and not yet committed, pos_ is the look-ahead.
    // Positions kept across a refill are taken relative to begin_, because a
    // refill may move the uncommitted characters to the front. Line feeds
    // are counted lazily up to begin_ (counted_ marks how far).
    bool fill();
    bool avail() { return pos_ < end_ || fill(); }
    void countLines() const;
    void commit() { begin_ = pos_; }
    bool take(char c);
    void skipBlanks();
    void skipBlanksSlow();
    bool scanString(std::string& out);
    bool scanKey(const char*& key, size_t& length);
    bool beginObjectItem();
    bool scanInteger(int64_t& out);
    bool scanNumber(double& out);
    bool scanNumberSlow(double& out);
    // An integer list into integers_, committed.
    bool nextIntegers();
    bool convertNumber(const char* text, const char* end, double& out);
    bool scanNull();
    bool scanBoolean(bool& out);
    bool scanOpen(char c);
    bool scanIntegerMap(IntegerMap& out);
    template <class T, class Scan>
    bool scanList(std::vector<T>& out, Scan scan);

    std::istream* stream_ = nullptr;  // null when reading text in place
    std::unique_ptr<char[]> storage_;  // the buffer of a stream
    char* data_ = nullptr;             // the buffer, or the text read in place
    size_t capacity_ = 0;
    size_t begin_ = 0;
    size_t pos_ = 0;
    size_t end_ = 0;
    mutable size_t counted_ = 0;
    mutable int32_t line_ = 1;
    bool eof_ = false;
    bool dotDecimal_ = true;  // the C locale writes numbers with '.'
    JsonScan scan_ = JsonScan::Scalar;
    std::vector<Item> stack_;
    std::string key_;      // scratch for skipped strings and map keys
    std::string objectKey_;  // keys of nextObjectKey that cannot be shown in place
    std::string digits_;   // scratch for the slow number conversion
    // Lists are gathered here and handed over in one piece, so a fresh
    // vector of the caller's is allocated once at its final size.
    std::vector<int64_t> integers_;
    std::vector<double> numbers_;
};

} // namespace sorvane::archive

#endif
