// The reader of Qt Designer's files ("The Qt UI file format", Qt's manual of Qt Designer).
#include "platform/headless/HeadlessNib.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <optional>
#include <pugixml.hpp>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/foundation/ReadFile.h"
#include "platform/headless/HeadlessControls.h"
#include "platform/headless/HeadlessWidgets.h"
#include "platform/host/VELGraphArrays.h"

namespace vel {
namespace {

std::string inQuotes(std::string_view text) {
  return '"' + std::string(text) + '"';
}

/// What a <string> or <number> holds, whose text comments may divide.
std::string textOf(const pugi::xml_node& node) {
  std::string text;
  for (const pugi::xml_node& child : node) {
    text += child.value();
  }
  return text;
}

/// The value of a property: the element inside, none if there is no such property.
pugi::xml_node valueOf(const pugi::xml_node& widget, const char* property) {
  return widget.find_child_by_attribute("property", "name", property).first_child();
}

}  // namespace

/// Goes through the widgets without recursion, however deep they are nested. After a problem it
/// reads on with values that do no harm, until the widget at hand is done.
class HeadlessNibReader : private pugi::xml_tree_walker {
 public:
  HeadlessNibReader(std::string_view text, HeadlessNib& nib, const HeadlessNib::Localize& localize)
      : text_(text), nib_(nib), localize_(localize) {}

  /// Returns what is wrong; empty if nothing.
  std::string read();

 private:
  template <typename Object>
  struct Enclosing {
    int depth;
    Object* object;
  };
  /// Those of a kind around the element at hand, the innermost last.
  template <typename Object>
  using Surroundings = std::vector<Enclosing<Object>>;

  bool begin(pugi::xml_node& root) override { return for_each(root); }
  bool for_each(pugi::xml_node& node) override;
  /// Drops those that do not enclose the element at hand.
  template <typename Object>
  void leaveBehind(Surroundings<Object>& surroundings) const;
  void readWidget(const pugi::xml_node& widget);
  std::unique_ptr<NibObject> make(std::string_view nibClass, const pugi::xml_node& widget);
  std::unique_ptr<NibObject> makeButton(const pugi::xml_node& widget);
  std::unique_ptr<NibObject> makePopUpButton(const pugi::xml_node& widget);
  template <typename Field>
  std::unique_ptr<NibObject> makeTextField(const pugi::xml_node& widget);
  void readView(const pugi::xml_node& widget, View& view);
  void readCell(const pugi::xml_node& radioButton, HeadlessMatrix& matrix);
  void connectGraph(const pugi::xml_node& widget, VELGraphMultiple& graph);
  Rect rect(const pugi::xml_node& node);

  // Of properties; the default without one.
  std::string text(const pugi::xml_node& widget);
  bool boolean(const pugi::xml_node& widget, const char* property, bool byDefault);

  /// Of a whole element.
  template <typename Integer>
  Integer number(const pugi::xml_node& node, const std::string& what,
                 Integer minimum = std::numeric_limits<Integer>::min(),
                 Integer maximum = std::numeric_limits<Integer>::max());

  /// Keeps the first problem only.
  void fail(const pugi::xml_node& node, const std::string& what);
  void failAt(std::ptrdiff_t offset, const std::string& what);

