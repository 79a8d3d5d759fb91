// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

// Stands in for the driver of a real line where a test or a hand has a pseudo-terminal: answers the
// calls that those refuse, and lets the peer write marks. It is linked into a test, or preloaded:
//
//   LINE_STAND_IN=FOLDER LD_PRELOAD=.../libserimonde_line_stand_in.so serimonde ...
//
// The file FOLDER/N says what the driver of /dev/pts/N answers from now on, in words: "cts=1 dsr=0
// dcd=0 rng=0" the modem lines, "frame=0 parity=0 brk=0 overrun=0" its counters; where none of the
// four stands the call is refused as before. With "marks=1" what the peer writes is read as it is,
// so FF 00 78 is a damaged "x" and FF FF a byte FF. FOLDER/N.set tells what was switched last, such
// as "rts=0".

#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>

#include <dlfcn.h>
#include <fcntl.h>
#include <linux/serial.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace
{

/// FOLDER/N of a pseudo-terminal's device end; empty for all else.
std::string FileOf(int handle)
{
    const char *folder = std::getenv("LINE_STAND_IN");
    struct stat status = {};
    if (!folder || ::fstat(handle, &status) != 0 || !S_ISCHR(status.st_mode) ||
        major(status.st_rdev) < 136 || major(status.st_rdev) > 143)
        return {};
    return std::string(folder) + '/' + std::to_string(minor(status.st_rdev));
}

/// What the file says, with a blank in front of each word.
std::string WordsOf(int handle)
{
    const std::string name = FileOf(handle);
    const int file = name.empty() ? -1 : ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return {};
    std::array<char, 256> text = {};
    const ssize_t size = ::pread(file, text.data(), text.size() - 1, 0);
    ::close(file);
    return ' ' + std::string(text.data(), size_t(size > 0 ? size : 0));
}

std::optional<int> Value(const std::string &words, const char *key)
{
    const std::string wanted = std::string(" ") + key + '=';
    const size_t place = words.find(wanted);
    if (place == std::string::npos)
        return std::nullopt;
    return std::atoi(words.c_str() + place + wanted.size());
}

bool ReadCounters(const std::string &words, serial_icounter_struct &counters)
{
    const auto frame = Value(words, "frame");
    const auto parity = Value(words, "parity");
    const auto brk = Value(words, "brk");
    const auto overrun = Value(words, "overrun");
    counters = {};
    counters.frame = frame.value_or(0);
    counters.parity = parity.value_or(0);
    counters.brk = brk.value_or(0);
    counters.overrun = overrun.value_or(0);
    return frame || parity || brk || overrun;
}

bool ReadLines(const std::string &words, int &lines)
{
    constexpr std::array<std::pair<const char *, int>, 4> Lines = {
        {{"cts", TIOCM_CTS}, {"dsr", TIOCM_DSR}, {"dcd", TIOCM_CD}, {"rng", TIOCM_RI}}};
    bool known = false;
    lines = 0;
    for (const auto &[key, bit] : Lines) {
        const auto value = Value(words, key);
        known = known || value;
        lines |= value.value_or(0) != 0 ? bit : 0;
    }
    return known;
}

void NoteSwitched(int handle, int bits, bool on)
{
    if (FILE *file = std::fopen((FileOf(handle) + ".set").c_str(), "w")) {
        std::fprintf(file, "%s=%d", (bits & TIOCM_RTS) != 0 ? "rts" : "dtr", on ? 1 : 0);
        std::fclose(file);
    }
}

/// Whether the call was answered.
bool Answer(int handle, unsigned long request, void *argument)
{
    const std::string words = WordsOf(handle);
    int lines = 0;
    switch (request) {
    case TIOCGICOUNT:
        return ReadCounters(words, *static_cast<serial_icounter_struct *>(argument));
    case TIOCMGET:
        return ReadLines(words, *static_cast<int *>(argument));
    case TIOCMBIS:
    case TIOCMBIC:
        if (!ReadLines(words, lines))
            return false;
        NoteSwitched(handle, *static_cast<int *>(argument), request == TIOCMBIS);
        return true;
    default:
        return false;
    }
}

template <typename Function> Function *Next(const char *name)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

/// Takes one of each pair FF FF away, which the system makes of an FF while it marks.
ssize_t Single(int handle, char *bytes, ssize_t count)
{
    static std::array<bool, 1024> halves; // by handle: the byte before was the first of a pair
    bool &half = halves.at(size_t(handle));
    ssize_t kept = 0;
    for (ssize_t i = 0; i < count; ++i) {
        const bool second = half && bytes[i] == '\xFF';
        half = !second && bytes[i] == '\xFF';
        if (!second)
            bytes[kept++] = bytes[i];
    }
    if (kept > 0)
        return kept;
    errno = EAGAIN;
    return -1;
}

} // namespace

extern "C" int ioctl(int handle, unsigned long request, ...) noexcept
{
    std::va_list arguments;
    va_start(arguments, request);
    void *argument = va_arg(arguments, void *);
    va_end(arguments);
    static auto *const next = Next<int(int, unsigned long, ...)>("ioctl");
    return Answer(handle, request, argument) ? 0 : next(handle, request, argument);
}

extern "C" ssize_t read(int handle, void *bytes, size_t most)
{
    static auto *const next = Next<ssize_t(int, void *, size_t)>("read");
    const ssize_t count = next(handle, bytes, most);
    if (count <= 0 || Value(WordsOf(handle), "marks").value_or(0) == 0)
        return count;
    return Single(handle, static_cast<char *>(bytes), count);
}
