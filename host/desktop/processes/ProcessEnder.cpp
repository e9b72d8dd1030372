#include "host/desktop/processes/ProcessEnder.h"

#include <QAction>
#include <QPushButton>
#include <QStringList>
#include <chrono>
#include <utility>
#include <variant>

#include "host/desktop/windowing/PlainText.h"

namespace vel {

/// Of ending processes. The texts are keys.
struct ProcessEnder::Way {
  EndableApplication::Way way;
  const char* item;
  const char* button;
};

namespace {

/// Within which most programs end, and the processes that they have started.
constexpr std::chrono::milliseconds kShortly{400};

}  // namespace

ProcessEnder::ProcessEnder(LinuxKernel& kernel, const Texts& texts,
                           std::function<void(bool)> asking)
    : kernel_(kernel),
      texts_(texts),
      words_([&texts](const char* key) { return texts(key).toStdString(); }),
      asking_(std::move(asking)) {
  // Later, as a menu hides before it tells what has been chosen.
  QObject::connect(
      &menu_, &QMenu::aboutToHide, &menu_, [this] { update(); }, Qt::QueuedConnection);
  soon_.setSingleShot(true);
  QObject::connect(&soon_, &QTimer::timeout, &menu_, [this] { update(); });
}

ProcessEnder::~ProcessEnder() {
  delete box_;
}

void ProcessEnder::offer(const EndRequest& request) {
  menu_.hide();
  delete box_;
  soon_.stop();
  followUp_ = nullptr;
  auto opened = EndableApplication::open(kernel_, request.pid, request.shownAt);
  if (const auto* problem = std::get_if<EndProblem>(&opened)) {
    tell({{request.name, request.pid, *problem}});
  } else {
    openMenu(std::make_shared<EndableApplication>(std::get<EndableApplication>(std::move(opened))),
             request.position);
  }
  update();
}

void ProcessEnder::openMenu(const Application& application, QPoint position) {
  static constexpr Way kEnd{EndableApplication::Way::end, "&End…", "&End"};
  static constexpr Way kForceEnd{EndableApplication::Way::force, "&Force End…", "&Force End"};
  menu_.clear();
  // A single ampersand would underline what follows it.
  const QString heading =
      plainText(words_.heading(*application)).replace(u'&', QStringLiteral("&&"));
  menu_.addAction(heading)->setEnabled(false);
  menu_.addSeparator();
  for (const Way* way : {&kEnd, &kForceEnd}) {
    menu_.addAction(texts_(way->item), &menu_,
                    [this, application, way] { confirm(application, *way); });
  }
  menu_.popup(position);
}

void ProcessEnder::confirm(const Application& application, const Way& way) {
  QMessageBox& box = openBox(plainText(words_.question(*application, way.way)));
  // Tells the question from another one, for the window manager's rules.
  box.setWindowRole(QStringLiteral("end-%1").arg(application->pid()));
  box.setInformativeText(details(*application, way));
  QPushButton* end = box.addButton(texts_(way.button), QMessageBox::DestructiveRole);
  QObject::connect(end, &QPushButton::clicked, &menu_,
                   [this, application, &way] { this->end(application, way); });
  QPushButton* cancel = box.addButton(texts_("&Cancel"), QMessageBox::RejectRole);
  box.setDefaultButton(cancel);
  box.setEscapeButton(cancel);
  box.show();
}

QString ProcessEnder::details(const EndableApplication& application, const Way& way) const {
  QStringList lines;
  for (const std::string& line : {words_.first(application), words_.busiest(application),
                                  words_.consequence(application, way.way)}) {
    if (!line.empty()) {
      lines.append(plainText(line));
    }
  }
  return lines.join(u'\n');
}

void ProcessEnder::end(const Application& application, const Way& way) {
  const auto failures = application->end(way.way);
  followUp_ = [this, application, &way] { askAboutTheRest(*application, way); };
  soon_.start(kShortly);
  if (!failures.empty()) {
    tell(failures);
  }
}

void ProcessEnder::askAboutTheRest(EndableApplication& application, const Way& way) {
  EndableApplication rest = application.startedMeanwhile();
  if (rest.size() > 0) {
    confirm(std::make_shared<EndableApplication>(std::move(rest)), way);
  }
}

void ProcessEnder::tell(const std::vector<EndableApplication::Failure>& failures) {
  QStringList lines;
  for (const std::string& line : words_.failures(failures)) {
    lines.append(plainText(line));
  }
  QMessageBox& box = openBox(lines.join(u'\n'));
  box.setDefaultButton(box.addButton(texts_("Clos&e"), QMessageBox::RejectRole));
  box.show();
}

QMessageBox& ProcessEnder::openBox(const QString& text) {
  box_ = new QMessageBox;
  box_->setAttribute(Qt::WA_DeleteOnClose);
  box_->setModal(false);  // The item, the panel and the preferences are still to be used.
  box_->setWindowFlag(Qt::WindowStaysOnTopHint);
  box_->setWindowTitle(texts_("End Process"));
  box_->setTextFormat(Qt::PlainText);
  box_->setText(text);
  // Later, as the end of one box may bring about another.
  QObject::connect(
      box_, &QDialog::finished, &menu_, [this] { update(); }, Qt::QueuedConnection);
  return *box_;
}

void ProcessEnder::update() {
  const auto isOpen = [this] {
    return menu_.isVisible() || (box_ != nullptr && box_->isVisible());
  };
  if (!isOpen()) {
    menu_.clear();  // It holds the row.
    if (followUp_ && !soon_.isActive()) {
      std::exchange(followUp_, nullptr)();
    }
  }
  const bool isAsking = isOpen();
  if (isAsking != std::exchange(isAsking_, isAsking) && asking_) {
    asking_(isAsking);
  }
}

}  // namespace vel
