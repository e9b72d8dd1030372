#include "processes/ProcessTable.h"

namespace vel {

std::string_view ProcessTable::Entry::name() const {
  const std::string_view all(command.data(), command.size());
  return all.substr(0, all.find('\0'));
}

void ProcessTable::clear(std::size_t atMost) {
  entries_.clear();
  entries_.reserve(atMost);
  children_.clear();
  indices_.clear(atMost);
}

void ProcessTable::addTopLevel(std::int32_t pid, const Entry::Name& command, double runningTime) {
  Entry& entry = findOrAdd(pid);
  entry.command = command;
  entry.runningTime = runningTime;
}

void ProcessTable::addChild(std::int32_t parent, std::int32_t child) {
  Entry& entry = findOrAdd(parent);
  const auto index = static_cast<std::uint32_t>(children_.size());
  children_.push_back({.pid = child});
  (entry.lastChild_ == Entry::kNoChild ? entry.firstChild_ : children_[entry.lastChild_].next) =
      index;
  entry.lastChild_ = index;
}

const ProcessTable::Entry* ProcessTable::find(std::int32_t pid) const {
  const std::uint32_t* const index = indices_.find(pid);
  return index == nullptr ? nullptr : &entries_[*index];
}

ProcessTable::Entry& ProcessTable::findOrAdd(std::int32_t pid) {
  const auto next = static_cast<std::uint32_t>(entries_.size());
  const std::uint32_t index = indices_.findOrAdd(pid, next);
  if (index == next) {
    entries_.emplace_back().pid = pid;
  }
  return entries_[index];
}

}  // namespace vel
