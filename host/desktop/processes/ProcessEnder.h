// Ends a row's processes at the user's wish: a menu, a question, and what has come of it.
#pragma once

#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/desktop/Texts.h"
#include "host/desktop/kit/EndRequest.h"
#include "host/session/EndWords.h"
#include "platform/linux/EndableApplication.h"
#include "platform/linux/LinuxKernel.h"

namespace vel {

/// One row at a time: a new request takes the place of one that is still open. Nothing here waits
/// for the user. The question is a window of its own, which stays when that of the request goes.
class ProcessEnder {
 public:
  /// `asking` hears that a request is open, and that it no longer is. `kernel` and `texts` outlive
  /// this.
  ProcessEnder(LinuxKernel& kernel, const Texts& texts, std::function<void(bool)> asking);
  ~ProcessEnder();
  ProcessEnder(const ProcessEnder&) = delete;
  ProcessEnder& operator=(const ProcessEnder&) = delete;

  void offer(const EndRequest& request);

 private:
  struct Way;
  /// Shared by the ways to end it.
  using Application = std::shared_ptr<EndableApplication>;

  void openMenu(const Application& application, QPoint position);
  void confirm(const Application& application, const Way& way);
  void end(const Application& application, const Way& way);
  void askAboutTheRest(EndableApplication& application, const Way& way);
  void tell(const std::vector<EndableApplication::Failure>& failures);
  [[nodiscard]] QString details(const EndableApplication& application, const Way& way) const;
  QMessageBox& openBox(const QString& text);
  void update();

  LinuxKernel& kernel_;
  const Texts& texts_;
  const EndWords words_;
  const std::function<void(bool)> asking_;
  bool isAsking_ = false;
  QMenu menu_;
  QPointer<QMessageBox> box_;  ///< deletes itself when closed
  QTimer soon_;
  std::function<void()> followUp_;  ///< to be done soon, but not before the box is closed
};

}  // namespace vel
