#include "sorvane/gltf2/node/mesh/primitive/PrimitiveData.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/node/Tensor.h"
#include "sorvane/gltf2/node/RootNode.h"
#include "sorvane/gltf2/node/buffer/BinaryData.h"
#include "sorvane/gltf2/node/buffer/ByteBlock.h"

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

// One joints or weights accessor, [vertices, 4], read where its bytes lie
// when they are in memory, else copied once.
struct ComponentStream {
    AccessorComponentType type = ACCESSOR_COMPONENT_TYPE_NONE;
    const uint8_t* data = nullptr;
    std::vector<uint8_t> copy;
};

void openComponents(const AccessorNode& accessor, ComponentStream& stream) {
    stream.type = accessor.getComponentType();
    const int64_t size = accessorComponentType2size(stream.type);
    // Measured first, so that a count larger than the buffer fails before
    // anything is allocated; it also bounds count * 4 * size.
    const int64_t bytes = BinaryData::getDataSize(accessor);
    if (bytes < accessor.getCount() * 4 * size)
        SORVANE_THROW("In %s:\nNot enough data", accessor.getNodePath().c_str());
    int64_t length = 0;
    if (const uint8_t* direct = BinaryData::peekData(accessor, length)) {
        stream.data = direct;
        return;
    }
    stream.copy.resize(static_cast<size_t>(bytes));
    BinaryData::getData(accessor, stream.copy.data(), bytes);
    stream.data = stream.copy.data();
}

template <class T>
void rowAs(const uint8_t* p, double* out) {
    for (int c = 0; c < 4; ++c) {
        T v;
        std::memcpy(&v, p + c * static_cast<int>(sizeof(T)), sizeof(T));
        out[c] = static_cast<double>(v);
    }
}

// The four components of vertex `v` as doubles.
void rowOf(const ComponentStream& stream, long v, double* out) {
    const size_t at = static_cast<size_t>(v) * 4;
    switch (stream.type) {
    case ACCESSOR_COMPONENT_TYPE_BYTE: rowAs<int8_t>(stream.data + at, out); break;
    case ACCESSOR_COMPONENT_TYPE_UNSIGNED_BYTE: rowAs<uint8_t>(stream.data + at, out); break;
    case ACCESSOR_COMPONENT_TYPE_SHORT: rowAs<int16_t>(stream.data + at * 2, out); break;
    case ACCESSOR_COMPONENT_TYPE_UNSIGNED_SHORT: rowAs<uint16_t>(stream.data + at * 2, out); break;
    case ACCESSOR_COMPONENT_TYPE_UNSIGNED_INT: rowAs<uint32_t>(stream.data + at * 4, out); break;
    case ACCESSOR_COMPONENT_TYPE_FLOAT: rowAs<float>(stream.data + at * 4, out); break;
    default: SORVANE_THROW("Invalid or unsupported gltf component type %d", static_cast<int>(stream.type));
    }
}

// Every JOINTS_n / WEIGHTS_n pair of a primitive, checked and open.
struct JointSets {
    long vertexCount = 0;
    long jointCount = 0;
    int64_t cells = 0;
    std::vector<ComponentStream> joints, weights;
};

JointSets openJointSets(const RootNode& root, const std::string& path, const PrimitiveData::IntegerMap* attributes,
                        long vertexCount, long jointCount) {
    const char* p = path.c_str();
    if (!root.getAccessors()) SORVANE_THROW("Getting joints tensor of %s: There is no accessors", p);
    if (jointCount < 0) SORVANE_THROW("Getting joints tensor of %s: Invalid joint count %ld", p, jointCount);
    const bool countGiven = vertexCount >= 0;
    JointSets sets;
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
        sets.joints.emplace_back();
        openComponents(*jointsAccessor, sets.joints.back());
        sets.weights.emplace_back();
        openComponents(*weightsAccessor, sets.weights.back());
    }
    sets.vertexCount = vertexCount < 0 ? 0 : vertexCount;
    sets.jointCount = jointCount;
    if (!multiplyFits(sets.vertexCount, jointCount, sets.cells))
        SORVANE_THROW("Getting joints tensor of %s: Invalid joint count %ld", p, jointCount);
    return sets;
}

