#include "host/desktop/windowing/QtNib.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QFile>
#include <QPointer>
#include <QRadioButton>
#include <QRegularExpression>
#include <QStringList>
#include <QTranslator>
#include <QUiLoader>
#include <QVariant>
#include <atomic>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <utility>
#include <vector>

#include "host/desktop/windowing/QtControls.h"
#include "host/desktop/windowing/QtView.h"
#include "host/desktop/windowing/TextLabel.h"

namespace vel {

namespace {

std::string inQuotes(std::string_view text) {
  return '"' + std::string(text) + '"';
}

/// The application's translator from the bundle's table, in any context, while it lives.
class BundleTranslator : public QTranslator {
 public:
  explicit BundleTranslator(const Bundle& bundle) : bundle_(bundle) {
    QCoreApplication::installTranslator(this);
  }

  /// Null, so that others are asked, for what the bundle does not have.
  [[nodiscard]] QString translate(const char* /*context*/, const char* sourceText,
                                  const char* /*disambiguation*/, int /*n*/) const override {
    const std::string_view key(sourceText);
    const std::string_view text = bundle_.localizedString(key);
    return text.data() == key.data() ? QString()
                                     : QString::fromUtf8(text.data(), qsizetype(text.size()));
  }

 private:
  const Bundle& bundle_;
};

/// Catches what Qt's loader would print from this thread, while it lives.
class Complaints {
 public:
  Complaints() {
    next = qInstallMessageHandler(nullptr);
    catching = &list_;
    qInstallMessageHandler(handle);
  }
  ~Complaints() {
    qInstallMessageHandler(next);
    catching = nullptr;
  }
  Complaints(const Complaints&) = delete;
  Complaints& operator=(const Complaints&) = delete;

  [[nodiscard]] const QStringList& list() const { return list_; }

 private:
  static void handle(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    // The loader has no logging category of its own.
    if (catching != nullptr && type != QtFatalMsg &&
        std::string_view(context.category) == "default") {
      static const QRegularExpression decoration(R"(^Designer: |^"|"$)");
      catching->append(QString(message).remove(decoration).simplified());
    } else {
      next.load()(type, context, message);
    }
  }

  static thread_local QStringList* catching;
  /// Stays when the handler goes: another thread may just be about to use it.
  static std::atomic<QtMessageHandler> next;

  QStringList list_;
};

thread_local QStringList* Complaints::catching = nullptr;
std::atomic<QtMessageHandler> Complaints::next = nullptr;

using Problem = std::function<void(std::string)>;
using NibClasses = std::map<std::string, QtNibLoader::NibClass, std::less<>>;

/// A widget that a file has.
struct NibWidget {
  QPointer<QWidget> widget;
  std::string className;  ///< as the file has it
};

/// Makes the widgets of a file, and remembers them: parents before their children.
class WidgetLoader : public QUiLoader {
 public:
  explicit WidgetLoader(const NibClasses& classes)
      : classes_(classes), qtClasses_(availableWidgets()) {
    qtClasses_.append("Line");  // which it makes without owning up to it
  }

  QWidget* createWidget(const QString& className, QWidget* parent, const QString& name) override {
    NibWidget made{nullptr, className.toStdString()};
    if (const auto known = classes_.find(made.className); known != classes_.end()) {
      made.widget = known->second.makeWidget(parent);
    } else if (made.className == TextField::kNibClass) {
      made.widget = new TextLabel(parent);
    } else if (qtClasses_.contains(className)) {
      made.widget = QUiLoader::createWidget(className, parent, name);
    } else {
      made.widget = new QWidget(parent);
    }
    widgets_.push_back(made);
    return made.widget;
  }

  [[nodiscard]] const std::vector<NibWidget>& widgets() const { return widgets_; }

 private:
  const NibClasses& classes_;
  QStringList qtClasses_;
  std::vector<NibWidget> widgets_;
};

/// A loader that has seen no path for plug-ins: Qt's constructor maps every plug-in of Qt Designer
/// that it finds, with all of QML behind one of them, 5 MB.
std::unique_ptr<WidgetLoader> makeLoader(const NibClasses& classes) {
  const QStringList paths = QCoreApplication::libraryPaths();
  QCoreApplication::setLibraryPaths({});
  auto loader = std::make_unique<WidgetLoader>(classes);
  QCoreApplication::setLibraryPaths(paths);
  return loader;
}

class QtNib : public Nib {
 public:
  QtNib(std::string path, Problem problem, std::vector<NibWidget> widgets);
  ~QtNib() override;
  QtNib(const QtNib&) = delete;
  QtNib& operator=(const QtNib&) = delete;

