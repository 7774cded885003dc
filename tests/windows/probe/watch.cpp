#include "watch.h"

#include <array>
#include <memory>
#include <random>
#include <string>

#include "folder.h"
#include "glass.h"
#include "platform/win32/clock.h"
#include "platform/win32/message_window.h"
#include "platform/win32/native.h"
#include "records.h"
#include "terminal/drawing/cell_size.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/model/input_busy.h"
#include "terminal/model/screen_store.h"

namespace qxterm::probe {
namespace {

constexpr UINT lookEvery = 15;  // milliseconds
/// Microseconds after which a change must have been shown: 30 frames.
constexpr std::int64_t longestWait = 500000;
/// And the looks in that time, so that it is not the machine that had no time for the program.
constexpr int fewestLooks = 15;
/// Cells of the status row in which the host counts its blocks.
constexpr int stepColumns = 10;

/// A sheet over the picture. Where the windows of other programs are kept apart from this one's, as Wine does
/// it, only a window of the same parent takes pixels away that have to be drawn again.
class Sheet {
public:
    void lay(HWND over) {
        if (window_ == nullptr) window_ = make(GetParent(over));
        const auto below = [&](int limit) {
            return static_cast<int>(random_() % static_cast<unsigned>(limit));
        };
        const int width = pictureColumns * charWidth;
        const int height = pictureRows * lineHeight;
        if (below(8) == 0) {
            ShowWindow(window_, SW_HIDE);
        } else if (below(12) == 0) {
            SetWindowPos(window_, HWND_TOP, 0, 0, width, height, shown);
        } else {
            SetWindowPos(window_, HWND_TOP, below(width), below(height), 1 + below(width / 2),
                         1 + below(height / 2), shown);
        }
    }
    void takeAway() {
        if (window_ != nullptr) DestroyWindow(window_);
        window_ = nullptr;
    }

private:
    static constexpr UINT shown = SWP_SHOWWINDOW | SWP_NOACTIVATE | SWP_NOCOPYBITS;

    static LRESULT CALLBACK answer(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        // The mouse goes through to the picture.
        if (message == WM_NCHITTEST) return HTTRANSPARENT;
        return DefWindowProcA(window, message, wParam, lParam);
    }
    static HWND make(HWND parent) {
        static const bool registered = [] {
            WNDCLASSA description{};
            description.lpfnWndProc = answer;
            description.hInstance = win32::instance();
            description.hbrBackground = static_cast<HBRUSH>(GetStockObject(GRAY_BRUSH));
            description.lpszClassName = "QxtermProbeSheet";
            return RegisterClassA(&description) != 0;
        }();
        (void)registered;
        return CreateWindowExA(0, "QxtermProbeSheet", "", WS_CHILD | WS_CLIPSIBLINGS, 0, 0, 1, 1, parent,
                               nullptr, win32::instance(), nullptr);
    }

    HWND window_ = nullptr;
    std::mt19937 random_{1};
};

class Watch {
public:
    void look() {
        if (looking_ || !failure_.empty()) return;
        looking_ = true;
        const std::int64_t began = win32::microseconds();
        lookAtWindow();
        spent_ += win32::microseconds() - began;
        looking_ = false;
    }

    void coverMore(bool yes) {
        covering_ = yes;
        if (!yes) sheet_.takeAway();
    }

    [[nodiscard]] Json told() const {
        return {{"looks", looks_},
                {"steps", steps_},
                {"pictures", pictures_},
                {"in blocks", inBlocks_},
                {"with records", withRecords_},
                {"waiting", waiting_},
                {"unseen", unseen_},
                {"covered", covered_},
                {"cells left out", cellsLeftOut_},
                {"milliseconds", spent_ / 1000},
                {"overhanging", glass_.overhanging()},
                {"failure", failure_}};
    }

    [[nodiscard]] bool copy() {
        const bool whole = glass_.copy() && glass_.compare().empty() && glass_.leftOut() == 0;
        glass_.save(folderOfQuestions() + "copy.ppm");
        return whole;
    }

private:
    using Rows = std::array<Picture::Row, pictureRows>;

    void lookAtWindow() {
        if (picterm.native == nullptr) return;
        HWND const window = picterm.native->window;
        if (IsWindowVisible(window) == 0 || IsIconic(GetAncestor(window, GA_ROOT)) != 0) {
            ++unseen_;
            return;
        }
        // What is not shown yet comes with one of the next frames.
        if (picterm.changed() || GetUpdateRect(window, nullptr, FALSE) != 0) {
            ++waiting_;
            if (inputBusy == 0 && !inFullCover(window)) waitForPicture();
            return;
        }
        if (!glass_.copy()) {
            ++unseen_;
            return;
        }
        waitingSince_ = 0;
        compare();
        if (covering_) sheet_.lay(window);
    }

