#include "zpt_ssh/client_arguments.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zpt::client_arguments_test {
namespace {

using Words = std::vector<std::string>;

SshRequest request() {
    SshRequest made;
    made.sshPort = 22;
    made.ipVersion = 4;
    made.forwardPort = 3000;
    made.remotePort = 23;
    made.host = "host1";
    made.login = "bob";
    return made;
}

TEST(ClientArguments, ForPlink) {
    EXPECT_EQ(plinkArguments(request()), (Words{"-ssh", "-batch", "-no-antispoof", "-N", "-P", "22", "-4",
                                                "-l", "bob", "-L", "127.0.0.1:3000:localhost:23", "host1"}));
}

TEST(ClientArguments, ForOpenSsh) {
    EXPECT_EQ(openSshArguments(request()), (Words{"-N",
                                                  "-T",
                                                  "-p",
                                                  "22",
                                                  "-4",
                                                  "-l",
                                                  "bob",
                                                  "-o",
                                                  "BatchMode=yes",
                                                  "-o",
                                                  "StrictHostKeyChecking=yes",
                                                  "-o",
                                                  "ExitOnForwardFailure=yes",
                                                  "-o",
                                                  "GatewayPorts=no",
                                                  "-o",
                                                  "ForwardAgent=no",
                                                  "-o",
                                                  "ForwardX11=no",
                                                  "-o",
                                                  "PermitLocalCommand=no",
                                                  "-o",
                                                  "ServerAliveInterval=30",
                                                  "-L",
                                                  "127.0.0.1:3000:localhost:23",
                                                  "--",
                                                  "host1"}));
}

TEST(ClientArguments, IpVersion6ListensOnItsOwnLoopback) {
    SshRequest six = request();
    six.ipVersion = 6;
    for (const Words& words : {plinkArguments(six), openSshArguments(six)}) {
        EXPECT_EQ(std::count(words.begin(), words.end(), "-6"), 1);
        EXPECT_EQ(std::count(words.begin(), words.end(), "[::1]:3000:localhost:23"), 1);
    }
}

TEST(ClientArguments, UnknownVersionAndEmptyLoginAreLeftToTheClient) {
    SshRequest open = request();
    open.ipVersion = 0;
    open.login.clear();
    for (const Words& words : {plinkArguments(open), openSshArguments(open)}) {
        EXPECT_EQ(std::count(words.begin(), words.end(), "-4"), 0);
        EXPECT_EQ(std::count(words.begin(), words.end(), "-l"), 0);
        EXPECT_EQ(std::count(words.begin(), words.end(), "127.0.0.1:3000:localhost:23"), 1);
        EXPECT_EQ(words.back(), "host1");
    }
}

}  // namespace
}  // namespace zpt::client_arguments_test
