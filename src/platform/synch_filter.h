#pragma once

#include <string>
#include <string_view>

namespace qxterm {

/// Takes the telnet Synchs out of what a host sends.
///
/// A Synch is the pair IAC DM, sent as TCP urgent data when a user has interrupted something. Some hosts make
/// IAC the urgent byte and some DM; the system keeps that byte apart from the stream. The filter is told of
/// the stream and of the urgent bytes in their order, and gives the bytes for the program: the pair of a
/// Synch is removed, any other urgent byte is put back at its place, and nothing else changes. In particular
/// a pair IAC DM without urgency stays.
///
/// An IAC that ends what has arrived is kept until its command is known. Every routine appends to its
/// argument `out`.
class SynchFilter {
public:
    /// The next byte of the stream, which is urgent.
    void urgentHere(char byte, std::string& out);
    /// An urgent byte that stands here or further on: before or behind one of the next blocks, as no read
    /// passes its place.
    void urgentAhead(char byte, std::string& out);
    /// Whether a block may hold what is left of a Synch that lost its urgency: only then need arrived() know
    /// about urgent bytes that wait.
    [[nodiscard]] bool mayHoldSynch(std::string_view block) const;
    /// The next block of the stream, as one read returned it. urgentWaits: when it was read, the system held
    /// an urgent byte that has not been told yet.
    ///
    /// A system that keeps one urgent byte at a time forgets about the one before it, which then is an
    /// ordinary byte of the stream, or is lost when the reader has come as far as its place. While another
    /// one waits, a pair IAC DM is therefore a Synch, and so is either half of one at the beginning of a
    /// block.
    void arrived(std::string_view block, bool urgentWaits, std::string& out);
    /// The stream has ended: what has been kept is given out.
    void ended(std::string& out);

private:
    enum class Iac {
        none,
        plain,
        overtaken,  ///< arrived while an urgent byte waited: it may have lost its urgency to that one
        urgent,
    };

    void put(char byte, bool urgent, bool pairIsSynch, std::string& out);
    /// Whether this byte is among ahead_; it is no longer then.
    [[nodiscard]] bool takeFromAhead(char byte);

    /// The byte before the next one, when it is an IAC whose command is not known yet.
    Iac kept_ = Iac::none;
    /// The bytes told by urgentAhead whose place has not been found.
    std::string ahead_;
};

}  // namespace qxterm
