// What a graph is made of, in pixels.
#include "host/desktop/kit/GraphPicture.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace vel::test {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

TEST(GraphPicture, ValuesAreAShareOfTheTopNewestFirst) {
  VELGraphArraysMultiple history;
  for (const float value : {kNan, -5.0F, 0.0F, 25.0F, 35.0F, 36.0F, 50.0F, kInfinity}) {
    history.addNewValueForGraphAtIndex(value, 0);
  }
  const auto samplesAt = [&](float top, std::size_t number = 1) {
    GraphPicture picture;
    picture.layOut({0, 0, 20, 30}, 1.0, &history, number, top);
    return picture.samples;
  };
  std::vector<GraphPicture::Sample> expected{{30, true},  {30, true}, {22, true}, {21, false},
                                             {15, false}, {0, false}, {0, false}, {0, false}};
  expected.resize(samplesAt(50.0F).size());
  EXPECT_GE(expected.size(), 20U);
  EXPECT_EQ(samplesAt(50.0F), expected);
  EXPECT_EQ(samplesAt(50.0F, 0).size(), 0U);
  EXPECT_EQ(samplesAt(kInfinity)[0].level, 30);
  for (const float top : {0.0F, -1.0F, kNan}) {
    EXPECT_EQ(samplesAt(top).size(), 0U) << top;
  }
}

}  // namespace vel::test
