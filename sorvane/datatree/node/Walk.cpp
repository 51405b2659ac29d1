#include "sorvane/datatree/node/Walk.h"

#include <memory>
#include <utility>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/node/List.h"
#include "sorvane/datatree/node/Object.h"

namespace sorvane::datatree::detail {

struct Access {
    static std::vector<DataTree>* items(List* list) { return list ? &list->items : nullptr; }
    static const std::vector<DataTree>* items(const List* list) { return list ? &list->items : nullptr; }
    static std::map<std::string, DataTree>* items(Object* object) { return object ? &object->items : nullptr; }
    static const std::map<std::string, DataTree>* items(const Object* object) {
        return object ? &object->items : nullptr;
    }
};

namespace {

// By the kind a node reports: List and Object have no subclasses, and this
// runs for every item of every container destroyed, so no dynamic_cast.
const std::vector<DataTree>* listItems(const Node& node) {
    return node.getType() == DataTreeType::List ? Access::items(static_cast<const List*>(&node)) : nullptr;
}
const std::map<std::string, DataTree>* objectItems(const Node& node) {
    return node.getType() == DataTreeType::Object ? Access::items(static_cast<const Object*>(&node)) : nullptr;
}

bool isContainer(const Node& node) {
    const DataTreeType type = node.getType();
    return type == DataTreeType::List || type == DataTreeType::Object;
}

Node* emptyLike(const Node& node) {
    if (listItems(node)) return new List();
    return new Object();
}

} // namespace

bool deepEquals(const Node& a, const Node& b) {
    std::vector<std::pair<const Node*, const Node*>> todo{{&a, &b}};
    while (!todo.empty()) {
        auto [x, y] = todo.back();
        todo.pop_back();
        if (x == y) continue;
        if (const auto* xs = listItems(*x)) {
            const auto* ys = listItems(*y);
            if (!ys || xs->size() != ys->size()) return false;
            for (size_t i = xs->size(); i-- > 0;) todo.emplace_back(&(*xs)[i].getNode(), &(*ys)[i].getNode());
        } else if (const auto* xm = objectItems(*x)) {
            const auto* ym = objectItems(*y);
            if (!ym || xm->size() != ym->size()) return false;
            // Both sorted by key: equal key sets pair up in order.
            for (auto xi = xm->begin(), yi = ym->begin(); xi != xm->end(); ++xi, ++yi) {
                if (xi->first != yi->first) return false;
                todo.emplace_back(&xi->second.getNode(), &yi->second.getNode());
            }
        } else if (!x->equals(*y)) {
            return false;
        }
    }
    return true;
}

Node* deepClone(const Node& container) {
    std::unique_ptr<Node> top(emptyLike(container));
    std::vector<std::pair<const Node*, Node*>> todo{{&container, top.get()}};
    while (!todo.empty()) {
        auto [from, to] = todo.back();
        todo.pop_back();
        auto copyOne = [&](const DataTree& item) {
            const Node& source = item.getNode();
            if (!isContainer(source)) return DataTree(source.clone());
            DataTree copy(emptyLike(source));
            todo.emplace_back(&source, &copy.getNode());
            return copy;
        };
        if (const auto* items = listItems(*from)) {
            auto* target = Access::items(static_cast<List*>(to));
            target->reserve(items->size());
            for (const DataTree& item : *items) target->push_back(copyOne(item));
        } else {
            auto* target = Access::items(static_cast<Object*>(to));
            for (const auto& [name, item] : *objectItems(*from)) target->emplace_hint(target->end(), name, copyOne(item));
        }
    }
    return top.release();
}

namespace {

// Moves the handles a List or an Object holds into `out`.
void takeChildren(Node& node, std::vector<DataTree>& out) {
    if (node.getType() == DataTreeType::List) {
        auto* list = Access::items(static_cast<List*>(&node));
        for (DataTree& item : *list) out.push_back(std::move(item));
        list->clear();
    } else if (node.getType() == DataTreeType::Object) {
        auto* object = Access::items(static_cast<Object*>(&node));
        for (auto& entry : *object) out.push_back(std::move(entry.second));
        object->clear();
    }
}

bool soleOwner(const DataTree& handle) { return handle.getNodeRef() && handle.getNodeRef().use_count() == 1; }

} // namespace

void dismantle(std::vector<DataTree>& items) {
    bool nested = false;
    for (const DataTree& item : items) {
        if (isContainer(item.getNode()) && soleOwner(item)) {
            nested = true;
            break;
        }
    }
    if (!nested) return;
    try {
        std::vector<DataTree> pending;
        pending.swap(items);
        while (!pending.empty()) {
            DataTree last = std::move(pending.back());
            pending.pop_back();
            // A node other handles still share is not ours to take apart.
            if (soleOwner(last)) takeChildren(last.getNode(), pending);
        }
    } catch (...) {
        // No memory for the work list: the plain nested destruction of what
        // is left still frees everything.
    }
}

void dismantle(std::map<std::string, DataTree>& items) {
    std::vector<DataTree> handles;
    try {
        handles.reserve(items.size());
    } catch (...) {
        return;
    }
    for (auto& entry : items) handles.push_back(std::move(entry.second));
    items.clear();
    dismantle(handles);
}

namespace {

thread_local int writeDepth = 0;

// The levels a read counts: one per List or Object, and for a Tensor one per
// dimension but the innermost, whose values are a plain number list.
long levelsOf(const Node& node) {
    if (isContainer(node)) return 1;
    if (node.isTensor()) return node.getTensorDim() > 1 ? node.getTensorDim() - 1 : 0;
    return 0;
}

void checkWriteDepth(const Node& root) {
    std::vector<std::pair<const Node*, long>> todo{{&root, 0}};
    while (!todo.empty()) {
        auto [node, above] = todo.back();
        todo.pop_back();
        const long level = above + levelsOf(*node);
        if (level > Node::kMaxJsonDepth) SORVANE_THROW("DataTree depth %ld is too deep to write", level);
        if (const auto* items = listItems(*node)) {
            for (const DataTree& item : *items) todo.emplace_back(&item.getNode(), level);
        } else if (const auto* members = objectItems(*node)) {
            for (const auto& entry : *members) todo.emplace_back(&entry.second.getNode(), level);
        }
    }
}

} // namespace

WriteDepthGuard::WriteDepthGuard(const Node& node) {
    if (writeDepth == 0) checkWriteDepth(node);
    ++writeDepth;
}

WriteDepthGuard::~WriteDepthGuard() { --writeDepth; }

} // namespace sorvane::datatree::detail
