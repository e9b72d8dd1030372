// Bindings, and what an observer may do to them in the middle of a change.
#include "platform/foundation/Property.h"

#include <gtest/gtest.h>

#include <string>

namespace vel::test {

TEST(Property, TakesTheSourcesValueWhileBound) {
  Property<int> end(1);
  {
    Property<int> replaced(2);
    Property<int> source(3);
    end.bind(replaced);
    end.bind(source);
    replaced.set(4);
    EXPECT_EQ(end.get(), 3);
    source.set(5);
  }
  end.unbind();
  EXPECT_EQ(end.get(), 5);
}

/// `a` and `b` are bound to `source`, in this order; `c` is not. Each writes down what it takes.
struct Bindings {
  using Action = void (*)(Bindings&);

  std::unique_ptr<Property<int>> make(
      char name, Action actOn1 = [](Bindings&) {}) {
    return std::make_unique<Property<int>>(0, [=, this](int value) {
      if (value == 1) {
        actOn1(*this);
      }
      // What the observer holds is still there, even if it has ended its property.
      taken += name + std::to_string(value) + ' ';
    });
  }

  std::string taken;
  std::unique_ptr<Property<int>> source = std::make_unique<Property<int>>(), a, b, c = make('c');
};

TEST(Property, ObserversMayDoAnythingToProperties) {
  // What `a` does when source is set to 1, and what is taken then and when source is set to 9.
  const std::vector<std::pair<Bindings::Action, const char*>> cases = {
      {[](Bindings& all) { all.a->unbind(); }, "a1 b1 b9 "},
      {[](Bindings& all) { all.b->unbind(); }, "a1 a9 "},
      {[](Bindings& all) { all.b.reset(); }, "a1 a9 "},
      {[](Bindings& all) { all.a.reset(); }, "a1 b1 b9 "},
      {[](Bindings& all) { all.source.reset(); }, "a1 "},
      {[](Bindings& all) { all.c->bind(*all.source); }, "c1 a1 b1 a9 b9 c9 "},
      {[](Bindings& all) { all.source->set(5); }, "a5 b5 a1 a9 b9 "},
  };
  for (const auto& [actionOfA, taken] : cases) {
    Bindings all;
    all.a = all.make('a', actionOfA);
    all.b = all.make('b');
    all.a->bind(*all.source);
    all.b->bind(*all.source);
    all.source->set(1);
    if (all.source) {
      all.source->set(9);
    }
    EXPECT_EQ(all.taken, taken);
  }
}

}  // namespace vel::test
