#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/win32/handle.h"

namespace qxterm::win32 {

/// What an open port announces to the hidden window: wmSerial, wParam the line's token, lParam the sum of
/// these.
namespace lineNews {
inline constexpr LPARAM received = 1;
inline constexpr LPARAM carrier = 2;
inline constexpr LPARAM gone = 4;
}  // namespace lineNews

/// An open serial port. A thread of its own waits for what the line does and writes what is sent, so that no
/// call here has to wait; reading, the line's signals and all events belong to the window's thread.
class SerialLine {
public:
    /// Takes over the port, opened for overlapped work with its settings made.
    SerialLine(KernelHandle port, std::uint32_t token);
    SerialLine(const SerialLine&) = delete;
    SerialLine& operator=(const SerialLine&) = delete;
    /// Breaks off what is being written and closes the port.
    ~SerialLine();

    [[nodiscard]] std::uint32_t token() const { return token_; }
    /// Queues bytes for sending. What the line has not taken when 16 MiB are waiting is dropped.
    void write(std::string_view bytes);
    /// Appends what is waiting in the port. False when the port is gone.
    [[nodiscard]] bool readWaiting(std::string& to);
    /// The window's thread has dealt with lineNews::received; until then it is not announced again.
    void receiveHandled();
    /// False also where the port reports no signals.
    [[nodiscard]] bool carrier() const;
    void setBreak(bool on);

private:
    /// How the thread learns what happens on the line; drivers differ in what they announce.
    enum class Watch : std::uint8_t { allEvents, characters, looking };

    /// What the driver works on while a call of the thread is pending.
    struct Calls {
        KernelHandle waitEvent;
        KernelHandle writeEvent;
        OVERLAPPED waiting{};
        OVERLAPPED writing{};
        DWORD events = 0;
        std::string block;  ///< being written
    };

    static DWORD WINAPI threadMain(void* self);
    void serve();
    void serveUntilStopped();
    void endCalls();
    [[nodiscard]] bool callsEnded();
    void beginWait();
    [[nodiscard]] bool beginWrite();
    void waitEnded();
    void watchLess();
    [[nodiscard]] bool look();
    [[nodiscard]] bool writeEnded();
    void lineEvents(DWORD events);
    bool tell(LPARAM news);

    KernelHandle port_;
    std::uint32_t token_;
    KernelHandle stop_;
    KernelHandle wake_;
    KernelHandle readEvent_;

    // Of the thread alone.
    std::unique_ptr<Calls> calls_ = std::make_unique<Calls>();
    bool waitPending_ = false;
    bool writePending_ = false;
    Watch watch_ = Watch::allEvents;
    bool lastCarrier_ = false;
    LPARAM untold_ = 0;  ///< news that the system would not take

    std::mutex mutex_;
    std::string unsent_;  ///< guarded by mutex_
    std::atomic<bool> receiveAnnounced_{false};

    KernelHandle thread_;
};

}  // namespace qxterm::win32