// Each vertex's influences over all sets, heaviest first, the first
// `jointCount` kept and renormalised; every cell of the outputs is written.
void mergeInfluences(const JointSets& sets, const char* p, uint8_t* jointsOut, float* weightsOut) {
    struct Influence {
        double joint;
        double weight;
    };
    std::vector<Influence> influences(sets.joints.size() * 4);
    const size_t jointCount = static_cast<size_t>(sets.jointCount);
    double joints[4], weights[4];
    for (long v = 0; v < sets.vertexCount; ++v) {
        size_t n = 0;
        for (size_t s = 0; s < sets.joints.size(); ++s) {
            rowOf(sets.joints[s], v, joints);
            rowOf(sets.weights[s], v, weights);
            for (size_t c = 0; c < 4; ++c) {
                const Influence next{joints[c], weights[c]};
                // Insertion with a strict comparison: of equal weights the earlier stays in front.
                size_t pos = n;
                while (pos > 0 && influences[pos - 1].weight < next.weight) {
                    influences[pos] = influences[pos - 1];
                    --pos;
                }
                influences[pos] = next;
                ++n;
            }
        }
        const size_t kept = std::min(n, jointCount);
        double sum = 0;
        for (size_t k = 0; k < kept; ++k) sum += influences[k].weight;
        uint8_t* jointRow = jointsOut + static_cast<size_t>(v) * jointCount;
        float* weightRow = weightsOut + static_cast<size_t>(v) * jointCount;
        for (size_t k = 0; k < kept; ++k) {
            const double joint = influences[k].joint;
            if (!(joint >= 0 && joint <= 255))
                SORVANE_THROW("Getting joints tensor of %s: Invalid joint index %g", p, joint);
            jointRow[k] = static_cast<uint8_t>(joint);
            // All-zero weights stay zero rather than dividing by nothing.
            weightRow[k] = sum > 0 ? static_cast<float>(influences[k].weight / sum) : 0.0f;
        }
        for (size_t k = kept; k < jointCount; ++k) {
            jointRow[k] = 0;
            weightRow[k] = 0.0f;
        }
    }
}

struct FreeBlock {
    void operator()(void* p) const { std::free(p); }
};

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
    // Each block is written once: a target without the key, or the part a
    // short view leaves, is zeros, so positions stay aligned.
    for (size_t i = 0; i < chosen.size(); ++i) {
        uint8_t* at = bytes + static_cast<int64_t>(i) * blockBytes;
        const auto& map = (*targets)[static_cast<size_t>(chosen[i])];
        auto found = map.find(key);
        if (found == map.end()) {
            std::memset(at, 0, static_cast<size_t>(blockBytes));
            continue;
        }
        const AccessorNode& accessor = targetAccessor(root, path, found->second);
        const std::vector<long> dims = BinaryData::getDims(accessor);
        if (dims != block || accessor.getComponentType() != type)
            SORVANE_THROW("In %s:\nUnsupported layout for target %ld", path.c_str(), chosen[i]);
        const int64_t got = BinaryData::getData(accessor, at, blockBytes);
        if (got < blockBytes) std::memset(at + got, 0, static_cast<size_t>(blockBytes - got));
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
    void* block = allocateBlock(static_cast<size_t>(total));
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
    const JointSets sets = openJointSets(root, path, attributes, vertexCount, jointCount);
    Joints result;
    result.vertexCount = sets.vertexCount;
    result.jointCount = sets.jointCount;
    result.joints.resize(static_cast<size_t>(sets.cells));
    result.weights.resize(static_cast<size_t>(sets.cells));
    mergeInfluences(sets, path.c_str(), result.joints.data(), result.weights.data());
    return result;
}

std::pair<DataTree, DataTree> PrimitiveData::jointsTensors(const RootNode& root, const std::string& path,
                                                           const IntegerMap* attributes, long vertexCount,
                                                           long jointCount) {
    const JointSets sets = openJointSets(root, path, attributes, vertexCount, jointCount);
    // Merged straight into the tensors' blocks.
    int64_t weightBytes = 0;
    if (!multiplyFits(sets.cells, static_cast<int64_t>(sizeof(float)), weightBytes)) throw std::bad_alloc();
    std::unique_ptr<void, FreeBlock> joints(allocateBlock(static_cast<size_t>(sets.cells)));
    std::unique_ptr<void, FreeBlock> weights(allocateBlock(static_cast<size_t>(weightBytes)));
    if (!joints || !weights) throw std::bad_alloc();
    mergeInfluences(sets, path.c_str(), static_cast<uint8_t*>(joints.get()), static_cast<float*>(weights.get()));
    const std::vector<long> dims{sets.vertexCount, sets.jointCount};
    DataTree jointsTensor(std::make_shared<datatree::Tensor>(joints.get(), static_cast<long>(sets.cells), dims,
                                                             ScalarType::UInteger8));
    joints.release();
    DataTree weightsTensor(std::make_shared<datatree::Tensor>(weights.get(), static_cast<long>(weightBytes), dims,
                                                              ScalarType::Float));
    weights.release();
    return {jointsTensor, weightsTensor};
}

} // namespace sorvane::gltf2
