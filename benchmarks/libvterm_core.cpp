#include "core.h"

#if defined(QXTERM_BENCH_LIBVTERM)

#include <vterm.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <new>
#include <vector>

namespace qxterm::bench {
namespace {

constexpr int columns = 80;
constexpr int rows = 24;
constexpr std::size_t scrollbackLines = 500;

/// What a program on top of the library keeps: a ring of lines, and a count of what it would have to draw.
struct Owner {
    std::vector<std::array<VTermScreenCell, columns>> scrollback{scrollbackLines};
    std::size_t next = 0;
    std::uint64_t damaged = 0;
};

Owner& ownerOf(void* user) { return *static_cast<Owner*>(user); }

int damage(VTermRect /*area*/, void* user) {
    ++ownerOf(user).damaged;
    return 1;
}

int moveArea(VTermRect /*to*/, VTermRect /*from*/, void* user) {
    ++ownerOf(user).damaged;
    return 1;
}

int pushLine(int count, const VTermScreenCell* cells, void* user) {
    Owner& owner = ownerOf(user);
    std::copy_n(cells, std::min(count, columns), owner.scrollback[owner.next].begin());
    owner.next = (owner.next + 1) % scrollbackLines;
    return 1;
}

class LibvtermCore : public Core {
public:
    LibvtermCore() { open(); }
    ~LibvtermCore() override { vterm_free(terminal_); }
    [[nodiscard]] const char* name() const override { return "libvterm"; }
    void reset() override {
        vterm_free(terminal_);
        open();
    }
    void feed(std::string_view block) override {
        vterm_input_write(terminal_, block.data(), block.size());
        vterm_screen_flush_damage(screen_);
    }

private:
    void open() {
        terminal_ = vterm_new(rows, columns);
        if (terminal_ == nullptr) throw std::bad_alloc{};
        screen_ = vterm_obtain_screen(terminal_);
        callbacks_ = {};
        callbacks_.damage = damage;
        callbacks_.moverect = moveArea;
        callbacks_.sb_pushline = pushLine;
        vterm_screen_set_callbacks(screen_, &callbacks_, &owner_);
        vterm_screen_set_damage_merge(screen_, VTERM_DAMAGE_SCROLL);
        vterm_screen_reset(screen_, 1);
    }

    Owner owner_;
    VTermScreenCallbacks callbacks_{};
    VTerm* terminal_ = nullptr;
    VTermScreen* screen_ = nullptr;
};

}  // namespace

std::unique_ptr<Core> makeLibvtermCore() { return std::make_unique<LibvtermCore>(); }

}  // namespace qxterm::bench

#else

namespace qxterm::bench {

std::unique_ptr<Core> makeLibvtermCore() { return nullptr; }

}  // namespace qxterm::bench

#endif
