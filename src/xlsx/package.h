#pragma once
// The zip package of a workbook: every part kept as bytes, XML parsed only when asked for,
// unchanged parts written back as the file had them deflated, saves atomic.
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

namespace xlsx {

// A file that can't be opened, read or written; the message is one line for the user.
class PackageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct Relationship {
    std::string id;          // "rId3"
    std::string type;        // full relationship type URI
    std::string target;      // as written in the .rels part
    bool external = false;   // TargetMode="External"
};

// Every part is held inflated in memory, and a parsed part takes several times its text; 2 GiB is
// far above real workbooks (large ones inflate to a few hundred MiB) and near what a usual machine
// can hold parsed, so a package beyond it is refused in one line before it exhausts memory.
inline constexpr std::uint64_t kDefaultMaxInflatedSize = std::uint64_t(2) << 30;

// The advisory lock (flock) a writer holds on the workbook from Open until the package is gone; each
// save moves it to the file the save wrote.
enum class WriterLock {
    None,    // a reader: takes no lock, refuses a file another program holds exclusively
    Refuse,  // takes the lock, refuses at once when another writer holds it
    Wait,    // takes the lock, waiting for another writer to finish
};

struct OpenOptions {
    std::uint64_t maxInflatedSize = kDefaultMaxInflatedSize;  // all parts together, inflated
    WriterLock writerLock = WriterLock::None;
};

class Package {
public:
    // Reads the whole zip; throws PackageError for a missing, unreadable, locked or corrupt file,
    // anything but a regular file, or a package inflating beyond the limit.
    static std::unique_ptr<Package> Open(const std::string& path, const OpenOptions& options = {});
    // An empty package to build a new workbook in: only [Content_Types].xml, holding the
    // Defaults every package has (rels, xml).
    static std::unique_ptr<Package> Create();

    virtual ~Package() = default;

    // Part names have no leading slash: "xl/workbook.xml".
    virtual bool Has(std::string_view part) const = 0;
    virtual std::vector<std::string> Parts() const = 0;  // in the zip's order, added parts last

    // Raw bytes of a part (serialised anew if it was edited). Throws PackageError if absent.
    virtual std::string Bytes(std::string_view part) const = 0;
    // Parsed XML of a part, parsed on first use; reading never marks the part changed.
    virtual const pugi::xml_document& Read(std::string_view part) = 0;
    // The same document for editing: the part is then serialised from the DOM on save.
    virtual pugi::xml_document& Edit(std::string_view part) = 0;
    // True when the part was edited, added or replaced since Open.
    virtual bool Changed(std::string_view part) const = 0;

    // Adds or replaces a part. A content type given here becomes an Override in
    // [Content_Types].xml unless the part's extension Default already says the same; an
    // extension other than xml without a Default gets one instead (media, vml, bin), as the
    // application writes them. A .rels part needs no content type.
    virtual void Put(std::string_view part, std::string bytes, std::string_view contentType = {}) = 0;
    // Adds a new XML part from a document (serialised on save).
    virtual pugi::xml_document& PutXml(std::string_view part, std::string_view contentType) = 0;
    // Removes a part, its Override and its own relationships part. Relationships pointing at
    // it are the caller's (RemoveRel), as is the markup that uses their ids.
    virtual void Remove(std::string_view part) = 0;
    // The content type of a part: Override first, then the extension's Default; "" if none.
    virtual std::string ContentType(std::string_view part) const = 0;

    // Relationships of a part ("" for the package itself: _rels/.rels), in document order.
    virtual std::vector<Relationship> Rels(std::string_view source) = 0;
    // The part an internal relationship points at, resolved against the source; "" for an
    // unknown id, an external target or a target of only a fragment ("#Sheet2!A1").
    virtual std::string Target(std::string_view source, std::string_view rId) = 0;
    // Adds a relationship from source to an internal part (target written relative); answers its new id.
    virtual std::string AddRel(std::string_view source, std::string_view type, std::string_view targetPart) = 0;
    // Removing the last relationship of a source removes its .rels part.
    virtual void RemoveRel(std::string_view source, std::string_view rId) = 0;
    // True when an internal relationship of any part points at the part.
    bool IsTarget(std::string_view part);
    // Removes a part and, after it, every part it related to that nothing else relates to any more.
    void RemoveTree(std::string_view part);
    // Part name of the .rels part of a source part: "xl/_rels/workbook.xml.rels".
    static std::string RelsPartOf(std::string_view source);
    // Resolves a target relative to the folder of the source part ("../media/a.png", "/xl/x.xml").
    static std::string ResolveTarget(std::string_view source, std::string_view target);

    // Writes a temporary file beside path, flushes it, renames it over path. A failure leaves
    // path as it was and throws PackageError; so does a file at the path Open read that was
    // replaced or modified since. Temporary files of this path left by killed saves are removed.
    virtual void Save(const std::string& path) = 0;
    // The one line that says the package is damaged, naming the file as it was given to Open.
    virtual std::string Invalid(const std::string& why) const = 0;
};

// How edited XML parts are written: the declaration the application writes and CR LF, then
// the document without indentation (any declaration node of the document is replaced).
std::string SerializeXml(const pugi::xml_document& doc);

}  // namespace xlsx
