// SPDX-License-Identifier: BSD-2-Clause
// libpcap behind the capture interface; without libpcap every capture
// fails to open and ldpdump reads hex only.
#include "capture.hpp"

#ifdef LDPDUMP_HAVE_PCAP

#include <pcap/pcap.h>
#include <sys/stat.h>

#include <atomic>
#include <csignal>
#include <cstdio>

namespace ldpdump {
namespace {

std::atomic<bool> g_stop{false};
pcap_t *g_live = nullptr; // for stop(): pcap_breakloop also wakes a blocked read

} // namespace

struct capture::impl {
    pcap_t *pcap = nullptr;
    bool live = false;
    uint64_t frames = 0;
    long size = 0; // of a regular file, for progress
    std::FILE *file = nullptr;
};

std::unique_ptr<capture> capture::open_file(const std::string &path, std::string &err)
{
    char errbuf[PCAP_ERRBUF_SIZE] = "";
    pcap_t *p = pcap_open_offline(path.c_str(), errbuf);
    if (p == nullptr) {
        err = errbuf;
        return nullptr;
    }
    auto *i = new impl;
    i->pcap = p;
    i->file = pcap_file(p);
    struct stat st;
    if (path != "-" && stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode)) {
        i->size = long(st.st_size);
    }
    return std::unique_ptr<capture>(new capture(i));
}

std::unique_ptr<capture> capture::open_live(const std::string &iface, std::string &err)
{
    char errbuf[PCAP_ERRBUF_SIZE] = "";
    pcap_t *p = pcap_create(iface.c_str(), errbuf);
    if (p == nullptr) {
        err = errbuf;
        return nullptr;
    }
    pcap_set_snaplen(p, 262144);
    pcap_set_timeout(p, 200); // wake up now and then to notice stop()
    pcap_set_immediate_mode(p, 1);
    const int rc = pcap_activate(p);
    if (rc < 0) {
        err = rc == PCAP_ERROR ? pcap_geterr(p) : pcap_statustostr(rc);
        pcap_close(p);
        return nullptr;
    }
    auto *i = new impl;
    i->pcap = p;
    i->live = true;
    g_live = p;
    return std::unique_ptr<capture>(new capture(i));
}

capture::~capture()
{
    if (g_live == p_->pcap) {
        g_live = nullptr;
    }
    pcap_close(p_->pcap);
    delete p_;
}

bool capture::set_filter(const std::string &expr, std::string &err)
{
    bpf_program prog;
    if (pcap_compile(p_->pcap, &prog, expr.c_str(), 1, PCAP_NETMASK_UNKNOWN) != 0) {
        err = pcap_geterr(p_->pcap);
        return false;
    }
    const bool ok = pcap_setfilter(p_->pcap, &prog) == 0;
    if (!ok) {
        err = pcap_geterr(p_->pcap);
    }
    pcap_freecode(&prog);
    return ok;
}

int capture::link() const { return pcap_datalink(p_->pcap); }

int capture::next(frame &f, std::string &err)
{
    for (;;) {
        if (g_stop) {
            return 0;
        }
        pcap_pkthdr *hdr = nullptr;
        const u_char *data = nullptr;
        const int rc = pcap_next_ex(p_->pcap, &hdr, &data);
        if (rc == 0) {
            continue; // a live capture's timeout
        }
        if (rc == PCAP_ERROR_BREAK) {
            return 0;
        }
        if (rc < 0) {
            err = pcap_geterr(p_->pcap);
            return -1;
        }
        f.number = ++p_->frames;
        f.sec = hdr->ts.tv_sec;
        f.usec = int32_t(hdr->ts.tv_usec);
        f.data = data;
        f.len = hdr->caplen;
        f.orig_len = hdr->len;
        return 1;
    }
}

double capture::progress() const
{
    if (p_->size <= 0 || p_->file == nullptr) {
        return -1;
    }
    const long at = std::ftell(p_->file);
    return at < 0 ? -1 : double(at) / double(p_->size);
}

void capture::stop()
{
    g_stop = true;
    if (g_live != nullptr) {
        pcap_breakloop(g_live);
    }
}

} // namespace ldpdump

#else // no libpcap

namespace ldpdump {

struct capture::impl {};

std::unique_ptr<capture> capture::open_file(const std::string &, std::string &err)
{
    err = "this ldpdump is built without libpcap: it reads hex text only (-x FILE)";
    return nullptr;
}

std::unique_ptr<capture> capture::open_live(const std::string &path, std::string &err)
{
    return open_file(path, err);
}

capture::~capture() { delete p_; }
bool capture::set_filter(const std::string &, std::string &) { return false; }
int capture::link() const { return -1; }
int capture::next(frame &, std::string &) { return 0; }
double capture::progress() const { return -1; }
void capture::stop() {}

} // namespace ldpdump

#endif
