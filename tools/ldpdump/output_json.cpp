// SPDX-License-Identifier: BSD-2-Clause
// --json: one object per message per line. The member names are part of the
// tool's interface (see docs/ldpdump.1); add members, never rename them.
#include "ldp_codec.h"
#include "report.hpp"

namespace ldpdump {
namespace {

std::string tlv_json(const tlv_info &t)
{
    return "{\"type\":" + std::to_string(t.type()) + ",\"u\":" + ((t.type_word & LDP_TLV_U_BIT) ? "true" : "false") +
           ",\"f\":" + ((t.type_word & LDP_TLV_F_BIT) ? "true" : "false") + ",\"len\":" + std::to_string(t.len) +
           ",\"offset\":" + std::to_string(t.offset) + "}";
}

std::string tlv_types(const std::vector<tlv_info> &list)
{
    std::vector<std::string> v;
    for (const tlv_info &t : list) {
        v.push_back(std::to_string(t.type()));
    }
    return json_array(v);
}

} // namespace

void write_json(std::FILE *out, const message_report &m, bool show_roundtrip)
{
    const origin &o = *m.from;
    std::string s = "{";
    if (o.from_capture) {
        char t[40];
        std::snprintf(t, sizeof t, "%lld.%06d", static_cast<long long>(o.sec), int(o.usec));
        s += "\"frame\":" + std::to_string(o.number) + ",\"time\":" + t + ",\"proto\":" + json_string(o.proto) +
             ",\"src\":" + json_string(o.src) + ",\"dst\":" + json_string(o.dst) + ",";
    } else {
        s += "\"line\":" + std::to_string(o.number) + ",";
    }
    if (m.pdu != nullptr) {
        s += "\"lsr_id\":" + json_string(ipv4_text(m.pdu->lsr_id)) +
             ",\"label_space\":" + std::to_string(m.pdu->label_space) + ",";
    }
    s += "\"type\":" + json_string(m.len >= 2 ? type_text(m.type_word) : "") +
         ",\"type_code\":" + std::to_string(m.type_word & LDP_MSG_TYPE_MASK) +
         ",\"u\":" + ((m.type_word & LDP_MSG_U_BIT) ? "true" : "false") + ",\"length\":" +
         std::to_string(m.len >= 4 ? (unsigned(m.bytes[2]) << 8 | m.bytes[3]) : 0u) +
         ",\"msg_id\":" + std::to_string(m.id) + ",\"result\":" + json_string(LDP_GetResultName(m.rc)) +
         ",\"result_code\":" + std::to_string(m.rc);
    std::vector<std::string> tlvs;
    for (const tlv_info &t : m.tlvs) {
        tlvs.push_back(tlv_json(t));
    }
    s += ",\"tlvs\":" + json_array(tlvs);
    for (const field &f : m.fields) {
        if (!f.key.empty()) {
            s += ",\"" + f.key + "\":" + f.json;
        }
    }
    if (m.failure) {
        s += ",\"failure\":{\"offset\":" + std::to_string(m.failure->offset) +
             (m.failure->in_tlv ? ",\"tlv\":" + std::to_string(m.failure->tlv.type()) : std::string()) +
             ",\"text\":" + json_string(m.failure->text) + "}";
    }
    if (show_roundtrip && m.round) {
        const roundtrip_result &r = *m.round;
        s += ",\"roundtrip\":{\"result\":" + json_string(LDP_GetResultName(r.rc)) +
             ",\"same\":" + (r.same ? "true" : "false") + ",\"not_kept\":" + tlv_types(r.not_kept) +
             ",\"partly_kept\":" + tlv_types(r.partly) + ",\"added\":" + tlv_types(r.added) + ",\"header_changed\":" + (r.header_changed ? "true" : "false") +
             ",\"reordered\":" + (r.reordered ? "true" : "false") + ",\"failed\":" + (r.failed() ? "true" : "false") +
             "}";
    }
    s += "}\n";
    std::fputs(s.c_str(), out);
}

} // namespace ldpdump
