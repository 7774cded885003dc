#pragma once

#include <memory>
#include <string_view>
#include <vector>

namespace qxterm::bench {

/// What takes host output block by block.
class Core {
public:
    Core() = default;
    virtual ~Core() = default;
    Core(const Core&) = delete;
    Core& operator=(const Core&) = delete;

    [[nodiscard]] virtual const char* name() const = 0;
    /// The core as it is at its start.
    virtual void reset() = 0;
    virtual void feed(std::string_view block) = 0;
};

/// This terminal, without a screen: drawing calls are counted but not carried out.
[[nodiscard]] std::unique_ptr<Core> makeTerminalCore();
/// Null when the library was not there at build time.
[[nodiscard]] std::unique_ptr<Core> makeLibtsmCore();
[[nodiscard]] std::unique_ptr<Core> makeLibvtermCore();
/// Looks for the control bytes and does nothing else: what no terminal can beat by much.
[[nodiscard]] std::unique_ptr<Core> makeScanCore();

/// Hands bytes to a core in blocks.
void feedInBlocks(Core& core, std::string_view bytes, std::size_t blockSize);

}  // namespace qxterm::bench
