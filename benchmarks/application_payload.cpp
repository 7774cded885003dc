#include "application_payload.h"

#include <array>
#include <string_view>

#include "random.h"

namespace qxterm::bench {
namespace {

constexpr int firstTableRow = 5;
constexpr int lastTableRow = 18;
constexpr int fieldRow = 21;
constexpr std::array<std::string_view, 6> states{"ready",  "talking", "wrap-up",
                                                 "paused", "ringing", "offline"};

/// Writes the application's output, command by command.
class Application {
public:
    explicit Application(Random& random) : random_{random} {}

    void wholeScreen() {
        out += "\x1b[0m\x1b[H\x1b[2J";
        frame();
        out += "\x1b[7m";
        goTo(2, 3);
        out += " AGENT OVERVIEW";
        out.append(61, ' ');
        out += "\x1b[0m";
        goTo(4, 3);
        out += "\x1b[1;33mAgent     Name                State      Calls   Since      Queue\x1b[0m";
        for (int row = firstTableRow; row <= lastTableRow; ++row) tableRow(row);
        goTo(24, 1);
        out +=
            "\x1b[7mF1\x1b[0m Help  \x1b[7mF2\x1b[0m Search  \x1b[7mF3\x1b[0m Back  \x1b[7mF8\x1b[0m "
            "Leave\x1b[K";
    }

    void step() {
        switch (random_.below(8)) {
            case 0:
            case 1: clock(); break;
            case 2: moveSelection(); break;
            case 3: insertRow(); break;
            case 4: type(); break;
            default: tableRow(random_.between(firstTableRow, lastTableRow)); break;
        }
    }

    std::string out;

private:
    void goTo(int row, int column) {
        out += "\x1b[" + std::to_string(row) + ';' + std::to_string(column) + 'H';
    }

    void lineDrawing(std::string_view text) {
        out += '\x0e';
        out += text;
        out += '\x0f';
    }

    void frame() {
        goTo(1, 1);
        lineDrawing("l" + std::string(78, 'q') + "k");
        for (int row = 2; row <= 22; ++row) {
            goTo(row, 1);
            lineDrawing("x");
            goTo(row, 80);
            lineDrawing("x");
        }
        goTo(3, 1);
        lineDrawing("t" + std::string(78, 'q') + "u");
        goTo(23, 1);
        lineDrawing("m" + std::string(78, 'q') + "j");
    }

    void number(int value, std::size_t width) {
        std::string digits = std::to_string(value);
        digits.insert(0, width > digits.size() ? width - digits.size() : 0, ' ');
        out += digits;
    }

    void tableRow(int row) {
        const auto state = static_cast<std::size_t>(random_.below(static_cast<int>(states.size())));
        goTo(row, 3);
        number(1000 + row, 5);
        out += "     ";
        std::string name(static_cast<std::size_t>(random_.between(5, 15)), ' ');
        for (char& c : name) c = static_cast<char>(random_.between('a', 'z'));
        out += name;
        goTo(row, 33);
        out += "\x1b[3" + std::to_string(1 + state) + "m";
        out += states[state];
        out.append(9 - states[state].size(), ' ');
        out += "\x1b[0m ";
        number(random_.below(500), 6);
        out += "   ";
        number(random_.below(24), 2);
        out += ':';
        number(random_.between(10, 59), 2);
        goTo(row, 62);
        out += "queue ";
        number(random_.below(40), 2);
    }

    void clock() {
        out +=
            "\x1b"
            "7";
        goTo(2, 70);
        out += "\x1b[7m";
        number(random_.between(10, 23), 2);
        out += ':';
        number(random_.between(10, 59), 2);
        out += ':';
        number(random_.between(10, 59), 2);
        out +=
            "\x1b[0m\x1b"
            "8";
    }

    void moveSelection() {
        const int row = random_.between(firstTableRow, lastTableRow - 1);
        goTo(row, 2);
        out += ' ';
        goTo(row + 1, 2);
        out += "\x1b[7m>\x1b[0m\b";
    }

    /// A new row at the top of the table pushes the others down, inside a scrolling region of its own.
    void insertRow() {
        out += "\x1b[" + std::to_string(firstTableRow) + ';' + std::to_string(lastTableRow) + 'r';
        goTo(firstTableRow, 1);
        out += "\x1bM";
        out += "\x1b[r";
        goTo(firstTableRow, 1);
        lineDrawing("x");
        goTo(firstTableRow, 80);
        lineDrawing("x");
        tableRow(firstTableRow);
    }

    void type() {
        goTo(fieldRow, 3);
        out += "Search: \x1b[4m";
        const int length = random_.between(3, 20);
        for (int at = 0; at < length; ++at) out += static_cast<char>(random_.between('a', 'z'));
        out += "\x1b[0m\x1b[10C\x1b[5D";
    }

    Random& random_;
};

}  // namespace

std::string applicationScreens(std::size_t size) {
    Random random{6};
    Application application{random};
    application.out = "\x1b)0";
    while (application.out.size() < size) {
        application.wholeScreen();
        for (int step = 0; step < 60; ++step) application.step();
    }
    return application.out;
}

}  // namespace qxterm::bench
