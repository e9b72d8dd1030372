// Ends a process at the user's wish: a menu, a question, and what has come of it.
#pragma once

#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "host/desktop/Texts.h"
#include "host/desktop/kit/EndRequest.h"
#include "host/desktop/processes/EndProblem.h"
#include "host/desktop/processes/EndableProcess.h"

namespace vel {

/// One process at a time: a new request takes the place of one that is still open. Nothing here
/// waits for the user. The question is a window of its own, which stays when that of the request
/// goes.
class ProcessEnder {
 public:
  /// `asking` hears that a request is open, and that it no longer is. `texts` outlive this.
  ProcessEnder(const Texts& texts, std::function<void(bool)> asking);
  ~ProcessEnder();
  ProcessEnder(const ProcessEnder&) = delete;
  ProcessEnder& operator=(const ProcessEnder&) = delete;

  /// `isOfThisHost`: whether the number is one of this program's pid namespace.
  void offer(const EndRequest& request, bool isOfThisHost);

 private:
  struct Way;
  using Process = std::shared_ptr<const EndableProcess>;

  void openMenu(const Process& process, QPoint position);
  void confirm(const Process& process, const Way& way);
  void tell(EndProblem problem, const std::string& name, std::int64_t pid);
  QMessageBox& openBox(const QString& text);
  void update();

  const Texts& texts_;
  const std::function<void(bool)> asking_;
  bool isAsking_ = false;
  QMenu menu_;
  QPointer<QMessageBox> box_;  ///< deletes itself when closed
};

}  // namespace vel
