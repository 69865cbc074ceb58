// Helpers for the FEC family tests: a FEC TLV record that releases its list,
// values held in exact-size heap blocks (so ASan sees any overread), element
// records built as an application would, and encoders run into exact-size
// output blocks.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "support.hpp"

namespace ldptest {

// A heap copy of exactly the given bytes; an empty value still gets one
// readable byte so the pointer is not null.
class exact {
public:
    explicit exact(const bytes &b) : n_(b.size()), p_(std::make_unique<uint8_t[]>(b.empty() ? 1 : b.size()))
    {
        if (!b.empty()) {
            std::memcpy(p_.get(), b.data(), b.size());
        }
    }
    const uint8_t *data() const { return p_.get(); }
    uint16_t size() const { return uint16_t(n_); }

private:
    size_t n_;
    std::unique_ptr<uint8_t[]> p_;
};

// An LDP_FecTlv as a message record embeds it: list prepared, released by
// LDP_FreeFecElement when the holder goes.
class fec_tlv {
public:
    fec_tlv()
    {
        std::memset(static_cast<void *>(&tlv), 0, sizeof tlv);
        tlv.stTlvHeader.usTlvType = LDP_TLV_FEC;
        SLL_Node *head = &tlv.stFecList.stHead;
        tlv.stFecList.stHead.pNext = head;
        tlv.stFecList.pTail = head;
    }
    fec_tlv(const fec_tlv &) = delete;
    fec_tlv &operator=(const fec_tlv &) = delete;
    ~fec_tlv() { LDP_FreeFecElement(&tlv); }

    // LDP_DecodeFECTlv over an exact-size copy of value.
    uint32_t decode(const bytes &value)
    {
        const exact v(value);
        tlv.stTlvHeader.usTlvLen = v.size();
        return LDP_DecodeFECTlv(v.data(), &tlv, kModule);
    }

    std::vector<LDP_FecElement *> elements()
    {
        std::vector<LDP_FecElement *> out;
        SLL_Node *head = &tlv.stFecList.stHead;
        for (SLL_Node *n = tlv.stFecList.stHead.pNext; n != nullptr && n != head; n = n->pNext) {
            out.push_back(reinterpret_cast<LDP_FecElement *>(n));
        }
        return out;
    }

    // A zeroed element from the platform allocator (so the release function
    // can free it), appended at the tail.
    LDP_FecElement *add(uint8_t kind)
    {
        auto *e = static_cast<LDP_FecElement *>(PLAT_SimpleAlloc_F(kModule, sizeof(LDP_FecElement), "test", __LINE__));
        std::memset(static_cast<void *>(e), 0, sizeof *e);
        e->ucFecKind = kind;
        e->stBody.ucFecType = kind;
        SLL_Insert_In_Middle(&tlv.stFecList, tlv.stFecList.pTail, &e->stNode, &tlv.stFecList.stHead);
        return e;
    }

    bool list_is_empty_head()
    {
        SLL_Node *head = &tlv.stFecList.stHead;
        return tlv.stFecList.stHead.pNext == head && tlv.stFecList.pTail == head &&
               tlv.stFecList.ulCount == 0;
    }

    LDP_FecTlv tlv;
};

// A buffer from the platform allocator holding a copy of b, for fields the
// library will release (opaque values, PWid raw bytes).
inline uint8_t *owned_copy(const bytes &b)
{
    auto *p = static_cast<uint8_t *>(PLAT_SimpleAlloc_F(kModule, uint32_t(b.size()), "test", __LINE__));
    if (!b.empty()) {
        std::memcpy(p, b.data(), b.size());
    }
    return p;
}

// An element body as an application fills it for encoding.
inline LDP_FecElementBody make_body(uint8_t type, uint16_t family, uint8_t len)
{
    LDP_FecElementBody body = {};
    body.ucFecType = type;
    body.usAddrFamily = family;
    body.ucPrefixLen = len;
    return body;
}

struct written {
    uint32_t rc;
    bytes out;        // the whole output block
    uint16_t room_left = 0;
};

// Runs an element encoder (cursor and room in/out) into a zeroed block of
// exactly `room` bytes; reports how far the cursor moved.
template <class Body>
written run_elem_encoder(uint32_t (*fn)(uint8_t **, Body *, uint32_t, uint16_t *), Body *body, uint16_t room,
                         size_t *advanced = nullptr)
{
    auto buf = std::make_unique<uint8_t[]>(room == 0 ? 1 : room);
    std::memset(buf.get(), 0, room == 0 ? 1 : room);
    uint8_t *cur = buf.get();
    uint16_t left = room;
    written w{fn(&cur, body, kModule, &left), bytes(buf.get(), buf.get() + room), left};
    if (advanced != nullptr) {
        *advanced = size_t(cur - buf.get());
    }
    return w;
}

// Runs a TLV encoder (cursor, record, module, room) into a zeroed block of
// exactly `room` bytes.
template <class Rec>
written run_tlv_encoder(uint32_t (*fn)(uint8_t *, Rec *, uint32_t, uint16_t), Rec *rec, uint16_t room)
{
    auto buf = std::make_unique<uint8_t[]>(room == 0 ? 1 : room);
    std::memset(buf.get(), 0, room == 0 ? 1 : room);
    written w{fn(buf.get(), rec, kModule, room), bytes(buf.get(), buf.get() + room)};
    return w;
}

} // namespace ldptest
