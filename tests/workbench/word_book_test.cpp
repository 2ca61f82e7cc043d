#include "workbench/word_book.h"

#include <gtest/gtest.h>

#include "bindings/modules.h"
#include "host/registration.h"
#include "script/table_object.h"
#include "script/vesper_script.h"
#include "support/capture_host.h"
#include "tool/document_texts.h"

namespace kelmora {
namespace {

std::string told(std::string_view words) {
    std::string text;
    for (const WordEntry* entry : wordBook().meant(words)) text += plainText(*entry) + "--\n";
    return text;
}

TEST(WordBook, KnowsEveryFunctionThatTheEngineRegisters) {
    CaptureHost host;
    Runtime runtime(host);
    registerFunctions(runtime);
    runtime.engine.pushVariable("Metal", makeModule("Metal", {metalBindings()}));
    for (const auto& [name, value] : runtime.engine.globals()) {
        EXPECT_TRUE(!value.isFunction() || wordBook().find("", name)) << name;
        if (!value.isTable()) continue;
        for (const Ref<StringObject>& key : value.table().sortedKeys()->keys)
            EXPECT_TRUE(wordBook().find(name, key->text())) << name << ' ' << key->text();
    }
}

TEST(WordBook, SaysWhatTheDocumentsSay) {
    EXPECT_EQ(told("pop"),
              "pop(array)\n\nTakes the last element away and gives it.\n\nFails:\n"
              "  `pop()`: \"pop(array) requires exactly 1 argument\"\n"
              "  `pop({})`: \"pop(array): argument must be an array\"\n"
              "  `pop([])`: \"pop(array): array is empty\"\n\n"
              "    a = [1, 2]\n    print(pop(a), a)            @@ expect: 2\\t[1]\n--\n");
    const std::string clamp = "Vesper[\"clamp\"](num, min, max)\ngives number\n\nheld between the two\n--\n";
    for (const char* words : {"clamp", "Vesper.clamp", "Vesper[\"clamp\"]"}) EXPECT_EQ(told(words), clamp);
    EXPECT_EQ(told("VESPER_KEY_Q"), "VESPER_KEY_Q\n\ntrue while the key is down\n--\n");
    EXPECT_EQ(told("VESPER_PAD_UP"),
              "VESPER_PAD_UP\n\ntrue while the key is down, of all gamepads together\n--\n");
    EXPECT_EQ(told("for").substr(0, 56), "for name = first, last[, step]\nfor name, ... in values\n\n");
    EXPECT_NE(wordBook().more(*wordBook().find("", "break")).find("there is no `continue`"),
              std::string::npos);
    EXPECT_GT(wordBook().meant("string").size(), 10u);
    for (const char* words : {"", "nothing", "Vesper.nothing", "[\"", "."})
        EXPECT_EQ(told(words), "") << words;
    EXPECT_EQ(markdown(*wordBook().find("Plush", "killImage")),
              "```vesper\nPlush[\"killImage\"](image)\n```\nfrees it; one that is gone is no error\n");
}

}  // namespace
}  // namespace kelmora
