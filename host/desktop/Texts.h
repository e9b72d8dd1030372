// The host's texts in the user's language.
#pragma once

#include <QString>

#include "platform/foundation/Bundle.h"

namespace vel {

/// Without a bundle a text is its key.
class Texts {
 public:
  explicit Texts(const Bundle* hostBundle) : bundle_(hostBundle) {}

  [[nodiscard]] QString operator()(const char* key) const {
    const std::string_view text = bundle_ != nullptr ? bundle_->localizedString(key) : key;
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
  }

 private:
  const Bundle* bundle_;
};

}  // namespace vel
