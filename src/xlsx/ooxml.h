#pragma once
// Namespaces, content types and relationship types of the parts the engine reads and writes, and
// reading names without depending on the prefixes a writer chose.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

namespace xlsx {

namespace ns {
inline constexpr const char* kMain = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
inline constexpr const char* kRel = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
inline constexpr const char* kDrawingMl = "http://schemas.openxmlformats.org/drawingml/2006/main";
inline constexpr const char* kSheetDrawing = "http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing";
inline constexpr const char* kChart = "http://schemas.openxmlformats.org/drawingml/2006/chart";
inline constexpr const char* kChartDrawing = "http://schemas.openxmlformats.org/drawingml/2006/chartDrawing";
inline constexpr const char* kPackageRels = "http://schemas.openxmlformats.org/package/2006/relationships";
inline constexpr const char* kContentTypes = "http://schemas.openxmlformats.org/package/2006/content-types";
}  // namespace ns

namespace ct {
inline constexpr const char* kWorkbook = "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml";
inline constexpr const char* kWorksheet = "application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml";
inline constexpr const char* kStyles = "application/vnd.openxmlformats-officedocument.spreadsheetml.styles+xml";
inline constexpr const char* kSharedStrings = "application/vnd.openxmlformats-officedocument.spreadsheetml.sharedStrings+xml";
inline constexpr const char* kChart = "application/vnd.openxmlformats-officedocument.drawingml.chart+xml";
}  // namespace ct

namespace rel {
#define PS_REL "http://schemas.openxmlformats.org/officeDocument/2006/relationships/"
inline constexpr const char* kOfficeDocument = PS_REL "officeDocument";
inline constexpr const char* kOfficeDocumentStrict = "http://purl.oclc.org/ooxml/officeDocument/relationships/officeDocument";
inline constexpr const char* kWorksheet = PS_REL "worksheet";
inline constexpr const char* kChartsheet = PS_REL "chartsheet";
inline constexpr const char* kStyles = PS_REL "styles";
inline constexpr const char* kSharedStrings = PS_REL "sharedStrings";
inline constexpr const char* kRevisionHeaders = PS_REL "revisionHeaders";
inline constexpr const char* kUsernames = PS_REL "usernames";
inline constexpr const char* kTable = PS_REL "table";
inline constexpr const char* kTheme = PS_REL "theme";
#undef PS_REL
}  // namespace rel

// The local part of an element or attribute name: prefixes vary between writers.
std::string_view LocalName(const char* name);
inline std::string_view LocalName(pugi::xml_node n) { return LocalName(n.name()); }
// The first element child with the given local name; an empty node when there is none.
pugi::xml_node Kid(pugi::xml_node parent, std::string_view local);
// The prefix (with colon) bound to a namespace on an element, declared there when missing.
std::string PrefixFor(pugi::xml_node root, const char* ns, const char* preferred);
// The relationship id of an element (r:id, whatever the prefix); "" when it has none.
std::string RelIdOf(pugi::xml_node node);
// The whole number a value of the schemas' integer types holds (blanks around it, a sign);
// nullopt for anything else, or beyond the range of long long.
std::optional<long long> IntegerOf(std::string_view text);
// Readers of numbers that a damaged part may hold as anything: a whole number that doesn't fit a
// long, or isn't one, reads as 0 rather than throwing out of the engine.
long LongOf(std::string_view text);
// An RGB value written as hex digits ("1F77B4"); 0 for anything else.
unsigned HexOf(std::string_view text);

// The prefix of an element's name, with its colon; "" for none.
std::string ElementPrefix(pugi::xml_node n);
// Sets an attribute, added when missing.
void SetAttr(pugi::xml_node n, const char* name, const std::string& value);

// Children in schema order. `order` lists the local names of a parent's content model in schema
// order; an entry may name the members of one choice, which share its place ("catAx|valAx").
bool OneOf(std::string_view alternatives, std::string_view local);
std::vector<pugi::xml_node> ChildrenL(pugi::xml_node parent, std::string_view local);
// A new child of that local name at its schema place, after its like siblings.
pugi::xml_node InsertAt(pugi::xml_node parent, std::string_view local, const std::vector<std::string_view>& order,
                        const std::string& prefix);
// The child of that local name, made at its schema place when absent.
pugi::xml_node Ensure(pugi::xml_node parent, std::string_view local, const std::vector<std::string_view>& order,
                      const std::string& prefix);
// Moves node into parent at its schema place.
pugi::xml_node MoveInto(pugi::xml_node parent, pugi::xml_node node, const std::vector<std::string_view>& order,
                        const std::string& prefix);
void RemoveL(pugi::xml_node parent, std::string_view local);

// Renames the elements of the namespaces the engine reads, and attributes of the relationships
// namespace, to the prefixes the engine reads and writes them with: none for SpreadsheetML and the
// package's own parts, r: a: xdr: c: cdr: for the others; their declarations go on the root. A
// document where that would change what a name means (the engine's prefix bound to another
// namespace where a name would take it, unprefixed elements in no namespace, a renamed prefix that
// a markup compatibility attribute names) is left as written, and false is answered. `text`, the bytes the document was parsed from, lets a
// document that binds no such namespace to another prefix be recognised without a walk.
bool NormalizeNamespaces(pugi::xml_document& doc, std::string_view text = {});
// False when the root element is in one of those namespaces under another prefix: a document the
// engine can't read by its names.
bool HasCanonicalRoot(const pugi::xml_document& doc);

}  // namespace xlsx
