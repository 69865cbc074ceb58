// SPDX-License-Identifier: BSD-2-Clause
// Orderings of the engine's key records (FECs, mappings, mLDP mappings, peer
// addresses): field by field in a fixed precedence, as unsigned host values.
#include <cstdint>
#include <cstring>

#include "ldp_codec.h"

namespace {

static_assert(sizeof(LDP_FecMsgData) == 4 * sizeof(void *) + 20 + 17);
static_assert(sizeof(LDP_MappingMsgData) == 4 * sizeof(void *) + 20 + 23);
static_assert(sizeof(LDP_PeerAddressMsgData) == 4 * sizeof(void *) + 20 + 22);
static_assert(sizeof(LDP_MldpMappingMsgData) == 5 * sizeof(void *) + 20 + 7 + 24);

// The first difference decides; later steps are skipped once one is found.
class chain {
public:
    template <class T>
    chain &then(T a, T b)
    {
        if (result_ == 0) {
            result_ = a > b ? 1 : (a < b ? -1 : 0);
        }
        return *this;
    }

    // Four host-order words that may sit at any alignment (packed records).
    chain &then_words(const void *a, uint32_t count_a, const void *b, uint32_t count_b)
    {
        then(count_a, count_b);
        for (size_t i = 0; i < 4; ++i) {
            then(word(a, i), word(b, i));
        }
        return *this;
    }

    chain &then_addr6(const void *a, const void *b) { return then_words(a, 4, b, 4); }

    int32_t result() const { return result_; }

private:
    static uint32_t word(const void *p, size_t i)
    {
        uint32_t w;
        std::memcpy(&w, static_cast<const uint8_t *>(p) + 4 * i, sizeof w);
        return w;
    }

    int32_t result_ = 0;
};

} // namespace

extern "C" LDP_API int32_t LDP_CmpIpv6Address(const uint32_t *pulAddr1, uint32_t ulWords1,
                                   const uint32_t *pulAddr2, uint32_t ulWords2)
{
    // Exactly four words whatever the counts: every caller passes 4.
    return chain().then_words(pulAddr1, ulWords1, pulAddr2, ulWords2).result();
}

extern "C" LDP_API int32_t LDP_CmpFecMsgData(const LDP_FecMsgData *pstData1, const LDP_FecMsgData *pstData2)
{
    const LDP_FecMsgData &a = *pstData1;
    const LDP_FecMsgData &b = *pstData2;
    chain c;
    c.then(a.usAddrFamily, b.usAddrFamily);
    if (a.usAddrFamily == LDP_AF_IPV4) {
        c.then(a.stIpv4.ulAddr, b.stIpv4.ulAddr).then(a.stIpv4.ucPrefixLen, b.stIpv4.ucPrefixLen);
    } else if (a.usAddrFamily == LDP_AF_IPV6) {
        c.then_addr6(a.stIpv6.aulAddr6, b.stIpv6.aulAddr6).then(a.stIpv6.ucPrefixLen, b.stIpv6.ucPrefixLen);
    }
    return c.then(a.ulKeyId, b.ulKeyId).result();
}

extern "C" LDP_API int32_t LDP_CmpMappingMsgData(const LDP_MappingMsgData *pstData1,
                                      const LDP_MappingMsgData *pstData2)
{
    const LDP_MappingMsgData &a = *pstData1;
    const LDP_MappingMsgData &b = *pstData2;
    chain c;
    c.then(a.usAddrFamily, b.usAddrFamily);
    if (a.usAddrFamily == LDP_AF_IPV4) {
        c.then(a.stIpv4.ulAddr, b.stIpv4.ulAddr)
            .then(a.stIpv4.ucPrefixLen, b.stIpv4.ucPrefixLen)
            .then(a.stIpv4.ulAttr, b.stIpv4.ulAttr)
            .then(a.stIpv4.usAttr, b.stIpv4.usAttr);
    } else if (a.usAddrFamily == LDP_AF_IPV6) {
        c.then_addr6(a.stIpv6.aulAddr6, b.stIpv6.aulAddr6)
            .then(a.stIpv6.ucPrefixLen, b.stIpv6.ucPrefixLen)
            .then(a.stIpv6.ulAttr, b.stIpv6.ulAttr)
            .then(a.stIpv6.usAttr, b.stIpv6.usAttr);
    }
    return c.then(a.ulKeyId, b.ulKeyId).result();
}

extern "C" LDP_API int32_t LDP_CmpPeerAddressMsgData(const LDP_PeerAddressMsgData *pstData1,
                                          const LDP_PeerAddressMsgData *pstData2)
{
    const LDP_PeerAddressMsgData &a = *pstData1;
    const LDP_PeerAddressMsgData &b = *pstData2;
    chain c;
    c.then(a.usAddrFamily, b.usAddrFamily);
    if (a.usAddrFamily == LDP_AF_IPV4) {
        c.then(a.stIpv4.ulAddr, b.stIpv4.ulAddr)
            .then(a.stIpv4.ulAttr, b.stIpv4.ulAttr)
            .then(a.stIpv4.usAttr, b.stIpv4.usAttr);
    } else {
        // Unlike FECs and mappings, an unknown family still orders by address,
        // read as IPv6.
        c.then_addr6(a.stIpv6.aulAddr6, b.stIpv6.aulAddr6)
            .then(a.stIpv6.ulAttr, b.stIpv6.ulAttr)
            .then(a.stIpv6.usAttr, b.stIpv6.usAttr);
    }
    return c.then(a.ulKeyId, b.ulKeyId).result();
}

extern "C" LDP_API int32_t LDP_CmpMldpMappingMsgData(const LDP_MldpMappingMsgData *pstData1,
                                          const LDP_MldpMappingMsgData *pstData2)
{
    const LDP_MldpMappingMsgData &a = *pstData1;
    const LDP_MldpMappingMsgData &b = *pstData2;
    // The user key leads here, unlike the other key records.
    chain c;
    c.then(a.ulKeyId, b.ulKeyId).then(a.usAddrFamily, b.usAddrFamily);
    const uint8_t *opaque_a;
    const uint8_t *opaque_b;
    uint16_t opaque_len;
    if (a.usAddrFamily == LDP_AF_IPV4) {
        c.then(a.stIpv4.usOpaqueLen, b.stIpv4.usOpaqueLen)
            .then(a.ucAttr, b.ucAttr)
            .then(a.stIpv4.ulRootAddr, b.stIpv4.ulRootAddr);
        opaque_a = a.stIpv4.pucOpaqueValue;
        opaque_b = b.stIpv4.pucOpaqueValue;
        opaque_len = a.stIpv4.usOpaqueLen;
    } else {
        c.then(a.stIpv6.usOpaqueLen, b.stIpv6.usOpaqueLen)
            .then(a.ucAttr, b.ucAttr)
            .then_addr6(a.stIpv6.aulRootAddr6, b.stIpv6.aulRootAddr6);
        opaque_a = a.stIpv6.pucOpaqueValue;
        opaque_b = b.stIpv6.pucOpaqueValue;
        opaque_len = a.stIpv6.usOpaqueLen;
    }
    c.then(a.ulAttr, b.ulAttr).then(a.usAttr, b.usAttr);
    if (c.result() != 0) {
        return c.result();
    }
    // The platform's answer as it is: its magnitude is not folded to 1.
    return SYS_MemCmp(opaque_a, opaque_b, opaque_len);
}
