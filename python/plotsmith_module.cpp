// The Python module's native part: a workbook session, its messages collected per call. The
// Python package (plotsmith/__init__.py) gives it its documented, typed interface.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <cmath>

#include "host/error.h"
#include "session/session.h"
#include "xlsx/package.h"

namespace py = pybind11;

namespace {

// A cell value from Python: None and NaN blank, bool, int and float numbers, str text, a date or
// datetime the serial date the workbook counts in.
host::Variant ToVariant(const py::handle& v) {
    if (v.is_none()) return {};
    if (py::isinstance<py::bool_>(v)) return v.cast<bool>();
    if (py::isinstance<py::int_>(v) || py::isinstance<py::float_>(v)) {
        double d = v.cast<double>();
        return std::isnan(d) ? host::Variant() : host::Variant(d);
    }
    if (py::isinstance<py::str>(v)) return v.cast<std::string>();
    static py::object date = py::module_::import("datetime").attr("date");
    static py::object datetime = py::module_::import("datetime").attr("datetime");
    if (py::isinstance(v, date)) {
        py::object epoch = py::isinstance(v, datetime) ? datetime(1899, 12, 30) : date(1899, 12, 30);
        py::object naive = py::isinstance(v, datetime) && !v.attr("tzinfo").is_none() ? v.attr("replace")(py::arg("tzinfo") = py::none())
                                                                                         : py::reinterpret_borrow<py::object>(v);
        double days = (naive - epoch).attr("total_seconds")().cast<double>() / 86400.0;
        return host::Variant::Date(days);
    }
    // numpy scalars and the like: a number if they say so, else their text.
    if (py::hasattr(v, "__float__")) {
        double d = v.attr("__float__")().cast<double>();
        return std::isnan(d) ? host::Variant() : host::Variant(d);
    }
    return py::str(v).cast<std::string>();
}

class Session {
public:
    Session(const std::string& path, const std::string& hostVersion, bool wait, bool readOnly) {
        session::Options options;
        options.hostVersion = hostVersion;
        options.wait = wait;
        options.willSave = !readOnly;
        wb_ = std::make_unique<session::Workbook>(path, options, [this](const std::string& line) { messages_.push_back(line); });
    }

    std::vector<std::string> TakeMessages() { return std::exchange(messages_, {}); }
    session::Workbook& wb() { return *wb_; }

    // Runs an operation and answers the messages it gave.
    template <class F>
    std::vector<std::string> Run(F&& f) {
        messages_.clear();
        f();
        return TakeMessages();
    }

private:
    std::vector<std::string> messages_;
    std::unique_ptr<session::Workbook> wb_;
};

}  // namespace

PYBIND11_MODULE(_plotsmith, m) {
    m.doc() = "Native part of the plotsmith package; use the package, not this module.";
    static py::exception<session::Refused> error(m, "Error");
    py::register_exception_translator([](std::exception_ptr p) {
        try {
            if (p) std::rethrow_exception(p);
        } catch (const session::Refused& e) {
            error(e.what());
        } catch (const xlsx::PackageError& e) {
            error(e.what());
        } catch (const host::Error& e) {
            error(e.Description().c_str());
        }
    });

    py::class_<session::Table>(m, "Table")
        .def_readonly("id", &session::Table::id)
        .def_readonly("name", &session::Table::name)
        .def_readonly("sheet", &session::Table::sheet)
        .def_readonly("range_table", &session::Table::rangeTable)
        .def_readonly("bucket_candidate", &session::Table::bucketCandidate)
        .def_readonly("labels", &session::Table::labels)
        .def_readonly("numbers", &session::Table::numbers)
        .def_readonly("columns", &session::Table::columns)
        .def("__repr__", [](const session::Table& t) { return "<Table " + t.id + " \"" + t.name + "\" on " + t.sheet + ">"; });
    py::class_<session::Chart>(m, "Chart")
        .def_readonly("id", &session::Chart::id)
        .def_readonly("name", &session::Chart::name)
        .def_readonly("type", &session::Chart::type)
        .def_readonly("sheet", &session::Chart::sheet)
        .def_readonly("table", &session::Chart::table)
        .def_readonly("table_sheet", &session::Chart::tableSheet)
        .def_readonly("state", &session::Chart::state)
        .def("__repr__", [](const session::Chart& c) { return "<Chart " + c.id + " \"" + c.name + "\" " + c.type + " on " + c.sheet + ">"; });

    py::class_<Session>(m, "Session")
        .def(py::init<const std::string&, const std::string&, bool, bool>(), py::arg("path"), py::arg("host_version"),
             py::arg("wait"), py::arg("read_only"))
        .def_property_readonly("path", [](Session& s) { return s.wb().Path(); })
        .def("tables", [](Session& s) { return s.wb().Tables(); })
        .def("charts", [](Session& s) { return s.wb().Charts(); })
        .def("table_id", [](Session& s, const std::string& t) { return s.wb().TableID(t); })
        .def("refresh", [](Session& s) { return s.Run([&] { s.wb().Refresh(); }); })
        .def("refresh_table", [](Session& s, const std::string& t) { return s.Run([&] { s.wb().RefreshTable(t); }); })
        .def("rename_columns",
             [](Session& s, const std::string& t, const std::vector<session::Rename>& renames) {
                 return s.Run([&] { s.wb().RenameColumns(t, renames); });
             })
        .def("update_table",
             [](Session& s, const std::string& t, const std::vector<std::string>& columns, const py::iterable& rows) {
                 std::vector<std::vector<host::Variant>> values;
                 for (auto row : rows) {
                     std::vector<host::Variant> cells;
                     for (auto v : row) cells.push_back(ToVariant(v));
                     values.push_back(std::move(cells));
                 }
                 return s.Run([&] { s.wb().UpdateTable(t, columns, values); });
             })
        .def("add",
             [](Session& s, const std::string& definition, const std::string& sheet, bool newSheet) {
                 std::vector<session::Chart> placed;
                 auto messages = s.Run([&] { placed = s.wb().Add(definition, sheet, newSheet); });
                 return py::make_tuple(placed, messages);
             })
        .def("export", [](Session& s, const std::string& chart) { return s.wb().Export(chart); })
        .def("changed", [](Session& s) { return s.wb().Changed(); })
        .def("save", [](Session& s, const std::string& path) { s.wb().Save(path); });
}
