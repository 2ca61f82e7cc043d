#include "ai/ai_model.h"

#include <gtest/gtest.h>

#include <random>
#include <unordered_map>
#include <vector>

#include "ai/ai_generation.h"
#include "ai/ai_model_builder.h"
#include "ai/ai_model_file.h"
#include "ai/ai_training.h"

namespace kelmora {
namespace {

std::string trainedText(const std::string& text, std::int32_t order) {
    return aiModelText(aiTrainModel(text, order));
}

TEST(AITraining, WrapsRoundAndCountsInOrderOfAppearance) {
    EXPECT_EQ(trainedText("abcabc", 2), "ab|c:2\nbc|a:2\nca|b:2");
    EXPECT_EQ(trainedText("hello", 0), "|h:1,e:1,l:2,o:1");
    EXPECT_EQ(trainedText("hello", -5), "|h:1,e:1,l:2,o:1");
    EXPECT_EQ(trainedText("aab", 1), "a|a:1,b:1\nb|a:1");
    EXPECT_EQ(trainedText("abcd", 3), "abc|d:1\nbcd|a:1\ncda|b:1\ndab|c:1");
    EXPECT_EQ(trainedText("abcd", 4), "abcd|a:1\nbcda|b:1\ncdab|c:1\ndabc|d:1");
    EXPECT_TRUE(aiTrainModel("abcd", 8).empty());
    EXPECT_TRUE(aiTrainModel("abcd", 2147483647).empty());
    EXPECT_TRUE(aiTrainModel("", 3).empty());
    EXPECT_TRUE(aiTrainModel("", 0).empty());
}

// A second way to train: lists of pairs, searched from the front.
struct PlainModel {
    using Followers = std::vector<std::pair<char, int>>;
    std::vector<std::pair<std::string, Followers>> states;
    std::unordered_map<std::string, std::size_t> places;

