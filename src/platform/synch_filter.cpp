#include "platform/synch_filter.h"

#include <algorithm>
#include <utility>

namespace qxterm {
namespace {

constexpr char iac = '\xff';
constexpr char dataMark = '\xf2';

/// Whether IAC and this byte are a command of telnet; IAC IAC is none.
bool isCommand(char byte) {
    constexpr unsigned char first = 236;
    return static_cast<unsigned char>(byte) >= first && byte != iac;
}

}  // namespace

void SynchFilter::put(char byte, bool urgent, bool pairIsSynch, std::string& out) {
    if (kept_ == Iac::none) {
        if (byte == iac) {
            kept_ = urgent ? Iac::urgent : Iac::plain;
        } else if (byte != dataMark || !urgent) {
            out += byte;
        }
        return;
    }
    // The DM between two urgent ones has been lost.
    if (urgent && byte == iac && kept_ != Iac::plain) {
        kept_ = Iac::urgent;
        return;
    }
    const bool synch = byte == dataMark && (urgent || pairIsSynch || kept_ != Iac::plain);
    kept_ = Iac::none;
    if (synch) return;
    out += iac;
    out += byte;
}

void SynchFilter::urgentHere(char byte, std::string& out) { put(byte, true, false, out); }

void SynchFilter::urgentAhead(char byte, std::string& out) {
    // Only the halves of a Synch have a place that what stands beside it tells.
    const bool half = byte == iac || byte == dataMark;
    const bool itsPlace = byte == dataMark && kept_ != Iac::none;
    if (half && !itsPlace) {
        ahead_ += byte;
    } else {
        urgentHere(byte, out);
    }
}

bool SynchFilter::takeFromAhead(char byte) {
    const std::size_t at = ahead_.find(byte);
    if (at == std::string::npos) return false;
    ahead_.erase(at, 1);
    return true;
}

bool SynchFilter::mayHoldSynch(std::string_view block) const {
    return kept_ != Iac::none || block.find(iac) != std::string_view::npos ||
           (!block.empty() && block.front() == dataMark);
}

void SynchFilter::arrived(std::string_view block, bool urgentWaits, std::string& out) {
    if (block.empty()) return;
    const bool placeFound = kept_ == Iac::none && block.front() == dataMark && takeFromAhead(iac);
    // A byte told ahead whose place is further on waits as well.
    urgentWaits = urgentWaits || !ahead_.empty();
    if (placeFound) {
        urgentHere(iac, out);
    } else if (urgentWaits && kept_ == Iac::none && block.front() == dataMark) {
        block.remove_prefix(1);
    } else if (urgentWaits && kept_ != Iac::none && !isCommand(block.front())) {
        kept_ = Iac::none;
    }
    while (!block.empty()) {
        if (kept_ != Iac::none) {
            put(block.front(), false, urgentWaits, out);
            block.remove_prefix(1);
            continue;
        }
        const std::size_t run = std::min(block.find(iac), block.size());
        out.append(block.substr(0, run));
        block.remove_prefix(run);
        if (block.empty()) break;
        kept_ = urgentWaits ? Iac::overtaken : Iac::plain;
        block.remove_prefix(1);
    }
    if (kept_ != Iac::none && takeFromAhead(dataMark)) urgentHere(dataMark, out);
}

void SynchFilter::ended(std::string& out) {
    for (const char byte : std::exchange(ahead_, {})) urgentHere(byte, out);
    if (std::exchange(kept_, Iac::none) != Iac::none) out += iac;
}

}  // namespace qxterm
