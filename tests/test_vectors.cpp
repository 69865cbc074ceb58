// SPDX-License-Identifier: BSD-2-Clause
// The vector driver: every case of tests/vectors/*.vec goes through the same
// checks, so one line of wire bytes is tested many ways.
#include <algorithm>
#include <set>

#include "vectors.hpp"

namespace ldptest {
namespace {

uint16_t masked_type(const bytes &m) { return m.size() >= 2 ? uint16_t((m[0] << 8 | m[1]) & 0x7FFF) : 0; }

std::vector<std::string> assertion_files()
{
    std::vector<std::string> files;
    for (const auto &a : testplat::assertions()) {
        files.push_back(a.file);
    }
    return files;
}

// A heap block of exactly the message's size, so ASan sees any read past it.
std::unique_ptr<uint8_t[]> exact_copy(const bytes &m)
{
    auto p = std::make_unique<uint8_t[]>(m.size());
    std::memcpy(p.get(), m.data(), m.size());
    return p;
}

bool keeps_record(uint32_t rc) { return rc == LDP_OK || rc == LDP_STOP_WALK; }

class Vectors : public CodecTest, public ::testing::WithParamInterface<vec_case> {
protected:
    const vec_case &c = GetParam();
    const uint16_t type = masked_type(c.msg);
    const msg_kind *kind = find_kind(type);
    bool odd = false;

    // A clean platform; blocks at odd addresses on the second pass.
    void fresh()
    {
        testplat::reset();
        testplat::odd_addresses(odd);
    }

    // LDP_Decode of the case's bytes, with its fields and assertions checked.
    void entry_decode()
    {
        fresh();
        const uint32_t buf_len = c.buf_len < 0 ? uint32_t(c.msg.size()) : uint32_t(c.buf_len);
        const decoded d = decode(c.msg, buf_len);
        EXPECT_EQ(d.rc, c.entry) << "LDP_Decode";
        EXPECT_EQ(d.rec != nullptr, c.entry == LDP_OK || (c.entry == LDP_STOP_WALK && c.pre == LDP_OK))
            << "a record only with OK or the decoder's STOP_WALK";
        const bool short_len = c.msg.size() >= 4 && (c.msg[2] << 8 | c.msg[3]) < 4;
        const bool reported = c.entry != LDP_STATUS_UNKNOWN_MSG_TYPE && c.entry != LDP_ERR_IGNORE_MSG &&
                              !((c.entry_only || short_len) && c.entry == LDP_STATUS_BAD_MSG_LEN);
        EXPECT_EQ(d.type, reported ? type : kUntouched) << "reported type";
        EXPECT_EQ(assertion_files(), c.asserts) << "assertions";
        for (const uint32_t module : testplat::modules_seen()) {
            EXPECT_EQ(module, kModule) << "the caller's memory module on every allocation";
        }
        const std::vector<std::string> files = testplat::alloc_files();
        EXPECT_EQ(files, c.allocs.empty() ? std::vector<std::string>(files.size(), "ldp_dec") : c.allocs)
            << "decode allocations name the decoder (or as the case says)";
        for (const auto &[name, want] : c.fields) {
            if (d.rec != nullptr) {
                EXPECT_EQ(check_field(type, d.rec, name, want), "");
            }
        }
        LDP_FreeMessage(d.rec);
    }

    // The type's pre-parse and decoder called directly.
    void direct_calls()
    {
        fresh();
        const auto wire = exact_copy(c.msg);
        EXPECT_EQ(kind->pre_parse(wire.get()), c.pre) << "pre-parse";
        void *rec = new_prepared(*kind);
        static_cast<LDP_MsgHeader *>(rec)->usMsgType = type; // so the release finds its lists
        EXPECT_EQ(kind->decode(wire.get(), rec, kModule), c.dec) << "decoder";
        // What a refused message leaves in the record is checked here too.
        for (const auto &[name, want] : c.fields) {
            EXPECT_EQ(check_field(type, rec, name, want), "") << "after the decoder";
        }
        LDP_FreeMessage(rec);
        if (c.asserts.empty()) {
            EXPECT_EQ(assertion_files(), c.asserts) << "assertions of the direct calls";
        }
    }

    // LDP_Encode of the decoded record, the encoder short of room, and
    // LDP_Encode without memory for its buffer.
    void encode_checks()
    {
        fresh();
        decoded d = decode(c.msg);
        ASSERT_NE(d.rec, nullptr);
        const encoded e = encode(type, d.rec);
        EXPECT_EQ(e.rc, LDP_OK) << "LDP_Encode";
        EXPECT_EQ(to_hex(e.wire), to_hex(c.enc)) << "encoded bytes";
        EXPECT_EQ(assertion_files(), std::vector<std::string>{}) << "assertions while encoding";

        // One byte short gives short_rc; when that is PARAM, so does every smaller
        // room, each with a no-room assertion. The buffer is exactly the room, so ASan
        // sees any write past it.
        const size_t full = c.enc.size();
        for (size_t room = full - 1; room + 1 > 0 && (room == full - 1 || c.short_rc == LDP_ERR_PARAM); --room) {
            d = decode(c.msg);
            fresh();
            auto out = std::make_unique<uint8_t[]>(std::max<size_t>(room, 1));
            EXPECT_EQ(kind->encode(out.get(), d.rec, kModule, uint16_t(room)), c.short_rc) << "room " << room;
            if (c.short_rc == LDP_ERR_PARAM) { // a Label Release may report twice: its Status TLV failure is passed over
                const auto files = assertion_files();
                EXPECT_TRUE(!files.empty() && std::count(files.begin(), files.end(), "ldp_enc") == long(files.size()))
                    << "room " << room;
            }
            static_cast<LDP_MsgHeader *>(d.rec)->usMsgType = type; // below 8 bytes the header stays swapped
            LDP_FreeMessage(d.rec);
        }

        d = decode(c.msg);
        testplat::fail_alloc_at(1);
        uint8_t *buf = nullptr;
        EXPECT_EQ(LDP_Encode(&buf, type, d.rec, kModule), LDP_ERR_NO_MEMORY) << "no buffer";
        EXPECT_EQ(buf, nullptr);
    }

