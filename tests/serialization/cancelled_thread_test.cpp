// A thread that is cancelled while it writes ends there: the library does not swallow the exception
// of a cancellation.
#include "support/locales.hpp"

#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <ios>
#include <locale>
#include <vector>

#include <pthread.h>

namespace {

// Other standard libraries than GNU's end the program where a stream meets a cancellation.
#if defined(__GLIBCXX__)

using namespace foundation::json;

/// A point of cancellation.
class CancellingNumPut : public std::num_put<char> {
protected:
    iter_type do_put(iter_type out, std::ios_base& stream, char fill,
                     unsigned long long number) const override {
        pthread_cancel(pthread_self());
        pthread_testcancel();
        return std::num_put<char>::do_put(out, stream, fill, number);
    }
};

bool has_returned = false;

void* write_and_be_cancelled(void*) {
    static_cast<void>(serialize(std::vector<Value>{true, 1ULL, false}));
    has_returned = true;
    return nullptr;
}

TEST(CancelledThread, EndsWhereItWrites) {
    const test::ScopedGlobalLocale global(
        std::locale(std::locale::classic(), new CancellingNumPut));
    has_returned = false;
    pthread_t thread{};
    ASSERT_EQ(pthread_create(&thread, nullptr, write_and_be_cancelled, nullptr), 0);
    void* result = nullptr;
    ASSERT_EQ(pthread_join(thread, &result), 0);
    EXPECT_EQ(result, PTHREAD_CANCELED);
    EXPECT_FALSE(has_returned);
}

#endif

} // namespace
