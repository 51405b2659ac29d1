#ifndef SORVANE_ARF_SECTIONPROPERTY_H
#define SORVANE_ARF_SECTIONPROPERTY_H

#include <memory>
#include <string>

#include "sorvane/arf/node/RootNode.h"
#include "sorvane/arf/property/Property.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

// One top-level section of a document as the Arf object holds it: made on
// demand in a writable document, reported missing in a read-only one.
// Traits gives the key, the root's getter and setter, and the fresh init.
template <class Acc, class Traits>
class SORVANE_API SectionProperty : public Property {
public:
    using NodeType = typename Acc::NodeType;

    SectionProperty() = default;
    SectionProperty(const std::shared_ptr<RootNode>& root_, bool readOnly_) : Property(root_, readOnly_) {}

    int64_t getPropertyIndex() const override { return -1; }
    std::string getPropertyName() const override { return Traits::kKey; }
    std::string getPropertyPath() const override { return Traits::kKey; }
    const char* getPropertyTypeName() const override { return NodeType::kTypeName; }
    void outputRepresentation(std::ostream& out) const override { get().outputRepresentation(out); }
    bool isPropertyPresent() const { return true; }

    Acc get() const { return Acc(propertyRoot, section(), propertyReadOnly); }
    Acc* getPtr() const { return new Acc(get()); }
    operator Acc() const { return get(); }
    struct Arrow {
        Acc value;
        Acc* operator->() { return &value; }
    };
    Arrow operator->() const { return Arrow{get()}; }

    bool has(const std::string& key) const {
        if (!propertyRoot || !Traits::get(*propertyRoot)) return false;
        return get().has(key);
    }

private:
    std::shared_ptr<NodeType> section() const {
        if (!propertyRoot) failInvalidNode();
        std::shared_ptr<NodeType> node = Traits::get(*propertyRoot);
        if (node) return node;
        if (propertyReadOnly) SORVANE_THROW("Getting %s: Property does not exist", Traits::kKey);
        node = std::make_shared<NodeType>(propertyRoot);
        Traits::init(*node);
        Traits::set(*propertyRoot, node);
        return node;
    }
};

} // namespace sorvane::arf

#endif
