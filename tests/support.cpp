// SPDX-License-Identifier: BSD-2-Clause
// Test helpers (see support.hpp).
#include "support.hpp"

#include "hex_text.hpp"

#include <algorithm>
#include <cctype>
#include <cstdio>

namespace ldptest {

bytes hex(std::string_view text)
{
    std::string t(text);
    std::replace(t.begin(), t.end(), '/', ' '); // tests may mark TLV boundaries with '/'
    bytes out;
    EXPECT_TRUE(ldphex::parse(t, out)) << "not hex: " << text;
    return out;
}

std::string to_hex(const uint8_t *p, size_t n)
{
    std::string s;
    char b[4];
    for (size_t i = 0; i < n; ++i) {
        std::snprintf(b, sizeof b, i ? " %02x" : "%02x", p[i]);
        s += b;
    }
    return s;
}

bool is_documented_code(uint32_t rc)
{
    return std::string(LDP_GetResultName(rc)) != "unknown result"; // the names are checked by every vector
}

decoded decode(const bytes &msg, uint32_t buf_len)
{
    // An exact-size heap block, so a read past the message is an ASan error.
    auto buf = std::make_unique<uint8_t[]>(msg.empty() ? 1 : msg.size());
    if (!msg.empty()) {
        std::memcpy(buf.get(), msg.data(), msg.size());
    }
    decoded d;
    d.rec = reinterpret_cast<void *>(uintptr_t(0x1)); // must be overwritten
    d.rc = LDP_Decode(buf.get(), &d.type, &d.rec, buf_len, kModule);
    return d;
}

encoded encode(uint32_t type, void *rec)
{
    encoded e;
    uint8_t *buf = reinterpret_cast<uint8_t *>(uintptr_t(0x1));
    e.rc = LDP_Encode(&buf, type, rec, kModule);
    if (buf != nullptr) {
        e.has_buf = true;
        const auto *hdr = reinterpret_cast<const uint8_t *>(buf);
        const size_t len = (size_t(hdr[2]) << 8 | hdr[3]) + 4;
        e.wire.assign(buf, buf + len);
        EXPECT_EQ(LDP_MemFreeCallBack(buf), 0u);
    }
    return e;
}

void CodecTest::SetUp()
{
    testplat::reset();
    (void)testplat::take_overruns();
    ASSERT_EQ(testplat::live_blocks(), 0u) << "an earlier test leaked";
}

void CodecTest::TearDown()
{
    EXPECT_EQ(testplat::live_blocks(), 0u) << "blocks left allocated";
    EXPECT_EQ(testplat::bad_frees(), 0u) << "frees of unknown pointers";
    EXPECT_EQ(testplat::take_overruns(), 0u) << "bytes written past the end of a block";
    for (const auto &b : testplat::live_block_list()) {
        ADD_FAILURE() << "leaked " << b.size << " bytes from " << b.file;
    }
    testplat::reset();
}

void CodecTest::expect_no_assertions()
{
    for (const auto &a : testplat::assertions()) {
        ADD_FAILURE() << "unexpected assertion " << a.file << ":" << a.line << " " << a.text;
    }
}

void CodecTest::expect_one_assertion(const char *file, const char *text)
{
    const auto &as = testplat::assertions();
    ASSERT_EQ(as.size(), 1u);
    EXPECT_EQ(as[0].file, file);
    if (text != nullptr) {
        EXPECT_EQ(as[0].text, text);
    }
}

} // namespace ldptest
