#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <set>
#include <sstream>

#include "base/whole_file.h"
#include "host/registration.h"
#include "image/image_registry.h"
#include "script/library/library.h"
#include "script/table_object.h"
#include "support/capture_host.h"
#include "support/places.h"
#include "support/script_run.h"
#include "support/temporary_folder.h"

// Holds docs/language.md, docs/builtins.md and docs/modules.md to what the interpreter does: every example
// runs, every quoted failure is the real one, and no function is missing or made up.
namespace kelmora {
namespace {

using Names = std::set<std::string>;

struct Example {
    std::string source;
    std::size_t line = 0;   // of the document, where the example starts
    bool compiled = false;  // only what is compiled behaves so: not for the direct executor
};

std::string readDocument(const std::string& name) {
    const auto text = readWholeFile(sourceFolder() + "/docs/" + name);
    EXPECT_TRUE(text.has_value()) << name;
    return text.value_or("");
}

void forEachLine(const std::string& text,
                 const std::function<void(const std::string& line, std::size_t number)>& visit) {
    std::istringstream lines(text);
    std::string line;
    for (std::size_t number = 1; std::getline(lines, line); ++number) visit(line, number);
}

// The blocks fenced as ```vesper; ```vesper compiled is one that the direct executor does not run.
std::vector<Example> readExamples(const std::string& document) {
    std::vector<Example> examples;
    bool inside = false;
    forEachLine(document, [&](const std::string& line, std::size_t number) {
        if (inside && line == "```") {
            inside = false;
        } else if (inside) {
            examples.back().source += line + "\n";
        } else if (line.starts_with("```vesper")) {
            inside = true;
            examples.push_back({"", number, line == "```vesper compiled"});
        }
    });
    return examples;
}

// Examples write their files into a folder that goes with them.
class WorkingFolder {
public:
    WorkingFolder() : before_(std::filesystem::current_path()) {
        std::filesystem::current_path(folder_.path());
    }
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;
    ~WorkingFolder() { std::filesystem::current_path(before_); }

private:
    std::filesystem::path before_;
    TemporaryFolder folder_;
};

void runExample(const std::string& document, const Example& example) {
    const std::string place = document + ":" + std::to_string(example.line);
    SCOPED_TRACE(place);
    const ScriptExpectation expected = readScriptExpectation(example.source);
    EXPECT_FALSE(expected.isEmpty()) << "the example expects nothing";
    const WorkingFolder folder;
    const std::string path = "example.vs";
    expectScriptOutcome(expected, runTestScript(example.source, path, ScriptWay::Text), "from text");
    expectScriptOutcome(expected, runTestScript(example.source, path, ScriptWay::Image), "from an image");
    if (!example.compiled)
        expectScriptOutcome(expected, runTestScript(example.source, path, ScriptWay::Direct),
                            "direct executor");
}

TEST(LanguageReference, ExamplesDoWhatTheySay) {
    const std::vector<Example> examples = readExamples(readDocument("language.md"));
    EXPECT_GE(examples.size(), 30u);
    for (const Example& example : examples) runExample("language.md", example);
}

TEST(LanguageReference, ExamplesOfFunctionsDoWhatTheySay) {
    for (const char* document : {"builtins.md", "modules.md"}) {
        for (const Example& example : readExamples(readDocument(document))) runExample(document, example);
    }
}

// Failures stand as: - `call`: "text"
TEST(LanguageReference, QuotedFailuresAreTheRealOnes) {
    std::size_t count = 0;
    const WorkingFolder folder;
    forEachLine(readDocument("builtins.md"), [&](const std::string& line, std::size_t number) {
        const std::size_t split = line.find("`: \"");
        if (!line.starts_with("- `") || split == std::string::npos || !line.ends_with('"')) return;
        const std::string call = line.substr(3, split - 3);
        const std::string text = line.substr(split + 4, line.size() - split - 5);
        std::size_t place = 0;
        const ScriptOutcome outcome = runTestScript(call + "\n", "example.vs", ScriptWay::Text);
        EXPECT_EQ(scriptErrorMessage(outcome.error, place), text) << "builtins.md:" << number;
        ++count;
    });
    EXPECT_GE(count, 60u);
}

// What stands in front of the parameters: `Plush["skew"]` of `Plush["skew"](input, output)`.
std::string nameOfCall(const std::string& call) {
    return call.substr(0, call.find('('));
}

std::string memberName(const std::string& table, const std::string& member) {
    return table + "[\"" + member + "\"]";
}

Names registeredLibrary() {
    Names names;
    for (const auto entries : {coreLibrary(), stateLibrary(), containerLibrary()})
        for (const LibraryEntry& entry : entries) names.insert(entry.name);
    const auto addTable = [&](const std::string& table, std::span<const LibraryEntry> entries) {
        for (const LibraryEntry& entry : entries) names.insert(memberName(table, entry.name));
    };
    addTable("string", stringLibrary());
    addTable("table", tableLibrary());
    addTable("math", mathLibrary());
    addTable("utf8", utf8Library());
    addTable("io", ioLibrary());
    addTable("os", osLibrary());
    return names;
}

TEST(LanguageReference, ListsEachBuiltinOnce) {
    Names listed;
    forEachLine(readDocument("builtins.md"), [&](const std::string& line, std::size_t number) {
        if (!line.starts_with("### `")) return;
        const std::string name = nameOfCall(line.substr(5));
        EXPECT_TRUE(listed.insert(name).second) << name << " stands twice, builtins.md:" << number;
    });
    EXPECT_EQ(listed, registeredLibrary());
}

// Every function that a game finds beside the library, as it would be called. Native functions do not tell
// their parameters, so they stand as `Plush["skew"]`; script functions stand with them.
class HostFunctions {
public:
    HostFunctions() : runtime_(host_) {
        registerFunctions(runtime_);
        runAsGame(runtime_, "");
        for (const auto& [name, value] : runtime_.engine.globals()) addGlobal(name, value);
        while (!livePlushImages.empty()) killPlushImage(*livePlushImages.begin());
    }
    const Names& names() const { return names_; }

private:
    void addGlobal(const std::string& name, const Variable& value) {
        static constexpr const char* modules[] = {"AI",    "Audio", "Floormap", "Font",     "Jade",  "Lua",
                                                  "Metal", "Plush", "Ruby",     "Sailfish", "Vesper"};
        if (value.isFunction()) {
            add(name, value.function());
        } else if (value.isTable() &&
                   std::find(std::begin(modules), std::end(modules), name) != std::end(modules)) {
            for (const Variable& key : value.table().sortedKeys()->keyValues) {
                const Variable* member = value.table().find(TableKey(key.toString()));
                if (member->isFunction()) add(memberName(name, key.toString()), member->function());
            }
        }
    }
    void add(const std::string& name, const ScriptCallable& callable) {
        if (callable.isNative) {
            if (callable.library == nullptr) names_.insert(name);
            return;
        }
        std::string call = name + "(";
        for (const NameId parameter : callable.parameters)
            call += (call.ends_with('(') ? "" : ", ") + nameText(parameter);
        names_.insert(call + ")");
    }

    CaptureHost host_;
    Runtime runtime_;
    Names names_;
};

// Rows of tables stand as: | `Module["member"](arguments)` | result | meaning |
TEST(LanguageReference, ListsEachFunctionOfTheHost) {
    const HostFunctions functions;
    Names listed;
    forEachLine(readDocument("modules.md"), [&](const std::string& line, std::size_t number) {
        if (!line.starts_with("| `")) return;
        const std::string call = line.substr(3, line.find('`', 3) - 3);
        if (call.find('(') == std::string::npos) return;
        const bool isNative = functions.names().contains(nameOfCall(call));
        EXPECT_TRUE(listed.insert(isNative ? nameOfCall(call) : call).second)
            << call << " stands twice, modules.md:" << number;
    });
    EXPECT_EQ(listed, functions.names());
}

}  // namespace
}  // namespace kelmora
