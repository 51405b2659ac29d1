#ifndef SORVANE_DATATREE_NODE_TENSOR_H
#define SORVANE_DATATREE_NODE_TENSOR_H

#include <cstddef>
#include <memory>
#include <vector>

#include "sorvane/datatree/node/Node.h"

namespace sorvane::datatree {

// A dense row-major block of values with dimension sizes, outermost first.
// The node owns its malloc block and frees it with free(). A tensor made by
// makeWithBlock holds its values in its own allocation instead; the block a
// caller gets from releaseBuffer is a malloc block either way.
class SORVANE_API Tensor : public Node {
    struct BlockTag {};
    friend class TensorBatch;

public:
    // Largest block makeWithBlock puts beside the node: past it a block of
    // its own costs nothing extra, and releasing it needs no copy.
    static constexpr size_t kMaxAdjacentBytes = size_t(64) << 10;

    // The node, its sizes and `bytes` uninitialised bytes for the values in
    // one allocation; the caller fills getBuffer(). `bytes` must hold what
    // the sizes need and not exceed kMaxAdjacentBytes ("Invalid buffer size").
    static std::shared_ptr<Tensor> makeWithBlock(size_t bytes, const long* sizes, size_t dimCount, ScalarType type);

    // Sizes [1] and room for one element.
    explicit Tensor(ScalarType type);
    // Zero-filled. The two constructors that allocate serve tensors below
    // 2 GiB; larger ones raise "Invalid buffer size".
    Tensor(const std::vector<long>& sizes, ScalarType type);
    // Copies the bytes the sizes need; "Invalid buffer size" when bufferSize
    // holds fewer.
    Tensor(const void* source, long bufferSize, const std::vector<long>& sizes, ScalarType type);
    // Takes the malloc block without copying.
    Tensor(void* data, long bufferSize, const std::vector<long>& sizes, ScalarType type);
    Tensor(void* data, long bufferSize, std::vector<long>&& sizes, ScalarType type);
    // For makeWithBlock only: tailSlot holds where the block starts.
    Tensor(BlockTag, void* tailSlot, const long* sizes, size_t dimCount, ScalarType type);
    ~Tensor() override;
    Tensor(const Tensor&) = delete;
    Tensor& operator=(const Tensor&) = delete;

    DataTreeType getType() const override;
    bool equals(const Node& other) const override;
    Node* clone() const override;
    bool isTensor() const override;
    bool hasScalarType() const override;
    ScalarType getScalarType() const override;

    long getValueCount() const override;
    long getSize() const override;
    long getBufferSize() const override;
    const void* getBuffer() const override;
    void* getBuffer() override;
    // The block goes to the caller; the tensor keeps going with sizes [1].
    void* releaseBuffer() override;

    long getTensorDim() const override;
    std::vector<long> getTensorSizes() const override;
    std::vector<long> getTensorStrides(bool inBytes) const override;
    long getTensorSize(long dim) const override;
    // A reshape when the count stays, else a change of the row length of a
    // two-dimensional tensor; anything else raises "Unsupported resize".
    void setTensorSizes(const std::vector<long>& sizes) override;
    void giveTensorData(void* data, const std::vector<long>& sizes, ScalarType type) override;
    void setTensorData(const void* data, const std::vector<long>& sizes, ScalarType type) override;
    // A copy of slice `index` along the first dimension.
    Node* getSubTensor(long index) const override;
    Node* convertScalarType(ScalarType type) const override;

    void toJson(archive::JsonExporter& exporter) const override;

private:
    // Dimension sizes, held in the node up to four (every glTF accessor and
    // most tensors), so that a small tensor makes no allocation for them.
    class Dims {
    public:
        Dims() = default;
        Dims(const long* values, size_t n) { assign(values, n); }
        Dims(const std::vector<long>& values) { assign(values.data(), values.size()); }
        Dims(const Dims& other) { assign(other.data(), other.count); }
        Dims& operator=(const Dims& other);
        Dims& operator=(const std::vector<long>& values);

        void assign(const long* values, size_t n);
        size_t size() const { return count; }
        bool empty() const { return count == 0; }
        const long* data() const { return heap ? heap.get() : local; }
        const long* begin() const { return data(); }
        const long* end() const { return data() + count; }
        long operator[](size_t i) const { return data()[i]; }
        std::vector<long> toVector() const { return std::vector<long>(begin(), end()); }
        bool operator==(const Dims& other) const;
        bool operator!=(const Dims& other) const { return !(*this == other); }

    private:
        static constexpr size_t kLocal = 4;
        long local[kLocal] = {0, 0, 0, 0};
        std::unique_ptr<long[]> heap;
        size_t count = 0;
    };

    template <class T>
    void resize(const std::vector<long>& newSizes);
    // Frees the block unless it lies in the node's own allocation.
    void dropBuffer();

    void* buffer = nullptr;
    Dims sizes;
    ScalarType type;
    bool adjacent = false;  // buffer lies in this node's allocation
};

} // namespace sorvane::datatree

#endif
