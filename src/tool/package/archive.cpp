#include "tool/package/archive.h"

#include <cstdio>
#include <cstring>
#include <limits>
#include <stdexcept>

#include "base/byte_writer.h"
#include "codec/crc32.h"
#include "codec/deflate.h"

namespace kelmora {
namespace {

constexpr std::size_t tarBlock = 512;
constexpr unsigned tarTime = 946684800;  // 1 January 2000
constexpr std::uint16_t zipDate = 20 << 9 | 1 << 5 | 1;
constexpr std::uint16_t zipVersion = 20;
constexpr std::uint16_t zipUtf8 = 1 << 11;
constexpr std::uint16_t zipDeflated = 8;

struct TarHeader {
    char name[100];
    char mode[8];
    char user[8];
    char group[8];
    char size[12];
    char time[12];
    char sum[8];
    char kind;
    char link[100];
    char magic[6];
    char version[2];
    char userName[32];
    char groupName[32];
    char device[16];
    char prefix[155];
    char rest[12];
};
static_assert(sizeof(TarHeader) == tarBlock);

template <std::size_t size>
void octal(char (&field)[size], std::size_t value) {
    std::snprintf(field, size, "%0*llo", static_cast<int>(size) - 1, static_cast<unsigned long long>(value));
}

// A long name is cut at a slash in two.
void setTarName(TarHeader& header, const std::string& name) {
    std::size_t cut = 0;
    if (name.size() > sizeof header.name) {
        cut = name.find('/', name.size() - sizeof header.name - 1);
        if (cut == std::string::npos || cut == 0 || cut > sizeof header.prefix)
            throw std::runtime_error("the path is too long for an archive: " + name);
        std::memcpy(header.prefix, name.data(), cut);
        ++cut;
    }
    std::memcpy(header.name, name.data() + cut, name.size() - cut);
}

TarHeader tarHeader(const ArchiveFile& file) {
    TarHeader header{};
    setTarName(header, file.name);
    octal(header.mode, file.isProgram ? 0755 : 0644);
    octal(header.user, 0);
    octal(header.group, 0);
    octal(header.size, file.bytes.size());
    octal(header.time, tarTime);
    header.kind = '0';
    std::memcpy(header.magic, "ustar", 6);
    std::memcpy(header.version, "00", 2);
    std::memset(header.sum, ' ', sizeof header.sum);
    unsigned sum = 0;
    for (std::size_t i = 0; i < sizeof header; ++i) sum += reinterpret_cast<const unsigned char*>(&header)[i];
    std::snprintf(header.sum, sizeof header.sum, "%06o", sum);
    return header;
}

std::uint32_t shortSize(std::size_t size) {
    if (size > std::numeric_limits<std::uint32_t>::max())
        throw std::runtime_error("the game is too large for an archive of this kind");
    return static_cast<std::uint32_t>(size);
}

// What both records of a file in a zip have in common.
void zipEntry(ByteWriter& out, const ArchiveFile& file, std::size_t packed) {
    out.u16(zipVersion);
    out.u16(zipUtf8);
    out.u16(zipDeflated);
    out.u16(0);
    out.u16(zipDate);
    out.u32(vh::png::crc32(file.bytes));
    out.u32(shortSize(packed));
    out.u32(shortSize(file.bytes.size()));
    out.u16(static_cast<std::uint16_t>(file.name.size()));
    out.u16(0);
}

}  // namespace

std::vector<unsigned char> makeTarGz(std::span<const ArchiveFile> files) {
    std::vector<unsigned char> tar;
    const auto pad = [&] { tar.resize((tar.size() + tarBlock - 1) / tarBlock * tarBlock); };
    for (const ArchiveFile& file : files) {
        const TarHeader header = tarHeader(file);
        const auto* bytes = reinterpret_cast<const unsigned char*>(&header);
        tar.insert(tar.end(), bytes, bytes + sizeof header);
        tar.insert(tar.end(), file.bytes.begin(), file.bytes.end());
        pad();
    }
    tar.resize(tar.size() + tarBlock * 2);

    ByteWriter out;
    constexpr unsigned char head[] = {0x1f, 0x8b, 8, 0, 0, 0, 0, 0, 0, 3};
    out.bytes(head);
    out.bytes(vh::png::deflate(tar));
    out.u32(vh::png::crc32(tar));
    out.u32(static_cast<std::uint32_t>(tar.size()));
    return std::move(out).take();
}

std::vector<unsigned char> makeZip(std::span<const ArchiveFile> files) {
    ByteWriter out;
    ByteWriter directory;
    for (const ArchiveFile& file : files) {
        if (file.name.size() > 0xFFFF)
            throw std::runtime_error("the path is too long for an archive: " + file.name);
        const std::size_t start = out.size();
        const std::vector<unsigned char> packed = vh::png::deflate(file.bytes);
        out.u32(0x04034b50);
        zipEntry(out, file, packed.size());
        out.text(file.name);
        out.bytes(packed);
        directory.u32(0x02014b50);
        directory.u16(zipVersion);
        zipEntry(directory, file, packed.size());
        directory.u16(0);
        directory.u16(0);
        directory.u16(0);
        directory.u32(0);
        directory.u32(shortSize(start));
        directory.text(file.name);
    }
    if (files.size() > 0xFFFE) throw std::runtime_error("the game has too many files for a zip");
    const std::size_t start = out.size();
    const std::vector<unsigned char> entries = std::move(directory).take();
    out.bytes(entries);
    out.u32(0x06054b50);
    out.u32(0);
    out.u16(static_cast<std::uint16_t>(files.size()));
    out.u16(static_cast<std::uint16_t>(files.size()));
    out.u32(shortSize(entries.size()));
    out.u32(shortSize(start));
    out.u16(0);
    return std::move(out).take();
}

}  // namespace kelmora
