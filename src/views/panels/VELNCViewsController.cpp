#include "views/panels/VELNCViewsController.h"

#include <utility>

#include "platform/Platform.h"

namespace vel {

VELNCViewsController::VELNCViewsController(std::string nib, const Bundle& bundle)
    : nibName_(std::move(nib)), bundle_(bundle) {}

void VELNCViewsController::loadView() {
  nib_ = Platform::current().nibLoader.load(bundle_, nibName_);
  view_ = nib_ ? nib_->outlet<View>("view") : nullptr;
}

}  // namespace vel
