/// @file
/// A large text that is nowhere as a whole.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_REPEATED_TEXT_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_REPEATED_TEXT_HPP

#include <cstddef>
#include <streambuf>
#include <string>
#include <utility>

namespace foundation::json::test {

/// Gives a text again and again, between a first and a last one, without holding it.
class RepeatedText : public std::streambuf {
public:
    RepeatedText(std::string first, std::string text, std::size_t times, std::string last)
        : first_(std::move(first)), text_(std::move(text)), last_(std::move(last)), left_(times) {}

protected:
    int_type underflow() override {
        std::string* next = &text_;
        if (!first_.empty()) {
            given_.swap(first_);
            first_.clear();
            next = &given_;
        } else if (left_ != 0) {
            --left_;
        } else if (!last_.empty()) {
            given_.swap(last_);
            last_.clear();
            next = &given_;
        } else {
            return traits_type::eof();
        }
        setg(next->data(), next->data(), next->data() + next->size());
        return traits_type::to_int_type(*gptr());
    }

private:
    std::string first_;
    std::string text_;
    std::string last_;
    std::string given_;
    std::size_t left_;
};

} // namespace foundation::json::test

#endif
