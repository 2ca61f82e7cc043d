#pragma once

#include <cstddef>
#include <cstdint>

// What the engine asks of the system it runs on, beside windows, sound and processes.

// A value below 1 returns at once.
void vh_sleep_ms(int milliseconds);

// Facts about the machine, as text with its closing zero. False, with an empty text where there is room, when
// the fact is not to be had or does not fit.
// The directory of the running executable (the file itself, not a link to it), with its last separator.
bool windows_executable_directory(char* buffer, unsigned size);
bool windows_user_name(char* buffer, unsigned size);
// System and architecture, like "Linux x86_64" or "Windows x86".
bool windows_platform_name(char* buffer, unsigned size);
bool windows_version_string(char* buffer, unsigned size);
bool windows_processor_name(char* buffer, unsigned size);
// Where programs keep what is one user's, with its last separator.
bool platform_user_data_directory(char* buffer, unsigned size);
// With its last separator.
bool windows_temp_directory(char* buffer, unsigned size);

// Replaces a file's content as a whole: written beside it, pushed to the disk, then renamed over it. A
// failure on the way leaves the old file as it was.
[[nodiscard]] bool platform_replace_file(const char* path, const void* content, std::size_t size);

bool platform_is_windows();
// A box of the system's with the words, for when there is no window; waits until it is closed. False where
// the system has none.
bool platform_show_message(const char* title, const char* text);
bool platform_stdout_is_terminal();
// Line ends arrive as they were sent.
void platform_read_stdin_as_bytes();
// The lowest address of the calling thread's stack, or 0 if unknown. Slow: ask once a thread.
std::uintptr_t platform_stack_low_address();
// For the calling thread, where its user may: a step above the usual.
void platform_raise_thread_priority();
