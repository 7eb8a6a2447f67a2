// Handlers: nothing in here but system calls and memory that is there already.
#include "signal_guard.h"

#include <atomic>
#include <cstdint>
#include <cstring>
#include <initializer_list>

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include "folder_removal.h"

namespace kvo {

namespace {

const char* programName = "";
int messages = -1;       // standard error as it was at the start, whatever it is redirected to
bool onTerminal = false; // there may be a progress bar in the line
pid_t installer = 0;
std::atomic<pid_t> guardedChild{0};
std::atomic_flag ending = ATOMIC_FLAG_INIT;

void say(const char* text, std::size_t length)
{
    while (length > 0) {
        const ssize_t wrote = write(messages, text, length);
        if (wrote <= 0) {
            return;
        }
        text += wrote;
        length -= static_cast<std::size_t>(wrote);
    }
}

void say(const char* text)
{
    say(text, std::strlen(text));
}

// Names may hold what a terminal obeys.
void sayName(const char* name)
{
    for (const char* p = name; *p; ++p) {
        const unsigned char c = static_cast<unsigned char>(*p);
        const bool control = c < 32 || c == 127 || (c >= 0x80 && c < 0xA0 && p > name && p[-1] == '\xC2');
        say(control ? "?" : p, 1);
    }
}

// Reads a text file a piece at a time.
class LineReader
{
public:
    explicit LineReader(const char* path) : file(open(path, O_RDONLY | O_CLOEXEC)) {}
    ~LineReader()
    {
        if (file >= 0) {
            close(file);
        }
    }
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

    // The next line, without its end; what does not fit is cut off. False behind the last one.
    bool next(char* line, std::size_t size)
    {
        std::size_t length = 0;
        for (char c = 0; take(c);) {
            if (c == '\n') {
                line[length] = 0;
                return true;
            }
            if (length + 1 < size) {
                line[length++] = c;
            }
        }
        return false;
    }

private:
    bool take(char& c)
    {
        if (at == filled) {
            const ssize_t got = read(file, buffer, sizeof buffer);
            filled = got > 0 ? static_cast<std::size_t>(got) : 0;
            at = 0;
        }
        if (at == filled) {
            return false;
        }
        c = buffer[at++];
        return true;
    }

    const int file;
    char buffer[4096];
    std::size_t at = 0, filled = 0;
};

std::uintptr_t takeHex(const char*& p)
{
    std::uintptr_t value = 0;
    for (;; ++p) {
        const int digit = *p >= '0' && *p <= '9' ? *p - '0' : *p >= 'a' && *p <= 'f' ? *p - 'a' + 10 : -1;
        if (digit < 0) {
            return value;
        }
        value = 16 * value + static_cast<std::uintptr_t>(digit);
    }
}

// The file that is mapped at an address; null if none is. Lines: "from-to access offset device inode   path".
const char* fileMappedAt(const void* address, char* line, std::size_t size)
{
    LineReader maps("/proc/self/maps");
    while (maps.next(line, size)) {
        const char* p = line;
        const std::uintptr_t from = takeHex(p);
        p += *p == '-';
        const std::uintptr_t to = takeHex(p), wanted = reinterpret_cast<std::uintptr_t>(address);
        if (wanted >= from && wanted < to) {
            return std::strchr(p, '/');
        }
    }
    return nullptr;
}

void endOnce()
{
    while (ending.test_and_set()) {
        pause(); // another thread ends the program
    }
    const pid_t child = guardedChild;
    if (child > 0 && getpid() == installer) {
        kill(child, SIGTERM);
    }
    removeOwnFolders();
}

[[noreturn]] void dieBy(int signal)
{
    struct sigaction plain = {};
    plain.sa_handler = SIG_DFL;
    sigaction(signal, &plain, nullptr);
    sigset_t one;
    sigemptyset(&one);
    sigaddset(&one, signal);
    raise(signal); // waits until it is let through
    pthread_sigmask(SIG_UNBLOCK, &one, nullptr);
    _exit(128 + signal);
}

void onEnd(int signal)
{
    endOnce();
    dieBy(signal);
}

void onBus(int signal, siginfo_t* info, void*)
{
    char line[4400];
    const char* file = info->si_code > 0 ? fileMappedAt(info->si_addr, line, sizeof line) : nullptr;
    endOnce();
    if (!file || getpid() != installer) {
        dieBy(signal);
    }
    say(onTerminal ? "\r\033[K" : "");
    say(programName);
    say(": ");
    sayName(file);
    say(": became shorter while it was read, or cannot be read from its disk\n");
    _exit(1);
}

void handle(int signal, void (*plain)(int), void (*full)(int, siginfo_t*, void*))
{
    struct sigaction old = {}, action = {};
    sigaction(signal, nullptr, &old);
    if (old.sa_handler == SIG_IGN) { // nohup and background jobs
        return;
    }
    sigfillset(&action.sa_mask);
    if (full) {
        action.sa_sigaction = full;
        action.sa_flags = SA_SIGINFO;
    } else {
        action.sa_handler = plain;
    }
    sigaction(signal, &action, nullptr);
}

} // namespace

void installSignalGuard(const char* program)
{
    programName = program;
    installer = getpid();
    messages = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
    onTerminal = messages >= 0 && isatty(messages);
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM, SIGXCPU, SIGXFSZ}) {
        handle(signal, onEnd, nullptr);
    }
    handle(SIGBUS, nullptr, onBus);
}

void guardChild(pid_t child)
{
    guardedChild = child;
}

} // namespace kvo
