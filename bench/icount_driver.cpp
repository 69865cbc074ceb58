// Instruction-count driver for callgrind: for every sample message it runs
// LDP_Decode + LDP_FreeMessage n1 times and dumps callgrind's counters, then
// n2 times and dumps again. (n2 count - n1 count) / (n2 - n1) is the cost of
// one decode and release, free of start-up and first-call binding costs.
// The same is done for the message's floor: the platform allocations and
// releases of one decode, replayed, plus one copy of the message; and for the
// floor with the decode's memcpy_s and list-service calls replayed as well.
//
//   valgrind --tool=callgrind ldp_icount SAMPLES N1 N2
// Without valgrind the client requests do nothing and the program just runs.
#include <valgrind/callgrind.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "bench_platform.hpp"
#include "ldp_codec.h"
#include "samples.hpp"

namespace {

void run(const benchsamples::message &m, long n)
{
    for (long i = 0; i < n; ++i) {
        uint32_t type;
        void *rec;
        (void)LDP_Decode(m.bytes.data(), &type, &rec, uint32_t(m.bytes.size()), 0);
        LDP_FreeMessage(rec);
    }
}

// The dump's name must outlive the client request: keep it in a named string.
void dump(const benchsamples::message &m, const char *tag)
{
    const std::string name = m.name + tag;
    CALLGRIND_DUMP_STATS_AT(name.c_str());
}

uint8_t g_scratch[4096 + 4];

uint8_t g_dst[4096 + 4];
SLL_Node g_nodes[64];
SLL_List g_list = {{reinterpret_cast<SLL_Node *>(&g_list), 0}, reinterpret_cast<SLL_Node *>(&g_list), 0};
SLL_List g_empty = {{reinterpret_cast<SLL_Node *>(&g_empty), 0}, reinterpret_cast<SLL_Node *>(&g_empty), 0};

// The floor: the decode's allocations and releases, and its memcpy_s and
// list-service calls too when calls is set, plus one copy of the message.
void run_floor(const benchsamples::message &m, const benchplat::sequence &seq, long n, bool calls)
{
    std::vector<void *> blocks(seq.events.size() + 1);
    for (long i = 0; i < n; ++i) {
        std::memcpy(g_scratch, m.bytes.data(), m.bytes.size());
        size_t in = 0;
        size_t out = 0;
        for (const benchplat::event &e : seq.events) {
            switch (e.what) {
            case benchplat::kind::alloc:
                blocks[size_t(e.ref)] = PLAT_SimpleAlloc_F(0, e.size, "floor", 0);
                break;
            case benchplat::kind::release:
                PLAT_Free_F(blocks[size_t(e.ref)], "floor", 0);
                break;
            case benchplat::kind::copy:
                if (calls) {
                    (void)memcpy_s(g_dst, size_t(e.ref), g_scratch, e.size);
                }
                break;
            case benchplat::kind::list_insert:
                if (calls) {
                    SLL_Insert_In_Middle(&g_list, g_list.pTail, &g_nodes[in++ % 64], &g_list.stHead);
                }
                break;
            case benchplat::kind::list_delete:
                if (calls) {
                    SLL_Delete(&g_list, &g_nodes[out++ % 64]);
                }
                break;
            case benchplat::kind::list_free_all:
                if (calls) {
                    SLL_FreeAll(&g_empty, nullptr);
                }
                break;
            }
        }
    }
}

benchplat::sequence record(const benchsamples::message &m)
{
    benchplat::track(true);
    benchplat::start();
    run(m, 1);
    benchplat::sequence seq = benchplat::take();
    benchplat::track(false);
    return seq;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 4) {
        std::fprintf(stderr, "usage: %s SAMPLES N1 N2\n", argv[0]);
        return 2;
    }
    const long n1 = std::atol(argv[2]);
    const long n2 = std::atol(argv[3]);
    const auto messages = benchsamples::load(argv[1]);
    for (const auto &m : messages) {
        CALLGRIND_ZERO_STATS;
        run(m, n1);
        dump(m, " n1");
        run(m, n2);
        dump(m, " n2");
        const benchplat::sequence seq = record(m);
        const benchplat::sequence mem = seq.memory_only();
        CALLGRIND_ZERO_STATS;
        run_floor(m, mem, n1, false);
        dump(m, " f1");
        run_floor(m, mem, n2, false);
        dump(m, " f2");
        run_floor(m, seq, n1, true);
        dump(m, " b1");
        run_floor(m, seq, n2, true);
        dump(m, " b2");
    }
    std::printf("%zu messages\n", messages.size());
    return messages.empty() ? 1 : 0;
}
