#include <algorithm>
#include <iostream>

#include "tool/commands.h"
#include "tool/document_texts.h"
#include "tool/tool_options.h"
#include "workbench/nearest.h"

namespace kelmora {
namespace {

void printUsage(std::ostream& out) {
    const char* head = "usage: ";
    for (const ToolCommand* command : toolCommands()) {
        std::string line = "vesper " + std::string(command->name) + " " + std::string(command->arguments);
        line.resize(std::max<std::size_t>(line.size() + 2, 40), ' ');
        out << head << line << command->summary << '\n';
        head = "       ";
    }
    out << "Scripts of the guest languages are told by their names (.lua, .rwby), their images by their "
           "first bytes.\n"
           "Exit codes: 0, 1 when a script, a check or a test failed, 2 for wrong use.\n";
}

void showCommand(const ToolCommand& command) {
    std::cout << "usage: vesper " << command.name << ' ' << command.arguments << "\n\n"
              << command.summary << "\n"
              << command.details;
}

bool isCommand(const std::string& word) {
    const auto commands = toolCommands();
    return std::any_of(commands.begin(), commands.end(),
                       [&](const ToolCommand* each) { return each->name == word; });
}

[[noreturn]] void refuseWord(const std::string& word) {
    std::vector<std::string> known;
    for (const ToolCommand* command : toolCommands()) known.emplace_back(command->name);
    for (const WordEntry& entry : wordBook().entries()) {
        known.push_back(entry.word);
        if (!entry.table.empty()) known.push_back(entry.table);
    }
    const std::string near = nearestWord(word, known);
    throw UsageError("nothing is known of " + word + (near.empty() ? "" : "; did you mean " + near + "?"));
}

// What the documents say of a word; of a table, one line for each member.
void showWord(const std::string& word) {
    const WordBook& book = wordBook();
    const std::vector<const WordEntry*> found = book.meant(word);
    if (found.empty()) refuseWord(word);
    if (found.size() > 1 && found[0]->table == word) {
        for (const WordEntry* entry : found) std::cout << entry->forms[0] << '\n';
        return;
    }
    for (const WordEntry* entry : found) {
        if (entry != found.front()) std::cout << "\n----\n\n";
        std::cout << plainText(*entry);
        if (const std::string more = book.more(*entry); !more.empty()) std::cout << '\n' << more;
    }
}

int showHelp(ToolContext&, std::span<const std::string> words) {
    if (words.empty()) {
        printUsage(std::cout);
        return 0;
    }
    if (isCommand(words[0])) {
        showCommand(findCommand(words[0]));
    } else {
        showWord(words[0]);
    }
    return 0;
}

}  // namespace

extern const ToolCommand helpCommand{
    "help", "[COMMAND|WORD]", "show this, or more about a command or a word of the language",
    "A word is a built-in function, a statement, a global, or a module's member, written killImage, "
    "Plush.killImage "
    "or\nPlush[\"killImage\"]. The name of a module alone lists its members.\n",
    showHelp};

}  // namespace kelmora
