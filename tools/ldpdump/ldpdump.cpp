// ldpdump: decode LDP messages given as hex and print what the codec makes of
// them. Each message starts at its message header (no PDU header).
//
//   ldpdump 0201000400000001 ...      messages on the command line
//   ldpdump -f FILE                   one message per line; '#' starts a comment
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "hex_text.hpp"
#include "ldp_codec.h"
#include "print.hpp"

namespace {

void usage(std::FILE *out)
{
    std::fputs("usage: ldpdump HEX [HEX...]\n"
               "       ldpdump -f FILE    (one message per line, '#' comments)\n"
               "Decodes each LDP message (starting at its message header) and prints\n"
               "its type, the result code and the decoded record.\n",
               out);
}

// Decode and print one message; returns false if the text is not hex.
bool dump_one(unsigned index, const std::string &text)
{
    std::vector<uint8_t> msg;
    if (!ldphex::parse(text, msg)) {
        std::printf("[%u] not a hex message: %s\n", index, text.c_str());
        return false;
    }
    uint32_t type = 0xFFFFFFFFu;
    void *rec = nullptr;
    const uint32_t rc = LDP_Decode(msg.empty() ? reinterpret_cast<const uint8_t *>("") : msg.data(),
                                   &type, &rec, uint32_t(msg.size()), 0);
    // Status codes in decimal as RFC 5036 numbers them; the all-ones code in hex.
    char code[16];
    std::snprintf(code, sizeof code, rc == LDP_STOP_WALK ? "0x%x" : "%u", rc);
    if (type == 0xFFFFFFFFu) {
        const unsigned word = msg.size() >= 2 ? unsigned(msg[0]) << 8 | msg[1] : 0;
        std::printf("[%u] type word 0x%04x (%zu bytes): %s (%s)\n", index, word, msg.size(),
                    ldpdump::result_name(rc), code);
    } else {
        std::printf("[%u] %s (0x%04x): %s (%s)\n", index, ldpdump::message_name(type), type,
                    ldpdump::result_name(rc), code);
    }
    if (rec != nullptr) {
        ldpdump::print_record(stdout, type, rec);
        LDP_FreeMessage(rec);
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2 || std::strcmp(argv[1], "-h") == 0 || std::strcmp(argv[1], "--help") == 0) {
        usage(argc < 2 ? stderr : stdout);
        return argc < 2 ? 2 : 0;
    }
    bool all_hex = true;
    unsigned index = 0;
    if (std::strcmp(argv[1], "-f") == 0) {
        if (argc != 3) {
            usage(stderr);
            return 2;
        }
        std::FILE *in = std::strcmp(argv[2], "-") == 0 ? stdin : std::fopen(argv[2], "r");
        if (in == nullptr) {
            std::fprintf(stderr, "ldpdump: cannot open %s\n", argv[2]);
            return 2;
        }
        std::string line;
        int c;
        do {
            c = std::fgetc(in);
            if (c != EOF && c != '\n') {
                line.push_back(char(c));
                continue;
            }
            line = ldphex::strip_comment(line);
            if (line.find_first_not_of(" \t\r") != std::string::npos) {
                all_hex = dump_one(++index, line) && all_hex;
            }
            line.clear();
        } while (c != EOF);
        if (in != stdin) {
            std::fclose(in);
        }
    } else {
        for (int i = 1; i < argc; ++i) {
            all_hex = dump_one(++index, argv[i]) && all_hex;
        }
    }
    return all_hex ? 0 : 1;
}
