#ifndef SORVANE_DATATREE_NODE_STRING_H
#define SORVANE_DATATREE_NODE_STRING_H

#include "sorvane/datatree/node/Node.h"

namespace sorvane::datatree {

class SORVANE_API String : public Node {
public:
    String() = default;
    explicit String(const std::string& value);
    explicit String(std::string&& value);

    DataTreeType getType() const override;
    bool equals(const Node& other) const override;
    Node* clone() const override;
    bool isString() const override;
    const std::string& getString() const override;
    void setString(const std::string& value) override;

    void fromJson(archive::JsonImporter& importer, DataTreeImport flags) override;
    void toJson(archive::JsonExporter& exporter) const override;

private:
    std::string value{};
};

} // namespace sorvane::datatree

#endif
