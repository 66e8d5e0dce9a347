#include "xlsx/package.h"
#include "xlsx/ooxml.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <deque>
#include <filesystem>
#include <fstream>
#include <map>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zip.h>

namespace xlsx {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kContentTypesPart = "[Content_Types].xml";
constexpr const char* kContentTypesNs = "http://schemas.openxmlformats.org/package/2006/content-types";
constexpr const char* kRelationshipsNs = "http://schemas.openxmlformats.org/package/2006/relationships";
constexpr const char* kRelsContentType = "application/vnd.openxmlformats-package.relationships+xml";

// Whitespace-only text is kept: `<t xml:space="preserve"> </t>` must survive an edit.
constexpr unsigned kParseOptions = pugi::parse_default | pugi::parse_declaration | pugi::parse_ws_pcdata |
                                   pugi::parse_pi | pugi::parse_comments;

// ---------------------------------------------------------------------------------------------
// Names and paths
// ---------------------------------------------------------------------------------------------

bool EqualNoCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; };
               return lower(x) == lower(y);
           });
}

std::string_view FolderOf(std::string_view part) {
    auto slash = part.rfind('/');
    return slash == std::string_view::npos ? std::string_view{} : part.substr(0, slash);
}

std::string_view ExtensionOf(std::string_view part) {
    auto name = part.substr(part.rfind('/') + 1);
    auto dot = name.rfind('.');
    return dot == std::string_view::npos ? std::string_view{} : name.substr(dot + 1);
}

std::vector<std::string_view> Segments(std::string_view path) {
    std::vector<std::string_view> out;
    while (!path.empty()) {
        auto slash = path.find('/');
        auto seg = path.substr(0, slash);
        if (!seg.empty()) out.push_back(seg);
        if (slash == std::string_view::npos) break;
        path.remove_prefix(slash + 1);
    }
    return out;
}

std::string Join(const std::vector<std::string_view>& segs) {
    std::string out;
    for (auto& s : segs) {
        if (!out.empty()) out += '/';
        out += s;
    }
    return out;
}

// The target a relationship from `source` writes for `targetPart`, as the application writes it.
std::string RelativeTarget(std::string_view source, std::string_view targetPart) {
    auto from = Segments(FolderOf(source));
    auto to = Segments(targetPart);
    size_t common = 0;
    while (common < from.size() && common + 1 < to.size() && from[common] == to[common]) ++common;
    std::string out;
    for (size_t i = common; i < from.size(); ++i) out += "../";
    for (size_t i = common; i < to.size(); ++i) {
        out += to[i];
        if (i + 1 < to.size()) out += '/';
    }
    return out;
}

std::string Quoted(std::string_view text) { return "'" + std::string(text) + "'"; }

// ---------------------------------------------------------------------------------------------
// File errors
// ---------------------------------------------------------------------------------------------

std::string Reason(int err, bool creating = false) {
    switch (err) {
        case ENOENT: return creating ? "no such folder" : "no such file";
        case EACCES:
        case EPERM: return "permission denied";
        case EISDIR: return "it is a folder";
        case ENOTDIR: return "part of the path is not a folder";
        case EROFS: return "the disk is read-only";
        case ENOSPC: return "the disk is full";
        case EDQUOT: return "the disk quota is exceeded";
        case ENAMETOOLONG: return "the name is too long";
        case ELOOP: return "too many symbolic links";
        case EBUSY:
        case ETXTBSY:
        case EWOULDBLOCK: return "the file is locked by another program";
        default: {
            std::string text = std::strerror(err);
            if (!text.empty()) text[0] = char(std::tolower(static_cast<unsigned char>(text[0])));
            return text;
        }
    }
}

// A lock another program holds on the whole file: a POSIX lock, or with flockToo a flock.
bool LockedByOther(int fd, bool forWriting, bool flockToo = true) {
    if (flockToo) {
        if (flock(fd, (forWriting ? LOCK_EX : LOCK_SH) | LOCK_NB) != 0) return errno == EWOULDBLOCK;
        flock(fd, LOCK_UN);
    }
    struct flock fl {};
    fl.l_type = forWriting ? F_WRLCK : F_RDLCK;
    fl.l_whence = SEEK_SET;
    if (fcntl(fd, F_GETLK, &fl) == 0 && fl.l_type != F_UNLCK && fl.l_pid != getpid()) return true;
    return false;
}

class Fd {
public:
    explicit Fd(int fd = -1) : fd_(fd) {}
    ~Fd() {
        if (fd_ >= 0) ::close(fd_);
    }
    Fd(Fd&& other) noexcept : fd_(other.release()) {}
    Fd& operator=(Fd&& other) noexcept {
        if (this != &other) {
            if (fd_ >= 0) ::close(fd_);
            fd_ = other.release();
        }
        return *this;
    }
    int get() const { return fd_; }
    int release() { return std::exchange(fd_, -1); }

private:
    int fd_;
};

