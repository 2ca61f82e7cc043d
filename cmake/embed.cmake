# Writes SOURCE, a C++ unit whose function NAME of HEADER, host/boot_image.h unless it is given, gives the bytes of IMAGE.
if(NOT HEADER)
    set(HEADER host/boot_image.h)
endif()
file(READ ${IMAGE} hex HEX)
string(REGEX REPLACE "(..)" "0x\\1," bytes "${hex}")
string(REGEX REPLACE "(0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,)" "\\1\n" bytes "${bytes}")
file(WRITE ${SOURCE} "#include \"${HEADER}\"

namespace kelmora {
namespace {

constexpr unsigned char imageBytes[] = {
${bytes}
};

}  // namespace

std::span<const unsigned char> ${NAME}() { return imageBytes; }

}  // namespace kelmora
")
