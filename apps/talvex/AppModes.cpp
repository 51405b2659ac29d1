#include "apps/talvex/AppModes.h"

#include "apps/talvex/ConvertMode.h"
#include "apps/talvex/FormatMode.h"
#include "apps/talvex/InfoMode.h"
#include "apps/talvex/ListMode.h"

namespace talvex_app {

sorvane::Mode* createAnimateMode(args::ArgumentParser& parser);
sorvane::Mode* createCompareImagesMode(args::ArgumentParser& parser);
sorvane::Mode* createCompareTensorsMode(args::ArgumentParser& parser);
sorvane::Mode* createDataTreeInfoMode(args::ArgumentParser& parser);
sorvane::Mode* createFrameworksMode(args::ArgumentParser& parser);
sorvane::Mode* createGltfInfoMode(args::ArgumentParser& parser);
sorvane::Mode* createGltfNodesMode(args::ArgumentParser& parser);
sorvane::Mode* createGltfAnimMode(args::ArgumentParser& parser);
sorvane::Mode* createLinksMode(args::ArgumentParser& parser);
sorvane::Mode* createImageConvertMode(args::ArgumentParser& parser);
sorvane::Mode* createImageInfoMode(args::ArgumentParser& parser);
sorvane::Mode* createMakeExampleMode(args::ArgumentParser& parser);
sorvane::Mode* createMeshConvertMode(args::ArgumentParser& parser);
sorvane::Mode* createPoseMode(args::ArgumentParser& parser);
sorvane::Mode* createSkeletonMode(args::ArgumentParser& parser);
sorvane::Mode* createStreamDumpMode(args::ArgumentParser& parser);
sorvane::Mode* createStreamMakeMode(args::ArgumentParser& parser);
sorvane::Mode* createValidateMode(args::ArgumentParser& parser);

template <class M>
static sorvane::Mode* make(args::ArgumentParser& parser) {
    return new M(parser);
}

AppModes::AppModes() {
    addCategory("Documents");
    addMode("info", make<InfoMode>);
    addMode("convert", make<ConvertMode>);
    addMode("format", make<FormatMode>);
    addMode("make-example", createMakeExampleMode);
    addMode("links", createLinksMode);
    addMode("skeleton", createSkeletonMode);
    addCategory("Files");
    addMode("list", make<ListMode>);
    addCategory("Animation");
    addMode("stream-dump", createStreamDumpMode);
    addMode("stream-make", createStreamMakeMode);
    addMode("frameworks", createFrameworksMode);
    addMode("pose", createPoseMode);
    addMode("animate", createAnimateMode);
    addCategory("glTF");
    addMode("gltf-info", createGltfInfoMode);
    addMode("gltf-nodes", createGltfNodesMode);
    addMode("gltf-anim", createGltfAnimMode);
    addCategory("DataTree");
    addMode("datatree-info", createDataTreeInfoMode);
    addCategory("Images");
    addMode("image-info", createImageInfoMode);
    addMode("image-convert", createImageConvertMode);
    addCategory("Meshes");
    addMode("mesh-convert", createMeshConvertMode);
    addCategory("Checks");
    addMode("compare-tensors", createCompareTensorsMode);
    addMode("compare-images", createCompareImagesMode);
    addMode("validate", createValidateMode);
}

} // namespace talvex_app