// Another program's save renames a new inode over the path; an edit in place changes size or time.
bool SameFile(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size &&
           a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
}

bool SameInode(const struct stat& a, const struct stat& b) { return a.st_dev == b.st_dev && a.st_ino == b.st_ino; }

std::string NotRegular(const struct stat& st) {
    if (S_ISDIR(st.st_mode)) return Reason(EISDIR);
    if (S_ISFIFO(st.st_mode)) return "it is a pipe, not a file";
    if (S_ISCHR(st.st_mode) || S_ISBLK(st.st_mode)) return "it is a device, not a file";
    return "it is not a regular file";
}

std::string InMiB(std::uint64_t bytes) {
    return bytes % (1 << 20) == 0 ? std::to_string(bytes >> 20) + " MiB" : std::to_string(bytes) + " bytes";
}

std::string TooBig(const std::string& path, std::uint64_t limit) {
    return "cannot open " + Quoted(path) + ": it inflates to more than the limit of " + InMiB(limit);
}

// Opens the workbook without ever blocking on a pipe or a device, and takes the writer lock when
// asked. `st` answers the file as read, to tell at save whether it was replaced meanwhile.
Fd OpenWorkbookFile(const std::string& path, WriterLock lock, struct stat& st) {
    auto fail = [&](const std::string& why) { return PackageError("cannot open " + Quoted(path) + ": " + why); };
    for (;;) {
        Fd fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
        if (fd.get() < 0) throw fail(errno == ENXIO ? std::string("it is not a regular file") : Reason(errno));
        if (fstat(fd.get(), &st) != 0) throw fail(Reason(errno));
        if (!S_ISREG(st.st_mode)) throw fail(NotRegular(st));
        if (lock == WriterLock::None) {
            if (LockedByOther(fd.get(), false)) throw fail(Reason(EWOULDBLOCK));
            return fd;
        }
        if (flock(fd.get(), LOCK_EX | (lock == WriterLock::Refuse ? LOCK_NB : 0)) != 0) {
            if (errno == EINTR) continue;
            throw fail(errno == EWOULDBLOCK ? "another plotsmith (or program) is writing it" : Reason(errno));
        }
        if (LockedByOther(fd.get(), true, false)) throw fail(Reason(EWOULDBLOCK));
        // The lock is on the inode opened. A writer before us that saved meanwhile renamed a new
        // inode over the path and left us the old one: start again on what the path names now.
        struct stat now {};
        if (::stat(path.c_str(), &now) == 0 && SameInode(now, st) && fstat(fd.get(), &st) == 0) return fd;
    }
}

std::string ReadWholeFile(const std::string& path, int fd, const struct stat& st, std::uint64_t limit) {
    auto fail = [&](const std::string& why) { return PackageError("cannot open " + Quoted(path) + ": " + why); };
    // The zip is held whole beside its parts, and stored parts are as long inflated.
    if (static_cast<std::uint64_t>(st.st_size) > limit) throw PackageError(TooBig(path, limit));
    std::string data;
    data.resize(static_cast<size_t>(std::max<off_t>(st.st_size, 0)));
    size_t done = 0;
    for (;;) {
        if (done == data.size()) {
            if (done >= limit) throw PackageError(TooBig(path, limit));
            data.resize(data.size() + 65536);
        }
        ssize_t n = ::read(fd, data.data() + done, data.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) throw fail(Reason(errno));
        if (n == 0) break;
        done += static_cast<size_t>(n);
    }
    data.resize(done);
    return data;
}

// Temporary files that killed saves left beside the workbook, ".NAME.XXXXXX" as mkstemp names
// them. A save holds a lock on its temporary file until the rename, so one nobody holds is garbage.
void RemoveStaleTemporaries(const fs::path& folder, const std::string& name) {
    const std::string prefix = "." + name + ".";
    std::error_code ec;
    for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
        std::string file = it->path().filename().string();
        if (file.size() != prefix.size() + 6 || file.compare(0, prefix.size(), prefix) != 0 ||
            !std::all_of(file.begin() + prefix.size(), file.end(), [](char c) { return std::isalnum(uint8_t(c)); }))
            continue;
        Fd fd(::open(it->path().c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
        struct stat st {}, now {};
        if (fd.get() < 0 || fstat(fd.get(), &st) != 0 || !S_ISREG(st.st_mode)) continue;
        if (flock(fd.get(), LOCK_EX | LOCK_NB) != 0) continue;  // a save under way
        if (::lstat(it->path().c_str(), &now) == 0 && SameInode(now, st)) ::unlink(it->path().c_str());
    }
}

// The current umask without changing it (umask() would race with other threads).
mode_t CurrentUmask() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind("Umask:", 0) == 0) return static_cast<mode_t>(std::stoul(line.substr(6), nullptr, 8));
    }
    return 022;
}

// ---------------------------------------------------------------------------------------------
// XML
// ---------------------------------------------------------------------------------------------

