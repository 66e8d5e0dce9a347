#include "csv_input.h"

#include <csv.h>
#include <utf8proc.h>

#include <charconv>
#include <cmath>
#include <memory>

#include <fmt/format.h>

#include "session/session.h"

namespace {

struct Reader {
    std::string source;
    long line = 1;        // the physical line being fed
    long recordLine = 1;  // where the record being read began
    std::vector<std::string> fields;
    CsvTable table;
    bool header = true;

    [[noreturn]] void Refuse(long at, const std::string& what, size_t column = 0) const {
        if (column) throw session::Refused(fmt::format("'{}' line {}, column {}: {}", source, at, column, what));
        throw session::Refused(fmt::format("'{}' line {}: {}", source, at, what));
    }

    static bool Utf8(const std::string& s) {
        auto* p = reinterpret_cast<const utf8proc_uint8_t*>(s.data());
        utf8proc_ssize_t left = static_cast<utf8proc_ssize_t>(s.size());
        while (left > 0) {
            utf8proc_int32_t cp;
            utf8proc_ssize_t n = utf8proc_iterate(p, left, &cp);
            if (n <= 0) return false;
            p += n;
            left -= n;
        }
        return true;
    }

    static host::Variant Value(const std::string& field) {
        if (field.empty()) return {};
        double v = 0;
        auto [end, ec] = std::from_chars(field.data(), field.data() + field.size(), v);
        if (ec == std::errc() && end == field.data() + field.size() && std::isfinite(v)) return v;
        return field;
    }

    void Record() {
        for (size_t i = 0; i < fields.size(); ++i)
            if (!Utf8(fields[i])) Refuse(recordLine, "the text is not UTF-8", i + 1);
        if (header) {
            for (size_t i = 0; i < fields.size(); ++i)
                if (fields[i].empty()) Refuse(recordLine, "the header names no column", i + 1);
            table.columns = fields;
            header = false;
        } else {
            if (fields.size() != table.columns.size())
                Refuse(recordLine, fmt::format("{} fields where the header names {} columns", fields.size(), table.columns.size()));
            std::vector<host::Variant> row;
            row.reserve(fields.size());
            for (auto& f : fields) row.push_back(Value(f));
            table.rows.push_back(std::move(row));
        }
        fields.clear();
    }
};

void OnField(void* data, size_t length, void* reader) {
    static_cast<Reader*>(reader)->fields.emplace_back(static_cast<const char*>(data), length);
}

void OnRecord(int, void* reader) {
    auto* r = static_cast<Reader*>(reader);
    r->Record();
    r->recordLine = r->line + 1;
}

}  // namespace

CsvTable ReadCsv(const std::string& text, const std::string& source) {
    Reader reader;
    reader.source = source;
    csv_parser parser;
    if (csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI | CSV_APPEND_NULL) != 0) throw std::bad_alloc();
    std::unique_ptr<csv_parser, void (*)(csv_parser*)> owner(&parser, csv_free);
    size_t at = text.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;  // a byte order mark is no part of the header
    // Fed a line at a time, so that a record's first line is known when it ends.
    while (at < text.size()) {
        size_t end = text.find('\n', at);
        end = end == std::string::npos ? text.size() : end + 1;
        if (csv_parse(&parser, text.data() + at, end - at, OnField, OnRecord, &reader) != end - at)
            reader.Refuse(reader.line, std::string("the line is not CSV: ") + csv_strerror(csv_error(&parser)));
        if (text[end - 1] == '\n') {
            ++reader.line;
            // No record begun (the state libcsv starts a row in): the next one begins on the next line.
            if (parser.pstate == 0 && reader.fields.empty()) reader.recordLine = reader.line;
        }
        at = end;
    }
    if (csv_fini(&parser, OnField, OnRecord, &reader) != 0) reader.Refuse(reader.recordLine, "a quoted field is not closed");
    if (reader.header) throw session::Refused(fmt::format("'{}' is empty: no header row names the columns", source));
    return std::move(reader.table);
}
