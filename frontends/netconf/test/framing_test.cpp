// The two framings: how streams are split, what is rejected, and the limits.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "frontends/netconf/messages/framing.h"

namespace yfw::netconf {
namespace {

using Messages = std::vector<std::string>;

FrameReader reader_of(Framing framing, const FrameLimits &limits = {}) {
    FrameReader reader(limits);
    reader.use(framing);
    return reader;
}

Messages all_of(FrameReader &reader) {
    Messages messages;
    while (std::optional<std::string> message = reader.next())
        messages.push_back(*message);
    return messages;
}

std::string chunk(const std::string &content) {
    return "\n#" + std::to_string(content.size()) + "\n" + content;
}

const std::string end_of_chunks = "\n##\n";

// Feeds a stream byte by byte and polls after each byte, as the server does after each read.
Messages fed_byte_by_byte(FrameReader &reader, const std::string &stream) {
    Messages messages;
    for (const char byte : stream) {
        reader.feed(std::string_view(&byte, 1));
        for (std::string &message : all_of(reader))
            messages.push_back(std::move(message));
    }
    return messages;
}

// --- streams that are well formed ---

struct StreamCase {
    const char *name;
    Framing framing;
    std::string stream;
    Messages messages;
};

class AStream : public testing::TestWithParam<StreamCase> {};

TEST_P(AStream, HoldsItsMessagesWhenItComesAtOnce) {
    FrameReader reader = reader_of(GetParam().framing);
    reader.feed(GetParam().stream);
    EXPECT_EQ(all_of(reader), GetParam().messages);
    EXPECT_FALSE(reader.is_inside_message());
}

TEST_P(AStream, HoldsTheSameWhenItComesByteByByte) {
    FrameReader reader = reader_of(GetParam().framing);
    EXPECT_EQ(fed_byte_by_byte(reader, GetParam().stream), GetParam().messages);
    EXPECT_FALSE(reader.is_inside_message());
}

TEST_P(AStream, HoldsTheSameWhereverItIsCutInTwo) {
    const std::string &stream = GetParam().stream;
    for (size_t cut = 0; cut <= stream.size(); cut++) {
        FrameReader reader = reader_of(GetParam().framing);
        reader.feed(std::string_view(stream).substr(0, cut));
        Messages messages = all_of(reader);
        reader.feed(std::string_view(stream).substr(cut));
        for (std::string &message : all_of(reader))
            messages.push_back(std::move(message));
        EXPECT_EQ(messages, GetParam().messages) << "cut after " << cut << " bytes";
    }
}

const std::string ten = "0123456789";

INSTANTIATE_TEST_SUITE_P(
    Of, AStream,
    testing::Values(
        StreamCase{"OneMessage", Framing::end_of_message, "<a/>]]>]]>", {"<a/>"}},
        StreamCase{
            "SeveralMessages", Framing::end_of_message, "<a/>]]>]]><b/>]]>]]>c]]>]]>", {"<a/>", "<b/>", "c"}},
        StreamCase{"PartsOfTheDelimiter",
                   Framing::end_of_message,
                   "]]>]]a]]>]]]>]b]]]>]]>]>]]>]]>",
                   {"]]>]]a]]>]]]>]b]", "]>"}},
        StreamCase{"AMessageThatLooksLikeChunks",
                   Framing::end_of_message,
                   "\n#3\nabc\n##\n]]>]]>",
                   {"\n#3\nabc\n##\n"}},
        StreamCase{
            "ZeroBytes", Framing::end_of_message, std::string("a\0b]]>]]>", 9), {std::string("a\0b", 3)}},
        StreamCase{"OneChunk", Framing::chunked, chunk("abc") + end_of_chunks, {"abc"}},
        StreamCase{"SeveralChunks",
                   Framing::chunked,
                   chunk("a") + chunk(ten) + chunk(ten + ten) + end_of_chunks,
                   {"a" + ten + ten + ten}},
        StreamCase{"SeveralMessagesOfChunks",
                   Framing::chunked,
                   chunk("a") + chunk("b") + end_of_chunks + chunk("c") + end_of_chunks,
                   {"ab", "c"}},
        StreamCase{"ChunksThatHoldHeaders",
                   Framing::chunked,
                   chunk("\n##\n") + chunk("\n#4\n") + chunk("\n") + chunk("#") + end_of_chunks,
                   {"\n##\n\n#4\n\n#"}},
        StreamCase{
            "AChunkThatHoldsTheOtherDelimiter", Framing::chunked, chunk("]]>]]>") + end_of_chunks, {"]]>]]>"}},
        StreamCase{"ChunksThatCutACharacter",
                   Framing::chunked,
                   chunk("\xc3") + chunk("\xa4") + end_of_chunks,
                   {"\xc3\xa4"}}),
    [](const auto &test) { return test.param.name; });

// --- switching ---

TEST(AChangeOfFraming, TakesWhatHasComeAlreadyWithTheNewFraming) {
    FrameReader reader;
    reader.feed("<hello/>]]>]]>" + chunk("<rpc/>") + end_of_chunks + chunk("<r"));
    EXPECT_EQ(reader.next(), "<hello/>");
    reader.use(Framing::chunked);
    EXPECT_EQ(reader.next(), "<rpc/>");
    EXPECT_EQ(reader.next(), std::nullopt);
    reader.feed(chunk("pc/>") + end_of_chunks);
    EXPECT_EQ(reader.next(), "<rpc/>");
}

TEST(AChangeOfFraming, RefusesTheOldFramingAfterwards) {
    FrameReader reader;
    reader.feed("<hello/>]]>]]><rpc/>]]>]]>");
    EXPECT_EQ(reader.next(), "<hello/>");
    reader.use(Framing::chunked);
    EXPECT_THROW(reader.next(), FramingError);
}

// --- whether a message has begun ---

struct BeginningCase {
    const char *name;
    Framing framing;
    std::string stream;
};

class AMessageThatHasBegun : public testing::TestWithParam<BeginningCase> {};

TEST_P(AMessageThatHasBegun, IsAwaited) {
    FrameReader reader = reader_of(GetParam().framing);
    EXPECT_FALSE(reader.is_inside_message());
    reader.feed(GetParam().stream);
    EXPECT_EQ(reader.next(), std::nullopt);
    EXPECT_TRUE(reader.is_inside_message());
}

INSTANTIATE_TEST_SUITE_P(With, AMessageThatHasBegun,
                         testing::Values(BeginningCase{"HalfADelimiter", Framing::end_of_message, "]]>"},
                                         BeginningCase{"Text", Framing::end_of_message, "<rpc"},
                                         BeginningCase{"ALineFeed", Framing::chunked, "\n"},
                                         BeginningCase{"HalfAHeader", Framing::chunked, "\n#1"},
                                         BeginningCase{"AHeader", Framing::chunked, "\n#1\n"},
                                         BeginningCase{"HalfAChunk", Framing::chunked, "\n#3\nab"},
                                         BeginningCase{"AChunk", Framing::chunked, "\n#3\nabc"},
                                         BeginningCase{"HalfAnEndOfChunks", Framing::chunked, "\n#3\nabc\n##"}),
                         [](const auto &test) { return test.param.name; });

// --- streams that break the framing ---

struct BrokenCase {
    const char *name;
    std::string stream;
    Messages before{}; // complete messages before the error
};

class ABrokenStreamOfChunks : public testing::TestWithParam<BrokenCase> {};

TEST_P(ABrokenStreamOfChunks, IsRefusedThenAndEverAfter) {
    FrameReader reader = reader_of(Framing::chunked);
    reader.feed(GetParam().stream);
    for (const std::string &message : GetParam().before)
        EXPECT_EQ(reader.next(), message);
    EXPECT_THROW(reader.next(), FramingError);
    EXPECT_THROW(reader.next(), FramingError);
    reader.feed(chunk("abc") + end_of_chunks);
    EXPECT_THROW(reader.next(), FramingError);
}

TEST_P(ABrokenStreamOfChunks, IsRefusedByteByByteToo) {
    FrameReader reader = reader_of(Framing::chunked);
    EXPECT_THROW(fed_byte_by_byte(reader, GetParam().stream), FramingError);
}

INSTANTIATE_TEST_SUITE_P(
    Of, ABrokenStreamOfChunks,
    testing::Values(
        BrokenCase{"AnEndOfChunksFirst", "\n##\n"},
        BrokenCase{"AnEndOfChunksAfterAnotherOne", chunk("a") + end_of_chunks + end_of_chunks, {"a"}},
        BrokenCase{"AnEmptyChunk", "\n#0\n"}, BrokenCase{"AnEmptyChunkAfterAnother", chunk("a") + "\n#0\n"},
        BrokenCase{"LettersForASize", "\n#abc\n"}, BrokenCase{"ALetterWithinTheSize", "\n#1a\na"},
        BrokenCase{"AHexadecimalSize", "\n#0x1\na"}, BrokenCase{"ALeadingZero", "\n#01\na"},
        BrokenCase{"ASign", "\n#+1\na"}, BrokenCase{"ANegativeSize", "\n#-1\na"},
        BrokenCase{"ASpaceBeforeTheSize", "\n# 1\na"}, BrokenCase{"ASpaceAfterTheSize", "\n#1 \na"},
        BrokenCase{"ACarriageReturnAfterTheSize", "\n#1\r\na"},
        BrokenCase{"ACarriageReturnFirst", "\r\n#1\r\na"}, BrokenCase{"NoSize", "\n#\n"},
        BrokenCase{"ASizeOfSixtyFourBits", "\n#18446744073709551615\na"},
        BrokenCase{"ASizeBeyondSixtyFourBits", "\n#18446744073709551617\na"},
        BrokenCase{"ASizeOneBeyondTheGrammar", "\n#4294967296\na"},
        BrokenCase{"ASizeThatIsAOneInThirtyTwoBits", "\n#4294967297\na"},
        BrokenCase{"ASizeThatIsTheLargestOfTheGrammar", "\n#4294967295\na"},
        BrokenCase{"AHeaderWithoutEnd", "\n#12345678901"},
        BrokenCase{"AHeaderOfManyZeros", "\n#" + std::string(100000, '0')},
        BrokenCase{"AnEndOfChunksInsideAChunk", "\n#5\nab" + end_of_chunks + chunk("x")},
        BrokenCase{"AChunkThatIsTooShort", "\n#9\nabc" + end_of_chunks + chunk("x") + end_of_chunks},
        BrokenCase{"AChunkThatIsTooLong", "\n#2\nabc" + end_of_chunks},
        BrokenCase{"ThreeSigns", chunk("a") + "\n###\n"},
        BrokenCase{"AnEndOfChunksWithASize", chunk("a") + "\n##1\n"},
        BrokenCase{"AnEndOfChunksWithASpace", chunk("a") + "\n## \n"},
        BrokenCase{"TwoLineFeeds", "\n" + chunk("a")},
        BrokenCase{"ALineFeedAfterTheEnd", chunk("a") + end_of_chunks + "\n\n", {"a"}},
        BrokenCase{"NoLineFeed", "#1\na"}, BrokenCase{"Garbage", "garbage"},
        BrokenCase{"AZeroByte", std::string(1, '\0')}, BrokenCase{"TheOtherFraming", "<rpc/>]]>]]>"}),
    [](const auto &test) { return test.param.name; });

// --- limits ---

constexpr FrameLimits small{.chunk = 10, .message = 25};

struct LimitCase {
    const char *name;
    Framing framing;
    std::string stream;
    FrameLimits limits = small;
};

class AStreamWithinTheLimits : public testing::TestWithParam<LimitCase> {};

TEST_P(AStreamWithinTheLimits, IsTaken) {
    FrameReader reader = reader_of(GetParam().framing, GetParam().limits);
    EXPECT_EQ(fed_byte_by_byte(reader, GetParam().stream).size(), 2u);
}

const std::string largest_chunks = chunk(ten) + chunk(ten) + chunk("01234") + end_of_chunks;
const std::string largest_text = ten + ten + "01234]]>]]>";

INSTANTIATE_TEST_SUITE_P(Being, AStreamWithinTheLimits,
                         testing::Values(LimitCase{"TwoMessagesOfTheLargestSize", Framing::end_of_message,
                                                   largest_text + largest_text},
                                         LimitCase{"TwoMessagesOfChunksOfTheLargestSize", Framing::chunked,
                                                   largest_chunks + largest_chunks}),
                         [](const auto &test) { return test.param.name; });

class AStreamBeyondALimit : public testing::TestWithParam<LimitCase> {};

TEST_P(AStreamBeyondALimit, IsRefused) {
    FrameReader reader = reader_of(GetParam().framing, GetParam().limits);
    reader.feed(GetParam().stream);
    EXPECT_THROW(all_of(reader), FramingError);
    EXPECT_THROW(reader.next(), FramingError);
}

TEST_P(AStreamBeyondALimit, IsRefusedByteByByteToo) {
    FrameReader reader = reader_of(GetParam().framing, GetParam().limits);
    EXPECT_THROW(fed_byte_by_byte(reader, GetParam().stream), FramingError);
}

INSTANTIATE_TEST_SUITE_P(
    Being, AStreamBeyondALimit,
    testing::Values(LimitCase{"AMessageOneByteTooLong", Framing::end_of_message, ten + ten + "012345]]>]]>"},
                    LimitCase{"AMessageWithoutEnd", Framing::end_of_message, ten + ten + ten + ten},
                    LimitCase{"ASecondMessageOneByteTooLong", Framing::end_of_message,
                              largest_text + ten + ten + "012345]]>]]>"},
                    LimitCase{"AChunkOneByteTooLong", Framing::chunked, "\n#11\n" + ten + "0" + end_of_chunks},
                    LimitCase{"TheHeaderAloneOfAChunkThatIsTooLong", Framing::chunked, "\n#11\n"},
                    LimitCase{"ChunksOneByteTooLong", Framing::chunked,
                              chunk(ten) + chunk(ten) + chunk("012345") + end_of_chunks},
                    LimitCase{"ChunksWithoutEnd", Framing::chunked, chunk(ten) + chunk(ten) + chunk(ten)},
                    LimitCase{"AChunkBeyondTheGrammarWithALargerLimit",
                              Framing::chunked,
                              "\n#4294967296\n",
                              {.chunk = uint64_t{1} << 40, .message = uint64_t{1} << 41}}),
    [](const auto &test) { return test.param.name; });

TEST(AChunkOfTheGrammarsLargestSize, IsBegunWhenTheLimitsAllowIt) {
    FrameReader reader = reader_of(Framing::chunked, {.chunk = 4294967295, .message = uint64_t{1} << 33});
    reader.feed("\n#4294967295\nabc");
    EXPECT_EQ(reader.next(), std::nullopt);
    EXPECT_TRUE(reader.is_inside_message());
}

TEST(TheLimits, AreTenMebibytesAChunkAndSixtyFourAMessage) {
    const std::string mebibytes(10u << 20, 'x');
    FrameReader reader = reader_of(Framing::chunked);
    for (int i = 0; i < 6; i++)
        reader.feed(chunk(mebibytes));
    reader.feed(chunk(mebibytes.substr(0, 4u << 20)));
    EXPECT_EQ(reader.next(), std::nullopt);
    reader.feed(end_of_chunks);
    ASSERT_EQ(reader.next().value_or("").size(), 64u << 20);
    reader.feed("\n#10485761\n");
    EXPECT_THROW(reader.next(), FramingError);
}

// --- what is sent ---

class AMessageThatIsFramed : public testing::TestWithParam<Framing> {};

TEST_P(AMessageThatIsFramed, IsReadAsItWas) {
    FrameReader reader = reader_of(GetParam());
    Messages sent;
    std::string stream;
    for (const size_t size : {1u, 2u, 9u, 10u, 99u, 100u, 4095u, 4096u, 65535u, 65536u, 1u << 20}) {
        sent.push_back(std::string(size - 1, '#') + "\n");
        stream += frame(GetParam(), sent.back());
    }
    reader.feed(stream);
    EXPECT_EQ(all_of(reader), sent);
    EXPECT_FALSE(reader.is_inside_message());
}

TEST_P(AMessageThatIsFramed, IsReadAsItWasWhenItIsAsLongAsTheLimitOfAMessage) {
    FrameReader reader = reader_of(GetParam(), {.chunk = 4294967295});
    const std::string message(64u << 20, 'x');
    reader.feed(frame(GetParam(), message));
    EXPECT_TRUE(reader.next() == message);
}

INSTANTIATE_TEST_SUITE_P(In, AMessageThatIsFramed, testing::Values(Framing::end_of_message, Framing::chunked),
                         [](const auto &test) {
                             return test.param == Framing::chunked ? "Chunks" : "EndOfMessage";
                         });

} // namespace
} // namespace yfw::netconf
