// Random sequences of flat calls on a loaded ARF document and a loaded glTF
// document: the input picks each call, the handle it goes to, its ids,
// indices and sizes, and which pointer arguments are null. Every call must
// return 0 or -1; the sanitizers see everything else. Buffers handed to the
// library are always as large as the sizes the call is told, since a lying
// caller is outside what the interface promises.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/gltf2/Gltf.h"
#include "sorvane/sorvane.h"

namespace {

const char kAvatar[] = R"(memory:{
  "preamble": {"signature": "MPEG-ARF-2025", "version": "1.0.0"},
  "identity": {"name": "fuzz", "age": 1.5},
  "structure": {},
  "components": {
    "nodes": [
      {"name": "root", "id": 1, "children": [2, 3], "translation": [0, 1, 0]},
      {"name": "a", "id": 2, "parent": 1},
      {"name": "b", "id": 3, "parent": 9}
    ],
    "meshes": [
      {"name": "m1", "id": 1, "data": [1, 2]},
      {"name": "m2", "id": 5, "data": [7], "path": "x"}
    ]
  },
  "data": []
})";

// Two accessors over one embedded buffer: floats 1..6 as VEC3, then 3 uint16.
const char kGltf[] = R"({"asset":{"version":"2.0"},
 "buffers":[{"uri":"data:application/octet-stream;base64,AACAPwAAAEAAAEBAAACAQAAAoEAAAMBAAAABAAIAAAA=","byteLength":32}],
 "bufferViews":[{"buffer":0,"byteLength":24},{"buffer":0,"byteOffset":24,"byteLength":6},
                {"buffer":0,"byteOffset":4,"byteLength":12,"byteStride":12}],
 "accessors":[{"bufferView":0,"componentType":5126,"count":2,"type":"VEC3","max":[4,5,6],"min":[1,2,3]},
              {"bufferView":1,"componentType":5123,"count":3,"type":"SCALAR"},
              {"bufferView":2,"componentType":5126,"count":1,"type":"VEC3"},
              {"bufferView":7,"componentType":5126,"count":1,"type":"SCALAR"}]})";

// Draws the call stream out of the input; past its end every draw is 0.
class Input {
public:
    Input(const uint8_t* data_, size_t size_) : data(data_), size(size_) {}
    bool more() const { return at < size; }
    uint8_t byte() { return at < size ? data[at++] : 0; }
    bool flag() { return byte() & 1; }
    // Mostly small numbers, sometimes extremes and negatives.
    int64_t number() {
        const uint8_t b = byte();
        switch (b >> 5) {
        case 0: return -1;
        case 1: return INT64_MAX;
        case 2: return INT64_MIN;
        case 3: return static_cast<int64_t>(b & 31) - 16;
        case 4: return static_cast<int64_t>(uint64_t(1) << (b & 63));
        default: return b & 15;
        }
    }
    // A size for a buffer of `capacity` bytes: never more than it holds.
    int64_t sizeUpTo(int64_t capacity) {
        const uint8_t b = byte();
        if (b == 255) return -1;
        return b % (capacity + 1);
    }
    std::string text() {
        const size_t n = byte() % 12;
        std::string s;
        for (size_t i = 0; i < n; ++i) s.push_back(static_cast<char>(' ' + byte() % 94));
        return s;
    }

private:
    const uint8_t* data;
    size_t size;
    size_t at = 0;
};

template <class T>
T* maybe(Input& in, T* p) {
    return (in.byte() % 5 == 0) ? nullptr : p;
}

// Handles of each kind; a slot that is replaced is released first.
template <class T, int32_t (*Delete)(T*)>
struct Slots {
    T* items[4] = {nullptr, nullptr, nullptr, nullptr};
    T*& pick(Input& in) { return items[in.byte() % 4]; }
    void put(T*& slot, T* value) {
        if (slot && slot != value) Delete(slot);
        slot = value;
    }
    ~Slots() {
        for (T* p : items)
            if (p) Delete(p);
    }
};

