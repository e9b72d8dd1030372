// The compact panel: the shares, the uptime and the graph.
#pragma once

#include <memory>

#include "views/panels/DetailPanel.h"

namespace vel {

class VELStatusbarCompactview : public DetailPanel {
 public:
  /// The panel of a nib, not yet awake; null when the nib lacks one of its outlets. Nib and bundle
  /// outlive it.
  static std::shared_ptr<VELStatusbarCompactview> fromNib(Nib& nib, const Bundle& bundle);

  VELStatusbarCompactview(const Outlets& outlets, const Bundle& bundle);
};

}  // namespace vel
