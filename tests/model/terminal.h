#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// A second terminal, to hold the program against: what a host's output, the user's keys and mouse, and time
/// make of the screen, written as plainly as it can be told, with no thought of speed. It shares no code with
/// the program.
namespace qxterm::model {

inline constexpr int columns = 80;
inline constexpr int rows = 25;
inline constexpr int lastPageRow = 23;
inline constexpr int statusRow = 24;
inline constexpr int liveView = 501;
inline constexpr int scrollbackCapacity = 500;

/// Bits of Terminal::mode.
enum Mode : int {
    insertMode = 1,
    reverseScreen = 2,
    originMode = 4,
    wrapDisabled = 8,
    drawingSuspended = 16,
    underlineCursor = 32,
    cursorHidden = 64,
    keyBarShown = 128,
    cursorBlinking = 256
};

/// Bits of an attribute's flags.
enum Flag : int { shiftOut = 1, bold = 2, underline = 4, blink = 8, reverse = 16, invisible = 32 };

struct Attribute {
    int flags = 0;
    int foreground = 7;
    int background = 0;
    [[nodiscard]] int word() const { return flags + foreground * 256 + background * 4096; }
};
inline constexpr int defaultWord = 7 * 256;

/// One line of the screen or of the scrollback.
struct Line {
    std::string text = std::string(columns, ' ');
    std::vector<int> words = std::vector<int>(columns, defaultWord);
    int dirtyFirst = 0;
    int dirtyLast = -1;
    int used = -1;
    bool toDraw = false;
    bool toDrawWhole = false;
    bool marked = false;
    int markFirst = 0;
    int markLast = 0;
};

/// A cell of the window.
struct Cell {
    char text = ' ';
    int foreground = 7;
    int background = 0;
    bool terminalFont = false;
    bool bold = false;
    bool underlined = false;
    bool drawn = false;  ///< else it shows the window's background
};

/// A place among the lines that can be selected.
struct Place {
    int column = 0;
    int line = 0;  ///< 1 to 500 in the scrollback, 501 to 524 on the page
};

/// What the terminal is not told of: a position outside of the line. The twin ends there.
struct NotModelled {};

class Terminal {
public:
    // --- what happens --------------------------------------------------------------------------------------
    /// A block of output from the host.
    void block(std::string_view bytes);
    /// One tick of the timer: 250 milliseconds.
    void tick();
    /// The user moves the scroll bar.
    void scrollTo(int value);
    /// The left button in a cell of the page (row 0 to 23; the column may lie behind the line).
    void mouseDown(int column, int row);
    void mouseMove(int column, int row);
    void mouseUp(int column, int row);
    /// The user copies: the selected text, and no selection any more.
    std::string copy();
    /// A key of the main window while typing is interpreted here, by its virtual-key code.
    void key(int code);
    /// A character typed there.
    void character(char c);
    /// Another window uncovered this one.
    void uncovered();

    // --- what is to be seen of it --------------------------------------------------------------------------
    std::array<Line, rows> screen;
    std::deque<Line> scrollback;  ///< oldest first
    int column = 0;
    int row = 0;
    int regionTop = 0;
    int regionBottom = lastPageRow;
    Attribute attribute;
    int mode = 0;
    int savedColumn = 0;
    int savedRow = 0;
    Attribute savedAttribute;
    int savedMode = 0;
    std::string pending;
    std::string carried;
    std::string repeatable;  ///< the character that a repeat repeats
    int view = liveView;
    int background = 0;  ///< of the window
    std::array<std::array<Cell, columns>, rows> window;
    bool blinkOff = false;
    int bank = 0;
    std::array<std::array<std::string, 8>, 2> labels;
    std::array<std::array<std::string, 8>, 2> strings;
    int bells = 0;

    Terminal();
    /// The line with a number of a Place.
    [[nodiscard]] const Line& numbered(int line) const;
    /// True when the cell of the window shows as selected.
    [[nodiscard]] bool selected(int column, int row) const;
    /// True when the cursor is to be seen; not asked while it blinks.
    [[nodiscard]] bool cursorSeen() const;
    [[nodiscard]] bool cursorBlinks() const { return cursorBlinked_; }
    [[nodiscard]] std::string selectedText() const;

private:
    // --- reading -------------------------------------------------------------------------------------------
    void printable(char c);
    void control(char c);
    void escape();
    void telnet();
    void controlSequence(std::size_t begin);
    /// False when the data has ended: the text from the sequence's beginning is carried.
    bool readNext(std::size_t begin, char& byte);
    void repeat(const std::vector<int>& parameters);
    bool programKey(std::size_t begin, std::vector<int> parameters);
    void execute(char final, std::vector<int> parameters, bool marker);
    void moveTo(const std::vector<int>& parameters);
    void setRegion(const std::vector<int>& parameters);
    void eraseInDisplay(int how);
    void eraseInLine(int how);
    void backTab(int count);
    void insertLines(int count);
    void deleteLines(int count);
    void rendition(const std::vector<int>& parameters);
    void setModes(const std::vector<int>& parameters, bool on);
    void setPrivateModes(const std::vector<int>& parameters, bool on);
    void reset();
    void fillWithE();
    void showLabels();

    // --- the screen ----------------------------------------------------------------------------------------
    void store();
    void insertText(const std::string& text, int word);
    void deleteCharacters(int count);
    void lineFeed();
    void moveUp();
    void scrollUp();
    void scrollDown();
    void erase(int fromColumn, int toColumn, int fromRow, int toRow);
    void flush();

    // --- the window ----------------------------------------------------------------------------------------
    void drawLine(Line& line, int windowRow);
    void drawCell(const Line& line, int at, int windowRow);
    void drawUsed(const Line& line, int windowRow);
    void drawWhole(const Line& line, int windowRow);
    void fill(int fromColumn, int toColumn, int fromRow, int toRow);
    void scrollWindow(int first, int last, int by);
    void paint();

    // --- selection -----------------------------------------------------------------------------------------
    Line& numbered(int line);
    void clearMarks();
    struct Range {
        int first;
        int last;
    };
    [[nodiscard]] bool ordered(Place& first, Place& last) const;
    /// The columns of a line that lie between two places; false for none.
    [[nodiscard]] static bool within(const Place& first, const Place& last, int line, Range& range);

    void addTimer(int action, int ticks);
    void removeTimer(int action);

    std::string data_;
    std::size_t at_ = 0;  ///< counts from 1, the byte that is read
    std::set<std::size_t> wentBack_;
    int waitingScrolls_ = 0;
    bool holding_ = false;
    Place start_;
    Place end_;
    bool selection_ = false;
    int blinkTicks_ = 0;  ///< until the blinking text changes; 0 while nothing blinks
    bool cursorBlinked_ = false;
};

}  // namespace qxterm::model
