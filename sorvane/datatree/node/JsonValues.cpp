#include "sorvane/datatree/node/JsonValues.h"

#include <charconv>
#include <cstdint>
#include <cstring>
#include <locale>
#include <type_traits>
#include <utility>
#include <vector>

#include "sorvane/archive/JsonExporter.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::datatree::detail {

namespace {

thread_local std::vector<std::pair<const archive::JsonExporter*, std::ostream*>> bindings;

std::ostream* boundStream(const archive::JsonExporter& exporter) {
    for (auto it = bindings.rbegin(); it != bindings.rend(); ++it) {
        if (it->first == &exporter) return it->second;
    }
    return nullptr;
}

template <class T>
T load(const unsigned char* data, long index) {
    T value;
    std::memcpy(&value, data + index * sizeof(T), sizeof(T));
    return value;
}

// Writes one element at `out`, which has room for 32 characters.
template <class T>
char* format(char* out, char* end, T value) {
    if constexpr (std::is_same_v<T, float>)
        return std::to_chars(out, end, static_cast<double>(value), std::chars_format::general, 8).ptr;
    else if constexpr (std::is_same_v<T, double>)
        return std::to_chars(out, end, value, std::chars_format::general, 16).ptr;
    else if constexpr (sizeof(T) == 1)
        return std::to_chars(out, end, static_cast<int>(value)).ptr;
    else
        return std::to_chars(out, end, value).ptr;
}

template <class T>
void writeLine(std::ostream& stream, const void* data, long count) {
    const auto* bytes = static_cast<const unsigned char*>(data);
    char block[1 << 16];
    char* const limit = block + sizeof(block) - 40;
    char* out = block;
    *out++ = '[';
    for (long i = 0; i < count; ++i) {
        if (i > 0) {
            *out++ = ',';
            *out++ = ' ';
        }
        out = format<T>(out, out + 32, load<T>(bytes, i));
        if (out >= limit) {
            stream.write(block, out - block);
            out = block;
        }
    }
    *out++ = ']';
    stream.write(block, out - block);
}

// For an exporter built outside DataTree: the exporter's own list calls.
template <class T>
void writeThroughExporter(archive::JsonExporter& exporter, const void* data, long count) {
    const auto* bytes = static_cast<const unsigned char*>(data);
    if constexpr (std::is_floating_point_v<T>) {
        std::vector<double> values(static_cast<size_t>(count));
        for (long i = 0; i < count; ++i) values[i] = load<T>(bytes, i);
        exporter.addNumberList(values);
    } else {
        std::vector<int64_t> values(static_cast<size_t>(count));
        for (long i = 0; i < count; ++i) values[i] = static_cast<int64_t>(load<T>(bytes, i));
        exporter.addIntegerList(values);
    }
}

template <class T>
void writeTyped(archive::JsonExporter& exporter, const void* data, long count) {
    if (std::ostream* stream = boundStream(exporter)) {
        exporter.flush();
        if constexpr (std::is_same_v<T, float>) stream->precision(8);
        if constexpr (std::is_same_v<T, double>) stream->precision(16);
        if (std::is_floating_point_v<T> && stream->getloc() != std::locale::classic()) {
            // A stream with a locale of its own formats the numbers itself.
            const auto* bytes = static_cast<const unsigned char*>(data);
            *stream << '[';
            for (long i = 0; i < count; ++i) *stream << (i > 0 ? ", " : "") << load<T>(bytes, i);
            *stream << ']';
            return;
        }
        writeLine<T>(*stream, data, count);
    } else {
        writeThroughExporter<T>(exporter, data, count);
    }
}

} // namespace

JsonStreamBinding::JsonStreamBinding(archive::JsonExporter& exporter, std::ostream& stream) {
    bindings.emplace_back(&exporter, &stream);
}

JsonStreamBinding::~JsonStreamBinding() { bindings.pop_back(); }

void checkWritableType(ScalarType type) {
    const int32_t value = static_cast<int32_t>(type);
    if (value < static_cast<int32_t>(ScalarType::UInteger8) || value > static_cast<int32_t>(ScalarType::Double))
        SORVANE_THROW("Invalid or unsupported scalar type");
}

void writeValueLine(archive::JsonExporter& exporter, ScalarType type, const void* data, long count) {
    checkWritableType(type);
    if (!data) count = 0;
    switch (type) {
    case ScalarType::UInteger8: writeTyped<uint8_t>(exporter, data, count); break;
    case ScalarType::Integer8: writeTyped<int8_t>(exporter, data, count); break;
    case ScalarType::UInteger16: writeTyped<uint16_t>(exporter, data, count); break;
    case ScalarType::Integer16: writeTyped<int16_t>(exporter, data, count); break;
    case ScalarType::UInteger32: writeTyped<uint32_t>(exporter, data, count); break;
    case ScalarType::Integer32: writeTyped<int32_t>(exporter, data, count); break;
    case ScalarType::UInteger64: writeTyped<uint64_t>(exporter, data, count); break;
    case ScalarType::Integer64: writeTyped<int64_t>(exporter, data, count); break;
    case ScalarType::Float: writeTyped<float>(exporter, data, count); break;
    case ScalarType::Double: writeTyped<double>(exporter, data, count); break;
    default: break;
    }
}

} // namespace sorvane::datatree::detail
