#ifndef SORVANE_DATATREE_NODE_TENSOR_H
#define SORVANE_DATATREE_NODE_TENSOR_H

#include <vector>

#include "sorvane/datatree/node/Node.h"

namespace sorvane::datatree {

// A dense row-major block of values with dimension sizes, outermost first.
// The node owns its malloc block and frees it with free().
class SORVANE_API Tensor : public Node {
public:
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
    const std::vector<long>& sizesRef() const { return sizes; }
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
    template <class T>
    void resize(const std::vector<long>& newSizes);

    void* buffer = nullptr;
    std::vector<long> sizes;
    ScalarType type;
};

} // namespace sorvane::datatree

#endif
