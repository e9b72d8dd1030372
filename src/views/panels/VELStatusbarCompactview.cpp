#include "views/panels/VELStatusbarCompactview.h"

namespace vel {

std::shared_ptr<VELStatusbarCompactview> VELStatusbarCompactview::fromNib(Nib& nib,
                                                                          const Bundle& bundle) {
  const auto outlets = connect(nib, "statusbarcompactview", "compact");
  return outlets ? std::make_shared<VELStatusbarCompactview>(*outlets, bundle) : nullptr;
}

VELStatusbarCompactview::VELStatusbarCompactview(const Outlets& outlets, const Bundle& bundle)
    : DetailPanel(outlets, {.graphShown = 114.0, .graphHidden = 76.0}, bundle) {}

}  // namespace vel
