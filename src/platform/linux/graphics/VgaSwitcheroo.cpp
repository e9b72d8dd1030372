#include "platform/linux/graphics/VgaSwitcheroo.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/Scan.h"
#include "platform/linux/TextFile.h"

namespace vel {
namespace {

bool takeWord(std::string_view& text, std::string_view word) {
  if (!text.starts_with(word)) {
    return false;
  }
  text.remove_prefix(word.size());
  return true;
}

std::optional<SwitchClient> parseClient(std::string_view line) {
  SwitchClient client;
  std::uint32_t number = 0;
  if (!takeInteger(line, number) || !takeCharacter(line, ':')) {
    return std::nullopt;
  }
  client.discrete = takeWord(line, "DIS");
  if ((!client.discrete && !takeWord(line, "IGD")) || !takeCharacter(line, ':')) {
    return std::nullopt;
  }
  client.active = takeCharacter(line, '+');
  if ((!client.active && !takeCharacter(line, ' ')) || !takeCharacter(line, ':')) {
    return std::nullopt;
  }
  client.dynamic = takeWord(line, "Dyn");
  if ((!takeWord(line, "Pwr") && !takeWord(line, "Off")) || !takeCharacter(line, ':')) {
    return std::nullopt;
  }
  const std::optional<PciAddress> address = parsePciAddress(line);
  if (!address) {
    return std::nullopt;
  }
  client.address = *address;
  return client;
}

bool hasIntegrated(const SwitchClients& clients) {
  return std::any_of(clients.begin(), clients.end(),
                     [](const SwitchClient& client) { return !client.discrete; });
}

std::error_code lastError() {
  return {errno, std::generic_category()};
}

}  // namespace

SwitchClients parseSwitchClients(std::string_view text) {
  SwitchClients clients;
  while (const auto line = takeLine(text)) {
    const auto client = parseClient(*line);
    if (client && (client->discrete || !hasIntegrated(clients))) {
      clients.push_back(*client);
    }
  }
  return clients;
}

VgaSwitcheroo::VgaSwitcheroo(const std::filesystem::path& debugfs)
    : file_(debugfs / "vgaswitcheroo/switch") {}

std::optional<SwitchClients> VgaSwitcheroo::clients() const {
  TextFile file(file_);
  const auto text = file.read();
  return text ? std::optional(parseSwitchClients(*text)) : std::nullopt;
}

std::error_code VgaSwitcheroo::send(std::string_view command) const {
  FileDescriptor file;
  if (!file.open(file_, O_WRONLY)) {
    return lastError();
  }
  // One writing is one command.
  if (!command.empty() && ::write(file.number(), command.data(), command.size()) < 0) {
    return lastError();
  }
  return {};
}

}  // namespace vel
