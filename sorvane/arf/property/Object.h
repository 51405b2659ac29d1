#ifndef SORVANE_ARF_PROPERTY_OBJECT_H
#define SORVANE_ARF_PROPERTY_OBJECT_H

#include "sorvane/arf/property/GenericProperty.h"

namespace sorvane::arf {

// A generic value used as an object; it differs from GenericProperty only by
// its type name.
class SORVANE_API Object : public GenericProperty {
public:
    using GenericProperty::GenericProperty;
    Object();
    Object(const GenericProperty& value);
    ~Object() override;

    const char* getPropertyTypeName() const override;
};

} // namespace sorvane::arf

#endif
