// Nibs as trees of Qt's widgets.
#pragma once

#include <QWidget>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/windowing/Nib.h"

namespace vel {

/// Loads with Qt's own loader. The classes of a nib's objects, by the class that the file gives
/// the widget:
///
/// - QCheckBox, QComboBox and QLabel are a Button, a PopUpButton and a TextField, which elides the
///   text that it is given where it does not fit;
/// - "Matrix" is a plain widget, the radio buttons anywhere inside it are the cells of a Matrix;
/// - a registered class is what the class makes of it;
/// - what else Qt knows is a View, and so is a plain widget of any other class.
///
/// A nib owns its widgets, wherever the host has moved them to: with the nib they go. Give a nib
/// up before the windows that show parts of it. A window that goes first takes those parts with it;
/// the nib may then still be destroyed, but their views must not be used any more.
class QtNibLoader : public NibLoader {
 public:
  /// What a property of an object's widget names: an object of the same nib.
  struct Reference {
    std::string property;
    std::string className;  ///< of the object that is expected
    /// False when `referred` is of another class.
    std::function<bool(NibObject& object, NibObject& referred)> connect;
  };

  /// How to make the objects of a class of the host's.
  struct NibClass {
    /// A new widget in `parent`, which may be null.
    std::function<QWidget*(QWidget* parent)> makeWidget;
    /// The object under the widget's name, made once the whole tree has been loaded and gone
    /// before the widget is. `widget` comes from `makeWidget` and has the properties of the file.
    /// Not null. Its destructor leaves the widget alone: see above.
    std::function<std::unique_ptr<NibObject>(QWidget& widget)> makeObject;
    /// Connected once all objects have been made. A nib in which one is missing does not load.
    std::vector<Reference> references{};
  };

  /// `problem` receives each error as one line, as long as a nib lives.
  explicit QtNibLoader(std::function<void(std::string)> problem);

  /// For nibs loaded from now on. A class of Qt's may be replaced.
  void registerClass(std::string name, NibClass nibClass);

  std::unique_ptr<Nib> load(const Bundle& bundle, const std::string& name) override;

 private:
  std::function<void(std::string)> problem_;
  std::map<std::string, NibClass, std::less<>> classes_;
};

}  // namespace vel