  std::string_view text_;
  HeadlessNib& nib_;
  const HeadlessNib::Localize& localize_;
  Surroundings<HeadlessMatrix> matrices_;
  Surroundings<HeadlessTree> views_;
  /// Their histories may come later in the file.
  std::vector<std::pair<pugi::xml_node, VELGraphMultiple*>> graphs_;
  std::string problem_;
};

std::string HeadlessNibReader::read() {
  pugi::xml_document document;
  // The encoding is given so that offsets are those of the text as it is.
  const pugi::xml_parse_result result =
      document.load_buffer(text_.data(), text_.size(),
                           pugi::parse_default | pugi::parse_ws_pcdata_single, pugi::encoding_utf8);
  pugi::xml_node root = document.child("ui").child("widget");
  if (!result) {
    failAt(result.offset, result.description());
  } else if (document.child("ui").empty()) {
    fail(document.document_element(), "not a <ui> document");
  } else if (root.empty()) {
    fail(document.child("ui"), "<ui> without a <widget>");
  } else {
    root.traverse(*this);
    for (const auto& [widget, graph] : graphs_) {
      connectGraph(widget, *graph);
    }
  }
  return problem_;
}

bool HeadlessNibReader::for_each(pugi::xml_node& node) {
  leaveBehind(matrices_);
  leaveBehind(views_);
  if (std::string_view(node.name()) == "widget") {
    readWidget(node);
  }
  return problem_.empty();
}

template <typename Object>
void HeadlessNibReader::leaveBehind(Surroundings<Object>& surroundings) const {
  while (!surroundings.empty() && surroundings.back().depth >= depth()) {
    surroundings.pop_back();
  }
}

void HeadlessNibReader::readWidget(const pugi::xml_node& widget) {
  const std::string name = widget.attribute("name").value();
  std::string nibClass = widget.attribute("class").value();
  if (!name.empty() && nib_.objects_.contains(name)) {
    fail(widget, "two objects are named " + inQuotes(name));
  }
  std::unique_ptr<NibObject> object = make(nibClass, widget);
  if (auto* view = dynamic_cast<View*>(object.get())) {
    readView(widget, *view);
    if (!views_.empty()) {
      views_.back().object->addSubview(*view);
    }
  }
  if (auto* graph = dynamic_cast<VELGraphMultiple*>(object.get())) {
    graphs_.emplace_back(widget, graph);
  }
  if (auto* tree = dynamic_cast<HeadlessTree*>(object.get())) {
    tree->setName(name);
    views_.push_back({depth(), tree});
  }
  if (nibClass == "QRadioButton" && !matrices_.empty()) {
    readCell(widget, *matrices_.back().object);
  }
  if (auto* matrix = dynamic_cast<HeadlessMatrix*>(object.get())) {
    matrices_.push_back({depth(), matrix});
  }
  nib_.objects_.emplace(name, HeadlessNib::Object{std::move(nibClass), std::move(object)});
}

std::unique_ptr<NibObject> HeadlessNibReader::make(std::string_view nibClass,
                                                   const pugi::xml_node& widget) {
  if (nibClass == Button::kNibClass) {
    return makeButton(widget);
  }
  if (nibClass == PopUpButton::kNibClass) {
    return makePopUpButton(widget);
  }
  if (nibClass == TextField::kNibClass) {
    return makeTextField<HeadlessTextField>(widget);
  }
  if (nibClass == VELTextFieldKillApp::kNibClass) {
    return makeTextField<HeadlessTextFieldKillApp>(widget);
  }
  if (nibClass == Matrix::kNibClass) {
    return std::make_unique<HeadlessMatrix>();
  }
  if (nibClass == VELColor::kNibClass) {
    return std::make_unique<HeadlessColor>();
  }
  if (nibClass == VELGraphArrays::kNibClass) {
    return std::make_unique<VELGraphArrays>();
  }
  if (nibClass == VELGraphArraysMultiple::kNibClass) {
    return std::make_unique<VELGraphArraysMultiple>();
  }
  if (nibClass == VELGaugeViewMultiple::kNibClass) {
    return std::make_unique<HeadlessGaugeViewMultiple>();
  }
  if (nibClass == VELGraphMultiple::kNibClass) {
    return std::make_unique<HeadlessGraphMultiple>();
  }
  if (nibClass == VELMenuBarText::kNibClass) {
    return std::make_unique<HeadlessMenuBarText>();
  }
  if (nibClass == VELModuleNameStatusBarView::kNibClass) {
    return std::make_unique<HeadlessModuleNameStatusBarView>();
  }
  return std::make_unique<HeadlessView<View>>();
}

std::unique_ptr<NibObject> HeadlessNibReader::makeButton(const pugi::xml_node& widget) {
  auto button = std::make_unique<HeadlessButton>();
  button->setTitle(text(widget));
  button->setState(boolean(widget, "checked", false) ? 1 : 0);
  return button;
}

std::unique_ptr<NibObject> HeadlessNibReader::makePopUpButton(const pugi::xml_node& widget) {
  auto popUp = std::make_unique<HeadlessPopUpButton>();
  TaggedItems& items = popUp->items();
  std::vector<std::int64_t> tags;
  for (const pugi::xml_node& tag : valueOf(widget, "tags").children("string")) {
    tags.push_back(number<std::int64_t>(tag, "tag"));
  }
  for (const pugi::xml_node& item : widget.children("item")) {
    const std::size_t i = items.all().size();
    items.add({text(item), i < tags.size() ? tags[i] : 0});
  }
  const auto count = static_cast<std::int32_t>(items.all().size());
  if (items.all().size() != tags.size()) {
    fail(widget, "pop-up " + inQuotes(widget.attribute("name").value()) + " has " +
                     std::to_string(count) + " items but " + std::to_string(tags.size()) + " tags");
  }
  const pugi::xml_node currentIndex = valueOf(widget, "currentIndex");
  const auto index =
      currentIndex.empty()
          ? std::min(0, count - 1)  // As QComboBox has it.
          : number<std::int32_t>(currentIndex, inQuotes("currentIndex"), -1, count - 1);
  if (index >= 0) {
    items.selectIndex(static_cast<std::size_t>(index));
  }
  return popUp;
}

template <typename Field>
std::unique_ptr<NibObject> HeadlessNibReader::makeTextField(const pugi::xml_node& widget) {
  auto field = std::make_unique<Field>();
  field->setStringValue(text(widget));
  return field;
}

void HeadlessNibReader::readView(const pugi::xml_node& widget, View& view) {
  if (const pugi::xml_node geometry = valueOf(widget, "geometry")) {
    const Rect frame = rect(geometry);
    view.setFrameOrigin(frame.origin);
    view.setFrameSize(frame.size);
  }
  view.setHidden(!boolean(widget, "visible", true));
  if (auto* control = dynamic_cast<Control*>(&view)) {
    control->setEnabled(boolean(widget, "enabled", true));
  }
}

void HeadlessNibReader::readCell(const pugi::xml_node& radioButton, HeadlessMatrix& matrix) {
  const pugi::xml_node tag = valueOf(radioButton, "tag");
  if (tag.empty()) {
    fail(radioButton,
         "radio button " + inQuotes(radioButton.attribute("name").value()) + " has no tag");
    return;
  }
  matrix.items().add({text(radioButton), number<std::int32_t>(tag, inQuotes("tag"))});
  if (boolean(radioButton, "checked", false)) {
    matrix.items().selectIndex(matrix.items().all().size() - 1);
  }
}

void HeadlessNibReader::connectGraph(const pugi::xml_node& widget, VELGraphMultiple& graph) {
  const std::string owner =
      std::string(VELGraphMultiple::kNibClass) + ' ' + inQuotes(widget.attribute("name").value());
  const pugi::xml_node history = valueOf(widget, "history");
  if (history.empty()) {
    fail(widget, owner + " has no property \"history\"");
    return;
  }
  const std::string name = textOf(history);
  const auto* object = dynamic_cast<const VELGraphArraysMultiple*>(nib_.find(name));
  if (object == nullptr) {
    fail(history, nib_.mismatch("history " + inQuotes(name) + " of " + owner, name,
                                VELGraphArraysMultiple::kNibClass));
  }
  graph.setHistory(object);
}

Rect HeadlessNibReader::rect(const pugi::xml_node& node) {
  const auto part = [&](const char* name, std::int32_t minimum) -> double {
    const pugi::xml_node child = node.child(name);
    return number<std::int32_t>(child ? child : node, inQuotes(name), minimum);
  };
  constexpr std::int32_t kAny = std::numeric_limits<std::int32_t>::min();
  return {{part("x", kAny), part("y", kAny)}, {part("width", 0), part("height", 0)}};
}

std::string HeadlessNibReader::text(const pugi::xml_node& widget) {
  const pugi::xml_node value = valueOf(widget, "text");
  return value.empty() ? "" : localize_(textOf(value));
}

bool HeadlessNibReader::boolean(const pugi::xml_node& widget, const char* property,
                                bool byDefault) {
  const pugi::xml_node node = valueOf(widget, property);
  if (node.empty()) {
    return byDefault;
  }
  const std::string value = textOf(node);
  if (value != "true" && value != "false") {
    fail(node, inQuotes(property) + " is neither true nor false: " + inQuotes(value));
  }
  return value == "true";
}

template <typename Integer>
Integer HeadlessNibReader::number(const pugi::xml_node& node, const std::string& what,
                                  Integer minimum, Integer maximum) {
  const std::string digits = textOf(node);
  const char* const end = digits.data() + digits.size();
  Integer value = 0;
  const auto [stop, error] = std::from_chars(digits.data(), end, value);
  if (stop != end || error == std::errc::invalid_argument) {
    fail(node, what + " is no integer: " + inQuotes(digits));
    return 0;
  }
  if (error != std::errc{} || value < minimum || value > maximum) {
    fail(node, what + " is out of range: " + digits);
    return 0;
  }
  return value;
}

void HeadlessNibReader::fail(const pugi::xml_node& node, const std::string& what) {
  failAt(node.offset_debug(), what);
}

void HeadlessNibReader::failAt(std::ptrdiff_t offset, const std::string& what) {
  if (problem_.empty()) {
    const auto before = std::clamp<std::ptrdiff_t>(offset, 0, std::ssize(text_));
    const auto line = 1 + std::count(text_.begin(), text_.begin() + before, '\n');
    problem_ = std::to_string(line) + ": " + what;
  }
}

HeadlessNib::HeadlessNib(std::string path, Problem problem)
    : path_(std::move(path)), problem_(std::move(problem)) {}

std::unique_ptr<HeadlessNib> HeadlessNib::fromText(std::string_view text, const std::string& path,
                                                   const Localize& localize, Problem problem) {
  std::unique_ptr<HeadlessNib> nib(new HeadlessNib(path, std::move(problem)));
  const std::string wrong = HeadlessNibReader(text, *nib, localize).read();
  if (!wrong.empty()) {
    nib->problem_(path + ":" + wrong);
    return nullptr;
  }
  return nib;
}

NibObject* HeadlessNib::find(std::string_view name) {
  const auto entry = objects_.find(name);
  return entry == objects_.end() ? nullptr : entry->second.object.get();
}

void HeadlessNib::reject(std::string_view name, const char* expectedClass) {
  problem_(path_ + ": " + mismatch("outlet " + inQuotes(name), name, expectedClass));
}

std::string HeadlessNib::mismatch(const std::string& what, std::string_view name,
                                  const char* expectedClass) const {
  const auto entry = objects_.find(name);
  return what + " is " + (entry == objects_.end() ? "missing" : "a " + entry->second.nibClass) +
         ", expected a " + expectedClass;
}

HeadlessNibLoader::HeadlessNibLoader(HeadlessNib::Problem problem) : problem_(std::move(problem)) {}

std::unique_ptr<Nib> HeadlessNibLoader::load(const Bundle& bundle, const std::string& name) {
  const std::filesystem::path path = bundle.directory() / (name + ".ui");
  std::string text;
  if (const std::error_code error = readFile(path, text)) {
    problem_(path.string() + ": " + error.message());
    return nullptr;
  }
  const auto localize = [&bundle](std::string_view key) {
    return std::string(bundle.localizedString(key));
  };
  return HeadlessNib::fromText(text, path.string(), localize, problem_);
}

}  // namespace vel
