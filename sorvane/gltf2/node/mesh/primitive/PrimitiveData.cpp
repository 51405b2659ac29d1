#include "sorvane/gltf2/node/mesh/primitive/PrimitiveData.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/gltf2/node/RootNode.h"
#include "sorvane/gltf2/node/buffer/BinaryData.h"

namespace sorvane::gltf2 {

namespace {

const AccessorNode* accessorAt(const RootNode& root, int64_t index) {
    const auto& list = root.getAccessors();
    if (!list || index < 0 || index >= list->getNodeSize()) return nullptr;
    return list->getByIndex(index).get();
}

const AccessorNode& targetAccessor(const RootNode& root, const std::string& path, int64_t index) {
    if (!root.getAccessors()) SORVANE_THROW("In %s:\nThere is no accessors", path.c_str());
    const AccessorNode* accessor = accessorAt(root, index);
    if (!accessor) SORVANE_THROW("In %s:\nNo accessor %ld", path.c_str(), static_cast<long>(index));
    return *accessor;
}

// The targets taken: the selection, checked, or all of them.
std::vector<long> chosenTargets(const std::string& path, const std::vector<PrimitiveData::IntegerMap>* targets,
                                const std::vector<long>* selection) {
    if (!targets || targets->empty()) SORVANE_THROW("In %s:\nNo targets", path.c_str());
    const long count = static_cast<long>(targets->size());
    std::vector<long> chosen;
    if (!selection) {
        chosen.reserve(targets->size());
        for (long i = 0; i < count; ++i) chosen.push_back(i);
        return chosen;
    }
    if (selection->empty()) SORVANE_THROW("In %s:\nSelection is empty", path.c_str());
    for (long index : *selection)
        if (index < 0 || index >= count) SORVANE_THROW("In %s:\nInvalid index %ld in selection", path.c_str(), index);
    return *selection;
}

// The accessor of the first chosen target with the key; it decides the layout.
const AccessorNode& decidingAccessor(const RootNode& root, const std::string& path,
                                     const std::vector<PrimitiveData::IntegerMap>& targets,
                                     const std::vector<long>& chosen, const std::string& key) {
    for (long index : chosen) {
        const auto& map = targets[static_cast<size_t>(index)];
        auto found = map.find(key);
        if (found != map.end()) return targetAccessor(root, path, found->second);
    }
    SORVANE_THROW("In %s:\nNo key %s", path.c_str(), key.c_str());
}

std::vector<long> blockLayout(const AccessorNode& accessor, const std::string& path) {
    std::vector<long> dims = BinaryData::getDims(accessor);
    if (dims.size() != 2) SORVANE_THROW("In %s:\nUnsupported targets layout", path.c_str());
    return dims;
}

bool multiplyFits(int64_t a, int64_t b, int64_t& out) { return !__builtin_mul_overflow(a, b, &out) && out >= 0; }

// One joints or weights accessor as doubles, [vertices, 4].
void readComponents(const AccessorNode& accessor, std::vector<double>& out) {
    const int64_t count = accessor.getCount() * 4;
    const AccessorComponentType type = accessor.getComponentType();
    const int64_t size = accessorComponentType2size(type);
    // Measured first, so that a count larger than the buffer fails before allocating.
    const int64_t bytes = BinaryData::getDataSize(accessor);
    if (bytes < count * size) SORVANE_THROW("In %s:\nNot enough data", accessor.getNodePath().c_str());
    std::vector<uint8_t> raw(static_cast<size_t>(bytes));
    BinaryData::getData(accessor, raw.data(), bytes);
    out.resize(static_cast<size_t>(count));
    auto convert = [&](auto zero) {
        using T = decltype(zero);
        for (int64_t i = 0; i < count; ++i) {
            T v;
            std::memcpy(&v, raw.data() + i * static_cast<int64_t>(sizeof(T)), sizeof(T));
            out[static_cast<size_t>(i)] = static_cast<double>(v);
        }
    };
    switch (type) {
    case ACCESSOR_COMPONENT_TYPE_BYTE: convert(int8_t()); break;
    case ACCESSOR_COMPONENT_TYPE_UNSIGNED_BYTE: convert(uint8_t()); break;
    case ACCESSOR_COMPONENT_TYPE_SHORT: convert(int16_t()); break;
    case ACCESSOR_COMPONENT_TYPE_UNSIGNED_SHORT: convert(uint16_t()); break;
    case ACCESSOR_COMPONENT_TYPE_UNSIGNED_INT: convert(uint32_t()); break;
    case ACCESSOR_COMPONENT_TYPE_FLOAT: convert(float()); break;
    default: SORVANE_THROW("Invalid or unsupported gltf component type %d", static_cast<int>(type));
    }
}

} // namespace

int64_t PrimitiveData::firstTargetWith(const std::vector<IntegerMap>* targets, const std::string& key) {
    if (!targets) return -1;
    for (size_t i = 0; i < targets->size(); ++i)
        if ((*targets)[i].count(key)) return static_cast<int64_t>(i);
    return -1;
}

AccessorComponentType PrimitiveData::targetsComponentType(const RootNode& root, const std::string& path,
                                                          const std::vector<IntegerMap>* targets,
                                                          const std::string& key) {
    const std::vector<long> chosen = chosenTargets(path, targets, nullptr);
    return decidingAccessor(root, path, *targets, chosen, key).getComponentType();
}

std::vector<long> PrimitiveData::targetsLayout(const RootNode& root, const std::string& path,
                                               const std::vector<IntegerMap>* targets, const std::string& key,
                                               const std::vector<long>* selection) {
    const std::vector<long> chosen = chosenTargets(path, targets, selection);
    const std::vector<long> block = blockLayout(decidingAccessor(root, path, *targets, chosen, key), path);
    return {static_cast<long>(chosen.size()), block[0], block[1]};
}

int64_t PrimitiveData::targetsData(const RootNode& root, const std::string& path,
                                   const std::vector<IntegerMap>* targets, void* out, int64_t outSize,
                                   const std::string& key, const std::vector<long>* selection) {
    const std::vector<long> chosen = chosenTargets(path, targets, selection);
    const AccessorNode& first = decidingAccessor(root, path, *targets, chosen, key);
    const std::vector<long> block = blockLayout(first, path);
    const AccessorComponentType type = first.getComponentType();
    int64_t values = 0, blockBytes = 0, total = 0;
    if (!multiplyFits(block[0], block[1], values) ||
        !multiplyFits(values, accessorComponentType2size(type), blockBytes) ||
        !multiplyFits(blockBytes, static_cast<int64_t>(chosen.size()), total))
        SORVANE_THROW("In %s:\nUnsupported targets layout", path.c_str());
    if (!out) return total;
    if (outSize < total) SORVANE_THROW("In %s:\nOutput buffer is too small", path.c_str());
    uint8_t* bytes = static_cast<uint8_t*>(out);
    // Targets without the key keep a zero block, so positions stay aligned.
    std::memset(bytes, 0, static_cast<size_t>(total));
    for (size_t i = 0; i < chosen.size(); ++i) {
        const auto& map = (*targets)[static_cast<size_t>(chosen[i])];
        auto found = map.find(key);
        if (found == map.end()) continue;
        const AccessorNode& accessor = targetAccessor(root, path, found->second);
        const std::vector<long> dims = BinaryData::getDims(accessor);
        if (dims != block || accessor.getComponentType() != type)
            SORVANE_THROW("In %s:\nUnsupported layout for target %ld", path.c_str(), chosen[i]);
        BinaryData::getData(accessor, bytes + static_cast<int64_t>(i) * blockBytes, blockBytes);
    }
    return total;
}

DataTree PrimitiveData::targetsTensor(const RootNode& root, const std::string& path,
                                      const std::vector<IntegerMap>* targets, const std::string& key,
                                      const std::vector<long>* selection) {
    const std::vector<long> dims = targetsLayout(root, path, targets, key, selection);
    const AccessorComponentType type = decidingAccessor(root, path, *targets, chosenTargets(path, targets, selection),
                                                        key).getComponentType();
    const int64_t total = targetsData(root, path, targets, nullptr, 0, key, selection);
    // The deciding accessor must hold what its count claims before a block of
    // that size is allocated.
    for (long index : chosenTargets(path, targets, selection)) {
        const auto& map = (*targets)[static_cast<size_t>(index)];
        auto found = map.find(key);
        if (found == map.end()) continue;
        BinaryData::getDataSize(targetAccessor(root, path, found->second));
        break;
    }
    void* block = std::malloc(total > 0 ? static_cast<size_t>(total) : 1);
    if (!block) SORVANE_THROW("In %s:\nOut of memory", path.c_str());
    try {
        targetsData(root, path, targets, block, total, key, selection);
        return DataTree::createTensor(block, static_cast<long>(total), dims, accessorComponentType2ScalarType(type));
    } catch (...) {
        std::free(block);
        throw;
    }
}

PrimitiveData::Joints PrimitiveData::joints(const RootNode& root, const std::string& path,
                                            const IntegerMap* attributes, long vertexCount, long jointCount) {
    const char* p = path.c_str();
    if (!root.getAccessors()) SORVANE_THROW("Getting joints tensor of %s: There is no accessors", p);
    if (jointCount < 0) SORVANE_THROW("Getting joints tensor of %s: Invalid joint count %ld", p, jointCount);
    const bool countGiven = vertexCount >= 0;
    std::vector<std::vector<double>> jointSets, weightSets;
    for (long set = 0; attributes; ++set) {
        const std::string jointsKey = "JOINTS_" + std::to_string(set);
        auto joints = attributes->find(jointsKey);
        if (joints == attributes->end()) break;
        const AccessorNode* jointsAccessor = accessorAt(root, joints->second);
        if (!jointsAccessor)
            SORVANE_THROW("Getting joints tensor of %s: No accessor %ld", p, static_cast<long>(joints->second));
        const std::string weightsKey = "WEIGHTS_" + std::to_string(set);
        auto weights = attributes->find(weightsKey);
        if (weights == attributes->end()) SORVANE_THROW("Getting joints tensor of %s: Missing %s", p, weightsKey.c_str());
        const AccessorNode* weightsAccessor = accessorAt(root, weights->second);
        if (!weightsAccessor)
            SORVANE_THROW("Getting joints tensor of %s: No accessor %ld", p, static_cast<long>(weights->second));
        const std::vector<long> jd = BinaryData::getDims(*jointsAccessor);
        if (vertexCount < 0 && jd.size() == 2 && jd[1] == 4) vertexCount = jd[0];
        if (jd.size() != 2 || jd[1] != 4 || jd[0] != vertexCount) {
            if (countGiven)
                SORVANE_THROW("Getting joints tensor of %s: Invalid joints layout, expect (%ld, 4)", p, vertexCount);
            SORVANE_THROW("Getting joints tensor of %s: Invalid joints layout, expect (vertexCount, 4)", p);
        }
        const std::vector<long> wd = BinaryData::getDims(*weightsAccessor);
        if (wd.size() != 2 || wd[1] != 4 || wd[0] != vertexCount) {
            if (countGiven)
                SORVANE_THROW("Getting joints tensor of %s: Invalid weights layout, expect (%ld, 4)", p, vertexCount);
            SORVANE_THROW("Getting joints tensor of %s: Invalid weights layout, expect (vertexCount, 4)", p);
        }
        jointSets.emplace_back();
        readComponents(*jointsAccessor, jointSets.back());
        weightSets.emplace_back();
        readComponents(*weightsAccessor, weightSets.back());
    }
    if (vertexCount < 0) vertexCount = 0;

    Joints result;
    result.vertexCount = vertexCount;
    result.jointCount = jointCount;
    int64_t cells = 0;
    if (!multiplyFits(vertexCount, jointCount, cells))
        SORVANE_THROW("Getting joints tensor of %s: Invalid joint count %ld", p, jointCount);
    result.joints.assign(static_cast<size_t>(cells), 0);
    result.weights.assign(static_cast<size_t>(cells), 0.0f);

    struct Influence {
        double joint;
        double weight;
    };
    std::vector<Influence> influences;
    influences.reserve(jointSets.size() * 4);
    for (long v = 0; v < vertexCount; ++v) {
        influences.clear();
        for (size_t s = 0; s < jointSets.size(); ++s) {
            for (size_t c = 0; c < 4; ++c) {
                const size_t at = static_cast<size_t>(v) * 4 + c;
                Influence next{jointSets[s][at], weightSets[s][at]};
                // Insertion with a strict comparison: of equal weights the earlier stays in front.
                size_t pos = influences.size();
                while (pos > 0 && influences[pos - 1].weight < next.weight) --pos;
                influences.insert(influences.begin() + static_cast<std::ptrdiff_t>(pos), next);
            }
        }
        const size_t kept = std::min(influences.size(), static_cast<size_t>(jointCount));
        double sum = 0;
        for (size_t k = 0; k < kept; ++k) sum += influences[k].weight;
        uint8_t* joints = result.joints.data() + static_cast<size_t>(v) * static_cast<size_t>(jointCount);
        float* weights = result.weights.data() + static_cast<size_t>(v) * static_cast<size_t>(jointCount);
        for (size_t k = 0; k < kept; ++k) {
            const double joint = influences[k].joint;
            if (!(joint >= 0 && joint <= 255))
                SORVANE_THROW("Getting joints tensor of %s: Invalid joint index %g", p, joint);
            joints[k] = static_cast<uint8_t>(joint);
            // All-zero weights stay zero rather than dividing by nothing.
            weights[k] = sum > 0 ? static_cast<float>(influences[k].weight / sum) : 0.0f;
        }
    }
    return result;
}

std::pair<DataTree, DataTree> PrimitiveData::jointsTensors(const RootNode& root, const std::string& path,
                                                           const IntegerMap* attributes, long vertexCount,
                                                           long jointCount) {
    Joints j = joints(root, path, attributes, vertexCount, jointCount);
    const std::vector<long> dims{j.vertexCount, j.jointCount};
    // Copied: the const forms do not take the vectors' storage.
    const void* joints = j.joints.data();
    const void* weights = j.weights.data();
    return {DataTree::createTensor(joints, static_cast<long>(j.joints.size()), dims, ScalarType::UInteger8),
            DataTree::createTensor(weights, static_cast<long>(j.weights.size() * sizeof(float)), dims,
                                   ScalarType::Float)};
}

} // namespace sorvane::gltf2