    /// While output flows there is something new at every look; the same picture must not wait for long.
    void waitForPicture() {
        const std::int64_t now = win32::microseconds();
        const Rows rows = picture();
        if (waitingSince_ == 0 || rows != waitingRows_) {
            waitingSince_ = now;
            waitingLooks_ = 0;
        }
        waitingRows_ = rows;
        if (++waitingLooks_ < fewestLooks || now - waitingSince_ < longestWait) return;
        (void)glass_.copy();
        fail("the picture is not shown", {{"milliseconds", (now - waitingSince_) / 1000}});
    }

    [[nodiscard]] static Rows picture() {
        Rows rows;
        for (int row = 0; row < pictureRows; ++row)
            rows[static_cast<std::size_t>(row)] = picterm.picture().row(row);
        return rows;
    }

    [[nodiscard]] static bool inFullCover(HWND window) {
        HDC const dc = GetDC(window);
        RECT seen{};
        const int kind = GetClipBox(dc, &seen);
        ReleaseDC(window, dc);
        return kind == NULLREGION;
    }

    void compare() {
        ++looks_;
        note();
        const Json pixels = glass_.compare();
        cellsLeftOut_ += glass_.leftOut();
        if (glass_.leftOut() > 0) ++covered_;
        if (!pixels.empty()) {
            fail("the window does not show the picture", pixels);
            return;
        }
        if (!recordsStand()) {
            if (inputBusy != 0) ++inBlocks_;
            return;
        }
        ++withRecords_;
        const Json cells = recordsDifference();
        if (!cells.empty()) fail("the picture does not show the records", cells);
    }

    /// What is new since the last look.
    void note() {
        const Rows rows = picture();
        if (rows != lastRows_) ++pictures_;
        lastRows_ = rows;
        const std::string step = stepOfHost();
        if (step != lastStep_) ++steps_;
        lastStep_ = step;
    }

    [[nodiscard]] static std::string stepOfHost() {
        return {lineOnRow(statusRow).text.data(), static_cast<std::size_t>(stepColumns)};
    }

    void fail(const char* what, const Json& where) {
        failure_ = {{"what", what},
                    {"step", scenario::jsonText(stepOfHost())},
                    {"left out", glass_.leftOut()},
                    {"where", where}};
        glass_.save(folderOfQuestions() + "found.ppm");
        glass_.saveWanted(folderOfQuestions() + "wanted.ppm");
    }

    GlassCheck glass_;
    Sheet sheet_;
    bool covering_ = false;
    bool looking_ = false;
    std::int64_t waitingSince_ = 0;
    int waitingLooks_ = 0;
    Rows waitingRows_{};
    std::int64_t spent_ = 0;
    long looks_ = 0;
    long steps_ = 0;
    long pictures_ = 0;
    long inBlocks_ = 0;
    long withRecords_ = 0;
    long waiting_ = 0;
    long unseen_ = 0;
    long covered_ = 0;
    long cellsLeftOut_ = 0;
    Rows lastRows_{};
    std::string lastStep_;
    Json failure_ = Json::object();
};

Watch& watch();

/// What a socket announces ends a wait, before which all pictures were shown.
LRESULT CALLBACK beforeMessage(int code, WPARAM how, LPARAM lParam) {
    const MSG& message = *reinterpret_cast<const MSG*>(lParam);
    if (code == HC_ACTION && how == PM_REMOVE && message.message >= win32::wmSocketFirst &&
        message.message <= win32::wmSocketLast) {
        watch().look();
    }
    return CallNextHookEx(nullptr, code, how, lParam);
}

Watch& watch() {
    // Begun with the first question about it. A timer of the thread is served by every message loop.
    static Watch* const one = [] {
        SetTimer(nullptr, 0, lookEvery, [](HWND, UINT, UINT_PTR, DWORD) { watch().look(); });
        SetWindowsHookExA(WH_GETMESSAGE, beforeMessage, nullptr, GetCurrentThreadId());
        return std::make_unique<Watch>().release();
    }();
    return *one;
}

}  // namespace

Json glass() { return watch().told(); }

Json copy() { return {{"whole", watch().copy()}}; }

Json cover() {
    watch().coverMore(true);
    return Json::object();
}

Json uncover() {
    watch().coverMore(false);
    return Json::object();
}

}  // namespace qxterm::probe
