// SPDX-License-Identifier: BSD-2-Clause
// Codec speed on the sample messages, each figure beside its floor measured
// in the same run. A floor makes the same platform allocations and releases
// in the same order as the codec (recorded once per message by the bench
// platform) plus one copy of the message, and does nothing else: the ratio
// says how much work the codec adds to the allocator calls it cannot avoid.
// The +calls floor also makes the decode's memcpy_s and list-service calls.
// Times are CPU times of the running thread; absolute figures on a shared
// machine mean little, ratios from one run do.
//
//   ldpcodec_bench [--samples=FILE] [--by-type] [benchmark flags]
// --by-type makes one row per message type, over all its messages in turn.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "bench_platform.hpp"
#include "ldp_codec.h"
#include "samples.hpp"

namespace {

// Encode needs a fresh record per message (LDP_Encode consumes it), so the
// encode figures time batches of this many messages decoded beforehand.
constexpr int kBatch = 32;

// One message with the platform calls of its decode and encode.
struct message {
    std::vector<uint8_t> bytes;
    benchplat::sequence decode_seq; // LDP_Decode + LDP_FreeMessage
    benchplat::sequence decode_mem; // its allocations and releases alone
    benchplat::sequence encode_seq; // LDP_Encode + LDP_MemFreeCallBack, allocations and releases
    bool encodes = false;
    uint32_t preparse_allocs = 0;
};

// What one row of the table measures: one message, or with --by-type every
// message of one type, taken in turn (the figures are then means per message).
struct sample {
    std::string name; // type name and its rank among the samples of that type, or the type name
    uint16_t type = 0;
    std::vector<message> msgs;
    bool encodes = true;    // every message encodes
    size_t max_events = 0;  // of any message's decode or encode sequence
};

// The next message of a sample, in turn.
inline size_t next(size_t i, const sample &s) { return i + 1 == s.msgs.size() ? 0 : i + 1; }

std::vector<sample> g_samples;

using pre_parse_fn = uint32_t (*)(const uint8_t *);

pre_parse_fn pre_parse_of(uint16_t type)
{
    switch (type) {
    case LDP_MSG_NOTIFICATION: return LDP_PreParseNotifMsg;
    case LDP_MSG_HELLO: return LDP_PreParseHelloMsg;
    case LDP_MSG_INIT: return LDP_PreParseInitMsg;
    case LDP_MSG_KEEPALIVE: return LDP_PreParseKeepAliveMsg;
    case LDP_MSG_CAPABILITY: return LDP_PreParseCapabilityMsg;
    case LDP_MSG_ADDRESS: return LDP_PreParseAddrMsg;
    case LDP_MSG_ADDRESS_WITHDRAW: return LDP_PreParseAddrWithdrawMsg;
    case LDP_MSG_LABEL_MAPPING: return LDP_PreParseMappingMsg;
    case LDP_MSG_LABEL_REQUEST: return LDP_PreParseRequestMsg;
    case LDP_MSG_LABEL_WITHDRAW: return LDP_PreParseWithdrawMsg;
    case LDP_MSG_LABEL_RELEASE: return LDP_PreParseReleaseMsg;
    case LDP_MSG_LABEL_ABORT_REQUEST: return LDP_PreParseReqAbortMsg;
    default: return nullptr;
    }
}

uint16_t load16(const uint8_t *p) { return uint16_t(p[0] << 8 | p[1]); }

message record_message(std::vector<uint8_t> bytes, uint16_t type)
{
    message m;
    m.bytes = std::move(bytes);
    uint32_t t = 0;
    void *rec = nullptr;
    benchplat::track(true);
    benchplat::start();
    (void)pre_parse_of(type)(m.bytes.data());
    m.preparse_allocs = benchplat::take().allocs();
    benchplat::start();
    (void)LDP_Decode(m.bytes.data(), &t, &rec, uint32_t(m.bytes.size()), 0);
    LDP_FreeMessage(rec);
    m.decode_seq = benchplat::take();
    m.decode_mem = m.decode_seq.memory_only();
    (void)LDP_Decode(m.bytes.data(), &t, &rec, uint32_t(m.bytes.size()), 0);
    uint8_t *buf = nullptr;
    benchplat::start();
    m.encodes = LDP_Encode(&buf, t, rec, 0) == LDP_OK;
    LDP_MemFreeCallBack(buf);
    m.encode_seq = benchplat::take().memory_only();
    benchplat::track(false);
    return m;
}

// The samples with the platform calls of their decode and encode; by_type
// gathers all messages of a type into one sample.
void load_samples(const std::string &path, bool by_type)
{
    std::map<uint16_t, size_t> row_of_type;
    for (benchsamples::message &m : benchsamples::load(path)) {
        size_t row = g_samples.size();
        if (by_type) {
            const auto [it, fresh] = row_of_type.try_emplace(m.type, row);
            row = it->second;
            if (fresh) {
                g_samples.push_back({benchsamples::type_name(m.type), m.type, {}, true, 0});
            }
        } else {
            g_samples.push_back({m.name, m.type, {}, true, 0});
        }
        sample &s = g_samples[row];
        s.msgs.push_back(record_message(std::move(m.bytes), m.type));
        const message &added = s.msgs.back();
        s.encodes = s.encodes && added.encodes;
        s.max_events = std::max({s.max_events, added.decode_seq.events.size(), added.encode_seq.events.size()});
    }
}


void copy_message(const message &m)
{
    alignas(16) static thread_local uint8_t scratch[65536 + 4];
    std::memcpy(scratch, m.bytes.data(), m.bytes.size());
    benchmark::DoNotOptimize(scratch);
    benchmark::ClobberMemory();
}

void decode(benchmark::State &state, const sample *s)
{
    size_t i = 0;
    for (auto _ : state) {
        const message &m = s->msgs[i];
        uint32_t type;
        void *rec;
        if (LDP_Decode(m.bytes.data(), &type, &rec, uint32_t(m.bytes.size()), 0) != LDP_OK) {
            state.SkipWithError("decode failed");
            break;
        }
        benchmark::DoNotOptimize(rec);
        LDP_FreeMessage(rec);
        i = next(i, *s);
    }
}

template <bool Calls>
void decode_floor(benchmark::State &state, const sample *s)
{
    std::vector<void *> blocks(s->max_events + 1);
    size_t i = 0;
    for (auto _ : state) {
        const message &m = s->msgs[i];
        copy_message(m);
        benchplat::replay<Calls>(Calls ? m.decode_seq : m.decode_mem, blocks.data(), nullptr);
        benchmark::DoNotOptimize(blocks);
        i = next(i, *s);
    }
}

using bench_clock = std::chrono::steady_clock;

// CPU time of the calling thread: other programs on a shared machine take
// wall-clock time from a run, not CPU time.
double thread_cpu_seconds()
{
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return double(ts.tv_sec) + double(ts.tv_nsec) * 1e-9;
}

void encode(benchmark::State &state, const sample *s)
{
    void *recs[kBatch];
    size_t i = 0;
    for (auto _ : state) {
        for (void *&rec : recs) {
            const message &m = s->msgs[i];
            uint32_t type;
            (void)LDP_Decode(m.bytes.data(), &type, &rec, uint32_t(m.bytes.size()), 0);
            i = next(i, *s);
        }
        const double t0 = thread_cpu_seconds();
        for (void *rec : recs) {
            uint8_t *buf;
            if (LDP_Encode(&buf, s->type, rec, 0) != LDP_OK) {
                state.SkipWithError("encode failed");
                return;
            }
            benchmark::DoNotOptimize(buf);
            LDP_MemFreeCallBack(buf);
        }
        state.SetIterationTime(thread_cpu_seconds() - t0);
    }
}

void encode_floor(benchmark::State &state, const sample *s)
{
    std::vector<std::vector<void *>> earlier(kBatch);
    std::vector<void *> blocks(s->max_events + 1);
    size_t i = 0;
    for (auto _ : state) {
        // The blocks each record owned, made beforehand as the decodes made them.
        const size_t first = i;
        for (std::vector<void *> &blocks_of : earlier) {
            const benchplat::sequence &seq = s->msgs[i].encode_seq;
            blocks_of.resize(seq.earlier_sizes.size());
            for (size_t b = 0; b < blocks_of.size(); ++b) {
                blocks_of[b] = PLAT_SimpleAlloc_F(0, seq.earlier_sizes[b], "bench", __LINE__);
            }
            i = next(i, *s);
        }
        i = first;
        const double t0 = thread_cpu_seconds();
        for (const std::vector<void *> &blocks_of : earlier) {
            const message &m = s->msgs[i];
            benchplat::replay<false>(m.encode_seq, blocks.data(), blocks_of.data());
            benchmark::DoNotOptimize(blocks);
            copy_message(m);
            i = next(i, *s);
        }
        state.SetIterationTime(thread_cpu_seconds() - t0);
    }
}

void pre_parse(benchmark::State &state, const sample *s)
{
    const pre_parse_fn fn = pre_parse_of(s->type);
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(fn(s->msgs[i].bytes.data()));
        i = next(i, *s);
    }
}

