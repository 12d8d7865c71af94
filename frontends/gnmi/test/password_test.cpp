// Passwords that are checked by PAM, with a service of the test's own.
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "frontends/gnmi/transport/password_check.h"
#include "support/files.h"

namespace yfw::gnmi::test {
namespace {

// The service asks for a password, and hands it to a program that knows the right one.
class APassword : public testing::Test {
protected:
    bool is_right(const std::string &password, const std::string &account = "pam_permit.so") const {
        const std::string program = directory_.add(
            "check", "#!/bin/sh\n[ \"$PAM_USER\" = alice ] && [ \"$(tr -d '\\000')\" = \"s3cret words\" ]\n");
        std::filesystem::permissions(program, std::filesystem::perms(0755));
        directory_.add("yfw", "auth required pam_exec.so quiet expose_authtok " + program +
                                  "\naccount required " + account + "\n");
        return is_password_by(directory_.path().string(), "alice", password);
    }

    const yfw::test::TemporaryDirectory directory_;
};

TEST_F(APassword, IsTheOneThatPamKnows) {
    EXPECT_TRUE(is_right("s3cret words"));
    EXPECT_FALSE(is_right("s3cret"));
    EXPECT_FALSE(is_right(""));
}

TEST_F(APassword, DoesNotHelpAUserWhoMayNotLogIn) {
    EXPECT_FALSE(is_right("s3cret words", "pam_deny.so"));
}

// PAM takes the service "other" then, which refuses everybody on Debian.
TEST_F(APassword, IsWrongWhereThereIsNoService) {
    directory_.add("other", "auth required pam_deny.so\naccount required pam_deny.so\n");
    EXPECT_FALSE(is_password_by(directory_.path().string(), "alice", "s3cret words"));
}

} // namespace
} // namespace yfw::gnmi::test
