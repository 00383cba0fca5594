// Random objects of many types become equal ones by way of a value.
#include "support/convertible_types.hpp"
#include "support/describe.hpp"
#include "support/random_objects.hpp"
#include "support/repetitions.hpp"

#include <foundation/json/convert.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>

namespace foundation::json {
namespace {

template <class T>
class RandomRoundTrip : public testing::Test {};

TYPED_TEST_SUITE(RandomRoundTrip, test::ConvertibleTypes, test::NameOfConvertibleType);

TYPED_TEST(RandomRoundTrip, GivesAnEqualObject) {
    const std::uint64_t seed = test::random_seed();
    test::RandomObjects objects(seed);
    for (std::size_t round = test::test_repetitions() / 20; round > 0; --round) {
        const auto object = objects.make<TypeParam>();
        const Value value = from(object);
        ASSERT_EQ(to<TypeParam>(value), object) << test::describe(value) << "\nseed " << seed;
    }
}

} // namespace
} // namespace foundation::json
