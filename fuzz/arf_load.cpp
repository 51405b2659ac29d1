// Arbitrary bytes loaded as a "memory:" document, walked through the
// accessors (every reference followed, every node matrix computed, every
// joint and curve tensor read) and saved back into its memory store.
#include <cstdint>
#include <iostream>
#include <sstream>
#include <string>

#include "sorvane/arf/Arf.h"
#include "sorvane/core/RuntimeException.h"

namespace {

using namespace sorvane::arf;

// One step of the walk: a dangling id or an unreadable payload ends the
// step, not the walk.
template <class F>
void attempt(F&& step) {
    try {
        step();
    } catch (const sorvane::RuntimeException&) {
    }
}

template <class Member>
void follow(const Member& member) {
    attempt([&] {
        if (member.isPropertyPresent()) member.get().getPropertyPath();
    });
}

template <class Member>
void followAll(const Member& member) {
    for (int64_t i = 0; i < member.size(); ++i) attempt([&] { member.getItem(i).get().getPropertyPath(); });
}

void readTensor(const Data& item) {
    attempt([&] { item.getTensor(); });
}

template <class Member>
void readCurve(const Member& member) {
    attempt([&] { readTensor(member.get()); });
}

template <class List, class F>
void each(const List& list, F&& visit) {
    if (list.isPropertyPresent())
        for (const auto& item : list) attempt([&] { visit(item); });
}

void walkLinks(const AnimationLinkList& links) {
    for (const AnimationLink& link : links) {
        each(link.mappings, [](const AnimationMapping& mapping) {
            each(mapping.linearAssociations, [](const LinearAssociation& a) {
                for (int64_t i = 0; i < a.sourceIndices.size(); ++i)
                    if (a.weights.has(i)) a.weights.get(i);
            });
            each(mapping.nonLinearAssociations, [](const NonLinearAssociation& a) {
                each(a.channels, [](const AssociationChannel& channel) {
                    readCurve(channel.input);
                    readCurve(channel.output);
                    channel.interpolation.get();
                });
            });
        });
    }
}

template <class Component>
void walkComponentLinks(const Component& component) {
    if (component.animationInfo.isPropertyPresent()) walkLinks(component.animationInfo.get());
}

void walk(const Arf& arf) {
    auto structure = arf.structure.get();
    for (const auto& asset : structure.assets) {
        asset.name.get();
        for (const auto& lod : asset.lods) {
            followAll(lod.meshes);
            followAll(lod.skins);
            followAll(lod.skeletons);
            followAll(lod.blendshapeSets);
            followAll(lod.landmarkSets);
            followAll(lod.textureSets);
            followAll(lod.attachmentSets);
            followAll(lod.gaussianSplatSets);
        }
    }
    auto c = arf.components.get();
    each(c.nodes, [](const Node& n) {
        follow(n.parent);
        followAll(n.children);
        attempt([&] { n.getTransformMatrix(); });
    });
    each(c.skeletons, [](const Skeleton& s) {
        follow(s.root);
        follow(s.inverseBindMatrix);
        attempt([&] { s.inverseBindMatrix.getDataSize(); });
        each(s.joints, [](const JointKey& j) { follow(j.node_); });
        walkComponentLinks(s);
    });
    each(c.skins, [](const Skin& s) {
        follow(s.skeleton);
        follow(s.blendshapeSet);
        follow(s.landmarkSet);
        follow(s.textureSet);
        follow(s.mesh);
        follow(s.weights);
    });
    each(c.meshes, [](const Mesh& m) { followAll(m.data); });
    each(c.blendshapeSets, [](const BlendshapeSet& s) {
        follow(s.baseMesh);
        each(s.shapes, [](const ShapeKey& k) { readCurve(k.shape); });
        walkComponentLinks(s);
    });
    each(c.landmarkSets, [](const LandmarkSet& s) {
        follow(s.baseMesh);
        follow(s.vertices);
        follow(s.faces);
        follow(s.weights);
        walkComponentLinks(s);
    });
    each(c.textureSets, [](const TextureSet& s) {
        follow(s.material);
        each(s.targets, [](const TextureTarget& t) { follow(t.texture); });
        walkComponentLinks(s);
    });
    each(c.attachmentSets, [](const AttachmentSet& s) {
        follow(s.node_);
        followAll(s.meshes);
        followAll(s.vertices);
    });
    each(c.gaussianSplatSets, [](const GaussianSplatSet& s) {
        s.mode.get();
        follow(s.positions);
        follow(s.baseMeshData);
        follow(s.vertices);
        follow(s.faces);
        follow(s.baryCenters);
        follow(s.uvs);
        follow(s.distances);
        follow(s.displacements);
        follow(s.normals);
        follow(s.orientations);
        follow(s.scales);
        follow(s.colors);
        follow(s.alphas);
        follow(s.baseMesh);
        follow(s.textureSet);
        follow(s.landmarkSet);
        attempt([&] { s.attributes.get().size(); });
        walkComponentLinks(s);
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::stringstream sink;
    std::streambuf* old = std::cerr.rdbuf(sink.rdbuf());
    try {
        auto arf = Arf::load("memory:" + std::string(reinterpret_cast<const char*>(data), size));
        walk(arf);
        arf.identity->name.add("!");
        arf.save();
    } catch (const sorvane::RuntimeException&) {
    }
    std::cerr.rdbuf(old);
    return 0;
}
