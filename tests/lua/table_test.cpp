#include "lua/table.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <variant>

#include "lua/iterator_state.h"

// Tables against a sorted map that does the same, through random changes of every kind of key.
namespace vesper::lua {
namespace {

// Ordered as pairs goes: integers, texts, booleans.
using ModelKey = std::variant<std::int64_t, std::string, bool>;
using Model = std::map<ModelKey, std::int64_t>;

Value valueOf(const ModelKey& key) {
    if (const auto* number = std::get_if<std::int64_t>(&key)) return Value::integer(*number);
    if (const auto* text = std::get_if<std::string>(&key)) return Value::text(*text);
    return Value::boolean(std::get<bool>(key));
}

class LuaTableModel : public testing::TestWithParam<unsigned> {
protected:
    std::size_t draw(std::size_t count) { return generator_() % count; }
    ModelKey drawKey() {
        switch (draw(8)) {
            case 0:
                return "k" + std::to_string(draw(20));
            case 1:
                return draw(2) == 0;
            case 2:
                return std::int64_t{-1} - static_cast<std::int64_t>(draw(4));
            case 3:
                return static_cast<std::int64_t>(60 + draw(40));
            case 4:
                return static_cast<std::int64_t>(table_.table().length() + 1);
            default:
                return static_cast<std::int64_t>(draw(30));
        }
    }
    void set(const ModelKey& key, std::int64_t value, bool isRemoval) {
        const auto* number = std::get_if<std::int64_t>(&key);
        const Value stored = isRemoval ? Value() : Value::integer(value);
        // Whole floats are the same keys as integers.
        if (number && draw(4) == 0) {
            tableSetByKey(table_.table(), Value::number(static_cast<double>(*number)), stored);
        } else if (!number || !table_.table().trySetItem(*number, stored)) {
            tableSetByKey(table_.table(), valueOf(key), stored);
        }
        if (isRemoval) {
            model_.erase(key);
        } else {
            model_[key] = value;
        }
    }
    std::int64_t border() const {
        std::int64_t length = 0;
        while (model_.contains(length + 1)) ++length;
        return length;
    }
    void compare() {
        ASSERT_EQ(static_cast<std::int64_t>(table_.table().length()), border());
        EntryIterator iterator(table_);
        Value key;
        Value value;
        for (const auto& [wanted, stored] : model_) {
            ASSERT_TRUE(iterator.nextPair(key, value));
            ASSERT_TRUE(valuesEqual(key, valueOf(wanted))) << key.toString();
            ASSERT_EQ(value.integerValue(), stored);
            ASSERT_EQ(table_.table().get(key).integerValue(), stored);
        }
        ASSERT_FALSE(iterator.nextPair(key, value));
        for (std::int64_t absent = -6; absent < 110; ++absent)
            if (!model_.contains(absent)) {
                ASSERT_TRUE(table_.table().get(Value::integer(absent)).isNil()) << absent;
            }
    }

    std::mt19937 generator_{GetParam()};
    ObjectList list_;
    Value table_{new Table(list_)};
    Model model_;
};

TEST_P(LuaTableModel, HoldsWhatASortedMapHolds) {
    for (int round = 0; round < 400; ++round) {
        for (std::size_t changes = draw(6); changes > 0; --changes) set(drawKey(), round, draw(3) == 0);
        compare();
        if (HasFatalFailure()) FAIL() << "round " << round;
        if (draw(150) == 0) {
            table_.table().clear();
            model_.clear();
        }
    }
}

TEST_P(LuaTableModel, WalksOnWhileEntriesGo) {
    for (int i = 0; i < 60; ++i) set(drawKey(), i, false);
    EntryIterator iterator(table_);
    const Model before = model_;
    Value key;
    Value value;
    while (iterator.nextPair(key, value)) {
        const auto victim = std::next(before.begin(), static_cast<std::ptrdiff_t>(draw(before.size())));
        set(victim->first, 0, true);
        ASSERT_FALSE(value.isNil());
    }
    compare();
}

INSTANTIATE_TEST_SUITE_P(Seeds, LuaTableModel, testing::Range(0u, 12u));

TEST(LuaTable, ArrayPartGrowsToNearKeysOnly) {
    ObjectList list;
    const Value table(new Table(list));
    Table& t = table.table();
    t.set(100, Value::integer(1));
    EXPECT_EQ(t.array().size(), 0u);
    t.set(64, Value::integer(1));
    EXPECT_EQ(t.array().size(), 64u);
    t.set(72, Value::integer(1));
    EXPECT_EQ(t.array().size(), 72u);
    t.set(81, Value::integer(1));
    EXPECT_EQ(t.array().size(), 72u);
    // Growing past a key takes it out of the entries, and what follows directly too.
    for (int i = 73; i <= 80; ++i) t.set(i, Value::integer(i));
    EXPECT_EQ(t.array().size(), 81u);
    EXPECT_EQ(t.find(std::int64_t{81})->integerValue(), 1);
    EXPECT_EQ(t.find(std::int64_t{100})->integerValue(), 1);
    EXPECT_EQ(t.length(), 0u);
}

TEST(LuaTable, RefusesWhatIsNoKeyAndLosesNothing) {
    ObjectList list;
    const Value table(new Table(list));
    tableSetByKey(table.table(), Value::text("kept"), Value::integer(1));
    for (const Value& key : {Value(), Value::number(0.5), table, Value::number(1.0 / 0.0)})
        EXPECT_THROW(tableSetByKey(table.table(), key, Value::integer(2)), std::runtime_error);
    EXPECT_TRUE(table.table().get(Value()).isNil());
    EXPECT_TRUE(table.table().get(table).isNil());
    EXPECT_EQ(table.table().get(Value::text("kept")).integerValue(), 1);
    EXPECT_EQ(table.table().entryCount(), 1u);
}

}  // namespace
}  // namespace vesper::lua
