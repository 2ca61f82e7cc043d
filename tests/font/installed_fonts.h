#pragma once

// Fonts that the system may have; tests that want one skip without it.
namespace kelmora {

constexpr const char* dejaVuSans = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
constexpr const char* nimbusRoman = "/usr/share/fonts/type1/urw-base35/NimbusRoman-Regular.t1";
constexpr const char* nimbusRomanBinary = "/usr/share/fonts/X11/Type1/NimbusRoman-Regular.pfb";

}  // namespace kelmora