// The least a walk can do: step over every TLV header of the message.
void bare_walk(benchmark::State &state, const sample *s)
{
    size_t i = 0;
    for (auto _ : state) {
        const uint8_t *msg = s->msgs[i].bytes.data();
        i = next(i, *s);
        benchmark::DoNotOptimize(msg);
        const uint32_t len = load16(msg + 2);
        uint32_t pos = 4;
        uint32_t acc = 0;
        while (pos + 4 <= len) {
            acc += load16(msg + pos + 4) & 0x3FFFu;
            pos += 4u + load16(msg + pos + 6);
        }
        benchmark::DoNotOptimize(acc + pos);
    }
}

void register_all()
{
    for (const sample &s : g_samples) {
        benchmark::RegisterBenchmark(("decode/" + s.name).c_str(), decode, &s);
        benchmark::RegisterBenchmark(("decode_floor/" + s.name).c_str(), decode_floor<false>, &s);
        benchmark::RegisterBenchmark(("decode_calls/" + s.name).c_str(), decode_floor<true>, &s);
        if (s.encodes) {
            benchmark::RegisterBenchmark(("encode/" + s.name).c_str(), encode, &s)->UseManualTime();
            benchmark::RegisterBenchmark(("encode_floor/" + s.name).c_str(), encode_floor, &s)->UseManualTime();
        }
        benchmark::RegisterBenchmark(("pre_parse/" + s.name).c_str(), pre_parse, &s);
        benchmark::RegisterBenchmark(("bare_walk/" + s.name).c_str(), bare_walk, &s);
    }
}

