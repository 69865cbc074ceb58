// SPDX-License-Identifier: BSD-2-Clause
// Reading the vector files, and the tables that tie message types and field
// names to the library's exported functions and record layouts.
#include "vectors.hpp"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace ldptest {
namespace {

template <class Rec, uint32_t (*F)(const uint8_t *, Rec *, uint32_t)>
uint32_t dec(const uint8_t *m, void *r, uint32_t mod)
{
    return F(m, static_cast<Rec *>(r), mod);
}

template <class Rec, uint32_t (*F)(uint8_t *, Rec *, uint32_t, uint16_t)>
uint32_t enc(uint8_t *b, void *r, uint32_t mod, uint16_t room)
{
    return F(b, static_cast<Rec *>(r), mod, room);
}

#define LIST_AT(R, M) offsetof(R, M)
#define KIND(T, R, PRE, DEC, ENC, ...) \
    msg_kind { T, sizeof(R), {__VA_ARGS__}, PRE, dec<R, DEC>, enc<R, ENC> }

const std::vector<msg_kind> &kinds()
{
    static const std::vector<msg_kind> k = {
        KIND(LDP_MSG_KEEPALIVE, LDP_KeepAliveMsg, LDP_PreParseKeepAliveMsg, LDP_DecodeKeepAliveMsg,
             LDP_EncodeKeepAliveMsg),
        KIND(LDP_MSG_HELLO, LDP_HelloMsg, LDP_PreParseHelloMsg, LDP_DecodeHelloMsg, LDP_EncodeHelloMsg),
        KIND(LDP_MSG_INIT, LDP_InitMsg, LDP_PreParseInitMsg, LDP_DecodeInitMsg, LDP_EncodeInitMsg,
             LIST_AT(LDP_InitMsg, stAtmSess.stRangeList), LIST_AT(LDP_InitMsg, stFrSess.stRangeList),
             LIST_AT(LDP_InitMsg, stCapList)),
        KIND(LDP_MSG_CAPABILITY, LDP_CapabilityMsg, LDP_PreParseCapabilityMsg, LDP_DecodeCapabilityMsg,
             LDP_EncodeCapabilityMsg, LIST_AT(LDP_CapabilityMsg, stCapList)),
        KIND(LDP_MSG_NOTIFICATION, LDP_NotifyMsg, LDP_PreParseNotifMsg, LDP_DecodeNotifMsg, LDP_EncodeNotifMsg,
             LIST_AT(LDP_NotifyMsg, stFecTlv.stFecList)),
        KIND(LDP_MSG_ADDRESS, LDP_AddressMsg, LDP_PreParseAddrMsg, LDP_DecodeAddrMsg, LDP_EncodeAddrMsg),
        KIND(LDP_MSG_ADDRESS_WITHDRAW, LDP_AddressWithdrawMsg, LDP_PreParseAddrWithdrawMsg,
             LDP_DecodeAddrWithdrawMsg, LDP_EncodeAddrWithdrawMsg, LIST_AT(LDP_AddressWithdrawMsg, stFecTlv.stFecList)),
        KIND(LDP_MSG_LABEL_MAPPING, LDP_LabelMappingMsg, LDP_PreParseMappingMsg, LDP_DecodeMappingMsg,
             LDP_EncodeMappingMsg, LIST_AT(LDP_LabelMappingMsg, stFecTlv.stFecList),
             LIST_AT(LDP_LabelMappingMsg, stUnknTlvList)),
        KIND(LDP_MSG_LABEL_REQUEST, LDP_LabelRequestMsg, LDP_PreParseRequestMsg, LDP_DecodeRequestMsg,
             LDP_EncodeReqMsg, LIST_AT(LDP_LabelRequestMsg, stFecTlv.stFecList),
             LIST_AT(LDP_LabelRequestMsg, stErTlv.stHopList), LIST_AT(LDP_LabelRequestMsg, stUnknTlvList)),
        KIND(LDP_MSG_LABEL_WITHDRAW, LDP_LabelWithdrawMsg, LDP_PreParseWithdrawMsg, LDP_DecodeWithdrawMsg,
             LDP_EncodeWithdrawMsg, LIST_AT(LDP_LabelWithdrawMsg, stFecTlv.stFecList),
             LIST_AT(LDP_LabelWithdrawMsg, stUnknTlvList)),
        KIND(LDP_MSG_LABEL_RELEASE, LDP_LabelReleaseMsg, LDP_PreParseReleaseMsg, LDP_DecodeReleaseMsg,
             LDP_EncodeReleaseMsg, LIST_AT(LDP_LabelReleaseMsg, stFecTlv.stFecList),
             LIST_AT(LDP_LabelReleaseMsg, stUnknTlvList)),
        KIND(LDP_MSG_LABEL_ABORT_REQUEST, LDP_LabelRequestAbortMsg, LDP_PreParseReqAbortMsg,
             LDP_DecodeReqAbortMsg, LDP_EncodeAbortReqMsg, LIST_AT(LDP_LabelRequestAbortMsg, stFecTlv.stFecList),
             LIST_AT(LDP_LabelRequestAbortMsg, stUnknTlvList)),
    };
    return k;
}

// A named field of a record, or of the i-th element of one of its lists
// (written "list[i].field" in a vector).
struct field {
    uint16_t type; // 0: any message type
    const char *list;
    size_t list_off;
    const char *name;
    size_t off;
    size_t size;
};

#define FLD(T, R, M) field{T, "", 0, #M, offsetof(R, M), sizeof(static_cast<R *>(nullptr)->M)}
#define ELEM(T, R, L, E, M) field{T, #L, offsetof(R, L), #M, offsetof(E, M), sizeof(static_cast<E *>(nullptr)->M)}

// Two lists every label message record embeds: FEC elements, kept unknown TLVs.
#define LABEL_MSG_FIELDS(T, R)                                              \
    FLD(T, R, stFecTlv.stFecList.ulCount), FLD(T, R, stUnknTlvList.ulCount), \
        ELEM(T, R, stFecTlv.stFecList, LDP_FecElement, ucFecKind),             \
        ELEM(T, R, stUnknTlvList, LDP_UnknownTlv, ulTlvLen)

const std::vector<field> &fields()
{
#define HELLO(M) FLD(LDP_MSG_HELLO, LDP_HelloMsg, M)
#define INIT(M) FLD(LDP_MSG_INIT, LDP_InitMsg, M)
#define CAP(M) FLD(LDP_MSG_CAPABILITY, LDP_CapabilityMsg, M)
#define INIT_CAP(M) ELEM(LDP_MSG_INIT, LDP_InitMsg, stCapList, LDP_CapabilityParam, M)
#define CAP_CAP(M) ELEM(LDP_MSG_CAPABILITY, LDP_CapabilityMsg, stCapList, LDP_CapabilityParam, M)
#define NOTIF(M) FLD(LDP_MSG_NOTIFICATION, LDP_NotifyMsg, M)
#define ADDR(M) FLD(LDP_MSG_ADDRESS, LDP_AddressMsg, M)
#define ADDRWD(M) FLD(LDP_MSG_ADDRESS_WITHDRAW, LDP_AddressWithdrawMsg, M)
#define REQ(M) FLD(LDP_MSG_LABEL_REQUEST, LDP_LabelRequestMsg, M)
#define WDR(M) FLD(LDP_MSG_LABEL_WITHDRAW, LDP_LabelWithdrawMsg, M)
#define REL(M) FLD(LDP_MSG_LABEL_RELEASE, LDP_LabelReleaseMsg, M)
#define ABORT(M) FLD(LDP_MSG_LABEL_ABORT_REQUEST, LDP_LabelRequestAbortMsg, M)
#define MAP(M) FLD(LDP_MSG_LABEL_MAPPING, LDP_LabelMappingMsg, M)
#define MAP_FEC(M) ELEM(LDP_MSG_LABEL_MAPPING, LDP_LabelMappingMsg, stFecTlv.stFecList, LDP_FecElement, M)
    static const std::vector<field> f = {
        FLD(0, LDP_KeepAliveMsg, stMsgHeader.usMsgType),
        FLD(0, LDP_KeepAliveMsg, stMsgHeader.usMsgLen),
        FLD(0, LDP_KeepAliveMsg, stMsgHeader.ulMsgId),
        // Session messages: Hello, Initialization and Capability.
        HELLO(stCommHelloTlv.usTlvType), HELLO(stCommHelloTlv.usTlvLen), HELLO(usHoldTime), HELLO(usHelloFlags),
        HELLO(stIpv4TransTlv.usTlvType), HELLO(stIpv4TransTlv.usTlvLen), HELLO(ulIpv4TransAddr),
        HELLO(stIpv6TransTlv.usTlvType), HELLO(stIpv6TransTlv.usTlvLen), HELLO(aucIpv6TransAddr),
        HELLO(stConfSeqTlv.usTlvType), HELLO(stConfSeqTlv.usTlvLen), HELLO(ulConfSeqNum),
        HELLO(stPrivHelloTlv.usTlvType), HELLO(stPrivHelloTlv.usTlvLen), HELLO(aucPrivHelloValue),
        HELLO(ucHelloOptFlags), INIT(stCommSess.stTlvHeader.usTlvType), INIT(stCommSess.stTlvHeader.usTlvLen),
        INIT(stCommSess.usProtocolVersion), INIT(stCommSess.usKeepAliveTime), INIT(stCommSess.usAdPvLim),
        INIT(stCommSess.usMaxPduLen), INIT(stCommSess.ulReceiverLsrId), INIT(stCommSess.usReceiverLabelSpace),
        INIT(stFtSess.stTlvHeader.usTlvType), INIT(stFtSess.stTlvHeader.usTlvLen), INIT(stFtSess.usFtFlags),
        INIT(stFtSess.usFtReserved), INIT(stFtSess.ulFtReconnectTimeout), INIT(stFtSess.ulFtRecoveryTime),
        INIT(stCapList.ulCount), INIT(ucOptFlags), INIT(ucOptFlags2),
        INIT_CAP(stTlvHeader.usTlvType), INIT_CAP(stTlvHeader.usTlvLen), INIT_CAP(ucSByte), INIT_CAP(pucCapData),
        CAP(stCapList.ulCount), CAP(ulCapFlags),
        CAP_CAP(stTlvHeader.usTlvType), CAP_CAP(stTlvHeader.usTlvLen), CAP_CAP(ucSByte), CAP_CAP(pucCapData),
        NOTIF(stStatusTlv.ulStatusCode), NOTIF(stStatusTlv.ulStatusMsgId), NOTIF(stStatusTlv.usStatusMsgType),
        NOTIF(ulExtStatus), NOTIF(stRetPduTlv.usTlvLen), NOTIF(stRetMsgTlv.usTlvLen),
        NOTIF(stLspIdTlv.usLocalCrLspId), NOTIF(stLspIdTlv.ulIngressLsrId), NOTIF(ulLabelReqMsgId),
        NOTIF(stFecTlv.stFecList.ulCount), NOTIF(stPwIfParamTlv.usTlvLen), NOTIF(stMpStatusTlv.ucStatusCode),
        NOTIF(stLabelTlv.ulLabel), NOTIF(ucNotifFlags), NOTIF(ucNotifFlags2), ADDR(stAddrListTlv.usTlvLen),
        ADDR(usAddrFamily), ADDR(usAddrCount), ADDRWD(stAddrListTlv.usTlvLen), ADDRWD(usAddrFamily),
        ADDRWD(usAddrCount), ADDRWD(stFecTlv.stFecList.ulCount), ADDRWD(ucAddrWdFlags),
        // Label Request, Withdraw, Release and Abort Request.
        LABEL_MSG_FIELDS(LDP_MSG_LABEL_REQUEST, LDP_LabelRequestMsg),
        REQ(ucOptFlags1), REQ(ucOptFlags2), REQ(stLabelTlv.ulLabel), REQ(stLabelTlv.usLabelKind),
        REQ(stHopCountTlv.ucHopCount), REQ(stPathVectorTlv.usLsrIdCount),
        LABEL_MSG_FIELDS(LDP_MSG_LABEL_WITHDRAW, LDP_LabelWithdrawMsg),
        WDR(ucLblFlags), WDR(stLabelTlv.ulLabel), WDR(stLabelTlv.usLabelKind),
        LABEL_MSG_FIELDS(LDP_MSG_LABEL_RELEASE, LDP_LabelReleaseMsg),
        REL(ucLblFlags), REL(stLabelTlv.ulLabel), REL(stLabelTlv.usLabelKind), REL(stStatusTlv.ulStatusCode),
        REL(stStatusTlv.ulStatusMsgId), REL(stStatusTlv.usStatusMsgType),
        LABEL_MSG_FIELDS(LDP_MSG_LABEL_ABORT_REQUEST, LDP_LabelRequestAbortMsg),
        ABORT(stLabelReqIdTlv.usTlvLen), ABORT(ulLabelReqMsgId), ABORT(ucAbortFlags),
        // FEC family: the FEC TLV and its elements, the MP Status TLV (in Label Mapping).
        LABEL_MSG_FIELDS(LDP_MSG_LABEL_MAPPING, LDP_LabelMappingMsg), MAP(stFecTlv.stTlvHeader.usTlvLen),
        MAP_FEC(stBody.ucFecType), MAP_FEC(stBody.usAddrFamily), MAP_FEC(stBody.ucPrefixLen), MAP_FEC(stBody.aucAddr),
        MAP_FEC(stBody.usOpaqueLen),
        MAP(stMpStatusTlv.usElemLen), MAP(stMpStatusTlv.ucElemType), MAP(stMpStatusTlv.ucStatusCode),
        MAP(stMpStatusTlv.ucElemFlags), MAP(ucOptFlags2),
        // Label Mapping's label TLVs.
        MAP(stLabelTlv.stTlvHeader.usTlvType), MAP(stLabelTlv.ulLabel), MAP(stLabelTlv.usLabelKind),
        MAP(stLabelReqIdTlv.ulReqMsgId), MAP(stHopCountTlv.ucHopCount), MAP(stPathVectorTlv.usLsrIdCount),
        MAP(stShortTlv.stTlvHeader.usTlvType), MAP(stShortTlv.usValue), MAP(stPrivTlv.aucValue), MAP(ucOptFlags1),
    };
    return f;
}

// A result code by its macro name without the prefix (BAD_TLV_LEN), or a number.
uint32_t parse_code(const std::string &s)
{
    for (const uint32_t code : {0u, 1u, 4u, 5u, 6u, 7u, 8u, 12u, 22u, 23u, 25u, 106u, 108u, 0xFFFFFFFFu}) {
        const std::string name = LDP_GetResultName(code);
        if (name.ends_with("_" + s) || name == "LDP_" + s) {
            return code;
        }
    }
    char *end = nullptr;
    const unsigned long v = std::strtoul(s.c_str(), &end, 0);
    if (s.empty() || *end != '\0') {
        ADD_FAILURE() << "unknown result code '" << s << "'";
    }
    return uint32_t(v);
}

void parse_rc(vec_case &c, std::istringstream &in)
{
    std::string w;
    bool direct = false; // pre-parse and decoder named too: they are run as well
    while (in >> w) {
        const auto eq = w.find('=');
        if (eq == std::string::npos) {
            c.pre = c.dec = parse_code(w);
            direct = true;
            continue;
        }
        const std::string key = w.substr(0, eq);
        const uint32_t code = parse_code(w.substr(eq + 1));
        if (key == "pre" || key == "dec") {
            (key == "pre" ? c.pre : c.dec) = code;
            direct = true;
        } else if (key == "entry") {
            c.entry_only = true;
            c.entry = code;
        } else {
            ADD_FAILURE() << "bad rc item '" << w << "'";
        }
    }
    if (!c.entry_only) {
        c.entry = c.pre != LDP_OK ? c.pre : c.dec;
    } else if (direct) {
        c.entry_only = false; // LDP_Decode refuses what the direct calls judge
    }
}

void load_file(const std::filesystem::path &path, std::vector<vec_case> &out)
{
    std::ifstream in(path);
    const std::string file = path.stem().string();
    std::string raw, key;
    int line_no = 0;
    vec_case *cur = nullptr;
    while (std::getline(in, raw)) {
        ++line_no;
        const std::string line = raw.substr(0, raw.find('#'));
        if (line.find_first_not_of(" \t\r") == std::string::npos) {
            continue;
        }
        std::istringstream words(line);
        const bool continued = line[0] == ' ' || line[0] == '\t';
        if (!continued) {
            words >> key;
        }
        if (key == "case") {
            out.push_back(vec_case{});
            cur = &out.back();
            cur->file = file;
            cur->line = line_no;
            words >> cur->name;
            continue;
        }
        if (cur == nullptr) {
            ADD_FAILURE() << path << ":" << line_no << ": text before the first case";
            continue;
        }
        std::string rest;
        std::getline(words, rest);
        if (key == "msg") {
            const bytes b = hex(rest);
            cur->msg.insert(cur->msg.end(), b.begin(), b.end());
        } else if (key == "enc") {
            cur->has_enc = true;
            if (rest.find("same") != std::string::npos) {
                cur->enc = cur->msg;
            } else {
                const bytes b = hex(rest);
                cur->enc.insert(cur->enc.end(), b.begin(), b.end());
            }
        } else if (key == "rc") {
            std::istringstream r(rest);
            parse_rc(*cur, r);
        } else if (key == "buflen") {
            cur->buf_len = std::stoll(rest, nullptr, 0);
        } else if (key == "short") {
            std::istringstream r(rest);
            std::string w;
            r >> w;
            cur->short_rc = parse_code(w);
        } else if (key == "nomem") {
            std::istringstream r(rest);
            cur->nomem.clear();
            for (std::string w; r >> w;) {
                cur->nomem.push_back(parse_code(w));
            }
        } else if (key == "rec") {
            std::istringstream r(rest);
            for (std::string w; r >> w;) {
                const auto eq = w.find('=');
                cur->fields.emplace_back(w.substr(0, eq), eq == std::string::npos ? "" : w.substr(eq + 1));
            }
        } else if (key == "assert" || key == "allocs") {
            std::istringstream r(rest);
            for (std::string w; r >> w;) {
                (key == "assert" ? cur->asserts : cur->allocs).push_back(w);
            }
        } else {
            ADD_FAILURE() << path << ":" << line_no << ": unknown key '" << key << "'";
        }
    }
}

} // namespace

