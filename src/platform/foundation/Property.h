// A value that others can be bound to.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace vel {

/// Bound to a source, a property takes the source's value at once and again on every change, until
/// it is unbound or either end is destroyed. Not synchronised: a property and what is bound to it
/// belong to one thread.
///
/// What observes a change may set, bind, unbind and destroy properties, those that are just
/// changing too. T is copyable and has ==.
template <typename T>
class Property {
 public:
  using Observer = std::function<void(const T&)>;

  explicit Property(T value = T{}, Observer onChange = {});
  ~Property();
  Property(const Property&) = delete;
  Property& operator=(const Property&) = delete;

  [[nodiscard]] const T& get() const { return value_; }

  /// Hands the value on, to the property's own observer first and then to whatever is bound here.
  /// Setting the value that is already there changes nothing and hands on nothing, which also ends
  /// a circle of bindings.
  void set(T value);

  /// Replaces an earlier binding.
  void bind(Property& source);

  /// Keeps the value of the moment. Without a binding it does nothing.
  void unbind();

 private:
  /// Outlives its property while a change goes through it: an observer may destroy the property.
  struct Links {
    Observer onChange;
    /// New ones come last. While a change goes through, null stands for one that has gone.
    std::vector<Property*> bound;
    int changesUnderWay = 0;  ///< more than one if an observer has set the property again
    bool propertyLives = true;
  };

  static bool same(const T& a, const T& b);

  T value_;
  std::shared_ptr<Links> links_ = std::make_shared<Links>();
  Property* source_ = nullptr;
};

template <typename T>
Property<T>::Property(T value, Observer onChange) : value_(std::move(value)) {
  links_->onChange = std::move(onChange);
}

template <typename T>
Property<T>::~Property() {
  unbind();
  links_->propertyLives = false;
  for (Property* property : links_->bound) {
    if (property != nullptr) {
      property->source_ = nullptr;
    }
  }
}

template <typename T>
void Property<T>::set(T value) {
  if (same(value, value_)) {
    return;
  }
  value_ = value;
  const std::shared_ptr<Links> links = links_;
  ++links->changesUnderWay;
  if (links->onChange) {
    links->onChange(value);
  }
  for (std::size_t i = 0; links->propertyLives && i < links->bound.size(); ++i) {
    if (links->bound[i] != nullptr) {
      links->bound[i]->set(value_);  // Not `value`: an observer may have set another since.
    }
  }
  if (--links->changesUnderWay == 0) {
    std::erase(links->bound, nullptr);
  }
}

template <typename T>
void Property<T>::bind(Property& source) {
  unbind();
  source_ = &source;
  source.links_->bound.push_back(this);
  set(source.value_);
}

template <typename T>
void Property<T>::unbind() {
  if (source_ == nullptr) {
    return;
  }
  Links& links = *source_->links_;
  const auto place = std::find(links.bound.begin(), links.bound.end(), this);
  if (links.changesUnderWay == 0) {
    links.bound.erase(place);
  } else {
    *place = nullptr;
  }
  source_ = nullptr;
}

/// Not a number is the same as itself, or a circle of bindings would hand it on for ever.
template <typename T>
bool Property<T>::same(const T& a, const T& b) {
  if constexpr (std::is_floating_point_v<T>) {
    return a == b || (std::isnan(a) && std::isnan(b));
  } else {
    return a == b;
  }
}

}  // namespace vel
