// SPDX-License-Identifier: BSD-2-Clause
// The key fields of a decoded record, each rendered once for the one-line
// text output and once as a JSON value, so both outputs name the same facts.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ldpdump {

struct field {
    std::string key;  // JSON member name
    std::string json; // JSON value text
    std::string text; // for the one-line output; empty to leave it out there
};

std::vector<field> key_fields(uint32_t type, const void *rec);

// JSON text helpers shared by the outputs.
std::string json_string(const std::string &s);
std::string json_array(const std::vector<std::string> &values); // values already JSON
std::string hex_bytes(const uint8_t *p, size_t n, const char *sep = "");
std::string ipv4_text(uint32_t host_order);

} // namespace ldpdump
