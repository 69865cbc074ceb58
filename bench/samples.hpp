// SPDX-License-Identifier: BSD-2-Clause
// The sample messages the bench programs run: every line of a hex sample
// file that LDP_Decode accepts, named by its message type and its rank among
// the samples of that type ("LabelMapping.2"). Refused samples show error
// paths, not throughput, and are left out.
#pragma once

#include <cstdint>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "hex_text.hpp"
#include "ldp_codec.h"

namespace benchsamples {

inline const char *type_name(uint16_t type)
{
    switch (type) {
    case LDP_MSG_NOTIFICATION: return "Notification";
    case LDP_MSG_HELLO: return "Hello";
    case LDP_MSG_INIT: return "Initialization";
    case LDP_MSG_KEEPALIVE: return "KeepAlive";
    case LDP_MSG_CAPABILITY: return "Capability";
    case LDP_MSG_ADDRESS: return "Address";
    case LDP_MSG_ADDRESS_WITHDRAW: return "AddressWithdraw";
    case LDP_MSG_LABEL_MAPPING: return "LabelMapping";
    case LDP_MSG_LABEL_REQUEST: return "LabelRequest";
    case LDP_MSG_LABEL_WITHDRAW: return "LabelWithdraw";
    case LDP_MSG_LABEL_RELEASE: return "LabelRelease";
    case LDP_MSG_LABEL_ABORT_REQUEST: return "LabelAbortRequest";
    default: return "Unknown";
    }
}

struct message {
    std::string name;
    uint16_t type;
    std::vector<uint8_t> bytes;
};

// Decodes each candidate once (and releases it) to sort out the refused ones.
inline std::vector<message> load(const std::string &path)
{
    std::vector<message> out;
    std::ifstream in(path);
    std::string line;
    std::map<uint16_t, int> rank;
    std::vector<uint8_t> bytes;
    while (std::getline(in, line)) {
        if (!ldphex::parse(ldphex::strip_comment(line), bytes) || bytes.size() < 8) {
            continue;
        }
        uint32_t type = 0;
        void *rec = nullptr;
        const uint32_t rc = LDP_Decode(bytes.data(), &type, &rec, uint32_t(bytes.size()), 0);
        LDP_FreeMessage(rec);
        if (rc == LDP_OK) {
            const auto t = uint16_t(type);
            out.push_back({std::string(type_name(t)) + "." + std::to_string(++rank[t]), t, bytes});
        }
    }
    return out;
}

} // namespace benchsamples
