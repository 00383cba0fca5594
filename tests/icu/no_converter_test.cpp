/// @file
/// The exceptions of an ICU that cannot open a converter. This program replaces its function.
#include <foundation/json/text_helpers.hpp>

#include <unicode/ucnv.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

namespace {
UErrorCode why_nothing_opens = U_FILE_ACCESS_ERROR;
} // namespace

extern "C" UConverter* ucnv_open(const char* /*name*/, UErrorCode* status) {
    *status = why_nothing_opens;
    return nullptr;
}

namespace {

using namespace foundation::json;
using testing::ThrowsMessage;

TEST(U16ToU8, ThrowsInvalidArgumentWhereIcuLacksTheConverter) {
    for (const UErrorCode why : {U_FILE_ACCESS_ERROR, U_INVALID_FORMAT_ERROR}) {
        why_nothing_opens = why;
        char16_t text[] = u"text";
        EXPECT_THAT([&] { static_cast<void>(detail::u16_to_u8(text, 4)); },
                    ThrowsMessage<std::invalid_argument>("unknown encoding: UTF-8"));
    }
}

TEST(U16ToU8, ThrowsBadAllocWhereIcuRunsOutOfMemory) {
    why_nothing_opens = U_MEMORY_ALLOCATION_ERROR;
    char16_t text[] = u"text";
    EXPECT_THROW(static_cast<void>(detail::u16_to_u8(text, 4)), std::bad_alloc);
}

} // namespace
