// Bindings, also to what ends before them.
#include "platform/foundation/Property.h"

#include <gtest/gtest.h>

#include <memory>

namespace vel::test {

TEST(Property, KeepsTheLastValueOfASourceThatHasGone) {
  Property<int> end(1);
  {
    Property<int> replaced(2);
    Property<int> source(3);
    end.bind(replaced);
    end.bind(source);
    replaced.set(4);
    EXPECT_EQ(end.get(), 3);
  }
  end.unbind();
  EXPECT_EQ(end.get(), 3);
}

TEST(Property, AnObserverMayEndAnyInTheMiddleOfAChange) {
  auto source = std::make_unique<Property<int>>();
  auto other = std::make_unique<Property<int>>();
  Property<int> first(0, [&](int value) { (value == 1 ? other : source).reset(); });
  first.bind(*source);
  other->bind(*source);
  source->set(1);
  EXPECT_EQ(other, nullptr);
  source->set(2);
  EXPECT_EQ(source, nullptr);
  EXPECT_EQ(first.get(), 2);
}

}  // namespace vel::test
