// Nibs without a display: Qt Designer's files read into headless objects.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/windowing/Nib.h"

namespace vel {

/// Its objects are those of HeadlessControls.h and HeadlessWidgets.h, the VELGraphArrays of the
/// widget kit, and a HeadlessView<View> for a widget of any other class. Layouts place nothing. A
/// graph has the history that its property "history" names.
class HeadlessNib : public Nib {
 public:
  /// Takes one line about what is wrong, "<path>: <what>" or "<path>:<line>: <what>".
  using Problem = std::function<void(std::string)>;
  /// The text to show for a key.
  using Localize = std::function<std::string(std::string_view key)>;

  /// Reads the text of the file at `path`. Null when it is broken; then the first problem is told.
  static std::unique_ptr<HeadlessNib> fromText(std::string_view text, const std::string& path,
                                               const Localize& localize, Problem problem);

 protected:
  NibObject* find(std::string_view name) override;
  void reject(std::string_view name, const char* expectedClass) override;

 private:
  friend class HeadlessNibReader;

  struct Object {
    std::string nibClass;  ///< as the file has it
    std::unique_ptr<NibObject> object;
  };

  HeadlessNib(std::string path, Problem problem);

  /// What to say of `what` when the object of that name is not the expected one.
  [[nodiscard]] std::string mismatch(const std::string& what, std::string_view name,
                                     const char* expectedClass) const;

  std::string path_;
  Problem problem_;
  /// By name; several only of those without one.
  std::multimap<std::string, Object, std::less<>> objects_;
};

class HeadlessNibLoader : public NibLoader {
 public:
  explicit HeadlessNibLoader(HeadlessNib::Problem problem);

  std::unique_ptr<Nib> load(const Bundle& bundle, const std::string& name) override;

 private:
  HeadlessNib::Problem problem_;
};

}  // namespace vel
