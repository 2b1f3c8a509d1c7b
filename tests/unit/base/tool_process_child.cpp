// A child that ends in the way that its first argument names.
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

static void flood(FILE* stream, size_t bytes) {
    const std::string block(64 * 1024, 'x');
    for (size_t done = 0; done < bytes; done += block.size())
        std::fwrite(block.data(), 1, block.size(), stream);
}

static int crash() {
    const rlimit none = {0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    ::signal(SIGSEGV, SIG_DFL);  // a sanitizer may have taken it
    ::raise(SIGSEGV);
    return 0;
}

/// Prints the process id of a child that keeps standard output open, and stays with it or leaves it behind.
static int parent(bool stay) {
    const pid_t child = ::fork();
    if (child == 0 || stay) {
        if (child != 0) {
            std::printf("%d\n", int(child));
            std::fflush(stdout);
        }
        for (;;)
            ::pause();
    }
    std::printf("%d\n", int(child));
    return 0;
}

int main(int argc, char** argv) {
    const std::string mode = argc > 1 ? argv[1] : "";
    if (mode == "exit")
        return std::atoi(argv[2]);
    if (mode == "crash")
        return crash();
    if (mode == "hang" || mode == "leave")
        return parent(mode == "hang");
    if (mode == "flood") {
        flood(stdout, size_t(std::atoi(argv[2])) << 20);
        flood(stderr, size_t(std::atoi(argv[3])) << 20);
        return 0;
    }
    if (mode == "stdin")
        return std::getchar() == EOF ? 0 : 1;
    if (mode == "environment") {
        const char* value = std::getenv(argv[2]);
        std::fputs(value ? value : "(unset)", stdout);
        return 0;
    }
    for (int i = 1; i < argc; ++i)
        std::printf("[%s]", argv[i]);
    std::fputs("told", stderr);
    return 0;
}
