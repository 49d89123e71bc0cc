#include "letters_items.h"

#include "frmGrl.h"

#include <algorithm>
#include <array>
#include <functional>

namespace shell {
namespace {

constexpr std::array sizes{8.25, 9.75, 12.0};

class LettersItems final : public WindowPart {
  public:
    explicit LettersItems(frmGrl& window) : m_window(window) {
        QMenu& menu = window.menu("mnuView");
        window.addItem(menu, {"sepLetters", "-"});
        window.addItem(menu, {"mnuBigger", "&Bigger letters", [this] { step(1); }, {"Bigger letters"}});
        window.addItem(menu, {"mnuSmaller", "&Smaller letters", [this] { step(-1); }, {"Smaller letters"}});
    }

  private:
    void step(int by) {
        sheet::Grid& grid = m_window.book().MSFG;
        const auto now = std::ranges::lower_bound(sizes, grid.FontSize()) - sizes.begin();
        const auto last = static_cast<std::ptrdiff_t>(sizes.size()) - 1;
        grid.setFontSize(sizes[static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(now + by, 0, last))]);
    }

    frmGrl& m_window;
};

} // namespace

std::unique_ptr<WindowPart> makeLettersItems(frmGrl& window) {
    return std::make_unique<LettersItems>(window);
}

} // namespace shell
