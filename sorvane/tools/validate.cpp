#include "sorvane/tools/validate.h"

#include <cstring>
#include <map>
#include <set>
#include <sstream>

#include "sorvane/archive/JsonImporter.h"
#include "sorvane/arf/Arf.h"
#include "sorvane/arf/node/data/DataNodes.h"
#include "sorvane/datatree/DataTree.h"
#include "sorvane/gltf2/Gltf.h"
#include "sorvane/tools/RecordTable.h"

namespace sorvane {

namespace {

using detail::FieldInfo;
using detail::RecordInfo;

struct Reference {
    std::string path;
    long id;
    std::string target;
    bool index;  // a position in the target list (glTF) rather than an id
};

// Walks the document's JSON with the record descriptions, gathering the ids of
// every list and every reference made.
class Walker {
public:
    Walker(const RecordInfo* table, size_t count, const char* module) {
        for (size_t i = 0; i < count; ++i)
            if (std::strcmp(table[i].module, module) == 0) records[table[i].name] = &table[i];
    }

    void document(const DataTree& root) {
        for (const auto& [name, record] : records) {
            if (record->section && root.hasItem(record->section))
                walk(*record, root.getItem(std::string(record->section)), record->section, record->section);
            if (record->rootList && root.hasItem(record->rootList))
                list(*record, root.getItem(std::string(record->rootList)), record->rootList, record->rootList);
        }
    }

    std::map<std::string, std::set<long>> ids;  // by target name ("components.nodes", "data")
    std::map<std::string, long> sizes;          // of the lists by target name, for index references
    std::vector<Reference> references;
    std::vector<std::string> problems;

private:
    // `target` is the name references use for this record's list, when it has one.
    void list(const RecordInfo& record, const DataTree& items, const std::string& path, const std::string& target) {
        if (!items.isList()) return;
        sizes[target] = items.getSize();
        std::set<long>& seen = ids[target];
        for (long i = 0; i < items.getSize(); ++i) {
            const DataTree& item = items.getItem(i);
            const std::string itemPath = path + "[" + std::to_string(i) + "]";
            for (int f = 0; f < record.fieldCount; ++f) {
                const FieldInfo& field = record.fields[f];
                if (std::strcmp(field.type, "id") != 0 || !item.isObject() || !item.hasItem(field.key)) continue;
                const DataTree& id = item.getItem(std::string(field.key));
                if (id.isInteger() && !seen.insert(id.getInteger()).second)
                    problems.push_back(itemPath + ": duplicate id " + std::to_string(id.getInteger()) + " in " + path);
            }
            walk(record, item, itemPath, "");
        }
    }

    void walk(const RecordInfo& record, const DataTree& value, const std::string& path, const std::string& section) {
        if (!value.isObject()) return;
        for (int f = 0; f < record.fieldCount; ++f) {
            const FieldInfo& field = record.fields[f];
            if (!value.hasItem(field.key)) continue;
            const DataTree& member = value.getItem(std::string(field.key));
            const std::string memberPath = path + "." + field.key;
            const auto child = field.of ? records.find(field.of) : records.end();
            if (std::strcmp(field.type, "ref") == 0 || std::strcmp(field.type, "index") == 0) {
                if (member.isInteger())
                    references.push_back({memberPath, member.getInteger(), field.target, field.type[0] == 'i'});
            } else if (std::strcmp(field.type, "refs") == 0 || std::strcmp(field.type, "indices") == 0) {
                if (!member.isList()) continue;
                for (long i = 0; i < member.getSize(); ++i)
                    if (member.getItem(i).isInteger())
                        references.push_back({memberPath + "[" + std::to_string(i) + "]", member.getItem(i).getInteger(),
                                              field.target, field.type[0] == 'i'});
            } else if (std::strcmp(field.type, "indexMap") == 0) {
                mapReferences(member, memberPath, field.target);
            } else if (std::strcmp(field.type, "indexMaps") == 0) {
                if (!member.isList()) continue;
                for (long i = 0; i < member.getSize(); ++i)
                    mapReferences(member.getItem(i), memberPath + "[" + std::to_string(i) + "]", field.target);
            } else if (std::strcmp(field.type, "list") == 0 && child != records.end()) {
                // Lists directly under a section are what references name.
                list(*child->second, member, memberPath, section.empty() ? memberPath : section + "." + field.key);
            } else if (std::strcmp(field.type, "object") == 0 && child != records.end()) {
                walk(*child->second, member, memberPath, "");
            }
        }
    }

    // The indices under the keys of a text-to-index map ("attributes").
    void mapReferences(const DataTree& map, const std::string& path, const char* target) {
        if (!map.isObject()) return;
        for (const std::string& key : map.getItemNames()) {
            const DataTree& value = map.getItem(key);
            if (value.isInteger()) references.push_back({path + "[" + key + "]", value.getInteger(), target, true});
        }
    }

    std::map<std::string, const RecordInfo*> records;
};

std::string payloadProblem(const arf::Data& item) {
    try {
        const std::string type = item.type.get();
        if (type == arf::kDenseMimeType || type == arf::kSparseMimeType) (void)item.getTensor();
        else (void)item.getString();
        return std::string();
    } catch (const std::exception& e) {
        return e.what();
    }
}

// The record problems of a document's JSON text: duplicate ids, and
// references to ids (ARF) or positions (glTF) their target list lacks.
std::vector<std::string> checkRecords(const std::string& json, const char* module) {
    std::istringstream text(json);
    archive::JsonImporter importer(text);
    const DataTree root = DataTree::createFromJson(importer, DATATREE_IMPORT_KEEP_NUMBER_LISTS);

    size_t count = 0;
    const RecordInfo* table = detail::recordTable(count);
    Walker walker(table, count, module);
    walker.document(root);
    std::vector<std::string> problems = walker.problems;
    for (const Reference& reference : walker.references) {
        bool found = false;
        if (reference.index) {
            const auto size = walker.sizes.find(reference.target);
            found = size != walker.sizes.end() && reference.id >= 0 && reference.id < size->second;
        } else {
            const auto ids = walker.ids.find(reference.target);
            found = ids != walker.ids.end() && ids->second.count(reference.id) > 0;
        }
        if (!found)
            problems.push_back(reference.path + ": dangling reference to " + (reference.index ? "index " : "id ") +
                               std::to_string(reference.id) + " in " + reference.target);
    }
    return problems;
}

} // namespace

std::vector<std::string> validateArf(const arf::Arf& arf) {
    std::vector<std::string> problems = checkRecords(arf.toJsonString(), "arf");
    long index = 0;
    for (const arf::Data& item : arf.data.get()) {
        const std::string problem = payloadProblem(item);
        if (!problem.empty())
            problems.push_back("data[" + std::to_string(index) + "]: payload fails to read: " + problem);
        ++index;
    }
    return problems;
}

} // namespace sorvane

namespace sorvane {

std::vector<std::string> validateGltf(const gltf2::Gltf& gltf) {
    std::vector<std::string> problems = checkRecords(gltf.toJsonString(), "gltf2");
    const int64_t count = gltf.accessors.size();
    for (int64_t i = 0; i < count; ++i) {
        try {
            (void)gltf.accessors[i].getTensor();
        } catch (const std::exception& e) {
            problems.push_back("accessors[" + std::to_string(i) + "]: accessor fails to read: " + e.what());
        }
    }
    return problems;
}

} // namespace sorvane
