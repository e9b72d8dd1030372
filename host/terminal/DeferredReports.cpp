#include "host/terminal/DeferredReports.h"

#include "host/Report.h"

namespace vel {

DeferredReports::~DeferredReports() {
  for (const std::string& message : messages_) {
    report(program_, message);
  }
}

void DeferredReports::add(const std::string& message) {
  if (!deferred_) {
    report(program_, message);
    return;
  }
  const std::lock_guard lock(mutex_);
  messages_.push_back(message);
}

}  // namespace vel
