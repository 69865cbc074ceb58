// SPDX-License-Identifier: BSD-2-Clause
// Capture input through libpcap: pcap and pcapng files, standard input, and
// live interfaces.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace ldpdump {

struct frame {
    uint64_t number = 0; // from 1, as Wireshark counts
    int64_t sec = 0;
    int32_t usec = 0;
    const uint8_t *data = nullptr;
    size_t len = 0;      // bytes captured
    size_t orig_len = 0; // bytes on the wire
};

class capture {
public:
    // A file, or "-" for standard input. nullptr and `err` on failure.
    static std::unique_ptr<capture> open_file(const std::string &path, std::string &err);
    static std::unique_ptr<capture> open_live(const std::string &iface, std::string &err);
    ~capture();
    capture(const capture &) = delete;
    capture &operator=(const capture &) = delete;

    bool set_filter(const std::string &expr, std::string &err);
    int link() const;
    // 1: a frame; 0: the end (or stop()); -1: the file is damaged (`err`).
    int next(frame &f, std::string &err);
    // How far through a file the reader is, 0 to 1; negative when unknown.
    double progress() const;
    // Ask next() to return 0 soon (from a signal handler).
    static void stop();

private:
    struct impl;
    explicit capture(impl *p) : p_(p) {}
    impl *p_;
};

} // namespace ldpdump
