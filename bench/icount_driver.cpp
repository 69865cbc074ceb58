// SPDX-License-Identifier: BSD-2-Clause
// Instruction-count driver for callgrind: for every sample message it runs
// LDP_Decode + LDP_FreeMessage n1 times and dumps callgrind's counters, then
// n2 times and dumps again. (n2 count - n1 count) / (n2 - n1) is the cost of
// one decode and release, free of start-up and first-call binding costs.
// The same is done for the message's floor: the platform allocations and
// releases of one decode, replayed, plus one copy of the message; and for the
// floor with the decode's memcpy_s and list-service calls replayed as well.
// With --by-type, a row is every message of one type, each decoded once per
// round, n1 and n2 rounds; its name gets the prefix and "/count".
//
//   valgrind --tool=callgrind ldp_icount SAMPLES N1 N2 [--by-type PREFIX]
// Without valgrind the client requests do nothing and the program just runs.
#include <valgrind/callgrind.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "bench_platform.hpp"
#include "ldp_codec.h"
#include "samples.hpp"

namespace {

// The messages one row of the table counts: one sample, or with --by-type
// every message of one type, decoded in turn. The row's name then ends in
// "/count", by which the check divides.
struct group {
    std::string name;
    std::vector<benchsamples::message> msgs;
};

void run(const group &g, long rounds)
{
    for (long i = 0; i < rounds; ++i) {
        for (const benchsamples::message &m : g.msgs) {
            uint32_t type;
            void *rec;
            (void)LDP_Decode(m.bytes.data(), &type, &rec, uint32_t(m.bytes.size()), 0);
            LDP_FreeMessage(rec);
        }
    }
}

// The dump's name must outlive the client request: keep it in a named string.
void dump(const group &g, const char *tag)
{
    const std::string name = g.name + tag;
    CALLGRIND_DUMP_STATS_AT(name.c_str());
}

uint8_t g_scratch[65536 + 4];

// The floor of one message: its decode's allocations and releases, and its
// memcpy_s and list-service calls too when calls is set, plus one copy of
// the message.
void floor_once(const benchsamples::message &m, const benchplat::sequence &seq, std::vector<void *> &blocks,
                bool calls)
{
    std::memcpy(g_scratch, m.bytes.data(), m.bytes.size());
    if (calls) {
        benchplat::replay<true>(seq, blocks.data(), nullptr);
    } else {
        benchplat::replay<false>(seq, blocks.data(), nullptr);
    }
}

void run_floor(const group &g, const std::vector<benchplat::sequence> &seqs, long rounds, bool calls)
{
    std::vector<void *> blocks(4096);
    for (long i = 0; i < rounds; ++i) {
        for (size_t j = 0; j < g.msgs.size(); ++j) {
            floor_once(g.msgs[j], seqs[j], blocks, calls);
        }
    }
}

benchplat::sequence record(const benchsamples::message &m)
{
    benchplat::track(true);
    benchplat::start();
    run(group{"", {m}}, 1);
    benchplat::sequence seq = benchplat::take();
    benchplat::track(false);
    return seq;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 4 && argc != 6) {
        std::fprintf(stderr, "usage: %s SAMPLES N1 N2 [--by-type PREFIX]\n", argv[0]);
        return 2;
    }
    const long n1 = std::atol(argv[2]);
    const long n2 = std::atol(argv[3]);
    const bool by_type = argc == 6 && std::strcmp(argv[4], "--by-type") == 0;
    std::vector<group> groups;
    std::map<uint16_t, size_t> row_of_type;
    for (benchsamples::message &m : benchsamples::load(argv[1])) {
        if (!by_type) {
            groups.push_back({m.name, {m}});
            continue;
        }
        const auto [it, fresh] = row_of_type.try_emplace(m.type, groups.size());
        if (fresh) {
            groups.push_back({std::string(argv[5]) + benchsamples::type_name(m.type), {}});
        }
        groups[it->second].msgs.push_back(std::move(m));
    }
    for (group &g : groups) {
        if (by_type) {
            g.name += "/" + std::to_string(g.msgs.size());
        }
        CALLGRIND_ZERO_STATS;
        run(g, n1);
        dump(g, " n1");
        run(g, n2);
        dump(g, " n2");
        std::vector<benchplat::sequence> seqs;
        std::vector<benchplat::sequence> mems;
        for (const benchsamples::message &m : g.msgs) {
            seqs.push_back(record(m));
            mems.push_back(seqs.back().memory_only());
        }
        CALLGRIND_ZERO_STATS;
        run_floor(g, mems, n1, false);
        dump(g, " f1");
        run_floor(g, mems, n2, false);
        dump(g, " f2");
        run_floor(g, seqs, n1, true);
        dump(g, " b1");
        run_floor(g, seqs, n2, true);
        dump(g, " b2");
    }
    std::printf("%zu rows\n", groups.size());
    return groups.empty() ? 1 : 0;
}
