#include "core.h"

#include "terminal/interpreter/printable_scan.h"

namespace qxterm::bench {
namespace {

class ScanCore : public Core {
public:
    [[nodiscard]] const char* name() const override { return "bare scan"; }
    void reset() override {}
    void feed(std::string_view block) override {
        while (!block.empty()) {
            const std::size_t run = printableRun(block.data(), block.size());
            block.remove_prefix(run);
            if (block.empty()) break;
            block.remove_prefix(1);
            controls_ = controls_ + 1;
        }
    }

private:
    volatile std::size_t controls_ = 0;  ///< keeps the scan from being optimised away
};

}  // namespace

std::unique_ptr<Core> makeScanCore() { return std::make_unique<ScanCore>(); }

void feedInBlocks(Core& core, std::string_view bytes, std::size_t blockSize) {
    for (std::size_t at = 0; at < bytes.size(); at += blockSize) core.feed(bytes.substr(at, blockSize));
}

}  // namespace qxterm::bench