// Thread scaling: the codec keeps no state and takes no lock, so a message
// should cost each of two threads the same CPU time as it costs one thread
// alone. CPU time per message is the figure to read on a shared machine;
// messages per second of wall-clock time are printed too, but depend on
// whether two cores are free. Each thread decodes the same number of
// messages; best of three runs.
struct thread_figures {
    double cpu_ns = 0;      // CPU time per message, averaged over the threads
    double per_second = 0;  // messages per second of wall-clock time, all threads
};

thread_figures decode_on_threads(const sample &s, int threads)
{
    constexpr int kPerThread = 200000;
    thread_figures best{1e30, 0};
    for (int run = 0; run < 3; ++run) {
        std::vector<double> cpu(size_t(threads), 0);
        const auto t0 = bench_clock::now();
        std::vector<std::thread> pool;
        for (int t = 0; t < threads; ++t) {
            pool.emplace_back([&s, &cpu, t] {
                const double c0 = thread_cpu_seconds();
                size_t m = 0;
                for (int i = 0; i < kPerThread; ++i) {
                    const std::vector<uint8_t> &bytes = s.msgs[m].bytes;
                    uint32_t type;
                    void *rec;
                    (void)LDP_Decode(bytes.data(), &type, &rec, uint32_t(bytes.size()), 0);
                    benchmark::DoNotOptimize(rec);
                    LDP_FreeMessage(rec);
                    m = next(m, s);
                }
                cpu[size_t(t)] = thread_cpu_seconds() - c0;
            });
        }
        for (std::thread &t : pool) {
            t.join();
        }
        const double wall = std::chrono::duration<double>(bench_clock::now() - t0).count();
        double cpu_sum = 0;
        for (double c : cpu) {
            cpu_sum += c;
        }
        best.cpu_ns = std::min(best.cpu_ns, cpu_sum * 1e9 / (double(kPerThread) * threads));
        best.per_second = std::max(best.per_second, double(kPerThread) * threads / wall);
    }
    return best;
}

void print_thread_scaling()
{
    for (const uint16_t type : {uint16_t(LDP_MSG_KEEPALIVE), uint16_t(LDP_MSG_LABEL_MAPPING)}) {
        for (const sample &s : g_samples) {
            if (s.type == type) {
                const char *name = s.name.c_str();
                const thread_figures one = decode_on_threads(s, 1);
                const thread_figures two = decode_on_threads(s, 2);
                std::printf("decode %s: CPU ns per message %.1f on 1 thread, %.1f on each of 2 (ratio %.2f);"
                            " wall-clock %.1f M msg/s on 1, %.1f M on 2 (x%.2f)\n",
                            name, one.cpu_ns, two.cpu_ns, two.cpu_ns / one.cpu_ns, one.per_second / 1e6,
                            two.per_second / 1e6, two.per_second / one.per_second);
                break; // the first sample of the type
            }
        }
    }
}

