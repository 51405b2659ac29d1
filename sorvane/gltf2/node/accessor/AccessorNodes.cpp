#include "sorvane/gltf2/node/accessor/AccessorNodes.h"

#include <vector>

#include "sorvane/datatree/DataTree.h"
#include "sorvane/gltf2/node/RootNode.h"

namespace sorvane::gltf2 {

AccessorNodes::AccessorNodes(const NodeParent& parent_) : ItemList<AccessorNode>(parent_) {}
AccessorNodes::~AccessorNodes() = default;

std::shared_ptr<AccessorNode> AccessorNodes::add(std::optional<AccessorComponentType> componentType,
                                                 std::optional<int64_t> count, const char* type, const char* name) {
    auto item = std::make_shared<AccessorNode>(shared_from_this());
    item->init(componentType, count, type, name);
    items.push_back(item);
    return item;
}

template <class T>
int64_t AccessorNodes::addDenseTyped(const T* data, int64_t count, AccessorComponentType componentType,
                                     const char* type, const std::optional<BufferViewTarget>& target, bool embedded,
                                     const char* name) {
    const std::string path = getNodePath();
    if (!type) SORVANE_THROW("Adding item to %s:\nNo type", path.c_str());
    const int64_t valueCount = accessorType2valueCount(type);
    int64_t values = 0;
    int64_t bytes = 0;
    if (count < 0 || __builtin_mul_overflow(count, valueCount, &values) ||
        __builtin_mul_overflow(values, static_cast<int64_t>(sizeof(T)), &bytes))
        SORVANE_THROW("Adding item to %s:\nInvalid count %ld", path.c_str(), static_cast<long>(count));
    if (!data && bytes > 0) SORVANE_THROW("Adding item to %s:\nNo data", path.c_str());

    // Exact bounds per component, whatever the data: the scan starts from the first element.
    std::vector<double> min, max;
    if (count > 0) {
        min.assign(data, data + valueCount);
        max = min;
        for (int64_t i = 1; i < count; ++i) {
            const T* element = data + i * valueCount;
            for (int64_t c = 0; c < valueCount; ++c) {
                const double v = static_cast<double>(element[c]);
                if (v < min[c]) min[c] = v;
                if (v > max[c]) max[c] = v;
            }
        }
    }

    auto item = std::make_shared<AccessorNode>(shared_from_this());
    item->init(componentType, count, type, name);
    std::shared_ptr<RootNode> rootNode = root.lock();
    if (!rootNode) SORVANE_THROW("Adding item to %s:\nNo document", path.c_str());
    const int64_t view = rootNode->bufferViews().addData(data, bytes, values, static_cast<int64_t>(sizeof(T)),
                                                         target, embedded, name);
    item->setBufferView(view);
    item->setType(type);
    item->setCount(count);
    item->setComponentType(componentType);
    if (count > 0) {
        item->setMin(min);
        item->setMax(max);
    }
    items.push_back(item);
    return static_cast<int64_t>(items.size()) - 1;
}

int64_t AccessorNodes::addDense(const void* data, int64_t count, AccessorComponentType componentType,
                                const char* type, const std::optional<BufferViewTarget>& target, bool embedded,
                                const char* name) {
    switch (componentType) {
    case ACCESSOR_COMPONENT_TYPE_BYTE:
        return addDenseTyped(static_cast<const int8_t*>(data), count, componentType, type, target, embedded, name);
    case ACCESSOR_COMPONENT_TYPE_UNSIGNED_BYTE:
        return addDenseTyped(static_cast<const uint8_t*>(data), count, componentType, type, target, embedded, name);
    case ACCESSOR_COMPONENT_TYPE_SHORT:
        return addDenseTyped(static_cast<const int16_t*>(data), count, componentType, type, target, embedded, name);
    case ACCESSOR_COMPONENT_TYPE_UNSIGNED_SHORT:
        return addDenseTyped(static_cast<const uint16_t*>(data), count, componentType, type, target, embedded, name);
    case ACCESSOR_COMPONENT_TYPE_UNSIGNED_INT:
        return addDenseTyped(static_cast<const uint32_t*>(data), count, componentType, type, target, embedded, name);
    case ACCESSOR_COMPONENT_TYPE_FLOAT:
        return addDenseTyped(static_cast<const float*>(data), count, componentType, type, target, embedded, name);
    default: SORVANE_THROW("Invalid or unsupported gltf component type %d", static_cast<int>(componentType));
    }
}

int64_t AccessorNodes::addTensor(const DataTree& tensor, const std::optional<BufferViewTarget>& target,
                                 bool embedded, const char* name) {
    if (!tensor.isTensor()) SORVANE_THROW("Adding item to %s:\nNot a tensor", getNodePath().c_str());
    const std::vector<long> dims = tensor.getTensorSizes();
    const char* type = nullptr;
    if (dims.size() == 1) {
        type = "SCALAR";
    } else if (dims.size() == 2) {
        switch (dims[1]) {
        case 2: type = "VEC2"; break;
        case 3: type = "VEC3"; break;
        case 4: type = "VEC4"; break;
        case 16: type = "MAT4"; break;
        default: SORVANE_THROW("Invalid or unsupported tensor layout [%ld,%ld]", dims[0], dims[1]);
        }
    } else if (dims.size() == 3) {
        if (dims[1] != 4 || dims[2] != 4)
            SORVANE_THROW("Invalid or unsupported tensor layout [%ld,%ld,%ld]", dims[0], dims[1], dims[2]);
        type = "MAT4";
    } else {
        SORVANE_THROW("Invalid or unsupported tensor layout");
    }
    const int64_t count = dims[0];
    if (tensor.getScalarType() == ScalarType::Integer64) {
        // glTF has no 64-bit integers: indices and joints narrow to UNSIGNED_INT.
        const auto* source = static_cast<const int64_t*>(tensor.getBuffer());
        const size_t n = static_cast<size_t>(tensor.getBufferSize()) / sizeof(int64_t);
        std::vector<uint32_t> narrowed(n);
        for (size_t i = 0; i < n; ++i) {
            const uint64_t v = static_cast<uint64_t>(source[i]);
            if (v > 0xFFFFFFFFull) SORVANE_THROW("Only unsigned 32-bit value can be handled");
            narrowed[i] = static_cast<uint32_t>(v);
        }
        return addDense(narrowed.data(), count, ACCESSOR_COMPONENT_TYPE_UNSIGNED_INT, type, target, embedded, name);
    }
    return addDense(tensor.getBuffer(), count, scalarType2componentType(tensor.getScalarType()), type, target,
                    embedded, name);
}

} // namespace sorvane::gltf2