  /// Makes the objects of the named widgets. False when something is wrong, which has been told.
  bool makeObjects(const NibClasses& classes);
  /// Connects them with those that they refer to. The same.
  bool connectObjects(const NibClasses& classes);

 protected:
  NibObject* find(std::string_view name) override;
  void reject(std::string_view name, const char* expectedClass) override;

 private:
  struct Object {
    QPointer<QWidget> widget;
    std::string className;
    std::unique_ptr<NibObject> object;
  };

  // Null when something is wrong, which has been told.
  std::unique_ptr<NibObject> make(const NibWidget& nibWidget, const NibClasses& classes);
  std::unique_ptr<NibObject> makeMatrix(QWidget& widget);
  std::unique_ptr<NibObject> makePopUpButton(QComboBox& box);

  bool connect(const std::string& name, const Object& object,
               const QtNibLoader::Reference& reference);

  void tellMismatch(const std::string& what, std::string_view name, const std::string& expected);
  void tell(const std::string& what) const { problem_(path_ + ": " + what); }

  std::string path_;
  Problem problem_;
  std::vector<NibWidget> widgets_;
  std::map<std::string, Object, std::less<>> objects_;
};

QtNib::QtNib(std::string path, Problem problem, std::vector<NibWidget> widgets)
    : path_(std::move(path)), problem_(std::move(problem)), widgets_(std::move(widgets)) {}

QtNib::~QtNib() {
  objects_.clear();
  // The root takes along all but what has been moved elsewhere.
  for (const NibWidget& nibWidget : widgets_) {
    delete nibWidget.widget;
  }
}

bool QtNib::makeObjects(const NibClasses& classes) {
  bool whole = true;
  for (const NibWidget& nibWidget : widgets_) {
    const std::string name = nibWidget.widget ? nibWidget.widget->objectName().toStdString() : "";
    if (name.empty()) {
      continue;
    }
    Object object{nibWidget.widget, nibWidget.className, make(nibWidget, classes)};
    whole = whole && object.object != nullptr;
    if (!objects_.emplace(name, std::move(object)).second) {
      tell("two objects are named " + inQuotes(name));
      whole = false;
    }
  }
  return whole;
}

bool QtNib::connectObjects(const NibClasses& classes) {
  bool whole = true;
  for (const auto& [name, object] : objects_) {
    if (const auto known = classes.find(object.className); known != classes.end()) {
      for (const QtNibLoader::Reference& reference : known->second.references) {
        whole = connect(name, object, reference) && whole;
      }
    }
  }
  return whole;
}

bool QtNib::connect(const std::string& name, const Object& object,
                    const QtNibLoader::Reference& reference) {
  const QVariant value = object.widget->property(reference.property.c_str());
  const std::string owner = object.className + ' ' + inQuotes(name);
  if (!value.isValid()) {
    tell(owner + " has no property " + inQuotes(reference.property));
    return false;
  }
  const std::string referredName = value.toString().toStdString();
  NibObject* referred = find(referredName);
  if (referred == nullptr || !reference.connect(*object.object, *referred)) {
    tellMismatch(reference.property + ' ' + inQuotes(referredName) + " of " + owner, referredName,
                 reference.className);
    return false;
  }
  return true;
}

std::unique_ptr<NibObject> QtNib::make(const NibWidget& nibWidget, const NibClasses& classes) {
  QWidget& widget = *nibWidget.widget;
  const std::string& className = nibWidget.className;
  if (const auto known = classes.find(className); known != classes.end()) {
    return known->second.makeObject(widget);
  }
  if (className == Button::kNibClass) {
    return std::make_unique<QtButton>(static_cast<QCheckBox&>(widget));
  }
  if (className == PopUpButton::kNibClass) {
    return makePopUpButton(static_cast<QComboBox&>(widget));
  }
  if (className == Matrix::kNibClass) {
    return makeMatrix(widget);
  }
  if (className == TextField::kNibClass) {
    return std::make_unique<QtTextField>(static_cast<QLabel&>(widget));
  }
  return std::make_unique<QtView<View>>(widget);
}

std::unique_ptr<NibObject> QtNib::makeMatrix(QWidget& widget) {
  std::vector<QtMatrix::Cell> cells;
  bool whole = true;
  for (QRadioButton* button : widget.findChildren<QRadioButton*>()) {
    bool isNumber = false;
    const std::int64_t tag = button->property("tag").toLongLong(&isNumber);
    cells.push_back({button, tag});
    if (!isNumber) {
      tell("radio button " + inQuotes(button->objectName().toStdString()) + " has no tag");
      whole = false;
    }
  }
  return whole ? std::make_unique<QtMatrix>(widget, std::move(cells)) : nullptr;
}

std::unique_ptr<NibObject> QtNib::makePopUpButton(QComboBox& box) {
  const std::string popUp = "pop-up " + inQuotes(box.objectName().toStdString());
  const QStringList texts = box.property("tags").toStringList();
  if (texts.size() != box.count()) {
    tell(popUp + " has " + std::to_string(box.count()) + " items but " +
         std::to_string(texts.size()) + " tags");
    return nullptr;
  }
  std::vector<std::int64_t> tags;
  for (const QString& text : texts) {
    bool isNumber = false;
    tags.push_back(text.toLongLong(&isNumber));
    if (!isNumber) {
      tell(popUp + " has the tag " + inQuotes(text.toStdString()) + ", which is no integer");
      return nullptr;
    }
  }
  return std::make_unique<QtPopUpButton>(box, tags);
}

NibObject* QtNib::find(std::string_view name) {
  const auto entry = objects_.find(name);
  return entry == objects_.end() ? nullptr : entry->second.object.get();
}

void QtNib::reject(std::string_view name, const char* expectedClass) {
  tellMismatch("outlet " + inQuotes(name), name, expectedClass);
}

void QtNib::tellMismatch(const std::string& what, std::string_view name,
                         const std::string& expected) {
  const auto entry = objects_.find(name);
  tell(what + " is " + (entry == objects_.end() ? "missing" : "a " + entry->second.className) +
       ", expected a " + expected);
}

/// What Qt's loader says about a broken file, as one of our problems.
std::string problemOf(const std::string& path, const QString& error) {
  static const QRegularExpression place(R"( at line (\d+), column \d+: (.*)$)");
  const QRegularExpressionMatch match = place.match(error);
  return match.hasMatch()
             ? path + ':' + match.captured(1).toStdString() + ": " + match.captured(2).toStdString()
             : path + ": " + error.toStdString();
}

}  // namespace

QtNibLoader::QtNibLoader(Problem problem) : problem_(std::move(problem)) {}

void QtNibLoader::registerClass(std::string name, NibClass nibClass) {
  classes_.insert_or_assign(std::move(name), std::move(nibClass));
}

std::unique_ptr<Nib> QtNibLoader::load(const Bundle& bundle, const std::string& name) {
  const std::filesystem::path file = bundle.directory() / (name + ".ui");
  const std::string path = file.string();
  QFile device(file);
  if (!device.open(QIODevice::ReadOnly)) {
    problem_(path + ": " + device.errorString().toStdString());
    return nullptr;
  }

  const std::unique_ptr<WidgetLoader> loader = makeLoader(classes_);
  QStringList complaints;
  QWidget* root = nullptr;
  {
    const BundleTranslator translator(bundle);
    const Complaints catcher;
    root = loader->load(&device);
    complaints = catcher.list();
  }
  auto nib = std::make_unique<QtNib>(path, problem_, loader->widgets());
  if (root == nullptr) {
    problem_(problemOf(path, loader->errorString()));
    return nullptr;
  }
  for (const QString& complaint : complaints) {
    problem_(path + ": " + complaint.toStdString());
  }
  if (root->objectName() != "view") {
    problem_(path + ": the root is named " + inQuotes(root->objectName().toStdString()) +
             R"(, expected "view")");
    return nullptr;
  }
  return nib->makeObjects(classes_) && nib->connectObjects(classes_) ? std::move(nib) : nullptr;
}

}  // namespace vel
