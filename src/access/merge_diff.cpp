// Merge patches (RFC 7396), made of two values.
#include "access/pointer_steps.hpp"
#include "value/value_access.hpp"

#include <foundation/json/patch.hpp>
#include <foundation/json/pointer.hpp>

#include <string>
#include <utility>
#include <vector>

namespace foundation::json {

namespace {

/// Compares objects member by member. Not by recursion, since values may nest deeply.
class MergeDiff {
public:
    Value run(const Value& from, const Value& to) {
        if (!holds<Object>(to)) {
            if (holds<Undefined>(to) && !holds<Undefined>(from)) {
                throw PointerError("", "a merge patch cannot make the root Undefined");
            }
            return to;
        }
        Value result{Object()};
        open(nullptr, from, to, get<Object>(result));
        while (!levels_.empty()) {
            compare_next();
        }
        return result;
    }

private:
    using Members = Object::const_iterator;

    /// Objects at the same location.
    struct Level {
        const std::string* name; ///< null for the root
        Members from;
        Members from_end;
        Members to;
        Members to_end;
        Object* changes;
        bool is_new; ///< on the other side there is no object
    };

    void open(const std::string* name, const Value& from, const Value& to, Object& changes) {
        const auto& to_members = get<Object>(to);
        const auto* const from_members = get_if<Object>(&from);
        // What is not there has no members.
        const auto begin = from_members != nullptr ? from_members->begin() : to_members.end();
        const auto end = from_members != nullptr ? from_members->end() : to_members.end();
        levels_.push_back({name, begin, end, to_members.begin(), to_members.end(), &changes,
                           from_members == nullptr});
    }

    /// Compares the next members of the innermost objects, or leaves them.
    void compare_next() {
        const Value& nothing = detail::ValueAccess::undefined();
        Level& level = levels_.back();
        if (level.from == level.from_end && level.to == level.to_end) {
            close();
        } else if (level.to == level.to_end ||
                   (level.from != level.from_end && level.from->first < level.to->first)) {
            const auto& member = *level.from++;
            compare(member.first, member.second, nothing);
        } else if (level.from == level.from_end || level.to->first < level.from->first) {
            const auto& member = *level.to++;
            compare(member.first, nothing, member.second);
        } else {
            const Value& from = (level.from++)->second;
            const auto& member = *level.to++;
            compare(member.first, from, member.second);
        }
    }

    /// @param from, to  Undefined for a member that is missing
    void compare(const std::string& name, const Value& from, const Value& to) {
        Object& changes = *levels_.back().changes;
        if (holds<Object>(to)) {
            const auto member = changes.emplace_hint(changes.end(), name, Object());
            open(&name, from, to, get<Object>(member->second));
        } else if (!equivalent(from, to)) {
            if (holds<Null>(to)) {
                throw PointerError(pointer_to(name), "a merge patch cannot make a member null");
            }
            changes.emplace_hint(changes.end(), name, holds<Undefined>(to) ? Value(Null()) : to);
        }
    }

    /// Leaves the innermost objects; where nothing has changed, nothing is said.
    void close() {
        const Level closed = levels_.back();
        levels_.pop_back();
        if (!levels_.empty() && closed.changes->empty() && !closed.is_new) {
            levels_.back().changes->erase(*closed.name);
        }
    }

    std::string pointer_to(const std::string& name) const {
        std::string result;
        for (const Level& level : levels_) {
            if (level.name != nullptr) {
                detail::append_name_token(result, *level.name);
            }
        }
        detail::append_name_token(result, name);
        return result;
    }

    std::vector<Level> levels_; ///< from the outermost to the innermost
};

} // namespace

Value merge_diff(const Value& from, const Value& to) {
    return MergeDiff().run(from, to);
}

} // namespace foundation::json
