// SPDX-License-Identifier: BSD-2-Clause
// Hex text to message bytes, shared by ldpdump and the test programs that
// read samples/messages.hex: digits in pairs, with blanks, ':' or '-' allowed
// between them; in a sample file '#' starts a comment.
#pragma once

#include <cctype>
#include <cstdint>
#include <string>
#include <vector>

namespace ldphex {

// False when the text holds anything but hex digits and separators, or an
// odd number of digits.
inline bool parse(const std::string &text, std::vector<uint8_t> &out)
{
    out.clear();
    int hi = -1;
    for (unsigned char c : text) {
        if (std::isspace(c) || c == ':' || c == '-') {
            continue;
        }
        if (!std::isxdigit(c)) {
            return false;
        }
        const int v = std::isdigit(c) ? c - '0' : std::tolower(c) - 'a' + 10;
        if (hi < 0) {
            hi = v;
        } else {
            out.push_back(uint8_t(hi << 4 | v));
            hi = -1;
        }
    }
    return hi < 0;
}

// A sample-file line without its comment.
inline std::string strip_comment(const std::string &line) { return line.substr(0, line.find('#')); }

} // namespace ldphex
