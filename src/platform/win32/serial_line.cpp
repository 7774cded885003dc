#include "platform/win32/serial_line.h"

#include <algorithm>
#include <array>

#include "platform/run_time_error.h"
#include "platform/win32/message_window.h"

namespace qxterm::win32 {
namespace {

constexpr std::size_t unsentLimit = std::size_t{16} * 1024 * 1024;
/// Written at a time, so that closing has little to break off.
constexpr std::size_t writeSize = 4096;
constexpr DWORD lookPeriod = 30;      // milliseconds between looks for what is not announced
constexpr DWORD stopPatience = 2000;  // milliseconds for a driver to give its calls back
constexpr DWORD callPatience = 500;   // milliseconds for each call that was broken off
constexpr DWORD readPatience = 200;   // milliseconds for bytes that are there already

KernelHandle makeEvent(bool manual) { return KernelHandle{CreateEventA(nullptr, manual, FALSE, nullptr)}; }

}  // namespace

SerialLine::SerialLine(KernelHandle port, std::uint32_t token)
    : port_{std::move(port)},
      token_{token},
      stop_{makeEvent(true)},
      wake_{makeEvent(false)},
      readEvent_{makeEvent(true)} {
    calls_->waitEvent = makeEvent(true);
    calls_->writeEvent = makeEvent(true);
    calls_->waiting.hEvent = calls_->waitEvent.get();
    calls_->writing.hEvent = calls_->writeEvent.get();
    const bool events = stop_ && wake_ && readEvent_ && calls_->waitEvent && calls_->writeEvent;
    lastCarrier_ = carrier();
    if (events) thread_.reset(CreateThread(nullptr, 0, threadMain, this, 0, nullptr));
    if (!thread_) throw RunTimeError{errors::outOfMemory};
}

SerialLine::~SerialLine() {
    SetEvent(stop_.get());
    CancelIoEx(port_.get(), nullptr);
    PurgeComm(port_.get(), PURGE_TXABORT | PURGE_RXABORT | PURGE_TXCLEAR | PURGE_RXCLEAR);
    if (thread_ && WaitForSingleObject(thread_.get(), stopPatience) == WAIT_TIMEOUT) {
        // A driver that keeps the thread must not keep the window: only closing the port can free it now.
        port_.reset();
        WaitForSingleObject(thread_.get(), INFINITE);
    }
    port_.reset();
    // A driver that has not given a call back even now may do so any time: what it works on must stay.
    if (!callsEnded()) (void)calls_.release();
}

DWORD WINAPI SerialLine::threadMain(void* self) {
    static_cast<SerialLine*>(self)->serve();
    return 0;
}

/// False when the system would not take the news: they are told with the next.
bool SerialLine::tell(LPARAM news) {
    untold_ |= news;
    if (untold_ != 0 && PostMessageA(messageWindow(), wmSerial, token_, untold_) != 0) untold_ = 0;
    return untold_ == 0;
}

void SerialLine::serve() {
    serveUntilStopped();
    endCalls();
}

void SerialLine::endCalls() {
    SetCommMask(port_.get(), 0);  // ends a wait for events
    CancelIoEx(port_.get(), nullptr);
    (void)callsEnded();
}

/// Waits for the pending calls to come back. Until then they are the driver's.
bool SerialLine::callsEnded() {
    const auto ended = [](const KernelHandle& event) {
        return WaitForSingleObject(event.get(), callPatience) == WAIT_OBJECT_0;
    };
    if (waitPending_ && ended(calls_->waitEvent)) waitPending_ = false;
    if (writePending_ && ended(calls_->writeEvent)) writePending_ = false;
    return !waitPending_ && !writePending_;
}

void SerialLine::serveUntilStopped() {
    SetCommMask(port_.get(), EV_RXCHAR | EV_RLSD);
    const std::array<HANDLE, 4> objects{stop_.get(), wake_.get(), calls_->waitEvent.get(),
                                        calls_->writeEvent.get()};
    for (;;) {
        beginWait();
        if (!look() || !beginWrite()) break;
        const DWORD patience = tell(0) && watch_ == Watch::allEvents ? INFINITE : lookPeriod;
        const DWORD result =
            WaitForMultipleObjects(static_cast<DWORD>(objects.size()), objects.data(), FALSE, patience);
        if (result == WAIT_OBJECT_0 || result == WAIT_FAILED) return;
        if (result == WAIT_OBJECT_0 + 2) waitEnded();
        if (result == WAIT_OBJECT_0 + 3 && !writeEnded()) break;
    }
    for (DWORD pause = 0; WaitForSingleObject(stop_.get(), pause) != WAIT_OBJECT_0; pause = lookPeriod) {
        if (tell(lineNews::gone)) return;
    }
}

void SerialLine::beginWait() {
    // Some drivers answer "characters are waiting" for as long as they are: first they have to be fetched.
    while (watch_ != Watch::looking && !waitPending_ && !receiveAnnounced_) {
        ResetEvent(calls_->waitEvent.get());
        calls_->events = 0;
        if (WaitCommEvent(port_.get(), &calls_->events, &calls_->waiting) != 0) {
            lineEvents(calls_->events);
        } else if (GetLastError() == ERROR_IO_PENDING) {
            waitPending_ = true;
        } else {
            watchLess();
        }
    }
}

void SerialLine::waitEnded() {
    waitPending_ = false;
    ResetEvent(calls_->waitEvent.get());
    DWORD ignored = 0;
    if (GetOverlappedResult(port_.get(), &calls_->waiting, &ignored, FALSE) != 0) {
        lineEvents(calls_->events);
    } else {
        watchLess();
    }
}

/// A wait failed: the driver does not announce the signals, or nothing at all.
void SerialLine::watchLess() {
    watch_ = watch_ == Watch::allEvents ? Watch::characters : Watch::looking;
    SetCommMask(port_.get(), watch_ == Watch::characters ? EV_RXCHAR : 0);
    ResetEvent(calls_->waitEvent.get());
}

/// Looks for what is not announced. False when the port is gone.
bool SerialLine::look() {
    if (watch_ == Watch::allEvents) return true;
    const bool now = carrier();
    if (now != lastCarrier_) {
        lastCarrier_ = now;
        lineEvents(EV_RLSD);
    }
    if (watch_ == Watch::characters || receiveAnnounced_) return true;
    DWORD errors = 0;
    COMSTAT status{};
    if (ClearCommError(port_.get(), &errors, &status) == 0) return false;
    if (status.cbInQue > 0) lineEvents(EV_RXCHAR);
    return true;
}

bool SerialLine::beginWrite() {
    if (writePending_) return true;
    {
        const std::lock_guard lock{mutex_};
        if (unsent_.empty()) {
            ResetEvent(calls_->writeEvent.get());
            return true;
        }
        const std::size_t count = std::min(unsent_.size(), writeSize);
        calls_->block.assign(unsent_, 0, count);
        unsent_.erase(0, count);
    }
    ResetEvent(calls_->writeEvent.get());
    const BOOL done = WriteFile(port_.get(), calls_->block.data(), static_cast<DWORD>(calls_->block.size()),
                                nullptr, &calls_->writing);
    // Also when it is done at once the event tells so.
    writePending_ = done != 0 || GetLastError() == ERROR_IO_PENDING;
    return writePending_;
}

bool SerialLine::writeEnded() {
    writePending_ = false;
    DWORD written = 0;
    if (GetOverlappedResult(port_.get(), &calls_->writing, &written, FALSE) == 0) return false;
    if (written < calls_->block.size()) {
        const std::lock_guard lock{mutex_};
        unsent_.insert(0, calls_->block, written);
    }
    return true;
}

void SerialLine::lineEvents(DWORD events) {
    LPARAM news = 0;
    if ((events & EV_RXCHAR) != 0) {
        receiveAnnounced_ = true;
        news |= lineNews::received;
    }
    if ((events & EV_RLSD) != 0) news |= lineNews::carrier;
    (void)tell(news);
}

void SerialLine::write(std::string_view bytes) {
    {
        const std::lock_guard lock{mutex_};
        if (unsent_.size() + bytes.size() > unsentLimit) return;
        unsent_.append(bytes);
    }
    SetEvent(wake_.get());
}

bool SerialLine::readWaiting(std::string& to) {
    DWORD errors = 0;
    COMSTAT status{};
    if (ClearCommError(port_.get(), &errors, &status) == 0) return false;
    if (status.cbInQue == 0) return true;
    const std::size_t before = to.size();
    to.resize(before + status.cbInQue);
    OVERLAPPED reading{};
    reading.hEvent = readEvent_.get();
    ResetEvent(readEvent_.get());
    DWORD count = 0;
    bool done = ReadFile(port_.get(), to.data() + before, status.cbInQue, nullptr, &reading) != 0;
    if (!done && GetLastError() == ERROR_IO_PENDING) {
        if (WaitForSingleObject(readEvent_.get(), readPatience) == WAIT_TIMEOUT)
            CancelIoEx(port_.get(), &reading);
        done = true;
    }
    const bool fetched = done && GetOverlappedResult(port_.get(), &reading, &count, TRUE) != 0;
    to.resize(before + count);
    return fetched || count == 0;
}

void SerialLine::receiveHandled() {
    if (receiveAnnounced_.exchange(false)) SetEvent(wake_.get());
}

bool SerialLine::carrier() const {
    DWORD status = 0;
    return GetCommModemStatus(port_.get(), &status) != 0 && (status & MS_RLSD_ON) != 0;
}

void SerialLine::setBreak(bool on) {
    if (on) {
        SetCommBreak(port_.get());
    } else {
        ClearCommBreak(port_.get());
    }
}

}  // namespace qxterm::win32
