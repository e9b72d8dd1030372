// Whatever a nib can hold under a name.
#pragma once

namespace vel {

/// A type that is asked of a nib has a `kNibClass`: what the nib's author calls it.
class NibObject {
 public:
  NibObject() = default;
  virtual ~NibObject() = default;
  NibObject(const NibObject&) = delete;
  NibObject& operator=(const NibObject&) = delete;
};

}  // namespace vel