struct StringWriter : pugi::xml_writer {
    std::string& out;
    explicit StringWriter(std::string& o) : out(o) {}
    void write(const void* data, size_t size) override { out.append(static_cast<const char*>(data), size); }
};

// ---------------------------------------------------------------------------------------------
// The package
// ---------------------------------------------------------------------------------------------

struct Part {
    std::string name;
    std::string bytes;                         // what was read or put; stale once the DOM is edited
    std::unique_ptr<pugi::xml_document> doc;   // parsed on first use
    bool domIsMaster = false;                  // edited: bytes come from the DOM
    bool changed = false;
    zip_int64_t deflatedEntry = -1;            // its deflated entry in the file read, copied while unchanged
};

// The zip read, kept open so that a save copies the unchanged parts' deflated bytes as they are.
class SourceZip {
public:
    SourceZip() = default;
    SourceZip(const SourceZip&) = delete;
    SourceZip& operator=(const SourceZip&) = delete;
    ~SourceZip() {
        if (za_) zip_discard(za_);
    }
    // `data` becomes the zip's; nullptr with the error when it is no zip.
    zip_t* Open(std::string data, zip_error_t& err) {
        data_ = std::move(data);
        zip_source_t* src = zip_source_buffer_create(data_.data(), data_.size(), 0, &err);
        za_ = src ? zip_open_from_source(src, ZIP_RDONLY, &err) : nullptr;
        if (!za_ && src) zip_source_free(src);
        return za_;
    }
    const std::string& data() const { return data_; }
    zip_t* get() const { return za_; }

private:
    std::string data_;
    zip_t* za_ = nullptr;
};

class PackageImpl final : public Package {
public:
    explicit PackageImpl(std::string path) : path_(std::move(path)) {}

    // The file read, kept to tell at save whether another program replaced it; with a writer
    // lock its descriptor holds the lock.
    void Opened(Fd file, const struct stat& st, bool holdLock);
    void Load(std::string data, std::uint64_t limit);
    void InitEmpty();

    bool Has(std::string_view part) const override { return Find(part) != nullptr; }
    std::vector<std::string> Parts() const override;
    std::string Bytes(std::string_view part) const override;
    const pugi::xml_document& Read(std::string_view part) override { return Doc(Need(part)); }
    pugi::xml_document& Edit(std::string_view part) override;
    bool Changed(std::string_view part) const override;

    void Put(std::string_view part, std::string bytes, std::string_view contentType) override;
    pugi::xml_document& PutXml(std::string_view part, std::string_view contentType) override;
    void Remove(std::string_view part) override;
    std::string ContentType(std::string_view part) const override;

    std::vector<Relationship> Rels(std::string_view source) override;
    std::string Target(std::string_view source, std::string_view rId) override;
    std::string AddRel(std::string_view source, std::string_view type, std::string_view targetPart) override;
    void RemoveRel(std::string_view source, std::string_view rId) override;

    void Save(const std::string& path) override;

private:
    Part* Find(std::string_view name) const {
        auto it = index_.find(name);
        return it == index_.end() ? nullptr : it->second;
    }
    Part& Need(std::string_view name) const;
    Part& Add(std::string_view name);
    pugi::xml_document& Doc(Part& p);
    std::string Invalid(const std::string& why) const override;

    // Content types.
    pugi::xml_node Types() { return Doc(Need(kContentTypesPart)).document_element(); }
    pugi::xml_node OverrideOf(pugi::xml_node types, std::string_view part) const;
    pugi::xml_node DefaultOf(pugi::xml_node types, std::string_view ext) const;
    void SetContentType(std::string_view part, std::string_view type);
    void DropOverride(std::string_view part);

    std::string ZipBytes();
    void CheckUnchangedOnDisk(const fs::path& target) const;

    std::string path_;
    fs::path openedPath_;    // canonical; empty for a new package
    struct stat opened_ {};  // the file as read, then as last saved
    Fd lock_;                // the writer lock, when held
    std::vector<std::unique_ptr<Part>> parts_;
    std::map<std::string, Part*, std::less<>> index_;
    SourceZip source_;
};

std::string PackageImpl::Invalid(const std::string& why) const {
    return (path_.empty() ? std::string("the new workbook") : Quoted(path_)) +
           " is not a valid workbook package: " + why;
}

Part& PackageImpl::Need(std::string_view name) const {
    Part* p = Find(name);
    if (!p) throw PackageError("the workbook package has no part " + Quoted(name));
    return *p;
}

Part& PackageImpl::Add(std::string_view name) {
    auto& p = parts_.emplace_back(std::make_unique<Part>());
    p->name = std::string(name);
    index_.emplace(p->name, p.get());
    return *p;
}

