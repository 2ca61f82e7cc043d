# Writes SOURCE, a C++ unit whose function NAME of host/boot_image.h gives the bytes of IMAGE.
file(READ ${IMAGE} hex HEX)
string(REGEX REPLACE "(..)" "0x\\1," bytes "${hex}")
string(REGEX REPLACE "(0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,)" "\\1\n" bytes "${bytes}")
file(WRITE ${SOURCE} "#include \"host/boot_image.h\"

namespace kelmora {
namespace {

constexpr unsigned char imageBytes[] = {
${bytes}
};

}  // namespace

std::span<const unsigned char> ${NAME}() { return imageBytes; }

}  // namespace kelmora
")
