#include "replay_pictures.h"

#include <filesystem>
#include <system_error>

#include "picture_svg.h"
#include "picture_text.h"
#include "script.h"

namespace qxterm::scenario {
namespace {

constexpr std::string_view pageHead = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<title>Replay</title>
<style>
body { font-family: sans-serif; margin: 1em auto; max-width: 60em; }
figure { margin: 1.5em 0; }
figcaption { color: #444; margin-top: 0.3em; }
img { border: 1px solid #888; }
pre { border: 1px solid #888; display: inline-block; line-height: 1.2; margin: 0; padding: 0.3em; }
.remark { background: #fff3c4; padding: 0.3em; }
.box { background: #dde8ff; padding: 0.3em; white-space: pre-line; }
.session { border-top: 2px solid #444; font-weight: bold; padding-top: 0.5em; }
</style>
</head>
<body>
)";

/// On the page: a file that is hardly a trace has millions.
constexpr std::size_t mostRemarks = 1000;

std::string escaped(std::string_view text) {
    std::string html;
    for (const char c : text) {
        switch (c) {
            case '&': html += "&amp;"; break;
            case '<': html += "&lt;"; break;
            case '>': html += "&gt;"; break;
            case '"': html += "&quot;"; break;
            default:
                if (static_cast<unsigned char>(c) >= 32 || c == '\n') html += c;
                break;
        }
    }
    return html;
}

/// The program's texts are Windows-1252.
std::string asUtf8(std::string_view text) {
    std::string converted;
    for (const char c : text) {
        if (c == '\n') {
            converted += c;
        } else if (c != '\r') {
            converted += utf8(c);
        }
    }
    return converted;
}

std::string nameOf(std::size_t block) {
    constexpr std::size_t digits = 6;
    std::string number = std::to_string(block);
    if (number.size() < digits) number.insert(0, digits - number.size(), '0');
    return number;
}

}  // namespace

ReplayPictures::ReplayPictures(const std::string& folder, PictureFormats formats, BlockRange range,
                               std::string_view logName)
    : folder_{folder}, formats_{formats}, range_{range} {
    namespace fs = std::filesystem;
    std::error_code error;
    fs::create_directories(folder_, error);
    if (!fs::is_directory(folder_, error)) throw ScriptFault{"this folder cannot be made", folder_};
    if (!fs::is_empty(folder_, error) || error)
        throw ScriptFault{"the folder for the pictures must be empty", folder_};
    page_.open(folder_ + "/index.html", std::ios::binary);
    const std::string name = escaped(forComment(logName, 200));
    page_ << pageHead << "<h1>Replay of " << name << "</h1>\n"
          << "<p>What the window showed after each block that was received. A trace log holds neither times "
             "nor the "
             "size and the font of the window; how much was typed is told, and not what.</p>\n";
}

void ReplayPictures::write(const std::string& name, const std::string& content) {
    const std::string path = folder_ + '/' + name;
    std::ofstream file{path, std::ios::binary};
    file << content;
    file.close();
    if (!file) throw ScriptFault{"this file cannot be written", path};
}

void ReplayPictures::put(const char* kind, std::string_view text) {
    page_ << "<p class=\"" << kind << "\">" << escaped(text) << "</p>\n";
}

void ReplayPictures::tellTyped() {
    if (typed_ == 0) return;
    put("typed", "Bytes typed: " + std::to_string(typed_));
    typed_ = 0;
}

void ReplayPictures::addLine(const ReplayLine& line) {
    typed_ += line.sent;
    if (line.kind != ReplayLine::Kind::session && line.kind != ReplayLine::Kind::remark) return;
    if (line.kind == ReplayLine::Kind::remark && ++remarks_ > mostRemarks) {
        if (remarks_ == mostRemarks + 1) put("remark", "Further remarks are in the scenario alone.");
        return;
    }
    tellTyped();
    std::string_view text = line.text;
    text.remove_prefix(text.find_first_not_of("# "));
    put(line.kind == ReplayLine::Kind::session ? "session" : "remark", text);
}

void ReplayPictures::addBox(std::string_view text) {
    tellTyped();
    put("box", "Message: " + asUtf8(text));
}

void ReplayPictures::addBlock(const ReplayLine& line, const Picture& picture, std::uint8_t background) {
    ++blocks_;
    if (blocks_ < range_.first || blocks_ > range_.last) return;
    tellTyped();
    ++pictures_;
    const std::string name = nameOf(blocks_);
    const std::string text = formats_.text ? pictureAsText(picture) : std::string{};
    if (formats_.text) write(name + ".txt", text);
    page_ << "<figure id=\"block" << blocks_ << "\">\n";
    if (formats_.svg) {
        write(name + ".svg", pictureAsSvg(picture, background));
        page_ << "<img src=\"" << name << ".svg\" width=\"" << svgWidth << "\" height=\"" << svgHeight
              << "\" loading=\"lazy\" alt=\"the window after block " << blocks_ << "\">\n";
    } else {
        page_ << "<pre>" << escaped(text) << "</pre>\n";
    }
    page_ << "<figcaption>Block " << blocks_ << ", line " << line.logLine
          << " of the log, bytes received: " << line.received;
    if (formats_.svg && formats_.text) page_ << " (<a href=\"" << name << ".txt\">as text</a>)";
    page_ << "</figcaption>\n</figure>\n";
    if (!page_) throw ScriptFault{"this file cannot be written", folder_ + "/index.html"};
}

void ReplayPictures::finish() {
    tellTyped();
    page_ << "<p>The log ends here. Blocks: " << blocks_ << ", pictures: " << pictures_
          << ".</p>\n</body>\n</html>\n";
    page_.close();
    if (!page_) throw ScriptFault{"this file cannot be written", folder_ + "/index.html"};
}

}  // namespace qxterm::scenario
