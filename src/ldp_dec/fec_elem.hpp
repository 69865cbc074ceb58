// SPDX-License-Identifier: BSD-2-Clause
// The Prefix and Host Address FEC element checks and stores, shared by the
// exported element functions and the Label Mapping quick path; inline so
// either may use them without a call.
#pragma once

#include <cstdint>

#include "../codec/mem.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/wire.hpp"
#include "ldp_codec.h"

namespace ldp::fec {

constexpr uint16_t kElemHeader = 4; // type, family (2), length byte

inline uint16_t prefix_bytes(uint8_t bits) { return uint16_t((bits + 7u) / 8u); }

// Checks shared by the Prefix pre-parse and decoder. The family is judged
// before the prefix bytes are looked for.
inline uint32_t check_prefix(const uint8_t *elem, uint16_t left, uint16_t *size)
{
    *size = 0;
    if (left < kElemHeader) {
        return LDP_STATUS_BAD_TLV_LEN;
    }
    const uint16_t family = wire::load16(elem + 1);
    const uint8_t bits = elem[3];
    if (family == LDP_AF_IPV4) {
        if (bits >= 33) {
            return LDP_STATUS_MALFORMED_TLV;
        }
    } else if (family == LDP_AF_IPV6) {
        if (bits > 128) {
            return LDP_STATUS_MALFORMED_TLV;
        }
    } else {
        return LDP_STATUS_UNSUPPORTED_AF;
    }
    if (int32_t(left) - kElemHeader < int32_t(prefix_bytes(bits))) {
        return LDP_STATUS_BAD_TLV_LEN;
    }
    *size = uint16_t(kElemHeader + prefix_bytes(bits));
    return LDP_OK;
}

// Checks shared by the Host Address pre-parse and decoder. Unlike Prefix, the
// address must fit before the family is looked at.
inline uint32_t check_host(const uint8_t *elem, uint16_t left, uint16_t *size)
{
    *size = 0;
    if (left < kElemHeader) {
        return LDP_STATUS_BAD_TLV_LEN;
    }
    const uint16_t family = wire::load16(elem + 1);
    const uint8_t addr_len = elem[3];
    if (int32_t(left) - kElemHeader < int32_t(addr_len)) {
        return LDP_STATUS_BAD_TLV_LEN;
    }
    if (family == LDP_AF_IPV4 && addr_len == 4) {
        *size = 8;
        return LDP_OK;
    }
    if (family == LDP_AF_IPV6 && addr_len == 16) {
        *size = 20;
        return LDP_OK;
    }
    return (family == LDP_AF_IPV4 || family == LDP_AF_IPV6) ? LDP_STATUS_MALFORMED_TLV
                                                           : LDP_STATUS_UNSUPPORTED_AF;
}

// Type byte, host-order family and length byte of a checked element, then
// n address bytes into the 16-byte address field.
inline void store_addr_elem(const uint8_t *elem, LDP_FecElementBody *body, uint16_t n)
{
    mem::copy(body->aucAddr, sizeof body->aucAddr, elem + kElemHeader, n, srcfile::dec);
    body->ucFecType = elem[0];
    body->usAddrFamily = wire::load16(elem + 1);
    body->ucPrefixLen = elem[3];
}

} // namespace ldp::fec
