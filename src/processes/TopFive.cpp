#include "processes/TopFive.h"

#include <cmath>
#include <limits>

namespace vel {

void TopFive::offer(const ProcessTable::Entry& entry, float weight) {
  const float comparable = std::isnan(weight) ? -std::numeric_limits<float>::infinity() : weight;
  std::size_t place = count_;
  if (count_ < kSize) {
    ++count_;
  } else if (comparable <= weights_[--place]) {
    return;
  }
  for (; place > 0 && weights_[place - 1] < comparable; --place) {
    weights_[place] = weights_[place - 1];
    entries_[place] = entries_[place - 1];
  }
  weights_[place] = comparable;
  entries_[place] = &entry;
}

}  // namespace vel
