#include "test_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <mutex>

#include <sys/wait.h>

#include "host/error.h"
#include <unistd.h>

namespace testsupport {

long ErrorNumberOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const host::Error& e) {
        return e.Number();
    }
    return 0;
}

std::string ErrorTextOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const host::Error& e) {
        return e.Description();
    }
    return {};
}

fs::path SharedDir() {
    if (const char* env = std::getenv("PLOTSMITH_SHARED_DIR"); env && *env && fs::exists(env)) return env;
    fs::path p = PLOTSMITH_SHARED_DIR;
    return fs::exists(p / "corpus") ? fs::canonical(p) : fs::path{};
}

std::vector<fs::path> CorpusWorkbooks() {
    std::vector<fs::path> out;
    fs::path dir = SharedDir();
    if (dir.empty()) return out;
    for (auto& e : fs::directory_iterator(dir / "corpus" / "excel")) {
        auto ext = e.path().extension().string();
        if (ext == ".xlsx" || ext == ".xlsm") out.push_back(e.path());
    }
    // With ../shared there, a corpus without workbooks fails the test rather than passing on none.
    if (out.empty()) ADD_FAILURE() << dir / "corpus" / "excel" << " holds no workbook";
    std::sort(out.begin(), out.end());
    return out;
}

namespace {
// Never destroyed: the clean-up at exit runs after static destructors would have.
const fs::path& ScratchRoot() {
    static const fs::path* root = [] {
        std::string tmpl = (fs::temp_directory_path() / "plotsmith-test-XXXXXX").string();
        if (!mkdtemp(tmpl.data())) std::abort();
        auto* r = new fs::path(tmpl);
        std::atexit([] {
            if (!std::getenv("PLOTSMITH_KEEP_SCRATCH")) {
                std::error_code ec;
                fs::remove_all(ScratchRoot(), ec);
            }
        });
        return r;
    }();
    return *root;
}
}  // namespace

fs::path ScratchDir(const std::string& name) {
    fs::path p = ScratchRoot() / name;
    fs::remove_all(p);
    fs::create_directories(p);
    return p;
}

std::string Quote(const std::string& text) {
    std::string out = "'";
    for (char c : text) {
        if (c == '\'') out += "'\\''";
        else out += c;
    }
    return out + "'";
}

CommandResult Run(const std::string& command) {
    CommandResult r;
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (!pipe) return r;
    std::array<char, 4096> buf;
    size_t n;
    while ((n = fread(buf.data(), 1, buf.size(), pipe)) > 0) r.output.append(buf.data(), n);
    int st = pclose(pipe);
    r.status = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
    return r;
}

bool HaveValidator() {
    return !SharedDir().empty() && fs::exists(SharedDir() / "ooxml-schemas" / "validate-xlsx") &&
           Run("command -v xmllint").status == 0;
}

CommandResult ValidateXlsx(const std::vector<fs::path>& files) {
    std::string cmd = Quote((SharedDir() / "ooxml-schemas" / "validate-xlsx").string()) + " -q";
    for (auto& f : files) cmd += " " + Quote(f.string());
    return Run(cmd);
}

bool HaveLibreOffice() { return Run("command -v soffice").status == 0; }

std::vector<fs::path> LibreOfficeConvertAll(const std::vector<fs::path>& files, const std::string& filter,
                                            const fs::path& outDir) {
    // One conversion at a time: soffice instances sharing a profile refuse to start.
    static std::mutex mu;
    std::lock_guard lock(mu);
    fs::path profile = ScratchRoot() / "lo-profile";
    // CSV of the first sheet as shown (formatted), UTF-8, comma separated.
    std::string how = filter == "csv" ? "csv:Text - txt - csv (StarCalc):44,34,76,1,,1033,false,true,true" : filter;
    std::string cmd = "soffice -env:UserInstallation=file://" + profile.string() +
                      " --headless --norestore --convert-to " + Quote(how) + " --outdir " + Quote(outDir.string());
    for (auto& f : files) cmd += " " + Quote(f.string());
    Run("timeout 900 " + cmd);
    std::string ext = filter.substr(0, filter.find(':'));
    std::vector<fs::path> out;
    for (auto& f : files) {
        fs::path p = outDir / (f.stem().string() + "." + ext);
        out.push_back(fs::exists(p) ? p : fs::path{});
    }
    return out;
}

fs::path LibreOfficeConvert(const fs::path& file, const std::string& filter, const fs::path& outDir) {
    return LibreOfficeConvertAll({file}, filter, outDir).front();
}

bool HaveOpenpyxl() { return Run("/usr/bin/python3 -c 'import openpyxl'").status == 0; }

CommandResult Python(const std::string& script) {
    fs::path f = ScratchRoot() / ("script-" + std::to_string(getpid()) + ".py");
    {
        FILE* out = fopen(f.c_str(), "w");
        fwrite(script.data(), 1, script.size(), out);
        fclose(out);
    }
    return Run("/usr/bin/python3 " + Quote(f.string()));
}

}  // namespace testsupport
