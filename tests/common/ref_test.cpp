// SPDX-License-Identifier: Apache-2.0
#include "common/ref.h"

#include <gtest/gtest.h>

#include "common/variant.h"
#include "support/error_check.h"

namespace kv {
namespace {

struct Thing : Object {
  int value = 7;
};

TEST(Ref, AnEmptyOneRaises91) {
  const Ref<Thing> nothing;
  EXPECT_FALSE(nothing);
  EXPECT_RAISES(kObjectNotSet, (void)nothing->value);
  EXPECT_RAISES(kObjectNotSet, (void)(*nothing).value);
  const auto error = test::errorOf([&] { (void)nothing->value; });
  EXPECT_EQ(error->description(), "Object variable or With block variable not set");
}

TEST(Ref, SharesItsObject) {
  Ref<Thing> one = makeRef<Thing>();
  const Ref<Thing> two = one;
  two->value = 9;
  EXPECT_EQ(one->value, 9);
  one.reset();
  EXPECT_EQ(one, nullptr);
  EXPECT_EQ(two->value, 9);
  const Ref<Object> base = two;
  EXPECT_TRUE(base);
}

TEST(Error, CarriesNumberSourceAndDescription) {
  const auto error = test::errorOf([] { raise(kNoSuchItem, "Colour"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), 3265);
  EXPECT_EQ(error->source(), "kvData");
  EXPECT_EQ(error->description(),
            "Item cannot be found in the collection corresponding to the requested name or "
            "ordinal. Colour");
  EXPECT_STREQ(error->what(), error->description().c_str());
}

TEST(Error, TheBaseOfLibraryCodesIsTheComponentErrorBase) {
  EXPECT_EQ(static_cast<std::uint32_t>(kErrorBase), 0x80040000U);
  EXPECT_EQ(static_cast<std::uint32_t>(kErrorBase + 2501), 0x800409C5U);
}

}  // namespace
}  // namespace kv
