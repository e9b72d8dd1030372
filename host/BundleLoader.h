// Finds out whether a directory is a module bundle of our contract, and loads its library.
#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/Locale.h"
#include "platform/host/ModulePrincipal.h"

namespace vel {

/// A loaded bundle. The library stays loaded for the life of the process: threads, type information
/// and the sanitizers' reports may refer to it for longer than any object of ours.
class BundleLoader {
 public:
  /// Checks the contract's version before it opens the library. Throws std::runtime_error: the
  /// file, what is wrong with it and what was expected.
  BundleLoader(const std::filesystem::path& directory, const Locale& locale);

  [[nodiscard]] const Bundle& bundle() const { return bundle_; }

  /// Faults of the bundle that cost only texts.
  [[nodiscard]] const std::vector<Bundle::Problem>& problems() const { return problems_; }

  /// Throws std::runtime_error when the library creates none. This loader must outlive the module.
  [[nodiscard]] std::unique_ptr<ModulePrincipal> createPrincipal() const;

 private:
  [[nodiscard]] Bundle open(const std::filesystem::path& directory, const Locale& locale);

  std::vector<Bundle::Problem> problems_;
  Bundle bundle_;
  std::filesystem::path library_;
  CreatePrincipal create_;
};

}  // namespace vel
