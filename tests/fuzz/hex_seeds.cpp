// SPDX-License-Identifier: BSD-2-Clause
// Writes each message of a hex sample file (one per line, '#' comments) as a
// binary file into a corpus folder, so the fuzzer starts from real messages.
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "hex_text.hpp"

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: hex_seeds SAMPLES.hex CORPUS_DIR\n");
        return 2;
    }
    std::ifstream in(argv[1]);
    if (!in) {
        std::fprintf(stderr, "hex_seeds: cannot read %s\n", argv[1]);
        return 2;
    }
    std::string line;
    unsigned n = 0;
    while (std::getline(in, line)) {
        std::vector<uint8_t> msg;
        if (!ldphex::parse(ldphex::strip_comment(line), msg) || msg.empty()) {
            continue;
        }
        const std::string path = std::string(argv[2]) + "/sample-" + std::to_string(++n);
        std::ofstream out(path, std::ios::binary);
        out.write(reinterpret_cast<const char *>(msg.data()), std::streamsize(msg.size()));
    }
    std::printf("hex_seeds: %u seed messages\n", n);
    return 0;
}
