#include "core.h"

#if defined(QXTERM_BENCH_LIBTSM)

#include <libtsm.h>

#include <new>

namespace qxterm::bench {
namespace {

constexpr unsigned int columns = 80;
constexpr unsigned int rows = 24;
constexpr unsigned int scrollbackLines = 500;

void dropReply(tsm_vte* /*vte*/, const char* /*text*/, std::size_t /*length*/, void* /*data*/) {}

class LibtsmCore : public Core {
public:
    LibtsmCore() { open(); }
    ~LibtsmCore() override { close(); }
    [[nodiscard]] const char* name() const override { return "libtsm"; }
    void reset() override {
        close();
        open();
    }
    void feed(std::string_view block) override { tsm_vte_input(vte_, block.data(), block.size()); }

private:
    void open() {
        if (tsm_screen_new(&screen_, nullptr, nullptr) != 0) throw std::bad_alloc{};
        if (tsm_screen_resize(screen_, columns, rows) != 0) throw std::bad_alloc{};
        tsm_screen_set_max_sb(screen_, scrollbackLines);
        if (tsm_vte_new(&vte_, screen_, dropReply, nullptr, nullptr, nullptr) != 0) throw std::bad_alloc{};
    }
    void close() {
        tsm_vte_unref(vte_);
        tsm_screen_unref(screen_);
        vte_ = nullptr;
        screen_ = nullptr;
    }

    tsm_screen* screen_ = nullptr;
    tsm_vte* vte_ = nullptr;
};

}  // namespace

std::unique_ptr<Core> makeLibtsmCore() { return std::make_unique<LibtsmCore>(); }

}  // namespace qxterm::bench

#else

namespace qxterm::bench {

std::unique_ptr<Core> makeLibtsmCore() { return nullptr; }

}  // namespace qxterm::bench

#endif
