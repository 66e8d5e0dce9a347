#pragma once
// The zip package of a workbook: every part kept as bytes, XML parsed only when asked for,
// unchanged parts written back byte for byte, saves atomic.
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

class Package {
public:
    // Reads the whole zip; throws PackageError for a missing, unreadable, locked or corrupt file.
    static std::unique_ptr<Package> Open(const std::string& path);
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
    // path as it was and throws PackageError.
    virtual void Save(const std::string& path) = 0;
};

// How edited XML parts are written: the declaration the application writes and CR LF, then
// the document without indentation (any declaration node of the document is replaced).
std::string SerializeXml(const pugi::xml_document& doc);

}  // namespace xlsx
