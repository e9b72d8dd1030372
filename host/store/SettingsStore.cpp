// Memory on the main thread, the file on the queue's; between them, the changes not yet written.
#include "host/store/SettingsStore.h"

#include <charconv>
#include <cstddef>

namespace vel {
namespace {

std::optional<std::int64_t> integerIn(std::string_view text) {
  std::int64_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || rest != end) {
    return std::nullopt;
  }
  return value;
}

/// A message stays a line that can be read, whatever it quotes.
std::string quoted(std::string_view text) {
  constexpr std::size_t kLongest = 60;
  const bool isWhole = text.size() <= kLongest;
  return "\"" + std::string(text.substr(0, kLongest)) + (isWhole ? "\"" : "...\"");
}

std::string placeOf(const SettingsFile& file, std::size_t line) {
  return file.path().string() + ":" + (line == 0 ? "" : std::to_string(line) + ":") + " ";
}

}  // namespace

SettingsStore::SettingsStore(const std::filesystem::path& path, Queue& queue, Report report)
    : file_(path), queue_(queue), report_(std::move(report)) {
  attempt([this] { load(); });
}

SettingsStore::~SettingsStore() {
  std::unique_lock lock(mutex_);
  queueWrite();
  writeDone_.wait(lock, [this] { return !writeQueued_; });
}

void SettingsStore::load() {
  try {
    remember(SettingsDocument(file_.read()));
  } catch (const SettingsFault&) {
    // Another program may be moving it aside right now: it is looked at again under the lock.
    const SettingsFile::Lock lock(file_);
    remember(readOrMoveAside().value_or(SettingsDocument()));
  }
}

void SettingsStore::remember(const SettingsDocument& document) {
  for (const SettingsEntry& entry : document.entries()) {
    Setting& setting = sections_[std::string(entry.section)][std::string(entry.key)];
    if (const auto value = integerIn(entry.value)) {
      setting = *value;
      known_[{std::string(entry.section), std::string(entry.key)}] = *value;
    } else {
      setting = placeOf(file_, entry.line) + quoted(entry.key) + " is " + quoted(entry.value) +
                ", expected an integer";
    }
  }
}

/// To be called under the file's lock.
std::optional<SettingsDocument> SettingsStore::readOrMoveAside() {
  try {
    return SettingsDocument(file_.read());
  } catch (const SettingsFault& fault) {
    const std::string what = placeOf(file_, fault.line) + fault.what();
    try {
      report_(what + "; moved aside to " + file_.moveAside().string());
    } catch (const std::system_error& error) {
      throw std::system_error(error.code(), what + "; cannot be moved aside");
    }
    return std::nullopt;
  }
}

SettingsDocument SettingsStore::knownSettings() {
  SettingsDocument document;
  const std::lock_guard lock(mutex_);
  for (const auto& [name, value] : known_) {
    document.set(name.first, name.second, value);
  }
  return document;
}

std::optional<std::int64_t> SettingsStore::objectForKey(std::string_view key,
                                                        std::string_view bundleIdentifier) const {
  const auto section = sections_.find(bundleIdentifier);
  if (section == sections_.end()) {
    return std::nullopt;
  }
  const auto found = section->second.find(key);
  if (found == section->second.end()) {
    return std::nullopt;
  }
  if (const auto* value = std::get_if<std::int64_t>(&found->second)) {
    return *value;
  }
  if (const std::string message = std::exchange(std::get<std::string>(found->second), "");
      !message.empty()) {
    report_(message);
  }
  return std::nullopt;
}

void SettingsStore::setObject(std::int64_t value, std::string_view key,
                              std::string_view bundleIdentifier) {
  std::pair name{std::string(bundleIdentifier), std::string(key)};
  const auto [place, isNew] = sections_[name.first].try_emplace(name.second, value);
  if (!isNew && place->second == Setting(value)) {
    return;
  }
  place->second = value;
  if (!SettingsDocument::canHold(bundleIdentifier, key)) {
    reportOnce({std::make_error_code(std::errc::invalid_argument),
                placeOf(file_, 0) + quoted(key) + " of " + quoted(bundleIdentifier)});
    return;
  }
  const std::lock_guard lock(mutex_);
  known_[name] = value;
  changes_[std::move(name)] = value;
  queueWrite();
}

void SettingsStore::queueWrite() {
  if (!changes_.empty() && !std::exchange(writeQueued_, true)) {
    queue_.async([this] { writeChanges(); });
  }
}

void SettingsStore::writeChanges() {
  Changes batch;
  {
    const std::lock_guard lock(mutex_);
    batch.swap(changes_);
  }
  const bool saved = attempt([&] { save(batch); });
  const std::lock_guard lock(mutex_);
  writeQueued_ = false;
  queueWrite();  // what has come meanwhile
  if (!saved) {
    changes_.merge(batch);  // a newer value stays
  }
  // Under the mutex: past it, the store may be gone.
  writeDone_.notify_one();
}

void SettingsStore::save(const Changes& changes) {
  file_.makeDirectory();
  const SettingsFile::Lock lock(file_);
  const auto found = readOrMoveAside();
  SettingsDocument document = found ? *found : knownSettings();
  for (const auto& [name, value] : changes) {
    const auto& [section, key] = name;
    document.set(section, key, value);
  }
  if (!found || document.text() != found->text()) {
    file_.write(document.text());
  }
}

template <typename Action>
bool SettingsStore::attempt(Action action) {
  try {
    action();
    return true;
  } catch (const std::system_error& trouble) {
    reportOnce(trouble);
    return false;
  }
}

void SettingsStore::reportOnce(const std::system_error& trouble) {
  {
    const std::lock_guard lock(mutex_);
    if (!reported_.insert(trouble.code()).second) {
      return;
    }
  }
  report_(trouble.what() + std::string("; changes last for this run only"));
}

}  // namespace vel
