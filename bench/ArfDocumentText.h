#ifndef TALVEX_BENCH_ARFDOCUMENTTEXT_H
#define TALVEX_BENCH_ARFDOCUMENTTEXT_H

#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>

#include "sorvane/arf/node/RootNode.h"

namespace talvex_bench {

// A document made of the records the tree knows: many assets with levels of
// detail carrying every reference list, authentication features with texts,
// proprietary animations with long integer lists, generic configuration values.
inline const std::string& documentText() {
    static const std::string text = [] {
        auto root = std::make_shared<sorvane::arf::RootNode>();
        std::ostringstream json;
        json << "{\"preamble\": {\"signature\": \"MPEG-ARF-2025\", \"version\": \"1.0.0\", "
                "\"authenticationFeatures\": [";
        for (int i = 0; i < 3000; ++i)
            json << (i ? ", " : "") << "{\"publicKey\": \"key-" << i
                 << "-0123456789abcdef0123456789abcdef\", \"facialFeature\": \"face\\tfeature " << i << "\"}";
        json << "], \"supportedAnimations\": {\"faceAnimations\": [\"urn:a\", \"urn:b\"], \"proprietaryAnimations\": [";
        for (int i = 0; i < 200; ++i) {
            json << (i ? ", " : "") << "{\"id\": " << i << ", \"scheme\": \"urn:scheme:" << i << "\", \"items\": [";
            for (int k = 0; k < 300; ++k) json << (k ? ", " : "") << (k * 7919 + i) % 100000;
            json << "]}";
        }
        json << "]}}, \"identity\": {\"name\": \"Bench\", \"id\": \"b-1\", \"age\": 33.25, \"gender\": \"x\"}, "
                "\"structure\": {\"assets\": [";
        for (int a = 0; a < 4200; ++a) {
            json << (a ? ", " : "") << "{\"lods\": [";
            for (int l = 0; l < 4; ++l) {
                json << (l ? ", " : "") << "{";
                for (const char* key : {"skins", "meshes", "skeletons", "blendshapeSets", "landmarkSets",
                                        "textureSets", "attachmentSets", "gaussianSplatSets"}) {
                    json << "\"" << key << "\": [";
                    for (int k = 0; k < 6; ++k) json << (k ? ", " : "") << (a * 31 + l * 7 + k + 1);
                    json << "], ";
                }
                json << "\"name\": \"lod " << l << "\", \"id\": " << (l + 1) << "}";
            }
            json << "], \"name\": \"asset number " << a << "\", \"id\": " << (a + 1) << "}";
        }
        json << "], \"protectionConfigurations\": [";
        for (int i = 0; i < 500; ++i)
            json << (i ? ", " : "") << "{\"schemeIdUri\": \"urn:p:" << i << "\", \"value\": {\"level\": " << i
                 << ", \"names\": [\"a\", \"b\", 3]}}";
        json << "]}}";
        // Normalise to the library's own output form, the text it reads and writes in practice.
        std::istringstream in(json.str());
        sorvane::archive::JsonImporter importer(in);
        root->fromJson(importer);
        std::string out = root->toJsonString();
        if (out.size() < 10u * 1000u * 1000u) throw std::logic_error("benchmark document under 10 MB");
        return out;
    }();
    return text;
}

} // namespace talvex_bench

#endif
