// One row of the metadata schema: the property's qualified name, the
// identity of its data type, and a factory for a serializer of that type.
// Rows are constants, named from code; a serializer is made per use.
#pragma once

#include <memory>
#include <typeinfo>

#include "metadata/Namespaces.h"

namespace Metadata {

class DataSerializer;

using SerializerFactory = std::unique_ptr<DataSerializer> (*)();

template <typename T>
std::unique_ptr<DataSerializer> MakeSerializer() {
    return std::make_unique<T>();
}

struct PropertyDescriptor {
    QualifiedName name;
    const std::type_info* type;
    SerializerFactory factory;

    std::unique_ptr<DataSerializer> CreateSerializer() const;
    template <typename T>
    bool HasType() const {
        return *type == typeid(T);
    }
};

// A row of data type T.
template <typename T>
constexpr PropertyDescriptor Row(const NamespaceDef& ns, const char* local) {
    return PropertyDescriptor{QualifiedName{&ns, local}, &typeid(T), &MakeSerializer<T>};
}

}  // namespace Metadata
