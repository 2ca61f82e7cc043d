#pragma once

#include <string>
#include <vector>

#include "codec/png.h"
#include "support/by_tool.h"

namespace kelmora {

// A piece of the document that asks for something: a sentence that changes files with its blocks, commands
// with the output they show, or a note in a comment.
struct DocumentPiece {
    enum class Kind { Sentence, Block, Note };
    Kind kind = Kind::Sentence;
    std::string head;  // the sentence, the block's language, or the note's first line
    std::string body;
    std::size_t line = 0;
};

// Does what a document of docs/ tells its reader to do, in order and in an empty folder, and looks at what it
// says is seen. Its notes are comments: `played` has the steps of a test, `colours FILE X,Y R,G,B ; ...`
// pixels of a picture that those took, `shown FILE PICTURE` says which picture of docs/ is made from it.
class DocumentSteps : public ByTool {
protected:
    void follow(const std::string& document, const std::string& game);
    std::size_t looks() const { return looks_; }
    // The archive for this system; the other's program need not be there.
    void expectPacked() const;

    // Blocks and notes of a document's own kinds; false where it is none of them.
    virtual bool lookAlso(const DocumentPiece&) { return false; }
    std::string takeBlock();
    // A picture of docs/, half as wide and high as what was seen. KELMORA_STORE_PICTURES=1 stores it: see
    // docs/make-pictures.
    void comparePicture(const std::string& name, const vh::png::Image& seen) const;

private:
    void heed(const std::string& sentence);
    void replaceIn(const std::string& name);
    void type(const std::string& commands);
    void expectOutput(const std::string& shown);
    void look(const DocumentPiece& note);
    void expectColours(const std::string& note);
    void expectShown(const std::string& note);

    std::string game_;
    std::vector<DocumentPiece> pieces_;
    std::size_t next_ = 0;
    std::string output_;
    std::size_t looks_ = 0;
};

}  // namespace kelmora
