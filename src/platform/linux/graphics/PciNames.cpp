#include "platform/linux/graphics/PciNames.h"

#include <array>
#include <csetjmp>
#include <cstddef>
#include <cstdio>
#include <memory>

// The header does not say so itself.
extern "C" {
#include <pci/pci.h>
}

namespace vel {
namespace {

constexpr auto kLegalForms = std::to_array<std::string_view>(
    {" Corporation", " Corp.", " Corp", " Inc.", " Inc", " Ltd.", " Ltd", " Co.", " GmbH", " AG"});

/// As far as the database has it.
struct Entry {
  std::array<char, 256> vendor{};
  std::array<char, 256> device{};
};

/// The way back from libpci's error handler, which must not return.
thread_local std::jmp_buf wayBack;

// The library's macro, as clang makes [[noreturn]] no part of a function's type.
PCI_NONRET void escape(char* /*message*/, ...) {
  std::longjmp(wayBack, 1);
}

void ignore(char* /*message*/, ...) {}

template <std::size_t size>
void lookUpText(pci_access* access, std::array<char, size>& text, int what, const PciId& id) {
  // udev's copy of the database is no newer, and libpci leaks memory where there is none.
  const int flags = what | PCI_LOOKUP_NO_NUMBERS | PCI_LOOKUP_NO_HWDB;
  const char* const found =
      pci_lookup_name(access, text.data(), static_cast<int>(size), flags, id.vendor, id.device);
  if (found == nullptr) {
    text.front() = '\0';
  }
}

/// A database that cannot be understood ends it early, and libpci never closes the file then.
/// Nothing here has a destructor that would be jumped over.
void lookUp(pci_access* access, std::span<const PciId> ids, std::span<Entry> entries) {
  if (setjmp(wayBack) != 0) {
    return;
  }
  for (std::size_t i = 0; i < ids.size(); ++i) {
    lookUpText(access, entries[i].vendor, PCI_LOOKUP_VENDOR, ids[i]);
    lookUpText(access, entries[i].device, PCI_LOOKUP_DEVICE, ids[i]);
  }
}

std::string numbers(const PciId& id) {
  std::array<char, sizeof "00000000:00000000"> text{};
  (void)std::snprintf(text.data(), text.size(), "%04x:%04x", id.vendor, id.device);
  return text.data();
}

std::string nameOf(const PciId& id, const Entry& entry) {
  const std::string_view vendor = shortVendor(entry.vendor.data());
  const std::string_view device = marketingName(entry.device.data());
  const std::string name = device.empty() ? numbers(id) : std::string(device);
  // "VanGogh [AMD Custom GPU 0405]" has it already.
  return vendor.empty() || name.starts_with(vendor) ? name : std::string(vendor) + " " + name;
}

}  // namespace

std::vector<std::string> pciNames(const std::filesystem::path& database,
                                  std::span<const PciId> ids) {
  std::string path = database.native();
  const std::unique_ptr<pci_access, decltype(&pci_cleanup)> access(pci_alloc(), pci_cleanup);
  // By default the first ends the program, and the others are null.
  access->error = escape;
  access->warning = ignore;
  access->debug = ignore;
  // Neither the network nor what earlier lookups there have left in the home directory.
  access->id_lookup_mode = 0;
  if (!path.empty()) {
    pci_set_name_list_path(access.get(), path.data(), 0);
  }
  std::vector<Entry> entries(ids.size());
  lookUp(access.get(), ids, entries);
  std::vector<std::string> names;
  for (std::size_t i = 0; i < ids.size(); ++i) {
    names.push_back(nameOf(ids[i], entries[i]));
  }
  return names;
}

std::string_view shortVendor(std::string_view vendor) {
  const std::size_t open = vendor.find('[');
  const std::size_t close = vendor.find_first_of("/]", open);
  if (open != std::string_view::npos && close != std::string_view::npos) {
    return vendor.substr(open + 1, close - open - 1);
  }
  vendor = vendor.substr(0, vendor.find(','));
  for (const std::string_view form : kLegalForms) {
    if (vendor.ends_with(form)) {
      vendor.remove_suffix(form.size());
    }
  }
  return vendor;
}

std::string_view marketingName(std::string_view device) {
  const std::size_t open = device.rfind('[');
  const std::size_t close = device.find(']', open);
  if (open == std::string_view::npos || close == std::string_view::npos || close == open + 1) {
    return device;
  }
  const std::string_view rest = device.substr(close + 1);
  return rest.empty() || rest.starts_with(" (") ? device.substr(open + 1, close - open - 1)
                                                : device;
}

}  // namespace vel
