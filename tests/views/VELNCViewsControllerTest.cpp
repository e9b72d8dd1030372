// The widget, from its nib to the principal object.
#include "views/panels/VELNCViewsController.h"

#include <gtest/gtest.h>

#include "module/VELModuleController.h"
#include "support/ScriptedPlatform.h"

namespace vel::test {
namespace {

TEST(Widget, IsTheRootOfItsNib) {
  ScriptedPlatform machine;
  VELModuleController module(machine.bundle,
                             {.main = {}, .widget = [](const auto& nib, const Bundle& bundle) {
                                return std::make_unique<VELNCViewsController>(nib, bundle);
                              }});
  module.initNCApp();
  ASSERT_NE(module.notificationCenterView(), nullptr);
  EXPECT_EQ(module.notificationCenterView(), &machine.nibLoader.object<View>("view"));
  EXPECT_EQ(machine.nibProblems, std::vector<std::string>{});
}

}  // namespace
}  // namespace vel::test
