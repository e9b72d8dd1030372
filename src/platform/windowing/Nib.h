// A file of views, loaded: its objects by name.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/foundation/Bundle.h"
#include "platform/windowing/NibObject.h"

namespace vel {

/// Owns its objects. The root is called "view".
class Nib {
 public:
  Nib() = default;
  virtual ~Nib() = default;
  Nib(const Nib&) = delete;
  Nib& operator=(const Nib&) = delete;

  /// The object of that name, if it is a T. Else null, and the host is told which nib, which outlet
  /// and what was expected.
  template <typename T>
  [[nodiscard]] T* outlet(std::string_view name) {
    auto* object = dynamic_cast<T*>(find(name));
    if (object == nullptr) {
      reject(name, T::kNibClass);
    }
    return object;
  }

 protected:
  /// Null when there is none.
  virtual NibObject* find(std::string_view name) = 0;

  virtual void reject(std::string_view name, const char* expectedClass) = 0;
};

/// Loads the file `<name>.ui` (Qt Designer's format) of a bundle:
///
/// - an object's name is the name of its outlet;
/// - the dynamic property "tag" (number) is the tag of a matrix's cell, "tags" (string list) the
///   tags of a pop-up's items in order;
/// - texts are keys of the bundle's "Localizable" table.
class NibLoader {
 public:
  NibLoader() = default;
  virtual ~NibLoader() = default;
  NibLoader(const NibLoader&) = delete;
  NibLoader& operator=(const NibLoader&) = delete;

  /// Null when the file is missing or broken, which the host is told.
  virtual std::unique_ptr<Nib> load(const Bundle& bundle, const std::string& name) = 0;
};

}  // namespace vel
