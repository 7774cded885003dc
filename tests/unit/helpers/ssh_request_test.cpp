#include "zpt_ssh/request.h"

#include <gtest/gtest.h>

namespace zpt::ssh_request_test {
namespace {

using Words = std::vector<std::string_view>;

std::string complaintAbout(const Words& words, std::string_view login = "bob") {
    return parseSshRequest(words, login).complaint;
}

TEST(SshRequestLine, IsReadAsTheTerminalWritesIt) {
    const auto parsed = parseSshRequest(
        {"-no-antispoof", "-P", "2222", "-4", "-ssh", "-L", "3000:localhost:23", "host1"}, "bob");
    ASSERT_TRUE(parsed.good()) << parsed.complaint;
    EXPECT_EQ(parsed.request.sshPort, 2222);
    EXPECT_EQ(parsed.request.ipVersion, 4);
    EXPECT_EQ(parsed.request.forwardPort, 3000);
    EXPECT_EQ(parsed.request.remotePort, 23);
    EXPECT_EQ(parsed.request.host, "host1");
    EXPECT_EQ(parsed.request.login, "bob");
}

TEST(SshRequestLine, TheIpVersionMayBeLeftOutOrEmpty) {
    EXPECT_EQ(parseSshRequest({"-P", "22", "-ssh", "-L", "1:localhost:23", "h"}, "").request.ipVersion, 0);
    const auto hyphen = parseSshRequest({"-P", "22", "-", "-ssh", "-L", "1:localhost:23", "h"}, "");
    EXPECT_TRUE(hyphen.good());
    EXPECT_EQ(hyphen.request.ipVersion, 0);
    EXPECT_EQ(parseSshRequest({"-6", "-ssh", "-L", "1:localhost:23", "h"}, "").request.ipVersion, 6);
}

TEST(SshRequestLine, PortsAreChecked) {
    EXPECT_EQ(complaintAbout({"-P", "0", "-ssh", "-L", "1:localhost:23", "h"}),
              "the SSH port is not a port number");
    EXPECT_EQ(complaintAbout({"-ssh", "-L", "70000:localhost:23", "h"}),
              "the forwarded port is not a port number");
    EXPECT_EQ(complaintAbout({"-ssh", "-L", "1:localhost:", "h"}),
              "the port behind the forward is not a port number");
}

TEST(SshRequestLine, OnlyTheHostsOwnLoopbackIsForwardedTo) {
    for (const char* forward :
         {"3000:host2:23", "0.0.0.0:3000:localhost:23", "3000", "", "*:1:localhost:23"}) {
        EXPECT_NE(complaintAbout({"-ssh", "-L", forward, "h"}), "") << forward;
    }
}

TEST(SshRequestLine, NothingElseIsAnOption) {
    for (const char* option : {"-i", "-A", "-oProxyCommand=x", "--", "-load", "-44", "-D"}) {
        EXPECT_EQ(complaintAbout({option, "-ssh", "-L", "1:localhost:23", "h"}), "an option is not known")
            << option;
    }
}

TEST(SshRequestLine, EachPartIsThereOnce) {
    EXPECT_EQ(complaintAbout({"-L", "1:localhost:23", "h"}), "-ssh is missing");
    EXPECT_EQ(complaintAbout({"-ssh", "h"}), "-L is missing");
    EXPECT_EQ(complaintAbout({"-ssh", "-L", "1:localhost:23"}), "the host is missing");
    EXPECT_EQ(complaintAbout({"-ssh", "-L"}), "-L lacks its value");
    EXPECT_EQ(complaintAbout({"-ssh", "-L", "1:localhost:23", "h", "ls"}), "the host is there twice");
    EXPECT_EQ(complaintAbout({"-ssh", "-4", "-6", "-L", "1:localhost:23", "h"}),
              "the IP version is there twice");
}

TEST(SshRequestLine, HostAndLoginAreChecked) {
    EXPECT_EQ(complaintAbout({"-ssh", "-L", "1:localhost:23", "u@h"}),
              "the host is neither a name nor an address");
    EXPECT_EQ(complaintAbout({"-ssh", "-L", "1:localhost:23", "h"}, "-x"), "the login name cannot be used");
}

}  // namespace
}  // namespace zpt::ssh_request_test
