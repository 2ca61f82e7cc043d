#include "docs/document_steps.h"

#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace kelmora {

namespace fs = std::filesystem;

namespace {

constexpr std::uintmax_t largestPicture = 15 * 1024;

// Half as wide and high, each pixel the mean of four.
vh::png::Image halved(const vh::png::Image& image) {
    vh::png::Image half;
    half.width = image.width / 2;
    half.height = image.height / 2;
    const auto wide = static_cast<std::size_t>(half.width);
    const auto high = static_cast<std::size_t>(half.height);
    const std::size_t row = static_cast<std::size_t>(image.width) * 4;
    half.pixels.resize(wide * high * 4);
    for (std::size_t y = 0; y < high; ++y) {
        for (std::size_t at = 0; at < wide * 4; ++at) {
            const unsigned char* from = image.pixels.data() + y * 2 * row + at / 4 * 8 + at % 4;
            half.pixels[y * wide * 4 + at] =
                static_cast<unsigned char>((from[0] + from[4] + from[row] + from[row + 4] + 2) / 4);
        }
    }
    return half;
}

std::vector<DocumentPiece> readPieces(const std::string& text) {
    std::vector<DocumentPiece> pieces;
    std::istringstream lines(text);
    std::string line;
    std::string end;  // of the block or note that is open
    for (std::size_t number = 1; std::getline(lines, line); ++number) {
        if (!end.empty()) {
            if (line == end)
                end.clear();
            else
                pieces.back().body += line + "\n";
        } else if (line.starts_with("```")) {
            pieces.push_back({DocumentPiece::Kind::Block, line.substr(3), "", number});
            end = "```";
        } else if (line.starts_with("<!-- ")) {
            const bool isWhole = line.ends_with(" -->");
            pieces.push_back(
                {DocumentPiece::Kind::Note, line.substr(5, line.size() - (isWhole ? 9 : 5)), "", number});
            if (!isWhole) end = "-->";
        } else {
            pieces.push_back({DocumentPiece::Kind::Sentence, line, "", number});
        }
    }
    return pieces;
}

std::vector<std::string> quotedNames(const std::string& sentence) {
    std::vector<std::string> names;
    for (std::size_t at = 0; (at = sentence.find('`', at)) != std::string::npos;) {
        const std::size_t end = sentence.find('`', at + 1);
        names.push_back(sentence.substr(at + 1, end - at - 1));
        at = end + 1;
    }
    return names;
}

}  // namespace

void DocumentSteps::follow(const std::string& document, const std::string& game) {
    game_ = game;
    const auto text = readWholeFile(sourceFolder() + "/docs/" + document);
    ASSERT_TRUE(text.has_value());
    pieces_ = readPieces(*text);
    for (next_ = 0; next_ < pieces_.size();) {
        const DocumentPiece& piece = pieces_[next_++];
        SCOPED_TRACE(document + ":" + std::to_string(piece.line));
        if (piece.kind == DocumentPiece::Kind::Sentence)
            heed(piece.head);
        else if (piece.kind == DocumentPiece::Kind::Note)
            look(piece);
        else if (piece.head == "sh")
            type(piece.body);
        else if (piece.head == "text")
            expectOutput(piece.body);
        else if (!lookAlso(piece))
            ADD_FAILURE() << "a block that nothing says what to do with";
        if (HasFatalFailure()) return;
    }
}

void DocumentSteps::expectPacked() const {
    EXPECT_TRUE(fs::exists(pathOf(game_ + (platform_is_windows() ? "-windows.zip" : "-linux.tar.gz"))));
}

std::string DocumentSteps::takeBlock() {
    if (next_ < pieces_.size() && pieces_[next_].kind == DocumentPiece::Kind::Block)
        return pieces_[next_++].body;
    ADD_FAILURE() << "a block should follow";
    return "";
}

void DocumentSteps::heed(const std::string& sentence) {
    if (sentence.starts_with("Write `")) {
        write(quotedNames(sentence).at(0), takeBlock());
    } else if (sentence.starts_with("At the end of `")) {
        const std::string name = quotedNames(sentence).at(0);
        write(name, read(name) + takeBlock());
    } else if (sentence.starts_with("In `") && sentence.ends_with(", replace:")) {
        replaceIn(quotedNames(sentence).at(0));
    } else if (sentence.starts_with("Delete `")) {
        for (const std::string& name : quotedNames(sentence)) EXPECT_TRUE(fs::remove(pathOf(name))) << name;
    }
}

