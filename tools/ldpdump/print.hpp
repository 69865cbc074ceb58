// Rendering of result codes and decoded records as text for ldpdump.
#pragma once

#include <cstdint>
#include <cstdio>

namespace ldpdump {

const char *result_name(uint32_t rc);
const char *message_name(uint32_t type);

// Print the fields of a record of the given (masked) type, indented.
void print_record(std::FILE *out, uint32_t type, const void *rec);

// Fields after the message header, one printer per message family.
void print_session_record(std::FILE *out, uint32_t type, const void *rec);

} // namespace ldpdump
