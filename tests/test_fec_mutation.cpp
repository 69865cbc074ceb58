// Arbitrary and mutated bytes thrown at the FEC family's validation and
// decoding, in exact-size buffers so ASan sees any overread: only documented
// codes come back, a value the decoder accepts encodes back to the same
// bytes, and nothing is left once the list is released.
#include <random>

#include "fec_support.hpp"

namespace ldptest {
namespace {

// Well-formed values to mutate.
const char *const kSeeds[] = {
    "01",
    "02 00 01 10 0a 01 03 00 01 04 0a 00 00 01",
    "02 00 02 20 20 01 0d b8",
    "03 00 02 10 20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01",
    "06 00 01 04 c0 00 02 01 00 11 01 00 04 00 00 00 2a ff 00 09 00 01 77 05 00 00",
    "80 00 00 04 00 00 00 01",
};

bytes random_value(std::mt19937 &rng)
{
    // Short values with element type bytes drawn mostly from the known set.
    static const uint8_t kTypes[] = {0x01, 0x02, 0x03, 0x06, 0x07, 0x80, 0x81, 0x00, 0xff};
    bytes v(rng() % 40);
    for (size_t i = 0; i < v.size(); ++i) {
        v[i] = (i == 0 || rng() % 5 == 0) ? kTypes[rng() % sizeof kTypes] : uint8_t(rng() % 6 == 0 ? rng() : rng() % 24);
    }
    return v;
}

bytes mutate(std::mt19937 &rng, bytes v)
{
    switch (rng() % 4) {
    case 0: // flip a byte
        if (!v.empty()) {
            v[rng() % v.size()] ^= uint8_t(1u << (rng() % 8));
        }
        break;
    case 1: // cut the tail
        v.resize(v.empty() ? 0 : rng() % v.size());
        break;
    case 2: // grow
        for (uint32_t n = rng() % 6; n > 0; --n) {
            v.push_back(uint8_t(rng()));
        }
        break;
    default: // overwrite one byte
        if (!v.empty()) {
            v[rng() % v.size()] = uint8_t(rng());
        }
        break;
    }
    return v;
}

bool fec_code(uint32_t rc)
{
    return rc == LDP_OK || rc == LDP_ERR_PARAM || rc == LDP_STATUS_BAD_TLV_LEN || rc == LDP_STATUS_MALFORMED_TLV ||
           rc == LDP_STATUS_UNKNOWN_FEC || rc == LDP_STATUS_UNSUPPORTED_AF || rc == LDP_ERR_NO_MEMORY ||
           rc == LDP_STOP_WALK;
}

class FecMutation : public CodecTest {
protected:
    void check(const bytes &value, bool starve)
    {
        const exact v(value);
        const uint32_t pre = LDP_PreParseFECTlv(v.data(), v.size());
        ASSERT_TRUE(fec_code(pre) && pre != LDP_ERR_NO_MEMORY) << to_hex(value) << " -> " << pre;

        const uint32_t mp = LDP_PreParseMpStatusTlv(v.data(), v.size());
        ASSERT_TRUE(mp == LDP_OK || mp == LDP_ERR_PARAM);

        {
            fec_tlv rec;
            if (starve) {
                testplat::fail_allocs_from(1 + value.size() % 4);
            }
            const uint32_t dec = rec.decode(value);
            ASSERT_TRUE(fec_code(dec)) << to_hex(value) << " -> " << dec;
            if (dec == LDP_OK && !starve) {
                EXPECT_EQ(pre, LDP_OK) << "the decoder accepts nothing the pre-parse refuses: " << to_hex(value);
                const written w = run_tlv_encoder(LDP_EncodeFECTlv, &rec.tlv, uint16_t(value.size() + 4));
                EXPECT_EQ(w.rc, LDP_OK) << to_hex(value);
                EXPECT_EQ(to_hex(bytes(w.out.begin() + 4, w.out.end())), to_hex(value));
            }
            LDP_FreeFecElement(&rec.tlv);
            EXPECT_TRUE(rec.list_is_empty_head());
        }
        ASSERT_EQ(testplat::live_blocks(), 0u) << to_hex(value);
    }
};

TEST_F(FecMutation, RandomValues)
{
    std::mt19937 rng(20261123u);
    for (int i = 0; i < 4000; ++i) {
        check(random_value(rng), i % 7 == 0);
        testplat::reset();
    }
}

TEST_F(FecMutation, MutatedSeeds)
{
    std::mt19937 rng(6388u);
    for (const char *seed : kSeeds) {
        bytes v = hex(seed);
        for (int i = 0; i < 600; ++i) {
            v = (i % 10 == 0) ? hex(seed) : mutate(rng, v);
            check(v, i % 9 == 0);
            testplat::reset();
        }
    }
}

TEST_F(FecMutation, RandomOpaqueValues)
{
    std::mt19937 rng(255u);
    for (int i = 0; i < 3000; ++i) {
        bytes v(rng() % 24);
        for (auto &b : v) {
            b = uint8_t(rng() % 3 == 0 ? rng() : rng() % 8);
        }
        const exact e(v);
        const uint32_t pre = LDP_PreDecodeOvElement(e.data(), e.size());
        ASSERT_TRUE(pre == LDP_OK || pre == LDP_STATUS_BAD_TLV_LEN || pre == LDP_STATUS_MALFORMED_TLV);
        uint8_t *out = nullptr;
        uint16_t out_len = 0;
        const uint32_t dec = LDP_DecodeOpaqueValue(e.data(), e.size(), &out, &out_len, kModule);
        EXPECT_EQ(dec == LDP_OK, pre == LDP_OK) << to_hex(v);
        if (dec == LDP_OK) {
            EXPECT_EQ(to_hex(out, out_len), to_hex(v));
            LDP_MemFreeCallBack(out);
        }
        ASSERT_EQ(testplat::live_blocks(), 0u) << to_hex(v);
    }
}

} // namespace
} // namespace ldptest
