#include "base/file_stream.h"

#include <algorithm>
#include <utility>

namespace kelmora {

std::string streamMode(std::string_view wanted) {
    std::string mode = "r";
    if (wanted.starts_with("w") || wanted.starts_with("a")) mode = wanted.substr(0, 1);
    mode += 'b';
    if (wanted.find('+') != std::string_view::npos) mode += '+';
    return mode;
}

int FileStream::close() {
    std::FILE* stream = std::exchange(stream_, nullptr);
    if (!stream) return 0;
    return process_ ? process_->closeProcess(stream) : std::fclose(stream);
}

void FileStream::turnTo(Direction direction) {
    if (direction_ != direction && direction_ != Direction::None && !process_)
        std::fseek(stream_, 0, SEEK_CUR);
    direction_ = direction;
}

bool FileStream::readLine(std::string& line) {
    turnTo(Direction::Reading);
    int c = std::fgetc(stream_);
    if (c == EOF) return false;
    for (; c != EOF && c != '\n'; c = std::fgetc(stream_)) line += static_cast<char>(c);
    return true;
}

bool FileStream::readAll(std::string& text) {
    return read(static_cast<std::size_t>(-1), text);
}

bool FileStream::read(std::size_t count, std::string& text) {
    turnTo(Direction::Reading);
    const std::size_t before = text.size();
    char block[4096];
    while (count > 0) {
        const std::size_t wanted = std::min(count, sizeof block);
        const std::size_t got = std::fread(block, 1, wanted, stream_);
        text.append(block, got);
        count -= got;
        if (got < wanted) break;
    }
    return text.size() > before;
}

bool FileStream::write(std::string_view text) {
    turnTo(Direction::Writing);
    return std::fwrite(text.data(), 1, text.size(), stream_) == text.size();
}

}  // namespace kelmora
