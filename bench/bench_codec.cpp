// Codec throughput through the entry points on the default platform. Each
// figure is printed beside a baseline measured in the same run (one platform
// allocation and release of the record's size plus an 8-byte copy), since the
// absolute numbers on a shared machine mean little.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <string>

#include "ldp_codec.h"

namespace {

const uint8_t kKeepAlive[] = {0x02, 0x01, 0x00, 0x04, 0x00, 0x00, 0x00, 0x01};

void BM_Baseline(benchmark::State &state)
{
    for (auto _ : state) {
        void *p = PLAT_SimpleAlloc_F(0, sizeof(LDP_KeepAliveMsg), "bench", __LINE__);
        benchmark::DoNotOptimize(p);
        std::memcpy(p, kKeepAlive, 8);
        benchmark::ClobberMemory();
        PLAT_Free_F(p, "bench", __LINE__);
    }
}
BENCHMARK(BM_Baseline);

void BM_KeepAliveDecode(benchmark::State &state)
{
    for (auto _ : state) {
        uint32_t type;
        void *rec;
        if (LDP_Decode(kKeepAlive, &type, &rec, sizeof kKeepAlive, 0) != LDP_OK) {
            state.SkipWithError("decode failed");
            break;
        }
        benchmark::DoNotOptimize(rec);
        LDP_FreeMessage(rec);
    }
}
BENCHMARK(BM_KeepAliveDecode);

void BM_KeepAliveEncode(benchmark::State &state)
{
    for (auto _ : state) {
        // LDP_Encode consumes the record, so each round builds one as an engine would.
        auto *rec = static_cast<LDP_KeepAliveMsg *>(
            PLAT_SimpleAlloc_F(0, sizeof(LDP_KeepAliveMsg), "bench", __LINE__));
        rec->stMsgHeader = {LDP_MSG_KEEPALIVE, 4, 1};
        uint8_t *buf;
        if (LDP_Encode(&buf, LDP_MSG_KEEPALIVE, rec, 0) != LDP_OK) {
            state.SkipWithError("encode failed");
            break;
        }
        benchmark::DoNotOptimize(buf);
        LDP_MemFreeCallBack(buf);
    }
}
BENCHMARK(BM_KeepAliveEncode);

// A typical binding: FEC 10.1.0.0/16, generic label 0x12345, Label Request Message ID.
const uint8_t kMapping[] = {0x04, 0x00, 0x00, 0x1e, 0x00, 0x00, 0x00, 0x07, 0x01, 0x00, 0x00, 0x06,
                            0x02, 0x00, 0x01, 0x10, 0x0a, 0x01, 0x02, 0x00, 0x00, 0x04, 0x00, 0x01,
                            0x23, 0x45, 0x06, 0x00, 0x00, 0x04, 0x00, 0x00, 0x00, 0x2a};

void BM_LabelMappingDecode(benchmark::State &state)
{
    for (auto _ : state) {
        uint32_t type;
        void *rec;
        if (LDP_Decode(kMapping, &type, &rec, sizeof kMapping, 0) != LDP_OK) {
            state.SkipWithError("decode failed");
            break;
        }
        benchmark::DoNotOptimize(rec);
        LDP_FreeMessage(rec);
    }
}
BENCHMARK(BM_LabelMappingDecode);

// Decode, then encode the record back: what a relaying engine does.
void BM_LabelMappingRoundTrip(benchmark::State &state)
{
    for (auto _ : state) {
        uint32_t type;
        void *rec;
        uint8_t *buf;
        if (LDP_Decode(kMapping, &type, &rec, sizeof kMapping, 0) != LDP_OK ||
            LDP_Encode(&buf, type, rec, 0) != LDP_OK) {
            state.SkipWithError("round trip failed");
            break;
        }
        benchmark::DoNotOptimize(buf);
        LDP_MemFreeCallBack(buf);
    }
}
BENCHMARK(BM_LabelMappingRoundTrip);

// Collects ns per iteration of every run while the console reporter prints.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &r : runs) {
            if (r.run_type == Run::RT_Iteration && !r.error_occurred) {
                ns_[r.benchmark_name()] = r.GetAdjustedRealTime();
            }
        }
    }

    void print_ratios() const
    {
        const auto base = ns_.find("BM_Baseline");
        if (base == ns_.end() || base->second <= 0) {
            return;
        }
        std::printf("\n%-24s %12s %12s %8s\n", "per message", "ns", "baseline ns", "ratio");
        for (const auto &[name, ns] : ns_) {
            if (name != "BM_Baseline") {
                std::printf("%-24s %12.1f %12.1f %8.2f\n", name.c_str(), ns, base->second,
                            ns / base->second);
            }
        }
    }

private:
    std::map<std::string, double> ns_;
};

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.print_ratios();
    benchmark::Shutdown();
    return 0;
}
