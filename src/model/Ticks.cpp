#include "model/Ticks.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace vel {
namespace {

std::int32_t identityAt(const TickSample& sample, std::size_t index) {
  const bool covered = index < sample.processors.size() &&
                       (index + 1) * TickSample::kStates <= sample.counters.size();
  return covered ? sample.processors[index] : TickSample::kNoProcessor;
}

/// Where `sample` holds the processor `identity`; nearly always at `guess`.
std::optional<std::size_t> positionOf(const TickSample& sample, std::int32_t identity,
                                      std::size_t guess) {
  if (identityAt(sample, guess) == identity) {
    return guess;
  }
  const auto found = std::find(sample.processors.begin(), sample.processors.end(), identity);
  const auto position = static_cast<std::size_t>(std::distance(sample.processors.begin(), found));
  return identityAt(sample, position) == identity ? std::optional(position) : std::nullopt;
}

float gained(std::uint64_t from, std::uint64_t to) {
  return static_cast<float>(std::max<std::int64_t>(static_cast<std::int64_t>(to - from), 0));
}

}  // namespace

Ticks ticksSinceBoot(const TickSample& sample, std::size_t index) {
  if (identityAt(sample, index) == TickSample::kNoProcessor) {
    return {};
  }
  const std::uint64_t* counters = &sample.counters[index * TickSample::kStates];
  const auto count = [counters](TickSample::State state) {
    return static_cast<float>(counters[state]);
  };
  return {.user = count(TickSample::user),
          .system = count(TickSample::system),
          .idle = count(TickSample::idle),
          .nice = count(TickSample::nice)};
}

Ticks ticksBetween(const TickSample& previous, const TickSample& sample, std::size_t index) {
  const std::int32_t identity = identityAt(sample, index);
  if (identity == TickSample::kNoProcessor) {
    return {};
  }
  const auto position = positionOf(previous, identity, index);
  if (!position) {
    return {};
  }
  const std::uint64_t* from = &previous.counters[*position * TickSample::kStates];
  const std::uint64_t* to = &sample.counters[index * TickSample::kStates];
  const auto count = [from, to](TickSample::State state) { return gained(from[state], to[state]); };
  return {.user = count(TickSample::user),
          .system = count(TickSample::system),
          .idle = count(TickSample::idle),
          .nice = count(TickSample::nice)};
}

}  // namespace vel
