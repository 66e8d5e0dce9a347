#pragma once
// Namespaces, content types and relationship types of the parts the engine reads and writes, and
// reading names without depending on the prefixes a writer chose.
#include <string>
#include <string_view>

#include <pugixml.hpp>

namespace xlsx {

namespace ns {
inline constexpr const char* kMain = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
inline constexpr const char* kRel = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
}  // namespace ns

namespace ct {
inline constexpr const char* kWorkbook = "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml";
inline constexpr const char* kWorksheet = "application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml";
inline constexpr const char* kStyles = "application/vnd.openxmlformats-officedocument.spreadsheetml.styles+xml";
inline constexpr const char* kSharedStrings = "application/vnd.openxmlformats-officedocument.spreadsheetml.sharedStrings+xml";
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

}  // namespace xlsx
