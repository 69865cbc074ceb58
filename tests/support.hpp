// SPDX-License-Identifier: BSD-2-Clause
// Helpers shared by the unit tests: wire bytes from hex text, a fixture that
// checks the test platform for leaks after every test, and thin wrappers over
// the entry points that use exact-size buffers (so ASan sees any overread).
#pragma once

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ldp_codec.h"
#include "platform/test_platform.hpp"

namespace ldptest {

using bytes = std::vector<uint8_t>;

// "02 01 00 04" -> {0x02, 0x01, 0x00, 0x04}; blanks, colons, dashes and slashes separate.
bytes hex(std::string_view text);
std::string to_hex(const uint8_t *p, size_t n);
inline std::string to_hex(const bytes &b) { return to_hex(b.data(), b.size()); }

inline constexpr uint32_t kModule = 0x4C44500Bu;
inline constexpr uint32_t kUntouched = 0xDEADBEEFu;

// A field the library leaves "in network order" reads swapped on a
// little-endian host and unchanged on a big-endian one (s390x build).
inline constexpr bool kBigEndian = std::endian::native == std::endian::big;

// All result codes the library may return.
bool is_documented_code(uint32_t rc);

struct decoded {
    uint32_t rc = 0;
    uint32_t type = kUntouched;
    void *rec = nullptr;
};

// LDP_Decode on a heap copy of exactly msg.size() bytes; buf_len defaults to that size.
decoded decode(const bytes &msg, uint32_t buf_len);
inline decoded decode(const bytes &msg) { return decode(msg, uint32_t(msg.size())); }

// A zeroed record from the platform allocator, as an engine would build one
// for LDP_Encode (which takes ownership of it).
template <class T>
T *new_record()
{
    auto *rec = static_cast<T *>(PLAT_SimpleAlloc_F(kModule, sizeof(T), "test", __LINE__));
    std::memset(static_cast<void *>(rec), 0, sizeof(T));
    return rec;
}

// An empty list as LDP_Decode prepares one: first and last at the head.
inline void make_empty(SLL_List *list)
{
    list->stHead.pNext = &list->stHead;
    list->stHead.ulHandle = 0;
    list->pTail = &list->stHead;
    list->ulCount = 0;
}

inline bool is_empty(const SLL_List &list)
{
    return list.stHead.pNext == &list.stHead && list.pTail == &list.stHead && list.ulCount == 0;
}

// Append an element (whose SLL_Node comes first) through the platform list service.
inline void append(SLL_List *list, SLL_Node *node)
{
    SLL_Insert_In_Middle(list, list->pTail, node, &list->stHead);
}

// The i-th u32 of an owned array, read byte-wise: arrays from the test
// platform may start at odd addresses.
inline uint32_t u32_at(const void *p, size_t i)
{
    uint32_t v;
    std::memcpy(&v, static_cast<const uint8_t *>(p) + 4 * i, sizeof v);
    return v;
}

struct encoded {
    uint32_t rc = 0;
    bytes wire;
    bool has_buf = false;
};

// LDP_Encode, then copy the buffer out and release it.
encoded encode(uint32_t type, void *rec);

// Every test starts with a clean platform and must end with nothing live.
class CodecTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
    void expect_no_assertions();
    void expect_one_assertion(const char *file, const char *text = nullptr);
};

} // namespace ldptest