    PlainModel(std::string text, std::size_t order) {
        text += text.substr(0, order);
        for (std::size_t i = 0; i + order < text.size(); ++i) {
            const auto [place, isNew] = places.try_emplace(text.substr(i, order), states.size());
            if (isNew) states.push_back({place->first, {}});
            Followers& followers = states[place->second].second;
            const auto found = std::find_if(followers.begin(), followers.end(),
                                            [&](const auto& pair) { return pair.first == text[i + order]; });
            if (found == followers.end())
                followers.push_back({text[i + order], 1});
            else
                ++found->second;
        }
    }
};

TEST(AITraining, AgreesWithAPlainModel) {
    std::mt19937 random(3);
    for (const unsigned letters : {2u, 5u, 60u, 256u}) {
        for (std::size_t order = 0; order < 7; ++order) {
            std::string text;
            for (int i = 0; i < 6000; ++i)
                text += static_cast<char>(static_cast<unsigned char>(random() % letters));
            const PlainModel expected(text, order);
            const AIModel model = aiTrainModel(text, static_cast<std::int32_t>(order));
            ASSERT_EQ(model.stateCount(), expected.states.size());
            for (std::uint32_t state = 0; state < model.stateCount(); ++state) {
                const auto& [name, followers] = expected.states[state];
                ASSERT_EQ(model.state(state), name);
                ASSERT_EQ(model.find(name), state);
                std::uint32_t at = model.firstTransition(state);
                for (const auto& [byte, count] : followers) {
                    ASSERT_EQ(model.successor(at), std::string_view(&byte, 1));
                    ASSERT_EQ(model.count(at), count);
                    at = model.transitionAfter(at);
                }
                ASSERT_EQ(at, AIModel::none);
            }
            EXPECT_EQ(model.find("no such state of this length"), AIModel::none);
        }
    }
}

TEST(AIModelFile, ReadsBackWhatItWrote) {
    for (const char* text : {"ab|c:2\nbc|a:2,b:-7", "|h:1,e:1", "dead|\nend|x:1", ""}) {
        EXPECT_EQ(aiModelText(aiModelFromText(text)), text);
    }
}

TEST(AIModelFile, TakesLinesApartAsTheyStand) {
    const std::pair<const char*, const char*> cases[] = {
        {"ab|c:2\n", "ab|c:2"},
        {"no mark\nab|c:2\nhalf", "ab|c:2"},
        {"ab|c,d:1,,e", "ab|d:1"},
        {"ab|c:1\nab|d:1,c:5", "ab|c:5,d:1"},
        {"a|b|c:1", "a|b|c:1"},
        {"ab|long:3,:4", "ab|long:3,:4"},
        {"ab|c: 12abc,d:+3,e:-0", "ab|c:12,d:3,e:0"},
        {"ab|c:007\r\n", "ab|c:7"},
        {"\n\n|", "|"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(aiModelText(aiModelFromText(text)), expected) << text;
    for (const char* text :
         {"ab|c:", "ab|c:x", "ab|c:2147483648", "ab|c:+-1", "ab|c:--1", "ab|::1", "a|b:\n"})
        EXPECT_THROW(aiModelFromText(text), std::runtime_error) << text;
}

TEST(AIModelFile, HoldsStatesWithVeryManySuccessors) {
    std::string text = "s|";
    for (int i = 0; i < 100000; ++i)
        text += "successor" + std::to_string(i % 50000) + ":" + std::to_string(i) + ",";
    const AIModel model = aiModelFromText(text);
    EXPECT_EQ(model.transitionCount(), 50000u);
    const std::uint32_t second = model.transitionAfter(model.firstTransition(0));
    EXPECT_EQ(model.successor(second), "successor1");
    EXPECT_EQ(model.count(second), 50001);
}

std::string generated(const AIModel& model, std::optional<std::string_view> seed, std::int32_t length,
                      std::int32_t order, std::optional<std::string_view> escape = std::nullopt) {
    AIRandom random(7);
    return aiGenerateTextImpl(model, {seed, length, escape, order}, random);
}

TEST(AIGeneration, WalksTheOnlyWayThereIs) {
    const AIModel ring = aiTrainModel("abc", 1);
    EXPECT_EQ(generated(ring, "xa", 5, 1), "xabcabc");
    EXPECT_EQ(generated(ring, "a", 0, 1), "a");
    EXPECT_EQ(generated(ring, "a", -3, 1), "a");
    EXPECT_EQ(generated(ring, "z", 5, 1), "z");
    EXPECT_EQ(generated(ring, "a", 5, 1, "c"), "ab");
    EXPECT_EQ(generated(ring, "a", 3, 1, ",,,"), "abca");
    const AIModel pairs = aiTrainModel("abc", 2);
    const std::string unseeded = generated(pairs, std::nullopt, 4, 2);
    EXPECT_EQ(unseeded.size(), 6u);
    EXPECT_NE(std::string("abcabcabc").find(unseeded), std::string::npos);
    // Too short a seed: it stays in front of what a random state leads to.
    const std::string seeded = generated(pairs, "q", 4, 2);
    EXPECT_EQ(seeded.size(), 5u);
    EXPECT_EQ(seeded[0], 'q');
    EXPECT_EQ(generated({}, "q", 4, 2), "q");
    EXPECT_EQ(generated({}, "quest", 4, 2), "quest");
    EXPECT_EQ(generated({}, std::nullopt, 4, 2), "");
}

TEST(AIGeneration, OrderZeroKnowsOneStateOnly) {
    const AIModel bytes = aiTrainModel("aaaa", 0);
    EXPECT_EQ(generated(bytes, std::nullopt, 5, 0), "a");
    EXPECT_EQ(generated(bytes, "seed", 5, -1), "seeda");
}

TEST(AIGeneration, StatesOfOddLengthsMoveOnByTheirRule) {
    const AIModel model = aiModelFromText("long state|X:1\noX|YZ:2\nXYZ|!:1");
    EXPECT_EQ(generated(aiModelFromText("abcde|X:1\nbX|Y:1"), std::nullopt, 9, 2), "abcdeXY");
    EXPECT_EQ(generated(model, "long state", 1, 10), "long stateX");
    EXPECT_EQ(generated(aiModelFromText("ab|:1\nb|q:1\nbq|!:1"), "ab", 3, 2), "abq!");
    EXPECT_EQ(generated(aiModelFromText("a|b:0\n"), "a", 9, 1), "a");
    EXPECT_EQ(generated(aiModelFromText("a|b:-4,c:3\n"), "a", 9, 1), "a");
    EXPECT_EQ(generated(aiModelFromText("a|b:2147483647,c:-1\nb|"), "a", 1, 1), "ab");
}

TEST(AIGeneration, ChoosesInProportion) {
    AIModelBuilder builder;
    const std::uint32_t state = builder.addState("s");
    builder.setCount(state, "a", 1);
    builder.setCount(state, "b", 3);
    const AIModel model = builder.take();
    AIRandom random(11);
    int b = 0;
    for (int i = 0; i < 8000; ++i)
        b += aiGenerateTextImpl(model, {"s", 1, std::nullopt, 1}, random) == "sb" ? 1 : 0;
    EXPECT_NEAR(b, 6000, 200);
}

TEST(AIModel, IsSmallBesidesItsStates) {
    std::string text;
    std::mt19937 random(5);
    for (int i = 0; i < 200000; ++i) text += static_cast<char>('a' + random() % 26);
    const AIModel model = aiTrainModel(text, 2);
    EXPECT_EQ(model.stateCount(), 676u);
    EXPECT_EQ(model.transitionCount(), 17576u);
    EXPECT_LE(model.text().size(), 676u * 2);
}

}  // namespace
}  // namespace kelmora
