#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>

#include "platform/picture.h"
#include "replay.h"

namespace qxterm::scenario {

/// How pictures are written.
struct PictureFormats {
    bool text = false;
    bool svg = false;
};

/// Blocks of which pictures are written, from 1.
struct BlockRange {
    std::size_t first = 1;
    std::size_t last = SIZE_MAX;
};

/// The pictures of a replay in a folder, numbered by block, and a page (index.html) that shows them in order,
/// with what happened in between. ScriptFault when a file cannot be written.
class ReplayPictures {
public:
    /// The folder is made when it is missing; it must be empty, so that nobody's files are overwritten and no
    /// pictures of two logs mix.
    ReplayPictures(const std::string& folder, PictureFormats formats, BlockRange range,
                   std::string_view logName);

    /// A line of the scenario, as it is read. Bytes that were typed are counted on the page, and not shown.
    void addLine(const ReplayLine& line);
    /// A message box came up.
    void addBox(std::string_view text);
    /// A block was received: what the window shows now.
    void addBlock(const ReplayLine& line, const Picture& picture, std::uint8_t background);
    void finish();

    /// Blocks so far, and pictures written.
    [[nodiscard]] std::size_t blocks() const { return blocks_; }
    [[nodiscard]] std::size_t pictures() const { return pictures_; }

private:
    void write(const std::string& name, const std::string& content);
    void tellTyped();
    void put(const char* kind, std::string_view text);

    std::string folder_;
    PictureFormats formats_;
    BlockRange range_;
    std::ofstream page_;
    std::size_t blocks_ = 0;
    std::size_t pictures_ = 0;
    std::size_t typed_ = 0;
    std::size_t remarks_ = 0;
};

}  // namespace qxterm::scenario
