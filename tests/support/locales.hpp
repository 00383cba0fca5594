/// @file
/// Locales for tests: changes of the process's locales that undo themselves, and small facets.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_LOCALES_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_LOCALES_HPP

#include <clocale>
#include <locale>
#include <string>
#include <utility>

namespace foundation::json::test {

/// Sets a category of the C locale, until destroyed.
class ScopedCLocale {
public:
    ScopedCLocale(int category, const char* name)
        : category_(category),
          previous_(std::setlocale(category, nullptr)),
          succeeded_(std::setlocale(category, name) != nullptr) {}
    ScopedCLocale(const ScopedCLocale&) = delete;
    ScopedCLocale& operator=(const ScopedCLocale&) = delete;
    ~ScopedCLocale() { std::setlocale(category_, previous_.c_str()); }

    bool succeeded() const { return succeeded_; }

private:
    int category_;
    std::string previous_;
    bool succeeded_;
};

/// Sets the global C++ locale, until destroyed. A named locale becomes the C locale as well.
class ScopedGlobalLocale {
public:
    explicit ScopedGlobalLocale(const std::locale& locale)
        : previous_c_(std::setlocale(LC_ALL, nullptr)), previous_(std::locale::global(locale)) {}
    ScopedGlobalLocale(const ScopedGlobalLocale&) = delete;
    ScopedGlobalLocale& operator=(const ScopedGlobalLocale&) = delete;
    ~ScopedGlobalLocale() {
        std::locale::global(previous_);
        std::setlocale(LC_ALL, previous_c_.c_str());
    }

private:
    std::string previous_c_;
    std::locale previous_;
};

/// Groups digits with apostrophes, and has a semicolon for a decimal point.
class GroupingPunctuation : public std::numpunct<char> {
public:
    /// @param grouping  group sizes from the right, as std::numpunct has them: "\3" for thousands
    explicit GroupingPunctuation(std::string grouping) : grouping_(std::move(grouping)) {}

protected:
    char do_thousands_sep() const override { return '\''; }
    char do_decimal_point() const override { return ';'; }
    std::string do_grouping() const override { return grouping_; }

private:
    std::string grouping_;
};

/// The classic locale but for its digit grouping. Has no name, so the C locale never follows it.
inline std::locale grouping_locale(const std::string& grouping) {
    return std::locale(std::locale::classic(), new GroupingPunctuation(grouping));
}

} // namespace foundation::json::test

#endif
