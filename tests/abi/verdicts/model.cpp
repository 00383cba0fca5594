#include "model.hpp"

namespace model {

// A class that no header defines, though an exported class has a pointer to it.
class Box::Content {
public:
    int changes = 0;
#ifdef HIDDEN_CLASS_CHANGED
    long changes_undone = 0;
    Box* outer = nullptr;
#endif
};

#ifdef HIDDEN_FUNCTION_ADDED
int doubled(int number) {
    return 2 * number;
}
#else
namespace {

int doubled(int number) {
    return number + number;
}

} // namespace
#endif

Error::Error(Code code) : code_(code) {}
Error::Error(const Error&) = default;
Error::~Error() = default;

const char* Error::what() const noexcept {
    return "error";
}

Code Error::code() const {
    return code_;
}

#ifdef VIRTUAL_FUNCTION_ADDED
int Error::level() const {
    return 0;
}
#endif

#ifdef DATA_MEMBER_WITH_ANOTHER_NAME
#define size_ area_
#endif

Box::Box() : content_(new Content) {
    size_ = 0;
}

Box::~Box() {
    delete content_;
}

int Box::size() const {
    return size_;
}

void Box::resize(int size, const Options& options) {
    ++content_->changes;
    size_ = doubled(size) + options.depth;
}

#ifdef MEMBER_FUNCTION_ADDED
bool Box::empty() const {
    return size_ == 0;
}
#endif

#ifndef FUNCTION_REMOVED
Area area(const Box& box, Times times) {
    return box.size() * static_cast<Area>(times);
}
#endif

#ifdef VARIABLE_OF_ANOTHER_TYPE
const long limit = 3;
#else
const int limit = 3;
#endif

#ifdef FUNCTION_ADDED
int volume(const Box& box) {
    return box.size();
}
#endif

#ifdef CLASS_ADDED
Lid::Lid() = default;
Lid::~Lid() = default;
#endif

} // namespace model
