// Writes each message of a hex sample file (one per line, '#' comments) as a
// binary file into a corpus folder, so the fuzzer starts from real messages.
#include <cctype>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

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
        line = line.substr(0, line.find('#'));
        std::vector<unsigned char> msg;
        int hi = -1;
        for (unsigned char c : line) {
            if (!std::isxdigit(c)) {
                continue;
            }
            const int v = std::isdigit(c) ? c - '0' : std::tolower(c) - 'a' + 10;
            if (hi < 0) {
                hi = v;
            } else {
                msg.push_back(static_cast<unsigned char>(hi << 4 | v));
                hi = -1;
            }
        }
        if (msg.empty()) {
            continue;
        }
        const std::string path = std::string(argv[2]) + "/sample-" + std::to_string(++n);
        std::ofstream out(path, std::ios::binary);
        out.write(reinterpret_cast<const char *>(msg.data()), std::streamsize(msg.size()));
    }
    std::printf("hex_seeds: %u seed messages\n", n);
    return 0;
}