    // Every allocation and every memcpy_s of a decode that keeps its record
    // failed in turn: the documented code, and nothing left behind.
    void failure_injection()
    {
        testplat::reset();
        LDP_FreeMessage(decode(c.msg).rec);
        const size_t allocs = testplat::alloc_calls();
        const size_t copies = testplat::memcpy_calls();
        EXPECT_TRUE(c.nomem.size() == 1 || c.nomem.size() <= allocs) << "nomem: more codes than allocations";
        for (size_t k = 1; k <= allocs; ++k) {
            testplat::reset();
            testplat::fail_alloc_at(k);
            const decoded d = decode(c.msg);
            EXPECT_EQ(d.rc, c.nomem[std::min(k, c.nomem.size()) - 1]) << "allocation " << k << " of " << allocs << " failed";
            EXPECT_EQ(d.rec, nullptr);
            LDP_FreeMessage(d.rec);
        }
        for (size_t k = 1; k <= copies; ++k) {
            testplat::reset();
            testplat::fail_memcpy_at(k, 34);
            const decoded d = decode(c.msg);
            EXPECT_TRUE(is_documented_code(d.rc)) << "memcpy_s " << k << " failed: " << d.rc;
            EXPECT_FALSE(testplat::assertions().empty()) << "memcpy_s " << k << " failed unreported";
            LDP_FreeMessage(d.rec);
        }
    }

    // Every shorter buffer is refused at the entry; every shorter message
    // (its length field cut to match) gives a documented code.
    void truncations()
    {
        const size_t full = size_t(c.msg[2] << 8 | c.msg[3]) + 4;
        for (size_t cut = 0; cut < c.msg.size(); ++cut) {
            testplat::reset();
            bytes part(c.msg.begin(), c.msg.begin() + long(cut));
            decoded d = decode(part);
            if (cut < full) {
                EXPECT_EQ(d.rc, LDP_STATUS_BAD_MSG_LEN) << "buffer of " << cut;
            }
            LDP_FreeMessage(d.rec);
            if (cut < 8) {
                continue;
            }
            part[2] = uint8_t((cut - 4) >> 8);
            part[3] = uint8_t(cut - 4);
            d = decode(part);
            EXPECT_TRUE(is_documented_code(d.rc)) << "message cut to " << cut << ": " << d.rc;
            // LDP_STOP_WALK from the pre-parse comes before any record exists.
            EXPECT_EQ(d.rec != nullptr, keeps_record(d.rc) && kind->pre_parse(part.data()) != LDP_STOP_WALK);
            EXPECT_EQ(assertion_files(), std::vector<std::string>{}) << "cut to " << cut;
            LDP_FreeMessage(d.rec);
        }
    }
};

TEST_P(Vectors, Check)
{
    for (const bool pass : {false, true}) {
        odd = pass;
        SCOPED_TRACE(odd ? "odd addresses" : "aligned");
        entry_decode();
        if (c.entry_only) {
            continue;
        }
        ASSERT_NE(kind, nullptr) << "message type " << type << " has no row in the driver";
        direct_calls();
        if (c.has_enc) {
            encode_checks();
        }
    }
    odd = false;
    if (c.entry_only) {
        return;
    }
    if (keeps_record(c.entry) && c.asserts.empty()) {
        failure_injection();
    }
    truncations();
}

std::string test_name(const ::testing::TestParamInfo<vec_case> &info)
{
    std::string s = info.param.file + "_" + info.param.name;
    for (char &ch : s) {
        if (std::isalnum(static_cast<unsigned char>(ch)) == 0) {
            ch = '_';
        }
    }
    return s;
}

INSTANTIATE_TEST_SUITE_P(Wire, Vectors, ::testing::ValuesIn(all_vectors()), test_name);

// Vector files are data: names unique per file, no case twice.
TEST(VectorFiles, NoTwoCasesAlike)
{
    std::set<std::string> names, wires;
    for (const auto &c : all_vectors()) {
        EXPECT_TRUE(names.insert(c.file + ":" + c.name).second) << "name twice: " << c.label();
        EXPECT_TRUE(wires.insert(c.file + to_hex(c.msg) + std::to_string(c.buf_len)).second)
            << "bytes twice: " << c.label();
        EXPECT_FALSE(c.msg.empty()) << c.label();
        EXPECT_TRUE(!c.has_enc || !c.enc.empty()) << c.label();
    }
}

} // namespace
} // namespace ldptest
