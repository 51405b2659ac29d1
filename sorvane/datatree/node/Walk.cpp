#include "sorvane/datatree/node/Walk.h"

#include <functional>
#include <memory>
#include <unordered_set>
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

namespace {

// Only a node that more than one handle refers to can close a cycle (or be
// met twice through sharing): the walks track just those, so plain trees pay
// one count read per container.
bool shared(const DataTree& handle) { return handle.getNodeRef().use_count() > 1; }

struct PairHash {
    size_t operator()(const std::pair<const Node*, const Node*>& p) const {
        return std::hash<const void*>()(p.first) * 31 + std::hash<const void*>()(p.second);
    }
};

} // namespace

bool deepEquals(const Node& a, const Node& b) {
    std::vector<std::pair<const Node*, const Node*>> todo{{&a, &b}};
    // Pairs of shared containers already taken up. Meeting one again adds
    // nothing: its items are compared (or queued) from the first meeting. This
    // ends the walk over two distinct cyclic trees and keeps shared subtrees
    // from being compared once per path that reaches them.
    std::unordered_set<std::pair<const Node*, const Node*>, PairHash> seen;
    auto queue = [&](const DataTree& x, const DataTree& y) {
        const Node* xn = &x.getNode();
        const Node* yn = &y.getNode();
        if (xn == yn) return;
        if (isContainer(*xn) && (shared(x) || shared(y)) && !seen.emplace(xn, yn).second) return;
        todo.emplace_back(xn, yn);
    };
    while (!todo.empty()) {
        auto [x, y] = todo.back();
        todo.pop_back();
        if (x == y) continue;
        if (const auto* xs = listItems(*x)) {
            const auto* ys = listItems(*y);
            if (!ys || xs->size() != ys->size()) return false;
            for (size_t i = xs->size(); i-- > 0;) queue((*xs)[i], (*ys)[i]);
        } else if (const auto* xm = objectItems(*x)) {
            const auto* ym = objectItems(*y);
            if (!ym || xm->size() != ym->size()) return false;
            // Both sorted by key: equal key sets pair up in order.
            for (auto xi = xm->begin(), yi = ym->begin(); xi != xm->end(); ++xi, ++yi) {
                if (xi->first != yi->first) return false;
                queue(xi->second, yi->second);
            }
        } else if (!x->equals(*y)) {
            return false;
        }
    }
    return true;
}

Node* deepClone(const Node& container) {
    std::unique_ptr<Node> top(emptyLike(container));
    // A step copies the items of `from` into `to`; a step with no `to` marks
    // the end of `from`'s subtree. Shared containers on the path from the top
    // are kept in `open`: meeting one of them again below itself is a cycle,
    // whose copy would never end.
    struct Step {
        const Node* from;
        Node* to;
        bool tracked;
    };
    std::vector<Step> todo{{&container, top.get(), false}};
    std::unordered_set<const Node*> open;
    while (!todo.empty()) {
        const Step step = todo.back();
        todo.pop_back();
        if (!step.to) {
            open.erase(step.from);
            continue;
        }
        if (step.tracked) {
            open.insert(step.from);
            todo.push_back({step.from, nullptr, false});
        }
        auto copyOne = [&](const DataTree& item) {
            const Node& source = item.getNode();
            if (!isContainer(source)) return DataTree(source.clone());
            if (!open.empty() && open.count(&source)) SORVANE_THROW("A DataTree that holds itself cannot be copied");
            DataTree copy(emptyLike(source));
            todo.push_back({&source, &copy.getNode(), shared(item)});
            return copy;
        };
        if (const auto* items = listItems(*step.from)) {
            auto* target = Access::items(static_cast<List*>(step.to));
            target->reserve(items->size());
            for (const DataTree& item : *items) target->push_back(copyOne(item));
        } else {
            auto* target = Access::items(static_cast<Object*>(step.to));
            for (const auto& [name, item] : *objectItems(*step.from)) target->emplace_hint(target->end(), name, copyOne(item));
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
