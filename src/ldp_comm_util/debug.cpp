// SPDX-License-Identifier: BSD-2-Clause
// Debug helpers: a hex dump of packet bytes, a bitmap search, and freeing
// what a debug condition owns.
#include <cstdint>
#include <cstring>

#include "../codec/mem.hpp"
#include "../codec/srcfile.hpp"
#include "ldp_codec.h"

using namespace ldp;

namespace {

constexpr uint16_t bytes_per_line = 16;
constexpr uint32_t bits_per_word = 32;
// Bitmap positions: each word takes 33 numbers, bit 0 of word w being
// 33 * w + 1. The gap after bit 31 is part of the numbering engines use.
constexpr uint32_t word_stride = 33;

// Unlink and free every node of one circular list; the head ends up alone.
void free_cond_list(LDP_DebugCondNode *head)
{
    if (head->pNext == nullptr) {
        return;
    }
    while (head->pNext != head) {
        LDP_DebugCondNode *node = head->pNext;
        head->pNext = node->pNext;
        node->pNext->pPrev = head;
        (void)mem::release(node, srcfile::comm_util);
    }
}

} // namespace

extern "C" LDP_API void LDP_SetPktDataToHexStrRecord(const uint8_t *pucData, uint16_t usCount,
                                                     char *pcOut, uint32_t ulSize)
{
    if (pucData == nullptr || pcOut == nullptr) {
        return;
    }
    // 16-bit counters, as engines size their dump buffers below 64 KiB. The
    // limit is unsigned: a size below 4 wraps it, which callers must avoid.
    uint16_t done = 0;
    uint16_t pos = 0;
    while (done < usCount && pos < ulSize - 4u) {
        (void)snprintf_truncated_s(pcOut + pos, ulSize - pos, "%02X ", pucData[done]);
        pos = uint16_t(pos + 3);
        ++done;
        if (done % bytes_per_line == 0) {
            pcOut[pos] = '\n';
            pcOut[pos + 1] = ' ';
            pos = uint16_t(pos + 2);
        }
    }
    // A full last line leaves "\n " with no terminator: the blank becomes one.
    if (pos != 0 && done % bytes_per_line == 0) {
        pcOut[pos - 1] = '\0';
    }
}

extern "C" LDP_API uint32_t LDP_GetBitMapFirstSetBitPositionUint32(const uint32_t *pulWords,
                                                                   uint32_t ulWords)
{
    if (pulWords == nullptr || ulWords == 0) {
        return 0;
    }
    for (uint32_t w = 0; w < ulWords; ++w) {
        uint32_t word;
        std::memcpy(&word, reinterpret_cast<const uint8_t *>(pulWords) + 4 * size_t(w), sizeof word);
        for (uint32_t b = 0; b < bits_per_word; ++b) {
            if ((word >> b & 1u) != 0) {
                return word_stride * w + b + 1;
            }
        }
    }
    return word_stride * ulWords;
}

extern "C" LDP_API void LDP_DeleteDebugCond(LDP_DebugCond *pstCond)
{
    for (LDP_DebugCondNode &head : pstCond->astCondList) {
        free_cond_list(&head);
    }
    for (size_t i = 0; i < 3; ++i) {
        if (pstCond->apBuffer[i] != nullptr) {
            (void)mem::release(pstCond->apBuffer[i], srcfile::comm_util);
            pstCond->apBuffer[i] = nullptr;
        }
    }
}
