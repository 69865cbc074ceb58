// SPDX-License-Identifier: BSD-2-Clause
// The source-file names the library hands to the platform with every
// allocation, release and assertion. Line numbers are the real ones.
#pragma once

namespace ldp::srcfile {
inline constexpr const char dec[] = "ldp_dec";           // pre-parse and decode
inline constexpr const char enc[] = "ldp_enc";           // encode and release
inline constexpr const char comm_util[] = "ldp_comm_util"; // comparison, log, dump
inline constexpr const char blackbox[] = "app_blackbox";   // blackbox ring
} // namespace ldp::srcfile
