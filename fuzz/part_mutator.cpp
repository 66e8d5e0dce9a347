// Mutations that keep an input a zip: unpack it, change one part (mostly its XML bytes, sometimes
// by dropping it), pack it again. A raw byte mutation now and then, and every mutation of an input
// that isn't a readable zip, keeps the zip reader itself under test. Cross-over exchanges parts
// between two workbooks, so that a chart part meets a drawing it wasn't written for.
#include <zip.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <vector>

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize);

namespace {

// A zip that unpacks to more than this isn't worth mutating part by part (the target decides
// what it makes of such a file; the mutator mustn't run out of memory on its behalf).
constexpr size_t kMaxUnpacked = 64u << 20;

struct Entry {
    std::string name;
    std::string bytes;
};

bool Unpack(const uint8_t* data, size_t size, std::vector<Entry>& out) {
    zip_error_t err;
    zip_error_init(&err);
    zip_source_t* src = zip_source_buffer_create(data, size, 0, &err);
    zip_t* za = src ? zip_open_from_source(src, ZIP_RDONLY, &err) : nullptr;
    zip_error_fini(&err);
    if (!za) {
        if (src) zip_source_free(src);
        return false;
    }
    bool ok = true;
    size_t total = 0;
    zip_int64_t count = zip_get_num_entries(za, 0);
    for (zip_int64_t i = 0; ok && i < count; ++i) {
        const char* name = zip_get_name(za, i, 0);
        zip_file_t* zf = name ? zip_fopen_index(za, i, 0) : nullptr;
        if (!zf) {
            ok = false;
            break;
        }
        Entry e{name, {}};
        char buf[65536];
        zip_int64_t n;
        while ((n = zip_fread(zf, buf, sizeof buf)) > 0) {
            total += static_cast<size_t>(n);
            if (total > kMaxUnpacked) break;
            e.bytes.append(buf, static_cast<size_t>(n));
        }
        ok = n == 0 && total <= kMaxUnpacked;
        zip_fclose(zf);
        out.push_back(std::move(e));
    }
    zip_discard(za);
    return ok && !out.empty();
}

// Deflate at the fastest level: packing runs once per mutation.
bool Pack(const std::vector<Entry>& parts, std::string& bytes) {
    zip_error_t err;
    zip_error_init(&err);
    zip_source_t* out = zip_source_buffer_create(nullptr, 0, 0, &err);
    zip_t* za = out ? zip_open_from_source(out, ZIP_TRUNCATE, &err) : nullptr;
    zip_error_fini(&err);
    if (!za) {
        if (out) zip_source_free(out);
        return false;
    }
    zip_source_keep(out);
    bool ok = true;
    for (auto& p : parts) {
        zip_source_t* s = zip_source_buffer(za, p.bytes.data(), p.bytes.size(), 0);
        zip_int64_t idx = s ? zip_file_add(za, p.name.c_str(), s, ZIP_FL_ENC_UTF_8 | ZIP_FL_OVERWRITE) : -1;
        if (idx < 0) {
            if (s) zip_source_free(s);
            ok = false;
            break;
        }
        zip_set_file_compression(za, idx, ZIP_CM_DEFLATE, 1);
    }
    if (!ok) {
        zip_discard(za);
    } else if (zip_close(za) != 0) {
        zip_discard(za);
        ok = false;
    }
    if (!ok) {
        zip_source_free(out);
        return false;
    }
    zip_stat_t st;
    ok = zip_source_stat(out, &st) == 0 && zip_source_open(out) == 0;
    if (ok) {
        bytes.resize(st.size);
        ok = zip_source_read(out, bytes.data(), bytes.size()) == static_cast<zip_int64_t>(st.size);
        zip_source_close(out);
    }
    zip_source_free(out);
    return ok;
}

bool IsMarkup(std::string_view name) {
    auto ends = [&](std::string_view s) { return name.size() >= s.size() && name.substr(name.size() - s.size()) == s; };
    return ends(".xml") || ends(".rels") || ends(".vml");
}

// A part to change: markup parts by preference, where nearly all of the engine's reading is.
size_t PickPart(const std::vector<Entry>& parts, std::minstd_rand& rng) {
    std::vector<size_t> markup;
    for (size_t i = 0; i < parts.size(); ++i)
        if (IsMarkup(parts[i].name)) markup.push_back(i);
    if (markup.empty() || rng() % 16 == 0) return rng() % parts.size();
    return markup[rng() % markup.size()];
}

void MutateBytes(std::string& bytes, std::minstd_rand& rng) {
    size_t size = bytes.size();
    // Room for dictionary insertions, and for a part to grow by a few elements.
    size_t room = size + 64 + std::min<size_t>(size / 8, 4096) + rng() % 256;
    bytes.resize(room);
    size_t n = LLVMFuzzerMutate(reinterpret_cast<uint8_t*>(bytes.data()), size, room);
    bytes.resize(n);
}

size_t Output(const std::string& packed, uint8_t* out, size_t maxSize) {
    if (packed.size() > maxSize) return 0;
    std::memcpy(out, packed.data(), packed.size());
    return packed.size();
}

bool RawOnly() {
    static const bool raw = [] {
        const char* v = std::getenv("PLOTSMITH_FUZZ_RAW");
        return v && *v && std::strcmp(v, "0") != 0;
    }();
    return raw;
}

}  // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned int seed) {
    std::minstd_rand rng(seed);
    std::vector<Entry> parts;
    if (RawOnly() || rng() % 8 == 0 || !Unpack(data, size, parts)) return LLVMFuzzerMutate(data, size, maxSize);

    size_t i = PickPart(parts, rng);
    if (parts.size() > 1 && rng() % 32 == 0) parts.erase(parts.begin() + static_cast<long>(i));
    else MutateBytes(parts[i].bytes, rng);

    std::string packed;
    size_t n = Pack(parts, packed) ? Output(packed, data, maxSize) : 0;
    return n ? n : LLVMFuzzerMutate(data, size, maxSize);
}

extern "C" size_t LLVMFuzzerCustomCrossOver(const uint8_t* data1, size_t size1, const uint8_t* data2, size_t size2,
                                            uint8_t* out, size_t maxOutSize, unsigned int seed) {
    std::minstd_rand rng(seed);
    std::vector<Entry> a, b;
    if (RawOnly() || !Unpack(data1, size1, a) || !Unpack(data2, size2, b)) return 0;

    const Entry& from = b[PickPart(b, rng)];
    Entry* same = nullptr;
    for (auto& e : a)
        if (e.name == from.name) same = &e;
    if (!same) {
        a.push_back(from);
    } else if (rng() % 2 == 0) {
        same->bytes = from.bytes;
    } else {
        // The head of one part on the tail of the other, cut where the markup allows.
        size_t cutA = same->bytes.empty() ? 0 : rng() % same->bytes.size();
        size_t cutB = from.bytes.empty() ? 0 : rng() % from.bytes.size();
        cutA = same->bytes.rfind('<', cutA) == std::string::npos ? cutA : same->bytes.rfind('<', cutA);
        cutB = from.bytes.rfind('<', cutB) == std::string::npos ? cutB : from.bytes.rfind('<', cutB);
        same->bytes = same->bytes.substr(0, cutA) + from.bytes.substr(cutB);
    }
    std::string packed;
    return Pack(a, packed) ? Output(packed, out, maxOutSize) : 0;
}
