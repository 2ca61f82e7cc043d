#include "ai/ai_jobs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <numeric>
#include <random>
#include <thread>

#include "ai/ai_model_file.h"
#include "base/whole_file.h"
#include "support/temporary_folder.h"

namespace kelmora {
namespace {

class AIRequests : public testing::Test {
protected:
    std::string write(const std::string& name, const std::string& content) {
        const std::string path = (folder_ / name).string();
        EXPECT_TRUE(writeWholeFile(path, content));
        return path;
    }
    static std::string failureOf(const AIRequest& request) {
        try {
            aiExecuteRequest(request);
        } catch (const std::runtime_error& failure) {
            return failure.what();
        }
        return "";
    }

    TemporaryFolder folder_;
};

TEST_F(AIRequests, RetrainingSavesAndGeneratesNothing) {
    AIRequest request;
    request.retrain = request.skipTraining = request.saveModel = true;
    request.filePath = write("text", "ab");
    request.modelPath = (folder_ / "model").string();
    request.hasTextInput = true;
    request.textInput = "b";
    request.dataSize = 1;
    const AIJobResult result = aiExecuteRequest(request);
    EXPECT_TRUE(result.ok);
    EXPECT_EQ(result.text, "");
    EXPECT_EQ(aiModelText(result.model), "a|b:1\nb|\n:1,a:1\n\n|b:1");
    EXPECT_EQ(readWholeFile(request.modelPath), aiModelText(result.model));
}

TEST_F(AIRequests, TrainsOrTakesTheModelThatItIsGiven) {
    AIRequest request;
    request.filePath = write("text", "abc");
    request.dataSize = 1;
    request.genLength = 3;
    request.hasTextInput = true;
    request.textInput = "a";
    EXPECT_EQ(aiExecuteRequest(request).text, "abca");
    request.skipTraining = true;
    request.modelPath = write("model", "a|x:1\nx|a:1");
    EXPECT_EQ(aiExecuteRequest(request).text, "axax");
    request.hasModel = true;
    request.model = aiModelFromText("a|-:1");
    request.saveModel = true;
    EXPECT_EQ(aiExecuteRequest(request).text, "a-");
    EXPECT_EQ(readWholeFile(request.modelPath), "a|-:1");
}

TEST_F(AIRequests, EachFailureHasItsWords) {
    AIRequest request;
    EXPECT_EQ(failureOf(request), "filePath is required for training");
    request.retrain = true;
    EXPECT_EQ(failureOf(request), "filePath is required for retraining");
    request.filePath = "/no/such/file";
    EXPECT_EQ(failureOf(request), "Cannot open file: /no/such/file");
    request.retrain = false;
    EXPECT_EQ(failureOf(request), "Cannot open file: /no/such/file");
    request.skipTraining = true;
    EXPECT_EQ(failureOf(request), "Either model or modelPath must be provided when skipTraining is true");
    request.modelPath = "/no/such/model";
    EXPECT_EQ(failureOf(request), "Cannot open file: /no/such/model");
    request.hasModel = request.saveModel = true;
    EXPECT_EQ(failureOf(request), "Cannot open file for writing: /no/such/model");
    if (std::filesystem::exists("/dev/full")) {
        request.modelPath = "/dev/full";
        request.model = aiModelFromText("a|b:1");
        EXPECT_EQ(failureOf(request), "Cannot open file for writing: /dev/full");
    }
    request.hasModel = false;
    request.modelPath = write("model", "ab|c:");
    EXPECT_EQ(failureOf(request), "Invalid count in model: ");
}

AIJobs::Answer waitFor(AIJobs& jobs, std::int32_t id) {
    for (;;) {
        AIJobs::Answer answer = jobs.check(id);
        if (answer.state != AIJobs::State::Running) return answer;
        std::this_thread::sleep_for(std::chrono::microseconds(50));
    }
}

AIRequest seeded(const std::string& seed) {
    AIRequest request;
    request.skipTraining = request.hasModel = request.hasTextInput = true;
    request.model = aiModelFromText("a|b:1\nb|a:1");
    request.textInput = seed + "a";
    request.genLength = 20;
    request.dataSize = 1;
    return request;
}

TEST(AIJobsTest, AThousandAtOnceAndNoneIsLost) {
    AIJobs jobs;
    EXPECT_EQ(jobs.check(0).state, AIJobs::State::Unknown);
    EXPECT_EQ(jobs.check(1).state, AIJobs::State::Unknown);
    std::vector<std::int32_t> ids(1000);
    for (std::size_t i = 0; i < ids.size(); ++i) {
        AIRequest request = seeded(std::to_string(i + 1) + ":");
        request.hasModel = i % 10 != 9;
        ids[i] = jobs.submit(std::move(request));
    }
    EXPECT_EQ(ids.front(), 1);
    EXPECT_EQ(ids.back(), 1000);
    std::shuffle(ids.begin(), ids.end(), std::mt19937(1));
    for (const std::int32_t id : ids) {
        const AIJobs::Answer answer = waitFor(jobs, id);
        if (id % 10 == 0) {
            EXPECT_EQ(answer.state, AIJobs::State::Failed);
            EXPECT_EQ(answer.failure, "Either model or modelPath must be provided when skipTraining is true");
        } else {
            EXPECT_EQ(answer.state, AIJobs::State::Finished);
            EXPECT_TRUE(answer.result.ok);
            EXPECT_EQ(answer.result.text, std::to_string(id) + ":ababababababababababa");
            EXPECT_EQ(answer.result.model.stateCount(), 2u);
        }
        EXPECT_EQ(jobs.check(id).state, AIJobs::State::Unknown);
    }
}

TEST(AIJobsTest, TheEndWaitsForAllThatWasBegun) {
    const TemporaryFolder folder;
    {
        AIJobs jobs;
        for (int i = 0; i < 50; ++i) {
            AIRequest request = seeded("");
            request.genLength = 2000;
            request.saveModel = true;
            request.modelPath = (folder / ("model" + std::to_string(i))).string();
            jobs.submit(std::move(request));
        }
    }
    for (int i = 0; i < 50; ++i)
        EXPECT_EQ(readWholeFile((folder / ("model" + std::to_string(i))).string()), "a|b:1\nb|a:1");
}

TEST(AIThreadPoolTest, RunsWhatManyThreadsGiveIt) {
    std::atomic<int> ran = 0;
    {
        AIThreadPool pool;
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back([&] {
                for (int j = 0; j < 250; ++j) pool.submit([&] { ++ran; });
            });
        for (std::thread& thread : threads) thread.join();
    }
    EXPECT_EQ(ran, 1000);
}

}  // namespace
}  // namespace kelmora
