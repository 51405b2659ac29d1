#ifndef SORVANE_ARCHIVE_STRINGSINK_H
#define SORVANE_ARCHIVE_STRINGSINK_H

#include <algorithm>
#include <ostream>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

namespace sorvane::archive {

// An output stream that gathers a long text in pieces and hands it out in
// one string of its exact size. An ostringstream doubles its buffer (every
// byte copied and every page touched again at each step) and its str()
// copies the whole once more, which C++17 cannot avoid.
class StringSink : public std::ostream {
public:
    // The buffer is only stored by the base until the first write.
    StringSink() : std::ostream(&buffer_) {}

    std::string take() {
        auto& pieces = buffer_.pieces;
        if (pieces.empty()) return std::string();
        if (pieces.size() == 1) return std::move(pieces.front());
        std::string text;
        text.reserve(buffer_.total);
        for (const std::string& piece : pieces) text += piece;
        pieces.clear();
        return text;
    }

    // The text as gathered, for a writer that takes it piece by piece: no
    // second copy of the whole.
    std::vector<std::string> takePieces() {
        buffer_.total = 0;
        return std::move(buffer_.pieces);
    }

private:
    struct Buffer : std::streambuf {
        // The first piece grows as a string does, so that a short text costs
        // what it did; past this size the text goes on in new pieces that
        // are never moved again.
        static constexpr size_t kPiece = size_t(1) << 20;
        std::vector<std::string> pieces;
        size_t total = 0;

        void append(const char* s, size_t n) {
            total += n;
            if (pieces.empty()) pieces.emplace_back();
            while (n > 0) {
                std::string& last = pieces.back();
                if (last.size() >= kPiece) {
                    pieces.emplace_back().reserve(kPiece);
                    continue;
                }
                const size_t k = std::min(n, kPiece - last.size());
                last.append(s, k);
                s += k;
                n -= k;
            }
        }
        std::streamsize xsputn(const char* s, std::streamsize n) override {
            append(s, static_cast<size_t>(n));
            return n;
        }
        int_type overflow(int_type c) override {
            if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
            const char byte = traits_type::to_char_type(c);
            append(&byte, 1);
            return c;
        }
    };
    Buffer buffer_;
};

} // namespace sorvane::archive

#endif
