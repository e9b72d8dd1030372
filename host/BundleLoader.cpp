#include "host/BundleLoader.h"

#include <dlfcn.h>

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "host/ElfFile.h"

namespace vel {
namespace {

constexpr const char* kLibraryExpected = ", expected the module's shared library";

[[noreturn]] void fail(const std::filesystem::path& file, const std::string& what) {
  throw std::runtime_error(file.string() + ": " + what);
}

[[noreturn]] void failInfo(const Bundle& bundle, const char* key, const std::string& expected) {
  const auto value = bundle.info(key);
  fail(bundle.directory() / "Info.strings",
       std::string("\"") + key + "\" is " +
           (value ? "\"" + std::string(*value) + "\"" : std::string("missing")) + ", expected " +
           expected);
}

void requireContract(const Bundle& bundle) {
  const std::string ours = std::to_string(kContractVersion);
  if (bundle.info(kContractKey) != ours) {
    failInfo(bundle, kContractKey, "\"" + ours + "\", the plug-in contract of this program");
  }
}

bool isFileName(std::string_view text) {
  return !text.empty() && text != "." && text != ".." &&
         text.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

std::filesystem::path libraryOf(const Bundle& bundle) {
  const auto name = bundle.info(kLibraryKey);
  if (!name || !isFileName(*name)) {
    failInfo(bundle, kLibraryKey, "the name of a file in the bundle");
  }
  auto library = bundle.directory() / *name;
  std::error_code error;
  if (!std::filesystem::is_regular_file(library, error)) {
    fail(library, std::string("no such file") + kLibraryExpected);
  }
  return library;
}

/// Why the last dl... call failed; the loader puts the file's name before most of its messages.
std::string linkerError(const std::filesystem::path& library) {
  const char* message = dlerror();
  std::string text = message != nullptr ? message : "unknown error";
  const std::string prefix = library.string() + ": ";
  return text.starts_with(prefix) ? text.substr(prefix.size()) : text;
}

CreatePrincipal entryOf(const std::filesystem::path& library) {
  if (const std::string fault = sharedLibraryFault(library); !fault.empty()) {
    fail(library, fault + kLibraryExpected);
  }
  void* handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    fail(library, std::string("cannot be loaded") + kLibraryExpected + ": " + linkerError(library));
  }
  void* symbol = dlsym(handle, kCreatePrincipalSymbol);
  if (symbol == nullptr) {
    fail(library, std::string("no function ") + kCreatePrincipalSymbol + kLibraryExpected);
  }
  return reinterpret_cast<CreatePrincipal>(symbol);
}

}  // namespace

BundleLoader::BundleLoader(const std::filesystem::path& directory, const Locale& locale)
    // An absolute path: the dynamic linker searches its own directories for a name without a slash.
    : bundle_(open(std::filesystem::absolute(directory), locale)),
      library_(libraryOf(bundle_)),
      create_(entryOf(library_)) {}

Bundle BundleLoader::open(const std::filesystem::path& directory, const Locale& locale) {
  if (std::error_code error; !std::filesystem::is_directory(directory, error)) {
    fail(directory, std::string(std::filesystem::exists(directory, error) ? "not a directory"
                                                                          : "no such directory") +
                        ", expected a module bundle");
  }
  auto bundle = Bundle::open(directory, locale, problems_);
  if (!bundle) {
    throw std::runtime_error((problems_.empty() ? directory.string() : problems_.back()) +
                             ", expected a module bundle");
  }
  requireContract(*bundle);
  return *std::move(bundle);
}

std::unique_ptr<ModulePrincipal> BundleLoader::createPrincipal() const {
  std::unique_ptr<ModulePrincipal> principal(create_(bundle_));
  if (!principal) {
    fail(library_, std::string(kCreatePrincipalSymbol) + " has created no module");
  }
  return principal;
}

}  // namespace vel
