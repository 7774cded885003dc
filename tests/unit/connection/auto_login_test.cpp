#include "connection/auto_login.h"

#include <gtest/gtest.h>

#include <cstring>
#include <new>

#include "faults/memory.h"

namespace qxterm::test::auto_login_test {
namespace {

constexpr std::string_view secret = "opensesame";

/// A piece of memory that holds it, given back as it is.
void giveBackOneThatHoldsIt() {
    void* const memory = ::operator new(100);
    std::memcpy(static_cast<char*>(memory) + 50, secret.data(), secret.size());
    ::operator delete(memory);
}

// Whatever its length is: the room for it grows on the way.
TEST(TypedPassword, IsOverwrittenWhereverItHasBeen) {
    std::string{}.swap(g_sSSHPassword);
    watchReturned(secret);
    for (int n = 0; n < 50; ++n) {
        for (const char c : secret) addToPassword(c);
    }
    const std::size_t length = g_sSSHPassword.size();
    forgetPassword();
    EXPECT_EQ(endWatch(), 0U);
    EXPECT_EQ(length, 500U);

    watchReturned(secret);
    giveBackOneThatHoldsIt();
    EXPECT_EQ(endWatch(), 1U) << "nothing is watched";
}

}  // namespace
}  // namespace qxterm::test::auto_login_test
