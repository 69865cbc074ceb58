// SPDX-License-Identifier: BSD-2-Clause
// Rendering of result codes and decoded records as text for ldpdump.
#pragma once

#include <cstdint>
#include <cstdio>

#include "ldp_codec.h"

namespace ldpdump {

const char *result_name(uint32_t rc);
const char *message_name(uint32_t type);
// A TLV type (U and F bits masked off) by name; "unknown TLV" otherwise.
const char *tlv_name(uint32_t type);
// RFC 5036 status data (the code without its E and F bits) by name.
const char *status_name(uint32_t data);

// Print the fields of a record of the given (masked) type, indented.
void print_record(std::FILE *out, uint32_t type, const void *rec);

// Fields after the message header, one printer per message family.
void print_session_record(std::FILE *out, uint32_t type, const void *rec);
// Message printers, one family per file.
void print_mapping(std::FILE *out, const LDP_MappingMsg *m);
void print_notify(std::FILE *out, const LDP_NotifyMsg *m);
void print_address(std::FILE *out, const LDP_AddressMsg *m);
void print_address_withdraw(std::FILE *out, const LDP_AddressWithdrawMsg *m);
void print_request(std::FILE *out, const LDP_RequestMsg *m);
void print_withdraw(std::FILE *out, const LDP_LabelWithdrawMsg *m);
void print_release(std::FILE *out, const LDP_LabelReleaseMsg *m);
void print_abort(std::FILE *out, const LDP_LabelRequestAbortMsg *m);

// Print the elements of a decoded FEC TLV, and an MP Status TLV; message
// printers call these for the FEC and MP Status TLVs their records embed.
void print_fec_tlv(std::FILE *out, const LDP_FecTlv *tlv);
void print_mp_status_tlv(std::FILE *out, const LDP_MpStatusTlv *tlv);

} // namespace ldpdump
