// zavrogrl-table-reader: reads one file of tables and writes what it holds to the standard output. It is a
// program of its own, so that a file that crashes it or never ends takes nothing else along.

#include "formats.h"

#include <cstdio>
#include <new>
#include <sys/resource.h>
#include <unistd.h>

namespace {

constexpr rlim_t mostMemory = rlim_t{1} << 30;
constexpr rlim_t mostSeconds = 30; // of the processor

void limit(int resource, rlim_t most) {
    const rlimit both{most, most};
    (void)setrlimit(static_cast<__rlimit_resource>(resource), &both);
}

void limitAll() {
#if !defined(__SANITIZE_ADDRESS__) // the address sanitizer reserves far more than it uses
    limit(RLIMIT_AS, mostMemory);
#endif
    limit(RLIMIT_CPU, mostSeconds);
    limit(RLIMIT_CORE, 0);
}

void put(std::string_view bytes) {
    while (!bytes.empty()) {
        const auto count = write(STDOUT_FILENO, bytes.data(), bytes.size());
        if (count <= 0) _exit(1);
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3 || argv[1][0] == '-') {
        std::fputs("usage: zavrogrl-table-reader FILE [SHEET]\n", stderr);
        return 2;
    }
    limitAll();
    tables::Writer out(put);
    try {
        tables::readFile(argv[1], argc > 2 ? tables::Wanted(argv[2]) : std::nullopt, out);
        return 0;
    } catch (const tables::Unreadable& error) {
        out.refused(error.what());
    } catch (const std::bad_alloc&) {
        out.refused("The file needs more than 1 GB of memory");
    }
    return 1;
}
