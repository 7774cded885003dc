#include "platform/headless/modal.h"

#include "platform/backend.h"
#include "platform/event_loop.h"
#include "platform/headless/event_loop.h"

namespace qxterm::headless {
namespace {

NextEvent nextEvent = nullptr;

std::vector<Form*>& running() {
    static std::vector<Form*> forms;
    return forms;
}

/// Takes a form off the stack of modal loops however its loop is left.
class ModalLoop {
public:
    explicit ModalLoop(Form& form) { running().push_back(&form); }
    ~ModalLoop() {
        if (!running().empty()) running().pop_back();
    }
    ModalLoop(const ModalLoop&) = delete;
    ModalLoop& operator=(const ModalLoop&) = delete;
};

}  // namespace

void setNextEvent(NextEvent next) { nextEvent = next; }

bool runNextEvent() { return nextEvent != nullptr && nextEvent(); }

const std::vector<Form*>& modalForms() { return running(); }

void resetModal() {
    nextEvent = nullptr;
    running().clear();
}

}  // namespace qxterm::headless

namespace qxterm::backend {

void runModal(Form& form) {
    if (headless::modalForms().size() >= headless::deepestModal) {
        form.unload();
        return;
    }
    {
        const headless::ModalLoop loop{form};
        while (form.loaded() && !eventLoop::ending()) {
            if (!headless::runNextEvent()) throw headless::EndOfScript{};
        }
    }
    headless::announceEnd();
}

}  // namespace qxterm::backend
