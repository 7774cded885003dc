#pragma once

#include <random>
#include <string>

namespace qxterm::test {

/// Host output made of everything that a terminal understands but two things whose effect depends on their
/// place in the block: the repeat command, and telnet commands without an option. Columns stay inside the
/// line.
class RandomOutput {
public:
    explicit RandomOutput(unsigned seed) : random_{seed} {}

    /// At least so many bytes.
    std::string bytes(std::size_t length) {
        std::string all;
        while (all.size() < length) all += piece();
        return all;
    }

private:
    unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
    char printable() { return static_cast<char>(below(8) == 0 ? 127 + below(128) : 32 + below(95)); }
    std::string text(unsigned longest) {
        std::string all(1 + below(longest), ' ');
        for (char& c : all) c = printable();
        return all;
    }
    std::string number() {
        switch (below(6)) {
            case 0: return "";
            case 1: return "0";
            case 2: return std::to_string(below(100));
            default: return std::to_string(below(26));
        }
    }
    std::string control() {
        static const std::string bytes{"\0\a\b\t\n\v\f\r\x0e\x0f\x1c\n\n\r\r\b", 16};
        return {bytes[below(static_cast<unsigned>(bytes.size()))]};
    }
    std::string escape() {
        switch (below(5)) {
            case 0: return std::string{"\x1b"} + "78DEMQR=>Zc"[below(11)];
            case 1: return std::string{"\x1b("} + "AB01}X"[below(6)];
            case 2: return std::string{"\x1b#"} + "3456879"[below(7)];
            default: return std::string{"\x1b"} + "78DEM"[below(5)];
        }
    }
    std::string control_sequence() {
        std::string all = "\x1b[";
        switch (below(10)) {
            case 0: return all + "?" + std::to_string(5 + below(3)) + "hl"[below(2)];
            case 1: return all + "?" + std::to_string(10 + below(4)) + "hl"[below(2)];
            case 2: return all + "4" + "hl"[below(2)];
            case 3: return all + std::to_string(1 + below(24)) + ';' + std::to_string(1 + below(80)) + 'H';
            case 4: {
                const unsigned length = below(5);
                return all + std::to_string(below(10)) + ';' + std::to_string(length) + ';' +
                       std::to_string(below(3)) + 'q' + text(1).substr(0, 1) + std::string(15, '_') +
                       text(1).substr(0, 1) + std::string(length, '\r');
            }
            case 5: return all + "1;" + std::to_string(1 + below(80)) + 'x';
            default: break;
        }
        const unsigned parameters = below(4);
        for (unsigned n = 0; n < parameters; ++n) all += (n > 0 ? ";" : "") + number();
        return all + "HfrJKABCDLMmmmm@PZncu"[below(21)];
    }
    std::string telnet() {
        switch (below(3)) {
            case 0: return std::string{"\xff\xfd"} + static_cast<char>(below(256));
            case 1: return std::string{"\xff\xfb"} + static_cast<char>(below(256));
            default: return std::string{"\xff\xfa\x18", 3};
        }
    }
    std::string piece() {
        switch (below(12)) {
            case 0:
            case 1:
            case 2: return text(12);
            case 3: return text(120);
            case 4:
            case 5: return control();
            case 6: return escape();
            case 7: return below(4) == 0 ? telnet() : "\r\n";
            default: return control_sequence();
        }
    }

    std::mt19937 random_;
};

}  // namespace qxterm::test