void DocumentSteps::replaceIn(const std::string& name) {
    const std::string from = takeBlock();
    ASSERT_EQ(pieces_.at(next_++).head, "with:");
    const std::string text = read(name);
    const std::size_t at = text.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    EXPECT_EQ(text.find(from, at + 1), std::string::npos) << "it stands there twice: " << from;
    edit(name, from, takeBlock());
}

// The commands of a block, as a shell would do them; a window stays open for two seconds at most.
void DocumentSteps::type(const std::string& commands) {
    std::istringstream lines(commands);
    output_.clear();
    for (std::string command; std::getline(lines, command);) {
        if (command.starts_with("mkdir ")) {
            std::istringstream words(command.substr(6));
            for (std::string name; words >> name;) fs::create_directories(pathOf(name));
            continue;
        }
        ASSERT_TRUE(command.starts_with("vesper ")) << command;
        std::string arguments = command.substr(7);
        if (arguments.starts_with("play ")) arguments += " --headless --frames 60";
        const ShellOutcome outcome = vesper(arguments);
        EXPECT_EQ(outcome.exitCode, 0) << command << "\n" << outcome.text;
        if (arguments.starts_with("check ")) {
            EXPECT_EQ(outcome.text, "");
        }
        output_ += outcome.text;
    }
}

// Each line that the document shows begins one of the output.
void DocumentSteps::expectOutput(const std::string& shown) {
    std::istringstream lines(shown);
    for (std::string line; std::getline(lines, line);)
        EXPECT_NE(("\n" + output_).find("\n" + line), std::string::npos) << line << "\n" << output_;
}

void DocumentSteps::look(const DocumentPiece& note) {
    if (note.head == "played") {
        const ShellOutcome check = vesper("check " + game_);
        EXPECT_EQ(check.text, "");
        EXPECT_EQ(check.exitCode, 0);
        write("seen.txt", note.body);
        const ShellOutcome outcome = vesper("test " + game_ + " seen.txt");
        EXPECT_EQ(outcome.exitCode, 0) << outcome.text;
    } else if (note.head.starts_with("colours ")) {
        expectColours(note.head);
    } else if (note.head.starts_with("shown ")) {
        expectShown(note.head);
    } else if (!lookAlso(note)) {
        ADD_FAILURE() << "unknown note " << note.head;
    }
    ++looks_;
}

void DocumentSteps::expectColours(const std::string& note) {
    std::istringstream words(note);
    std::string word;
    std::string file;
    words >> word >> file;
    vh::png::Image image;
    ASSERT_TRUE(vh::png::load_file(pathOf(file).c_str(), image)) << file;
    do {
        std::size_t x = 0;
        std::size_t y = 0;
        int colour[3] = {};
        char comma = 0;
        words >> x >> comma >> y >> colour[0] >> comma >> colour[1] >> comma >> colour[2];
        ASSERT_TRUE(words) << note;
        const std::size_t at = (y * static_cast<std::size_t>(image.width) + x) * 4;
        ASSERT_LT(at, image.pixels.size());
        for (std::size_t channel = 0; channel < 3; ++channel)
            EXPECT_EQ(image.pixels[at + channel], colour[channel]) << file << " " << x << "," << y;
    } while (words >> word && word == ";");
}

void DocumentSteps::expectShown(const std::string& note) {
    std::istringstream words(note);
    std::string word;
    std::string file;
    std::string picture;
    words >> word >> file >> picture;
    vh::png::Image image;
    ASSERT_TRUE(vh::png::load_file(pathOf(file).c_str(), image)) << file;
    comparePicture(picture, image);
}

void DocumentSteps::comparePicture(const std::string& name, const vh::png::Image& whole) const {
    const vh::png::Image seen = halved(whole);
    const std::string path = sourceFolder() + "/docs/" + name;
    if (std::getenv("KELMORA_STORE_PICTURES")) {
        EXPECT_TRUE(vh::png::save_png_rgba8_file(path.c_str(), seen.pixels.data(), seen.width, seen.height));
        return;
    }
    vh::png::Image kept;
    ASSERT_TRUE(vh::png::load_file(path.c_str(), kept)) << path;
    EXPECT_EQ(kept.width, seen.width);
    EXPECT_TRUE(kept.pixels == seen.pixels) << path << " is not what its example shows";
    EXPECT_LT(fs::file_size(path), largestPicture) << path;
}

}  // namespace kelmora