struct Pool {
    Slots<sorvane_arf_MeshList, sorvane_arf_MeshList_delete> meshLists;
    Slots<sorvane_arf_Mesh, sorvane_arf_Mesh_delete> meshes;
    Slots<sorvane_arf_NodeList, sorvane_arf_NodeList_delete> nodeLists;
    Slots<sorvane_arf_Node, sorvane_arf_Node_delete> nodes;
    Slots<sorvane_arf_DataList, sorvane_arf_DataList_delete> dataLists;
    Slots<sorvane_arf_Data, sorvane_arf_Data_delete> data;
    Slots<sorvane_gltf2_AccessorList, sorvane_gltf2_AccessorList_delete> accessorLists;
    Slots<sorvane_gltf2_Accessor, sorvane_gltf2_Accessor_delete> accessors;
    Slots<sorvane_gltf2_BufferViewList, sorvane_gltf2_BufferViewList_delete> viewLists;
    Slots<sorvane_gltf2_BufferView, sorvane_gltf2_BufferView_delete> views;
    Slots<sorvane_gltf2_Buffer, sorvane_gltf2_Buffer_delete> buffers;
};

void check(int32_t status) {
    if (status != 0 && status != -1) {
        std::fprintf(stderr, "flat call returned %d\n", static_cast<int>(status));
        std::abort();
    }
}

// Stores a handle made by a call into its slot; a failed call leaves the
// slot as it was.
template <class S, class T, class Call>
void make(S& slots, Input& in, Call&& call) {
    T* made = nullptr;
    T*& slot = slots.pick(in);
    const int32_t status = call(&made);
    check(status);
    if (status == 0 && made) slots.put(slot, made);
}

