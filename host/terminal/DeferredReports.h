// Reports of a program whose screen stands where they would be written.
#pragma once

#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace vel {

/// Keeps what is reported until its own end, which is to come after the screen's. Safe to call from
/// any thread.
class DeferredReports {
 public:
  /// Where the reports do not get into anybody's way, they are not `deferred`.
  DeferredReports(std::string program, bool deferred)
      : program_(std::move(program)), deferred_(deferred) {}
  ~DeferredReports();
  DeferredReports(const DeferredReports&) = delete;
  DeferredReports& operator=(const DeferredReports&) = delete;

  void add(const std::string& message);

 private:
  const std::string program_;
  const bool deferred_;
  std::mutex mutex_;
  std::vector<std::string> messages_;
};

}  // namespace vel
