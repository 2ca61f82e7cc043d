#include <gtest/gtest.h>

#include <map>
#include <random>

#include "script/table_object.h"

namespace kelmora {
namespace {

// Keys that lie in the dense part, next to it, far from it, and that only look like numbers.
std::string randomKey(std::mt19937& random) {
    switch (random() % 6) {
        case 0:
            return "0" + std::to_string(random() % 4);
        case 1:
            return "-" + std::to_string(random() % 3);
        case 2:
            return std::string(1, static_cast<char>('a' + random() % 6));
        case 3:
            return std::to_string(1000 + random() % 20);
        default:
            return std::to_string(random() % 24);
    }
}

void expectSame(const TableObject& table, const std::map<std::string, int>& model) {
    ASSERT_EQ(table.size(), model.size());
    const auto sorted = table.sortedKeys();
    ASSERT_EQ(sorted->keys.size(), model.size());
    std::size_t at = 0;
    for (const auto& [key, value] : model) {  // a map orders its keys by their bytes too
        EXPECT_EQ(sorted->keys[at]->text(), key);
        EXPECT_EQ(sorted->find(key), at);
        EXPECT_EQ(table.findListed(*sorted, at)->intValue(), value) << key;
        EXPECT_EQ(table.find(std::string_view(key))->intValue(), value) << key;
        ++at;
    }
    std::size_t length = 0;
    while (model.contains(std::to_string(length + 1))) ++length;
    EXPECT_EQ(table.numericLength(), length);
}

TEST(TableModel, TablesDoWhatAMapDoes) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        Variable holder = Variable::makeTable();
        TableObject& table = holder.table();
        std::map<std::string, int> model;
        const unsigned eraseShare = random() % 8;
        for (int step = 0; step < 300 && !testing::Test::HasFatalFailure(); ++step) {
            const std::string key = randomKey(random);
            if (random() % 8 < eraseShare) {
                EXPECT_EQ(table.erase(TableKey(key)), model.erase(key) == 1) << key;
            } else if (random() % 100 == 0) {
                table.clear();
                model.clear();
            } else {
                model[key] = step;
                table.set(key, Variable::integer(step));
            }
            const std::string other = randomKey(random);
            const auto expected = model.find(other);
            const Variable* found = table.find(TableKey(other));
            ASSERT_EQ(found != nullptr, expected != model.end()) << other;
            if (found) {
                EXPECT_EQ(found->intValue(), expected->second) << other;
            }
            if (step % 20 == 19) expectSame(table, model);
        }
    }
}

TEST(TableModel, AWalkSeesWhatIsLeftOfItsKeys) {
    Variable holder = Variable::makeTable();
    TableObject& table = holder.table();
    for (const char* key : {"1", "2", "3", "a", "b"}) table.set(key, Variable::text(key));
    const auto keys = table.sortedKeys();
    table.erase(TableKey(2));
    table.erase(TableKey(std::string("a")));
    table.set("c", Variable::integer(1));
    table.set("2", Variable::text("again"));
    EXPECT_EQ(table.findListed(*keys, 1)->text(), "again");
    EXPECT_EQ(table.findListed(*keys, 3), nullptr);
    EXPECT_EQ(table.findListed(*keys, 4)->text(), "b");
}

}  // namespace
}  // namespace kelmora