void step(Input& in, sorvane_arf_Arf* arf, sorvane_gltf2_Gltf* gltf, Pool& p) {
    alignas(8) static unsigned char buffer[512];
    static char text[64];
    int64_t size = 0, count = 0, value = 0;
    bool flag = false;
    const uint8_t op = in.byte() % 40;
    switch (op) {
    case 0: {
        sorvane_arf_Components* components = nullptr;
        check(sorvane_arf_Arf_getComponents(&components, arf));
        if (!components) break;
        make<decltype(p.meshLists), sorvane_arf_MeshList>(p.meshLists, in, [&](sorvane_arf_MeshList** out) {
            return sorvane_arf_Components_getMeshes(out, components);
        });
        make<decltype(p.nodeLists), sorvane_arf_NodeList>(p.nodeLists, in, [&](sorvane_arf_NodeList** out) {
            return sorvane_arf_Components_getNodes(out, components);
        });
        sorvane_arf_Components_delete(components);
        break;
    }
    case 1:
        make<decltype(p.meshes), sorvane_arf_Mesh>(p.meshes, in, [&](sorvane_arf_Mesh** out) {
            return in.flag() ? sorvane_arf_MeshList_get(maybe(in, out), p.meshLists.pick(in), in.number())
                             : sorvane_arf_MeshList_getByIndex(maybe(in, out), p.meshLists.pick(in), in.number());
        });
        break;
    case 2:
        make<decltype(p.meshes), sorvane_arf_Mesh>(p.meshes, in, [&](sorvane_arf_Mesh** out) {
            const std::string name = in.text();
            return sorvane_arf_MeshList_add(maybe(in, out), p.meshLists.pick(in),
                                            in.flag() ? nullptr : name.c_str(), in.flag(), in.number());
        });
        break;
    case 3:
        check(in.flag() ? sorvane_arf_MeshList_remove(p.meshLists.pick(in), in.number())
                        : sorvane_arf_MeshList_removeByIndex(p.meshLists.pick(in), in.number()));
        break;
    case 4:
        count = in.byte() % 3;
        check(sorvane_arf_Mesh_getDataItemValues(maybe(in, reinterpret_cast<int64_t*>(buffer)),
                                                 in.sizeUpTo(sizeof buffer), maybe(in, &count), p.meshes.pick(in)));
        break;
    case 5:
        check(sorvane_arf_Mesh_setDataItemValues(p.meshes.pick(in), maybe(in, reinterpret_cast<int64_t*>(buffer)),
                                                 in.sizeUpTo(sizeof buffer / 8)));
        break;
    case 6:
        size = in.sizeUpTo(sizeof text);
        check(sorvane_arf_Mesh_getName(maybe(in, text), maybe(in, &size), p.meshes.pick(in)));
        break;
    case 7: {
        const std::string name = in.text();
        check(sorvane_arf_Mesh_setName(p.meshes.pick(in), in.flag() ? nullptr : name.c_str()));
        break;
    }
    case 8: check(sorvane_arf_Mesh_removeProperty(p.meshes.pick(in))); break;
    case 9:
        check(sorvane_arf_Mesh_setDataItemValue(p.meshes.pick(in), in.number(), in.number()));
        break;
    case 10:
        make<decltype(p.data), sorvane_arf_Data>(p.data, in, [&](sorvane_arf_Data** out) {
            return sorvane_arf_Mesh_getDataItem(maybe(in, out), p.meshes.pick(in), in.number());
        });
        break;
    case 11:
        make<decltype(p.nodes), sorvane_arf_Node>(p.nodes, in, [&](sorvane_arf_Node** out) {
            return sorvane_arf_NodeList_getByIndex(maybe(in, out), p.nodeLists.pick(in), in.number());
        });
        break;
    case 12:
        make<decltype(p.nodes), sorvane_arf_Node>(p.nodes, in, [&](sorvane_arf_Node** out) {
            return sorvane_arf_Node_getParent(maybe(in, out), p.nodes.pick(in));
        });
        break;
    case 13: check(sorvane_arf_Node_setParentIndex(p.nodes.pick(in), in.number())); break;
    case 14:
        count = 0;
        check(sorvane_arf_Node_getTranslationValues(maybe(in, reinterpret_cast<double*>(buffer)),
                                                    in.sizeUpTo(sizeof buffer), maybe(in, &count), p.nodes.pick(in)));
        break;
    case 15: check(sorvane_arf_NodeList_remove(p.nodeLists.pick(in), in.number())); break;
    case 16:
        make<decltype(p.dataLists), sorvane_arf_DataList>(p.dataLists, in, [&](sorvane_arf_DataList** out) {
            return sorvane_arf_Arf_getData(maybe(in, out), arf);
        });
        break;
    case 17:
        make<decltype(p.data), sorvane_arf_Data>(p.data, in, [&](sorvane_arf_Data** out) {
            const int64_t dims[2] = {in.number(), in.number()};
            return sorvane_arf_DataList_addDense(maybe(in, out), p.dataLists.pick(in), maybe(in, buffer),
                                                 in.sizeUpTo(sizeof buffer), 5120 + in.byte() % 8, dims,
                                                 in.byte() % 3, in.flag(), nullptr, nullptr, in.flag(), in.number());
        });
        break;
    case 18: {
        int32_t dtype = 0;
        int64_t dims[4], dimCount = 0;
        check(sorvane_arf_Data_getTensorData(maybe(in, &size), maybe(in, &dtype), maybe(in, dims), in.byte() % 5,
                                             maybe(in, &dimCount), maybe(in, buffer), in.sizeUpTo(sizeof buffer),
                                             p.data.pick(in)));
        break;
    }
    case 19:
        check(sorvane_arf_Data_getData(maybe(in, &size), maybe(in, buffer), in.sizeUpTo(sizeof buffer),
                                       p.data.pick(in)));
        break;
    case 20: check(sorvane_arf_DataList_remove(p.dataLists.pick(in), in.number())); break;
    case 21:
        size = in.sizeUpTo(sizeof text);
        check(sorvane_arf_Arf_toJsonString(maybe(in, text), maybe(in, &size), arf));
        break;
    case 22:
        make<decltype(p.accessorLists), sorvane_gltf2_AccessorList>(
            p.accessorLists, in, [&](sorvane_gltf2_AccessorList** out) { return sorvane_gltf2_Gltf_getAccessors(out, gltf); });
        make<decltype(p.viewLists), sorvane_gltf2_BufferViewList>(
            p.viewLists, in, [&](sorvane_gltf2_BufferViewList** out) { return sorvane_gltf2_Gltf_getBufferViews(out, gltf); });
        break;
    case 23:
        make<decltype(p.accessors), sorvane_gltf2_Accessor>(p.accessors, in, [&](sorvane_gltf2_Accessor** out) {
            return sorvane_gltf2_AccessorList_getByIndex(maybe(in, out), p.accessorLists.pick(in), in.number());
        });
        break;
    case 24:
        size = in.sizeUpTo(sizeof buffer);
        check(sorvane_gltf2_Accessor_getData(maybe(in, buffer), maybe(in, &size), p.accessors.pick(in)));
        break;
    case 25:
        count = 0;
        check(sorvane_gltf2_Accessor_getDims(maybe(in, reinterpret_cast<int64_t*>(buffer)), in.sizeUpTo(sizeof buffer),
                                             maybe(in, &count), p.accessors.pick(in)));
        break;
    case 26: {
        DataTree* tensor = nullptr;
        check(sorvane_gltf2_Accessor_getTensor(maybe(in, &tensor), p.accessors.pick(in)));
        if (tensor) sorvane_datatree_DataTree_delete(tensor);
        break;
    }
    case 27: {
        sorvane_gltf2_Accessor* a = p.accessors.pick(in);
        switch (in.byte() % 5) {
        case 0: check(sorvane_gltf2_Accessor_setBufferView(a, in.number())); break;
        case 1: check(sorvane_gltf2_Accessor_setCount(a, in.number())); break;
        case 2: check(sorvane_gltf2_Accessor_setByteOffset(a, in.number())); break;
        case 3: check(sorvane_gltf2_Accessor_setComponentType(a, static_cast<int32_t>(5118 + in.byte() % 12))); break;
        default: {
            static const char* const types[] = {"SCALAR", "VEC2", "VEC3", "VEC4", "MAT2", "MAT3", "MAT4", "X", nullptr};
            check(sorvane_gltf2_Accessor_setType(a, types[in.byte() % 9]));
        }
        }
        break;
    }
    case 28:
        make<decltype(p.accessors), sorvane_gltf2_Accessor>(p.accessors, in, [&](sorvane_gltf2_Accessor** out) {
            static const char* const types[] = {"SCALAR", "VEC3", "MAT4", "bad", nullptr};
            const int64_t values = in.byte() % 5;
            return sorvane_gltf2_AccessorList_addDense(maybe(in, out), p.accessorLists.pick(in), maybe(in, buffer),
                                                       values, static_cast<int32_t>(5120 + in.byte() % 8),
                                                       types[in.byte() % 5], 0, in.flag(), nullptr);
        });
        break;
    case 29:
        make<decltype(p.views), sorvane_gltf2_BufferView>(p.views, in, [&](sorvane_gltf2_BufferView** out) {
            return sorvane_gltf2_BufferViewList_addBuffer(maybe(in, out), p.viewLists.pick(in), in.number(), 0,
                                                          in.number(), in.number(), nullptr);
        });
        break;
    case 30:
        make<decltype(p.views), sorvane_gltf2_BufferView>(p.views, in, [&](sorvane_gltf2_BufferView** out) {
            const int64_t valueSize = 1 + in.byte() % 4;
            const int64_t valueCount = in.sizeUpTo(sizeof buffer) / valueSize;
            return sorvane_gltf2_BufferViewList_addData(maybe(in, out), p.viewLists.pick(in), maybe(in, buffer),
                                                        valueCount * valueSize, valueCount, valueSize, 0, in.flag(),
                                                        nullptr);
        });
        break;
    case 31:
        size = in.sizeUpTo(sizeof buffer);
        check(sorvane_gltf2_BufferView_getBytes(maybe(in, buffer), maybe(in, &size), p.views.pick(in)));
        break;
    case 32:
        make<decltype(p.views), sorvane_gltf2_BufferView>(p.views, in, [&](sorvane_gltf2_BufferView** out) {
            return sorvane_gltf2_BufferViewList_getByIndex(maybe(in, out), p.viewLists.pick(in), in.number());
        });
        break;
    case 33:
        check(in.flag() ? sorvane_gltf2_AccessorList_remove(p.accessorLists.pick(in), in.number())
                        : sorvane_gltf2_BufferViewList_remove(p.viewLists.pick(in), in.number()));
        break;
    case 34: {
        sorvane_gltf2_BufferList* list = nullptr;
        check(sorvane_gltf2_Gltf_getBuffers(&list, gltf));
        make<decltype(p.buffers), sorvane_gltf2_Buffer>(p.buffers, in, [&](sorvane_gltf2_Buffer** out) {
            return sorvane_gltf2_BufferList_getByIndex(maybe(in, out), list, in.number());
        });
        if (list) sorvane_gltf2_BufferList_delete(list);
        size = in.sizeUpTo(sizeof buffer);
        check(sorvane_gltf2_Buffer_getBytes(maybe(in, buffer), maybe(in, &size), p.buffers.pick(in)));
        break;
    }
    case 35:
        check(sorvane_gltf2_Buffer_setByteLength(p.buffers.pick(in), in.number()));
        break;
    case 36:
        check(sorvane_gltf2_Accessor_clone(maybe(in, &value), p.accessors.pick(in), maybe(in, gltf)));
        break;
    case 37:
        size = in.sizeUpTo(sizeof text);
        check(sorvane_gltf2_Gltf_toJsonString(maybe(in, text), maybe(in, &size), gltf));
        break;
    case 38:
        check(sorvane_gltf2_Accessor_hasBufferView(maybe(in, &flag), p.accessors.pick(in)));
        check(sorvane_gltf2_Accessor_removeMaxItem(p.accessors.pick(in), in.number()));
        break;
    default:
        // Releases a handle: later calls on its slot get a null object.
        switch (in.byte() % 4) {
        case 0: p.meshes.put(p.meshes.pick(in), nullptr); break;
        case 1: p.accessors.put(p.accessors.pick(in), nullptr); break;
        case 2: p.meshLists.put(p.meshLists.pick(in), nullptr); break;
        default: p.views.put(p.views.pick(in), nullptr); break;
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::stringstream sink;
    std::streambuf* old = std::cerr.rdbuf(sink.rdbuf());
    sorvane_arf_Arf* arf = nullptr;
    sorvane_gltf2_Gltf* gltf = nullptr;
    if (sorvane_arf_Arf_load(&arf, kAvatar, false) != 0) std::abort();
    try {
        auto provider = std::make_shared<sorvane::archive::MemoryFileProvider>();
        provider->create("a.gltf", std::string(kGltf));
        gltf = sorvane::gltf2::Gltf::loadPtr(provider, "a.gltf", sorvane::gltf2::MULTIPLE_FILES);
    } catch (const std::exception&) {
        std::abort();
    }
    {
        Pool pool;
        Input in(data, size);
        for (int calls = 0; in.more() && calls < 4096; ++calls) step(in, arf, gltf, pool);
    }
    sorvane_gltf2_Gltf_delete(gltf);
    sorvane_arf_Arf_delete(arf);
    sorvane_clearErrorMessage();
    std::cerr.rdbuf(old);
    return 0;
}
