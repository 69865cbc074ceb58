// Any byte sequence handed to LDP_Decode gives a documented code, no record
// unless the code says so, and nothing left allocated. Run under the
// sanitizer build, these also prove there is no out-of-bounds read.
#include <algorithm>
#include <random>

#include "support.hpp"

namespace ldptest {
namespace {

using BadInput = CodecTest;

const uint16_t kTypes[] = {0x0001, 0x0100, 0x0200, 0x0201, 0x0202, 0x0300, 0x0301, 0x0400,
                           0x0401, 0x0402, 0x0403, 0x0404, 0x0f00, 0x8201, 0x8100, 0xffff};

void check_outcome(const decoded &d, const bytes &msg)
{
    EXPECT_TRUE(is_documented_code(d.rc)) << d.rc << " for " << to_hex(msg);
    if (d.rc == LDP_OK || d.rc == LDP_STOP_WALK) {
        // LDP_STOP_WALK from a pre-parse comes without a record.
        EXPECT_TRUE(d.rc == LDP_STOP_WALK || d.rec != nullptr);
        LDP_FreeMessage(d.rec);
    } else {
        EXPECT_EQ(d.rec, nullptr) << d.rc << " for " << to_hex(msg);
    }
}

// A message of a chosen type whose body is random TLV-shaped bytes: type
// words with random U/F bits and mostly plausible lengths.
bytes random_message(std::mt19937 &rng)
{
    std::uniform_int_distribution<int> byte(0, 255);
    bytes body;
    const int tlvs = std::uniform_int_distribution<int>(0, 4)(rng);
    for (int i = 0; i < tlvs; ++i) {
        const int len = std::uniform_int_distribution<int>(0, 24)(rng);
        body.push_back(uint8_t(byte(rng)));
        body.push_back(uint8_t(byte(rng)));
        const int claimed = (byte(rng) < 32) ? byte(rng) : len; // sometimes lie
        body.push_back(uint8_t(claimed >> 8));
        body.push_back(uint8_t(claimed));
        for (int j = 0; j < len; ++j) {
            body.push_back(uint8_t(byte(rng)));
        }
    }
    if (byte(rng) < 40) {
        body.resize(body.size() + size_t(std::uniform_int_distribution<int>(1, 3)(rng)), 0x80);
    }
    const uint16_t type = kTypes[std::uniform_int_distribution<size_t>(0, std::size(kTypes) - 1)(rng)];
    uint16_t msg_len = uint16_t(body.size() + 4);
    if (byte(rng) < 24) {
        msg_len = uint16_t(msg_len + std::uniform_int_distribution<int>(-6, 6)(rng));
    }
    // Written in place over a prefix of zeroes (GCC 12 warns falsely on an insert here).
    bytes msg(8 + body.size());
    msg[0] = uint8_t(type >> 8);
    msg[1] = uint8_t(type);
    msg[2] = uint8_t(msg_len >> 8);
    msg[3] = uint8_t(msg_len);
    for (size_t i = 4; i < 8; ++i) {
        msg[i] = uint8_t(byte(rng));
    }
    std::copy(body.begin(), body.end(), msg.begin() + 8);
    return msg;
}

TEST_F(BadInput, RandomMessagesGiveDocumentedCodes)
{
    std::mt19937 rng(20261123);
    for (int i = 0; i < 20000; ++i) {
        const bytes msg = random_message(rng);
        check_outcome(decode(msg), msg);
        ASSERT_EQ(testplat::live_blocks(), 0u) << to_hex(msg);
    }
}

TEST_F(BadInput, RandomBytesGiveDocumentedCodes)
{
    std::mt19937 rng(5036);
    std::uniform_int_distribution<int> byte(0, 255);
    for (int i = 0; i < 20000; ++i) {
        bytes msg(size_t(std::uniform_int_distribution<int>(0, 40)(rng)));
        for (auto &b : msg) {
            b = uint8_t(byte(rng));
        }
        check_outcome(decode(msg), msg);
    }
}

TEST_F(BadInput, EveryTruncationOfAValidMessage)
{
    const bytes full = hex("02 01 00 16 00 00 00 01 81 00 00 02 aa bb c0 01 00 00 bf ff 00 04 01 02 03 04");
    const decoded base = decode(full);
    ASSERT_EQ(base.rc, LDP_OK) << "the base message must be valid";
    LDP_FreeMessage(base.rec);
    // Shorter buffers, and shorter message lengths inside a full buffer.
    for (size_t n = 0; n < full.size(); ++n) {
        const bytes cut(full.begin(), full.begin() + long(n));
        const decoded d = decode(cut);
        EXPECT_EQ(d.rc, LDP_STATUS_BAD_MSG_LEN) << n;
        check_outcome(d, cut);
    }
    for (uint16_t len = 0; len < 0x16; ++len) {
        bytes msg = full;
        msg[3] = uint8_t(len);
        check_outcome(decode(msg), msg);
    }
}

TEST_F(BadInput, EveryAllocationFailureLeavesNothing)
{
    std::mt19937 rng(4036);
    for (int i = 0; i < 2000; ++i) {
        const bytes msg = random_message(rng);
        for (size_t n = 1; n <= 4; ++n) {
            testplat::reset();
            testplat::fail_alloc_at(n);
            const decoded d = decode(msg);
            check_outcome(d, msg);
            if (testplat::alloc_calls() >= n) {
                EXPECT_TRUE(d.rc == LDP_ERR_NO_MEMORY || d.rc == LDP_ERR_PARAM) << to_hex(msg);
            }
            ASSERT_EQ(testplat::live_blocks(), 0u) << to_hex(msg);
        }
    }
}

} // namespace
} // namespace ldptest
