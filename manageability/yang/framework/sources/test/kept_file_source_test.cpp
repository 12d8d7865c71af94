// A served recording is read again when its files have changed, and only then.
#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/error.h"
#include "native_modules.h"
#include "sources/file/kept_file_source.h"
#include "support/eventually.h"
#include "support/files.h"

namespace yfw::sources::test {
namespace {

std::string configuration(const std::string &timer) {
    return "<lldp xmlns=\"urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg\"><timer>" + timer + "</timer></lldp>";
}

class AServedRecording : public testing::Test {
protected:
    yang::SharedForest data() { return source_.snapshot(native_modules()).data; }
    std::string timer() { return data()->first()->child()->value(); }

    // Whether two reads return the same object. Polls, because a file that was only just written is always
    // reread.
    bool is_kept() {
        return yfw::test::eventually([this] { return data() == data(); });
    }

    const yfw::test::TemporaryDirectory directory_;
    const std::string file_ = directory_.add("native.xml", configuration("10"));
    KeptFileSource source_{FileSource::of_device(directory_.path())};
};

TEST_F(AServedRecording, IsReadOnceWhileItStaysAsItIs) {
    EXPECT_TRUE(is_kept());
    EXPECT_EQ(timer(), "10");
}

TEST_F(AServedRecording, IsReadAgainWhenItWasWritten) {
    ASSERT_TRUE(is_kept());
    yfw::test::write_file(file_, configuration("20"));
    EXPECT_EQ(timer(), "20");
}

TEST_F(AServedRecording, IsReadAgainAtEachOfManyQuickChanges) {
    for (int i = 10; i < 60; i++) { // so that the file's size never changes
        yfw::test::write_file(file_, configuration(std::to_string(i)));
        EXPECT_EQ(timer(), std::to_string(i));
    }
}

TEST_F(AServedRecording, IsReadAgainWhenAnotherFileTookItsPlace) {
    ASSERT_TRUE(is_kept());
    const std::string other = directory_.add("other", configuration("30"));
    std::filesystem::last_write_time(other, std::filesystem::last_write_time(file_));
    std::filesystem::rename(other, file_);
    EXPECT_EQ(timer(), "30");
}

TEST_F(AServedRecording, ThatIsGoneOrBrokenIsAnErrorUntilItIsBack) {
    ASSERT_TRUE(is_kept());
    std::filesystem::remove(file_);
    EXPECT_THROW(data(), Error);
    yfw::test::write_file(file_, "<lldp");
    EXPECT_THROW(data(), Error);
    EXPECT_THROW(data(), Error);
    yfw::test::write_file(file_, configuration("40"));
    EXPECT_EQ(timer(), "40");
}

TEST_F(AServedRecording, StaysWithWhoeverHoldsItWhenItChanges) {
    ASSERT_TRUE(is_kept());
    const yang::SharedForest before = data();
    yfw::test::write_file(file_, configuration("50"));
    EXPECT_EQ(timer(), "50");
    EXPECT_STREQ(before->first()->child()->value(), "10");
}

// --- texts ---

// The error of a recording whose system name is in a CDATA section.
std::string refusal_of(const std::string &name) {
    const yfw::test::TemporaryDirectory directory;
    const std::string file =
        directory.add("native.xml", "<lldp xmlns=\"urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg\">"
                                    "<system-name><![CDATA[" +
                                        name + "]]></system-name></lldp>");
    try {
        FileSource({file}).read(native_modules());
        return "";
    } catch (const Error &error) {
        EXPECT_EQ(error.path(), file);
        return error.what();
    }
}

TEST(ARecordedText, IsRefusedByItsPlaceWhenItIsNoUtf8) {
    EXPECT_THAT(refusal_of("r\x87"), testing::HasSubstr("/Tarvo-QD-ethernet-lldp-cfg:lldp/system-name"));
    EXPECT_THAT(refusal_of("r\x01"), testing::HasSubstr("/Tarvo-QD-ethernet-lldp-cfg:lldp/system-name"));
    EXPECT_EQ(refusal_of("r\xc3\xbc"), "");
}

} // namespace
} // namespace yfw::sources::test
