#pragma once

#include <string_view>

// Reading aloud by a program of the system (spd-say on Linux, SAPI by way of PowerShell on Windows). Nothing
// here waits for it. There is one voice: new words take the place of what is still being said, and "" only
// stops that. `language` is a code such as "de" or "pt-BR"; another text, or "", leaves the speaker its own.
// False where there is no speaker, or where the words before these did not get through. One script thread.
bool vh_speak(std::string_view text, std::string_view language);
