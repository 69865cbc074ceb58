// SPDX-License-Identifier: BSD-2-Clause
// Test vectors: wire cases read from tests/vectors/*.vec (format in
// tests/vectors/README.md), and the per-type table the driver runs them with.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "support.hpp"

namespace ldptest {

struct vec_case {
    std::string file; // e.g. "session"
    std::string name;
    int line = 0;
    bytes msg;
    bool entry_only = false;  // only LDP_Decode is run
    uint32_t pre = LDP_OK;    // pre-parse
    uint32_t dec = LDP_OK;    // decoder
    uint32_t entry = LDP_OK;  // LDP_Decode
    long long buf_len = -1;   // LDP_Decode's ulBufLen; -1: msg.size()
    bool has_enc = false;
    bytes enc;
    uint32_t short_rc = LDP_ERR_PARAM;
    std::vector<uint32_t> nomem{LDP_ERR_NO_MEMORY}; // k-th failed allocation: k-th code, the last repeats
    std::vector<std::pair<std::string, std::string>> fields;
    std::vector<std::string> asserts;
    std::vector<std::string> allocs; // LDP_Decode's allocations by source-file text, when not all "ldp_dec"

    std::string label() const { return file + ":" + std::to_string(line) + " " + name; }
};

inline void PrintTo(const vec_case &c, std::ostream *os) { *os << c.label(); }

// Every case of every vector file, in file order.
const std::vector<vec_case> &all_vectors();

// The wire bytes of one named case, for C++ tests that look deeper into a record.
const bytes &vector_msg(const std::string &file, const std::string &name);

// The exported operations of one message type, with void* records.
struct msg_kind {
    uint16_t type;
    size_t size;
    std::vector<size_t> lists; // embedded list heads LDP_Decode prepares
    uint32_t (*pre_parse)(const uint8_t *);
    uint32_t (*decode)(const uint8_t *, void *, uint32_t);
    uint32_t (*encode)(uint8_t *, void *, uint32_t, uint16_t);
};

const msg_kind *find_kind(uint16_t masked_type);

// A zeroed record of the type with its lists prepared, as LDP_Decode makes it.
void *new_prepared(const msg_kind &k);

// "" when the record's field (or "list[i].field") holds the vector's value,
// else what differs.
std::string check_field(uint16_t type, const void *rec, const std::string &name, const std::string &want);

} // namespace ldptest