// Collects every run while the console reporter prints, then prints the
// figures side by side.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &r : runs) {
            if (r.run_type != Run::RT_Iteration || r.error_occurred) {
                continue;
            }
            const std::string name = r.run_name.function_name;
            // Manual times (encode) are thread CPU time already, per batch.
            double ns = r.GetAdjustedCPUTime();
            if (name.rfind("encode", 0) == 0) {
                ns = r.GetAdjustedRealTime() / kBatch;
            }
            ns_[name] = ns;
        }
    }

    void print_table() const
    {
        std::printf("\nCPU ns per message; ratio = codec / floor (same run)\n");
        std::printf("%-20s %7s %7s %5s %7s %5s  %7s %7s %5s  %6s  %7s %7s %5s\n", "message", "decode", "floor",
                    "ratio", "+calls", "ratio", "encode", "floor", "ratio", "a/c/l/p", "pre-p", "walk", "ratio");
        for (const sample &s : g_samples) {
            if (ns_.count("decode/" + s.name) == 0) {
                continue; // filtered out of this run
            }
            std::printf("%-20s", s.name.c_str());
            print_pair("decode/", "decode_floor/", s.name);
            print_ratio("decode/", "decode_calls/", s.name);
            std::printf(" ");
            print_pair("encode/", "encode_floor/", s.name);
            print_counts(s);
            print_pair("pre_parse/", "bare_walk/", s.name);
            std::printf("\n");
        }
        std::printf("+calls: the floor plus the decode's memcpy_s calls (same counts and rooms) and list calls\n");
        std::printf("a/c/l/p: allocations, memcpy_s calls and list calls of one decode, allocations of its"
                    " pre-parse (means when a row has several messages)\n");
    }

private:
    static void print_counts(const sample &s)
    {
        double a = 0;
        double c = 0;
        double l = 0;
        double p = 0;
        for (const message &m : s.msgs) {
            a += m.decode_seq.allocs();
            c += m.decode_seq.copies();
            l += m.decode_seq.list_calls();
            p += m.preparse_allocs;
        }
        const double n = double(s.msgs.size());
        if (s.msgs.size() == 1) {
            std::printf("  %.0f/%.0f/%.0f/%.0f", a, c, l, p);
        } else {
            std::printf("  %.1f/%.1f/%.1f/%.0f", a / n, c / n, l / n, p / n);
        }
    }

    void print_pair(const std::string &what, const std::string &floor, const std::string &name) const
    {
        const auto a = ns_.find(what + name);
        const auto b = ns_.find(floor + name);
        if (a == ns_.end() || b == ns_.end() || b->second <= 0) {
            std::printf(" %7s %7s %5s", "-", "-", "-");
            return;
        }
        std::printf(" %7.1f %7.1f %5.2f", a->second, b->second, a->second / b->second);
    }

    // The floor's figure and the ratio to it, the codec's own figure being
    // printed already.
    void print_ratio(const std::string &what, const std::string &floor, const std::string &name) const
    {
        const auto a = ns_.find(what + name);
        const auto b = ns_.find(floor + name);
        if (a == ns_.end() || b == ns_.end() || b->second <= 0) {
            std::printf(" %7s %5s", "-", "-");
            return;
        }
        std::printf(" %7.1f %5.2f", b->second, a->second / b->second);
    }

    std::map<std::string, double> ns_;
};

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    std::string samples = LDP_BENCH_SAMPLES;
    bool by_type = false;
    for (int i = 1; i < argc; ++i) {
        if (std::strncmp(argv[i], "--samples=", 10) == 0) {
            samples = argv[i] + 10;
        } else if (std::strcmp(argv[i], "--by-type") == 0) {
            by_type = true;
        }
    }
    load_samples(samples, by_type);
    if (g_samples.empty()) {
        std::fprintf(stderr, "no decodable message in %s\n", samples.c_str());
        return 1;
    }
    register_all();
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.print_table();
    print_thread_scaling();
    benchmark::Shutdown();
    return 0;
}