const std::vector<vec_case> &all_vectors()
{
    static const std::vector<vec_case> all = [] {
        std::vector<std::filesystem::path> files;
        for (const auto &e : std::filesystem::directory_iterator(LDP_VECTOR_DIR)) {
            if (e.path().extension() == ".vec") {
                files.push_back(e.path());
            }
        }
        std::sort(files.begin(), files.end());
        std::vector<vec_case> v;
        for (const auto &f : files) {
            load_file(f, v);
        }
        return v;
    }();
    return all;
}

const bytes &vector_msg(const std::string &file, const std::string &name)
{
    for (const auto &c : all_vectors()) {
        if (c.file == file && c.name == name) {
            return c.msg;
        }
    }
    static const bytes none;
    ADD_FAILURE() << "no vector " << file << ":" << name;
    return none;
}

const msg_kind *find_kind(uint16_t masked_type)
{
    for (const auto &k : kinds()) {
        if (k.type == masked_type) {
            return &k;
        }
    }
    return nullptr;
}

void *new_prepared(const msg_kind &k)
{
    auto *rec = static_cast<uint8_t *>(PLAT_SimpleAlloc_F(kModule, uint32_t(k.size), "test", __LINE__));
    std::memset(rec, 0, k.size);
    for (const size_t off : k.lists) {
        make_empty(reinterpret_cast<SLL_List *>(rec + off));
    }
    return rec;
}

