#ifndef SORVANE_DATATREE_NODE_WALK_H
#define SORVANE_DATATREE_NODE_WALK_H

// Internal: the walks over List and Object nesting. A caller can build a tree
// of any depth in code, so none of these uses the call stack per level.

#include <map>
#include <string>
#include <vector>

#include "sorvane/datatree/DataTree.h"
#include "sorvane/datatree/node/Node.h"

namespace sorvane::datatree::detail {

bool deepEquals(const Node& a, const Node& b);

// A new copy of a List or an Object and everything below it.
Node* deepClone(const Node& container);

// Empties `items`, destroying the containers that only these handles keep
// alive level by level instead of one nested destructor call per level.
void dismantle(std::vector<DataTree>& items);
void dismantle(std::map<std::string, DataTree>& items);

// The walks' way into the items of List and Object (a friend of both).
struct Access;

// Held by List and Object while they write. The outermost one measures the
// tree first and raises "DataTree depth N is too deep to write" when a read
// would refuse the text, before any of it is written.
class WriteDepthGuard {
public:
    explicit WriteDepthGuard(const Node& node);
    ~WriteDepthGuard();
    WriteDepthGuard(const WriteDepthGuard&) = delete;
    WriteDepthGuard& operator=(const WriteDepthGuard&) = delete;
};

} // namespace sorvane::datatree::detail

#endif
