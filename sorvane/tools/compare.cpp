#include "sorvane/tools/compare.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/DataTree.h"

namespace sorvane {

namespace {

template <class T>
bool differs(T a, T b, T tolerance) {
    if constexpr (std::is_floating_point_v<T>) {
        // NaN against NaN is the same value; NaN against a number differs.
        const bool bothNaN = (a != a) & (b != b);
        return !(std::fabs(a - b) <= tolerance) & !bothNaN;
    } else if constexpr (std::is_unsigned_v<T>) {
        return (a > b ? a - b : b - a) > tolerance;
    } else {
        const int64_t d = static_cast<int64_t>(a) - static_cast<int64_t>(b);
        return (d < 0 ? -d : d) > static_cast<int64_t>(tolerance);
    }
}

// Characters print as numbers.
template <class T>
auto printable(T value) {
    if constexpr (std::is_floating_point_v<T>) return value;
    else return +value;
}

void writeIndices(std::ostream& out, long k, const std::vector<long>& dims) {
    const size_t rank = dims.size();
    if (rank > 3) SORVANE_THROW("Unsupported shape");
    long index[3] = {0, 0, 0};
    for (size_t d = rank; d-- > 0;) {
        index[d] = k % dims[d];
        k /= dims[d];
    }
    for (size_t d = 0; d < rank; ++d) out << (d ? "," : "") << index[d];
}

// The tolerance in an integer type: clamped to its range, NaN as 0, so that
// the conversion is always defined.
template <class T>
T integerTolerance(double tolerance) {
    if (std::isnan(tolerance)) return 0;
    if (tolerance <= static_cast<double>(std::numeric_limits<T>::lowest())) return std::numeric_limits<T>::lowest();
    if (tolerance >= static_cast<double>(std::numeric_limits<T>::max())) return std::numeric_limits<T>::max();
    return static_cast<T>(tolerance);
}

template <class T>
long compareAs(const DataTree& a, const DataTree& b, const std::vector<long>& dimsA, const std::vector<long>& dimsB,
               double tolerance, bool verbose, std::ostream& out) {
    T t;
    if constexpr (std::is_floating_point_v<T>) t = static_cast<T>(tolerance);
    else t = integerTolerance<T>(tolerance);
    return compare_tensors<T>(static_cast<const T*>(a.getBuffer()), dimsA, static_cast<const T*>(b.getBuffer()),
                              dimsB, t, verbose, out);
}

bool shapeOf(const DataTree& data, std::vector<long>& dims) {
    if (data.isTensor()) dims = data.getTensorSizes();
    else if (data.isArray()) dims = {data.getValueCount()};
    else return false;
    return true;
}

const char* pixelFormatName(long format) {
    static const char* const names[] = {"RGB", "RGBA", "GRAY"};
    return names[format - 1];
}

const char* imageFormatName(long format) {
    static const char* const names[] = {"XYC", "YXC", "CYX"};
    return names[format - 1];
}

bool validFormat(const DataTree& image, const char* key) {
    const DataTree& value = image.getItem(std::string(key));
    return value.isInteger() && value.getInteger() >= 1 && value.getInteger() <= 3;
}

bool hasImageData(const DataTree& image) {
    return image.hasItem("pixelFormat") && image.hasItem("imageFormat") && image.hasItem("pixels");
}

} // namespace

template <class T>
long compare_tensors(const T* a, const std::vector<long>& dimsA, const T* b, const std::vector<long>& dimsB,
                     T tolerance, bool verbose, std::ostream& out) {
    if (dimsA.size() != dimsB.size()) {
        out << "Different shape sizes " << dimsA.size() << " != " << dimsB.size() << std::endl;
        return kCompareMismatch;
    }
    long total = 1;
    for (size_t d = 0; d < dimsA.size(); ++d) {
        if (dimsA[d] != dimsB[d]) {
            out << "Different shape for dim " << d << ": " << dimsA[d] << " != " << dimsB[d] << std::endl;
            return kCompareMismatch;
        }
        total = dimsA[d] > 0 ? total * dimsA[d] : 0;
    }
    // Counting first, without branches, so that the common quiet or equal
    // case runs at memory speed; the details take a second pass.
    long count = 0;
    for (long k = 0; k < total; ++k) count += differs(a[k], b[k], tolerance) ? 1 : 0;
    if (verbose && count > 0) {
        long shown = 0;
        for (long k = 0; k < total && shown < 20; ++k) {
            if (!differs(a[k], b[k], tolerance)) continue;
            writeIndices(out, k, dimsA);
            out << ": " << printable(a[k]) << " != " << printable(b[k]) << std::endl;
            ++shown;
        }
    }
    if (count > 0 && verbose)
        out << count << "/" << total << " differences (" << 100.0 * static_cast<double>(count) / static_cast<double>(total)
            << "%)" << std::endl;
    return count;
}

template SORVANE_API long compare_tensors<signed char>(const signed char*, const std::vector<long>&,
                                                       const signed char*, const std::vector<long>&, signed char,
                                                       bool, std::ostream&);
template SORVANE_API long compare_tensors<unsigned char>(const unsigned char*, const std::vector<long>&,
                                                         const unsigned char*, const std::vector<long>&,
                                                         unsigned char, bool, std::ostream&);
template SORVANE_API long compare_tensors<short>(const short*, const std::vector<long>&, const short*,
                                                 const std::vector<long>&, short, bool, std::ostream&);
template SORVANE_API long compare_tensors<unsigned short>(const unsigned short*, const std::vector<long>&,
                                                          const unsigned short*, const std::vector<long>&,
                                                          unsigned short, bool, std::ostream&);
template SORVANE_API long compare_tensors<int>(const int*, const std::vector<long>&, const int*,
                                               const std::vector<long>&, int, bool, std::ostream&);
template SORVANE_API long compare_tensors<unsigned int>(const unsigned int*, const std::vector<long>&,
                                                        const unsigned int*, const std::vector<long>&, unsigned int,
                                                        bool, std::ostream&);
template SORVANE_API long compare_tensors<float>(const float*, const std::vector<long>&, const float*,
                                                 const std::vector<long>&, float, bool, std::ostream&);
template SORVANE_API long compare_tensors<double>(const double*, const std::vector<long>&, const double*,
                                                  const std::vector<long>&, double, bool, std::ostream&);

long compare_data_tensors(const DataTree& a, const DataTree& b, double tolerance, bool verbose, std::ostream& out) {
    std::vector<long> dimsA, dimsB;
    if (!shapeOf(a, dimsA)) {
        out << "First data is not a tensor" << std::endl;
        return kCompareMismatch;
    }
    if (!shapeOf(b, dimsB)) {
        out << "Second data is not a tensor" << std::endl;
        return kCompareMismatch;
    }
    const ScalarType type = a.getScalarType();
    if (type != b.getScalarType()) {
        out << "Different scalar types: " << type << " != " << b.getScalarType() << std::endl;
        return kCompareMismatch;
    }
    switch (type) {
    case ScalarType::Integer8: return compareAs<signed char>(a, b, dimsA, dimsB, tolerance, verbose, out);
    case ScalarType::UInteger8: return compareAs<unsigned char>(a, b, dimsA, dimsB, tolerance, verbose, out);
    case ScalarType::Integer16: return compareAs<short>(a, b, dimsA, dimsB, tolerance, verbose, out);
    case ScalarType::UInteger16: return compareAs<unsigned short>(a, b, dimsA, dimsB, tolerance, verbose, out);
    case ScalarType::Integer32: return compareAs<int>(a, b, dimsA, dimsB, tolerance, verbose, out);
    case ScalarType::UInteger32: return compareAs<unsigned int>(a, b, dimsA, dimsB, tolerance, verbose, out);
    case ScalarType::Float: return compareAs<float>(a, b, dimsA, dimsB, tolerance, verbose, out);
    case ScalarType::Double: return compareAs<double>(a, b, dimsA, dimsB, tolerance, verbose, out);
    default: out << "Unsupported scalar type " << type << std::endl; return kCompareMismatch;
    }
}

long compare_data_images(const DataTree& a, const DataTree& b, bool verbose, std::ostream& out) {
    if (!a.isObject()) {
        out << "First image is not an object" << std::endl;
        return kCompareMismatch;
    }
    if (!b.isObject()) {
        out << "Second image is not an object" << std::endl;
        return kCompareMismatch;
    }
    if (!hasImageData(a)) {
        out << "First image has no image data (pixelFormat, imageFormat and pixels)" << std::endl;
        return kCompareMismatch;
    }
    if (!hasImageData(b)) {
        out << "Second image has no image data (pixelFormat, imageFormat and pixels)" << std::endl;
        return kCompareMismatch;
    }
    const struct {
        const DataTree& image;
        const char* which;
    } images[] = {{a, "first"}, {b, "second"}};
    for (const auto& image : images) {
        if (!validFormat(image.image, "pixelFormat")) {
            out << "Invalid pixel format in " << image.which << " image" << std::endl;
            return kCompareMismatch;
        }
        if (!validFormat(image.image, "imageFormat")) {
            out << "Invalid image format in " << image.which << " image" << std::endl;
            return kCompareMismatch;
        }
    }
    const long pixelA = a.getItem(std::string("pixelFormat")).getInteger();
    const long pixelB = b.getItem(std::string("pixelFormat")).getInteger();
    if (pixelA != pixelB) {
        out << "Different pixel formats: " << pixelFormatName(pixelA) << " != " << pixelFormatName(pixelB) << std::endl;
        return kCompareMismatch;
    }
    const long layoutA = a.getItem(std::string("imageFormat")).getInteger();
    const long layoutB = b.getItem(std::string("imageFormat")).getInteger();
    if (layoutA != layoutB) {
        out << "Different image formats: " << imageFormatName(layoutA) << " != " << imageFormatName(layoutB)
            << std::endl;
        return kCompareMismatch;
    }
    if (!a.getItem(std::string("pixels")).isTensor()) {
        out << "Pixels in first image must be a tensor" << std::endl;
        return kCompareMismatch;
    }
    if (!b.getItem(std::string("pixels")).isTensor()) {
        out << "Pixels in second image must be a tensor" << std::endl;
        return kCompareMismatch;
    }
    return compare_data_tensors(a.getItem(std::string("pixels")), b.getItem(std::string("pixels")), 0.0, verbose, out);
}

} // namespace sorvane
