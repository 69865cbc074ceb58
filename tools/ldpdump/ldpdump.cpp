// ldpdump: decode LDP messages given as hex and print what the codec makes of
// them. Each message starts at its message header (no PDU header).
//
//   ldpdump 0201000400000001 ...      messages on the command line
//   ldpdump -f FILE                   one message per line; '#' starts a comment
//   --hexdump, --log N, --blackbox N  tracing options, before the messages
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "hex_text.hpp"
#include "ldp_codec.h"
#include "print.hpp"
#include "trace.hpp"

namespace {

void usage(std::FILE *out)
{
    std::fputs("usage: ldpdump [OPTIONS] HEX [HEX...]\n"
               "       ldpdump [OPTIONS] -f FILE    (one message per line, '#' comments)\n"
               "Decodes each LDP message (starting at its message header) and prints\n"
               "its type, the result code and the decoded record.\n"
               "  --hexdump     also print each message's bytes in hex\n"
               "  --log N       log every message in a message log of N entries and\n"
               "                print it, with the largest gap between messages, at the end\n"
               "  --blackbox N  keep the last N messages that failed to decode and print\n"
               "                them at the end\n",
               out);
}

struct options {
    bool hexdump = false;
    std::unique_ptr<ldpdump::message_log> log;
    std::unique_ptr<ldpdump::failure_box> box;
};

// A count from 1 to max, or 0 when the text is not one.
unsigned long count_arg(const char *text, unsigned long max)
{
    char *end = nullptr;
    const unsigned long n = std::strtoul(text, &end, 10);
    return (end != text && *end == '\0' && n >= 1 && n <= max) ? n : 0;
}

// Decode and print one message; returns false if the text is not hex.
bool dump_one(options &opt, unsigned index, const std::string &text)
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
    if (opt.hexdump) {
        ldpdump::print_hex(stdout, msg);
    }
    if (rec != nullptr) {
        ldpdump::print_record(stdout, type, rec);
        LDP_FreeMessage(rec);
    }
    if (opt.log) {
        opt.log->record(msg, rc);
    }
    if (opt.box) {
        opt.box->keep(index, msg, rc);
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
    options opt;
    int arg = 1;
    for (; arg < argc && std::strncmp(argv[arg], "--", 2) == 0; ++arg) {
        const bool takes_count = std::strcmp(argv[arg], "--log") == 0 || std::strcmp(argv[arg], "--blackbox") == 0;
        if (std::strcmp(argv[arg], "--hexdump") == 0) {
            opt.hexdump = true;
            continue;
        }
        // A log counts entries in 16 bits; a ring is kept small enough to print.
        const unsigned long n = takes_count && arg + 1 < argc ? count_arg(argv[arg + 1], 65535) : 0;
        if (n == 0) {
            usage(stderr);
            return 2;
        }
        if (argv[arg][2] == 'l') {
            opt.log = std::make_unique<ldpdump::message_log>(uint16_t(n));
        } else {
            opt.box = std::make_unique<ldpdump::failure_box>(uint32_t(n));
            if (!opt.box->ok()) {
                std::fprintf(stderr, "ldpdump: no memory for a blackbox of %lu\n", n);
                return 2;
            }
        }
        ++arg;
    }
    if (arg >= argc) {
        usage(stderr);
        return 2;
    }
    bool all_hex = true;
    unsigned index = 0;
    if (std::strcmp(argv[arg], "-f") == 0) {
        if (argc != arg + 2) {
            usage(stderr);
            return 2;
        }
        const char *path = argv[arg + 1];
        std::FILE *in = std::strcmp(path, "-") == 0 ? stdin : std::fopen(path, "r");
        if (in == nullptr) {
            std::fprintf(stderr, "ldpdump: cannot open %s\n", path);
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
                all_hex = dump_one(opt, ++index, line) && all_hex;
            }
            line.clear();
        } while (c != EOF);
        if (in != stdin) {
            std::fclose(in);
        }
    } else {
        for (int i = arg; i < argc; ++i) {
            all_hex = dump_one(opt, ++index, argv[i]) && all_hex;
        }
    }
    if (opt.log) {
        opt.log->print(stdout);
    }
    if (opt.box) {
        opt.box->print(stdout);
    }
    return all_hex ? 0 : 1;
}
