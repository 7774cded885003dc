#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "common/fields.h"
#include "common/quoting.h"
#include "connection/ssh_fields.h"
#include "connection/ssh_helpers.h"
#include "support/target.h"
#include "zpt_ssh/client_arguments.h"
#include "zpt_ssh/request.h"
#include "zpt_tnetd/request.h"

// The helpers' command lines. The input's lines are arguments, or, as the first byte says, the fields of a
// session that the terminal starts helpers for. What is not plainly what it should be is refused; what is
// taken reaches the SSH client as one argument each, none of them an option that was not meant.
namespace qxterm::fuzz {
namespace {

using Arguments = std::vector<std::string>;

Arguments linesOf(std::string_view text) {
    Arguments lines{""};
    for (const char c : text) {
        if (c == '\n') {
            lines.emplace_back();
        } else if (c != '\0') {  // no system hands on an argument that holds one
            lines.back() += c;
        }
    }
    return lines;
}

std::vector<std::string_view> views(const Arguments& lines) { return {lines.begin(), lines.end()}; }

/// A command line as the run-time of a Windows program takes it apart.
Arguments takenApart(std::string_view line) {
    Arguments all;
    std::size_t at = 0;
    while (at < line.size()) {
        while (at < line.size() && (line[at] == ' ' || line[at] == '\t')) ++at;
        if (at == line.size()) break;
        std::string one;
        bool inQuotes = false;
        for (; at < line.size() && (inQuotes || (line[at] != ' ' && line[at] != '\t')); ++at) {
            std::size_t slashes = 0;
            while (at + slashes < line.size() && line[at + slashes] == '\\') ++slashes;
            const bool quoteFollows = at + slashes < line.size() && line[at + slashes] == '"';
            if (slashes > 0 && !quoteFollows) {
                one.append(slashes, '\\');
                at += slashes - 1;
            } else if (slashes > 0) {
                one.append(slashes / 2, '\\');
                if (slashes % 2 == 1) {
                    one += '"';
                    at += slashes;
                } else {
                    at += slashes - 1;
                }
            } else if (line[at] == '"') {
                inQuotes = !inQuotes;
            } else {
                one += line[at];
            }
        }
        all.push_back(one);
    }
    return all;
}

void checkQuoting(const Arguments& arguments) {
    Arguments whole{"C:\\Program Files\\client.exe"};
    whole.insert(whole.end(), arguments.begin(), arguments.end());
    require(takenApart(zpt::commandLine(whole.front(), arguments)) == whole,
            "a quoted line is taken apart into its arguments");
}

bool plainPort(std::string_view text) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string_view::npos) return false;
    long long value = 0;
    for (const char digit : text) value = std::min(value * 10 + (digit - '0'), 100000LL);
    return value >= 1 && value <= 65535;
}

void checkFields(std::string_view text) {
    require(zpt::parsePort(text).has_value() == plainPort(text), "a port is digits, from 1 to 65535");
    constexpr std::string_view never = " \t\r\n\"'`$&|;<>()@/\\*?!#^~={}";
    if (zpt::isHost(text)) {
        require(text.find_first_of(never) == std::string_view::npos && text.front() != '-',
                "a host is no more than a name");
    }
    if (zpt::isLogin(text) && !text.empty()) {
        require(text.find_first_of(" \t\r\n\"'`") == std::string_view::npos && text.front() != '-',
                "a login name is one word and no option");
    }
}

/// The client's arguments with each value taken out that was asked for: what is left are options that were
/// meant.
void checkClient(const Arguments& arguments, const zpt::SshRequest& request, std::string_view portOption) {
    checkQuoting(arguments);
    require(arguments.back() == request.host, "the host stands last");
    Arguments left;
    for (std::size_t at = 0; at + 1 < arguments.size(); ++at) {
        left.push_back(arguments[at]);
        const std::string& option = arguments[at];
        if (option == "-l") {
            require(arguments[at + 1] == request.login && !request.login.empty(), "the login name");
            ++at;
        } else if (option == portOption) {
            require(arguments[at + 1] == std::to_string(request.sshPort), "the SSH port");
            ++at;
        } else if (option == "-L") {
            require(arguments[at + 1].ends_with(":" + std::to_string(request.forwardPort) +
                                                ":localhost:" + std::to_string(request.remotePort)),
                    "the forward");
            ++at;
        } else if (option == "-o") {
            ++at;
        }
    }
    for (const std::string& option : left) require(option.starts_with('-'), "what is left are options");
}

void checkComplaint(std::string_view complaint) {
    for (const char c : complaint) require(c >= ' ' && c <= '~', "a complaint is plain text");
}

void checkRequests(const Arguments& lines) {
    const std::string& login = lines.front();
    const Arguments arguments{lines.begin() + 1, lines.end()};
    const auto ssh = zpt::parseSshRequest(views(arguments), login);
    checkComplaint(ssh.complaint);
    if (ssh.good()) {
        const zpt::SshRequest& request = ssh.request;
        require(zpt::isHost(request.host) && zpt::isLogin(request.login), "only what may stand there");
        require(request.sshPort > 0 && request.forwardPort > 0 && request.remotePort > 0, "ports");
        checkClient(zpt::plinkArguments(request), request, "-P");
        checkClient(zpt::openSshArguments(request), request, "-p");
    }
    const auto relay = zpt::parseRelayRequest(views(arguments));
    checkComplaint(relay.complaint);
    if (relay.good())
        require(relay.request.localPort > 0 && relay.request.forwardPort > 0, "ports of the relay");
}

std::string fieldOf(const Arguments& lines, std::size_t at) { return at < lines.size() ? lines[at] : ""; }

/// What the terminal lets through reaches the helpers as it was meant.
void checkRoute(const Arguments& lines, std::uint8_t numbers) {
    const std::string host = fieldOf(lines, 0);
    const std::string login = fieldOf(lines, 1);
    const std::string port = fieldOf(lines, 2);
    const std::string complaint = sshFieldComplaint(host, login, port);
    if (!complaint.empty()) return;
    const SshRoute route{port, static_cast<std::int16_t>(numbers % 8), 3000, 3000 + numbers, host, login};

    const Arguments client = takenApart(sshClientCommand(route));
    require(client.front() == "zpt_ssh", "the client's name");
    const auto ssh = zpt::parseSshRequest(views({client.begin() + 1, client.end()}), login);
    require(ssh.good() && ssh.request.host == host && ssh.request.login == login &&
                std::to_string(ssh.request.sshPort) == std::to_string(std::stoi(port)) &&
                ssh.request.forwardPort == route.forwardPort && ssh.request.remotePort == 23,
            "the client is asked for what was meant");

    if (route.ipVersion != 0 && route.ipVersion != 4 && route.ipVersion != 6) return;
    const Arguments relay = takenApart(relayCommand(route));
    const auto read = zpt::parseRelayRequest(views({relay.begin() + 1, relay.end()}));
    require(read.good() && read.request.localPort == route.localPort &&
                read.request.forwardPort == route.forwardPort,
            "the relay is asked for what was meant");
}

void run(Input input) {
    Steering steering{input};
    const std::uint8_t first = steering.byte();
    const Arguments lines = linesOf(steering.rest());
    checkQuoting(lines);
    for (const std::string& line : lines) checkFields(line);
    if (first % 2 == 0) {
        checkRequests(lines);
    } else {
        checkRoute(lines, first);
    }
}

const Target target{"helper_requests", run};

}  // namespace
}  // namespace qxterm::fuzz
