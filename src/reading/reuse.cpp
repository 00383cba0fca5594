#include "reading/reuse.hpp"

#include <utility>

namespace foundation::json::detail {

Value* Reuse::member_for(Object& object) {
    Object& left = left_.back();
    if (left.empty()) {
        return nullptr;
    }
    // Mostly, the names are those of the record before, in the same order.
    auto member = left.begin();
    if (member->first != name_) {
        const auto found = left.find(name_);
        member = found != left.end() ? found : member;
    }
    Object::node_type node = left.extract(member);
    if (node.key() != name_) {
        node.key() = name_;
    }
    return &object.insert(object.end(), std::move(node))->second;
}

} // namespace foundation::json::detail
