// The settings, from a text file that a person can read and edit: a section for each bundle
// identifier, lines `key = integer`.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <variant>

#include "host/store/SettingsDocument.h"
#include "host/store/SettingsFile.h"
#include "platform/foundation/Queue.h"
#include "platform/host/PreferencesStore.h"

namespace vel {

/// Reads the file once. From then on it answers with what it read and what was set since, so that
/// an edit meanwhile cannot change the settings under a running program; but every change is merged
/// into the file as it is by then, so that the edit is not lost either.
///
/// A file that is not in the format is moved aside, and settings start from nothing. Where the
/// file cannot be written, all works but lasts for this run only.
///
/// All functions are to be called on one thread, the main thread.
class SettingsStore : public PreferencesStore {
 public:
  /// Takes a message of one line, which names the file. It may quote what is in the file, with
  /// control characters and malformed UTF-8. Called on the calling thread or on one of `queue`,
  /// also on both at once, and not with the same trouble twice.
  using Report = std::function<void(std::string)>;

  /// `queue` must run its tasks on other threads and outlive the store. It may be a concurrent one:
  /// no more than one write is queued or under way.
  SettingsStore(const std::filesystem::path& path, Queue& queue, Report report);

  /// Waits on a condition variable until the queue has run the last write. What could not be
  /// written before is tried once more.
  ~SettingsStore() override;

  [[nodiscard]] std::optional<std::int64_t> objectForKey(
      std::string_view key, std::string_view bundleIdentifier) const override;

  /// Valid at once; written soon, with the changes that come until then. An equal value writes
  /// nothing.
  void setObject(std::int64_t value, std::string_view key,
                 std::string_view bundleIdentifier) override;

 private:
  /// A value, or what to report once the key is asked for; empty when that is done. Values under
  /// keys that nobody asks for are not ours to complain about.
  using Setting = std::variant<std::int64_t, std::string>;
  using Section = std::map<std::string, Setting, std::less<>>;
  using Changes = std::map<std::pair<std::string, std::string>, std::int64_t>;  ///< section, key

  void load();
  void remember(const SettingsDocument& document);
  /// Nothing after the file has been moved aside.
  std::optional<SettingsDocument> readOrMoveAside();
  /// What this run knows, in place of that file.
  SettingsDocument knownSettings();

  void queueWrite();  ///< under the mutex
  void writeChanges();
  void save(const Changes& changes);

  /// Returns whether it could be done; says once why not.
  template <typename Action>
  bool attempt(Action action);
  void reportOnce(const std::system_error& trouble);

  const SettingsFile file_;
  Queue& queue_;
  const Report report_;
  mutable std::map<std::string, Section, std::less<>> sections_;  ///< main thread

  std::mutex mutex_;  ///< of all that follows
  std::condition_variable writeDone_;
  Changes changes_;           ///< that the file does not have yet
  Changes known_;             ///< all values, read and set
  bool writeQueued_ = false;  ///< or under way
  std::set<std::error_code> reported_;
};

}  // namespace vel
