#include "zpt_ssh/request.h"

#include <set>

#include "common/fields.h"
#include "common/names.h"

namespace zpt {
namespace {

/// What is wrong with a command line; caught where the reading began.
struct Complaint {
    std::string text;
};

std::uint16_t portOrComplain(std::string_view text, const char* what) {
    const auto port = parsePort(text);
    if (!port) throw Complaint{std::string{what} + " is not a port number"};
    return *port;
}

/// "PORT:localhost:PORT"
void readForward(std::string_view text, SshRequest& request) {
    const std::size_t at = text.find(forwardHost);
    if (at == std::string_view::npos) throw Complaint{"the forward is not PORT:localhost:PORT"};
    request.forwardPort = portOrComplain(text.substr(0, at), "the forwarded port");
    request.remotePort = portOrComplain(text.substr(at + forwardHost.size()), "the port behind the forward");
}

class Reader {
public:
    explicit Reader(const std::vector<std::string_view>& arguments) : arguments_{arguments} {}

    SshRequest read() {
        while (next_ < arguments_.size()) readOne(arguments_[next_++]);
        if (!seen_.contains("-ssh")) throw Complaint{"-ssh is missing"};
        if (!seen_.contains("-L")) throw Complaint{"-L is missing"};
        if (request_.host.empty()) throw Complaint{"the host is missing"};
        return request_;
    }

private:
    void readOne(std::string_view argument) {
        if (!argument.starts_with('-')) {
            readHost(argument);
        } else if (argument == "-P") {
            once("-P");
            request_.sshPort = portOrComplain(value("-P"), "the SSH port");
        } else if (argument == "-L") {
            once("-L");
            readForward(value("-L"), request_);
        } else if (argument == "-4" || argument == "-6" || argument == "-") {
            once("the IP version");
            request_.ipVersion = argument == "-" ? 0 : argument.back() - '0';
        } else if (argument == "-ssh" || argument == "-no-antispoof") {
            once(argument);
        } else {
            throw Complaint{"an option is not known"};
        }
    }

    void readHost(std::string_view argument) {
        once("the host");
        if (!isHost(argument)) throw Complaint{"the host is neither a name nor an address"};
        request_.host = argument;
    }

    void once(std::string_view what) {
        if (!seen_.emplace(what).second) throw Complaint{std::string{what} + " is there twice"};
    }

    std::string_view value(const char* option) {
        if (next_ >= arguments_.size()) throw Complaint{std::string{option} + " lacks its value"};
        return arguments_[next_++];
    }

    const std::vector<std::string_view>& arguments_;
    std::size_t next_ = 0;
    SshRequest request_;
    std::set<std::string, std::less<>> seen_;
};

}  // namespace

Parsed<SshRequest> parseSshRequest(const std::vector<std::string_view>& arguments, std::string_view login) {
    Parsed<SshRequest> result;
    try {
        result.request = Reader{arguments}.read();
        if (!isLogin(login)) throw Complaint{"the login name cannot be used"};
        result.request.login = login;
    } catch (const Complaint& complaint) {
        result.complaint = complaint.text;
    }
    return result;
}

}  // namespace zpt
