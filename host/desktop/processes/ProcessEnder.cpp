#include "host/desktop/processes/ProcessEnder.h"

#include <unistd.h>

#include <QAction>
#include <QPushButton>
#include <csignal>
#include <utility>
#include <variant>

#include "host/desktop/windowing/PlainText.h"

namespace vel {

/// Of ending a process. The texts are keys.
struct ProcessEnder::Way {
  int signal;
  const char* item;
  const char* question;
  const char* consequence;
  const char* button;
};

namespace {

const char* sentence(EndProblem problem) {
  switch (problem) {
    case EndProblem::endedAlready:
      return "“%1” (process %2) has ended already.";
    case EndProblem::isAnother:
      return "Process %2 is no longer the “%1” that was shown.";
    case EndProblem::kernelThread:
      return "“%1” (process %2) is a part of the kernel and cannot be ended.";
    case EndProblem::notPermitted:
      return "You are not permitted to end “%1” (process %2).";
    case EndProblem::notOfThisHost:
      return "“%1” (process %2) runs on another system or in another container and cannot be ended "
             "from here.";
    case EndProblem::unsupported:
      return "This system has no safe way to end “%1” (process %2).";
    case EndProblem::failed:
      break;
  }
  return "“%1” (process %2) could not be ended.";
}

}  // namespace

ProcessEnder::ProcessEnder(const Texts& texts, std::function<void(bool)> asking)
    : texts_(texts), asking_(std::move(asking)) {
  // Later, as a menu hides before it tells what has been chosen.
  QObject::connect(
      &menu_, &QMenu::aboutToHide, &menu_, [this] { update(); }, Qt::QueuedConnection);
}

ProcessEnder::~ProcessEnder() {
  delete box_;
}

void ProcessEnder::offer(const EndRequest& request, bool isOfThisHost) {
  menu_.hide();
  delete box_;
  const auto opened = isOfThisHost
                          ? EndableProcess::open(request.pid, request.name, request.shownAt)
                          : EndProblem::notOfThisHost;
  if (const auto* problem = std::get_if<EndProblem>(&opened)) {
    tell(*problem, request.name, request.pid);
  } else {
    openMenu(std::get<Process>(opened), request.position);
  }
  update();
}

void ProcessEnder::openMenu(const Process& process, QPoint position) {
  static constexpr Way kEnd{SIGTERM, "&End…", "End “%1” (process %2 of %3)?",
                            "It is asked to quit and can save its work first.", "&End"};
  static constexpr Way kForceEnd{SIGKILL, "&Force End…", "Force “%1” (process %2 of %3) to end?",
                                 "It ends at once. What it has not saved is lost.", "&Force End"};
  menu_.clear();
  // A single ampersand would underline what follows it.
  const QString name = plainText(process->name()).replace(u'&', QStringLiteral("&&"));
  menu_.addAction(name + QStringLiteral(" (%1)").arg(process->pid()))->setEnabled(false);
  menu_.addSeparator();
  for (const Way* way : {&kEnd, &kForceEnd}) {
    menu_.addAction(texts_(way->item), &menu_, [this, process, way] { confirm(process, *way); });
  }
  menu_.popup(position);
}

void ProcessEnder::confirm(const Process& process, const Way& way) {
  QMessageBox& box = openBox(texts_(way.question)
                                 .arg(plainText(process->name()), QString::number(process->pid()),
                                      plainText(process->user())));
  box.setInformativeText(texts_(
      process->pid() == getpid() ? "It is Velbar itself, which then quits." : way.consequence));
  QPushButton* end = box.addButton(texts_(way.button), QMessageBox::DestructiveRole);
  QObject::connect(end, &QPushButton::clicked, &menu_, [this, process, signal = way.signal] {
    if (const auto problem = process->signal(signal)) {
      tell(*problem, process->name(), process->pid());
    }
  });
  QPushButton* cancel = box.addButton(texts_("&Cancel"), QMessageBox::RejectRole);
  box.setDefaultButton(cancel);
  box.setEscapeButton(cancel);
  box.show();
}

void ProcessEnder::tell(EndProblem problem, const std::string& name, std::int64_t pid) {
  QMessageBox& box = openBox(texts_(sentence(problem)).arg(plainText(name), QString::number(pid)));
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
  const bool isAsking = menu_.isVisible() || (box_ != nullptr && box_->isVisible());
  if (!isAsking) {
    menu_.clear();  // It holds the process.
  }
  if (isAsking != std::exchange(isAsking_, isAsking) && asking_) {
    asking_(isAsking);
  }
}

}  // namespace vel
