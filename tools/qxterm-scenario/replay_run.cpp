#include "replay_run.h"

#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>
#include <optional>
#include <variant>

#include "output.h"
#include "platform/headless/recorder.h"
#include "platform/main_form.h"
#include "player.h"
#include "script.h"
#include "terminal/drawing/screen_controls.h"

namespace qxterm::scenario {
namespace {

constexpr int cannot = 2;

/// The commands of a replay for the player; after each block the window's picture is taken.
class ReplaySource : public LineSource {
public:
    ReplaySource(Replay& replay, ReplayPictures& pictures, const std::string& log)
        : replay_{replay}, pictures_{pictures}, log_{log} {}

    bool next(std::string& line) override {
        for (;;) {
            if (!replay_.next(taken_)) return false;
            pictures_.addLine(taken_);
            if (taken_.logLine != 0) logLine_ = taken_.logLine;
            if (taken_.kind != ReplayLine::Kind::command) continue;
            line = taken_.text;
            blockIsNew_ = taken_.received > 0;
            return true;
        }
    }

    void carriedOut() override {
        if (!blockIsNew_) return;
        blockIsNew_ = false;
        static const Picture blank;
        if (frmterm.loaded()) {
            pictures_.addBlock(taken_, picterm.picture(), picterm.background());
        } else {
            pictures_.addBlock(taken_, blank, 0);
        }
    }

    [[nodiscard]] const std::string& file() const override { return log_; }
    [[nodiscard]] std::size_t line() const override { return logLine_; }

private:
    Replay& replay_;
    ReplayPictures& pictures_;
    const std::string& log_;
    ReplayLine taken_;
    std::size_t logLine_ = 0;
    bool blockIsNew_ = false;
};

/// Whose page the message boxes go to.
ReplayPictures* pagesOfBoxes = nullptr;

void noteBox(const headless::Record& record) {
    if (record.kind != "box" || pagesOfBoxes == nullptr) return;
    for (const auto& [name, value] : record.fields) {
        if (name == "text") pagesOfBoxes->addBox(std::get<std::string>(value));
    }
}

int printScenario(Replay& replay) {
    ReplayLine line;
    while (replay.next(line)) {
        line.text += '\n';
        if (std::fwrite(line.text.data(), 1, line.text.size(), stdout) != line.text.size()) break;
    }
    if (std::ferror(stdout) == 0 && std::fflush(stdout) == 0) return 0;
    std::cerr << "the scenario cannot be written\n";
    return cannot;
}

int writePictures(Replay& replay, const ReplayOrder& order) {
    ReplayPictures pictures{order.pictures, order.formats, order.blocks, order.log};
    ReplaySource source{replay, pictures, order.log};
    pagesOfBoxes = &pictures;
    const int status = playQuietly(source, noteBox);
    pagesOfBoxes = nullptr;
    pictures.finish();
    std::cout << "blocks: " << pictures.blocks() << ", pictures: " << pictures.pictures() << ", see "
              << order.pictures << "/index.html\n";
    return status;
}

}  // namespace

int replay(const ReplayOrder& order) {
    std::ifstream file;
    if (order.log != "-") {
        file.open(order.log, std::ios::binary);
        file.peek();
        if (!file.is_open() || file.bad()) {
            std::cerr << order.log << ": the file cannot be read\n";
            return cannot;
        }
        file.clear();
    }
    Replay made{order.log == "-" ? std::cin : file, order.log == "-" ? "standard input" : order.log};
    try {
        const int status = order.pictures.empty() ? printScenario(made) : writePictures(made, order);
        if (status == 0 && made.linesOfTrace() == 0) {
            std::cerr << order.log << ": no line of this file is a trace's\n";
            return cannot;
        }
        return status;
    } catch (const ScriptFault& fault) {
        std::cerr << fault.where << ": " << fault.message << '\n';
        return cannot;
    }
}

}  // namespace qxterm::scenario
