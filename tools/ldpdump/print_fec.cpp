// SPDX-License-Identifier: BSD-2-Clause
// Text for the FEC family: FEC TLV elements (prefixes and host addresses as
// addresses, mLDP roots with their opaque values, PWid raw data) and the MP
// Status TLV.
#include <arpa/inet.h>
#include <sys/socket.h>

#include <cstdint>
#include <cstring>

#include "print.hpp"

namespace ldpdump {
namespace {

// An address of the given family from the first `len` bytes of addr (the
// rest taken as zero); "?" for a family that is neither IPv4 nor IPv6.
void format_addr(char *text, size_t room, uint16_t family, const uint8_t *addr, size_t len)
{
    uint8_t full[16] = {};
    const size_t width = family == LDP_AF_IPV6 ? 16 : 4;
    std::memcpy(full, addr, len < width ? len : width);
    const int af = family == LDP_AF_IPV6 ? AF_INET6 : AF_INET;
    if ((family != LDP_AF_IPV4 && family != LDP_AF_IPV6) ||
        inet_ntop(af, full, text, socklen_t(room)) == nullptr) {
        std::snprintf(text, room, "?");
    }
}

uint16_t load16(const uint8_t *p) { return uint16_t(p[0] << 8 | p[1]); }

void print_hex(std::FILE *out, const uint8_t *p, size_t n)
{
    for (size_t i = 0; i < n; ++i) {
        std::fprintf(out, " %02x", p[i]);
    }
}

// The opaque value elements of RFC 6388, read straight from the stored bytes.
void print_opaque(std::FILE *out, const uint8_t *value, uint16_t len)
{
    uint16_t pos = 0;
    while (pos < len) {
        const uint8_t *p = value + pos;
        const uint16_t rest = uint16_t(len - pos);
        const bool ext = p[0] == LDP_OV_TYPE_EXTENDED;
        const uint16_t head = ext ? 5 : 3;
        if (rest < head || load16(p + head - 2) > rest - head) {
            std::fprintf(out, "        opaque: malformed at byte %u\n", pos);
            return;
        }
        const uint16_t n = load16(p + head - 2);
        if (p[0] == LDP_OV_TYPE_GENERIC_LSP_ID && n == 4) {
            std::fprintf(out, "        opaque: Generic LSP ID %u\n",
                         unsigned(p[3]) << 24 | unsigned(p[4]) << 16 | unsigned(p[5]) << 8 | p[6]);
        } else if (ext) {
            std::fprintf(out, "        opaque: extended type %u, %u bytes:", load16(p + 1), n);
            print_hex(out, p + head, n);
            std::fputc('\n', out);
        } else {
            std::fprintf(out, "        opaque: type %u, %u bytes:", p[0], n);
            print_hex(out, p + head, n);
            std::fputc('\n', out);
        }
        pos = uint16_t(pos + head + n);
    }
}

void print_element(std::FILE *out, const LDP_FecElement *e)
{
    char addr[64];
    const LDP_FecElementBody &b = e->stBody;
    switch (e->ucFecKind) {
    case LDP_FEC_WILDCARD:
        std::fprintf(out, "      Wildcard\n");
        break;
    case LDP_FEC_PREFIX:
        format_addr(addr, sizeof addr, b.usAddrFamily, b.aucAddr, (b.ucPrefixLen + 7u) / 8u);
        std::fprintf(out, "      Prefix %s/%u\n", addr, b.ucPrefixLen);
        break;
    case LDP_FEC_HOST_ADDR:
        format_addr(addr, sizeof addr, b.usAddrFamily, b.aucAddr, b.ucPrefixLen);
        std::fprintf(out, "      Host Address %s\n", addr);
        break;
    case LDP_FEC_MLDP_P2MP:
    case LDP_FEC_MLDP_MP2MP_UP:
    case LDP_FEC_MLDP_MP2MP_DOWN: {
        static const char *const kNames[] = {"P2MP", "MP2MP upstream", "MP2MP downstream"};
        format_addr(addr, sizeof addr, b.usAddrFamily, b.aucAddr, b.ucPrefixLen);
        std::fprintf(out, "      mLDP %s root %s, opaque value %u bytes\n",
                     kNames[e->ucFecKind - LDP_FEC_MLDP_P2MP], addr, b.usOpaqueLen);
        if (b.pucOpaqueValue != nullptr) {
            print_opaque(out, b.pucOpaqueValue, b.usOpaqueLen);
        }
        break;
    }
    case LDP_FEC_PWID:
    case LDP_FEC_GEN_PWID:
        std::fprintf(out, "      %s (left to the engine), raw length %u\n",
                     e->ucFecKind == LDP_FEC_PWID ? "PWid" : "Generalized PWid", unsigned(b.ulRawLen & 0xffffu));
        break;
    default:
        std::fprintf(out, "      element kind 0x%02x\n", e->ucFecKind);
        break;
    }
}

} // namespace

void print_fec_tlv(std::FILE *out, const LDP_FecTlv *tlv)
{
    const SLL_List &fec_list = tlv->stFecList;
    std::fprintf(out, "    FEC TLV 0x%04x, length %u, %u element(s)\n", tlv->stTlvHeader.usTlvType,
                 tlv->stTlvHeader.usTlvLen, fec_list.ulCount);
    const SLL_Node *head = &fec_list.stHead;
    for (const SLL_Node *n = fec_list.stHead.pNext; n != nullptr && n != head; n = n->pNext) {
        print_element(out, reinterpret_cast<const LDP_FecElement *>(n));
    }
}

void print_mp_status_tlv(std::FILE *out, const LDP_MpStatusTlv *tlv)
{
    std::fprintf(out, "    MP Status TLV 0x%04x, length %u", tlv->stTlvHeader.usTlvType, tlv->stTlvHeader.usTlvLen);
    if ((tlv->ucElemFlags & LDP_MP_STATUS_ELEM_TAKEN) == 0) {
        std::fprintf(out, ", no element taken\n");
        return;
    }
    const uint8_t code = tlv->ucStatusCode;
    const char *name = code == LDP_MP_STATUS_MBB_REQUEST ? "MBB request"
                       : code == LDP_MP_STATUS_MBB_ACK   ? "MBB acknowledgement"
                                                         : "unknown";
    std::fprintf(out, ", element type %u length %u: status %u (%s)\n", tlv->ucElemType, tlv->usElemLen, code, name);
}

} // namespace ldpdump
