// What the reader accepts and refuses.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "network_texts.hpp"
#include "network_under_test.hpp"
#include "support/ir_text.h"

namespace InferenceEngine {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using VelmoraQuavin::testing::IrText;

TEST(ReadingTest, PaddingAfterTheTextIsAccepted) {
    const std::string text = doublingNetwork();
    const std::vector<std::string> paddings{std::string(16, '\0'), std::string(16, '\x10'),
                                            std::string(1, '\x01'), " \r\n\t", "plain text"};
    for (const std::string& padding : paddings) {
        EXPECT_EQ(tryReading(*makeReader(), text + padding).text, "");
    }
}

TEST(ReadingTest, WhitespaceOrAByteOrderMarkBeforeTheTextIsAccepted) {
    EXPECT_EQ(tryReading(*makeReader(), " \n" + doublingNetwork()).text, "");
    EXPECT_EQ(tryReading(*makeReader(), "\xEF\xBB\xBF" + doublingNetwork()).text, "");
}

TEST(ReadingTest, ContentThatIsNotTextIsRefusedImmediately) {
    const auto reader = makeReader();
    ResponseDesc response;
    for (const std::string& text : {std::string(), std::string("  \n"),
                                    std::string("\x08\x07network"), std::string(8, '\0')}) {
        EXPECT_EQ(reader->ReadNetwork(text.data(), text.size(), &response), GENERAL_ERROR);
        EXPECT_STREQ(response.msg, "The network is not an XML text");
    }
    EXPECT_EQ(reader->ReadNetwork(nullptr, 5, &response), GENERAL_ERROR);
}

TEST(ReadingTest, MalformedTextIsRefusedWithTheRuntimesReason) {
    const std::string text = doublingNetwork();
    const ReadingResult result = tryReading(*makeReader(), text.substr(0, text.size() / 2));
    EXPECT_EQ(result.status, GENERAL_ERROR);
    EXPECT_THAT(result.text,
                AllOf(StartsWith("Error parsing"), Not(HasSubstr("src/")), Not(HasSubstr("\n"))));
}

TEST(ReadingTest, TextThatIsNotANetworkIsRefused) {
    const ReadingResult result = tryReading(*makeReader(), "<html><body/></html>");
    EXPECT_EQ(result.status, GENERAL_ERROR);
    EXPECT_THAT(result.text, Not(IsEmpty()));
}

TEST(ReadingTest, WeightsThatAreTooShortAreRefused) {
    const ReadingResult result =
        tryReading(*makeReader(), addingNetwork(), weightsOf<float>({1, 2, 3}));
    EXPECT_EQ(result.status, GENERAL_ERROR);
    EXPECT_THAT(result.text, HasSubstr("weights"));
    EXPECT_NE(tryReading(*makeReader(), addingNetwork(), noWeights()).status, OK);
}

TEST(ReadingTest, WeightsLongerThanNeededAreAccepted) {
    EXPECT_EQ(tryReading(*makeReader(), addingNetwork(), weightsOf<float>({1, 2, 3, 4, 5})).text,
              "");
}

TEST(ReadingTest, ANetworkWithoutConstantsAcceptsEmptyWeights) {
    const auto request = load(CNNNetwork(readNetwork(doublingNetwork(), noWeights())));
    const Blob::Ptr output = floats({1, 4});
    request->SetBlob("x", floats({1, 4}, {1, 2, 3, 4}));
    request->SetBlob("y", output);
    request->Infer();
    EXPECT_THAT(elementsOf<float>(output), ElementsAre(2, 4, 6, 8));
}

TEST(ReadingTest, WithoutWeightsThereIsNoNetwork) {
    const auto reader = makeReader();
    const std::string text = doublingNetwork();
    ResponseDesc response;
    ASSERT_EQ(reader->ReadNetwork(text.data(), text.size(), &response), OK);
    EXPECT_EQ(reader->getNetwork(&response), nullptr);
    EXPECT_STREQ(response.msg, "No network has been read");
    EXPECT_EQ(reader->getNetwork(nullptr), nullptr);
}

TEST(ReadingTest, WeightsBeforeTheTextAreRefused) {
    ResponseDesc response;
    EXPECT_EQ(makeReader()->SetWeights(noWeights(), &response), NETWORK_NOT_READ);
    EXPECT_STREQ(response.msg, "The weights come before the network's text");
}

TEST(ReadingTest, WeightsWithoutMemoryAreRefused) {
    EXPECT_EQ(tryReading(*makeReader(), addingNetwork(), nullptr).status, NOT_ALLOCATED);
    const auto unallocated = make_shared_blob<std::uint8_t>(TensorDesc(Precision::U8, {16}, ANY));
    EXPECT_EQ(tryReading(*makeReader(), addingNetwork(), unallocated).status, NOT_ALLOCATED);
}

TEST(ReadingTest, CanStartAgainAfterAFailure) {
    const auto reader = makeReader();
    EXPECT_NE(tryReading(*reader, "<net").status, OK);
    EXPECT_NE(tryReading(*reader, addingNetwork(), noWeights()).status, OK);
    EXPECT_EQ(reader->getNetwork(nullptr), nullptr);
    EXPECT_EQ(tryReading(*reader, addingNetwork(), weightsOf<float>({1, 2, 3, 4})).text, "");
    EXPECT_NE(reader->getNetwork(nullptr), nullptr);
}

TEST(ReadingTest, ReadsOnlyOneNetwork) {
    const auto reader = readNetwork(doublingNetwork());
    ICNNNetwork* const network = reader->getNetwork(nullptr);
    EXPECT_EQ(tryReading(*reader, doublingNetwork()).status, NETWORK_NOT_READ);
    EXPECT_EQ(reader->SetWeights(noWeights(), nullptr), NETWORK_NOT_READ);
    EXPECT_EQ(reader->getNetwork(nullptr), network);
}

TEST(ReadingTest, TheTextMayBeFreedAfterReadNetwork) {
    const auto reader = makeReader();
    std::string text = doublingNetwork();
    ASSERT_EQ(reader->ReadNetwork(text.data(), text.size(), nullptr), OK);
    text.assign(text.size(), 'x');
    EXPECT_EQ(reader->SetWeights(noWeights(), nullptr), OK);
}

TEST(ReadingTest, DynamicDimensionsAreRefusedNamingTheInputAndItsShape) {
    for (const int version : {10, 11}) {
        const std::string text = IrText(version)
                                     .parameter(0, "x", "f32", "?,4", version == 10 ? "" : "x")
                                     .layer(1, "y", "ReLU", "", "f32", {"?,4"}, {{"?,4", "y"}})
                                     .result(2, "?,4")
                                     .edge(0, 0, 1, 0)
                                     .edge(1, 1, 2, 0)
                                     .str();
        const ReadingResult result = tryReading(*makeReader(), text);
        EXPECT_EQ(result.status, NOT_IMPLEMENTED);
        EXPECT_THAT(result.text, StartsWith("Input \"x\" has dynamic dimensions {?,4}"));
    }
}

TEST(ReadingTest, MoreElementsThanMemoryCanHoldAreRefused) {
    const std::string dims = "4294967296,4294967296";
    const std::string text = IrText(11)
                                 .parameter(0, "x", "f32", dims, "x")
                                 .layer(1, "y", "ReLU", "", "f32", {dims}, {{dims, "y"}})
                                 .result(2, dims)
                                 .edge(0, 0, 1, 0)
                                 .edge(1, 1, 2, 0)
                                 .str();
    const ReadingResult result = tryReading(*makeReader(), text);
    EXPECT_EQ(result.status, OUT_OF_BOUNDS);
    EXPECT_THAT(result.text, StartsWith("Input \"x\" has too many elements"));
}

TEST(ReadingTest, AnElementTypeWithoutAPrecisionIsRefusedNamingTheInput) {
    const ReadingResult result = tryReading(*makeReader(), repeatingNetwork("u4"));
    EXPECT_EQ(result.status, NOT_IMPLEMENTED);
    EXPECT_THAT(result.text, StartsWith("Input \"x\" has an element type"));
}

TEST(ReadingTest, ReadersOnSeveralThreadsDoNotDisturbEachOther) {
    std::vector<std::thread> threads;
    threads.reserve(8);
    std::vector<ReadingResult> results(8, {UNEXPECTED, "not run"});
    for (ReadingResult& result : results) {
        threads.emplace_back([&result] { result = tryReading(*makeReader(), doublingNetwork()); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const ReadingResult& result : results) {
        EXPECT_EQ(result.text, "");
    }
}

}  // namespace
}  // namespace InferenceEngine
