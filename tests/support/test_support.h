#pragma once
// What tests share: where the corpus and tools are, scratch files, and running external checkers.
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace testsupport {

namespace fs = std::filesystem;

// The number and description of the host error a call raises; 0 and "" when it raises none.
long ErrorNumberOf(const std::function<void()>& call);
std::string ErrorTextOf(const std::function<void()>& call);

// ../shared beside the source tree (corpus, schemas); empty path when it isn't there.
fs::path SharedDir();
// The application-made workbooks of the compatibility corpus, sorted by name.
std::vector<fs::path> CorpusWorkbooks();
// A fresh empty folder for one test, removed at exit of the process.
fs::path ScratchDir(const std::string& name);

struct CommandResult {
    int status = -1;
    std::string output;  // stdout and stderr together
};
// Runs a shell command and collects what it prints.
CommandResult Run(const std::string& command);
std::string Quote(const std::string& text);

// The schema validator of every written part; status 0 means all parts valid.
bool HaveValidator();
CommandResult ValidateXlsx(const std::vector<fs::path>& files);

// LibreOffice headless (soffice); conversions run with a private profile under the scratch dir.
bool HaveLibreOffice();
// Converts `file` with --convert-to `filter` into `outDir`; answers the produced file or an empty path.
fs::path LibreOfficeConvert(const fs::path& file, const std::string& filter, const fs::path& outDir);

// The same for many files in one LibreOffice start; answers the produced files, empty where one failed.
std::vector<fs::path> LibreOfficeConvertAll(const std::vector<fs::path>& files, const std::string& filter,
                                            const fs::path& outDir);

// Debian's python3 with openpyxl.
bool HaveOpenpyxl();
CommandResult Python(const std::string& script);

}  // namespace testsupport
