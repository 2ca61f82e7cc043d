#pragma once

#include <cstdio>
#include <string>
#include <string_view>

#include "base/host_services.h"

namespace kelmora {

// The C library's mode for what scripts of all languages write: "r", "w" and "a" with an optional "+"; a "b"
// changes nothing, since all files are bytes. Anything else reads.
std::string streamMode(std::string_view wanted);

// An open file, or the pipe of a process, closed with this. Reading and writing want it open.
class FileStream {
public:
    // A process's stream is closed by the host that opened it; null for a plain file.
    FileStream(std::FILE* stream, HostServices* process) : stream_(stream), process_(process) {}
    FileStream(const FileStream&) = delete;
    FileStream& operator=(const FileStream&) = delete;
    ~FileStream() { close(); }

    std::FILE* get() const { return stream_; }
    bool isOpen() const { return stream_ != nullptr; }
    // 0, or a process's exit code.
    int close();

    // Both append, and are false when the stream has nothing more. A line is read without its line feed.
    bool readLine(std::string& line);
    bool readAll(std::string& text);
    // At most so many bytes.
    bool read(std::size_t count, std::string& text);
    [[nodiscard]] bool write(std::string_view text);

private:
    // A stream that reads and writes has to be told when it turns from one to the other.
    enum class Direction { None, Reading, Writing };
    void turnTo(Direction direction);

    std::FILE* stream_;
    HostServices* process_;
    Direction direction_ = Direction::None;
};

}  // namespace kelmora