pugi::xml_document& PackageImpl::Doc(Part& p) {
    if (!p.doc) {
        auto doc = std::make_unique<pugi::xml_document>();
        auto result = doc->load_buffer(p.bytes.data(), p.bytes.size(), kParseOptions);
        if (!result) {
            throw PackageError(Invalid("part " + Quoted(p.name) + " is not well-formed XML (" + result.description() +
                                       " at offset " + std::to_string(result.offset) + ")"));
        }
        NormalizeNamespaces(*doc, p.bytes);
        p.doc = std::move(doc);
    }
    return *p.doc;
}

// ---------------------------------------------------------------------------------------------
// Reading the zip
// ---------------------------------------------------------------------------------------------

void PackageImpl::Opened(Fd file, const struct stat& st, bool holdLock) {
    std::error_code ec;
    openedPath_ = fs::weakly_canonical(fs::absolute(path_), ec);
    opened_ = st;
    if (holdLock) lock_ = std::move(file);
}

void PackageImpl::Load(std::string file, std::uint64_t limit) {
    if (file.empty()) throw PackageError(Invalid("the file is empty"));
    if (file.compare(0, 8, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1") == 0) {
        throw PackageError(Invalid("it is password-protected or in the old binary format"));
    }
    zip_error_t err;
    zip_error_init(&err);
    zip_t* za = source_.Open(std::move(file), err);
    const std::string& data = source_.data();
    if (!za) {
        int code = zip_error_code_zip(&err);
        zip_error_fini(&err);
        bool looksLikeZip = data.compare(0, 4, "PK\x03\x04") == 0;
        if (code == ZIP_ER_NOZIP && !looksLikeZip) throw PackageError(Invalid("not a zip file"));
        throw PackageError(Invalid("the zip data is damaged or incomplete"));
    }
    zip_error_fini(&err);

    std::uint64_t inflated = 0;
    zip_int64_t count = zip_get_num_entries(za, 0);
    for (zip_int64_t i = 0; i < count; ++i) {
        const char* rawName = zip_get_name(za, i, 0);
        if (!rawName) throw PackageError(Invalid("the zip data is damaged or incomplete"));
        std::string_view name = rawName;
        if (!name.empty() && name.front() == '/') name.remove_prefix(1);
        if (name.empty() || name.back() == '/') continue;  // folder entries carry no part
        if (Find(name)) throw PackageError(Invalid("part " + Quoted(name) + " appears twice"));

        // Sizes come from the central directory, which can lie: they are checked against the
        // archive before memory is set aside, and the inflated bytes against them.
        zip_stat_t st;
        zip_stat_init(&st);
        if (zip_stat_index(za, i, 0, &st) != 0) throw PackageError(Invalid("the zip data is damaged or incomplete"));
        const bool sized = st.valid & ZIP_STAT_SIZE;
        if (sized && (st.valid & ZIP_STAT_COMP_SIZE) && (st.valid & ZIP_STAT_COMP_METHOD)) {
            // A deflate stream inflates to at most 1032 times its length.
            bool impossible = st.comp_size > data.size() ||
                              (st.comp_method == ZIP_CM_STORE && st.size > st.comp_size) ||
                              (st.comp_method == ZIP_CM_DEFLATE && st.size > st.comp_size * 1032 + 1024);
            if (impossible)
                throw PackageError(Invalid("part " + Quoted(name) + " is damaged (its declared size is impossible)"));
        }
        if (sized && st.size > limit - inflated) throw PackageError(TooBig(path_, limit));
        std::string bytes;
        if (sized) bytes.reserve(static_cast<size_t>(st.size));
        zip_file_t* zf = zip_fopen_index(za, i, 0);
        if (!zf) {
            int code = zip_error_code_zip(zip_get_error(za));
            throw PackageError(Invalid(code == ZIP_ER_ENCRNOTSUPP || code == ZIP_ER_NOPASSWD
                                           ? "part " + Quoted(name) + " is encrypted"
                                           : "part " + Quoted(name) + " cannot be read"));
        }
        char buf[65536];
        zip_int64_t n;
        bool overDeclared = false, overLimit = false;
        while ((n = zip_fread(zf, buf, sizeof buf)) > 0) {
            overDeclared = sized && bytes.size() + n > st.size;
            overLimit = inflated + bytes.size() + n > limit;
            if (overDeclared || overLimit) break;
            bytes.append(buf, static_cast<size_t>(n));
        }
        zip_fclose(zf);
        if (overLimit && !overDeclared) throw PackageError(TooBig(path_, limit));
        if (n < 0 || overDeclared || (sized && bytes.size() != st.size))
            throw PackageError(Invalid("part " + Quoted(name) + " is damaged"));
        inflated += bytes.size();
        Part& part = Add(name);
        part.bytes = std::move(bytes);
        // Stored parts are deflated on save, as the application writes every part.
        if ((st.valid & ZIP_STAT_COMP_METHOD) && st.comp_method == ZIP_CM_DEFLATE) part.deflatedEntry = i;
    }

    if (!Find(kContentTypesPart)) throw PackageError(Invalid("[Content_Types].xml is missing"));
    if (!Types()) throw PackageError(Invalid("[Content_Types].xml has no content"));
}

void PackageImpl::InitEmpty() {
    Part& ct = Add(kContentTypesPart);
    ct.doc = std::make_unique<pugi::xml_document>();
    ct.domIsMaster = true;
    ct.changed = true;
    auto types = ct.doc->append_child("Types");
    types.append_attribute("xmlns") = kContentTypesNs;
    auto rels = types.append_child("Default");
    rels.append_attribute("Extension") = "rels";
    rels.append_attribute("ContentType") = kRelsContentType;
    auto xml = types.append_child("Default");
    xml.append_attribute("Extension") = "xml";
    xml.append_attribute("ContentType") = "application/xml";
}

// ---------------------------------------------------------------------------------------------
// Parts
// ---------------------------------------------------------------------------------------------

std::vector<std::string> PackageImpl::Parts() const {
    std::vector<std::string> out;
    out.reserve(parts_.size());
    for (auto& p : parts_) out.push_back(p->name);
    return out;
}

std::string PackageImpl::Bytes(std::string_view part) const {
    const Part& p = Need(part);
    return p.domIsMaster ? SerializeXml(*p.doc) : p.bytes;
}

pugi::xml_document& PackageImpl::Edit(std::string_view part) {
    Part& p = Need(part);
    auto& doc = Doc(p);
    if (!p.domIsMaster) {
        p.domIsMaster = true;
        p.bytes.clear();
        p.bytes.shrink_to_fit();
    }
    p.changed = true;
    return doc;
}

bool PackageImpl::Changed(std::string_view part) const {
    const Part* p = Find(part);
    return p && p->changed;
}

void PackageImpl::Put(std::string_view part, std::string bytes, std::string_view contentType) {
    Part* p = Find(part);
    if (!p) p = &Add(part);
    p->bytes = std::move(bytes);
    p->doc.reset();
    p->domIsMaster = false;
    p->changed = true;
    SetContentType(part, contentType);
}

pugi::xml_document& PackageImpl::PutXml(std::string_view part, std::string_view contentType) {
    Part* p = Find(part);
    if (!p) p = &Add(part);
    p->bytes.clear();
    p->doc = std::make_unique<pugi::xml_document>();
    p->domIsMaster = true;
    p->changed = true;
    SetContentType(part, contentType);
    return *p->doc;
}

void PackageImpl::Remove(std::string_view part) {
    if (part == kContentTypesPart) throw PackageError("[Content_Types].xml cannot be removed");
    std::string name(part);  // `part` may point into the part being erased
    if (Part* p = Find(name)) {
        index_.erase(index_.find(name));
        parts_.erase(std::find_if(parts_.begin(), parts_.end(), [&](auto& q) { return q.get() == p; }));
    }
    DropOverride(name);
    std::string rels = RelsPartOf(name);
    if (Find(rels)) Remove(rels);
}

// ---------------------------------------------------------------------------------------------
// Content types
// ---------------------------------------------------------------------------------------------

// Part names compare without regard to ASCII case, as the package format says.
pugi::xml_node PackageImpl::OverrideOf(pugi::xml_node types, std::string_view part) const {
    for (auto o : types.children("Override")) {
        std::string_view name = o.attribute("PartName").value();
        if (!name.empty() && name.front() == '/') name.remove_prefix(1);
        if (EqualNoCase(name, part)) return o;
    }
    return {};
}

pugi::xml_node PackageImpl::DefaultOf(pugi::xml_node types, std::string_view ext) const {
    for (auto d : types.children("Default")) {
        if (EqualNoCase(d.attribute("Extension").value(), ext)) return d;
    }
    return {};
}

std::string PackageImpl::ContentType(std::string_view part) const {
    auto& self = const_cast<PackageImpl&>(*this);  // parsing on demand is not a change
    auto types = self.Types();
    if (auto o = OverrideOf(types, part)) return o.attribute("ContentType").value();
    auto ext = ExtensionOf(part);
    if (auto d = ext.empty() ? pugi::xml_node{} : DefaultOf(types, ext)) return d.attribute("ContentType").value();
    return {};
}

void PackageImpl::SetContentType(std::string_view part, std::string_view type) {
    if (part == kContentTypesPart) return;
    if (type.empty() && ExtensionOf(part) == "rels") type = kRelsContentType;
    if (type.empty()) return;
    auto types = Types();
    if (auto o = OverrideOf(types, part)) {
        if (o.attribute("ContentType").value() != type) {
            Edit(kContentTypesPart);
            o.attribute("ContentType").set_value(std::string(type).c_str());
        }
        return;
    }
    auto ext = ExtensionOf(part);
    auto def = ext.empty() ? pugi::xml_node{} : DefaultOf(types, ext);
    if (def && def.attribute("ContentType").value() == type) return;
    Edit(kContentTypesPart);
    pugi::xml_node added;
    if (!def && !ext.empty() && !EqualNoCase(ext, "xml")) {
        // Media, VML and binaries get a Default for their extension, as the application writes them.
        pugi::xml_node lastDefault;
        for (auto d : types.children("Default")) lastDefault = d;
        added = lastDefault ? types.insert_child_after("Default", lastDefault) : types.prepend_child("Default");
        added.append_attribute("Extension") = std::string(ext).c_str();
    } else {
        added = types.append_child("Override");
        added.append_attribute("PartName") = ("/" + std::string(part)).c_str();
    }
    added.append_attribute("ContentType") = std::string(type).c_str();
}

void PackageImpl::DropOverride(std::string_view part) {
    auto types = Types();
    if (auto o = OverrideOf(types, part)) {
        Edit(kContentTypesPart);
        types.remove_child(o);
    }
}

// ---------------------------------------------------------------------------------------------
// Relationships
// ---------------------------------------------------------------------------------------------

std::vector<Relationship> PackageImpl::Rels(std::string_view source) {
    std::vector<Relationship> out;
    Part* p = Find(RelsPartOf(source));
    if (!p) return out;
    for (auto r : Doc(*p).document_element().children("Relationship")) {
        out.push_back({r.attribute("Id").value(), r.attribute("Type").value(), r.attribute("Target").value(),
                       EqualNoCase(r.attribute("TargetMode").value(), "External")});
    }
    return out;
}

std::string PackageImpl::Target(std::string_view source, std::string_view rId) {
    for (auto& r : Rels(source)) {
        if (r.id != rId) continue;
        // A target of only a fragment ("#Sheet2!A1", hyperlinks in drawings) names no part.
        std::string_view target = r.target;
        target = target.substr(0, target.find('#'));
        return r.external || target.empty() ? std::string{} : ResolveTarget(source, target);
    }
    return {};
}

std::string PackageImpl::AddRel(std::string_view source, std::string_view type, std::string_view targetPart) {
    std::string relsPart = RelsPartOf(source);
    if (!Find(relsPart)) {
        PutXml(relsPart, kRelsContentType).append_child("Relationships").append_attribute("xmlns") = kRelationshipsNs;
    }
    auto root = Edit(relsPart).document_element();
    unsigned long highest = 0;
    for (auto r : root.children("Relationship")) {
        std::string_view id = r.attribute("Id").value();
        if (id.size() > 3 && id.substr(0, 3) == "rId" &&
            id.find_first_not_of("0123456789", 3) == std::string_view::npos && id.size() < 13) {
            highest = std::max(highest, std::stoul(std::string(id.substr(3))));
        }
    }
    std::string id = "rId" + std::to_string(highest + 1);
    auto rel = root.append_child("Relationship");
    rel.append_attribute("Id") = id.c_str();
    rel.append_attribute("Type") = std::string(type).c_str();
    rel.append_attribute("Target") = RelativeTarget(source, targetPart).c_str();
    return id;
}

void PackageImpl::RemoveRel(std::string_view source, std::string_view rId) {
    std::string relsPart = RelsPartOf(source);
    Part* p = Find(relsPart);
    if (!p) return;
    auto root = Doc(*p).document_element();
    for (auto r : root.children("Relationship")) {
        if (r.attribute("Id").value() != rId) continue;
        Edit(relsPart);
        root.remove_child(r);
        // The application writes no relationships part for a part without relationships.
        if (!root.child("Relationship")) Remove(relsPart);
        return;
    }
}

// ---------------------------------------------------------------------------------------------
// Writing
// ---------------------------------------------------------------------------------------------

std::string PackageImpl::ZipBytes() {
    std::vector<const Part*> order;
    order.push_back(&Need(kContentTypesPart));
    for (auto& p : parts_) {
        if (p->name != kContentTypesPart) order.push_back(p.get());
    }

    zip_error_t err;
    zip_error_init(&err);
    zip_source_t* out = zip_source_buffer_create(nullptr, 0, 0, &err);
    if (!out) throw PackageError("cannot save: out of memory");
    zip_source_keep(out);
    struct SourceRef {
        zip_source_t* s;
        ~SourceRef() { zip_source_free(s); }
    } outRef{out};
    zip_t* za = zip_open_from_source(out, ZIP_TRUNCATE, &err);
    zip_error_fini(&err);
    if (!za) throw PackageError("cannot save: the zip writer failed to start");

    std::deque<std::string> serialised;  // libzip reads the buffers only at zip_close
    auto fail = [&](const char* what) {
        std::string msg = std::string("cannot save: ") + what + " (" + zip_strerror(za) + ")";
        zip_discard(za);
        return PackageError(msg);
    };
    for (const Part* p : order) {
        // An unchanged part keeps the deflated bytes it was read with: most of a save of a large
        // workbook would otherwise go on deflating its sheets again.
        const bool copy = !p->changed && p->deflatedEntry >= 0;
        zip_source_t* s = nullptr;
        if (copy) {
#if LIBZIP_VERSION_MAJOR > 1 || (LIBZIP_VERSION_MAJOR == 1 && LIBZIP_VERSION_MINOR >= 10)
            s = zip_source_zip_file(za, source_.get(), p->deflatedEntry, ZIP_FL_COMPRESSED, 0, -1, nullptr);
#else
            s = zip_source_zip(za, source_.get(), p->deflatedEntry, ZIP_FL_COMPRESSED, 0, -1);
#endif
        } else {
            const std::string* data = &p->bytes;
            if (p->domIsMaster) data = &serialised.emplace_back(SerializeXml(*p->doc));
            s = zip_source_buffer(za, data->data(), data->size(), 0);
        }
        if (!s) throw fail("cannot add a part");
        zip_int64_t idx = zip_file_add(za, p->name.c_str(), s, ZIP_FL_ENC_UTF_8);
        if (idx < 0) {
            zip_source_free(s);
            throw fail("cannot add a part");
        }
        // zlib's usual level: libzip's own default (the best) takes three times as long for 1 % less.
        // 1980-01-01 00:00 is the time the application gives every entry; saves are reproducible.
        if ((!copy && zip_set_file_compression(za, idx, ZIP_CM_DEFLATE, 6) != 0) ||
            zip_file_set_dostime(za, idx, 0, (0 << 9) | (1 << 5) | 1, 0) != 0) {
            throw fail("cannot set up a part");
        }
    }
    if (zip_close(za) != 0) throw fail("cannot compress the parts");

    std::string bytes;
    zip_stat_t st;
    if (zip_source_stat(out, &st) != 0 || zip_source_open(out) != 0) throw PackageError("cannot save: zip buffer lost");
    bytes.resize(st.size);
    zip_int64_t n = zip_source_read(out, bytes.data(), bytes.size());
    zip_source_close(out);
    if (n < 0 || static_cast<zip_uint64_t>(n) != st.size) throw PackageError("cannot save: zip buffer lost");
    return bytes;
}

// Refuses to overwrite a file at the path Open read that another program has replaced or
// modified since; the check and the rename are not one step, a window no advisory lock closes
// against programs that don't take it.
void PackageImpl::CheckUnchangedOnDisk(const fs::path& target) const {
    if (openedPath_.empty()) return;
    std::error_code ec;
    if (fs::weakly_canonical(fs::absolute(target), ec) != openedPath_) return;
    struct stat now {};
    if (::stat(target.c_str(), &now) != 0 || !SameFile(now, opened_))
        throw PackageError("cannot save " + Quoted(target.string()) +
                           ": another program replaced or changed it since it was opened; its version stays");
}

// The writer lock (see Package::Open) is on an inode, and a save renames a new inode over the
// path. The lock therefore moves with the save: the temporary file is locked from its creation
// (which also keeps the clean-up of killed saves off it) and after the rename that lock is the
// writer lock, the old inode's released. A writer waiting on the old inode wakes, finds the path
// naming another inode and starts again there, behind us; one that opens the path after our
// rename meets our lock on the new inode. So one writer at a time holds the inode the path names,
// and each reads what the one before saved.
void PackageImpl::Save(const std::string& path) {
    auto fail = [&](const std::string& why) { return PackageError("cannot save " + Quoted(path) + ": " + why); };
    fs::path target = path;
    std::error_code ec;
    // Saving through a symbolic link replaces the file it points at, not the link.
    if (fs::is_symlink(target, ec)) {
        fs::path resolved = fs::read_symlink(target, ec);
        if (!ec) target = resolved.is_absolute() ? resolved : target.parent_path() / resolved;
    }

    struct stat old {};
    bool exists = ::stat(target.c_str(), &old) == 0;
    if (exists && !S_ISREG(old.st_mode)) throw fail(NotRegular(old));
    CheckUnchangedOnDisk(target);
    if (exists) {
        if (::access(target.c_str(), W_OK) != 0) throw fail(Reason(errno));
        // Our own writer lock is no other program's.
        struct stat locked {};
        bool ours = lock_.get() >= 0 && fstat(lock_.get(), &locked) == 0 && SameInode(locked, old);
        Fd probe(::open(target.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
        if (probe.get() >= 0 && LockedByOther(probe.get(), true, !ours)) throw fail(Reason(EWOULDBLOCK));
    }

    std::string bytes = ZipBytes();

    fs::path folder = target.parent_path().empty() ? fs::path(".") : target.parent_path();
    RemoveStaleTemporaries(folder, target.filename().string());
    std::string tmpl;
    Fd fd;
    for (int attempt = 0; fd.get() < 0; ++attempt) {
        tmpl = (folder / ("." + target.filename().string() + ".XXXXXX")).string();
        fd = Fd(::mkstemp(tmpl.data()));
        if (fd.get() < 0) throw fail(Reason(errno, true));
        // A clean-up that took the file before our lock has unlinked it: make another.
        struct stat st {};
        if (flock(fd.get(), LOCK_EX) != 0 || fstat(fd.get(), &st) != 0) throw fail(Reason(errno, true));
        if (st.st_nlink == 0 && attempt < 8) fd = Fd();
    }
    auto discard = [&] {
        ::unlink(tmpl.c_str());
        fd = Fd();
    };
    auto abandon = [&](int err) {
        discard();
        return fail(Reason(err, true));
    };

    if (exists) {
        if (fchown(fd.get(), old.st_uid, old.st_gid) != 0) {
            // Keeping the owner is a courtesy that only a privileged user can pay.
        }
        fchmod(fd.get(), old.st_mode & 07777);
    } else {
        fchmod(fd.get(), 0666 & ~CurrentUmask());
    }

    size_t done = 0;
    while (done < bytes.size()) {
        ssize_t n = ::write(fd.get(), bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) throw abandon(errno);
        done += static_cast<size_t>(n);
    }
    if (::fsync(fd.get()) != 0) throw abandon(errno);
    struct stat saved {};
    if (fstat(fd.get(), &saved) != 0) throw abandon(errno);
    try {
        CheckUnchangedOnDisk(target);
    } catch (const PackageError&) {
        discard();
        throw;
    }
    if (::rename(tmpl.c_str(), target.c_str()) != 0) {
        int err = errno;
        throw abandon(err == ENOTEMPTY || err == EEXIST ? EISDIR : err);
    }
    if (!openedPath_.empty() && fs::weakly_canonical(fs::absolute(target), ec) == openedPath_) {
        opened_ = saved;
        if (lock_.get() >= 0) lock_ = std::move(fd);
    }
    fd = Fd();
    // Makes the rename itself durable; a failure here can no longer lose data.
    Fd dir(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (dir.get() >= 0) ::fsync(dir.get());
}

}  // namespace

// ---------------------------------------------------------------------------------------------
// Public functions
// ---------------------------------------------------------------------------------------------

std::unique_ptr<Package> Package::Open(const std::string& path, const OpenOptions& options) {
    struct stat st {};
    Fd fd = OpenWorkbookFile(path, options.writerLock, st);
    auto pkg = std::make_unique<PackageImpl>(path);
    pkg->Load(ReadWholeFile(path, fd.get(), st, options.maxInflatedSize), options.maxInflatedSize);
    pkg->Opened(std::move(fd), st, options.writerLock != WriterLock::None);
    return pkg;
}

std::unique_ptr<Package> Package::Create() {
    auto pkg = std::make_unique<PackageImpl>(std::string{});
    pkg->InitEmpty();
    return pkg;
}

std::string Package::RelsPartOf(std::string_view source) {
    std::string folder(FolderOf(source));
    std::string name(source.substr(source.rfind('/') + 1));
    return (folder.empty() ? "" : folder + "/") + "_rels/" + name + ".rels";
}

std::string Package::ResolveTarget(std::string_view source, std::string_view target) {
    std::string joined;
    if (!target.empty() && target.front() == '/') {
        joined = std::string(target.substr(1));
    } else {
        joined = std::string(FolderOf(source));
        if (!joined.empty()) joined += '/';
        joined += target;
    }
    std::vector<std::string_view> out;
    for (auto seg : Segments(joined)) {
        if (seg == ".") continue;
        if (seg == "..") {
            if (!out.empty()) out.pop_back();
            continue;
        }
        out.push_back(seg);
    }
    return Join(out);
}

std::string SerializeXml(const pugi::xml_document& doc) {
    std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n";
    StringWriter writer(out);
    for (auto node : doc.children()) {
        if (node.type() == pugi::node_declaration) continue;
        node.print(writer, "", pugi::format_raw, pugi::encoding_utf8);
    }
    return out;
}

bool Package::IsTarget(std::string_view part) {
    for (auto& p : Parts()) {
        std::string_view v = p;
        if (v.size() < 5 || v.substr(v.size() - 5) != ".rels") continue;
        auto slash = v.rfind("_rels/");
        if (slash == std::string_view::npos) continue;
        std::string source = std::string(v.substr(0, slash)) + std::string(v.substr(slash + 6, v.size() - slash - 6 - 5));
        if (!source.empty() && !Has(source)) continue;
        for (auto& rel : Rels(source))
            if (!rel.external && Target(source, rel.id) == part) return true;
    }
    return false;
}

void Package::RemoveTree(std::string_view part) {
    std::vector<std::string> targets;
    for (auto& rel : Rels(part))
        if (!rel.external) targets.push_back(Target(part, rel.id));
    Remove(part);
    for (auto& t : targets)
        if (!t.empty() && Has(t) && !IsTarget(t)) RemoveTree(t);
}

}  // namespace xlsx