// Compare one "name=value" of a vector against a decoded record: integers in
// host order for fields of up to 4 bytes, else the leading bytes in hex.
std::string check_field(uint16_t type, const void *rec, const std::string &name, const std::string &want)
{
    std::string list, member = name;
    long index = 0;
    const auto br = name.find('[');
    if (br != std::string::npos) {
        list = name.substr(0, br);
        index = std::stol(name.substr(br + 1));
        member = name.substr(name.find("].") + 2);
    }
    for (const field &f : fields()) {
        // A field, and a list, may be named by their last members alone.
        auto names = [](const std::string &full, const std::string &part) {
            return full == part || (!part.empty() && ("." + full).ends_with("." + part));
        };
        if ((f.type != 0 && f.type != type) || !names(f.list, list) || !names(f.name, member)) {
            continue;
        }
        const auto *p = static_cast<const uint8_t *>(rec);
        if (!list.empty()) {
            const auto *head = reinterpret_cast<const SLL_List *>(p + f.list_off);
            const SLL_Node *node = head->stHead.pNext;
            for (long i = 0; i < index && node != &head->stHead; ++i) {
                node = node->pNext;
            }
            if (node == &head->stHead) {
                return name + ": no such element";
            }
            p = reinterpret_cast<const uint8_t *>(node);
        }
        p += f.off;
        if (f.size <= 4 && std::string(f.name).find("auc") == std::string::npos) {
            uint16_t v16 = 0; // a host-order integer of 1, 2 or 4 bytes, read byte-wise
            uint32_t v = f.size == 1 ? p[0] : 0;
            std::memcpy(f.size == 2 ? static_cast<void *>(&v16) : &v, p, f.size == 1 ? 0 : f.size);
            v += v16;
            const uint32_t w = uint32_t(std::strtoul(want.c_str(), nullptr, 0));
            return v == w ? "" : name + " is " + std::to_string(v) + ", want " + want;
        }
        const bytes w = hex(want);
        if (w.size() > f.size) {
            return name + ": value longer than the field";
        }
        const std::string got = to_hex(p, w.size());
        return got == to_hex(w) ? "" : name + " is " + got + ", want " + to_hex(w);
    }
    return name + ": no such field in the driver's table";
}

} // namespace ldptest
