// Any bytes as a nib: there is a nib or exactly one problem, and so for every outlet asked of it.
#include "fuzz/Fuzzing.h"
#include "platform/headless/HeadlessNib.h"
#include "platform/windowing/Controls.h"

namespace {

/// Asks for the outlet and makes use of what is there.
template <typename T>
void use(vel::HeadlessNib& nib, const int& problems, void (*check)(T&)) {
  const int before = problems;
  T* const control = nib.outlet<T>("a");
  vel::fuzz::require((control == nullptr) == (problems == before + 1));
  if (control != nullptr) {
    check(*control);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  int problems = 0;
  const auto nib = vel::HeadlessNib::fromText(
      vel::fuzz::textOf(data, size), "nib", [](std::string_view key) { return std::string(key); },
      [&problems](const std::string& problem) {
        vel::fuzz::require(problem.starts_with("nib:"));
        ++problems;
      });
  vel::fuzz::require(problems == (nib ? 0 : 1));
  if (nib) {
    use<vel::View>(*nib, problems, [](vel::View& view) {
      vel::fuzz::require(view.frame().size.width >= 0 && view.frame().size.height >= 0);
    });
    use<vel::Matrix>(*nib, problems, [](vel::Matrix& matrix) {
      const auto tag = matrix.selectedTag();
      matrix.deselectAllCells();
      vel::fuzz::require(!matrix.selectedTag());
      matrix.selectCellWithTag(tag.value_or(0));
      vel::fuzz::require(!tag || matrix.selectedTag() == tag);
    });
    use<vel::PopUpButton>(*nib, problems, [](vel::PopUpButton& popUp) {
      const auto tag = popUp.selectedTag();
      popUp.selectItemWithTag(tag.value_or(0));
      vel::fuzz::require(!tag || popUp.selectedTag() == tag);
    });
  }
  return 0;
}
