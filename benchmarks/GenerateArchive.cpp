// tessel-archive mixed|small|tiny BYTES FILE: writes an mbox archive of about that size.

#include "benchmarks/Workload.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string_view>

int main(int count, char** arguments) {
    if (count != 4) {
        std::fputs("usage: tessel-archive mixed|small|tiny BYTES FILE\n", stderr);
        return 2;
    }
    const std::string_view kind = arguments[1];
    const auto write = kind == "mixed"  ? &Workload::Writer::mixedMessage
                       : kind == "tiny" ? &Workload::Writer::tinyMessage
                                        : &Workload::Writer::smallMessage;
    const long long size = std::atoll(arguments[2]);
    std::ofstream file(arguments[3], std::ios::binary);
    Workload::Writer writer(20'240'102);
    long long written = 0;
    while (written < size) {
        const std::string message =
            "From sender@example.org Tue Jan  2 09:15:30 2024\n" + (writer.*write)() + "\n";
        file << message;
        written += static_cast<long long>(message.size());
    }
    return file.good() ? 0 : 1;
}
