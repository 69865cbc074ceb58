// SPDX-License-Identifier: BSD-2-Clause
// ldpdump: what this library makes of every LDP message in a capture file,
// a live capture or hex text. Options and input selection live here; the
// work is done by the pipeline (pipeline.hpp).
#include <getopt.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

#include "capture.hpp"
#include "hex_text.hpp"
#include "ldp_codec.h"
#include "pipeline.hpp"

namespace {

using namespace ldpdump;

constexpr int exit_usage = 2;

void usage(std::FILE *out)
{
    std::fputs("usage: ldpdump [OPTIONS] CAPTURE             a pcap or pcapng file\n"
               "       ldpdump [OPTIONS] -r FILE|-            a capture file, or one on standard input\n"
               "       ldpdump [OPTIONS] -i IFACE             a live capture (needs the rights to capture)\n"
               "       ldpdump [OPTIONS] -x FILE|-            hex text, one message per line ('#' comments)\n"
               "       ldpdump [OPTIONS] HEX [HEX...]         messages given as hex arguments\n"
               "Each LDP message goes through LDP_Decode; one line per message shows where it\n"
               "came from, its type and id, the result code and the fields that matter.\n"
               "  -v, --verbose       the whole record, every TLV (unknown and dropped ones in hex),\n"
               "                      and where a failed message failed\n"
               "      --json          one JSON object per message per line\n"
               "  -Y, --type TYPE     only messages of this type (name or number; repeat or list a,b)\n"
               "      --roundtrip     encode every record again and report messages that differ\n"
               "      --stats         counts by type and by result at the end\n"
               "      --strict        exit 1 when a message fails to decode or to round-trip\n"
               "      --allow CODE    a result code --strict accepts (name or number; repeat)\n"
               "      --filter EXPR   BPF filter (default for -i: \"port 646\")\n"
               "  -f FILE             the same as -x FILE\n"
               "      --hexdump       each message's bytes in hex (text output)\n"
               "      --log N         log every message in a message log of N entries, print it at the end\n"
               "      --blackbox N    keep the last N failed messages and print them at the end\n"
               "      --version       print the version\n"
               "  -h, --help          this text\n"
               "Exit status: 0, or 1 with --strict after a failure; 2 for bad usage or an unreadable input.\n",
               out);
}

// A count from 1 to max, or 0 when the text is not one.
unsigned long count_arg(const char *text, unsigned long max)
{
    char *end = nullptr;
    const unsigned long n = std::strtoul(text, &end, 10);
    return (end != text && *end == '\0' && n >= 1 && n <= max) ? n : 0;
}

void on_signal(int) { capture::stop(); }

int read_hex(pipeline &p, const char *path)
{
    std::FILE *in = std::strcmp(path, "-") == 0 ? stdin : std::fopen(path, "r");
    if (in == nullptr) {
        std::fprintf(stderr, "ldpdump: cannot open %s: %s\n", path, std::strerror(errno));
        return exit_usage;
    }
    std::string line;
    uint64_t number = 0;
    int c;
    do {
        c = std::fgetc(in);
        if (c != EOF && c != '\n') {
            line.push_back(char(c));
            continue;
        }
        ++number;
        line = ldphex::strip_comment(line);
        if (line.find_first_not_of(" \t\r") != std::string::npos) {
            p.hex_line(number, line);
        }
        line.clear();
    } while (c != EOF);
    if (in != stdin) {
        std::fclose(in);
    }
    return 0;
}

// Progress on stderr for a large file read with stderr on a terminal.
class progress {
public:
    explicit progress(const capture &c) : cap_(c), on_(isatty(2) && c.progress() >= 0) {}
    void tick(uint64_t frame)
    {
        if (!on_ || (frame & 0xFFF) != 0) {
            return;
        }
        const time_t now = std::time(nullptr);
        if (now == last_) {
            return;
        }
        if (last_ == 0) {
            last_ = now; // stay quiet for a file read within a second
            return;
        }
        last_ = now;
        std::fprintf(stderr, "\rldpdump: %3.0f%% read, frame %llu", cap_.progress() * 100.0,
                     static_cast<unsigned long long>(frame));
        shown_ = true;
    }
    ~progress()
    {
        if (shown_) {
            std::fputs("\r\033[K", stderr);
        }
    }

private:
    const capture &cap_;
    bool on_;
    bool shown_ = false;
    time_t last_ = 0;
};

int read_capture(pipeline &p, capture &cap, const std::string &filter)
{
    std::string err;
    if (!filter.empty() && !cap.set_filter(filter, err)) {
        std::fprintf(stderr, "ldpdump: bad filter \"%s\": %s\n", filter.c_str(), err.c_str());
        return exit_usage;
    }
    const int link = cap.link();
    progress prog(cap);
    frame f;
    uint64_t frames = 0;
    int rc;
    while ((rc = cap.next(f, err)) == 1) {
        frames = f.number;
        p.frame(link, f);
        prog.tick(frames);
    }
    if (rc < 0) {
        p.capture_error(frames, err);
    }
    p.finish();
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    enum { opt_json = 256, opt_roundtrip, opt_stats, opt_strict, opt_allow, opt_filter, opt_hexdump, opt_log,
           opt_blackbox, opt_version };
    static const option long_opts[] = {
        {"verbose", no_argument, nullptr, 'v'},     {"json", no_argument, nullptr, opt_json},
        {"type", required_argument, nullptr, 'Y'},  {"roundtrip", no_argument, nullptr, opt_roundtrip},
        {"stats", no_argument, nullptr, opt_stats}, {"strict", no_argument, nullptr, opt_strict},
        {"allow", required_argument, nullptr, opt_allow},
        {"filter", required_argument, nullptr, opt_filter}, {"hex", required_argument, nullptr, 'x'},
        {"hexdump", no_argument, nullptr, opt_hexdump},     {"log", required_argument, nullptr, opt_log},
        {"blackbox", required_argument, nullptr, opt_blackbox}, {"version", no_argument, nullptr, opt_version},
        {"help", no_argument, nullptr, 'h'},        {nullptr, 0, nullptr, 0}};
    options opt;
    std::string read_path, iface, hex_path, filter;
    bool have_filter = false;
    int c;
    while ((c = getopt_long(argc, argv, "hvY:r:i:x:f:", long_opts, nullptr)) != -1) {
        switch (c) {
        case 'h':
            usage(stdout);
            return 0;
        case opt_version:
            std::printf("ldpdump %s\n", LDP_CODEC_VERSION_STRING);
            return 0;
        case 'v':
            opt.verbose = true;
            break;
        case opt_json:
            opt.json = true;
            break;
        case opt_roundtrip:
            opt.roundtrip = true;
            break;
        case opt_stats:
            opt.stats = true;
            break;
        case opt_strict:
            opt.strict = true;
            break;
        case opt_allow: {
            uint32_t code = 0;
            if (!parse_result_code(optarg, code)) {
                std::fprintf(stderr, "ldpdump: --allow %s: not a result code of the library\n", optarg);
                return exit_usage;
            }
            opt.allowed.push_back(code);
            break;
        }
        case opt_hexdump:
            opt.hexdump = true;
            break;
        case opt_filter:
            filter = optarg;
            have_filter = true;
            break;
        case 'Y': {
            std::string list = optarg;
            size_t start = 0;
            while (start <= list.size()) {
                const size_t comma = list.find(',', start);
                const std::string one = list.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
                uint16_t type = 0;
                if (!parse_message_type(one, type)) {
                    std::fprintf(stderr, "ldpdump: -Y %s: names no single message type\n", one.c_str());
                    return exit_usage;
                }
                opt.types.push_back(type);
                if (comma == std::string::npos) {
                    break;
                }
                start = comma + 1;
            }
            break;
        }
        case 'r':
            read_path = optarg;
            break;
        case 'i':
            iface = optarg;
            break;
        case 'x':
        case 'f':
            hex_path = optarg;
            break;
        case opt_log:
        case opt_blackbox: {
            // A log counts entries in 16 bits; a ring is kept small enough to print.
            const unsigned long n = count_arg(optarg, 65535);
            if (n == 0) {
                std::fprintf(stderr, "ldpdump: --%s needs a count from 1 to 65535\n", c == opt_log ? "log" : "blackbox");
                return exit_usage;
            }
            if (c == opt_log) {
                opt.log = std::make_unique<message_log>(uint16_t(n));
            } else {
                opt.box = std::make_unique<failure_box>(uint32_t(n));
                if (!opt.box->ok()) {
                    std::fprintf(stderr, "ldpdump: no memory for a blackbox of %lu\n", n);
                    return exit_usage;
                }
            }
            break;
        }
        default:
            usage(stderr);
            return exit_usage;
        }
    }
    std::vector<std::string> rest(argv + optind, argv + argc);
    // A lone argument naming a file, or that is not hex, is a capture;
    // otherwise arguments are hex messages.
    struct stat st;
    std::vector<uint8_t> probe;
    if (read_path.empty() && iface.empty() && hex_path.empty() && rest.size() == 1 &&
        (stat(rest[0].c_str(), &st) == 0 || !ldphex::parse(rest[0], probe))) {
        read_path = rest[0];
        rest.clear();
    }
    const int sources = !read_path.empty() + !iface.empty() + !hex_path.empty() + !rest.empty();
    if (sources != 1) {
        std::fprintf(stderr, sources == 0 ? "ldpdump: nothing to read\n" : "ldpdump: give one input only\n");
        usage(stderr);
        return exit_usage;
    }
    if (have_filter && (read_path.empty() && iface.empty())) {
        std::fprintf(stderr, "ldpdump: --filter applies to captures only\n");
        return exit_usage;
    }

    struct sigaction sa {};
    sa.sa_handler = on_signal;
    sigaction(SIGINT, &sa, nullptr);
    sigaction(SIGTERM, &sa, nullptr);

    pipeline p(opt);
    int rc = 0;
    if (!hex_path.empty()) {
        rc = read_hex(p, hex_path.c_str());
    } else if (!rest.empty()) {
        uint64_t n = 0;
        for (const std::string &hex : rest) {
            p.hex_line(++n, hex);
        }
    } else {
        std::string err;
        if (!iface.empty()) {
            std::setvbuf(stdout, nullptr, _IOLBF, 0); // a live capture shows each message as it comes
        }
        std::unique_ptr<capture> cap =
            iface.empty() ? capture::open_file(read_path, err) : capture::open_live(iface, err);
        if (!cap) {
            std::fprintf(stderr, "ldpdump: cannot read %s: %s\n", iface.empty() ? read_path.c_str() : iface.c_str(),
                         err.c_str());
            if (iface.empty() && read_path != "-") {
                std::fprintf(stderr, "ldpdump: (hex text is read with -x FILE)\n");
            }
            return exit_usage;
        }
        rc = read_capture(p, *cap, have_filter || iface.empty() ? filter : "port 646");
    }
    if (rc != 0) {
        return rc;
    }
    if (opt.log) {
        opt.log->print(stdout);
    }
    if (opt.box) {
        opt.box->print(stdout);
    }
    if (opt.stats) {
        p.counts().write(stdout, opt.json);
    }
    std::fflush(stdout);
    return opt.strict && p.failed() ? 1 : 0;
}
