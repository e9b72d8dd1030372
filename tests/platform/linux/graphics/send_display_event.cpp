// Tells whoever listens that a display has changed, for tests of whole programs. To be run in a
// network namespace of the test's own, so that the machine's desktop hears nothing of it.
#include "support/DisplayEvent.h"

int main() {
  return vel::test::sendDisplayEvent() ? 0 : 1;
}
